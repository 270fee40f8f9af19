#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/WUAssert.h"
#include "resources/ResourceManager.h"
#include "resources/SubCompTypeScanner.h"
#include "resources/WCBundle.h"
#include "resources/WCDLLInterface.h"
#include "resources/XInfResource.h"
#include "tests/resources/ResourcesTestSupport.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;
namespace RM = ML::RM;
using ML::WCFourCC;

const char *kXInf = "<XInf><APIVersion>13.1.0.186</APIVersion><InternalVersion>1.2.0.7"
                    "</InternalVersion><PluginExternalVersion>1.2.0.0</PluginExternalVersion>"
                    "<MirelShellsBaseName>MirelShells</MirelShellsBaseName>"
                    "<DynamicPluginLibName>libGain.so</DynamicPluginLibName></XInf>";

const char *kProcessXML = R"(<ProcessXML>
  <SubComponentTypeList>
    <SubComponentType><Name>Native</Name><ProcessCodeMatch>x64;sse4</ProcessCodeMatch></SubComponentType>
    <SubComponentType><Name>Gpu</Name><ProcessCodeMatch>gpu</ProcessCodeMatch><FeatureFlag>GPU</FeatureFlag></SubComponentType>
  </SubComponentTypeList>
  <SubComponentList>
    <SubComponent><Name>Gain Mono</Name><Type>GnMo</Type><ProcessCodeMatch>Native</ProcessCodeMatch></SubComponent>
    <SubComponent><Name>Gain Stereo</Name><Type>GnSt</Type><ProcessCodeMatch>Native</ProcessCodeMatch><BlockAffiliation>wxyz</BlockAffiliation></SubComponent>
    <SubComponent><Name>Duplicate</Name><Type>GnMo</Type></SubComponent>
    <SubComponent><Name>Hidden</Name><Type>GnHd</Type><ShowSubComp>false</ShowSubComp></SubComponent>
    <SubComponent><Name>On GPU</Name><Type>GnGp</Type><ProcessCodeMatch>Gpu</ProcessCodeMatch></SubComponent>
    <SubComponent><Name>Beta</Name><Type>GnBt</Type><FeatureFlag>Beta</FeatureFlag></SubComponent>
    <SubComponent><Name>Unknown type</Name><Type>GnUk</Type><ProcessCodeMatch>Nothing</ProcessCodeMatch></SubComponent>
    <SubComponent><Name>Bad code</Name><Type>Gn</Type></SubComponent>
  </SubComponentList>
  <ProcessCodeDescriptionList>
    <ProcessCodeDescription resType="Nati"><Coefs>2</Coefs></ProcessCodeDescription>
    <ProcessCodeDescription resType="Nati"><Coefs>4</Coefs><CycleCount>9 7</CycleCount>
      </ProcessCodeDescription>
  </ProcessCodeDescriptionList>
  <ProcessCodeMatchList>
    <ProcessCodeMatch><Name>x64;sse4</Name><ProcessCodeDescriptionID>1</ProcessCodeDescriptionID>
      </ProcessCodeMatch>
  </ProcessCodeMatchList>
</ProcessXML>)";

// Every bundle here has at least one resource, so it opens before the file under test exists.
class BundleReaders : public resources_test::BundleTest {
protected:
    void SetUp() override { Put("TXT_/readme", "bundle"); }
};

TEST_F(BundleReaders, XInfGivesVersionsVendorAndLibraries) {
    Put("XInf/XInf.xml", kXInf);
    Container *container = Open();
    ML::WCVersion api, internal, external;
    ML::WCFixedString<63> vendor;
    ASSERT_EQ(RM::GetKPAPIVersionsFromXInfResource(container, api, internal, external, vendor),
              ML::eNoErr);
    EXPECT_EQ(api, ML::WCVersion(13, 1, 0, 186));
    EXPECT_EQ(internal, ML::WCVersion(1, 2, 0, 7));
    EXPECT_EQ(external, ML::WCVersion(1, 2, 0, 0));
    EXPECT_STREQ(vendor.c_str(), "Mirel"); // absent, so the library's own

    ML::WCFixedString<63> shells = "kept", artist = "kept", dynamic;
    ASSERT_EQ(RM::GetArtistAndMirelLibWithPhase(container, shells, artist, dynamic), ML::eNoErr);
    EXPECT_STREQ(shells.c_str(), "MirelShells");
    EXPECT_STREQ(artist.c_str(), "");
    EXPECT_STREQ(dynamic.c_str(), "libGain.so");

    ML::WCFixedString<63> value = "kept";
    EXPECT_EQ(RM::GetResourceValueByName(container, "NoSuchValue", value), ML::eXMLElementMissing);
    EXPECT_STREQ(value.c_str(), "kept");
}

