#pragma once

#include <cstddef>
#include <cstdint>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// What a shell learns of one automation control in a single call. Shells built apart from the
// library read it by byte offset, so the layout is packed and padded by hand and checked below;
// the long name starts at an odd offset on purpose, as shells expect it there.
#pragma pack(push, 1)
struct ControllerAutomationInfoVer11 {
    static constexpr std::int32_t kVersion = 11;
    static constexpr std::int32_t kMark = 1001;

    std::int32_t m_Version;       // must be kVersion
    std::int32_t m_ControlIndex;  // input
    std::int32_t m_Mark;          // written as kMark
    std::int32_t m_Reserved0;
    std::int32_t m_NumStates;     // of a discrete lead parameter, else 0
    std::int32_t m_ControlKind;
    std::int64_t m_RefCon1;
    std::int64_t m_RefCon2;
    char m_ShortName[32];
    char m_Units[32];
    char m_ValueString[32];
    std::uint8_t m_MoreValues;
    std::uint8_t m_Zero;
    std::uint8_t m_Flag;
    std::uint8_t m_Reserved1[5];
    std::int64_t m_RegisteredData; // number of registered parameters
    std::int64_t m_Value;          // the lead parameter's state, rounded
    double m_RealWorld;
    std::int64_t m_ParamID;
    std::uint8_t m_Reserved2;
    char m_LongName[128];
    std::uint8_t m_Reserved3[7];
};
#pragma pack(pop)

static_assert(sizeof(ControllerAutomationInfoVer11) == 312);
static_assert(offsetof(ControllerAutomationInfoVer11, m_NumStates) == 16);
static_assert(offsetof(ControllerAutomationInfoVer11, m_RefCon1) == 24);
static_assert(offsetof(ControllerAutomationInfoVer11, m_ShortName) == 40);
static_assert(offsetof(ControllerAutomationInfoVer11, m_MoreValues) == 136);
static_assert(offsetof(ControllerAutomationInfoVer11, m_RegisteredData) == 144);
static_assert(offsetof(ControllerAutomationInfoVer11, m_RealWorld) == 160);
static_assert(offsetof(ControllerAutomationInfoVer11, m_ParamID) == 168);
static_assert(offsetof(ControllerAutomationInfoVer11, m_LongName) == 177);

MIREL_NAMESPACE_END
