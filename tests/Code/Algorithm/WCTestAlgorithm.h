#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Code/Algorithm/cALGORITHM.h"
#include "core/WUAssert.h"
#include "tools/shell/WCRecordingShell.h"

namespace mirel_test {

namespace ml = MIREL_NAMESPACE_NAME;

// A plug-in for the suites: two coefficients and one state, every hook logged in call order,
// results of the hooks settable, and the private selector channel answering with recognisable
// values so a test can tell it was reached.
class WCTestAlgorithm : public ml::cALGORITHM {
public:
    using BUFFER_HEADER = ml::BUFFER_HEADER;

    WCTestAlgorithm(ml::MirelComponentInfo const &info, ml::WTResContainerType *&container)
        : cALGORITHM(info, container) {
        SetAlgName("TestAlgorithm");
    }

    std::vector<std::string> m_Hooks;
    int m_DoIdleResult = 0;

    // The private channel: recognisable answers and a record of what arrived.
    std::int64_t m_PrivateArg = -99;
    int Reached(std::int64_t arg, int code) {
        m_PrivateArg = arg;
        return code;
    }
    int GetPluginInfo_bool_Private(bool &out, std::int64_t a) override {
        out = true;
        return Reached(a, 101);
    }
    int GetPluginInfo_double_Private(double &out, std::int64_t a) override {
        out = 2.5;
        return Reached(a, 102);
    }
    int GetPluginInfo_float_Private(float &out, std::int64_t a) override {
        out = 3.5f;
        return Reached(a, 103);
    }
    int GetPluginInfo_int32_t_Private(std::int32_t &out, std::int64_t a) override {
        out = -4;
        return Reached(a, 104);
    }
    int GetPluginInfo_size_t_Private(std::size_t &out, std::int64_t a) override {
        out = 5;
        return Reached(a, 105);
    }
    int GetPluginInfo_struct_Private(void *, std::int64_t a) override { return Reached(a, 106); }
    int GetPluginInfo_uint32_t_Private(std::uint32_t &out, std::int64_t a) override {
        out = 7;
        return Reached(a, 107);
    }
    int GetPluginInfo_WCFixedString_Private(ml::WCFixedStringBase &out, std::int64_t a) override {
        out = "private";
        return Reached(a, 108);
    }
    int GetPluginInfo_WCStMemObj_Private(ml::Utils::WCStMemObj &, std::int64_t a) override {
        return Reached(a, 109);
    }
    int SetPluginInfo_bool_Private(bool, std::int64_t a) override { return Reached(a, 111); }
    int SetPluginInfo_c_str_Private(char const *, std::int64_t a) override {
        return Reached(a, 112);
    }
    int SetPluginInfo_double_Private(double, std::int64_t a) override { return Reached(a, 113); }
    int SetPluginInfo_int32_t_Private(std::int32_t, std::int64_t a) override {
        return Reached(a, 114);
    }
    int SetPluginInfo_size_t_Private(std::size_t, std::int64_t a) override {
        return Reached(a, 115);
    }
    int SetPluginInfo_struct_Private(void *, std::int64_t a) override { return Reached(a, 116); }
    int SetPluginInfo_uint32_t_Private(std::uint32_t, std::int64_t a) override {
        return Reached(a, 117);
    }

