#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/WCGoldenFile.h"

#include "Code/Presets/PresetDocuments.h"
#include "Code/Presets/WUPresetNumbers.h"
#include "Utilities/XML/Code/CXMLElement.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using namespace ml::Preset;

std::string Write(const std::vector<const CPresetInfo *> &list,
                  const char *root = kPresetFileRoot) {
    std::string text;
    EXPECT_EQ(WritePresetsToXMLString(list, root, text), ml::eNoErr);
    return text;
}

WTPresetList Read(const std::string &text, bool withData = true) {
    WTPresetList list;
    EXPECT_EQ(ReadPresetsFromXMLText(text.data(), text.size(), CPresetsFileInfo(), list, withData),
              ml::eNoErr);
    return list;
}

// A preset of two setups: states in A, real-world values with ignored ones in B, MIDI controls,
// the plug-in's XML, and a block of every data type.
CPresetInfo TwoSetupPreset() {
    CPresetInfo info;
    info.m_PresetName = "Warm & Wide";
    info.m_GenericType = ml::WCFourCC("XGai");
    info.m_GroupName = "Mix";
    info.m_PluginName = "GainFilter";
    info.m_PluginSubComp = "GnFl";
    info.m_PluginVersion = "13.1.0.186";
    info.m_ActiveSetup = "SETUP_B";
    info.m_ShellMessage = "hello";
    info.m_SideChainActive = 1;
    auto &a = info.GetOrAddData(ml::eSetupA);
    a.m_SetupName = "Verse";
    a.m_DataType = ePresetDataStates;
    a.m_States = {0, 500, 1000};
    a.m_ValueKinds = {0, 0, 0};
    a.m_NumParams = 3;
    sPresetControlData control;
    control.m_Name = "Gain";
    control.m_MIDIChannel = 2;
    control.m_MIDIControlID = 7;
    control.m_MIDIEventType = eMIDIControlChange;
    control.m_OnValue = 0.75;
    control.m_LeadParam = 1;
    control.m_Latching = true;
    a.m_ControlData.push_back(control);
    a.m_PluginSpecificXML.push_back(new ml::XML::CXMLElement("Mode", "stereo"));
    auto &b = info.GetOrAddData(ml::eSetupB);
    b.m_DataType = ePresetDataRealWorld;
    b.m_RealWorld = {-6.5, 0, 1e-05, 440};
    b.m_ValueKinds = {0, 1, 0, 0};
    b.m_NumParams = 4;

    const double doubles[] = {0.5, -2};
    const float floats[] = {0.25f};
    const int longs[] = {-1, 2, 300};
    const unsigned char bytes[] = {0, 1, 2, 253, 254, 255};
    info.AddPluginSpecifcData(nullptr, 0, "Empty", 1, ePSNoData, ml::eSetupA, 1);
    info.AddPluginSpecifcData(doubles, sizeof(doubles), "Doubles", 2, ePSBufferDouble, ml::eSetupA);
    info.AddPluginSpecifcData(floats, sizeof(floats), "Floats", 3, ePSBufferFloat, ml::eSetupA);
    info.AddPluginSpecifcData(longs, sizeof(longs), "Longs", 4, ePSBufferLong, ml::eSetupA);
    info.AddPluginSpecifcData("a <b>", 5, "Text", 5, ePSBufferString, ml::eSetupA, 0, "Label");
    info.AddPluginSpecifcData(bytes, sizeof(bytes), "Bytes", 6, ePSCompressedBase64, ml::eSetupA);
    ml::XML::CXMLElement tree("Curve");
    tree.AddAttrib("points", 2);
    tree.push_back(new ml::XML::CXMLElement("P", "1 2"));
    info.AddPluginSpecifcData(tree, "Tree", 7, ml::eSetupA);
    info.AddPluginSpecifcData("x ]]> y", 7, "Chars", 8, ePSCharacterData, ml::eSetupA);
    info.AddPluginSpecifcDescriptor_Tag("Doubles", "Gain", "0.5", ml::eSetupA);
    return info;
}

// Reviewed by eye: header children in order, the blocks' data forms, "*" for the ignored value
// and the blank after the last real-world value.

