#include "resources/ResourceManager.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "Utilities/XML/Code/CXMLElement.h"
#include "core/WUAssert.h"
#include "resources/WCResContainer_Base.h"
#include "resources/WCResConvertCXMLElement.h"
#include "resources/WCResConvertPugiXML.h"
#include "tests/resources/ResourcesTestSupport.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using resources_test::BundleTest;
using resources_test::WriteText;
namespace fs = std::filesystem;

class Containers : public BundleTest {};

TEST_F(Containers, SamePathIsOneObjectCountedByOpens) {
    Put("TXT_/a", "a");
    Container *first = Open();
    Container *second = Open();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first, second);
    EXPECT_EQ(RM::GetRetainCount(first), 2);
    EXPECT_EQ(RM::GetRetainCount(FM::WCStPath(Bundle().c_str())), 2);
    Container *keep = first;
    ASSERT_EQ(RM::CloseResContainer(second), eNoErr);
    EXPECT_EQ(second, nullptr);
    EXPECT_TRUE(RM::IsOpenResContainer(keep));
    ASSERT_EQ(RM::CloseResContainer(first), eNoErr);
    EXPECT_FALSE(RM::IsOpenResContainer(keep));
    EXPECT_EQ(RM::GetRetainCount(FM::WCStPath(Bundle().c_str())), -1);
}

TEST_F(Containers, ClosingTwiceOrNullIsRefusedWithoutTouchingFreedMemory) {
    Put("TXT_/a", "a");
    Container *container = Open();
    Container *stale = container;
    ASSERT_EQ(RM::CloseResContainer(container), eNoErr);
    EXPECT_EQ(RM::CloseResContainer(stale), eRMInvalidNativeResContainer);
    EXPECT_EQ(stale, nullptr);
    EXPECT_EQ(RM::CloseResContainer(stale), eMemNullPointer);
}

TEST_F(Containers, PathsThatAreNoContainerGiveTheirCodes) {
    Container *container = nullptr;
    EXPECT_EQ(RM::OpenResContainer((m_home.path() / "notes.txt").c_str(), 0, container),
              eRMInvalidResContainer);
    EXPECT_EQ(RM::OpenResContainer((m_home.path() / "Missing.bundle").c_str(), 0, container),
              eRMInvalidResContainer);
    EXPECT_EQ(container, nullptr);
    WriteText(m_home.path() / "Plug.dll", "MZ");
    EXPECT_EQ(RM::OpenResContainer((m_home.path() / "Plug.dll").c_str(), 0, container),
              eRMInvalidResContainer);
    bool isContainer = false;
    EXPECT_EQ(RM::IsResContainer(FM::WCStPath((m_home.path() / "Plug.dll").c_str()), isContainer),
              eNoErr);
    EXPECT_TRUE(isContainer);
    WSResourceManagerInfo info;
    ASSERT_EQ(RM::GetResourceManagerInfo(info), eNoErr);
    EXPECT_EQ(info.m_NumContainers, 0u);
}

TEST_F(Containers, NativeModuleModeAimsAtTheModuleInsideTheBundle) {
    Put("TXT_/a", "a");
    const WCResContainerInfo info(FM::WCStPath(Bundle().c_str()), RM::kResOpenNativeModule, 0);
    ASSERT_TRUE(info.IsValid());
    EXPECT_EQ(info.GetKind(), RM::kResContainerNative);
    EXPECT_EQ(info.GetNativeModulePath().GetLeaf(), "Gain.dll");
    Container *container = nullptr;
    EXPECT_EQ(
        RM::OpenResContainer(FM::WCStPath(Bundle().c_str()), RM::kResOpenNativeModule, container),
        eRMInvalidResContainer);
}

TEST_F(Containers, AttachingAModuleOutsideAnyBundleIsRefused) {
    void *self = dlopen(nullptr, RTLD_NOW);
    Container *container = nullptr;
    EXPECT_EQ(RM::AttachResContainer(self, container), eRMInvalidNativeResContainer);
    EXPECT_EQ(RM::AttachResContainer(nullptr, container), eMemNullPointer);
    dlclose(self);
}

