#include "Code/Algorithm/PluginInfoSelectors.h"

#include <gtest/gtest.h>

#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "core/WCStMemObj.h"
#include "tests/Code/Algorithm/WCTestAlgorithm.h"

namespace {

using namespace mirel_test;
using ml::WCFourCC;

using Selectors = WCStartedAlgorithm;

// A plug-in's own selector reaches the public virtual; 'prvt' each private one, with its argument.
TEST_F(Selectors, OwnSelectorsAndPrvtReachThePlugInsVirtuals) {
    double number = 0;
    EXPECT_EQ(ml::GetPluginInfo_double(Instance(), WCFourCC("mine"), number, 0), 0);
    EXPECT_EQ(number, 42.0);
    const unsigned int prvt = WCFourCC("prvt");
    bool flag = false;
    EXPECT_EQ(ml::GetPluginInfo_bool(Instance(), prvt, flag, 1), 101);
    EXPECT_TRUE(flag);
    EXPECT_EQ(m_Alg->m_PrivateArg, 1);
    EXPECT_EQ(ml::GetPluginInfo_double(Instance(), prvt, number, 2), 102);
    EXPECT_EQ(number, 2.5);
    float ratio = 0;
    EXPECT_EQ(ml::GetPluginInfo_float(Instance(), prvt, ratio, 3), 103);
    std::int32_t signedValue = 0;
    EXPECT_EQ(ml::GetPluginInfo_int32_t(Instance(), prvt, signedValue, 4), 104);
    EXPECT_EQ(signedValue, -4);
    std::size_t size = 0;
    EXPECT_EQ(ml::GetPluginInfo_size_t(Instance(), prvt, size, 5), 105);
    EXPECT_EQ(ml::GetPluginInfo_struct(Instance(), prvt, nullptr, 6), 106);
    std::uint32_t unsignedValue = 0;
    EXPECT_EQ(ml::GetPluginInfo_uint32_t(Instance(), prvt, unsignedValue, 7), 107);
    ml::WCFixedString<63> text;
    EXPECT_EQ(ml::GetPluginInfo_WCFixedString(Instance(), prvt, text, 8), 108);
    EXPECT_STREQ(text.c_str(), "private");
    ml::Utils::WCStMemObj memory;
    EXPECT_EQ(ml::GetPluginInfo_WCStMemObj(Instance(), prvt, memory, 9), 109);
    EXPECT_EQ(m_Alg->m_PrivateArg, 9);

    EXPECT_EQ(ml::SetPluginInfo_bool(Instance(), prvt, true, 11), 111);
    EXPECT_EQ(ml::SetPluginInfo_c_str(Instance(), prvt, "x", 12), 112);
    EXPECT_EQ(ml::SetPluginInfo_double(Instance(), prvt, 1.0, 13), 113);
    EXPECT_EQ(ml::SetPluginInfo_int32_t(Instance(), prvt, 1, 14), 114);
    EXPECT_EQ(ml::SetPluginInfo_size_t(Instance(), prvt, 1, 15), 115);
    EXPECT_EQ(ml::SetPluginInfo_struct(Instance(), prvt, nullptr, 16), 116);
    EXPECT_EQ(ml::SetPluginInfo_uint32_t(Instance(), prvt, 1, 17), 117);
    EXPECT_EQ(m_Alg->m_PrivateArg, 17);
    // 'sofp' is the same channel as 'prvt'.
    EXPECT_EQ(ml::SetPluginInfo_bool(Instance(), WCFourCC("sofp"), true, 18), 111);
    EXPECT_EQ(m_Alg->m_PrivateArg, 18);
}

TEST(SelectorDefaults, PrivateChannelAnswersMinusOneUntilThePlugInTakesIt) {
    // A plug-in that overrides none of the private virtuals.
    class Plain : public WCTestAlgorithm {
    public:
        using WCTestAlgorithm::WCTestAlgorithm;
        int GetPluginInfo_bool_Private(bool &out, std::int64_t arg) override {
            return cALGORITHM::GetPluginInfo_bool_Private(out, arg);
        }
    };
    ml::WTResContainerType *container = nullptr;
    Plain alg(TestComponent(), container);
    ml::PluginInstance instance(TestComponent());
    instance.m_pAlg = &alg;
    bool flag = false;
    EXPECT_EQ(ml::GetPluginInfo_bool(instance, WCFourCC("prvt"), flag, 0), -1);
}

TEST_F(Selectors, TextSelectorsFillTheirTextOnlyOnSuccess) {
    Instance().m_PluginFileName = "/plugins/Test.bundle";
    const struct {
        char const *selector;
        std::int64_t arg;
        int code;
        char const *text;
    } cases[] = {
        {"sPFN", 0, 0, "/plugins/Test.bundle"},
        {"sAlN", 0, 0, "TestAlgorithm"},
        {"sAlL", 4, 0, "Test"},
        // Without an "AlgType" element the algorithm type is "????", not the component's type.
        {"algT", 0, 0, "????"},
        {"cost", 0, 0, "XPst"},
        {"cost", 1, ml::eIllegalChunkIndex, "before"},
        {"sPTP", 0, ml::eCantLoadProcessFunction, "before"},
        {"icnf", 0, ml::kErrNoGUI, "before"},
    };
    for (auto const &c : cases) {
        ml::WCFixedString<1023> text("before");
        EXPECT_EQ(ml::GetPluginInfo_WCFixedString(Instance(), WCFourCC::FromText(c.selector), text,
                                                  c.arg),
                  c.code)
            << c.selector;
        EXPECT_STREQ(text.c_str(), c.text) << c.selector << " " << c.arg;
    }
    EXPECT_EQ(m_Alg->GetAlgSubType(), WCFourCC("????"));
}

TEST_F(Selectors, KeyValueBooleansAreFalseUntilSet) {
    bool flag = true;
    EXPECT_EQ(ml::GetPluginInfo_bool(Instance(), WCFourCC("isml"), flag, 0), 0);
    EXPECT_FALSE(flag);
    m_Alg->SetPluginValue_bool("IsMidiListener", true);
    EXPECT_EQ(ml::GetPluginInfo_bool(Instance(), WCFourCC("isml"), flag, 0), 0);
    EXPECT_TRUE(flag);
    // 'susp' is the negation of "DontSuspendProcess".
    EXPECT_EQ(ml::GetPluginInfo_bool(Instance(), WCFourCC("susp"), flag, 0), 0);
    EXPECT_TRUE(flag);
    m_Alg->SetPluginValue_bool("DontSuspendProcess", true);
    EXPECT_EQ(ml::GetPluginInfo_bool(Instance(), WCFourCC("susp"), flag, 0), 0);
    EXPECT_FALSE(flag);
    EXPECT_EQ(ml::GetPluginInfo_bool(Instance(), WCFourCC("pact"), flag, 0), 0);
    EXPECT_TRUE(flag);
    // An export item that does not exist: false and -25.
    flag = true;
    EXPECT_EQ(ml::GetPluginInfo_bool(Instance(), WCFourCC("sgpv"), flag,
                                     reinterpret_cast<std::int64_t>("no item")),
              ml::eNotImplemented);
    EXPECT_FALSE(flag);
}

TEST_F(Selectors, KeyValueIntegersReadFourBytesOrReportTheMissingKey) {
    std::int32_t value = -1;
    EXPECT_EQ(ml::GetPluginInfo_int32_t(Instance(), WCFourCC("gncf"), value, 0), 0);
    EXPECT_EQ(value, 2);
    EXPECT_EQ(ml::GetPluginInfo_int32_t(Instance(), WCFourCC("maxr"), value, 0), 0);
    EXPECT_EQ(value, 96000);
    // FinishCreate adds the key with 0.
    value = -1;
    EXPECT_EQ(ml::GetPluginInfo_int32_t(Instance(), WCFourCC("tail"), value, 0), 0);
    EXPECT_EQ(value, 0);
    // A value wider than four bytes does not fit the store's answer, and no export item has the
    // key, so the answer is the items' "not found" and the output is untouched.
    value = -1;
    m_Alg->KeyValues().Set("tail:length", std::int64_t(5));
    EXPECT_EQ(ml::GetPluginInfo_int32_t(Instance(), WCFourCC("tail"), value, 0),
              ml::eValueNotFound);
    EXPECT_EQ(value, -1);
}

TEST_F(Selectors, GuiSelectorsBeforeTheGuiExists) {
    std::int32_t control = 0;
    EXPECT_EQ(ml::GetPluginInfo_int32_t(Instance(), WCFourCC("Ctrl"), control, 0),
              ml::kErrGUINotFullyCreated);
    std::uint32_t count = 0;
    for (char const *sel : {"gCon", "selc", "rgpr"})
        EXPECT_EQ(ml::GetPluginInfo_uint32_t(Instance(), WCFourCC::FromText(sel), count, 0),
                  ml::kErrGUINotFullyCreated)
            << sel;
    EXPECT_EQ(ml::SetPluginInfo_bool(Instance(), WCFourCC("ghom"), true, 0), ml::kErrNoGUI);
}

TEST_F(Selectors, AutomationInfoSizeAndTheIndexOfAnAbsentControl) {
    std::size_t size = 0;
    EXPECT_EQ(ml::GetPluginInfo_size_t(Instance(), WCFourCC("cais"), size, 0), 0);
    EXPECT_EQ(size, 312u);
    std::int32_t index = 5;
    EXPECT_EQ(ml::GetPluginInfo_int32_t(Instance(), WCFourCC("IfrN"), index,
                                        reinterpret_cast<std::int64_t>("Gain")),
              0);
    EXPECT_EQ(index, -1);
}

TEST_F(Selectors, ProcessMemoryRequestReportsTheNeeds) {
    ml::ProcessMemory::SDSPReqRes needs;
    EXPECT_EQ(ml::GetPluginInfo_struct(Instance(), WCFourCC("reqR"), &needs, 0), 0);
    EXPECT_EQ(needs.coefsWords, 2u);
    EXPECT_EQ(needs.statesWords, 1u);
    ml::ProcessMemory::WSProcessMemoryRequest request;
    EXPECT_EQ(ml::GetPluginInfo_struct(Instance(), WCFourCC("PmRq"), &request, 0), 0);
    EXPECT_EQ(request.coefsNum, 2u);
    EXPECT_EQ(request.statesNum, 1u);
    EXPECT_EQ(request.refcon, m_Alg->GetExecRefcon());
}

TEST_F(Selectors, TempoBuildsMusicInfoWithTheOtherFieldsNotGiven) {
    EXPECT_EQ(ml::SetPluginInfo_double(Instance(), WCFourCC("temp"), 128.0, 0), 0);
    EXPECT_EQ(m_Alg->GetMusicInfo().m_Tempo, 128.0);
    EXPECT_EQ(m_Alg->GetMusicInfo().m_Resolution, -1.0);
    EXPECT_EQ(m_Alg->GetMusicInfo().m_TimeSigNum, -1.0);
    EXPECT_EQ(m_Alg->GetMusicInfo().m_TimeSigDen, -1.0);
}

TEST_F(Selectors, FailedFactoryPresetLoadDoesNotUpdate) {
    const auto updates = m_Alg->GetNumUpdateAlgCalls();
    EXPECT_EQ(ml::SetPluginInfo_c_str(Instance(), WCFourCC("lfps"), "Factory 1", 0),
              ml::eFactoryPresetNotFound);
    EXPECT_EQ(m_Alg->GetNumUpdateAlgCalls(), updates);
}

TEST(SelectorBadInput, NullAlgorithmIsRefusedWithNullPointer) {
    WCRecordingAsserts asserts;
    ml::PluginInstance instance;
    int record = 0;
    EXPECT_EQ(ml::SetPluginInfo_struct(instance, WCFourCC("exbf"), &record, 0),
              ml::eMemNullPointer);
    bool flag = false;
    EXPECT_EQ(ml::GetPluginInfo_bool(instance, WCFourCC("byps"), flag, 0), ml::eMemNullPointer);
    EXPECT_EQ(WCRecordingAsserts::Count(), 2);
}

TEST_F(Selectors, NullStructsAreRefused) {
    WCRecordingAsserts asserts;
    EXPECT_EQ(ml::GetPluginInfo_struct(Instance(), WCFourCC("reqR"), nullptr, 0),
              ml::eMemNullPointer);
    EXPECT_EQ(ml::SetPluginInfo_struct(Instance(), WCFourCC("exbf"), nullptr, 0),
              ml::eMemNullPointer);
    EXPECT_EQ(ml::SetPluginInfo_struct(Instance(), WCFourCC("musp"), nullptr, 0),
              ml::eMemNullPointer);
    int wrongVersion[78] = {10, 0};
    EXPECT_EQ(ml::GetPluginInfo_struct(Instance(), WCFourCC("caui"), wrongVersion, 0),
              ml::kErrWrongAutomationInfoVersion);
    int noSuchControl[78] = {11, 0};
    EXPECT_EQ(ml::GetPluginInfo_struct(Instance(), WCFourCC("caui"), noSuchControl, 0),
              ml::eControlOutOfRange);
}

} // namespace
