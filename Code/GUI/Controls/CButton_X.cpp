#include "Code/GUI/Controls/CButton_X.h"

#include "Code/GUI/WCStaticText.h"
#include "Code/GUI/WUGUIXML.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN

namespace {

const WCRGBAColor kFrameColor(110, 110, 110, 255);

// A frame's lines lie on the rect's last row and column, which its half-open right and bottom
// edges leave outside, and the control's frame would clip.
WURect<short> InsideEdges(const WURect<short> &rect) {
    return WURect<short>(rect.top, rect.left, static_cast<short>(rect.bottom - 1),
                         static_cast<short>(rect.right - 1));
}

} // namespace

CButton_X *CButton_X::Clone() const {
    auto *copy = new CButton_X(m_pOwner);
    CopyButtonTo(*copy);
    return copy;
}

void CButton_X::CopyButtonTo(CButton_X &other) const {
    CopyTo(other);
    other.m_OtherChildren = m_OtherChildren;
}

WTErr CButton_X::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    GUIXML::KeepChildren(*cls, m_OtherChildren);
    return eNoErr;
}

void CButton_X::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    GUIXML::WriteKeptChildren(*cls, m_OtherChildren);
}

int CButton_X::GetDrawInstructionsParamValueWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                                   std::size_t index) {
    const int err = WCGUIControl::GetDrawInstructionsParamValueWindow(writer, index);
    if (err == eNoErr)
        if (const WCStaticText *win = m_Registrations[index].GetValueWin();
            win != nullptr && !win->IsHidden(false))
            writer.DrawWireRect(kFrameColor, InsideEdges(win->GetDrawableRect()), 1.0f);
    return err;
}

MIREL_NAMESPACE_END
