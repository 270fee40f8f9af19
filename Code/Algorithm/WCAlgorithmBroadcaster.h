#pragma once

#include <vector>

#include "Code/Presets/CPresetInfo.h"
#include "Code/Algorithm/EPluginSetup.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;

// Receives the events of one algorithm. Every operation is empty here; a listener overrides
// those it cares about. Listeners are not owned by the broadcaster and must be removed before
// they die. [main-thread]
class WCAlgorithmListener {
public:
    virtual ~WCAlgorithmListener();
    virtual void PresetLoaded(Preset::CPresetInfo const &info);
    virtual void PresetModified(EPluginSetup setup);
    virtual void SetupTitleChanged(EPluginSetup setup, WCFixedStringBase const &title);
    virtual void ActiveSetupChanged(EPluginSetup setup);
    virtual void ActiveSideChainChanged(bool active);
    // Reserved for later events; empty.
    virtual void Reserved();
};

// Forwards each event to every inserted listener, in the order they were inserted. A listener is
// in the list at most once. [main-thread]
class WCAlgorithmBroadcaster {
public:
    virtual ~WCAlgorithmBroadcaster();

    void insert(WCAlgorithmListener *listener);
    void remove(WCAlgorithmListener *listener);
    std::size_t size() const { return m_listeners.size(); }

    virtual void PresetLoaded(Preset::CPresetInfo const &info);
    virtual void PresetModified(EPluginSetup setup);
    virtual void SetupTitleChanged(EPluginSetup setup, WCFixedStringBase const &title);
    virtual void ActiveSetupChanged(EPluginSetup setup);
    virtual void ActiveSideChainChanged(bool active);

private:
    std::vector<WCAlgorithmListener *> m_listeners;
};

// Tells the shell about preset events through exec callback operation 36 with (index, kind, 0):
// a loaded preset is kind 0 with its factory number (or -1 when not a factory preset), a modified
// setup kind 1, a changed setup title kind 2, both with index -1. Other events stay inside.
// Owned by its algorithm, which sets the back pointer before inserting it. [main-thread]
class WCShellAlgorithmListener : public WCAlgorithmListener {
public:
    enum EShellEventKind : int {
        ePresetLoadedEvent = 0,
        ePresetModifiedEvent = 1,
        eSetupTitleChangedEvent = 2,
    };

    void SetAlgorithm(cALGORITHM *alg) { m_pAlg = alg; }

    void PresetLoaded(Preset::CPresetInfo const &info) override;
    void PresetModified(EPluginSetup setup) override;
    void SetupTitleChanged(EPluginSetup setup, WCFixedStringBase const &title) override;

private:
    void Notify(int index, int kind);

    cALGORITHM *m_pAlg = nullptr;
};

MIREL_NAMESPACE_END
