#pragma once

#include <cstdint>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFourCC.h"

MIREL_NAMESPACE_BEGIN

// The records that cross the boundary between the logic side of a plug-in and its process side
// (native module, DSP or networked server). Their field order is fixed: a process side built
// separately reads them by layout. Nothing here owns memory.

// The exec callback: the one function through which an algorithm reaches its process side.
// `op` is one of EExecCallBackOp; result 0 is success. The auto callback has the same shape.
using WTExecCallBack = int (*)(int op, std::int64_t refcon, void *a, void *b, void *c);
using WTAutoCallBack = WTExecCallBack;

// Operations of the exec callback.
enum EExecCallBackOp : int {
    eExecSendBuffers = 0,          // chain: send now, the usual update
    eExecSendBuffersInit = 1,      // chain: send as initialisation; read buffers valid on return
    eExecChainBuffers = 3,         // first, second, BUFFER_HEADER **out: link, out gets the head
    eExecFreeBuffers = 4,          // chain: free every buffer of it
    eExecNewBuffer = 5,            // BUFFER_HEADER const *request, BUFFER_HEADER **out
    eExecWriteFracConverter = 7,   // WTWriteFracFunc *slot
    eExecWriteIntConverter = 8,    // WTWriteIntFunc *slot
    eExecReadFracConverter = 9,    // WTReadFracFunc *slot
    eExecReadIntConverter = 10,    // WTReadIntFunc *slot
    eExecLocateFlag = 11,          // int *flag stored beside the locate data
    eExecWordSize = 12,            // int *word size in bytes
    eExecWriteFixConverter = 13,   // WTWriteFracFunc *slot; non-zero: keep the fraction one
    eExecReadFixConverter = 14,    // WTReadFracFunc *slot; non-zero: keep the fraction one
    eExecWriteDFracConverter = 20, // WTWriteFracFunc *slot
    eExecReadDFracConverter = 21,  // WTReadFracFunc *slot
    eExecShellEvent = 36,          // index, kind, 0 (see WCShellAlgorithmListener)
    eExecSideChain = 74,           // value
    eExecBatch = 78,               // 1 opens, 0 closes a batch of changes
};

// Converter slots: each moves one value into or out of process-side words and answers the
// number of bytes moved. A DSP process side replaces them with its own fixed-point encodings.
using WTWriteFracFunc = int (*)(double value, void *destination);
using WTWriteIntFunc = int (*)(int value, void *destination);
using WTReadFracFunc = int (*)(void const *source, double *value);
using WTReadIntFunc = int (*)(void const *source, int *value);

namespace KPAPI_PROCESS_MEMORY {

// Memory kinds of a buffer.
enum EBufferKind : std::int32_t {
    eBufferStates = 0,
    eBufferCoefs = 1,
    // Program code; only a DSP process side can hand it back.
    eBufferProgram = 2,
    eBufferExtX = 100,
    eBufferExtY = 500,
};

// One link of a chain of process-memory writes or reads. `offset` already includes the base
// offset that Locate gave; `count` is in words of the algorithm's word size.
struct BUFFER_HEADER {
    void *data;
    BUFFER_HEADER *next;
    std::int32_t kind;
    std::int32_t memOp;
    std::int32_t coefMarker;
    std::int64_t refcon;
    std::int64_t memoryRef;
    std::int32_t offset;
    std::int32_t count;
};

} // namespace KPAPI_PROCESS_MEMORY

namespace KPAPI_1 {

// Placement of the process side, handed to cALGORITHM::Locate.
struct LocateInfo {
    std::int32_t flag;
    std::int32_t codeOfs;
    std::int32_t statesOfs;
    std::int32_t coefsOfs;
    std::int32_t idleCodeOfs;
};

} // namespace KPAPI_1

// A processor: family (1 "56k", 2 "PPC", 3 "x86") and a specific model, -1 when none.
struct SProcessorSpec {
    std::int32_t family = 0;
    std::int32_t specific = -1;
};

namespace ProcessMemory {

// One external memory of the process side, in the memory space 'XMEM' or 'YMEM'; a WCFourCC is
// one 32-bit word, so the layout is the same as a plain code.
struct sEXT_BUFF {
    WCFourCC memSpace = WCFourCC("????");
    std::uint32_t size = 0;
    std::uint32_t reserved = 0;
    std::uint32_t offset = 0;
    std::int64_t memoryRef = 0;
    bool cyclic = false;
    std::uint32_t accessCount = 0;
    std::uint32_t alignment = 0;
};

// What a process side must allocate for one instance.
struct WSProcessMemoryRequest {
    std::uint64_t coefsNum = 0;
    std::uint64_t statesNum = 0;
    std::vector<sEXT_BUFF> extBuffs;
    std::int64_t refcon = 0;
};

// The needs of the chosen build of the process code. Cycles -1 means no build can run, and a
// shell must refuse the component.
struct SDSPReqRes {
    std::int32_t version = 0;
    std::int32_t requestHeader = 0;
    std::uint32_t programWords = 0;
    std::uint32_t statesWords = 0;
    std::uint32_t coefsWords = 0;
    std::int32_t maxSampleRate = 0;
    std::int32_t inputs = 0;
    std::int32_t sideChainInputs = 0;
    std::int32_t outputs = 0;
    std::vector<sEXT_BUFF> extBuffs;
    std::int32_t cycles = -1;
    std::int32_t codeResID = 0;
    SProcessorSpec processor;
    std::int32_t idleCodeResID = 0;
};

} // namespace ProcessMemory

MIREL_NAMESPACE_END
