// cALGORITHM: the exec callback and the placement of the process side. Buffers, images,
// externals and ports live in the instance's WCProcessMemory; the forwarders are in the header.

#include "Code/Algorithm/cALGORITHM.h"

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
