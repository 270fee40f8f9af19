#include <filesystem>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/PugiXML.h"
#include "resources/GetAndFilterXMLResource.h"
#include "resources/MirelComponentInfo.h"
#include "resources/ResourceManager.h"
#include "resources/XMLFilterByComponentInfo.h"
#include "tests/Utilities/XML/Code/XMLTestSupport.h"
#include "tests/resources/ResourcesTestSupport.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;
namespace RM = ML::RM;
using mirel_test::Names;
using ML::MirelComponentInfo;
using ML::WCFourCC;

std::string TemplateData(const char *name) {
    return resources_test::ReadText(std::filesystem::path(MIREL_TEMPLATE_TEST_DATA) / name);
}

MirelComponentInfo Component(const char *subType) {
    MirelComponentInfo info;
    info.m_ComponentType = WCFourCC("EQ__");
    info.m_ComponentSubType = WCFourCC(subType[0], subType[1], subType[2], subType[3]);
    return info;
}

// What filter.xml keeps for each sub-component. Two codes keep "Both" for either sub-component;
// another component type goes with its sub-tree; "Mac" drops out here while "Win,Linux" and
// elements without "OS" stay.
const char *const kMonoElements = "Both OnlyMono(Deep ) Always OwnComp(Nested2 ) LinuxToo ";
const char *const kStereoElements = "Both Always OwnComp(Nested ) LinuxToo ";

TEST(FilterByComponentInfo, SubCompCompAffiliationAndOSSelectOneComponentsElements) {
    for (auto [subType, expected] : {std::pair{"Mono", kMonoElements}, {"Stmo", kStereoElements}}) {
        pugi::xml_document doc;
        ASSERT_EQ(ML::PugiXML::read_xml_from_string(TemplateData("filter.xml"), doc), 0);
        pugi::xml_node root = doc.document_element();
        ML::FilterPugiXMLByComponentInfo(Component(subType), root);
        EXPECT_EQ(Names(root), expected) << subType;
    }
}

class FilteredResources : public resources_test::BundleTest {
protected:
    void SetUp() override {
        Put("XML_/GUI.xml", TemplateData("gui_double.xml"));
        Put("XML_/Filter.xml", TemplateData("filter.xml"));
        m_Container = Open();
        ASSERT_NE(m_Container, nullptr);
    }
    Container *m_Container = nullptr;
};

TEST_F(FilteredResources, TwoSubComponentsGetTwoResourcesSharingTheRawBytes) {
    const MirelComponentInfo mono = Component("Mono");
    const MirelComponentInfo stereo = Component("Stmo");
    Resource *monoRes = nullptr;
    Resource *stereoRes = nullptr;
    void *monoData = nullptr;
    void *stereoData = nullptr;
    const ML::WCResKey key("XML_", "Filter.xml");
    ASSERT_EQ(RM::GetAndFilterXMLResourceByComponentInfo(m_Container, key, mono, monoRes, monoData),
              ML::eNoErr);
    ASSERT_EQ(
        RM::GetAndFilterXMLResourceByComponentInfo(m_Container, key, stereo, stereoRes, stereoData),
        ML::eNoErr);
    ASSERT_NE(monoRes, stereoRes);
    EXPECT_STREQ(monoRes->m_Variant.c_str(), "XMLC_Mono_EQ___ksMI");
    ASSERT_EQ(monoRes->m_Data.m_Form, "CXMLElement");
    ASSERT_EQ(stereoRes->m_Data.m_Form, "CXMLElement");
    EXPECT_EQ(Names(*static_cast<ML::XML::CXMLElement *>(monoData)), kMonoElements);
    EXPECT_EQ(Names(*static_cast<ML::XML::CXMLElement *>(stereoData)), kStereoElements);
    // Both hang off one base record, which holds the bytes as read.
    ASSERT_NE(monoRes->m_pParent, nullptr);
    EXPECT_EQ(monoRes->m_pParent, stereoRes->m_pParent);
    EXPECT_EQ(monoRes->m_pParent->m_Data.m_Form, "WCStMemeObj");
    EXPECT_EQ(RM::ReleaseResource(monoRes), ML::eNoErr);
    EXPECT_EQ(RM::ReleaseResource(stereoRes), ML::eNoErr);
}

