#include "Code/Algorithm/sCONTROL_PARAMXML.h"

#include <cmath>
#include <cstring>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "Code/Algorithm/WUDisplayFunctions.h"
#include "Code/Algorithm/WUParametersXML.h"
#include "core/WTErrors.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

class WCTestExtension : public ml::WCParamExtension {};

ml::WSParamMaps BuiltInMaps() {
    ml::WSParamMaps maps;
    ml::DisplayFunctions::AddBuiltIns(maps.displayFunctions);
    maps.extensionFactories[ml::WTParamMapKey("TestExtension")] =
        [](char const *) -> ml::WCParamExtension * { return new WCTestExtension; };
    maps.drawClassFactories[ml::WTParamMapKey("Nothing")] =
        [](char const *) -> ml::WCGraphDataBase * { return nullptr; };
    return maps;
}

int Read(std::string const &text, std::vector<ml::sCONTROL_PARAM> &params) {
    return ml::ParamXML::ReadParametersXMLFromText(text.data(), text.size(), BuiltInMaps(), params);
}

const char *kParams = R"(<ParamXML>
  <Parameter Name="Gain">
    <Scale><ScaleType Type="linear"/><Minimum>-24</Minimum><Maximum>24</Maximum>
      <Resolution>0.1</Resolution></Scale>
    <Flags><Drag value="true"/><AlwaysUpdate/><NoSuchFlag value="true"/></Flags>
    <InitialValue>0</InitialValue><ResetValue Type="State">1000</ResetValue>
    <Label>Gain</Label><Units>dB</Units><DisplayFunction>DisplayGainWithDB</DisplayFunction>
    <MouseAcceleration>0.25</MouseAcceleration>
    <ExtensionClass DataType="float">TestExtension</ExtensionClass>
    <LinkGroups>1, 3 7</LinkGroups>
  </Parameter>
  <Parameter Name="Band Gain" Parent="Gain" ParamArraySize="3">
    <Flags ResetAllFlags="true"><NotCyclic value="true"/></Flags>
    <DisplayFunction>NoSuchDisplay</DisplayFunction>
  </Parameter>
  <Parameter Name="Mode">
    <Scale><ScaleType Type="toggleMap"/><RealWorld>10 20 30 40</RealWorld>
      <OmitFromMap>2</OmitFromMap></Scale>
    <DisplayFunction>DisplayRealWorldString</DisplayFunction>
    <DisplayStrings><RealWorld String="Ten" Value="10"/><RealWorld String="Bad" Value="-1"/>
    </DisplayStrings>
    <InitialValue>20</InitialValue>
    <LinkGroupsThisParamControls>
      <Link Group="2" GroupNumbers="4 5" LinkEnabledValue="1" LinkFunction="Follow"/>
    </LinkGroupsThisParamControls>
  </Parameter>
  <Parameter ParamArraySize="0" Parent="Nobody"/>
</ParamXML>)";

TEST(ParamXML, ReadsParametersInOrderWithArraysAndParents) {
    std::vector<ml::sCONTROL_PARAM> params;
    ASSERT_EQ(Read(kParams, params), 0);
    ASSERT_EQ(params.size(), 6u);
    EXPECT_EQ(params.capacity(), 6u) << "reserved once";
    const char *names[] = {"Gain",       "Band Gain1", "Band Gain2",
                           "Band Gain3", "Mode",       "Unknown Name"};
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_STREQ(params[i].m_Name.c_str(), names[i]);

    auto const &gain = params[0];
    EXPECT_EQ(gain.StateToRealWorld(1000), 24.0);
    EXPECT_EQ(gain.GetResetValue(), 24.0) << "state 1000 converted";
    EXPECT_TRUE(gain.IsFlagSet(ml::eParamFlag_DontUpdateWhileDrag));
    EXPECT_TRUE(gain.IsFlagSet(ml::eParamFlag_AlwaysUpdate)) << "a word without value sets";
    EXPECT_STREQ(gain.GetUnits().c_str(), "dB");
    EXPECT_EQ(gain.m_MouseAcceleration, 0.25);
    EXPECT_NE(dynamic_cast<WCTestExtension *>(gain.m_Extension.get()), nullptr);
    EXPECT_EQ(gain.m_LinkGroups, (std::vector<int>{1, 3, 7}));

    auto const &band = params[2];
    EXPECT_EQ(band.StateToRealWorld(0), -24.0) << "scale inherited";
    EXPECT_STREQ(band.GetLabel().c_str(), "Gain");
    EXPECT_FALSE(band.IsFlagSet(ml::eParamFlag_AlwaysUpdate)) << "ResetAllFlags clears inherited";
    EXPECT_TRUE(band.IsFlagSet(ml::eParamFlag_NotCyclic));
    EXPECT_STREQ(band.m_DisplayFunctionName.c_str(), "DisplayNothing")
        << "unknown display falls back";
    EXPECT_NE(band.m_Extension, nullptr) << "each array member owns its own extension";
    EXPECT_NE(band.m_Extension.get(), params[1].m_Extension.get());
}

