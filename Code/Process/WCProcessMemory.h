#pragma once

#include <array>
#include <cstring>
#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "Code/Algorithm/EPluginSetup.h"
#include "Code/Process/KPAPIProcessMemory.h"
#include "Code/Process/WUProcessConverters.h"
#include "Code/Process/sIO_PORT.h"
#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// A complex sample of an external table: two fractions, real part first.
struct cmplx {
    float re = 0.0f;
    float im = 0.0f;
};

// What the logic side of one instance knows of its process side: the exec callback and its
// refcon, the word size, the locate flag and offsets, the converter slots, the coefficient and
// bypass images of both setups, the initial states, the external buffers and the ports. It builds
// the buffers that carry words across and sends them; it never writes process memory itself.
//
// The owner (cALGORITHM) keeps the process-active, bypass and active-setup flags; this object
// reads them through the pointers it was built with, so there is one copy of each.
//
// Life cycle: SetExecCallBack, then SizeImages/SizePorts (InitData), Locate and SetExtBuffInfo
// from the shell, then the buffer operations while the process is active.
// Threads: building and sending need no lock of their own; the update path's caller holds the
// algorithm's process lock, and the process side serialises sends.
class WCProcessMemory {
public:
    using BUFFER_HEADER = KPAPI_PROCESS_MEMORY::BUFFER_HEADER;
    using sEXT_BUFF = ProcessMemory::sEXT_BUFF;

    // The owner's flags, read at each call.
    struct WSOwnerFlags {
        bool const *processActive = nullptr;
        bool const *bypass = nullptr;
        std::atomic<EPluginSetup> const *activeSetup = nullptr;
        bool const *isNative = nullptr;
        bool const *isNetShell = nullptr;
    };

    // The memories a dump can show.
    enum EDumpType : int { eDumpStates = 0, eDumpCoefs = 1, eDumpProgram = 2 };

    // The widest word any converter may touch. Images keep this much slack past their last word,
    // so a process side that announces a narrower word than its converters write cannot make a
    // converter run past the image.
    static constexpr std::size_t kImageSlack = 8;

    explicit WCProcessMemory(WSOwnerFlags flags);
    WCProcessMemory(WCProcessMemory const &) = delete;
    WCProcessMemory &operator=(WCProcessMemory const &) = delete;

    // ---- callback [main-thread] ------------------------------------------------------------
    // Clears the locate flag, word size 4, stores the callback, default converters; then asks
    // operations 11, 12, 7, 8, 20, 9, 10, 21, and 13 and 14, whose failure makes the fixed slot
    // copy the fraction slot.
    void SetExecCallBack(WTExecCallBack callback, std::int64_t refcon);
    WTExecCallBack GetExecCallBack() const { return m_ExecCallBack; }
    std::int64_t GetExecRefcon() const { return m_ExecRefcon; }
    // [any-thread] eNotImplemented while no callback is set.
    int CallExecCallBack(int op, void *a, void *b, void *c) const {
        return m_ExecCallBack == nullptr ? eNotImplemented
                                         : m_ExecCallBack(op, m_ExecRefcon, a, b, c);
    }
    ProcessMemory::WUProcessConverters const &Converters() const { return m_Converters; }

    // ---- placement --------------------------------------------------------------------------
    int Locate(KPAPI_1::LocateInfo const *info);
    int m_CodeOfs = 0;
    int m_IdleCodeOfs = 0;
    int m_CoefsOfs = 0;
    int m_StatesOfs = 0;
    int m_LocateFlag = 0;
    int m_WordSize = 4;
    // Write, read, read-write and extended write codes of the process side.
    std::array<int, 4> m_MemOpCodes{0, 1, 2, 4};

    // ---- images and ports [main-thread] ----------------------------------------------------
    // Both setups' coefficient and bypass images (and the initial states) to `coefs` words,
    // zero filled.
    void SizeImages(std::size_t coefs, std::size_t states);
    // The images of setup `from` copied into setup `to`.
    void CopyImages(int from, int to);
    void SizePorts(int inputs, int outputs);
    std::vector<char> &CoefImage(int setup) { return m_CoefImage[setup & 1]; }
    std::vector<char> &BypassImage(int setup) { return m_BypassImage[setup & 1]; }
    std::vector<sIO_PORT> const &InputPorts() const { return m_InputPorts; }
    std::vector<sIO_PORT> const &OutputPorts() const { return m_OutputPorts; }
    // Every port takes its routing entry (connected, routed by the host); with null routing each
    // port is connected without a host routing. Null when there are no ports.
    sIO_PORT *RefreshInputPORTInfo(int const *routing);
    sIO_PORT *RefreshOutputPORTInfo(int const *routing);

