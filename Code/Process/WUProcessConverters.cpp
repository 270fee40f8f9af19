#include "Code/Process/WUProcessConverters.h"

#include <cstdint>
#include <cstring>

MIREL_NAMESPACE_BEGIN

namespace ProcessMemory {

int WUProcessConverters::WriteFracDefault(double value, void *destination) {
    const float word = static_cast<float>(value);
    std::memcpy(destination, &word, sizeof word);
    return sizeof word;
}

int WUProcessConverters::WriteIntDefault(int value, void *destination) {
    const std::int32_t word = value;
    std::memcpy(destination, &word, sizeof word);
    return sizeof word;
}

int WUProcessConverters::WriteDFracDefault(double value, void *destination) {
    std::memcpy(destination, &value, sizeof value);
    return sizeof value;
}

int WUProcessConverters::ReadFracDefault(void const *source, double *value) {
    float word;
    std::memcpy(&word, source, sizeof word);
    *value = word;
    return sizeof word;
}

int WUProcessConverters::ReadIntDefault(void const *source, int *value) {
    std::int32_t word;
    std::memcpy(&word, source, sizeof word);
    *value = word;
    return sizeof word;
}

int WUProcessConverters::ReadDFracDefault(void const *source, double *value) {
    std::memcpy(value, source, sizeof *value);
    return sizeof *value;
}

void WUProcessConverters::SetDefaults() {
    m_WriteFrac = &WriteFracDefault;
    m_WriteFix = &WriteFracDefault;
    m_WriteInt = &WriteIntDefault;
    m_WriteDFrac = &WriteDFracDefault;
    m_ReadFrac = &ReadFracDefault;
    m_ReadFix = &ReadFracDefault;
    m_ReadInt = &ReadIntDefault;
    m_ReadDFrac = &ReadDFracDefault;
}

void WUProcessConverters::RepairEmptySlots() {
    if (m_WriteFrac == nullptr)
        m_WriteFrac = &WriteFracDefault;
    if (m_WriteFix == nullptr)
        m_WriteFix = m_WriteFrac;
    if (m_WriteInt == nullptr)
        m_WriteInt = &WriteIntDefault;
    if (m_WriteDFrac == nullptr)
        m_WriteDFrac = &WriteDFracDefault;
    if (m_ReadFrac == nullptr)
        m_ReadFrac = &ReadFracDefault;
    if (m_ReadFix == nullptr)
        m_ReadFix = m_ReadFrac;
    if (m_ReadInt == nullptr)
        m_ReadInt = &ReadIntDefault;
    if (m_ReadDFrac == nullptr)
        m_ReadDFrac = &ReadDFracDefault;
}

} // namespace ProcessMemory

MIREL_NAMESPACE_END
