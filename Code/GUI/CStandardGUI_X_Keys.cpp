// Keys, typed values, hover and the selection rectangle of the GUI document.
#include <algorithm>
#include <cctype>
#include <string>

#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/WUImageDecoder.h"
#include "core/WTErrors.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/PluginViewManager.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace PVM = PluginViewManager;

namespace {

// The cursor a control with "DisplayCursor" shows over its parameter: the plug-in's colour
// cursor resource of this number.
constexpr int kParameterCursorID = 128;
// A typed value never needs more characters than a value window shows.
constexpr int kMaxTypedChars = 63;

bool IsNumberKey(const PVM::WCEventData &event) {
    const char c = event.GetKeyChar();
    return event.GetKeyCode() == PVM::eKeyCharacter &&
           (c == '-' || c == '.' || std::isdigit(static_cast<unsigned char>(c)));
}

// Whether the rubber band touches the control: its rect, and, when it has an alpha selection
// image, a pixel of that image that is not transparent.
bool TouchesSelectRect(WCGUIControl &control, const WURect<short> &rect) {
    WURect<short> overlap;
    if (!control.GetDrawableRect().GetIntersection(rect, overlap))
        return false;
    WCBaseImage &alpha = control.GetAlphaSelection();
    if (!alpha.IsLoaded() || alpha.GetPixels() == nullptr)
        return true;
    // Only the part of the overlap that the image covers can hold an opaque pixel.
    const WCPoint2D<short> zero = control.CalcRelativeClickPoint(WCPoint2D<short>(0, 0));
    const int originX = -zero.x, originY = -zero.y;
    const int left = std::max<int>(overlap.left, originX);
    const int top = std::max<int>(overlap.top, originY);
    const int right = std::min<int>(overlap.right, originX + alpha.GetPixels()->m_Width);
    const int bottom = std::min<int>(overlap.bottom, originY + alpha.GetPixels()->m_Height);
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            if (!alpha.IsPixelTransparent(control.CalcRelativeClickPoint(
                    WCPoint2D<short>(static_cast<short>(x), static_cast<short>(y)))))
                return true;
    return false;
}

} // namespace

// ---- keys ------------------------------------------------------------------------------------

int CStandardGUI_X::DoKey(WCEventData &event, bool &handled) {
    handled = false;
    if (!m_Alive || !m_Finished)
        return eWrongObjectState;
    // The selection may have changed through the selectors since the last click.
    PrepareCurrSelectedList();
    int err = ModifyControlsOnKey(event, handled);
    const bool *modifiers = event.GetAllKeyModifiers();
    const bool primary = modifiers[eModPrimary];

    if (!handled && AcceptsTextEntry() && IsNumberKey(event)) {
        // The key typed becomes the first character of the value.
        if (m_pActiveControl != nullptr && m_pActiveControl->CanEnterText() && !primary &&
            !m_TextBoxOpen) {
            err = TrackTextInput(event, false);
            handled = err == eNoErr;
        }
        return err;
    }

    switch (event.GetKeyCode()) {
    case PVM::eKeyEscape:
    case PVM::eKeyReturn:
    case PVM::eKeyHome:
        if (!m_SelectedList.empty()) {
            GoHome(true);
            PrepareCurrSelectedList();
            SetNeedToRedrawGUI();
            handled = true;
        }
        break;
    case PVM::eKeyTab:
        if (m_pActiveControl != nullptr) {
            m_pActiveControl->DoTab(DirectionFromTabModifiers(modifiers));
            PrepareCurrSelectedList();
            SetNeedToRedrawGUI();
            handled = true;
        }
        break;
    case PVM::eKeyF1:
        handled = true;
        err = LaunchHelpFile();
        break;
    case PVM::eKeyCharacter:
        if (primary && (event.GetKeyChar() == 'g' || event.GetKeyChar() == 'G')) {
            // A developer's dump of the frame on screen; the key stays the host's too.
            miGS::WCGraphicStreamBinaryWriter writer(0);
            writer.ActivateRemarks(true);
            // Files leave the process, so every datum is written in the stream itself.
            const std::uint64_t threshold = m_GraphicStreamDataPtrThreshold;
            m_GraphicStreamDataPtrThreshold = 0;
            SetNeedToRedrawGUI();
            err = GetDrawInstructions(writer);
            m_GraphicStreamDataPtrThreshold = threshold;
            // The dump took the controls' redraw marks: the view's next frame is a full one.
            SetNeedToRedrawGUI();
            const std::string name = std::string(m_PluginName.c_str()) + "-frame";
            if (err == eNoErr)
                err = WriteGraphicStreamToFile(writer, "gs", name.c_str());
            if (err == eNoErr)
                err = WriteGraphicStreamToFile(writer, "yaml", name.c_str());
        }
        break;
    default: break;
    }
    return err;
}

int CStandardGUI_X::ModifyControlsOnKey(WCEventData &event, bool &handled) {
    return PassEventToSelectedControls(event, handled);
}

int CStandardGUI_X::PassEventToSelectedControls(WCEventData &event, bool &handled) {
    handled = false;
    BUFFER_HEADER *chain = nullptr;
    for (WCGUIControl *control : FilterNotLinkedFromSelected(m_SelectedList)) {
        if (control->GetControlFlag(eCF_IgnoreKeyboard) || control->IsHidden(true))
            continue;
        bool took = false;
        chain = ChainBuffers(chain, control->HandleKeyEvent(event, took));
        handled = handled || took;
    }
    return ExecuteAndDisposeBuffer(chain);
}

