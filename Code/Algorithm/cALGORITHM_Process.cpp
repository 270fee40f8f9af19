// cALGORITHM: the exec callback, the converter slots, buffers and the placement of the process
// side.

#include <cstring>

#include "Code/Algorithm/cALGORITHM.h"

MIREL_NAMESPACE_BEGIN

namespace {

// Default converters: on native targets a fraction is a plain float and an integer a 32-bit
// word; each answers the bytes it moved.
int WriteFracDefault(double value, void *destination) {
    const float word = static_cast<float>(value);
    std::memcpy(destination, &word, sizeof word);
    return sizeof word;
}
int WriteIntDefault(int value, void *destination) {
    const std::int32_t word = value;
    std::memcpy(destination, &word, sizeof word);
    return sizeof word;
}
int WriteDFracDefault(double value, void *destination) {
    std::memcpy(destination, &value, sizeof value);
    return sizeof value;
}
int ReadFracDefault(void const *source, double *value) {
    float word;
    std::memcpy(&word, source, sizeof word);
    *value = word;
    return sizeof word;
}
int ReadIntDefault(void const *source, int *value) {
    std::int32_t word;
    std::memcpy(&word, source, sizeof word);
    *value = word;
    return sizeof word;
}
int ReadDFracDefault(void const *source, double *value) {
    std::memcpy(value, source, sizeof *value);
    return sizeof *value;
}

} // namespace

void cALGORITHM::StoreDefaultConverters(cALGORITHM &alg) {
    alg.m_WriteFrac = &WriteFracDefault;
    alg.m_WriteFix = &WriteFracDefault;
    alg.m_WriteInt = &WriteIntDefault;
    alg.m_WriteDFrac = &WriteDFracDefault;
    alg.m_ReadFrac = &ReadFracDefault;
    alg.m_ReadFix = &ReadFracDefault;
    alg.m_ReadInt = &ReadIntDefault;
    alg.m_ReadDFrac = &ReadDFracDefault;
}

int cALGORITHM::CallExecCallBack(int op, void *a, void *b, void *c) const {
    if (m_ExecCallBack == nullptr)
        return eNotImplemented;
    return m_ExecCallBack(op, m_ExecRefcon, a, b, c);
}

int cALGORITHM::SetExecCallBack(WTExecCallBack callback, std::int64_t refcon) {
    m_LocateFlag = 0;
    m_WordSize = 4;
    m_ExecRefcon = refcon;
    m_ExecCallBack = callback;
    StoreDefaultConverters(*this);

    CallExecCallBack(eExecLocateFlag, &m_LocateFlag, nullptr, nullptr);
    CallExecCallBack(eExecWordSize, &m_WordSize, nullptr, nullptr);
    CallExecCallBack(eExecWriteFracConverter, &m_WriteFrac, nullptr, nullptr);
    CallExecCallBack(eExecWriteIntConverter, &m_WriteInt, nullptr, nullptr);
    CallExecCallBack(eExecWriteDFracConverter, &m_WriteDFrac, nullptr, nullptr);
    CallExecCallBack(eExecReadFracConverter, &m_ReadFrac, nullptr, nullptr);
    CallExecCallBack(eExecReadIntConverter, &m_ReadInt, nullptr, nullptr);
    CallExecCallBack(eExecReadDFracConverter, &m_ReadDFrac, nullptr, nullptr);
    if (CallExecCallBack(eExecWriteFixConverter, &m_WriteFix, nullptr, nullptr) != 0)
        m_WriteFix = m_WriteFrac;
    if (CallExecCallBack(eExecReadFixConverter, &m_ReadFix, nullptr, nullptr) != 0)
        m_ReadFix = m_ReadFrac;

    // A process side that answers nonsense must not leave the instance unusable: a word size
    // outside 1 to 8 bytes, or an emptied slot, falls back to the default.
    if (m_WordSize < 1 || m_WordSize > 8)
        m_WordSize = 4;
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
    return SetExecCallBackSelf();
}

