// The algorithm reads its "AlgXML" and "ParamXML" from the container its factory was given.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Code/Algorithm/PluginInfoSelectors.h"
#include "Code/Algorithm/PluginInstance.h"
#include "core/WCStMemObj.h"
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
        Put("resource_config.yaml",
            "Extensions:\n  AlgXML: .xml\n  ParamXML: .xml\n  DAEFlags: .xml\n");
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
        EXPECT_EQ(mono.GetAlgXMLError(), ml::eNoErr);
        // One read of the bytes, two filtered documents held by the algorithms.
        EXPECT_EQ(ml::WCResContainer_Base::FromHandle(container)->GetLoadCount(), 1u);
        EXPECT_EQ(ManagerInfo().m_TotalResources, 3u);
        // Dispose ends with ReleaseAllLoadedResources: nothing stays held until destruction.
        mono.Dispose();
        EXPECT_EQ(mono.GetNumLoadedResources(), 0u);
        stereo.Dispose();
        EXPECT_EQ(stereo.GetNumLoadedResources(), 0u);
        EXPECT_EQ(ManagerInfo().m_TotalResources, 0u) << "the algorithms released what they held";
    }
    EXPECT_EQ(ml::RM::CloseResContainer(container), ml::eNoErr);
}

TEST_F(AlgorithmResources, MissingOrBrokenResourcesLeaveTheDefaults) {
    Container *container = Open();
    {
        WCBundleAlgorithm alg(Component("Mono"), container);
        // Neither type has a folder or a zip in this bundle.
        EXPECT_EQ(NameOf(alg), "");
        EXPECT_NE(alg.GetAlgXMLError(), ml::eNoErr) << "the resource manager's code";
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
        // A broken algorithm XML leaves a trace, as the parameter XML does: the XML layer's code.
        EXPECT_LE(alg.GetAlgXMLError(), -6000);
        EXPECT_GT(alg.GetAlgXMLError(), -7000);
        EXPECT_EQ(alg.FinishCreate(), ml::eNoErr);
        EXPECT_EQ(alg.GetNumParams(), 0u);
        EXPECT_NE(alg.GetParameterListError(), ml::eNoErr) << "an empty parameter XML";
        ml::Utils::WCStMemObj bytes;
        EXPECT_EQ(alg.ReadResourceToMemObj("ParamXML", 1001, bytes), ml::eRMResNotFound);
        alg.Dispose();
    }
    ml::WTResContainerType *none = nullptr;
    WCBundleAlgorithm orphan(Component("Mono"), none);
    EXPECT_EQ(orphan.GetAlgXMLError(), ml::eRMContainerNotFound);
    ml::Utils::WCStMemObj bytes;
    EXPECT_EQ(orphan.ReadResourceToMemObj("AlgXML", 1001, bytes), ml::eRMContainerNotFound);
    EXPECT_EQ(ml::RM::CloseResContainer(container), ml::eNoErr);
}

TEST_F(AlgorithmResources, CategorySelectorAnswersOnlyThisSubComponentsList) {
    Put("DAEFlags/1000.xml", R"(<DAEFlags>
        <Categories SubComp="Mono"><Category>EQ</Category></Categories>
        <Group><Categories SubComp="Stmo,Surr"><Category>Dynamics</Category>
          <Category>Harmonic</Category></Categories></Group>
      </DAEFlags>)");
    struct WSCase {
        const char *subType;
        int code;
        std::string answer;
    };
    const WSCase cases[] = {
        {"Mono", ml::eNoErr, R"(<Categories SubComp="Mono"><Category>EQ</Category></Categories>)"},
        {"Surr", ml::eNoErr,
         R"(<Categories SubComp="Stmo,Surr"><Category>Dynamics</Category>)"
         R"(<Category>Harmonic</Category></Categories>)"},
        {"Quad", ml::eXMLElementMissing, "kept"},
    };
    Container *container = Open();
    for (auto const &c : cases) {
        WCBundleAlgorithm alg(Component(c.subType), container);
        ml::PluginInstance instance(Component(c.subType));
        instance.m_pAlg = &alg;
        ml::Utils::WCStMemObj out("kept", 4);
        EXPECT_EQ(ml::GetPluginInfo_WCStMemObj(instance, ml::WCFourCC("pcat"), out, 0), c.code)
            << c.subType;
        EXPECT_EQ(std::string(static_cast<const char *>(out.GetPtr()), out.GetSize()), c.answer)
            << c.subType;
        // 'daef' still answers the whole resource.
        EXPECT_EQ(ml::GetPluginInfo_WCStMemObj(instance, ml::WCFourCC("daef"), out, 0), 0);
        const std::string whole(static_cast<const char *>(out.GetPtr()), out.GetSize());
        EXPECT_NE(whole.find("\"Mono\""), std::string::npos);
        EXPECT_NE(whole.find("Surr"), std::string::npos);
        alg.Dispose();
    }
    Put("DAEFlags/1000.xml", "<DAEFlags><Categories SubComp=\"Mono\">");
    WCBundleAlgorithm broken(Component("Mono"), container);
    ml::PluginInstance instance(Component("Mono"));
    instance.m_pAlg = &broken;
    ml::Utils::WCStMemObj out;
    EXPECT_EQ(ml::GetPluginInfo_WCStMemObj(instance, ml::WCFourCC("pcat"), out, 0),
              ml::eXMLParserFailed);
    broken.Dispose();
    EXPECT_EQ(ml::RM::CloseResContainer(container), ml::eNoErr);
}

} // namespace