TEST_F(BundleReaders, MissingOrBrokenXInfLeavesOutputsAlone) {
    Container *container = Open();
    ML::WCVersion internal(9, 9, 9, 9), external;
    EXPECT_NE(RM::GetPluginVersionsFromXInfResource(container, internal, external), ML::eNoErr);
    EXPECT_EQ(internal, ML::WCVersion(9, 9, 9, 9));
    Put("XInf/XInf.xml", "<XInf><InternalVersion>1.0.0.0</Intern");
    EXPECT_EQ(RM::GetPluginVersionsFromXInfResource(container, internal, external),
              ML::eXMLTreeNotValid);
    Put("XInf/XInf.xml", "<XInf><InternalVersion>1.0.0.0</InternalVersion></XInf>");
    EXPECT_EQ(RM::GetPluginVersionsFromXInfResource(container, internal, external),
              ML::eXMLElementMissing);
    EXPECT_EQ(internal, ML::WCVersion(9, 9, 9, 9));
}

TEST_F(BundleReaders, SubComponentListFollowsMatchFeatureAndVisibilityRules) {
    Put("thng/ProcessXML.xml", kProcessXML);
    Container *container = Open();
    ML::MirelComponentInfo bundle;
    bundle.m_ComponentType = WCFourCC("Gain");
    bundle.m_InternalVersion = ML::WCVersion(1, 2, 0, 7);
    ML::SubCompTypeScanner::WSOptions options;
    ML::WCMirelComponentInfoList list;
    ASSERT_EQ(ML::SubCompTypeScanner::BuildSubComponentList(container, bundle, options, list),
              ML::eNoErr);
    ASSERT_EQ(list.GetNumComponents(), 2u);
    const ML::MirelComponentInfo &mono = *list.GetMirelComponentInfo(0);
    EXPECT_EQ(mono.m_ComponentSubType, WCFourCC("GnMo"));
    EXPECT_STREQ(mono.m_ShortName.c_str(), "Gain Mono"); // the first of a duplicated code wins
    // The build its type's match names, by position in the description list.
    EXPECT_EQ(mono.m_ProcCodeDesc.m_Coefs, 4u);
    EXPECT_EQ(mono.m_ProcCodeDesc.m_CyclesList, (std::vector<std::int32_t>{9, 7}));
    EXPECT_EQ(mono.m_ComponentType, WCFourCC("Gain"));
    EXPECT_EQ(mono.m_InternalVersion, bundle.m_InternalVersion);
    EXPECT_EQ(mono.m_Affiliation, WCFourCC("ksMI"));
    EXPECT_EQ(list.GetMirelComponentInfo(1)->m_Affiliation, WCFourCC("wxyz"));

    // Features turn on the flagged entries, through the entry or its type; hidden ones on request.
    options.m_EnabledFeatures = {"GPU", "Beta"};
    options.m_IncludeHidden = true;
    ML::WCMirelComponentInfoList all;
    ASSERT_EQ(ML::SubCompTypeScanner::BuildSubComponentList(container, bundle, options, all),
              ML::eNoErr);
    std::string codes;
    for (const ML::MirelComponentInfo &info : all.GetComponents())
        codes += std::string(info.m_ComponentSubType.GetString().c_str()) + " ";
    EXPECT_EQ(codes, "GnMo GnSt GnHd GnGp GnBt ");
}