TEST(ParamXML, AParentCountsOnlyWhenItComesBeforeTheElementNamingIt) {
    // An ancestor reads as it did for its own parameter: "A" inherits the first "X", not the
    // one declared after it, and "Z" inherits nothing from the "W" further down.
    std::vector<ml::sCONTROL_PARAM> params;
    ASSERT_EQ(Read(R"(<ParamXML>
      <Parameter Name="X"><Units>first</Units></Parameter>
      <Parameter Name="A" Parent="X"><Label>a</Label></Parameter>
      <Parameter Name="X"><Units>second</Units><MouseAcceleration>2</MouseAcceleration>
      </Parameter>
      <Parameter Name="C" Parent="A"/>
      <Parameter Name="Z" Parent="W"><Label>z</Label></Parameter>
      <Parameter Name="W"><Units>w</Units></Parameter>
      <Parameter Name="D" Parent="Z"/>
      </ParamXML>)",
                   params),
              0);
    ASSERT_EQ(params.size(), 7u);
    auto const &c = params[3];
    EXPECT_STREQ(c.GetLabel().c_str(), "a");
    EXPECT_STREQ(c.GetUnits().c_str(), "first");
    EXPECT_EQ(c.m_MouseAcceleration, -1.0);
    auto const &d = params[6];
    EXPECT_STREQ(d.GetLabel().c_str(), "z");
    EXPECT_STREQ(d.GetUnits().c_str(), "") << "W comes after Z";
}

TEST(ParamXML, ToggleMapOmitsPointsAndSpreadsStates) {
    std::vector<ml::sCONTROL_PARAM> params;
    ASSERT_EQ(Read(kParams, params), 0);
    auto &mode = params[4];
    EXPECT_EQ(mode.GetNumStates(), 3);
    EXPECT_EQ(mode.GetScaleInfo().realWorldPoints, (std::vector<double>{10, 20, 40}));
    EXPECT_EQ(mode.GetScaleInfo().statePoints, (std::vector<double>{0, 500, 1000}));
    EXPECT_EQ(mode.StateToRealWorld(500), 20.0);
    EXPECT_EQ(mode.RealWorldToState(40), 1000.0);
    mode.SetRealWorldValue(0, 10);
    mode.UpdateValueString(0);
    EXPECT_STREQ(mode.GetValueString().c_str(), "Ten");
    ASSERT_EQ(mode.m_ControlledLinkGroups.size(), 1u);
    EXPECT_EQ(mode.m_ControlledLinkGroups[0].groupNumbers, (std::vector<int>{4, 5}));
    EXPECT_STREQ(mode.m_ControlledLinkGroups[0].linkFunction.c_str(), "Follow");
}