TEST_F(Containers, DisposeClosesEverythingAndTheManagerComesBack) {
    Put("TXT_/a", "a");
    ASSERT_EQ(RM::Init(4, "host"), eNoErr);
    EXPECT_STREQ(RM::GetResourceManagerObjectCurrentOwnerName(), "host");
    Container *container = Open();
    Resource *resource = nullptr;
    ASSERT_EQ(RM::GetAResource(container, WCResKey("TXT_", "a"), resource), eNoErr);
    EXPECT_EQ(RM::GetResourceManagerObjectFromContainerPtr(container),
              RM::GetResourceManagerObjectCurrent());
    EXPECT_EQ(RM::GetRuntimeEnviron(), eResourceManagerInitialized);
    ASSERT_EQ(RM::Dispose(), eNoErr);
    EXPECT_EQ(RM::GetRuntimeEnviron(), eResourceManagerNotInitialized);
    EXPECT_EQ(RM::GetResourceManagerObjectCurrent(), nullptr);
    container = Open();
    EXPECT_TRUE(RM::IsOpenResContainer(container));
    EXPECT_EQ(RM::GetRetainCount(container), 1);
}

TEST_F(Containers, InfoCountsContainersRetainsAndResources) {
    Put("TXT_/a", "a");
    Put("TXT_/b", "b");
    Container *container = Open();
    Container *again = Open();
    Resource *a = nullptr;
    Resource *b = nullptr;
    RM::GetAResource(container, WCResKey("TXT_", "a"), a);
    RM::GetAResource(container, WCResKey("TXT_", "b"), b);
    WSResourceManagerInfo info;
    ASSERT_EQ(RM::GetResourceManagerInfo(info, container), eNoErr);
    EXPECT_EQ(info.m_NumContainers, 1u);
    EXPECT_EQ(info.m_TotalContainerRetain, 2u);
    EXPECT_EQ(info.m_TotalResources, 2u);
    Container *stale = reinterpret_cast<Container *>(&info);
    EXPECT_EQ(RM::GetResourceManagerInfo(info, stale), eRMInvalidResContainer);
    RM::ReleaseResource(a);
    RM::ReleaseResource(b);
    RM::CloseResContainer(again);
}

class ResourceRecords : public BundleTest {};

TEST_F(ResourceRecords, RetainCountsGoDownToRemoval) {
    Put("TXT_/a", "a");
    Container *container = Open();
    Resource *first = nullptr;
    ASSERT_EQ(RM::GetAResource(container, WCResKey("TXT_", "a"), first), eNoErr);
    EXPECT_EQ(first->m_RetainCount, 1);
    Resource *second = nullptr;
    ASSERT_EQ(RM::GetAResource(container, WCResKey("TXT_", "a"), second), eNoErr);
    ASSERT_EQ(RM::RetainResource(first), eNoErr);
    EXPECT_EQ(first->m_RetainCount, 3);
    Resource *third = first;
    ASSERT_EQ(RM::ReleaseResource(third), eNoErr);
    EXPECT_EQ(third, nullptr);
    ASSERT_EQ(RM::ReleaseResource(second), eNoErr);
    Resource *loaded = nullptr;
    ASSERT_EQ(RM::IsResourceLoaded(container, WCResKey("TXT_", "a"), loaded), eNoErr);
    EXPECT_EQ(loaded->m_RetainCount, 1);
    ASSERT_EQ(RM::ReleaseResource(first), eNoErr);
    EXPECT_EQ(RM::IsResourceLoaded(container, WCResKey("TXT_", "a"), loaded), eRMResRefNotFound);
    EXPECT_EQ(RM::ReleaseResource(first), eMemNullPointer);
}

TEST_F(ResourceRecords, ReadFromDiskOncePerContainer) {
    Put("TXT_/a", "a");
    Container *container = Open();
    std::vector<Resource *> held(50);
    for (auto &resource : held)
        ASSERT_EQ(RM::GetAResource(container, WCResKey("TXT_", "a"), resource), eNoErr);
    EXPECT_EQ(WCResContainer_Base::FromHandle(container)->GetLoadCount(), 1u);
    ASSERT_EQ(RM::ReleaseResources(container, held.data(), held.size()), eNoErr);
    for (auto *resource : held)
        EXPECT_EQ(resource, nullptr);
}

