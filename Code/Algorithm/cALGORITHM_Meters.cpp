// cALGORITHM: the meters. The algorithm is the meter manager's listener: it reads the meters'
// words from the process side and shows their values in the meter parameters.

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Process/WCParamExtensionMeter.h"

MIREL_NAMESPACE_BEGIN

namespace {

using sMeter = WCMeterManager::sMeter;

// The meters from `first` on that one buffer reads: each offset is the one before it plus 1.
unsigned int GroupSize(sMeter const *meters, unsigned int first, unsigned int count) {
    unsigned int size = 1;
    while (first + size < count && meters[first + size].m_pMeter->GetStatesOffset() ==
                                       meters[first + size - 1].m_pMeter->GetStatesOffset() + 1)
        ++size;
    return size;
}

// Delta below which a meter has settled and neither smooths nor takes time.
constexpr double kReleaseSnap = 0.0001;

} // namespace

int cALGORITHM::InitializeMeterManager() {
    int err = eNoErr;
    for (std::uint64_t id = 0; id < m_Params.size(); ++id) {
        auto *meter = dynamic_cast<WCParamExtensionMeter *>(m_Params[id].m_Extension.get());
        if (meter == nullptr)
            continue;
        // A second run finds the meters it added; that is not an error.
        const int addErr = m_MeterManager.AddMeter(meter, id);
        if (addErr != eSomeThingInitailzedTwice && err == eNoErr)
            err = addErr;
    }
    return err;
}

BUFFER_HEADER *cALGORITHM::PrepareMeterReads(sMeter *meters, unsigned int count, bool reset) {
    const int memOp = reset ? GetMemOpReadWrite() : GetMemOpRead();
    const int wordSize = GetWordSize();
    WTWriteFracFunc write = m_ProcessMemory.Converters().m_WriteFrac;
    BUFFER_HEADER *chain = nullptr;
    for (unsigned int first = 0; first < count;) {
        const unsigned int size = GroupSize(meters, first, count);
        BUFFER_HEADER *buffer =
            PrepareStatesBuffer(memOp, static_cast<int>(meters[first].m_pMeter->GetStatesOffset()),
                                static_cast<int>(size));
        if (buffer == nullptr || buffer->data == nullptr) {
            FreeBuffers(buffer);
            FreeBuffers(chain);
            return nullptr;
        }
        // The read-reset words go out in the same buffer, so the process side restarts its peak
        // hold exactly at the read and no peak falls between two sends.
        if (reset) {
            char *words = static_cast<char *>(buffer->data);
            for (unsigned int i = 0; i < size; ++i)
                write(meters[first + i].m_pMeter->GetReadResetValue(IsNative()),
                      words + static_cast<std::size_t>(i) * wordSize);
        }
        chain = chain == nullptr ? buffer : ChainBufs(chain, buffer);
        if (chain == nullptr)
            return nullptr;
        first += size;
    }
    return chain;
}

int cALGORITHM::TakeMeterReads(BUFFER_HEADER const *chain, sMeter *meters, unsigned int count) {
    const int wordSize = GetWordSize();
    WTReadFracFunc read = m_ProcessMemory.Converters().m_ReadFrac;
    unsigned int first = 0;
    for (BUFFER_HEADER const *buffer = chain; buffer != nullptr && first < count;
         buffer = buffer->next) {
        const unsigned int size = GroupSize(meters, first, count);
        // A chain made for other meters (they changed in between) is not read into these.
        if (buffer->count != static_cast<int>(size))
            return eValueWrongSize;
        char const *words = static_cast<char const *>(buffer->data);
        for (unsigned int i = 0; i < size; ++i) {
            double word = 0.0;
            read(words + static_cast<std::size_t>(i) * wordSize, &word);
            meters[first + i].m_pMeter->SetValueFromDSP(word);
        }
        first += size;
    }
    return first == count ? eNoErr : eValueWrongSize;
}

int cALGORITHM::ReadMeters(sMeter *meters, unsigned int count, bool reset) {
    if (meters == nullptr || count == 0)
        return eNoErr;
    if (!m_ProcessActive)
        return eWrongObjectState;
    BUFFER_HEADER *chain = PrepareMeterReads(meters, count, reset);
    if (chain == nullptr)
        return eMemNewFailed;
    int err = SendBuffers(chain, eExecSendBuffersInit);
    if (err == eNoErr)
        err = TakeMeterReads(chain, meters, count);
    FreeBuffers(chain);
    return err;
}

