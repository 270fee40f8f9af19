// A control's keys, typed values, hover, pinch, file drops and value drag and drop.
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CControlPopupMenuHandler.h"
#include "Code/GUI/WCGUIControl.h"
#include "core/WTErrors.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace PVM = PluginViewManager;

void WCGUIControl::MouseOver(WCEventData &event, bool inside, bool &keepGoing) {
    if (inside)
        SetMouseHover();
    else
        ClearMouseHover();
    // A hover image or text shows or goes with the next frame.
    SetNeedToRedrawControl();
    MouseOverSelf(event, inside, keepGoing);
}

WCGUIControl::BUFFER_HEADER *WCGUIControl::HandleKeyEvent(WCEventData &event, bool &handled) {
    handled = false;
    if (IsDisabled())
        return nullptr;
    // Up and down step what the mouse moves vertically or clicks; right and left what it moves
    // horizontally.
    double direction = 0.0;
    bool vertical = true;
    switch (event.GetKeyCode()) {
    case PVM::eKeyUp: direction = 1.0; break;
    case PVM::eKeyDown: direction = -1.0; break;
    case PVM::eKeyRight: direction = 1.0, vertical = false; break;
    case PVM::eKeyLeft: direction = -1.0, vertical = false; break;
    default: break;
    }
    BUFFER_HEADER *chain = nullptr;
    if (direction != 0.0) {
        for (auto &data : m_Registrations) {
            bool modifiers[eNumModifiers];
            ModifiersFor(data, event.GetAllKeyModifiers(), modifiers);
            unsigned int type = eRegNone;
            if (vertical) {
                for (unsigned int candidate : {eRegMouseVertical, eRegMouseDown, eRegMouseUp})
                    if (data.IsRegisteredToType(candidate, modifiers)) {
                        type = candidate;
                        break;
                    }
            } else if (data.IsRegisteredToType(eRegMouseHorizontal, modifiers)) {
                type = eRegMouseHorizontal;
            }
            if (type == eRegNone)
                continue;
            // A continuous parameter has no step of its own: a key moves it by one state.
            const double step = data.GetActiveControllerParameterStateStep();
            data.Touch();
            chain = Chain(chain, data.OffsetParamValue(
                                     direction * m_MouseSensitivity * (step > 0.0 ? step : 1.0),
                                     type, modifiers));
            handled = true;
        }
    }
    if (handled)
        SetKeyOnHover();
    return Chain(chain, KeySelf(event, handled));
}

WCGUIControl::BUFFER_HEADER *WCGUIControl::EnterText(const char *text) {
    if (text == nullptr || IsDisabled())
        return nullptr;
    if (*text == '\0' && !GetControlFlag(eCF_ReceiveEmptyTextEntry))
        return nullptr;
    return EnterTextSelf(text);
}

WCGUIControl::BUFFER_HEADER *WCGUIControl::EnterTextSelf(const char *text) {
    const int index = WhichParamIndexCanEnterText();
    if (index < 0 || m_pAlg == nullptr)
        return nullptr;
    for (auto &data : m_Registrations)
        if (data.IsRegistered() && !data.GetRegisterFlag(eRegDisplayOnly))
            data.Touch();
    cALGORITHM::ETranslateTextRetType result = cALGORITHM::eTranslateTextNotHandled;
    BUFFER_HEADER *chain = m_pAlg->UpdateParamFromText(
        m_Registrations[static_cast<std::size_t>(index)].GetRegisteredParam(), text, result);
    if (result != cALGORITHM::eTranslateTextOK && chain != nullptr) {
        // A refused text changes nothing, whatever a plug-in's hook built on the way.
        m_pAlg->FreeBuffers(chain);
    }
    SetMouseUpOnHover();
    Release();
    return chain;
}

WCGUIControl::BUFFER_HEADER *WCGUIControl::TouchPinchGesture(double dx, double dy) {
    if (IsDisabled())
        return nullptr;
    BUFFER_HEADER *chain = nullptr;
    for (auto &data : m_Registrations) {
        const bool vertical = dy != 0.0 && data.IsRegisteredToType(eRegTouchPinchVertical, nullptr);
        const bool horizontal =
            dx != 0.0 && data.IsRegisteredToType(eRegTouchPinchHorizontal, nullptr);
        if (!vertical && !horizontal)
            continue;
        data.Touch();
        if (vertical)
            chain = Chain(chain, data.OffsetParamValue(dy, eRegTouchPinchVertical, nullptr));
        if (horizontal)
            chain = Chain(chain, data.OffsetParamValue(dx, eRegTouchPinchHorizontal, nullptr));
    }
    return chain;
}

bool WCGUIControl::FileDragOver(WCEventData &event) {
    const PVM::sDragDropEvent &drop = event.GetDragDropEvent();
    if (IsDisabled() || drop.m_paths.empty() || !GetControlFlag(eCF_FileDropEnabled))
        return false;
    for (const auto &data : m_Registrations)
        if (data.GetRegisterFlag(eRegFileDragAndDrop))
            return IsInside(drop.m_location);
    return false;
}

WCGUIControl::BUFFER_HEADER *WCGUIControl::FileDrop(WCEventData &) {
    // The algorithm has no way yet to take a file for a parameter (a typed value is a number,
    // which a path is not), so a dropped file changes nothing; the document reports it.
    return nullptr;
}

void WCGUIControl::DragDropStart(const sDragDropValues &) {
    // A drop target shows nothing of its own until a drag passes over it.
}

bool WCGUIControl::DragDropMove(const sDragDropValues &values, const WCPoint2D<short> &point) {
    if (IsDisabled() || values.m_GroupNumber < 0 || !IsInside(point))
        return false;
    for (const auto &data : m_Registrations)
        if (data.GetRegisterFlag(eRegDrop) &&
            data.GetRegisterInfo().m_DragDrop.m_GroupNumber == values.m_GroupNumber)
            return true;
    return false;
}

WCGUIControl::BUFFER_HEADER *WCGUIControl::DragDropStop(const sDragDropValues &values,
                                                        const WCPoint2D<short> &point) {
    if (!DragDropMove(values, point))
        return nullptr;
    BUFFER_HEADER *chain = nullptr;
    for (auto &data : m_Registrations) {
        if (!data.GetRegisterFlag(eRegDrop) ||
            data.GetRegisterInfo().m_DragDrop.m_GroupNumber != values.m_GroupNumber)
            continue;
        data.Touch();
        chain = Chain(chain, data.SetParamValue(values.m_Value, eRegDrop, nullptr));
        data.Release();
    }
    return chain;
}

int WCGUIControl::DoControlPopupMenuSelf(WCEventData &event) {
    CControlPopupMenuHandler *handler = GetControlPopupMenuHandler();
    return handler != nullptr ? handler->ShowAndSend(event) : eNotImplemented;
}

MIREL_NAMESPACE_END
