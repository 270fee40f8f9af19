#pragma once

#include <array>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "Code/Algorithm/EParamType.h"
#include "Code/Algorithm/WUParamFlags.h"
#include "Code/Algorithm/sSCALE_INFO.h"
#include "core/MirelNamespace.h"
#include "core/TBitVector.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

// Makes a parameter's value string from its state and real-world value.
using DisplayFunctionProxy =
    std::function<void(double state, double realWorld, WCFixedStringBase &out)>;

// Scale kinds a plug-in adds, by type name.
using WTScaleFunctionsMap = std::map<WCFixedString<127>, sUserScaleFunctions>;

// How a default value in XML is given ("RealWorld", "RealWorldExact" or "State").
enum EParamValueType : std::int32_t {
    eParamValueRealWorld = 0,
    eParamValueRealWorldExact = 1,
    eParamValueState = 2,
};

// The value half of a parameter: its type and flags, state and real-world value for both setups,
// its scale and the pair of functions that convert between the state axis (0 to 1000) and the
// parameter's own unit, and its display texts. Built once from the parameter XML; afterwards the
// values change under the algorithm's process lock, and the scale stays fixed.
class WCParam_Base {
public:
    static constexpr double kMaxState = 1000.0;
    // Update flags after every value change: the display and the controls are redone at idle.
    static constexpr std::uint32_t kUpdateFlagsValueChanged = 3;

    WCParam_Base() = default;
    virtual ~WCParam_Base() = default;
    WCParam_Base(WCParam_Base const &) = default;
    WCParam_Base &operator=(WCParam_Base const &) = default;
    WCParam_Base(WCParam_Base &&) = default;
    WCParam_Base &operator=(WCParam_Base &&) = default;

    // [main-thread, build time] Chooses the scale kind by name, in this order: "linear",
    // "logarithmic", "toggle", "linearRanges", "linearRangesWithRounding", "toggleRanges",
    // "toggleMap", "STDFreq", then `userScales`. A name none of them knows takes `forward` and
    // `inverse` as given (NoScale when `forward` is null). A number of states above 1 makes the
    // parameter discrete with a state step of 1000 / (n - 1). Absurd numbers are made finite.
    void SetScale(double min, double max, double res, std::int32_t numStates, double var,
                  char const *typeName, WTScaleFunction forward, WTScaleFunction inverse,
                  std::vector<double> const &realWorldPoints = {},
                  std::vector<double> const &statePoints = {},
                  WTScaleFunctionsMap const *userScales = nullptr);

    // [main-thread, build time] Turns the reset and initial values, given as real world (passed
    // through the scale), exact real world (kept as written) or state, into real-world values.
    void SetScaleDefaults(double resetValue, EParamValueType resetType, double initialValue,
                          EParamValueType initialType);

    // [any-thread] Rounds a state to the nearest step; continuous parameters pass unchanged.
    double QuantizeState(double state) const noexcept;

    // [any-thread] The scale functions; 0 when the function is missing, and never a non-finite
    // number. No lock, no allocation. Inline, because drags run them per update and a call
    // around the function-pointer call costs as much as a linear conversion itself.
    double RealWorldToState(double realWorld) const noexcept {
        if (m_Inverse == nullptr)
            return 0.0;
        return FiniteOrZero(m_Inverse(realWorld, const_cast<sSCALE_INFO *>(&m_Scale)));
    }
    double StateToRealWorld(double state) const noexcept {
        if (m_Forward == nullptr)
            return 0.0;
        return FiniteOrZero(m_Forward(state, const_cast<sSCALE_INFO *>(&m_Scale)));
    }

    // Writes happen under the process lock; reads may come from idle without it (value texts),
    // so each value is read and written whole. setup is 0 or 1.
    double GetState(int setup) const noexcept { return Load(m_State[Index(setup)]); }
    double GetRealWorld(int setup) const noexcept { return Load(m_RealWorld[Index(setup)]); }
    void SetStateValue(int setup, double state) noexcept { Store(m_State[Index(setup)], state); }
    void SetRealWorldValue(int setup, double value) noexcept {
        Store(m_RealWorld[Index(setup)], value);
    }
    // Real world from state, and state from real world, for one setup; answers the new value.
    double UpdateRealWorldFromState(int setup) noexcept {
        if (m_Forward != nullptr)
            SetRealWorldValue(setup, StateToRealWorld(GetState(setup)));
        return GetRealWorld(setup);
    }
    double UpdateStateFromRealWorld(int setup) noexcept;
    // Sets both setups from the initial value: real world kept, state through the inverse.
    void InitRealWorldAndUpdate(int setup) noexcept;

    // [main-thread] Runs the display function for one setup into the value string.
    void UpdateValueString(int setup);
    // The text the display function gives a state the parameter does not hold; empty without
    // a display function.
    void FormatState(double state, WCFixedStringBase &out) const;

    // [main-thread, build time] Reports to standard error what looks wrong with the scale (a
    // range the inverse cannot reach, a non-finite end). Answers whether all was well.
    bool SanityTests(char const *name) const;

