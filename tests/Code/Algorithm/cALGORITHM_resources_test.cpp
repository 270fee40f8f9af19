// The algorithm reads its "AlgXML" and "ParamXML" from the container its factory was given.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "resources/WCResContainer_Base.h"
#include "tests/resources/ResourcesTestSupport.h"
#include "tests/support/WCSilentAlgorithm.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

using WCBundleAlgorithm = mirel_test::WCSilentAlgorithm;

ml::MirelComponentInfo Component(const char *subType) {
    ml::MirelComponentInfo info;
    info.m_ComponentType = ml::WCFourCC("Nati");
    info.m_ComponentSubType = ml::WCFourCC(subType[0], subType[1], subType[2], subType[3]);
    return info;
}

std::string NameOf(const ml::cALGORITHM &alg) {
    ml::WCFixedString<63> name;
    alg.GetAlgName(name);
    return name.c_str();
}

class AlgorithmResources : public resources_test::BundleTest {
protected:
    void SetUp() override {
        Put("resource_config.yaml", "Extensions:\n  AlgXML: .xml\n  ParamXML: .xml\n");
    }
    void PutParams(const char *id, int count) {
        std::string xml = "<ParamXML>";
        for (int i = 0; i < count; ++i)
            xml += "<Parameter Name=\"P\"/>";
        Put(std::string("ParamXML/") + id + ".xml", xml + "</ParamXML>");
    }
    ml::WSResourceManagerInfo ManagerInfo() {
        ml::WSResourceManagerInfo info;
        ml::RM::GetResourceManagerInfo(info, nullptr);
        return info;
    }
};

TEST_F(AlgorithmResources, EachSubComponentReadsItsOwnFilteredAlgorithmXML) {
    Put("AlgXML/1001.xml", R"(<AlgXML><cALGORITHM>
        <AlgName SubComp="Mono">Gain Mono</AlgName><AlgName SubComp="Stmo">Gain Stereo</AlgName>
        <PresetXMLResID SubComp="Stmo">1200</PresetXMLResID>
        <IsMidiListener OS="Mac"/><IsTempoListener OS="Linux"/>
        <PresetCompatibleSubComp>Mono</PresetCompatibleSubComp>
        <PresetCompatibleSubComp>Stmo</PresetCompatibleSubComp>
      </cALGORITHM></AlgXML>)");
    PutParams("1000", 1);
    PutParams("1200", 3);
    Container *container = Open();
    {
        WCBundleAlgorithm mono(Component("Mono"), container);
        WCBundleAlgorithm stereo(Component("Stmo"), container);
        EXPECT_EQ(NameOf(mono), "Gain Mono");
        EXPECT_EQ(NameOf(stereo), "Gain Stereo");
        EXPECT_FALSE(mono.GetPluginValue_bool("IsMidiListener", false));
        EXPECT_TRUE(mono.GetPluginValue_bool("IsTempoListener", false));
        const std::vector<ml::WCFourCC> both{ml::WCFourCC("Mono"), ml::WCFourCC("Stmo")};
        EXPECT_EQ(mono.GetPresetCompatibleSubComps(), both) << "its own sub-type is not repeated";
        // The preset resource number picks each one's parameter XML.
        ASSERT_EQ(mono.FinishCreate(), 0);
        ASSERT_EQ(stereo.FinishCreate(), 0);
        EXPECT_EQ(mono.GetNumParams(), 1u);
        EXPECT_EQ(stereo.GetNumParams(), 3u);
        // One read of the bytes, two filtered documents held by the algorithms.
        EXPECT_EQ(ml::WCResContainer_Base::FromHandle(container)->GetLoadCount(), 1u);
        EXPECT_EQ(ManagerInfo().m_TotalResources, 3u);
        mono.Dispose();
        stereo.Dispose();
    }
    EXPECT_EQ(ManagerInfo().m_TotalResources, 0u) << "the algorithms released what they held";
    EXPECT_EQ(ml::RM::CloseResContainer(container), ml::eNoErr);
}

TEST_F(AlgorithmResources, MissingOrBrokenResourcesLeaveTheDefaults) {
    Container *container = Open();
    {
        WCBundleAlgorithm alg(Component("Mono"), container);
        // Neither type has a folder or a zip in this bundle.
        EXPECT_EQ(NameOf(alg), "");
        EXPECT_EQ(alg.FinishCreate(), ml::eNoErr) << "the list's error is kept, not returned";
        EXPECT_EQ(alg.GetNumParams(), 0u);
        EXPECT_EQ(alg.GetParameterListError(), ml::eFMFileNotFound);
        ml::Utils::WCStMemObj bytes;
        EXPECT_EQ(alg.ReadResourceToMemObj("AlgXML", 1001, bytes), ml::eFMFileNotFound);
        EXPECT_EQ(alg.ReadResourceToMemObj("ParamXML", 1000, bytes), ml::eFMFileNotFound);
        alg.Dispose();
    }
    Put("AlgXML/1001.xml", "<AlgXML><cALGORITHM><AlgName>cut");
    Put("ParamXML/1000.xml", "");
    {
        WCBundleAlgorithm alg(Component("Mono"), container);
        EXPECT_EQ(NameOf(alg), "");
        EXPECT_EQ(alg.FinishCreate(), ml::eNoErr);
        EXPECT_EQ(alg.GetNumParams(), 0u);
        EXPECT_NE(alg.GetParameterListError(), ml::eNoErr) << "an empty parameter XML";
        ml::Utils::WCStMemObj bytes;
        EXPECT_EQ(alg.ReadResourceToMemObj("ParamXML", 1001, bytes), ml::eRMResNotFound);
        alg.Dispose();
    }
    ml::WTResContainerType *none = nullptr;
    WCBundleAlgorithm orphan(Component("Mono"), none);
    ml::Utils::WCStMemObj bytes;
    EXPECT_EQ(orphan.ReadResourceToMemObj("AlgXML", 1001, bytes), ml::eRMContainerNotFound);
    EXPECT_EQ(ml::RM::CloseResContainer(container), ml::eNoErr);
}

} // namespace
