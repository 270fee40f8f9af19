#include "Code/Process/WCProcessMemory.h"

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <thread>

#include "core/WCFourCC.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace {

constexpr std::uint32_t kXMem = WCFourCC("XMEM").GetValue();
constexpr std::uint32_t kYMem = WCFourCC("YMEM").GetValue();

} // namespace

WCProcessMemory::WCProcessMemory(WSOwnerFlags flags) : m_Flags(flags) {}

// ---- callback -------------------------------------------------------------------------------

void WCProcessMemory::SetExecCallBack(WTExecCallBack callback, std::int64_t refcon) {
    m_LocateFlag = 0;
    m_WordSize = 4;
    m_ExecRefcon = refcon;
    m_ExecCallBack = callback;
    m_Converters.SetDefaults();
    auto &slots = m_Converters;
    CallExecCallBack(eExecLocateFlag, &m_LocateFlag, nullptr, nullptr);
    CallExecCallBack(eExecWordSize, &m_WordSize, nullptr, nullptr);
    CallExecCallBack(eExecWriteFracConverter, &slots.m_WriteFrac, nullptr, nullptr);
    CallExecCallBack(eExecWriteIntConverter, &slots.m_WriteInt, nullptr, nullptr);
    CallExecCallBack(eExecWriteDFracConverter, &slots.m_WriteDFrac, nullptr, nullptr);
    CallExecCallBack(eExecReadFracConverter, &slots.m_ReadFrac, nullptr, nullptr);
    CallExecCallBack(eExecReadIntConverter, &slots.m_ReadInt, nullptr, nullptr);
    CallExecCallBack(eExecReadDFracConverter, &slots.m_ReadDFrac, nullptr, nullptr);
    // A side without a fixed-point encoding of its own gets fractions where it asked fixed values.
    if (CallExecCallBack(eExecWriteFixConverter, &slots.m_WriteFix, nullptr, nullptr) != 0)
        slots.m_WriteFix = slots.m_WriteFrac;
    if (CallExecCallBack(eExecReadFixConverter, &slots.m_ReadFix, nullptr, nullptr) != 0)
        slots.m_ReadFix = slots.m_ReadFrac;
    // A word size outside 1 to 8 bytes would make every byte count wrong.
    if (m_WordSize < 1 || m_WordSize > 8)
        m_WordSize = 4;
    slots.RepairEmptySlots();
}

// ---- placement, images, ports ---------------------------------------------------------------

int WCProcessMemory::Locate(KPAPI_1::LocateInfo const *info) {
    if (info == nullptr)
        return eMemNullPointer;
    m_LocateFlag = info->flag;
    m_CodeOfs = info->codeOfs;
    m_StatesOfs = info->statesOfs;
    m_CoefsOfs = info->coefsOfs;
    m_IdleCodeOfs = info->idleCodeOfs;
    return eNoErr;
}

void WCProcessMemory::SizeImages(std::size_t coefs, std::size_t states) {
    const std::size_t word = static_cast<std::size_t>(m_WordSize);
    for (int setup = 0; setup < 2; ++setup) {
        m_CoefImage[setup].assign(coefs * word + kImageSlack, 0);
        m_BypassImage[setup].assign(coefs * word + kImageSlack, 0);
    }
    m_InitialStates.assign(states * word + kImageSlack, 0);
}

void WCProcessMemory::CopyImages(int from, int to) {
    m_CoefImage[to & 1] = m_CoefImage[from & 1];
    m_BypassImage[to & 1] = m_BypassImage[from & 1];
}

void WCProcessMemory::SizePorts(int inputs, int outputs) {
    m_InputPorts.assign(static_cast<std::size_t>(inputs > 0 ? inputs : 0), sIO_PORT{});
    m_OutputPorts.assign(static_cast<std::size_t>(outputs > 0 ? outputs : 0), sIO_PORT{});
}

namespace {
sIO_PORT *RefreshPorts(std::vector<sIO_PORT> &ports, int const *routing) {
    if (ports.empty())
        return nullptr;
    for (std::size_t i = 0; i < ports.size(); ++i) {
        if (routing != nullptr) {
            ports[i].routing = routing[i];
            ports[i].flags |= sIO_PORT::kConnected | sIO_PORT::kRoutedByHost;
        } else {
            ports[i].routing = sIO_PORT::kNoRouting;
            ports[i].flags = (ports[i].flags | sIO_PORT::kConnected) & ~sIO_PORT::kRoutedByHost;
        }
    }
    return ports.data();
}
} // namespace

