#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// The meters of one algorithm. Until the meter work lands this manager holds no meters, and
// every question about one answers as for a meter that does not exist; display updates and
// resets have nothing to do. [main-thread]
class WCMeterManager {
public:
    // What the manager asks of its algorithm.
    class Listener {
    public:
        virtual ~Listener() = default;
    };

    void FinishCreate(Listener *listener) { m_pListener = listener; }
    Listener *GetListener() const { return m_pListener; }

    std::uint32_t GetNumMeters() const { return 0; }
    // The index of the meter of parameter `id`; -29 when that parameter has no meter.
    WTErr GetMeterIndex(std::uint64_t id, std::uint32_t &index) const { return eValueNotFound; }
    // -19 for an index beyond the list.
    WTErr GetMeterInfo(std::uint32_t index, void *info) const { return eOutOfRangeNumber; }
    WTErr GetMeterReadResetValue(std::uint32_t index, double &value) const {
        return eOutOfRangeNumber;
    }
    WTErr UpdateDisplay() { return eNoErr; }
    void OptimizeMeterOrder() {}
    void ResetAllValue() {}
    void ResetAllPeak() {}
    void ResetAllClip() {}

private:
    Listener *m_pListener = nullptr;
};

MIREL_NAMESPACE_END
