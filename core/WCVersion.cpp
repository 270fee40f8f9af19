#include "core/WCVersion.h"

MIREL_NAMESPACE_BEGIN

namespace {

constexpr unsigned int kMaxPart = 0xFFFFFFFFu;

// Reads an unsigned decimal number at `text`; false when there is no digit. A number too large
// for 32 bits saturates rather than wrapping into a small, plausible version.
bool ReadPart(const char *&text, unsigned int &part) noexcept {
    if (*text < '0' || *text > '9')
        return false;
    unsigned long long value = 0;
    while (*text >= '0' && *text <= '9') {
        if (value <= kMaxPart)
            value = value * 10 + static_cast<unsigned>(*text - '0');
        ++text;
    }
    part = value > kMaxPart ? kMaxPart : static_cast<unsigned int>(value);
    return true;
}

} // namespace

void WCVersion::ReadFromString(const char *text) noexcept {
    m_Major = m_Minor = m_Revision = m_InternalStage = 0;
    if (text == nullptr)
        return;
    while (*text == ' ' || *text == '\t')
        ++text;
    unsigned int *parts[4] = {&m_Major, &m_Minor, &m_Revision, &m_InternalStage};
    for (unsigned int i = 0; i < 4; ++i) {
        if (!ReadPart(text, *parts[i]))
            return;
        if (*text != '.')
            return;
        ++text;
    }
}

WCFixedString<63> WCVersion::GetString(unsigned int parts) const noexcept {
    const unsigned int values[4] = {m_Major, m_Minor, m_Revision, m_InternalStage};
    WCFixedString<63> text;
    for (unsigned int i = 0; i < parts && i < 4; ++i) {
        if (i != 0)
            text << '.';
        text << values[i];
    }
    return text;
}

MIREL_NAMESPACE_END
