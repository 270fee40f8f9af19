#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Code/Algorithm/WUParamFlags.h"
#include "Code/Algorithm/sCONTROL_PARAM.h"
#include "Code/Presets/PresetDocuments.h"
#include "Code/Presets/WUPresetNumbers.h"
#include "Code/Presets/WUPresetParams.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using namespace ml::Preset;

std::vector<ml::sCONTROL_PARAM> Params(std::vector<std::pair<const char *, double>> values) {
    std::vector<ml::sCONTROL_PARAM> params(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        params[i].m_Name = values[i].first;
        params[i].SetRealWorldValue(1, values[i].second);
    }
    return params;
}

TEST(PresetParams, TravelByNameThroughAFileAndStopTheSetupsLoadingParameters) {
    const auto saved = Params({{"Drive", 0.125}, {"Mix", -3.5}, {"Unused", 9}});
    CPresetInfo info;
    info.m_PluginVersion = "13.1.0.186";
    ASSERT_EQ(SaveSpecificParamsToPreset(info, saved, {1, 0}, kSpecificParamsTag, ml::eSetupB),
              ml::eNoErr);
    EXPECT_EQ(SaveSpecificParamsToPreset(info, saved, {3}, "Other", ml::eSetupB),
              ml::eOutOfRangeNumber);
    std::string text;
    ASSERT_EQ(WritePresetsToXMLString({&info}, kPresetFileRoot, text), ml::eNoErr);
    EXPECT_NE(text.find("<Descriptor Name=\"0\">2</Descriptor>\n"
                        "                    <Descriptor Name=\"Mix\">-3.5000000000</Descriptor>"),
              std::string::npos);

    WTPresetList list;
    ASSERT_EQ(ReadPresetsFromXMLText(text.data(), text.size(), CPresetsFileInfo(), list, true),
              ml::eNoErr);
    // A list in another order, one parameter more: values go by name.
    auto loaded = Params({{"New", 1}, {"Mix", 0}, {"Drive", 0}});
    EXPECT_EQ(LoadParamsFromPreset(*list[0], loaded, kInternalParamsTag, ml::eSetupB, 0),
              ml::ePluginSpecifcNotExisting);
    ASSERT_EQ(LoadAllParamsFromPreset(*list[0], loaded, kSpecificParamsTag, 0), ml::eNoErr);
    EXPECT_EQ(loaded[0].GetRealWorld(1), 1);
    EXPECT_EQ(loaded[0].GetUpdateFlags(), 0u);
    EXPECT_EQ(loaded[1].GetRealWorld(1), -3.5);
    EXPECT_EQ(loaded[2].GetRealWorld(1), 0.125);
    EXPECT_EQ(loaded[2].GetUpdateFlags(), 3u);
    EXPECT_FALSE(list[0]->m_Data[0]->LoadParams());
}

TEST(PresetParams, SavingMarksParametersThePresetMustNotTouch) {
    auto params = Params({{"Gain", 2}, {"Meter", 3}, {"Hidden", 4}, {"Mode", 5}});
    params[1].SetFlag(ml::eParamFlag_DisplayOnlyParam, true);
    params[2].SetFlag(ml::eParamFlag_DontSaveToPreset, true);
    params[3].SetFlag(ml::eParamFlag_DontRecordUndo, true);
    for (const bool undoOnly : {false, true}) {
        sPresetData data;
        SaveRealWorldToPresetData(data, params, 1, undoOnly);
        EXPECT_EQ(data.m_DataType, ePresetDataRealWorld);
        EXPECT_EQ(FormatRealWorldText(data.m_RealWorld, data.m_ValueKinds, false),
                  undoOnly ? "2 * * * " : "2 * * 5 ");
    }
}

} // namespace