TEST(ParamXML, WrittenParametersReadBackTheSame) {
    std::vector<ml::sCONTROL_PARAM> params;
    ASSERT_EQ(Read(kParams, params), 0);
    pugi::xml_document doc;
    ASSERT_EQ(ml::ParamXML::WriteParametersXML(params, doc), 0);
    std::ostringstream text;
    doc.save(text);
    std::vector<ml::sCONTROL_PARAM> again;
    ASSERT_EQ(Read(text.str(), again), 0) << text.str();
    ASSERT_EQ(again.size(), params.size());
    for (std::size_t i = 0; i < params.size(); ++i) {
        auto const &a = params[i];
        auto const &b = again[i];
        SCOPED_TRACE(a.m_Name.c_str());
        EXPECT_STREQ(a.m_Name.c_str(), b.m_Name.c_str());
        EXPECT_STREQ(a.GetScaleType().c_str(), b.GetScaleType().c_str());
        EXPECT_EQ(a.GetForwardFunction(), b.GetForwardFunction());
        EXPECT_EQ(a.GetNumStates(), b.GetNumStates());
        EXPECT_EQ(a.GetFlags(), b.GetFlags());
        EXPECT_EQ(a.GetResetValue(), b.GetResetValue());
        EXPECT_EQ(a.GetInitialValue(), b.GetInitialValue());
        EXPECT_EQ(a.GetScaleInfo().statePoints, b.GetScaleInfo().statePoints);
        EXPECT_EQ(a.GetScaleInfo().realWorldPoints, b.GetScaleInfo().realWorldPoints);
        EXPECT_STREQ(a.m_DisplayFunctionName.c_str(), b.m_DisplayFunctionName.c_str());
        EXPECT_EQ(a.m_DisplayStrings.size(), b.m_DisplayStrings.size());
        EXPECT_STREQ(a.GetLabel().c_str(), b.GetLabel().c_str());
        EXPECT_EQ(a.m_MouseAcceleration, b.m_MouseAcceleration);
        EXPECT_EQ(a.m_LinkGroups, b.m_LinkGroups);
        EXPECT_EQ(a.m_ControlledLinkGroups.size(), b.m_ControlledLinkGroups.size());
        EXPECT_STREQ(a.m_ExtensionClassName.c_str(), b.m_ExtensionClassName.c_str());
        for (double state : {0.0, 123.0, 500.0, 1000.0})
            EXPECT_EQ(a.StateToRealWorld(state), b.StateToRealWorld(state)) << state;
    }
}

TEST(ParamXML, BadInputGivesItsCodeAndLeavesTheVectorAlone) {
    std::vector<ml::sCONTROL_PARAM> params(1);
    params[0].m_Name = "kept";
    EXPECT_EQ(Read("", params), ml::eRMResNotFound);
    EXPECT_EQ(ml::ParamXML::ReadParametersXMLFromText(nullptr, 5, BuiltInMaps(), params),
              ml::eRMResNotFound);
    EXPECT_EQ(Read("<ParamXML><Parameter Name=\"x\">", params), ml::eXMLParserFailed);
    std::string huge = "<ParamXML>";
    for (int i = 0; i < 9; ++i)
        huge += "<Parameter ParamArraySize=\"1000000\"/>";
    huge += "</ParamXML>";
    EXPECT_EQ(Read(huge, params), ml::eOutOfRangeNumber);
    ASSERT_EQ(params.size(), 1u);
    EXPECT_STREQ(params[0].m_Name.c_str(), "kept");
}

TEST(ParamXML, AbsurdNumbersGiveFiniteStates) {
    std::vector<ml::sCONTROL_PARAM> params;
    ASSERT_EQ(Read(R"(<P>
      <Parameter Name="a"><Scale><ScaleType Type="logarithmic"/><Minimum>-5</Minimum>
        <Maximum>nan</Maximum><Resolution>0</Resolution><NumberOfStates>-4</NumberOfStates>
        </Scale><InitialValue>inf</InitialValue><MouseAcceleration>nan</MouseAcceleration>
      </Parameter>
      <Parameter Name="b"><Scale><ScaleType Type="linear"/><Minimum>1e308</Minimum>
        <Maximum>-1e308</Maximum></Scale><InitialValue Type="State">1e999</InitialValue>
      </Parameter>
      <Parameter Name="c"><Scale><ScaleType Type="linearRanges"/><State>0 1000</State>
        <RealWorld>5 5</RealWorld></Scale><InitialValue>7</InitialValue></Parameter>
      <Parameter Name="d" Parent="d"><Scale><ScaleType Type="STDFreq"/></Scale>
        <InitialValue>-1</InitialValue></Parameter>
      </P>)",
                   params),
              0);
    ASSERT_EQ(params.size(), 4u);
    for (auto &param : params) {
        param.InitRealWorldAndUpdate(0);
        EXPECT_TRUE(std::isfinite(param.GetState(0))) << param.m_Name.c_str();
        EXPECT_TRUE(std::isfinite(param.GetRealWorld(0))) << param.m_Name.c_str();
        EXPECT_TRUE(std::isfinite(param.m_MouseAcceleration));
        EXPECT_TRUE(std::isfinite(param.DefaultMouseDelta(3)));
    }
}

} // namespace
