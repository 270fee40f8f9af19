#include "Code/GUI/Controls/CTextEntry_X.h"

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCStaticText.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace {

// The field's frame, drawn around the value so that it reads as a place to type.
const WCRGBAColor kFieldColor(250, 250, 240, 255);
const WCRGBAColor kFrameColor(90, 90, 90, 255);

} // namespace

CTextEntry_X *CTextEntry_X::Clone() const {
    auto *copy = new CTextEntry_X(m_pOwner);
    CopyTo(*copy);
    copy->m_Pushed.Assign(m_Pushed);
    copy->m_Released.Assign(m_Released);
    return copy;
}

int CTextEntry_X::WhichParamIndexCanEnterText() const {
    for (std::size_t i = 0; i < m_Registrations.size(); ++i)
        if (m_Registrations[i].IsRegistered() && m_Registrations[i].GetValueWin() != nullptr)
            return static_cast<int>(i);
    return -1;
}

// A click only selects the field; the box opens on the release, as a double click's does.
WCGUIControl::BUFFER_HEADER *CTextEntry_X::MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                                         bool &keepGoing) {
    return WCGUIControl::MouseDownSelf(event, limits, keepGoing);
}

WCGUIControl::BUFFER_HEADER *CTextEntry_X::MouseUpSelf(WCEventData &event) {
    // Only the document can open a box in its view; a control read alone has none to open.
    if (auto *gui = dynamic_cast<CStandardGUI_X *>(m_pOwner); gui != nullptr && CanEnterText())
        gui->TrackTextInput(event, true);
    return nullptr;
}

int CTextEntry_X::GetDrawInstructionsParamValueWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                                      std::size_t index) {
    if (index < m_Registrations.size())
        if (const WCStaticText *win = m_Registrations[index].GetValueWin()) {
            // Text windows stand in the control's own coordinates.
            const WURect<short> &field = win->GetDrawableRect();
            writer.DrawSolidRect(kFieldColor, field);
            // The frame's lines lie inside the half-open rect, which the control's frame clips.
            writer.DrawWireRect(kFrameColor,
                                WURect<short>(field.top, field.left,
                                              static_cast<short>(field.bottom - 1),
                                              static_cast<short>(field.right - 1)),
                                1.0f);
        }
    return CToggle_X::GetDrawInstructionsParamValueWindow(writer, index);
}

MIREL_NAMESPACE_END
