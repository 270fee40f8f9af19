#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

// A version number of four parts, Major.Minor.Revision.InternalStage, as read from and written to
// component info, presets and the library's own name. Text is read leniently: parsing stops at
// the first part that is not a number followed by '.', and the rest stay zero.
// A plain value of four integers, with no virtual table: its XML form, the full text as an
// element's content, belongs to the XML layer's serializer (element_content), so core needs no
// XML. [any-thread]
class WCVersion {
public:
    constexpr WCVersion() noexcept = default;
    constexpr WCVersion(unsigned int major, unsigned int minor, unsigned int revision,
                        unsigned int internalStage) noexcept
        : m_Major(major), m_Minor(minor), m_Revision(revision), m_InternalStage(internalStage) {}
    explicit WCVersion(const char *text) noexcept { ReadFromString(text); }

    unsigned int &Major() noexcept { return m_Major; }
    unsigned int &Minor() noexcept { return m_Minor; }
    unsigned int &Revision() noexcept { return m_Revision; }
    unsigned int &InternalStage() noexcept { return m_InternalStage; }
    constexpr unsigned int Major() const noexcept { return m_Major; }
    constexpr unsigned int Minor() const noexcept { return m_Minor; }
    constexpr unsigned int Revision() const noexcept { return m_Revision; }
    constexpr unsigned int InternalStage() const noexcept { return m_InternalStage; }

    // Sets all parts to zero, then reads up to four unsigned decimal numbers separated by '.'.
    void ReadFromString(const char *text) noexcept;
    // The first `parts` parts joined by '.'; 0 gives an empty text, more than 4 counts as 4.
    WCFixedString<63> GetString(unsigned int parts = 4) const noexcept;

    constexpr bool Empty() const noexcept {
        return m_Major == 0 && m_Minor == 0 && m_Revision == 0 && m_InternalStage == 0;
    }

    // Eight bits a part, Major on top. Parts above 255 are not masked, so they spill into the
    // part above, as they always have.
    constexpr std::uint32_t GetVersionAsBinaryNumber() const noexcept {
        return (((((m_Major << 8) | m_Minor) << 8) | m_Revision) << 8) | m_InternalStage;
    }
    constexpr void SetVersionFromBinaryNumber(std::uint32_t number) noexcept {
        m_Major = (number >> 24) & 0xFFu;
        m_Minor = (number >> 16) & 0xFFu;
        m_Revision = (number >> 8) & 0xFFu;
        m_InternalStage = number & 0xFFu;
    }
    // Major, Minor and Revision packed as above, without the stage.
    constexpr std::uint32_t GetVersionAsAUShellNumber() const noexcept {
        return (((m_Major << 8) | m_Minor) << 8) | m_Revision;
    }

    // Compares only the first `parts` parts (1 to 4); parts 0 compares nothing and is false.
    static constexpr bool less(const WCVersion &a, const WCVersion &b,
                               unsigned int parts) noexcept {
        const unsigned int pa[4] = {a.m_Major, a.m_Minor, a.m_Revision, a.m_InternalStage};
        const unsigned int pb[4] = {b.m_Major, b.m_Minor, b.m_Revision, b.m_InternalStage};
        for (unsigned int i = 0; i < parts && i < 4; ++i) {
            if (pa[i] != pb[i])
                return pa[i] < pb[i];
        }
        return false;
    }

    friend constexpr bool operator==(const WCVersion &a, const WCVersion &b) noexcept {
        return a.m_Major == b.m_Major && a.m_Minor == b.m_Minor && a.m_Revision == b.m_Revision &&
               a.m_InternalStage == b.m_InternalStage;
    }
    friend constexpr bool operator<(const WCVersion &a, const WCVersion &b) noexcept {
        return less(a, b, 4);
    }
    friend constexpr bool operator<=(const WCVersion &a, const WCVersion &b) noexcept {
        return !less(b, a, 4);
    }
    friend constexpr bool operator>(const WCVersion &a, const WCVersion &b) noexcept {
        return less(b, a, 4);
    }
    friend constexpr bool operator>=(const WCVersion &a, const WCVersion &b) noexcept {
        return !less(a, b, 4);
    }

private:
    unsigned int m_Major = 0;
    unsigned int m_Minor = 0;
    unsigned int m_Revision = 0;
    unsigned int m_InternalStage = 0;
};

MIREL_NAMESPACE_END