int cALGORITHM::ReadMetersSend(std::vector<sMeter> &meters) {
    // From now on the shell's meter thread reads; idle reading too would take the read-reset
    // peaks away from it.
    m_ShellReadsMeters = true;
    if (meters.empty())
        return eNoErr;
    if (!m_ProcessActive)
        return eWrongObjectState;
    // A read never received is dropped: its words are older than the one about to be sent.
    FreeBuffers(m_PendingMeterReads);
    BUFFER_HEADER *chain =
        PrepareMeterReads(meters.data(), static_cast<unsigned int>(meters.size()), true);
    if (chain == nullptr)
        return eMemNewFailed;
    const int err = SendBuffers(chain, eExecSendBuffers);
    if (err != eNoErr) {
        FreeBuffers(chain);
        return err;
    }
    m_PendingMeterReads = chain;
    return eNoErr;
}

int cALGORITHM::ReadMetersReceive(std::vector<sMeter> &meters) {
    if (m_PendingMeterReads == nullptr)
        return meters.empty() ? eNoErr : eWrongObjectState;
    const int err = TakeMeterReads(m_PendingMeterReads, meters.data(),
                                   static_cast<unsigned int>(meters.size()));
    FreeBuffers(m_PendingMeterReads);
    return err;
}

int cALGORITHM::GetParamLabelString(std::uint64_t id, WCFixedStringBase &out) {
    sCONTROL_PARAM const *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    out = param->GetLabel().c_str();
    return eNoErr;
}

void cALGORITHM::UpdateMeterDisplay(std::uint64_t id, WCParamExtensionMeter *meter) {
    sCONTROL_PARAM *param = GetParam(id);
    if (param == nullptr || meter == nullptr)
        return;
    double value = meter->GetDisplayValue();
    (void)LimitRealWorld(id, value);
    const int setup = m_ActiveSetup == eSetupB ? 1 : 0;
    param->SetRealWorldValue(setup, value);
    param->SetStateValue(setup, param->RealWorldToState(value));
    (void)SetParamToUpdateFlag(id, 3);
}

double cALGORITHM::ReleaseVU(double newValue, double previous, double *time, double attack,
                             double release) {
    return ReleaseVU(newValue, previous, time, attack, release, WCParamExtensionMeter::NowMs());
}

double cALGORITHM::ReleaseVU(double newValue, double previous, double *time, double attack,
                             double release, double nowMs) {
    if (!(std::fabs(newValue - previous) > kReleaseSnap))
        return newValue;
    double base = 0.0;
    if (attack > 0.0 && previous > newValue)
        base = attack;
    else if (release > 0.0 && newValue > previous)
        base = release;
    const double last = time != nullptr ? *time : 0.0;
    // Never quite 0, so the value keeps a trace of where it came from.
    const double k = std::max(std::pow(base, nowMs - last), DBL_MIN);
    if (time != nullptr)
        *time = nowMs;
    return newValue + (previous - newValue) * k;
}

int cALGORITHM::ResetPeak(std::int64_t index) {
    if (index < 0)
        return eOutOfRangeNumber;
    const int err = m_MeterManager.ResetPeak(static_cast<std::uint32_t>(index));
    if (err == eNoErr)
        m_MeterManager.GetExtensionMeter(static_cast<std::uint32_t>(index))->SetNeedsUpdate(true);
    return err;
}

void cALGORITHM::ResetAllPeak() {
    m_MeterManager.ResetAllPeak();
    m_MeterManager.SetNeedsUpdate(true);
}

void cALGORITHM::ResetAllClip() {
    m_MeterManager.ResetAllClip();
    m_MeterManager.SetNeedsUpdate(true);
}

int cALGORITHM::RefreshMetersBuffers() {
    m_RefreshMetersRequested = false;
    // A pending read was made for the placement the meters had; the next read starts afresh.
    const int err = FreeBuffers(m_PendingMeterReads);
    m_MeterManager.SetNeedsUpdate(true);
    return err;
}

int cALGORITHM::GetMeterReadResetValue(std::int64_t index, double &value) const {
    if (index < 0)
        return eOutOfRangeNumber;
    return m_MeterManager.GetMeterReadResetValue(static_cast<std::uint32_t>(index), IsNative(),
                                                 value);
}

MIREL_NAMESPACE_END