    // Flags by bit number (EParamFlagBit).
    bool IsFlagSet(unsigned int bit) const noexcept { return m_Flags.IsBitSet(bit); }
    void SetFlag(unsigned int bit, bool value) noexcept { m_Flags.SetBit(bit, value); }
    TBitVector<unsigned int> GetFlags() const noexcept { return m_Flags; }
    void SetFlags(TBitVector<unsigned int> flags) noexcept { m_Flags = flags; }

    EParamType GetType() const noexcept { return m_Type; }
    void SetType(EParamType type) noexcept { m_Type = type; }
    bool IsDiscrete() const noexcept { return m_Type == eParamTypeDiscrete; }
    std::int32_t GetNumStates() const noexcept { return m_NumStates; }
    double GetStateStep() const noexcept { return m_StateStep; }
    sSCALE_INFO const &GetScaleInfo() const noexcept { return m_Scale; }
    // The range as SetScale took it, after non-finite ends became 0; tools write it back.
    double GetScaleMin() const noexcept { return m_ScaleMin; }
    double GetScaleMax() const noexcept { return m_ScaleMax; }
    double GetScaleResolution() const noexcept { return m_ScaleResolution; }
    WCFixedStringBase const &GetScaleType() const noexcept { return m_ScaleType; }
    WTScaleFunction GetForwardFunction() const noexcept { return m_Forward; }
    WTScaleFunction GetInverseFunction() const noexcept { return m_Inverse; }
    double GetResetValue() const noexcept { return m_ResetValue; }
    double GetInitialValue() const noexcept { return m_InitialValue; }
    void SetResetValue(double value) noexcept { m_ResetValue = value; }
    void SetInitialValue(double value) noexcept { m_InitialValue = value; }

    // [any-thread] Update flags are written by whatever thread changes the value and read and
    // cleared by idle, so every access is atomic.
    std::uint32_t GetUpdateFlags() const noexcept {
        return std::atomic_ref<std::uint32_t>(m_UpdateFlags).load(std::memory_order_acquire);
    }
    void SetUpdateFlags(std::uint32_t value) noexcept {
        std::atomic_ref<std::uint32_t>(m_UpdateFlags).store(value, std::memory_order_release);
    }
    // Answers the flags and leaves 0, so a change that lands meanwhile waits for the next tick.
    std::uint32_t TakeUpdateFlags() noexcept {
        return std::atomic_ref<std::uint32_t>(m_UpdateFlags).exchange(0, std::memory_order_acq_rel);
    }

    WCFixedStringBase const &GetValueString() const noexcept { return m_ValueString; }
    WCFixedStringBase &ValueString() noexcept { return m_ValueString; }
    WCFixedStringBase const &GetLabel() const noexcept { return m_LabelString; }
    WCFixedStringBase const &GetUnits() const noexcept { return m_UnitsString; }
    void SetLabel(char const *text) noexcept { m_LabelString = text; }
    void SetUnits(char const *text) noexcept { m_UnitsString = text; }
    void SetDisplayFunction(DisplayFunctionProxy func) { m_DisplayFunction = std::move(func); }
    bool HasDisplayFunction() const noexcept { return static_cast<bool>(m_DisplayFunction); }

protected:
    static std::size_t Index(int setup) noexcept { return setup == 1 ? 1 : 0; }
    static double FiniteOrZero(double value) noexcept { return std::isfinite(value) ? value : 0.0; }
    // Relaxed: a value stands alone, and the update flags order what idle must see after it.
    static double Load(double const &value) noexcept {
        return std::atomic_ref<double>(const_cast<double &>(value)).load(std::memory_order_relaxed);
    }
    static void Store(double &slot, double value) noexcept {
        std::atomic_ref<double>(slot).store(value, std::memory_order_relaxed);
    }
    double ConvertDefault(double value, EParamValueType type) const noexcept;

    EParamType m_Type = eParamTypeContinuous;
    TBitVector<unsigned int> m_Flags;
    alignas(std::atomic_ref<double>::required_alignment) std::array<double, 2> m_State{};
    alignas(std::atomic_ref<double>::required_alignment) std::array<double, 2> m_RealWorld{};
    sSCALE_INFO m_Scale;
    WCFixedString<127> m_ValueString;
    WCFixedString<127> m_LabelString;
    WCFixedString<127> m_UnitsString;
    WCFixedString<127> m_ScaleType;
    alignas(std::atomic_ref<std::uint32_t>::required_alignment) mutable std::uint32_t
        m_UpdateFlags = 0;
    WTScaleFunction m_Forward = nullptr;
    WTScaleFunction m_Inverse = nullptr;
    std::int32_t m_NumStates = 0;
    double m_StateStep = 0.0;
    double m_ResetValue = 0.0;
    double m_InitialValue = 0.0;
    DisplayFunctionProxy m_DisplayFunction;
    double m_ScaleMin = 0.0;
    double m_ScaleMax = 0.0;
    double m_ScaleResolution = 1.0;
};

MIREL_NAMESPACE_END
