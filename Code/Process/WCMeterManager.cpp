#include "Code/Process/WCMeterManager.h"

#include <algorithm>
#include <cmath>

#include "Code/Process/WUMeterDSP.h"

MIREL_NAMESPACE_BEGIN

namespace {

bool CompareMeterDSPOffsets(WCMeterManager::sMeter const &a, WCMeterManager::sMeter const &b) {
    return a.m_pMeter->GetStatesOffset() < b.m_pMeter->GetStatesOffset();
}

} // namespace

WCMeterManager::sMeter *WCMeterManager::At(std::uint32_t index) {
    return index < m_Meters.size() ? &m_Meters[index] : nullptr;
}

WCMeterManager::sMeter const *WCMeterManager::At(std::uint32_t index) const {
    return index < m_Meters.size() ? &m_Meters[index] : nullptr;
}

int WCMeterManager::AddMeter(WCParamExtensionMeter *meter, std::uint64_t id) {
    if (meter == nullptr)
        return eMemNullPointer;
    std::uint32_t index = 0;
    if (GetMeterIndex(id, index) == eNoErr)
        return eSomeThingInitailzedTwice;
    sMeter entry;
    entry.m_pMeter = meter;
    entry.m_ParamID = id;
    m_Meters.push_back(entry);
    return eNoErr;
}

int WCMeterManager::DeleteMeter(std::uint64_t id) {
    std::uint32_t index = 0;
    if (const int err = GetMeterIndex(id, index); err != eNoErr)
        return err;
    m_Meters.erase(m_Meters.begin() + index);
    return eNoErr;
}

int WCMeterManager::GetMeterIndex(std::uint64_t id, std::uint32_t &index) const {
    for (std::size_t i = 0; i < m_Meters.size(); ++i) {
        if (m_Meters[i].m_ParamID == id) {
            index = static_cast<std::uint32_t>(i);
            return eNoErr;
        }
    }
    return eValueNotFound;
}

WCParamExtensionMeter *WCMeterManager::GetExtensionMeter(std::uint32_t index) const {
    sMeter const *meter = At(index);
    return meter != nullptr ? meter->m_pMeter : nullptr;
}

int WCMeterManager::GetMeterInfo(std::uint32_t index, MirelMeterInfo &out) const {
    sMeter const *meter = At(index);
    if (meter == nullptr)
        return eOutOfRangeNumber;
    MirelMeterInfo info;
    info.m_ParamID = meter->m_ParamID;
    meter->m_pMeter->FillMeterInfo(info);
    out = info;
    return eNoErr;
}

int WCMeterManager::GetMeterValue(std::uint32_t index, double &out) const {
    sMeter const *meter = At(index);
    if (meter == nullptr)
        return eOutOfRangeNumber;
    out = meter->m_pMeter->GetValue();
    return eNoErr;
}

int WCMeterManager::GetMeterPeak(std::uint32_t index, double &out) const {
    sMeter const *meter = At(index);
    if (meter == nullptr)
        return eOutOfRangeNumber;
    out = meter->m_pMeter->GetPeak();
    return eNoErr;
}

int WCMeterManager::GetMeterLastPeakTime(std::uint32_t index, double &out) const {
    sMeter const *meter = At(index);
    if (meter == nullptr)
        return eOutOfRangeNumber;
    out = meter->m_pMeter->GetLastPeakTime();
    return eNoErr;
}

int WCMeterManager::GetMeterReadResetValue(std::uint32_t index, bool native, double &out) const {
    sMeter const *meter = At(index);
    if (meter == nullptr)
        return eOutOfRangeNumber;
    out = meter->m_pMeter->GetReadResetValue(native);
    return eNoErr;
}

int WCMeterManager::GetClipValue(std::uint32_t index, double &level, int &clip) const {
    sMeter const *meter = At(index);
    if (meter == nullptr)
        return eOutOfRangeNumber;
    auto const *withClip = dynamic_cast<WCParamExtensionMeterWithClip const *>(meter->m_pMeter);
    if (withClip == nullptr)
        return eValueNotFound;
    level = withClip->GetClipLevel();
    clip = withClip->GetClip() ? 1 : 0;
    return eNoErr;
}

void WCMeterManager::OptimizeMeterOrder() {
    // Stable, so meters on one offset keep the order the parameters gave them.
    std::stable_sort(m_Meters.begin(), m_Meters.end(), CompareMeterDSPOffsets);
}

int WCMeterManager::ReadFromDSP(bool reset) {
    if (m_Meters.empty())
        return eNoErr;
    if (m_pListener == nullptr)
        return eSomeThingNotInitailzed;
    return m_pListener->ReadMeters(m_Meters.data(), static_cast<unsigned int>(m_Meters.size()),
                                   reset);
}