TEST(PresetXML, WritesATwoSetupPresetByteForByteAndReadsItBack) {
    CPresetInfo info = TwoSetupPreset();
    const std::string text = Write({&info});
    mirel_test::ExpectGoldenFile(text, MIREL_PRESET_TEST_DATA, "two_setups.xps");
    const WTPresetList list = Read(text);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(Write({list[0].get()}), text);
    EXPECT_TRUE(CPresetInfo::IsSamePreset(*list[0], info));
}

TEST(PresetXML, WritesAFactoryFileWithTitlesAndSeparatorsAndListsThemInOrder) {
    CPresetInfo title, reset, separator, none;
    title.m_PresetName = "Basics";
    title.m_Flags = ePresetFlagDummyTitle;
    reset.m_PresetName = "Default";
    reset.GetOrAddData(ml::eCurrentSetup).m_DataType = ePresetDataReset;
    separator.m_Flags = ePresetFlagSeparator;
    separator.m_GenericType = ml::WCFourCC("XGai");
    separator.m_PluginSubComp = "GnFl";
    none.m_PresetName = "Blocks only";
    none.m_SideChainActive = 0;
    none.GetOrAddData(ml::eSetupA).m_DataType = ePresetDataNone;
    const std::string text = Write({&title, &reset, &separator, &none});
    mirel_test::ExpectGoldenFile(text, MIREL_PRESET_TEST_DATA, "factory.xps");
    const WTPresetList list = Read(text);
    ASSERT_EQ(list.size(), 4u);
    EXPECT_TRUE(list[0]->IsDummyTitle());
    EXPECT_EQ(list[0]->m_PresetName, "Basics");
    EXPECT_EQ(list[1]->m_Data[0]->m_DataType, ePresetDataReset);
    EXPECT_EQ(list[1]->m_SideChainActive, CPresetInfo::kSideChainNotStored);
    EXPECT_TRUE(list[2]->IsSeperator());
    EXPECT_EQ(list[2]->m_PresetName, "Separator");
    EXPECT_EQ(list[3]->m_Data[0]->m_DataType, ePresetDataNone);
    EXPECT_EQ(list[3]->m_SideChainActive, 0);
    for (std::size_t i = 0; i < list.size(); ++i) {
        EXPECT_EQ(list[i]->m_IndexInList, std::int64_t(i));
        EXPECT_EQ(list[i]->m_PresetVersion, "2");
    }
    std::vector<const CPresetInfo *> again;
    for (const auto &entry : list)
        again.push_back(entry.get());
    EXPECT_EQ(Write(again), text);
}

TEST(PresetRealWorldText, PrintsTenValuesALineAndMarksIgnoredOnes) {
    std::vector<double> values;
    for (int i = 1; i <= 23; ++i)
        values.push_back(i);
    std::vector<unsigned int> kinds(23, ePresetValue);
    kinds[1] = ePresetValueIgnore;
    kinds[2] = ePresetValueReset;
    EXPECT_EQ(FormatRealWorldText(values, kinds, false),
              "1 * * 4 5 6 7 8 9 10\n11 12 13 14 15 16 17 18 19 20\n21 22 23 ");
    EXPECT_EQ(FormatRealWorldText(values, kinds, true).substr(0, 6), "1 2 3 ");
    EXPECT_EQ(FormatRealWorldText({0.1, -2.5e300}, {}, false),
              "0.10000000000000000555 -2.5000000000000001313e+300 ");
}

struct WSParametersCase {
    const char *m_Type;
    const char *m_Text;
    const char *m_PluginVersion;
    int m_DataType;
    std::vector<double> m_Values;
    std::vector<unsigned int> m_Kinds;
};

