#include "Code/Algorithm/WCAlgorithmBroadcaster.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Process/KPAPIProcessMemory.h"

MIREL_NAMESPACE_BEGIN

WCAlgorithmListener::~WCAlgorithmListener() = default;
void WCAlgorithmListener::PresetLoaded(Preset::CPresetInfo const &) {}
void WCAlgorithmListener::PresetModified(EPluginSetup) {}
void WCAlgorithmListener::SetupTitleChanged(EPluginSetup, WCFixedStringBase const &) {}
void WCAlgorithmListener::ActiveSetupChanged(EPluginSetup) {}
void WCAlgorithmListener::ActiveSideChainChanged(bool) {}
void WCAlgorithmListener::Reserved() {}

WCAlgorithmBroadcaster::~WCAlgorithmBroadcaster() = default;

void WCAlgorithmBroadcaster::insert(WCAlgorithmListener *listener) {
    if (listener == nullptr)
        return;
    if (std::find(m_listeners.begin(), m_listeners.end(), listener) == m_listeners.end())
        m_listeners.push_back(listener);
}

void WCAlgorithmBroadcaster::remove(WCAlgorithmListener *listener) {
    m_listeners.erase(std::remove(m_listeners.begin(), m_listeners.end(), listener),
                      m_listeners.end());
}

// Each event walks a copy, so a listener may remove itself while being told.
void WCAlgorithmBroadcaster::PresetLoaded(Preset::CPresetInfo const &info) {
    for (auto *listener : std::vector<WCAlgorithmListener *>(m_listeners))
        listener->PresetLoaded(info);
}

void WCAlgorithmBroadcaster::PresetModified(EPluginSetup setup) {
    // Every value change lands here, so the copy that lets a listener remove itself meanwhile
    // stays on the stack while the list is short, and a lone listener needs none.
    constexpr std::size_t kOnStack = 8;
    const std::size_t count = m_listeners.size();
    if (count == 1) {
        m_listeners.front()->PresetModified(setup);
        return;
    }
    if (count > kOnStack) {
        for (auto *listener : std::vector<WCAlgorithmListener *>(m_listeners))
            listener->PresetModified(setup);
        return;
    }
    std::array<WCAlgorithmListener *, kOnStack> copy;
    std::copy(m_listeners.begin(), m_listeners.end(), copy.begin());
    for (std::size_t i = 0; i < count; ++i)
        copy[i]->PresetModified(setup);
}

void WCAlgorithmBroadcaster::SetupTitleChanged(EPluginSetup setup, WCFixedStringBase const &title) {
    for (auto *listener : std::vector<WCAlgorithmListener *>(m_listeners))
        listener->SetupTitleChanged(setup, title);
}

void WCAlgorithmBroadcaster::ActiveSetupChanged(EPluginSetup setup) {
    for (auto *listener : std::vector<WCAlgorithmListener *>(m_listeners))
        listener->ActiveSetupChanged(setup);
}

void WCAlgorithmBroadcaster::ActiveSideChainChanged(bool active) {
    for (auto *listener : std::vector<WCAlgorithmListener *>(m_listeners))
        listener->ActiveSideChainChanged(active);
}

void WCShellAlgorithmListener::PresetLoaded(Preset::CPresetInfo const &info) {
    const int index =
        info.m_Section == Preset::ePresetSectionFactory ? static_cast<int>(info.m_IndexInList) : -1;
    Notify(index, ePresetLoadedEvent);
}

void WCShellAlgorithmListener::PresetModified(EPluginSetup) {
    Notify(-1, ePresetModifiedEvent);
}

void WCShellAlgorithmListener::SetupTitleChanged(EPluginSetup, WCFixedStringBase const &) {
    Notify(-1, eSetupTitleChangedEvent);
}

void WCShellAlgorithmListener::Notify(int index, int kind) {
    if (m_pAlg == nullptr)
        return;
    m_pAlg->CallExecCallBack(eExecShellEvent, reinterpret_cast<void *>(std::intptr_t(index)),
                             reinterpret_cast<void *>(std::intptr_t(kind)), nullptr);
}

MIREL_NAMESPACE_END