TEST_F(BundleReaders, BrokenProcessXMLLeavesTheListAlone) {
    Container *container = Open();
    ML::WCMirelComponentInfoList list;
    list.Add(ML::MirelComponentInfo());
    const ML::SubCompTypeScanner::WSOptions options;
    EXPECT_NE(ML::SubCompTypeScanner::BuildSubComponentList(container, {}, options, list),
              ML::eNoErr);
    Put("thng/ProcessXML.xml", "<ProcessXML><SubComponentList><SubComponent>");
    EXPECT_EQ(ML::SubCompTypeScanner::BuildSubComponentList(container, {}, options, list),
              ML::eXMLTreeNotValid);
    Put("thng/ProcessXML.xml", "<ProcessXML/>");
    EXPECT_EQ(ML::SubCompTypeScanner::BuildSubComponentList(container, {}, options, list),
              ML::eXMLTreeNotValid);
    EXPECT_EQ(list.GetNumComponents(), 1u);
}

TEST(WCDLLInterface, MapsEntryPointsAndReportsTheMissingOnes) {
    ML::Utils::WCDLLInterface module(ML::FM::WCStPath(MIREL_COMPONENT_TEST_MODULE),
                                     {"ComponentTestEntry", "ComponentTestSecond", "Absent"});
    ASSERT_TRUE(module.IsValid()) << module.GetLoadError();
    ASSERT_NE(module.GetProcAddress("ComponentTestEntry"), nullptr);
    EXPECT_EQ(module.GetProc<int (*)()>("ComponentTestEntry")(), 42);
    EXPECT_EQ(module.GetProcAddress("NotAsked"), nullptr);
    std::vector<std::string> missing;
    EXPECT_EQ(module.AssertProcAddressMap(&missing), ML::eNotAPluginFile);
    EXPECT_EQ(missing, std::vector<std::string>{"Absent"});
}

TEST(WCDLLInterface, AFileThatIsNoModuleIsRefused) {
    mirel_test::WCTempDir dir;
    resources_test::WriteText(dir.path() / "fake.so", "not an ELF file");
    ML::Utils::WCDLLInterface module(ML::FM::WCStPath((dir.path() / "fake.so").string()),
                                     {"Entry"});
    EXPECT_FALSE(module.IsValid());
    EXPECT_EQ(module.AssertProcAddressMap(), ML::eFaildToLoadPluginDLL);
    EXPECT_FALSE(module.GetLoadError().empty());
}

TEST(WCBundle, FindsTheBundleAroundALoadedModule) {
    mirel_test::WCTempDir dir;
    const std::filesystem::path bundle = dir.path() / "Gain.bundle";
    const std::filesystem::path module = bundle / "Contents" / "Linux64" / "Gain.so";
    std::filesystem::create_directories(module.parent_path());
    std::filesystem::copy_file(MIREL_COMPONENT_TEST_MODULE, module);
    ML::Utils::WCDLLInterface loaded(ML::FM::WCStPath(module.string()), {"ComponentTestEntry"});
    ASSERT_EQ(loaded.AssertProcAddressMap(), ML::eNoErr);

    const ML::Utils::WCBundle fromAddress(loaded.GetProcAddress("ComponentTestEntry"));
    ML::FM::WCStPath path;
    ASSERT_EQ(fromAddress.GetExecutablePath(path), ML::eNoErr);
    EXPECT_EQ(std::filesystem::canonical(path.GetNativePathString().c_str()),
              std::filesystem::canonical(module));
    ASSERT_EQ(fromAddress.GetBundlePath(path), ML::eNoErr);
    EXPECT_EQ(std::filesystem::canonical(path.GetNativePathString().c_str()),
              std::filesystem::canonical(bundle));

    // A module outside a bundle answers its folder; an address no module holds is refused.
    const ML::Utils::WCBundle loose((ML::FM::WCStPath(MIREL_COMPONENT_TEST_MODULE)));
    ASSERT_EQ(loose.GetBundlePath(path), ML::eNoErr);
    EXPECT_EQ(std::filesystem::path(path.GetNativePathString().c_str()),
              std::filesystem::path(MIREL_COMPONENT_TEST_MODULE).parent_path());
    int local = 0;
    EXPECT_EQ(ML::Utils::WCBundle(&local).GetBundlePath(path), ML::eFMFileNotFound);
}

} // namespace