int WCMeterManager::ReadMetersSend() {
    if (m_Meters.empty())
        return eNoErr;
    if (m_pListener == nullptr)
        return eSomeThingNotInitailzed;
    return m_pListener->ReadMetersSend(m_Meters);
}

int WCMeterManager::ReadMetersReceive() {
    if (m_Meters.empty())
        return eNoErr;
    if (m_pListener == nullptr)
        return eSomeThingNotInitailzed;
    return m_pListener->ReadMetersReceive(m_Meters);
}

int WCMeterManager::UpdateDisplay() {
    if (m_Meters.empty())
        return eNoErr;
    double loudest = -1.0;
    for (sMeter &meter : m_Meters) {
        WCParamExtensionMeter *extension = meter.m_pMeter;
        if (extension->GetNeedsUpdate()) {
            extension->SetNeedsUpdate(false);
            if (m_pListener != nullptr)
                m_pListener->UpdateMeterDisplay(meter.m_ParamID, extension);
        }
        // A meter that heard nothing yet has no say in the trim.
        const double peak = extension->GetPeak();
        if (meter.m_AutoTrimRegistered && peak > 0.0)
            loudest =
                std::max(loudest, std::clamp(peak, meter.m_AutoTrimLow, meter.m_AutoTrimHigh));
    }
    if (loudest > 0.0)
        m_AutoTrimGain = -DSP::GainTodb(loudest);
    return eNoErr;
}

void WCMeterManager::ResetAllPeak() {
    for (sMeter &meter : m_Meters)
        meter.m_pMeter->ResetPeak();
}

void WCMeterManager::ResetAllClip() {
    for (sMeter &meter : m_Meters) {
        if (auto *withClip = dynamic_cast<WCParamExtensionMeterWithClip *>(meter.m_pMeter))
            withClip->ResetClip();
    }
}

void WCMeterManager::ResetAllValue() {
    for (sMeter &meter : m_Meters)
        meter.m_pMeter->ResetValue();
    m_AutoTrimGain = 0.0;
}

int WCMeterManager::ResetPeak(std::uint32_t index) {
    sMeter *meter = At(index);
    if (meter == nullptr)
        return eOutOfRangeNumber;
    meter->m_pMeter->ResetPeak();
    return eNoErr;
}

int WCMeterManager::ResetClip(std::uint32_t index) {
    sMeter *meter = At(index);
    if (meter == nullptr)
        return eOutOfRangeNumber;
    auto *withClip = dynamic_cast<WCParamExtensionMeterWithClip *>(meter->m_pMeter);
    if (withClip == nullptr)
        return eValueNotFound;
    withClip->ResetClip();
    return eNoErr;
}

int WCMeterManager::SetMeterReadMultiplier(std::uint32_t index, double multiplier) {
    sMeter *meter = At(index);
    if (meter == nullptr)
        return eOutOfRangeNumber;
    meter->m_pMeter->SetMultiplier(multiplier);
    return eNoErr;
}

int WCMeterManager::SetMeterReadOffset(std::uint32_t index, std::uint32_t offset) {
    sMeter *meter = At(index);
    if (meter == nullptr)
        return eOutOfRangeNumber;
    // The order stays: a shell may hold indexes, and reads group only true neighbours anyway.
    meter->m_pMeter->SetStatesOffset(offset);
    return eNoErr;
}

void WCMeterManager::SetNeedsUpdate(bool value) {
    for (sMeter &meter : m_Meters)
        meter.m_pMeter->SetNeedsUpdate(value);
}

int WCMeterManager::AutoTrimRegister(std::uint32_t index, double limit) {
    sMeter *meter = At(index);
    if (meter == nullptr)
        return eOutOfRangeNumber;
    if (!(limit > 0.0) || !std::isfinite(limit))
        return eOutOfRangeNumber;
    const double high = std::max(limit, 1.0 / limit);
    meter->m_AutoTrimRegistered = true;
    meter->m_AutoTrimLow = 1.0 / high;
    meter->m_AutoTrimHigh = high;
    return eNoErr;
}

double WCMeterManager::AutoTrimExecute() {
    m_AutoTrimResult = m_AutoTrimGain;
    return m_AutoTrimResult;
}

void WCMeterManager::AutoTrimReset(bool unregister) {
    m_AutoTrimGain = 0.0;
    m_AutoTrimResult = 0.0;
    for (sMeter &meter : m_Meters) {
        if (!meter.m_AutoTrimRegistered)
            continue;
        meter.m_pMeter->ResetPeak();
        if (unregister)
            meter.m_AutoTrimRegistered = false;
    }
}

MIREL_NAMESPACE_END
