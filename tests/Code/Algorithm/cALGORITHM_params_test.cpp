#include <cmath>
#include <cstring>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "Code/Algorithm/PluginInfoSelectors.h"
#include "Code/Algorithm/PluginInstance.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "core/WCStMemObj.h"
#include "files/WUFileSystemObjects.h"
#include "tests/support/WCSilentAlgorithm.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Gain">
    <Scale><ScaleType Type="linear"/><Minimum>-24</Minimum><Maximum>12</Maximum>
      <Resolution>0.1</Resolution></Scale>
    <InitialValue>-6</InitialValue><DisplayFunction>DisplayGainWithDB</DisplayFunction>
  </Parameter>
  <Parameter Name="Cutoff">
    <Scale><ScaleType Type="Octaves"/></Scale><InitialValue Type="State">500</InitialValue>
    <DisplayFunction>Hertz</DisplayFunction>
  </Parameter>
</ParamXML>)";

double Octaves(double state, ml::sSCALE_INFO *) {
    return 20.0 * state;
}
double InverseOctaves(double value, ml::sSCALE_INFO *) {
    return value / 20.0;
}

// A plug-in that carries its parameter XML as text and adds a scale kind and a display.
class WCParamAlgorithm : public mirel_test::WCSilentAlgorithm {
public:
    WCParamAlgorithm(ml::MirelComponentInfo const &info, ml::WTResContainerType *&container,
                     const char *xml)
        : WCSilentAlgorithm(info, container), m_XML(xml) {}
    using cALGORITHM::ReadAlgXMLFromText;

protected:
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        if (m_XML == nullptr)
            return cALGORITHM::ReadParamXML(out);
        return out.Assign(m_XML, std::strlen(m_XML));
    }
    int PrepareScaleFunctionsMapSelf() override {
        ParamMaps().scaleFunctions[ml::WTParamMapKey("Octaves")] = {Octaves, InverseOctaves};
        return 0;
    }
    int PrepareDisplayFunctionsMapSelf() override {
        ParamMaps().displayFunctions[ml::WTParamMapKey("Hertz")] = [](double, double rw,
                                                                      ml::WCFixedStringBase &out) {
            out = "";
            out << static_cast<int>(rw) << " Hz";
        };
        return 0;
    }

private:
    const char *m_XML;
};

struct WSMade {
    explicit WSMade(const char *xml) : alg(info, container, xml) { instance.m_pAlg = &alg; }
    ml::MirelComponentInfo info;
    ml::WTResContainerType *container = nullptr;
    WCParamAlgorithm alg;
    ml::PluginInstance instance;
};

TEST(AlgorithmParameters, FinishCreateBuildsAndScalesTheListAndIdleWritesItsTexts) {
    WSMade made(kParamXML);
    EXPECT_EQ(made.alg.FinishCreate(), 0);
    auto &alg = made.alg;
    ASSERT_EQ(alg.GetNumParams(), 2u);
    EXPECT_EQ(alg.GetParameterListError(), 0);
    double value = 0;
    EXPECT_EQ(ml::GetPluginInfo_double(made.instance, ml::WCFourCC("prwv"), value, 0), 0);
    EXPECT_DOUBLE_EQ(value, -6.0);
    EXPECT_NEAR(alg.GetParam(0)->GetState(1), 500.0, 1e-9) << "both setups scaled";
    value = 12.0;
    EXPECT_EQ(ml::GetPluginInfo_double(made.instance, ml::WCFourCC("psfr"), value, 0), 0);
    EXPECT_DOUBLE_EQ(value, 1000.0);
    value = 500.0;
    EXPECT_EQ(ml::GetPluginInfo_double(made.instance, ml::WCFourCC("prfs"), value, 1), 0);
    EXPECT_DOUBLE_EQ(value, 10000.0) << "the plug-in's own scale kind";
    EXPECT_EQ(ml::GetPluginInfo_double(made.instance, ml::WCFourCC("prwv"), value, 2),
              ml::eOutOfRangeNumber);

    std::size_t id = 99;
    EXPECT_EQ(ml::GetPluginInfo_size_t(made.instance, ml::WCFourCC("pifn"), id,
                                       reinterpret_cast<std::int64_t>("Cutoff")),
              0);
    EXPECT_EQ(id, 1u);
    EXPECT_NE(ml::GetPluginInfo_size_t(made.instance, ml::WCFourCC("pifn"), id,
                                       reinterpret_cast<std::int64_t>("Nope")),
              0);
    EXPECT_EQ(alg.GetPluginValue_int32_t("GetNumParams", 0), 2);

    EXPECT_EQ(alg.DoIdle(0), 0);
    EXPECT_STREQ(alg.GetParam(0)->GetValueString().c_str(), "-6.0 dB");
    EXPECT_STREQ(alg.GetParam(1)->GetValueString().c_str(), "10000 Hz") << "the plug-in's display";
    EXPECT_EQ(alg.GetParam(0)->GetUpdateFlags(), 0u);
}

