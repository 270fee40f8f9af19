#pragma once

#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;

namespace Preset {

// The face of a running plug-in that the preset files see: its type and sub-type, name, version
// and preset resource number, and the types of other plug-ins whose presets it takes. It holds
// a reference to the algorithm, which must outlive it; made for the length of a call.
// [main-thread], or the host's chunk thread under the algorithm's lock.
class CPublicAlg {
public:
    explicit CPublicAlg(const cALGORITHM &alg) noexcept : m_Alg(alg) {}
    virtual ~CPublicAlg() = default;
    CPublicAlg(const CPublicAlg &) = delete;
    CPublicAlg &operator=(const CPublicAlg &) = delete;

    const cALGORITHM &GetAlg() const noexcept { return m_Alg; }
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

private:
    const cALGORITHM &m_Alg;
};

} // namespace Preset

MIREL_NAMESPACE_END