TEST(PresetXML, ReadsParameterTextsOfEveryKind) {
    const WSParametersCase cases[] = {
        {"RealWorld", "1.5 * R;-2\t0,25\n", "13.0.0", 1, {1.5, 0, 0, -2, 0.25}, {0, 1, 2, 0, 0}},
        // Only a token of digits, commas and points has its commas read as decimal marks.
        {"realworld", "1,5 -1,5 0,125", "13.0.0", 1, {1.5, -1, 0.125}, {0, 0, 0}},
        // Presets before 11.0.0 keep the old conversion, which is off in the last bit here.
        {"REALWORLD", "0.3", "10.9.9", 1, {0.30000000000000004}, {0}},
        {"RealWorld", "0.3", "11.0.0", 1, {0.3}, {0}},
        {"States", "0 * 1000 R 12abc", "13.0.0", 0, {0, 0, 1000, 0, 12}, {0, 1, 0, 2, 0}},
        {"reset", "1 2 3", "13.0.0", 2, {}, {}},
        {"Reset", "", "13.0.0", 2, {}, {}},
        {"NODATA", "1", "13.0.0", 3, {}, {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.m_Type) + " " + c.m_Text + " " + c.m_PluginVersion);
        const std::string text = std::string("<PresetXMLTree version=\"2\"><Preset Name=\"P\">"
                                             "<PresetHeader><PluginVersion>") +
                                 c.m_PluginVersion +
                                 "</PluginVersion></PresetHeader><PresetData Setup=\"SETUP_A\">"
                                 "<Parameters Type=\"" +
                                 c.m_Type + "\">" + c.m_Text +
                                 "</Parameters></PresetData></Preset></PresetXMLTree>";
        const WTPresetList list = Read(text);
        ASSERT_EQ(list.size(), 1u);
        const sPresetData &data = *list[0]->m_Data.at(0);
        EXPECT_EQ(data.m_DataType, c.m_DataType);
        EXPECT_EQ(data.m_ValueKinds, c.m_Kinds);
        std::vector<double> values(data.m_RealWorld);
        if (c.m_DataType == ePresetDataStates)
            values.assign(data.m_States.begin(), data.m_States.end());
        EXPECT_EQ(values, c.m_Values);
    }
}

TEST(PresetXML, PresetDataWithoutSetupFillsEverySetup) {
    ml::XML::CXMLElement preset("Preset");
    auto *data = preset.push_sub_element(new ml::XML::CXMLElement("PresetData"));
    data->push_sub_element(new ml::XML::CXMLElement("Parameters", "7 8"))
        ->AddAttrib("Type", "States");
    CPresetInfo info;
    info.GetOrAddData(ml::eSetupA);
    info.GetOrAddData(ml::eSetupB);
    ASSERT_EQ(ReadDataFromXML_CPresetInfo(&preset, info), ml::eNoErr);
    for (const auto &setup : info.m_Data)
        EXPECT_EQ(setup->m_States, (std::vector<int>{7, 8}));
}

TEST(PresetXML, RefusesBrokenDocumentsAndKeepsTheList) {
    const std::string cases[] = {
        "",
        "<PresetXMLTree version=\"2\"><Preset Name=\"cut",
        "<Other/>",
        "\x01\xff\xfe<<<",
        std::string(5000, '<'),
        std::string(100000, ' '),
        "<PresetXMLTree><Preset Name=\"x\"><PresetData><PluginSpecific TagName=\"t\" "
        "DataType=\"XMLObject\"><Data/></PluginSpecific></PresetData></Preset></PresetXMLTree>",
        "<PresetXMLTree><Preset Name=\"x\"><PresetData><PluginSpecific TagName=\"t\" "
        "DataType=\"CompressedBase64\"><Data>@@@</Data></PluginSpecific></PresetData></Preset>"
        "</PresetXMLTree>",
        "<PresetXMLTree><Preset Name=\"x\"><PresetData><PluginSpecific TagName=\"t\" "
        "DataType=\"XMLObject\"><Data><![CDATA[<a><b></a>]]></Data></PluginSpecific>"
        "</PresetData></Preset></PresetXMLTree>",
    };
    for (const auto &text : cases) {
        SCOPED_TRACE(text.substr(0, 60));
        WTPresetList list;
        list.push_back(std::make_unique<CPresetInfo>());
        list[0]->m_PresetName = "kept";
        EXPECT_NE(ReadPresetsFromXMLText(text.data(), text.size(), CPresetsFileInfo(), list, true),
                  ml::eNoErr);
        ASSERT_EQ(list.size(), 1u);
        EXPECT_EQ(list[0]->m_PresetName, "kept");
    }
}

} // namespace