    using cALGORITHM::GetPluginInfo_double;
    // A selector of the plug-in's own, answered through the public virtual.
    int GetPluginInfo_double(std::uint32_t selector, double &out, std::int64_t arg) override {
        if (selector == ml::WCFourCC("mine")) {
            out = 42.0;
            return 0;
        }
        return cALGORITHM::GetPluginInfo_double(selector, out, arg);
    }

protected:
    BUFFER_HEADER *UpdateParamSelf(std::uint64_t) override { return nullptr; }
    BUFFER_HEADER *UpdateAlgSelf() override {
        m_Hooks.push_back("UpdateAlgSelf");
        ConvertFracToCoefs(0.25, 0);
        ConvertIntToCoefs(7, 1);
        return PrepareCoefBufferWithBypass(0, 2, true);
    }
    BUFFER_HEADER *InitAlgSelf() override {
        m_Hooks.push_back("InitAlgSelf");
        ConvertFracToCoefs(0.5, 0);
        ConvertIntToCoefs(3, 1);
        BUFFER_HEADER *coefs = PrepareCoefBufferWithBypass(0, 2, true);
        BUFFER_HEADER *states = NewBuffer(ml::KPAPI_PROCESS_MEMORY::eBufferStates, GetMemOpWrite(),
                                          0, GetStatesOfs(), 1, 0);
        return ChainBufs(coefs, states);
    }
    int DoIdleSelf(short) override {
        m_Hooks.push_back("DoIdleSelf");
        return m_DoIdleResult;
    }
    BUFFER_HEADER *ResetAudioBuffersSelf() override {
        return NewBuffer(ml::KPAPI_PROCESS_MEMORY::eBufferStates, GetMemOpWrite(), 0,
                         GetStatesOfs(), 1, 0);
    }
    void InitProcessCodeSelf() override {
        m_Hooks.push_back("InitProcessCodeSelf");
        DSPReqRes().coefsWords = 2;
        DSPReqRes().statesWords = 1;
        DSPReqRes().inputs = 1;
        DSPReqRes().outputs = 1;
        DSPReqRes().maxSampleRate = 96000;
        DSPReqRes().cycles = 10;
    }
    void AdjustProcessCodeDescriptionsSelf() override {
        m_Hooks.push_back("AdjustProcessCodeDescriptionsSelf");
    }
    int FinishCreateSelf() override {
        m_Hooks.push_back("FinishCreateSelf");
        return 0;
    }
    int InitDataSelf() override {
        m_Hooks.push_back("InitDataSelf");
        return 0;
    }
    int InitInstanceDataSelf() override {
        m_Hooks.push_back("InitInstanceDataSelf");
        return 0;
    }
    int SetProcessActiveSelf(bool active) override {
        m_Hooks.push_back(active ? "SetProcessActiveSelf(true)" : "SetProcessActiveSelf(false)");
        return 0;
    }
    int SetExecCallBackSelf() override {
        m_Hooks.push_back("SetExecCallBackSelf");
        return 0;
    }
    // Muting silences the one state word.
    BUFFER_HEADER *SetMuteSelf(bool mute) override {
        return mute ? NewBuffer(ml::KPAPI_PROCESS_MEMORY::eBufferStates, GetMemOpWrite(), 0,
                                GetStatesOfs(), 1, 0)
                    : nullptr;
    }
    int ChangeSampleRateSelf() override {
        m_Hooks.push_back("ChangeSampleRateSelf");
        return 0;
    }
};

// The component the suites create, of a native type.
inline ml::MirelComponentInfo TestComponent() {
    ml::MirelComponentInfo info;
    info.m_ComponentType = ml::WCFourCC("Nati");
    info.m_ComponentSubType = ml::WCFourCC("TsAl");
    info.m_ShortName = "TestAlgorithm";
    return info;
}

// Creates a WCTestAlgorithm in `shell` (steps 1 to 4) and answers it.
inline WCTestAlgorithm *CreateTestAlgorithm(mirel_shell::WCRecordingShell &shell,
                                            ml::MirelComponentInfo const &info = TestComponent()) {
    WCTestAlgorithm *created = nullptr;
    shell.Create(
        info,
        [&created](ml::MirelComponentInfo const &component, ml::WTResContainerType *&container) {
            created = new WCTestAlgorithm(component, container);
            return created;
        },
        [](ml::cALGORITHM *alg) { delete alg; });
    return created;
}

// A suite whose WCTestAlgorithm is created and started in a recording shell before each test.
class WCStartedAlgorithm : public ::testing::Test {
protected:
    void SetUp() override {
        m_Alg = CreateTestAlgorithm(m_Shell);
        ASSERT_NE(m_Alg, nullptr);
        ASSERT_EQ(m_Shell.Start(), 0);
    }
    ml::PluginInstance &Instance() { return m_Shell.Instance(); }

    mirel_shell::WCRecordingShell m_Shell;
    WCTestAlgorithm *m_Alg = nullptr;
};

// Records assertion reports for the life of the object instead of aborting, so a test can feed
// bad input on purpose and check both the code and the report.
class WCRecordingAsserts {
public:
    WCRecordingAsserts() {
        m_previous = ml::SetAssertHandler(&Record);
        Count() = 0;
    }
    ~WCRecordingAsserts() { ml::SetAssertHandler(m_previous); }
    static int &Count() {
        static int count = 0;
        return count;
    }

private:
    static void Record(char const *, int, char const *) { ++Count(); }
    ml::WTAssertHandler m_previous = nullptr;
};

} // namespace mirel_test