sIO_PORT *WCProcessMemory::RefreshInputPORTInfo(int const *routing) {
    return RefreshPorts(m_InputPorts, routing);
}

sIO_PORT *WCProcessMemory::RefreshOutputPORTInfo(int const *routing) {
    return RefreshPorts(m_OutputPorts, routing);
}

// ---- buffers --------------------------------------------------------------------------------

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::NewBuffer(int kind, int memOp, int marker,
                                                           sEXT_BUFF const *ext) {
    if (ext == nullptr)
        return nullptr;
    return NewBuffer(kind, memOp, marker, static_cast<int>(ext->offset),
                     static_cast<int>(ext->size), ext->memoryRef);
}

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::ChainBufs(BUFFER_HEADER *first,
                                                           BUFFER_HEADER *second) {
    if (first == nullptr)
        return second;
    if (second == nullptr)
        return first;
    BUFFER_HEADER *head = nullptr;
    if (CallExecCallBack(eExecChainBuffers, first, second, &head) == 0)
        return head;
    // Nothing comes back to free, so both chains are freed here rather than abandoned to the
    // process side. A side that linked them before it failed has one chain left to free.
    bool linked = false;
    for (BUFFER_HEADER const *buffer = first; buffer != nullptr && !linked; buffer = buffer->next)
        linked = buffer == second;
    FreeBuffers(first);
    if (!linked)
        FreeBuffers(second);
    return nullptr;
}

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::BreakChainAtLastBuffer(BUFFER_HEADER *chain) {
    if (chain == nullptr || chain->next == nullptr)
        return nullptr;
    BUFFER_HEADER *beforeLast = chain;
    while (beforeLast->next->next != nullptr)
        beforeLast = beforeLast->next;
    BUFFER_HEADER *last = beforeLast->next;
    beforeLast->next = nullptr;
    return last;
}

int WCProcessMemory::SendFreeAndSplitIntoSmallBuffers(int kind, int total, sEXT_BUFF const *ext,
                                                      int const *values, unsigned int sleepMs,
                                                      int piece) {
    if (total <= 0)
        return eNoErr;
    if (ext == nullptr || values == nullptr)
        return eMemNullPointer;
    if (piece <= 0)
        return eOutOfRangeNumber;
    int result = eNoErr;
    for (int done = 0; done < total; done += piece) {
        const int count = total - done < piece ? total - done : piece;
        BUFFER_HEADER *buffer = NewBuffer(
            kind, m_MemOpCodes[0], 0, static_cast<int>(ext->offset) + done, count, ext->memoryRef);
        if (buffer == nullptr || buffer->data == nullptr) {
            FreeBuffers(buffer);
            result = -1;
            continue;
        }
        char *word = static_cast<char *>(buffer->data);
        for (int i = 0; i < count; ++i, word += m_WordSize)
            m_Converters.m_WriteInt(values[done + i], word);
        SendBuffers(buffer, eExecSendBuffersInit);
        FreeBuffers(buffer);
        // A networked process side drops a flood of large writes; the pause paces them.
        if (sleepMs != 0 && m_Flags.isNetShell != nullptr && *m_Flags.isNetShell &&
            done + piece < total)
            std::this_thread::sleep_for(std::chrono::milliseconds(sleepMs));
    }
    return result;
}

// ---- coefficients ---------------------------------------------------------------------------

char *WCProcessMemory::GetPointerToBypassCoef(EPluginSetup setup, int index) {
    const int which = SetupIndex(setup);
    return which < 0 ? nullptr : ImageWord(m_BypassImage[which], index);
}

char *WCProcessMemory::GetPointerToCoefWithBypass(EPluginSetup setup, int index) {
    return Bypassed() ? GetPointerToBypassCoef(setup, index) : GetPointerToCoef(setup, index);
}

template <class Write>
int WCProcessMemory::ConvertInto(char *word, Write write) {
    if (word == nullptr)
        return eOutOfRangeNumber;
    write(word);
    return eNoErr;
}

int WCProcessMemory::ConvertDFracToCoefs(double value, int index) {
    return ConvertInto(GetPointerToCoef(eCurrentSetup, index),
                       [&](char *w) { m_Converters.m_WriteDFrac(value, w); });
}

int WCProcessMemory::ConvertFixToCoefs(int value, int index) {
    return ConvertInto(GetPointerToCoef(eCurrentSetup, index),
                       [&](char *w) { m_Converters.m_WriteFix(value, w); });
}