TEST(AlgorithmParameters, MissingOrBrokenXMLLeavesNoParameters) {
    for (const char *xml : {static_cast<const char *>(nullptr), "", "<ParamXML><Parameter"}) {
        WSMade made(xml);
        EXPECT_EQ(made.alg.FinishCreate(), 0) << "the plug-in's own step decides the result";
        EXPECT_EQ(made.alg.GetNumParams(), 0u);
        EXPECT_NE(made.alg.GetParameterListError(), 0);
        double value = 0;
        EXPECT_EQ(ml::GetPluginInfo_double(made.instance, ml::WCFourCC("prwv"), value, 0),
                  ml::eOutOfRangeNumber);
    }
    WSMade none(nullptr);
    none.alg.FinishCreate();
    EXPECT_EQ(none.alg.GetParameterListError(), ml::eRMContainerNotFound);
}

TEST(AlgorithmKeyValues, FinishCreateAddsTheListedKeys) {
    WSMade made(kParamXML);
    made.alg.SetPluginValue_bool("ARASupport", true);
    made.alg.FinishCreate();
    std::istringstream keys(
        "StaticSidechain NotifyTouchReleaseOnPresetLoad GUI_resize_supported "
        "GUI_screen_oversize_supported EnableMirelEditMode IsMirelEditModeEnabled "
        "ShowAllHTMLs HideAllHTMLs ShowAllChildWindows HideAllChildWindows "
        "GetNumAutomationControls GUI_System_ExecuteCopy GUI_System_ExecuteSwitch "
        "GetNumParams num_DoIdle_calls num_UpdateAlg_calls num_InitData_calls "
        "optimalRefreshRate ARASupport inputs:num sidechain_inputs:num outputs:num "
        "inputs:stem sidechain_inputs:stem outputs:stem samplerate samplerate:max "
        "coefs:num coefs:offset through_delay tail:length globalbypass has_link_groups "
        "channels:num:max FinishCreateWasCalled");
    for (std::string key; keys >> key;)
        EXPECT_TRUE(made.alg.HasPluginValue(key.c_str())) << key;
    EXPECT_TRUE(made.alg.GetPluginValue_bool("ARASupport", false)) << "set before, kept";
}

TEST(AlgorithmKeyValues, EditModeIsEnabledOnlyWhereItsDiagnosticsFolderExists) {
    mirel_test::WCTestHome home;
    {
        WSMade made(kParamXML);
        made.alg.FinishCreate();
        EXPECT_FALSE(made.alg.GetPluginValue_bool("EnableMirelEditMode", true));
    }
    ml::FM::WCStPath const diagnostics(ml::FM::eUserDomain, ml::FM::eMirelPreferencesFolder,
                                       "Diagnostics");
    ASSERT_EQ(ml::FM::CreateFolder(ml::FM::WCStPath(diagnostics, "EnableMirelEditMode")), 0);
    WSMade made(kParamXML);
    made.alg.FinishCreate();
    EXPECT_TRUE(made.alg.GetPluginValue_bool("EnableMirelEditMode", false));
}