TEST_F(ResourceRecords, VariantsShareTheirBaseData) {
    Put("XML_/1001", "<a/>");
    Container *container = Open();
    Resource *variant = nullptr;
    ASSERT_EQ(RM::GetAResource(container, WCResKey("XML_", "1001", "dark"), variant), eNoErr);
    Resource *base = nullptr;
    ASSERT_EQ(RM::IsResourceLoaded(container, WCResKey("XML_", "1001"), base), eNoErr);
    EXPECT_EQ(variant->m_pParent, base);
    EXPECT_EQ(variant->m_Data.m_pData, base->m_Data.m_pData);
    EXPECT_EQ(variant->m_Data.m_DataSize, 4u);
    EXPECT_TRUE(variant->m_Data.m_MemObj.Empty());
    EXPECT_EQ(base->m_RetainCount, 1);
    EXPECT_EQ(WCResContainer_Base::FromHandle(container)->GetLoadCount(), 1u);
    // The variant's last release releases the base it held.
    ASSERT_EQ(RM::ReleaseResource(variant), eNoErr);
    EXPECT_EQ(RM::IsResourceLoaded(container, WCResKey("XML_", "1001"), base), eRMResRefNotFound);
    EXPECT_EQ(RM::GetAResource(container, WCResKey("XML_", "404", "dark"), variant),
              eRMInvalidResRef);
}

TEST_F(ResourceRecords, VariantsFollowTheirBaseWhenItsBytesAreReplaced) {
    Put("TXT_/a", "first");
    Container *container = Open();
    Resource *variant = nullptr;
    ASSERT_EQ(RM::GetAResource(container, WCResKey("TXT_", "a", "v"), variant), eNoErr);
    Resource *base = variant->m_pParent;
    ASSERT_EQ(RM::UpdateResource(base, "second", 6), eNoErr);
    EXPECT_EQ(Text(variant), "second");
    static const char kCallerData[] = "third";
    Resource *added = nullptr;
    ASSERT_EQ(RM::AddResource(container, WCResKey("TXT_", "a"), kCallerData, 5, added), eNoErr);
    EXPECT_EQ(variant->m_Data.m_pData, kCallerData);
    EXPECT_EQ(Text(variant), "third");
    RM::ReleaseResource(added);
    RM::ReleaseResource(variant);
}

TEST_F(ResourceRecords, ReleaseAllDisposesVariantsAndBasesTogether) {
    Put("XML_/1", "<a/>");
    Container *container = Open();
    Resource *variant = nullptr;
    Resource *base = nullptr;
    auto key = WCResKey("XML_", "1");
    key.SetConverter(std::make_shared<RM::WCResConvertCXMLElement>());
    ASSERT_EQ(RM::GetAResource(container, key, base), eNoErr);
    key.m_Variant = "v";
    ASSERT_EQ(RM::GetAResource(container, key, variant), eNoErr);
    ASSERT_EQ(RM::ReleaseAllResources(container), eNoErr);
    WSResourceManagerInfo info;
    RM::GetResourceManagerInfo(info, container);
    EXPECT_EQ(info.m_TotalResources, 0u);
}

TEST_F(ResourceRecords, XMLTreeDropsTheBytesAndStaysATreeForLaterKeysAndAcrossWrites) {
    Put("XML_/9", "<root a=\"1\"/>");
    Container *container = Open();
    WCResKey key("XML_", "9");
    key.SetConverter(std::make_shared<RM::WCResConvertCXMLElement>());
    Resource *resource = nullptr;
    ASSERT_EQ(RM::GetAResource(container, key, resource), eNoErr);
    EXPECT_STREQ(resource->m_Data.m_Form.c_str(), "CXMLElement");
    EXPECT_TRUE(resource->m_Data.m_MemObj.Empty());
    // A later key with another converter gets the first form.
    Resource *second = nullptr;
    ASSERT_EQ(RM::GetAResource(container, WCResKey("XML_", "9"), second), eNoErr);
    EXPECT_EQ(second, resource);
    RM::ReleaseResource(second);

    auto *root = static_cast<XML::CXMLElement *>(resource->m_Data.m_pData);
    root->SetAttrib("a", 2);
    ASSERT_EQ(RM::WriteResource(resource), eNoErr);
    EXPECT_STREQ(resource->m_Data.m_Form.c_str(), "CXMLElement");
    root->SetAttrib("a", 3);
    ASSERT_EQ(RM::WriteResource(resource), eNoErr);
    EXPECT_NE(resources_test::ReadText(Resources() / "XML_" / "9").find("a=\"3\""),
              std::string::npos);
    // Still the tree, so neither copied as bytes nor replaced by them.
    Utils::WCStMemObj copy;
    EXPECT_EQ(RM::CopyResourceToWCStMemObj(resource, copy), eRMInvalidResRef);
    EXPECT_EQ(RM::UpdateResource(resource, "x", 1), eRMResUpdateFailed);
    EXPECT_EQ(resource->m_Data.m_pData, root);
    RM::ReleaseResource(resource);
}