void cALGORITHM::SetAutoCallBack(WTAutoCallBack callback, std::int64_t refcon) {
    m_AutoCallBack = callback;
    m_AutoRefcon = refcon;
}

int cALGORITHM::Locate(KPAPI_1::LocateInfo *info, int *, int *) {
    if (info == nullptr)
        return eMemNullPointer;
    m_LocateFlag = info->flag;
    m_CodeOfs = info->codeOfs;
    m_StatesOfs = info->statesOfs;
    m_CoefsOfs = info->coefsOfs;
    m_IdleCodeOfs = info->idleCodeOfs;
    return eNoErr;
}

int cALGORITHM::SetCoefsOfs(int ofs) {
    m_CoefsOfs = ofs;
    return eNoErr;
}

int cALGORITHM::SetStatesOfs(int ofs) {
    m_StatesOfs = ofs;
    return eNoErr;
}

int cALGORITHM::GetDSPReqRes(ProcessMemory::SDSPReqRes *out) const {
    if (out == nullptr)
        return eMemNullPointer;
    *out = m_DSPReqRes;
    return eNoErr;
}

int cALGORITHM::GetProcessMemoryRequest(ProcessMemory::WSProcessMemoryRequest *out) const {
    if (out == nullptr)
        return eMemNullPointer;
    out->coefsNum = m_DSPReqRes.coefsWords;
    out->statesNum = m_DSPReqRes.statesWords;
    out->extBuffs = m_DSPReqRes.extBuffs;
    out->refcon = m_ExecRefcon;
    return eNoErr;
}

int cALGORITHM::SetExtBuffInfo(void const *buffers) {
    // The shell hands back the request it filled: every external buffer with its placement.
    if (buffers == nullptr)
        return eMemNullPointer;
    auto const &request = *static_cast<ProcessMemory::WSProcessMemoryRequest const *>(buffers);
    m_ExtBuffs = request.extBuffs;
    return eNoErr;
}

int cALGORITHM::SetCurrentProcessor(SProcessorSpec const *spec) {
    if (spec == nullptr)
        return eMemNullPointer;
    m_CurrentProcessor = *spec;
    return eNoErr;
}

// ---- buffers --------------------------------------------------------------------------------

BUFFER_HEADER *cALGORITHM::NewBuffer(int kind, int memOp, int marker, int offset, int count,
                                     std::int64_t memoryRef) {
    if (count < 0 || offset < 0)
        return nullptr;
    BUFFER_HEADER request{};
    request.data = nullptr;
    request.next = nullptr;
    request.kind = kind;
    request.memOp = memOp;
    request.coefMarker = marker;
    request.refcon = m_ExecRefcon;
    request.memoryRef = memoryRef;
    request.offset = offset;
    request.count = count;
    BUFFER_HEADER *buffer = nullptr;
    if (CallExecCallBack(eExecNewBuffer, &request, &buffer, nullptr) != 0)
        return nullptr;
    return buffer;
}