int WCProcessMemory::ConvertIntToCoefs(int value, int index) {
    return ConvertInto(GetPointerToCoef(eCurrentSetup, index),
                       [&](char *w) { m_Converters.m_WriteInt(value, w); });
}

int WCProcessMemory::ConvertFracToBypassCoefs(double value, int index) {
    return ConvertInto(GetPointerToBypassCoef(eCurrentSetup, index),
                       [&](char *w) { m_Converters.m_WriteFrac(value, w); });
}

int WCProcessMemory::ConvertFracToCoefsWithBypass(double value, int index) {
    return ConvertInto(GetPointerToCoefWithBypass(eCurrentSetup, index),
                       [&](char *w) { m_Converters.m_WriteFrac(value, w); });
}

int WCProcessMemory::ConvertDFracToCoefsWithBypass(double value, int index) {
    return ConvertInto(GetPointerToCoefWithBypass(eCurrentSetup, index),
                       [&](char *w) { m_Converters.m_WriteDFrac(value, w); });
}

int WCProcessMemory::ConvertFixToCoefsWithBypass(int value, int index) {
    return ConvertInto(GetPointerToCoefWithBypass(eCurrentSetup, index),
                       [&](char *w) { m_Converters.m_WriteFix(value, w); });
}

int WCProcessMemory::ConvertIntToCoefsWithBypass(int value, int index) {
    return ConvertInto(GetPointerToCoefWithBypass(eCurrentSetup, index),
                       [&](char *w) { m_Converters.m_WriteInt(value, w); });
}

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::PrepareCoefBuffer(int offset, int count,
                                                                   char const *source, bool force) {
    if (!force || !Active() || Bypassed() || offset < 0 || count <= 0)
        return nullptr;
    BUFFER_HEADER *buffer = NewBuffer(KPAPI_PROCESS_MEMORY::eBufferCoefs, m_MemOpCodes[0], 1,
                                      m_CoefsOfs + offset, count, 0);
    if (buffer != nullptr && source != nullptr && buffer->data != nullptr)
        std::memcpy(buffer->data, source, static_cast<std::size_t>(m_WordSize) * count);
    return buffer;
}

int WCProcessMemory::ReadBack(int kind, int offset, int count, std::int64_t memoryRef,
                              std::vector<char> &out) {
    if (!Active())
        return eWrongObjectState;
    BUFFER_HEADER *buffer =
        NewBuffer(kind, m_MemOpCodes[1], kind == KPAPI_PROCESS_MEMORY::eBufferCoefs, offset, count,
                  memoryRef);
    if (buffer == nullptr || buffer->data == nullptr) {
        FreeBuffers(buffer);
        return eMemNewFailed;
    }
    const int err = SendBuffers(buffer, eExecSendBuffersInit);
    if (err == eNoErr) {
        auto const *words = static_cast<char const *>(buffer->data);
        out.assign(words, words + static_cast<std::size_t>(count) * m_WordSize);
    }
    FreeBuffers(buffer);
    return err;
}

int WCProcessMemory::VerifyCompCoefs(int offset, int count) {
    if (offset < 0 || count <= 0)
        return eOutOfRangeNumber;
    const int setup = SetupIndex(eCurrentSetup) == eSetupB ? 1 : 0;
    std::vector<char> const &image = Bypassed() ? m_BypassImage[setup] : m_CoefImage[setup];
    const std::size_t from = static_cast<std::size_t>(offset) * m_WordSize;
    const std::size_t bytes = static_cast<std::size_t>(count) * m_WordSize;
    if (from + bytes + kImageSlack > image.size())
        return eOutOfRangeNumber;
    std::vector<char> words;
    const int err =
        ReadBack(KPAPI_PROCESS_MEMORY::eBufferCoefs, m_CoefsOfs + offset, count, 0, words);
    if (err != eNoErr)
        return err;
    return std::memcmp(words.data(), image.data() + from, bytes) == 0 ? eNoErr : eValueNotFound;
}

// ---- states ---------------------------------------------------------------------------------

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::PrepareStatesBuffer(int memOp, int offset,
                                                                     int count) {
    if (!Active())
        return nullptr;
    return NewBuffer(KPAPI_PROCESS_MEMORY::eBufferStates, memOp, 0, m_StatesOfs + offset, count, 0);
}

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::PrepareStatesReadBuffer(int offset, int count) {
    return PrepareStatesBuffer(m_MemOpCodes[1], offset, count);
}

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::PrepareStatesWriteBuffer(int offset, int count) {
    return PrepareStatesBuffer(m_MemOpCodes[0], offset, count);
}

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::PrepareStatesReadWriteBuffer(int offset,
                                                                              int count) {
    return PrepareStatesBuffer(m_MemOpCodes[2], offset, count);
}