TEST_F(ResourceRecords, AddedBytesUnderAnXMLKeyAreReleasedAsBytes) {
    Put("XML_/1", "<a/>");
    Container *container = Open();
    static const char kOneByte[] = "x";
    for (auto converter :
         {std::shared_ptr<RM::WCResConvertObj>(std::make_shared<RM::WCResConvertCXMLElement>()),
          std::shared_ptr<RM::WCResConvertObj>(std::make_shared<RM::WCResConvertPugiXML>())}) {
        WCResKey key("XML_", "added");
        key.SetConverter(converter);
        Resource *copied = nullptr;
        ASSERT_EQ(RM::AddResourceCopyData(container, key, kOneByte, 1, copied), eNoErr);
        EXPECT_EQ(RM::ReleaseResource(copied), eNoErr);
        Resource *borrowed = nullptr;
        ASSERT_EQ(RM::AddResource(container, key, kOneByte, 1, borrowed), eNoErr);
        EXPECT_EQ(RM::ReleaseResource(borrowed), eNoErr);
    }
    EXPECT_STREQ(kOneByte, "x");
}

TEST_F(ResourceRecords, PugiConverterKeepsTheBytesBesideTheDocument) {
    Put("XML_/7", "<root a=\"1\"/>");
    Container *container = Open();
    WCResKey key("XML_", "7");
    key.SetConverter(std::make_shared<RM::WCResConvertPugiXML>());
    Resource *resource = nullptr;
    ASSERT_EQ(RM::GetAResource(container, key, resource), eNoErr);
    EXPECT_STREQ(resource->m_Data.m_Form.c_str(), "pugi::xml_document");
    auto *doc = static_cast<pugi::xml_document *>(resource->m_Data.m_pData);
    EXPECT_STREQ(doc->document_element().attribute("a").value(), "1");
    EXPECT_FALSE(resource->m_Data.m_MemObj.Empty());
    doc->document_element().attribute("a").set_value("2");
    ASSERT_EQ(RM::WriteResource(resource), eNoErr);
    EXPECT_NE(resources_test::ReadText(Resources() / "XML_" / "7").find("a=\"2\""),
              std::string::npos);
    EXPECT_STREQ(doc->document_element().attribute("a").value(), "2");
    RM::ReleaseResource(resource);
}

TEST_F(ResourceRecords, BrokenXMLGivesTheParserCodeAndLeavesTheMapAsItWas) {
    Put("XML_/bad", "<root><unclosed></root>");
    Put("XML_/empty", "");
    Container *container = Open();
    for (const char *id : {"bad", "empty"}) {
        for (auto converter :
             {std::shared_ptr<RM::WCResConvertObj>(std::make_shared<RM::WCResConvertCXMLElement>()),
              std::shared_ptr<RM::WCResConvertObj>(std::make_shared<RM::WCResConvertPugiXML>())}) {
            WCResKey key("XML_", id);
            key.SetConverter(converter);
            Resource *resource = nullptr;
            const int err = RM::GetAResource(container, key, resource);
            EXPECT_LT(err, 0) << id;
            EXPECT_EQ(resource, nullptr);
        }
    }
    WSResourceManagerInfo info;
    RM::GetResourceManagerInfo(info, container);
    EXPECT_EQ(info.m_TotalResources, 0u);
    // The raw form still loads.
    EXPECT_EQ(Load(container, WCResKey("XML_", "bad")), "<root><unclosed></root>");
}

TEST_F(ResourceRecords, NullHandlesAreReportedAndRefused) {
    static int reported = 0;
    reported = 0;
    WTAssertHandler previous =
        SetAssertHandler([](const char *, int, const char *) { ++reported; });
    Resource *resource = nullptr;
    EXPECT_EQ(RM::GetAResource(nullptr, WCResKey("TXT_", "a"), resource), eMemNullPointer);
    EXPECT_EQ(RM::RetainResource(nullptr), eMemNullPointer);
    std::uint64_t size = 0;
    EXPECT_EQ(RM::GetResSize(nullptr, size), eMemNullPointer);
    SetAssertHandler(previous);
    EXPECT_EQ(reported, 3);
}

} // namespace
