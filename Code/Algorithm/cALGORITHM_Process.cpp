// cALGORITHM: the exec callback and the placement of the process side. Buffers, images,
// externals and ports live in the instance's WCProcessMemory; the forwarders are in the header.

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Process/WUProcessorSpec.h"
#include "resources/ResourceManager.h"

MIREL_NAMESPACE_BEGIN

int cALGORITHM::SetExecCallBack(WTExecCallBack callback, std::int64_t refcon) {
    m_ProcessMemory.SetExecCallBack(callback, refcon);
    return SetExecCallBackSelf();
}

void cALGORITHM::SetAutoCallBack(WTAutoCallBack callback, std::int64_t refcon) {
    m_AutoCallBack = callback;
    m_AutoRefcon = refcon;
}

int cALGORITHM::Locate(KPAPI_1::LocateInfo *info, int *, int *) {
    return m_ProcessMemory.Locate(info);
}

int cALGORITHM::SetCoefsOfs(int ofs) {
    m_ProcessMemory.m_CoefsOfs = ofs;
    return eNoErr;
}

int cALGORITHM::SetStatesOfs(int ofs) {
    m_ProcessMemory.m_StatesOfs = ofs;
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
    out->refcon = m_ProcessMemory.GetExecRefcon();
    return eNoErr;
}

int cALGORITHM::SetExtBuffInfo(void const *buffers) {
    if (buffers == nullptr)
        return eMemNullPointer;
    auto const &request = *static_cast<ProcessMemory::WSProcessMemoryRequest const *>(buffers);
    return m_ProcessMemory.SetExtBuffInfo(request.extBuffs);
}

int cALGORITHM::SetCurrentProcessor(SProcessorSpec const *spec) {
    if (spec == nullptr)
        return eMemNullPointer;
    m_CurrentProcessor = *spec;
    return eNoErr;
}

int cALGORITHM::ReadFracFromWord(void const *source, double &value) const {
    if (source == nullptr)
        return eMemNullPointer;
    m_ProcessMemory.Converters().m_ReadFrac(source, &value);
    return eNoErr;
}

int cALGORITHM::ReadIntFromWord(void const *source, int &value) const {
    if (source == nullptr)
        return eMemNullPointer;
    m_ProcessMemory.Converters().m_ReadInt(source, &value);
    return eNoErr;
}

MIREL_NAMESPACE_END

// ---- native builds of the audio code --------------------------------------------------------

MIREL_NAMESPACE_BEGIN

int cALGORITHM::GetProcessorTypeString(WCFixedStringBase &out) const {
    ProcessorName(m_CurrentProcessor, out);
    return eNoErr;
}

int cALGORITHM::GetNativeProcessDetails(ProcessorType type, FM::WCStPath &path,
                                        WCFixedStringBase &name) const {
    char const *resourceType = ObtainProcessCodeResourceType(type, GetCurrentOSType());
    if (GetContainer() == nullptr || resourceType[0] == '\0')
        return eCantLoadProcessFunction;
    const short id = m_DSPReqRes.codeResID != 0 ? static_cast<short>(m_DSPReqRes.codeResID) : 1000;
    FM::WCStPath found;
    if (RM::GetPathToActualFile(GetContainer(), WCResKey(resourceType, id), found) != eNoErr ||
        !found.IsFile())
        return eCantLoadProcessFunction;
    path = found;
    name = GetNativeProcessDisplayName(type);
    return eNoErr;
}

int cALGORITHM::GetNSProcess(ProcessorType type, EOSType os, void *function, std::uint64_t *size) {
    if (function == nullptr)
        return eMemNullPointer;
    if (os != GetCurrentOSType())
        return eCantLoadProcessFunction;
    ProcessMemory::CProcCodeDesc const *desc =
        m_ProcessCodeManager.DescriptionFor(m_CurrentProcessor);
    if (desc == nullptr || desc->m_ProcessFunctionName.empty())
        return eCantLoadProcessFunction;
    for (ProcessorType tried = type;;) {
        FM::WCStPath path;
        WCFixedString<63> name;
        if (GetNativeProcessDetails(tried, path, name) == eNoErr) {
            Utils::WCNativeModule module;
            if (module.Load(path.GetPathString().c_str()) == eNoErr) {
                auto found =
                    module.GetFunction<WTNativeProcessFunction>(desc->m_ProcessFunctionName.c_str());
                if (found != nullptr) {
                    m_NativeProcessModule = std::move(module);
                    m_NativeProcessType = tried;
                    *static_cast<WTNativeProcessFunction *>(function) = found;
                    std::uint64_t bytes = 0;
                    if (size != nullptr && path.GetFileSize(bytes) == eNoErr)
                        *size = bytes;
                    Report("GetNSProcess", name.c_str());
                    return eNoErr;
                }
            }
        }
        if (!WeakerProcessorType(tried, tried))
            break;
    }
    Report("GetNSProcess", "none");
    return eCantLoadProcessFunction;
}

MIREL_NAMESPACE_END