BUFFER_HEADER *cALGORITHM::ChainBufs(BUFFER_HEADER *first, BUFFER_HEADER *second) {
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

int cALGORITHM::FreeBuffers(BUFFER_HEADER *&chain) {
    if (chain == nullptr)
        return eNoErr;
    const int err = CallExecCallBack(eExecFreeBuffers, chain, nullptr, nullptr);
    chain = nullptr;
    return err;
}

int cALGORITHM::SendBuffers(BUFFER_HEADER *chain, int op) {
    if (chain == nullptr)
        return eNoErr;
    return CallExecCallBack(op, chain, nullptr, nullptr);
}

int cALGORITHM::SendAndFreeBuffers(BUFFER_HEADER *&chain, int op, bool send) {
    if (chain == nullptr)
        return eNoErr;
    if (send)
        SendBuffers(chain, op);
    return FreeBuffers(chain);
}

// ---- coefficient images ---------------------------------------------------------------------

namespace {
char *ImageWord(std::vector<char> &image, int wordSize, int index) {
    if (index < 0)
        return nullptr;
    const std::size_t at = static_cast<std::size_t>(index) * static_cast<std::size_t>(wordSize);
    if (at + static_cast<std::size_t>(wordSize) + cALGORITHM::kImageSlack > image.size())
        return nullptr;
    return image.data() + at;
}
} // namespace

char *cALGORITHM::GetPointerToCoef(EPluginSetup setup, int index) {
    const int which = setup == eCurrentSetup ? m_ActiveSetup : setup;
    if (which != eSetupA && which != eSetupB)
        return nullptr;
    return ImageWord(m_CoefImage[which], m_WordSize, index);
}

char *cALGORITHM::GetPointerToBypassCoef(EPluginSetup setup, int index) {
    const int which = setup == eCurrentSetup ? m_ActiveSetup : setup;
    if (which != eSetupA && which != eSetupB)
        return nullptr;
    return ImageWord(m_BypassImage[which], m_WordSize, index);
}

int cALGORITHM::ConvertFracToCoefs(double value, int index) {
    char *word = GetPointerToCoef(eCurrentSetup, index);
    if (word == nullptr)
        return eOutOfRangeNumber;
    m_WriteFrac(value, word);
    return eNoErr;
}

int cALGORITHM::ConvertIntToCoefs(int value, int index) {
    char *word = GetPointerToCoef(eCurrentSetup, index);
    if (word == nullptr)
        return eOutOfRangeNumber;
    m_WriteInt(value, word);
    return eNoErr;
}

int cALGORITHM::ConvertFracToBypassCoefs(double value, int index) {
    char *word = GetPointerToBypassCoef(eCurrentSetup, index);
    if (word == nullptr)
        return eOutOfRangeNumber;
    m_WriteFrac(value, word);
    return eNoErr;
}

int cALGORITHM::ReadFracFromWord(void const *source, double &value) const {
    if (source == nullptr)
        return eMemNullPointer;
    m_ReadFrac(source, &value);
    return eNoErr;
}

int cALGORITHM::ReadIntFromWord(void const *source, int &value) const {
    if (source == nullptr)
        return eMemNullPointer;
    m_ReadInt(source, &value);
    return eNoErr;
}

BUFFER_HEADER *cALGORITHM::PrepareCoefBuffer(int offset, int count, char const *source,
                                             bool force) {
    if (!force || !m_ProcessActive || m_Bypass || offset < 0 || count <= 0)
        return nullptr;
    BUFFER_HEADER *buffer = NewBuffer(KPAPI_PROCESS_MEMORY::eBufferCoefs, GetMemOpWrite(), 1,
                                      m_CoefsOfs + offset, count, 0);
    if (buffer != nullptr && source != nullptr && buffer->data != nullptr)
        std::memcpy(buffer->data, source, static_cast<std::size_t>(m_WordSize) * count);
    return buffer;
}

BUFFER_HEADER *cALGORITHM::PrepareCoefBufferWithBypass(int offset, int count, bool force) {
    if (!force || !m_ProcessActive || offset < 0 || count <= 0)
        return nullptr;
    const int setup = m_ActiveSetup == eSetupB ? 1 : 0;
    std::vector<char> const &image = m_Bypass ? m_BypassImage[setup] : m_CoefImage[setup];
    const std::size_t from = static_cast<std::size_t>(offset) * m_WordSize;
    const std::size_t bytes = static_cast<std::size_t>(count) * m_WordSize;
    if (from + bytes + cALGORITHM::kImageSlack > image.size())
        return nullptr;
    BUFFER_HEADER *buffer = NewBuffer(KPAPI_PROCESS_MEMORY::eBufferCoefs, GetMemOpWrite(), 1,
                                      m_CoefsOfs + offset, count, 0);
    if (buffer != nullptr && buffer->data != nullptr)
        std::memcpy(buffer->data, image.data() + from, bytes);
    return buffer;
}

MIREL_NAMESPACE_END
