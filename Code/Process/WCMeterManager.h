#pragma once

#include <cstdint>
#include <vector>

#include "Code/Process/MirelMeterInfo.h"
#include "Code/Process/WCParamExtensionMeter.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// The meters of one algorithm: the meter extensions of its parameters, kept in an order the
// process side can read in few buffers. The manager decides nothing about the process side; its
// listener (the algorithm) reads the words and shows the values.
//
// Life cycle: FinishCreate gives the listener; meters are added once the parameters exist;
// OptimizeMeterOrder sorts them before a shell asks for indexes; then reads and display updates
// run until the algorithm goes. Meters belong to their parameters, never to the manager.
// [main-thread]: reads run at idle, or on the shell's meter thread (ReadMetersSend and
// ReadMetersReceive) while idle leaves them alone; the manager has no lock of its own.
class WCMeterManager {
public:
    struct sMeter {
        WCParamExtensionMeter *m_pMeter = nullptr;
        std::uint64_t m_ParamID = 0;
        bool m_AutoTrimRegistered = false;
        double m_AutoTrimLow = 0.0;
        double m_AutoTrimHigh = 0.0;
    };

    // What the manager asks of its algorithm.
    class Listener {
    public:
        virtual ~Listener() = default;
        // Shows a meter's value in its parameter.
        virtual void UpdateMeterDisplay(std::uint64_t /*id*/, WCParamExtensionMeter * /*meter*/) {}
        // Reads `count` meters from the process side; with `reset` their read-reset values go
        // back in the same read.
        virtual int ReadMeters(sMeter * /*meters*/, unsigned int /*count*/, bool /*reset*/) {
            return eNotImplemented;
        }
        virtual int GetParamLabelString(std::uint64_t /*id*/, WCFixedStringBase & /*out*/) {
            return eNotImplemented;
        }
        // The asynchronous pair: send the reads without waiting, then fetch the values.
        virtual int ReadMetersSend(std::vector<sMeter> & /*meters*/) { return eNotImplemented; }
        virtual int ReadMetersReceive(std::vector<sMeter> & /*meters*/) { return eNotImplemented; }
    };

    void FinishCreate(Listener *listener) { m_pListener = listener; }
    Listener *GetListener() const { return m_pListener; }

    // eMemNullPointer for no meter; eSomeThingInitailzedTwice for a parameter that has one.
    int AddMeter(WCParamExtensionMeter *meter, std::uint64_t id);
    // eValueNotFound when the parameter has no meter here.
    int DeleteMeter(std::uint64_t id);
    std::uint32_t GetNumMeters() const { return static_cast<std::uint32_t>(m_Meters.size()); }
    // The index of the meter of parameter `id`; eValueNotFound when it has none.
    int GetMeterIndex(std::uint64_t id, std::uint32_t &index) const;
    // Null beyond the list.
    WCParamExtensionMeter *GetExtensionMeter(std::uint32_t index) const;
    std::vector<sMeter> &GetMeters() { return m_Meters; }

    // Each answers eOutOfRangeNumber for an index beyond the list, leaving `out` as it was.
    int GetMeterInfo(std::uint32_t index, MirelMeterInfo &out) const;
    int GetMeterValue(std::uint32_t index, double &out) const;
    int GetMeterPeak(std::uint32_t index, double &out) const;
    int GetMeterLastPeakTime(std::uint32_t index, double &out) const;
    int GetMeterReadResetValue(std::uint32_t index, bool native, double &out) const;
    // The clip level and flag (1 clipped); eValueNotFound for a meter without a clip.
    int GetClipValue(std::uint32_t index, double &level, int &clip) const;

    // Sorts by states offset, so that neighbours share a read. Indexes change: run it before a
    // shell asks for them.
    void OptimizeMeterOrder();
    // Asks the listener to read every meter; nothing at all without meters.
    int ReadFromDSP(bool reset = true);
    int ReadMetersSend();
    int ReadMetersReceive();
    // The listener shows each meter that asks for it, then the auto trim follows the peaks.
    int UpdateDisplay();

    void ResetAllPeak();
    // Only meters with a clip.
    void ResetAllClip();
    // Every value, and the auto-trim gain to 0.
    void ResetAllValue();
    int ResetPeak(std::uint32_t index);
    // eValueNotFound for a meter without a clip.
    int ResetClip(std::uint32_t index);
    int SetMeterReadMultiplier(std::uint32_t index, double multiplier);
    int SetMeterReadOffset(std::uint32_t index, std::uint32_t offset);
    void SetNeedsUpdate(bool value);

    // Auto trim: the gain that brings the loudest peak of the registered meters to unity. A
    // meter's peak counts within 1/limit and limit, so the gain stays within the limit's
    // decibels either way. eOutOfRangeNumber for a limit that is not above 0.
    int AutoTrimRegister(std::uint32_t index, double limit);
    // The gain last executed, in decibels.
    double AutoTrimGet() const { return m_AutoTrimResult; }
    // Takes the gain the peaks decide now as the result, and answers it.
    double AutoTrimExecute();
    // Gain and result to 0 and the registered meters' peaks reset; `unregister` also drops the
    // registrations.
    void AutoTrimReset(bool unregister);
    double GetAutoTrimGain() const { return m_AutoTrimGain; }

private:
    sMeter *At(std::uint32_t index);
    sMeter const *At(std::uint32_t index) const;

    std::vector<sMeter> m_Meters;
    double m_AutoTrimResult = 0.0;
    double m_AutoTrimGain = 0.0;
    Listener *m_pListener = nullptr;
};

MIREL_NAMESPACE_END
