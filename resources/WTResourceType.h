#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "resources/WCResConvertObj.h"
#include "resources/WCResKey.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

// Bits of WTResourceType::m_Flags.
inline constexpr std::uint32_t kResFlagAddedNotOnDisk = 0x2;
inline constexpr std::uint32_t kResFlagDataCopied = 0x4;
inline constexpr std::uint32_t kResFlagDeferredWrite = 0x100;
inline constexpr std::uint32_t kResFlagMarkedForDelete = 0x200;
// A variant record that converted its own copy of its base's bytes and disposes of the result.
inline constexpr std::uint32_t kResFlagOwnsConversion = 0x400;

// Bit of the flags given to GetAResource and the Add functions: the caller will write the
// resource later, with the whole container (WriteResContainer), rather than at WriteResource.
inline constexpr std::uint32_t kResLoadDeferredWrite = 0x2;

} // namespace RM

// The record of a loaded resource, shared by all its users and owned by its container's map.
// A variant record holds one retain on its base (m_pParent) and either shares the base's data or,
// when its key brings a converter, owns a conversion of the base's raw bytes.
// Users read the data without a lock for as long as they hold a retain; every other field is
// changed only under the container's lock.
struct WTResourceType : public WCResKey {
    explicit WTResourceType(const WCResKey &key) : WCResKey(key) {}

    RM::WSResDataBlock m_Data;
    std::int32_t m_RetainCount = 0;
    std::uint32_t m_Flags = 0;
    WTResourceType *m_pParent = nullptr;
    WTResContainerType *m_pContainer = nullptr;
};

MIREL_NAMESPACE_END
