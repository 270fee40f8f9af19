#pragma once

#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;

namespace Preset {

class CPresetInfo;

// The face of a running plug-in that the preset files and the presets manager see: its type and
// sub-type, name, version and preset resource number, the types of other plug-ins whose presets
// it takes, and the load and save of its state. It holds a reference to the algorithm, which
// must outlive it; made for the length of a call. Made from a const algorithm it is read-only,
// and a load through it is refused. [main-thread], or the host's chunk thread under the
// algorithm's lock.
class CPublicAlg {
public:
    explicit CPublicAlg(const cALGORITHM &alg) noexcept : m_Alg(alg) {}
    explicit CPublicAlg(cALGORITHM &alg) noexcept : m_Alg(alg), m_pMutableAlg(&alg) {}
    virtual ~CPublicAlg() = default;
    CPublicAlg(const CPublicAlg &) = delete;
    CPublicAlg &operator=(const CPublicAlg &) = delete;

    const cALGORITHM &GetAlg() const noexcept { return m_Alg; }
    // Null for a read-only face.
    cALGORITHM *GetMutableAlg() const noexcept { return m_pMutableAlg; }
    WCFourCC GetAlgType() const noexcept;
    WCFourCC GetAlgSubType() const noexcept;
    WCFixedString<63> GetAlgName() const;
    // The external version over three fields, as presets store it.
    WCFixedString<63> GetAlgVersion() const;
    // The id of the bundle's "Presets" resource (1000 unless the algorithm XML names another).
    short GetPresetResourceNumber() const noexcept;

    // Types whose presets a plug-in of `type` also loads; "****" takes every type and skips the
    // sub-component test. By default the algorithm XML's "PresetCompatibleType" list.
    virtual std::vector<WCFourCC> GetPresetCompatibleTypes(WCFourCC type) const;

    // Whether a preset may load now; a plug-in that is busy answers false and the load does
    // nothing.
    virtual bool AllowLoadPresetToPlugin() const { return true; }
    // The algorithm's LoadFromPreset; eMemNullPointer through a read-only face.
    virtual int LoadFromPreset(const CPresetInfo &info, bool update) const;
    // The algorithm's SaveToPreset.
    virtual int SaveToPreset(CPresetInfo &info, bool activeOnly, bool allSetups) const;
    // A MIDI map holds the MIDI attachments of the controls, which the automation manager does
    // not keep yet: eNotImplemented.
    virtual int SaveToMidiMap(CPresetInfo &info) const;
    // Whether a host chunk holds both setups: the plug-in value "SaveAllSetups", true by
    // default.
    virtual bool GetSaveAllSetups() const;

private:
    const cALGORITHM &m_Alg;
    cALGORITHM *m_pMutableAlg = nullptr;
};

} // namespace Preset

MIREL_NAMESPACE_END
