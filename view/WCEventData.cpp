#include "view/WCEventData.h"

#include <cmath>

#include "view/PluginViewManager.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

namespace {

bool IsModifier(WEModifier modifier) noexcept {
    return modifier >= eModifierPrimary && modifier < eModifierCount;
}

bool IsButton(WEMouseButton button) noexcept {
    return button >= eMouseButtonLeft && button < eMouseButtonCount;
}

} // namespace

void WCEventData::SetAllKeyModifiers(const bool (&modifiers)[eModifierCount]) noexcept {
    for (int i = 0; i < eModifierCount; ++i)
        m_modifiers[i] = modifiers[i];
}

bool WCEventData::GetKeyModifier(WEModifier modifier) const noexcept {
    return IsModifier(modifier) && m_modifiers[modifier];
}

int WCEventData::SetKeyModifier(WEModifier modifier, bool down) noexcept {
    if (!IsModifier(modifier))
        return eOutOfRangeNumber;
    m_modifiers[modifier] = down;
    return eNoErr;
}

bool WCEventData::CompareKeyModifiers(const bool (&modifiers)[eModifierCount]) const noexcept {
    for (int i = 0; i < eModifierCount; ++i)
        if (m_modifiers[i] != modifiers[i])
            return false;
    return true;
}

void WCEventData::UpdateKeyModifiersStateFromSys() noexcept {
    for (int i = 0; i < eModifierCount; ++i)
        m_modifiers[i] = GetModifierKeyState(static_cast<WEModifier>(i));
}

bool WCEventData::GetMouseButtonPressed(WEMouseButton button) const noexcept {
    return IsButton(button) && m_buttons[button];
}

int WCEventData::SetMouseButtonPressed(WEMouseButton button, bool pressed) noexcept {
    if (!IsButton(button))
        return eOutOfRangeNumber;
    m_buttons[button] = pressed;
    return eNoErr;
}

void WCEventData::ResetMouseButtonState() noexcept {
    for (bool &b : m_buttons)
        b = false;
}

int WCEventData::SetCustomData(ECustomDataType type, const void *data,
                               std::uint64_t size) noexcept {
    Utils::WCStMemObj copy;
    if (size != 0) {
        if (data == nullptr)
            return eMemNullPointer;
        if (const WTErr err = copy.Assign(data, size); err != eNoErr)
            return err;
    }
    Utils::WCStMemObj::Swap(m_customData, copy);
    m_customType = type;
    return eNoErr;
}

int WCEventData::ScaleEventData(double factor, bool toUnscaled) noexcept {
    if (!std::isfinite(factor) || factor <= 0.0)
        return eOutOfRangeNumber;
    const double by = toUnscaled ? 1.0 / factor : factor;
    for (WCPoint2D<short> *p :
         {&m_location, &m_oldLocation, &m_mouseDownLocation, &m_delta, &m_cursorRelease})
        p->Scale(by);
    m_scalingFactor = factor;
    return eNoErr;
}

void WCEventData::Translate(WCPoint2D<short> offset) noexcept {
    for (WCPoint2D<short> *p :
         {&m_location, &m_oldLocation, &m_mouseDownLocation, &m_cursorRelease})
        *p += offset;
}

void WCEventData::Reset() noexcept {
    *this = WCEventData();
}

} // namespace PluginViewManager
MIREL_NAMESPACE_END