// ---- typed values ----------------------------------------------------------------------------

int CStandardGUI_X::TrackTextInput(WCEventData &event, bool fromMouseUp) {
    if (m_pActiveControl == nullptr)
        PrepareCurrSelectedList();
    WCGUIControl *control = m_pActiveControl;
    if (control == nullptr)
        return kErrGUIObjectNotFound;
    const int index = control->WhichParamIndexCanEnterText();
    if (!control->CanEnterText() || index < 0 || m_pPluginView == nullptr)
        return eWrongObjectState;
    const WCParamRegistrationData &data = control->GetRegistration(static_cast<std::size_t>(index));
    // The box covers the value window, in the view's pixels.
    WURect<short> box = data.GetValueWin()->GetDrawableRect();
    box.Offset(control->GetDrawableRect().left, control->GetDrawableRect().top);
    box.Scale(m_ScalingFactor);

    PVM::WCTextBoxOptions options;
    options.m_maxChars = kMaxTypedChars;
    options.m_callback = &CStandardGUI_X::HandleTextBoxCallback;
    options.m_refCon = this;
    if (fromMouseUp) {
        WCFixedString<127> text;
        if (control->GetValueWinText(static_cast<std::size_t>(index), text) == eNoErr)
            options.m_text = text.c_str();
    } else if (event.GetKeyChar() != 0) {
        options.m_text.assign(1, event.GetKeyChar());
    }
    // Opening a box closes one still open, whose callback clears the flag: set it after.
    const int err = PVM::ActivateTextBox(m_pPluginView, box.TopLeft(), box.BottomRight(), options);
    if (err == eNoErr)
        m_TextBoxOpen = true;
    return err;
}

void CStandardGUI_X::HandleTextBoxCallback(void *refCon, const char *text, bool accepted) {
    auto *gui = static_cast<CStandardGUI_X *>(refCon);
    if (gui == nullptr)
        return;
    gui->m_TextBoxOpen = false;
    if (!accepted || text == nullptr || !gui->m_Alive || gui->m_pActiveControl == nullptr)
        return;
    BUFFER_HEADER *chain = gui->m_pActiveControl->EnterText(text);
    gui->ExecuteAndDisposeBuffer(chain);
}

int CStandardGUI_X::LaunchHelpFile() {
    // Plug-ins of this platform ship no help file to open.
    return eNotImplemented;
}

// ---- hover -----------------------------------------------------------------------------------

int CStandardGUI_X::ModifyControlsOnMouseHover(WCEventData &event) {
    if (!m_Alive || !m_Finished)
        return eWrongObjectState;
    if (m_HoverLock)
        return eNoErr;
    const int index = InsideWhichControl(event.GetMouseLocation());
    WCGUIControl *under = index >= 0 ? m_Controls[static_cast<std::size_t>(index)] : nullptr;
    if (under == m_pHoverControl)
        return eNoErr;
    bool keepGoing = true;
    if (m_pHoverControl != nullptr)
        m_pHoverControl->MouseOver(event, false, keepGoing);
    if (under != nullptr)
        under->MouseOver(event, true, keepGoing);
    m_pHoverControl = under;
    if (under != nullptr && under->GetControlFlag(eCF_DisplayCursor) &&
        under->GetNumRegistrations() > 0)
        return Utils::SetCursor(kParameterCursorID);
    return Utils::InitCursor();
}

// ---- selection rectangle ---------------------------------------------------------------------

void CStandardGUI_X::UpdateSelectRect(WCEventData &event) {
    const WCPoint2D<short> from = m_MouseDownLocation;
    const WCPoint2D<short> to = event.GetMouseLocation();
    const WURect<short> rect(std::min(from.y, to.y), std::min(from.x, to.x),
                             std::max(from.y, to.y), std::max(from.x, to.x));
    m_SelectionRect = rect;
    // A click that never moved is no rectangle, and leaves the click's selection alone.
    if (!rect.IsEmpty())
        m_SelectRectDragged = true;
    if (m_SelectRectDragged)
        UpdateControlsSelectionToSelectionRect(rect, event);
    SetNeedToRedrawGUI();
}

void CStandardGUI_X::UpdateControlsSelectionToSelectionRect(const WURect<short> &rect,
                                                            WCEventData &event) {
    // With shift the rectangle adds to the selection; otherwise it is the selection.
    const bool adding = event.GetAllKeyModifiers()[eModShift];
    bool first = true;
    for (WCGUIControl *control : m_Controls) {
        int min = 0, max = 0;
        control->GetMinMax(min, max);
        if (max <= 0 || control->IsHidden(true))
            continue;
        if (TouchesSelectRect(*control, rect)) {
            // The first one in drawing order leads; the others follow one level below.
            control->SetSelection(first ? max : std::max(min + 1, max - 1), true);
            first = false;
        } else if (!adding) {
            control->MinSelect();
        }
    }
    AdjustSelectionToSelectableFlags();
    PrepareCurrSelectedList();
}

MIREL_NAMESPACE_END