int WCProcessMemory::InitOneState(int index, int value) {
    return ConvertInto(ImageWord(m_InitialStates, index),
                       [&](char *w) { m_Converters.m_WriteInt(value, w); });
}

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::InitStatesBuffer() {
    if (m_InitialStates.size() <= kImageSlack)
        return nullptr;
    const int count = static_cast<int>((m_InitialStates.size() - kImageSlack) / m_WordSize);
    BUFFER_HEADER *buffer = PrepareStatesWriteBuffer(0, count);
    if (buffer != nullptr && buffer->data != nullptr)
        std::memcpy(buffer->data, m_InitialStates.data(),
                    static_cast<std::size_t>(count) * m_WordSize);
    return buffer;
}

int WCProcessMemory::SendOneState(int index, int memOp, char const *word) {
    if (index < 0)
        return eOutOfRangeNumber;
    if (!Active())
        return eWrongObjectState;
    BUFFER_HEADER *buffer = PrepareStatesBuffer(memOp, index, 1);
    if (buffer == nullptr || buffer->data == nullptr) {
        FreeBuffers(buffer);
        return eMemNewFailed;
    }
    std::memcpy(buffer->data, word, static_cast<std::size_t>(m_WordSize));
    const int err = SendBuffers(buffer, eExecSendBuffers);
    const int freed = FreeBuffers(buffer);
    return err != eNoErr ? err : freed;
}

// The word is built on the stack: a meter or a held note may set a state from a hot path.
int WCProcessMemory::SetSingleStateInt(int index, int value) {
    alignas(8) char word[8 + kImageSlack] = {};
    m_Converters.m_WriteInt(value, word);
    return SendOneState(index, m_MemOpCodes[0], word);
}

int WCProcessMemory::SetSingleStateFloat(int index, double value) {
    alignas(8) char word[8 + kImageSlack] = {};
    m_Converters.m_WriteFrac(value, word);
    return SendOneState(index, m_MemOpCodes[0], word);
}

int WCProcessMemory::GetInitialStates(char *out) const {
    if (out == nullptr)
        return eMemNullPointer;
    if (m_InitialStates.size() > kImageSlack)
        std::memcpy(out, m_InitialStates.data(), m_InitialStates.size() - kImageSlack);
    return eNoErr;
}

// ---- externals ------------------------------------------------------------------------------

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::PrepareExtBuffer(sEXT_BUFF const *ext, int memOp,
                                                                  int offset, int count) {
    if (ext == nullptr || !Active() || offset < 0 || count < 0)
        return nullptr;
    // A run past the end of the external would land in its neighbour.
    if (static_cast<std::uint64_t>(offset) + static_cast<std::uint64_t>(count) > ext->size)
        return nullptr;
    int kind;
    if (ext->memSpace == kXMem)
        kind = KPAPI_PROCESS_MEMORY::eBufferExtX;
    else if (ext->memSpace == kYMem)
        kind = KPAPI_PROCESS_MEMORY::eBufferExtY;
    else
        return nullptr;
    return NewBuffer(kind, memOp, 0, static_cast<int>(ext->offset) + offset, count, ext->memoryRef);
}

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::PrepareExtReadBuffer(sEXT_BUFF const *ext,
                                                                      int offset, int count) {
    return PrepareExtBuffer(ext, m_MemOpCodes[1], offset, count);
}

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::PrepareExtWriteBuffer(sEXT_BUFF const *ext,
                                                                       int offset, int count) {
    return PrepareExtBuffer(ext, m_MemOpCodes[0], offset, count);
}

WCProcessMemory::BUFFER_HEADER *WCProcessMemory::PrepareExtReadWriteBuffer(sEXT_BUFF const *ext,
                                                                           int offset, int count) {
    return PrepareExtBuffer(ext, m_MemOpCodes[2], offset, count);
}