TEST(AlgorithmKeyValues, BinaryAccessFallsThroughToExportItems) {
    WSMade made(kParamXML);
    made.alg.FinishCreate();
    auto &alg = made.alg;
    bool supported = false;
    EXPECT_EQ(ml::GetPluginInfo_bool(made.instance, ml::WCFourCC("sgpv"), supported,
                                     reinterpret_cast<std::int64_t>("track_name")),
              0);
    EXPECT_TRUE(supported);
    EXPECT_TRUE(alg.HasPluginValue("track_volume"));
    EXPECT_EQ(alg.SetPluginValueBinary("track_name", "Bass", 4), 0);
    EXPECT_STREQ(alg.GetTrackName().c_str(), "Bass");
    EXPECT_EQ(alg.SetPluginValueBinary("track_volume", "-3.5", 4), 0);
    EXPECT_EQ(alg.GetTrackVolume(), -3.5);
    EXPECT_EQ(alg.SetPluginValueBinary("track_name", nullptr, 4), ml::eMemNullPointer);

    EXPECT_EQ(alg.SetPluginValueBinary("free key", "xyz", 3), 0) << "other keys go to the store";
    char text[8] = {};
    EXPECT_EQ(alg.GetPluginValueBinary("free key", text, sizeof text), 0)
        << "the store takes a larger buffer";
    EXPECT_STREQ(text, "xyz");
    EXPECT_EQ(alg.GetPluginValueBinary("free key", text, 2), ml::eValueNotFound)
        << "too small: on to the items, which have no such key";
    EXPECT_EQ(alg.GetPluginValueBinary("nothing", text, 8), ml::eValueNotFound);
    EXPECT_EQ(alg.GetPluginValueBinary("free key", nullptr, 8), ml::eMemNullPointer);
}

TEST(AlgorithmKeyValues, PointerAndFunctionFormsReadCurrentAndConvert) {
    WSMade made(nullptr);
    auto &alg = made.alg;
    std::uint64_t counter = 3;
    float ratio = 0.5f;
    alg.SetPluginValue_uint64_t_ptr("counter", &counter);
    alg.SetPluginValue_float_func("ratio", [&ratio] { return ratio; });
    counter = 9;
    ratio = 2.5f;
    EXPECT_EQ(alg.GetPluginValue_int32_t("counter", 0), 9);
    EXPECT_EQ(alg.GetPluginValue_double("ratio", 0), 2.5);
    EXPECT_EQ(alg.GetPluginValue_c_str("counter", ""), "9");
    alg.SetPluginValue_c_str("text", "17");
    EXPECT_EQ(alg.GetPluginValue_uint32_t("text", 0), 17u);
    EXPECT_EQ(alg.GetPluginValue_int64_t("absent", -5), -5);
    EXPECT_FALSE(alg.HasPluginValue("absent"));
    alg.SetPluginValue_bool_ptr("null pointer", nullptr);
    EXPECT_FALSE(alg.HasPluginValue("null pointer")) << "a null pointer stores nothing";

    ml::WTKeyValueType type{};
    std::uint64_t size = 0;
    EXPECT_EQ(alg.GetPluginValueInfo("counter", type, size), 0);
    EXPECT_EQ(type, ml::eKeyValueUInt64);
    EXPECT_EQ(size, 8u);
    EXPECT_EQ(alg.GetPluginValueInfo("text", type, size), 0);
    EXPECT_EQ(type, ml::eKeyValueString);
    EXPECT_EQ(size, 2u);
    EXPECT_EQ(alg.GetPluginValueInfo("absent", type, size), ml::eValueNotFound);
}