    // ---- buffers [any-thread] --------------------------------------------------------------
    BUFFER_HEADER *NewBuffer(int kind, int memOp, int marker, int offset, int count,
                             std::int64_t memoryRef);
    // A buffer over the whole of an external: its offset, size and reference.
    BUFFER_HEADER *NewBuffer(int kind, int memOp, int marker, sEXT_BUFF const *ext);
    BUFFER_HEADER *ChainBufs(BUFFER_HEADER *first, BUFFER_HEADER *second);
    // Unlinks the last buffer of a chain and answers it; a chain of one (or none) stays whole
    // and the answer is null.
    static BUFFER_HEADER *BreakChainAtLastBuffer(BUFFER_HEADER *chain);
    // The three below run on every value change, hence inline.
    int FreeBuffers(BUFFER_HEADER *&chain) {
        if (chain == nullptr)
            return eNoErr;
        const int err = CallExecCallBack(eExecFreeBuffers, chain, nullptr, nullptr);
        chain = nullptr;
        return err;
    }
    int SendBuffers(BUFFER_HEADER *chain, int op) {
        return chain == nullptr ? eNoErr : CallExecCallBack(op, chain, nullptr, nullptr);
    }
    int SendAndFreeBuffers(BUFFER_HEADER *&chain, int op, bool send) {
        if (chain == nullptr)
            return eNoErr;
        if (send)
            SendBuffers(chain, op);
        return FreeBuffers(chain);
    }
    // Sends `total` words of `values` into an external in pieces of at most `piece` words, each
    // made, sent (operation 1) and freed on its own. 0, or -1 when some piece could not be made.
    int SendFreeAndSplitIntoSmallBuffers(int kind, int total, sEXT_BUFF const *ext,
                                         int const *values, unsigned int sleepMs, int piece);

    // ---- coefficients ----------------------------------------------------------------------
    char *GetPointerToCoef(EPluginSetup setup, int index) {
        const int which = SetupIndex(setup);
        return which < 0 ? nullptr : ImageWord(m_CoefImage[which], index);
    }
    char *GetPointerToBypassCoef(EPluginSetup setup, int index);
    // The word in the image the bypass flag picks.
    char *GetPointerToCoefWithBypass(EPluginSetup setup, int index);
    // Inline: the word a plug-in writes on every value change.
    int ConvertFracToCoefs(double value, int index) {
        char *word = GetPointerToCoef(eCurrentSetup, index);
        if (word == nullptr)
            return eOutOfRangeNumber;
        m_Converters.m_WriteFrac(value, word);
        return eNoErr;
    }
    int ConvertDFracToCoefs(double value, int index);
    int ConvertFixToCoefs(int value, int index);
    int ConvertIntToCoefs(int value, int index);
    int ConvertFracToBypassCoefs(double value, int index);
    int ConvertFracToCoefsWithBypass(double value, int index);
    int ConvertDFracToCoefsWithBypass(double value, int index);
    int ConvertFixToCoefsWithBypass(int value, int index);
    int ConvertIntToCoefsWithBypass(int value, int index);
    BUFFER_HEADER *PrepareCoefBuffer(int offset, int count, char const *source, bool force);
    BUFFER_HEADER *PrepareCoefBufferWithBypass(int offset, int count, bool force);
    // Reads `count` coefficients back from the process side and compares them with the image the
    // bypass flag picks: 0 when equal, eValueNotFound at the first difference.
    int VerifyCompCoefs(int offset, int count);

    // ---- states ----------------------------------------------------------------------------
    BUFFER_HEADER *PrepareStatesBuffer(int memOp, int offset, int count);
    BUFFER_HEADER *PrepareStatesReadBuffer(int offset, int count);
    BUFFER_HEADER *PrepareStatesWriteBuffer(int offset, int count);
    BUFFER_HEADER *PrepareStatesReadWriteBuffer(int offset, int count);
    // Sets one word of the initial states (the image InitStatesBuffer sends).
    int InitOneState(int index, int value);
    // A write buffer of all initial states, for the initial chain.
    BUFFER_HEADER *InitStatesBuffer();
    // Write one state word now (operation 0).
    int SetSingleStateInt(int index, int value);
    int SetSingleStateFloat(int index, double value);
    int GetInitialStates(char *out) const;
    std::size_t GetInitialStatesSize() const { return m_InitialStates.size(); }