template <class T, class Put>
int WCProcessMemory::InitExternal(sEXT_BUFF const *ext, int offset, int count, T const *values,
                                  int perValue, Put put) {
    if (ext == nullptr || values == nullptr)
        return eMemNullPointer;
    if (count <= 0)
        return eOutOfRangeNumber;
    if (!Active())
        return eWrongObjectState;
    BUFFER_HEADER *buffer = PrepareExtWriteBuffer(ext, offset * perValue, count * perValue);
    if (buffer == nullptr || buffer->data == nullptr) {
        FreeBuffers(buffer);
        return eMemNewFailed;
    }
    char *word = static_cast<char *>(buffer->data);
    for (int i = 0; i < count; ++i, word += perValue * m_WordSize)
        put(values[i], word);
    const int err = SendBuffers(buffer, eExecSendBuffersInit);
    FreeBuffers(buffer);
    if (err == eNoErr)
        for (std::size_t i = 0; i < m_ExtBuffs.size(); ++i)
            if (&m_ExtBuffs[i] == ext ||
                (ext->memoryRef != 0 && m_ExtBuffs[i].memoryRef == ext->memoryRef))
                m_ExtInitialized[i] = true;
    return err;
}

int WCProcessMemory::InitExternalFromArray(sEXT_BUFF const *ext, int offset, int count,
                                           int const *values) {
    return InitExternal(ext, offset, count, values, 1,
                        [&](int v, char *w) { m_Converters.m_WriteInt(v, w); });
}

int WCProcessMemory::InitExternalFromArray(sEXT_BUFF const *ext, int offset, int count,
                                           float const *values) {
    return InitExternal(ext, offset, count, values, 1,
                        [&](float v, char *w) { m_Converters.m_WriteFrac(v, w); });
}

int WCProcessMemory::InitExternalFromArray(sEXT_BUFF const *ext, int offset, int count,
                                           double const *values) {
    return InitExternal(ext, offset, count, values, 1,
                        [&](double v, char *w) { m_Converters.m_WriteFrac(v, w); });
}

int WCProcessMemory::InitExternalFromArray(sEXT_BUFF const *ext, int offset, int count,
                                           cmplx const *values) {
    return InitExternal(ext, offset, count, values, 2, [&](cmplx const &v, char *w) {
        m_Converters.m_WriteFrac(v.re, w);
        m_Converters.m_WriteFrac(v.im, w + m_WordSize);
    });
}

int WCProcessMemory::InitOneExternal(int extIndex, int offset, int value) {
    sEXT_BUFF *ext = GetExternalBuffer(extIndex);
    if (ext == nullptr)
        return eOutOfRangeNumber;
    return InitOneExternalByPtr(ext, offset, value);
}

int WCProcessMemory::InitOneExternalByPtr(sEXT_BUFF const *ext, int offset, int value) {
    return InitExternalFromArray(ext, offset, 1, &value);
}

WCProcessMemory::sEXT_BUFF *WCProcessMemory::GetExternalBuffer(int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= m_ExtBuffs.size())
        return nullptr;
    return &m_ExtBuffs[static_cast<std::size_t>(index)];
}

std::uint64_t WCProcessMemory::GetExtAccessCount() const {
    std::uint64_t sum = 0;
    for (auto const &ext : m_ExtBuffs)
        sum += ext.accessCount;
    return sum;
}

int WCProcessMemory::SetExtBuffInfo(std::vector<sEXT_BUFF> const &buffers) {
    m_ExtBuffs = buffers;
    m_ExtInitialized.assign(m_ExtBuffs.size(), false);
    return eNoErr;
}

bool WCProcessMemory::IsSharedExternalInitialized(int index) const {
    return index >= 0 && static_cast<std::size_t>(index) < m_ExtInitialized.size() &&
           m_ExtInitialized[static_cast<std::size_t>(index)];
}

// ---- meters and diagnosis -------------------------------------------------------------------

int WCProcessMemory::ReadVU(int offset, int &out) {
    return ReadVU(offset, false, 0, out);
}

int WCProcessMemory::ReadVU(int offset, bool write, int value, int &out) {
    if (!Active())
        return eWrongObjectState;
    BUFFER_HEADER *buffer =
        PrepareStatesBuffer(write ? m_MemOpCodes[2] : m_MemOpCodes[1], offset, 1);
    if (buffer == nullptr || buffer->data == nullptr) {
        FreeBuffers(buffer);
        return eMemNewFailed;
    }
    if (write)
        m_Converters.m_WriteInt(value, buffer->data);
    const int err = SendBuffers(buffer, eExecSendBuffersInit);
    if (err == eNoErr)
        m_Converters.m_ReadInt(buffer->data, &out);
    FreeBuffers(buffer);
    return err;
}

namespace {

void AppendLine(std::string &out, char const *text) {
    out += text;
    out += '\n';
}

} // namespace