TEST_F(FilteredResources, TemplatesExpandOncePerComponentAndHalveDoubleSize) {
    const MirelComponentInfo mono = Component("Mono");
    Resource *first = nullptr;
    void *data = nullptr;
    const ML::WCResKey key("XML_", "GUI.xml");
    ASSERT_EQ(RM::GetAndFilterXMLResourceByComponentInfoAfterResolvingTemplates(m_Container, key,
                                                                                mono, first, data),
              ML::eNoErr);
    const auto *gui = static_cast<ML::XML::CXMLElement *>(data);
    // The stereo instance is filtered away before expansion.
    ASSERT_EQ(Names(*gui), "Control(ControlRect KnobCenter ) Rect ");
    const ML::XML::CXMLElement *rect = gui->SubElement("Control")->SubElement("ControlRect");
    EXPECT_EQ(rect->GetAttribInt("left"), 5);
    EXPECT_EQ(rect->GetAttribInt("top"), 11); // 10.5 rounds away from zero
    const ML::XML::CXMLElement *center = gui->SubElement("Control")->SubElement("KnobCenter");
    EXPECT_EQ(center->GetAttribInt("y"), -2);
    EXPECT_EQ(gui->SubElement("Rect")->GetAttribString("top"), "oops");
    EXPECT_EQ(gui->SubElement("Rect")->GetAttribInt("width"), 4);

    // A second load finds the expanded resource: same record, no second expansion.
    Resource *second = nullptr;
    void *secondData = nullptr;
    ASSERT_EQ(RM::GetAndFilterXMLResourceByComponentInfoAfterResolvingTemplates(
                  m_Container, key, mono, second, secondData),
              ML::eNoErr);
    EXPECT_EQ(first, second);
    EXPECT_EQ(data, secondData);
    EXPECT_EQ(first->m_RetainCount, 2);
    RM::ReleaseResource(first);
    RM::ReleaseResource(second);
}

TEST_F(FilteredResources, ExpansionThatDoesNotParseIsTheLoadsCodeAndLeavesNothingLoaded) {
    Put("XML_/Bad.xml", "<GUI><Template Name='T'><E a='$(v)'/></Template>"
                        "<Instance Template='T' v='x&quot;y'/></GUI>");
    Resource *resource = nullptr;
    void *data = nullptr;
    const ML::WCResKey key("XML_", "Bad.xml");
    const MirelComponentInfo mono = Component("Mono");
    EXPECT_NE(RM::GetAndFilterXMLResourceByComponentInfoAfterResolvingTemplates(
                  m_Container, key, mono, resource, data),
              ML::eNoErr);
    EXPECT_EQ(resource, nullptr);
    Resource *loaded = nullptr;
    EXPECT_EQ(RM::IsResourceLoaded(m_Container, RM::MakeComponentKey(key, "XMLT", mono), loaded),
              ML::eRMResRefNotFound);
}

TEST_F(FilteredResources, PugiFormAndUserFormReleaseWithTheUser) {
    const MirelComponentInfo stereo = Component("Stmo");
    {
        RM::WCStResContainer user(m_Container);
        Resource *resource = nullptr;
        void *data = nullptr;
        ASSERT_EQ(RM::GetAndFilterPugiXMLResourceByComponentInfo(
                      user, ML::WCResKey("XML_", "Filter.xml"), stereo, resource, data),
                  ML::eNoErr);
        EXPECT_EQ(resource->m_Data.m_Form, "pugi::xml_document");
        pugi::xml_node root = static_cast<pugi::xml_document *>(data)->document_element();
        EXPECT_EQ(Names(root), kStereoElements);
        EXPECT_EQ(user.GetNumLoadedResources(), 1u);
    }
    Resource *loaded = nullptr;
    EXPECT_EQ(RM::IsResourceLoaded(
                  m_Container,
                  RM::MakeComponentKey(ML::WCResKey("XML_", "Filter.xml"), "XMLP", stereo), loaded),
              ML::eRMResRefNotFound);
}

TEST_F(FilteredResources, EveryFormKeepsTheRootWhateverItsAttributes) {
    Put("XML_/Tagged.xml",
        "<Plugin SubComp='Stmo' OS='Mac'><Kept/><Gone SubComp='Stmo'/></Plugin>");
    const ML::WCResKey key("XML_", "Tagged.xml");
    const MirelComponentInfo mono = Component("Mono");
    Resource *resource = nullptr;
    void *data = nullptr;
    ASSERT_EQ(RM::GetAndFilterXMLResourceByComponentInfo(m_Container, key, mono, resource, data),
              ML::eNoErr);
    EXPECT_EQ(Names(*static_cast<ML::XML::CXMLElement *>(data)), "Kept ");
    RM::ReleaseResource(resource);
    ASSERT_EQ(
        RM::GetAndFilterPugiXMLResourceByComponentInfo(m_Container, key, mono, resource, data),
        ML::eNoErr);
    EXPECT_EQ(Names(*static_cast<pugi::xml_document *>(data)), "Plugin(Kept ) ");
    RM::ReleaseResource(resource);
    ASSERT_EQ(RM::GetAndFilterXMLResourceByComponentInfoAfterResolvingTemplates(
                  m_Container, key, mono, resource, data),
              ML::eNoErr);
    EXPECT_EQ(Names(*static_cast<ML::XML::CXMLElement *>(data)), "Kept ");
    RM::ReleaseResource(resource);
}

TEST(MakeComponentKey, CodesAKeyCannotHoldAreWrittenInHex) {
    MirelComponentInfo info = Component("a/b.");
    const ML::WCResKey key = ML::RM::MakeComponentKey(ML::WCResKey("XML_", "x"), "XMLT", info);
    EXPECT_STREQ(key.m_Variant.c_str(), "XMLT_612f622e_EQ___ksMI");
}

} // namespace