TEST(AlgorithmKeyValues, AllValuesDumpAsOneJsonObject) {
    WSMade made(nullptr);
    auto &alg = made.alg;
    alg.SetPluginValue_bool("flag", true);
    alg.SetPluginValue_double("nan", std::nan(""));
    alg.SetPluginValue_c_str("bad utf8", "\xff\xfe");
    alg.SetPluginValue_int64_t("big", -1234567890123LL);
    ml::Utils::WCStMemObj out;
    ASSERT_EQ(alg.GetAllPluginValues(out), 0);
    const std::string text(static_cast<char const *>(out.GetPtr()), out.GetSize());
    EXPECT_NE(text.find("\"flag\": true"), std::string::npos) << text;
    EXPECT_NE(text.find("\"nan\": null"), std::string::npos) << text;
    EXPECT_NE(text.find("\"big\": -1234567890123"), std::string::npos) << text;
    EXPECT_NE(text.find("\"bad utf8\""), std::string::npos) << text;
}

TEST(AlgorithmXML, ElementsSetIdentityNumbersAndFlags) {
    WSMade made(nullptr);
    auto &alg = made.alg;
    const std::string xml = R"(<AlgXML><cALGORITHM>
        <AlgName>Gain Filter</AlgName><AlgNameList><Name NumChars="3">GnF</Name>
          <Name NumChars="8">GainFltr</Name></AlgNameList>
        <AlgType>GnFl</AlgType><PresetXMLResID>1200</PresetXMLResID>
        <OptimalRefreshRate>abc</OptimalRefreshRate><UndoLevel>50</UndoLevel>
        <IsMidiListener/><DontNotifyPresetLoadedToHost/><NotAFlag/>
      </cALGORITHM></AlgXML>)";
    ASSERT_EQ(alg.ReadAlgXMLFromText(xml.data(), xml.size()), 0);
    ml::WCFixedString<63> name;
    alg.GetAlgName(name);
    EXPECT_STREQ(name.c_str(), "Gain Filter");
    alg.GetAlgNameOfLength(3, name);
    EXPECT_STREQ(name.c_str(), "GnF");
    alg.GetAlgNameOfLength(8, name);
    EXPECT_STREQ(name.c_str(), "GainFltr");
    alg.GetAlgNameOfLength(10, name);
    EXPECT_STREQ(name.c_str(), "GainFltr") << "the longest authored name that fits";
    alg.GetAlgNameOfLength(2, name);
    EXPECT_STREQ(name.c_str(), "Ga") << "nothing authored fits: the name cut";
    alg.GetAlgNameOfLength(20, name);
    EXPECT_STREQ(name.c_str(), "Gain Filter");
    EXPECT_EQ(alg.GetAlgType(), ml::WCFourCC("GnFl"));
    EXPECT_EQ(alg.GetPresetResourceNumber(), 1200);
    EXPECT_EQ(alg.GetOptimalRefreshRate(), 80u) << "unreadable numbers keep the default";
    EXPECT_EQ(alg.GetUndoLevel(), 50u);
    EXPECT_TRUE(alg.GetPluginValue_bool("IsMidiListener", false));
    EXPECT_FALSE(alg.GetPluginValue_bool("NotifyPresetLoadedToHost", true));
    EXPECT_TRUE(alg.HasPluginValue("NotifyPresetLoadedToHost"));
    EXPECT_FALSE(alg.HasPluginValue("NotAFlag"));

    EXPECT_EQ(alg.ReadAlgXMLFromText("", 0), ml::eRMResNotFound);
    EXPECT_EQ(alg.ReadAlgXMLFromText("<AlgXML><cALGORITHM>", 20), ml::eXMLParserFailed);
    EXPECT_EQ(alg.GetPresetResourceNumber(), 1200) << "a refused text changes nothing";
    EXPECT_EQ(alg.GetAlgXMLError(), ml::eXMLParserFailed) << "but leaves its code";
}

} // namespace