int WCProcessMemory::DumpDSP(int type, int offset, int count, std::string &out) {
    int kind;
    int base;
    char const *section;
    char const *columns;
    switch (type) {
    case eDumpCoefs:
        kind = KPAPI_PROCESS_MEMORY::eBufferCoefs;
        base = m_CoefsOfs;
        section = "======== Coefs ========";
        columns = " ===  index: int32_t = double = hex   ====";
        break;
    case eDumpStates:
        kind = KPAPI_PROCESS_MEMORY::eBufferStates;
        base = m_StatesOfs;
        section = "======== States ========";
        columns = " ===  index: int32_t = double  ====";
        break;
    case eDumpProgram:
        if (m_Flags.isNative != nullptr && *m_Flags.isNative) {
            AppendLine(out, "Invalid request to read program memory in native");
            return eWrongObjectState;
        }
        kind = KPAPI_PROCESS_MEMORY::eBufferProgram;
        base = m_CodeOfs;
        section = "======== Program ========";
        columns = " ===  index: hex   ====";
        break;
    default: AppendLine(out, "Invalid DSP type to dump"); return eOutOfRangeNumber;
    }
    if (offset < 0 || count <= 0)
        return eOutOfRangeNumber;
    std::vector<char> words;
    const int err = ReadBack(kind, base + offset, count, 0, words);
    if (err != eNoErr)
        return err;
    AppendLine(out, section);
    AppendLine(out, columns);
    char line[96];
    for (int i = 0; i < count; ++i) {
        char const *word = words.data() + static_cast<std::size_t>(i) * m_WordSize;
        int asInt = 0;
        double asFrac = 0.0;
        std::uint32_t bits = 0;
        std::memcpy(&bits, word, m_WordSize < 4 ? m_WordSize : 4);
        m_Converters.m_ReadInt(word, &asInt);
        m_Converters.m_ReadFrac(word, &asFrac);
        if (type == eDumpCoefs)
            std::snprintf(line, sizeof line, "%d: %d = %g = 0x%08" PRIX32, offset + i, asInt,
                          asFrac, bits);
        else if (type == eDumpStates)
            std::snprintf(line, sizeof line, "%d: %d = %g", offset + i, asInt, asFrac);
        else
            std::snprintf(line, sizeof line, "%d: 0x%08" PRIX32, offset + i, bits);
        AppendLine(out, line);
    }
    return eNoErr;
}

int WCProcessMemory::DumpDSPToScreen(int type, int offset, int count) {
    std::string text;
    const int err = DumpDSP(type, offset, count, text);
    std::fputs(text.c_str(), stdout);
    return err;
}

int WCProcessMemory::DumpAllDSPExternals(std::string &out) {
    AppendLine(out, "======== DSP Externals ========");
    int result = eNoErr;
    char line[96];
    for (std::size_t e = 0; e < m_ExtBuffs.size(); ++e) {
        sEXT_BUFF const &ext = m_ExtBuffs[e];
        const WCFourCC space(ext.memSpace);
        std::snprintf(line, sizeof line, "external %zu: %c%c%c%c size %" PRIu32, e,
                      space.GetChar(0), space.GetChar(1), space.GetChar(2), space.GetChar(3),
                      ext.size);
        AppendLine(out, line);
        AppendLine(out, " ===  index: int32_t = double  ====");
        const int kind = ext.memSpace == kYMem ? KPAPI_PROCESS_MEMORY::eBufferExtY
                                               : KPAPI_PROCESS_MEMORY::eBufferExtX;
        std::vector<char> words;
        const int err = ext.size == 0 ? eNoErr
                                      : ReadBack(kind, static_cast<int>(ext.offset),
                                                 static_cast<int>(ext.size), ext.memoryRef, words);
        if (err != eNoErr) {
            if (result == eNoErr)
                result = err;
            continue;
        }
        for (std::uint32_t i = 0; i < ext.size; ++i) {
            char const *word = words.data() + static_cast<std::size_t>(i) * m_WordSize;
            int asInt = 0;
            double asFrac = 0.0;
            m_Converters.m_ReadInt(word, &asInt);
            m_Converters.m_ReadFrac(word, &asFrac);
            std::snprintf(line, sizeof line, "%" PRIu32 ": %d = %g", i, asInt, asFrac);
            AppendLine(out, line);
        }
    }
    return result;
}

int WCProcessMemory::DumpAllDSPExternalsToScreen() {
    std::string text;
    const int err = DumpAllDSPExternals(text);
    std::fputs(text.c_str(), stdout);
    return err;
}

MIREL_NAMESPACE_END