    // ---- externals -------------------------------------------------------------------------
    BUFFER_HEADER *PrepareExtBuffer(sEXT_BUFF const *ext, int memOp, int offset, int count);
    BUFFER_HEADER *PrepareExtReadBuffer(sEXT_BUFF const *ext, int offset, int count);
    BUFFER_HEADER *PrepareExtWriteBuffer(sEXT_BUFF const *ext, int offset, int count);
    BUFFER_HEADER *PrepareExtReadWriteBuffer(sEXT_BUFF const *ext, int offset, int count);
    // Writes `count` values at `offset` of an external now (operation 1); a complex value takes
    // two words.
    int InitExternalFromArray(sEXT_BUFF const *ext, int offset, int count, int const *values);
    int InitExternalFromArray(sEXT_BUFF const *ext, int offset, int count, float const *values);
    int InitExternalFromArray(sEXT_BUFF const *ext, int offset, int count, double const *values);
    int InitExternalFromArray(sEXT_BUFF const *ext, int offset, int count, cmplx const *values);
    int InitOneExternal(int extIndex, int offset, int value);
    int InitOneExternalByPtr(sEXT_BUFF const *ext, int offset, int value);
    sEXT_BUFF *GetExternalBuffer(int index);
    int GetExternalBuffersNum() const { return static_cast<int>(m_ExtBuffs.size()); }
    std::uint64_t GetExtAccessCount() const;
    int SetExtBuffInfo(std::vector<sEXT_BUFF> const &buffers);
    std::vector<sEXT_BUFF> const &GetExtBuffInfo() const { return m_ExtBuffs; }
    // Whether the external at `index` was written since the shell placed it; instances that
    // share one external initialise it once.
    bool IsSharedExternalInitialized(int index) const;

    // ---- meters and diagnosis --------------------------------------------------------------
    // One state word at `offset`, read back through the integer slot; with `write` the value is
    // stored first (read-write). eWrongObjectState while inactive.
    int ReadVU(int offset, int &out);
    int ReadVU(int offset, bool write, int value, int &out);
    // Appends a dump of `count` words of one memory to `out`.
    int DumpDSP(int type, int offset, int count, std::string &out);
    int DumpDSPToScreen(int type, int offset, int count);
    int DumpAllDSPExternals(std::string &out);
    int DumpAllDSPExternalsToScreen();

private:
    bool Active() const { return *m_Flags.processActive; }
    bool Bypassed() const { return *m_Flags.bypass; }
    int SetupIndex(EPluginSetup setup) const {
        const int which =
            setup == eCurrentSetup ? m_Flags.activeSetup->load(std::memory_order_relaxed) : setup;
        return which == eSetupA || which == eSetupB ? which : -1;
    }
    char *ImageWord(std::vector<char> &image, int index) const {
        if (index < 0)
            return nullptr;
        const std::size_t at =
            static_cast<std::size_t>(index) * static_cast<std::size_t>(m_WordSize);
        if (at + static_cast<std::size_t>(m_WordSize) + kImageSlack > image.size())
            return nullptr;
        return image.data() + at;
    }
    template <class Write>
    int ConvertInto(char *word, Write write);
    template <class T, class Put>
    int InitExternal(sEXT_BUFF const *ext, int offset, int count, T const *values, int perValue,
                     Put put);
    // Reads `count` words of memory `kind` at `offset` (already based) into `out`.
    int ReadBack(int kind, int offset, int count, std::int64_t memoryRef, std::vector<char> &out);
    int SendOneState(int index, int memOp, char const *word);

    WSOwnerFlags m_Flags;
    WTExecCallBack m_ExecCallBack = nullptr;
    std::int64_t m_ExecRefcon = 0;
    ProcessMemory::WUProcessConverters m_Converters;
    std::array<std::vector<char>, 2> m_CoefImage;
    std::array<std::vector<char>, 2> m_BypassImage;
    std::vector<char> m_InitialStates;
    std::vector<sEXT_BUFF> m_ExtBuffs;
    std::vector<bool> m_ExtInitialized;
    std::vector<sIO_PORT> m_InputPorts;
    std::vector<sIO_PORT> m_OutputPorts;
};

// Inline: a value change asks for one buffer and fills it on every update.
inline WCProcessMemory::BUFFER_HEADER *WCProcessMemory::NewBuffer(int kind, int memOp, int marker,
                                                                  int offset, int count,
                                                                  std::int64_t memoryRef) {
    if (count < 0 || offset < 0)
        return nullptr;
    BUFFER_HEADER request{};
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

inline WCProcessMemory::BUFFER_HEADER *
WCProcessMemory::PrepareCoefBufferWithBypass(int offset, int count, bool force) {
    if (!force || !Active() || offset < 0 || count <= 0)
        return nullptr;
    const int setup = SetupIndex(eCurrentSetup) == eSetupB ? 1 : 0;
    std::vector<char> const &image = Bypassed() ? m_BypassImage[setup] : m_CoefImage[setup];
    const std::size_t from = static_cast<std::size_t>(offset) * m_WordSize;
    const std::size_t bytes = static_cast<std::size_t>(count) * m_WordSize;
    if (from + bytes + kImageSlack > image.size())
        return nullptr;
    BUFFER_HEADER *buffer = NewBuffer(KPAPI_PROCESS_MEMORY::eBufferCoefs, m_MemOpCodes[0], 1,
                                      m_CoefsOfs + offset, count, 0);
    if (buffer == nullptr || buffer->data == nullptr)
        return buffer;
    // One 4-byte word is the common change; a fixed-size copy spares the call into the C library.
    if (bytes == 4)
        std::memcpy(buffer->data, image.data() + from, 4);
    else
        std::memcpy(buffer->data, image.data() + from, bytes);
    return buffer;
}

MIREL_NAMESPACE_END
