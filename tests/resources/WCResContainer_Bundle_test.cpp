#include "resources/WCResContainer_Bundle.h"

#include <gtest/gtest.h>

#include "core/WCStMemObj.h"
#include "resources/ResourceManager.h"
#include "tests/resources/ResourcesTestSupport.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using resources_test::BundleTest;
using resources_test::MakeZip;
using resources_test::ReadText;
using resources_test::WriteText;

using IDList = std::vector<WCFixedString<31>>;
namespace fs = std::filesystem;

std::vector<std::string> Strings(const IDList &list) {
    std::vector<std::string> out;
    for (const auto &item : list)
        out.emplace_back(item.c_str());
    return out;
}

using Entries = std::vector<std::pair<std::string, std::string>>;

class BundleFiles : public BundleTest {
protected:
    // A fresh bundle of these files and zips, their paths relative to its resources folder.
    Container *Fresh(const Entries &files, const std::vector<std::pair<std::string, Entries>> &zips) {
        RM::Dispose();
        fs::remove_all(Bundle());
        for (const auto &[path, text] : files)
            Put(path, text);
        for (const auto &[path, entries] : zips)
            MakeZip((Resources() / path).lexically_normal(), entries);
        return Open();
    }
};

TEST_F(BundleFiles, KeyLoadsTheFileItsTypeFolderZipAndConfigurationChoose) {
    const Entries twoZipsFiles = {{"extensions.txt", "IMG_ .img\n"}};
    const std::vector<std::pair<std::string, Entries>> twoZips = {
        {"../IMG_.zip", {{"a.img", "from contents"}}},
        {"IMG_.zip", {{"a.img", "from resources"}, {"b.img", "only here"}}}};
    struct {
        const char *name;
        Entries files;
        std::vector<std::pair<std::string, Entries>> zips;
        const char *type, *id;
        int code;
        const char *text;
    } const cases[] = {
        {"extension from the YAML",
         {{"resource_config.yaml", "Extensions:\n  PNG_: .png\n"}, {"PNG_/knob.png", "knob"}},
         {}, "PNG_", "knob", eNoErr, "knob"},
        {"unknown type: the id alone", {{"DATA/1001", "bare"}}, {}, "DATA", "1001", eNoErr, "bare"},
        {"the zip in Contents first", twoZipsFiles, twoZips, "IMG_", "a", eNoErr, "from contents"},
        {"the other zip not merged", twoZipsFiles, twoZips, "IMG_", "b", eRMResNotFound, ""},
        {"zip entry named with its extension", {{"extensions.txt", "IMG_ .img"}},
         {{"IMG_.zip", {{"a.img", "one"}}}}, "IMG_", "a.img", eNoErr, "one"},
        {"type folder over zip", {{"extensions.txt", "IMG_ .img"}, {"IMG_/a.img", "folder"}},
         {{"IMG_.zip", {{"a.img", "zip"}}}}, "IMG_", "a", eNoErr, "folder"},
        {"YAML over extensions.txt",
         {{"resource_config.yaml", "Extensions:\n  TXT_: .yml\n"},
          {"extensions.txt", "TXT_ .txt\n"}, {"TXT_/a.yml", "yaml"}, {"TXT_/a.txt", "text"}},
         {}, "TXT_", "a", eNoErr, "yaml"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        Resource *resource = nullptr;
        EXPECT_EQ(RM::GetAResource(Fresh(c.files, c.zips), WCResKey(c.type, c.id), resource),
                  c.code);
        EXPECT_EQ(resource != nullptr ? Text(resource) : "", c.text);
        if (resource != nullptr)
            RM::ReleaseResource(resource);
    }
}

TEST_F(BundleFiles, RedirectionStandsInForAMissingFileAndMustLeadToOne) {
    Put("resource_config.yaml", "Extensions:\n  PNG_: .png\n"
                                "Redirection:\n  PNG_/knob2.png: ../Shared/knob.png\n"
                                "  TXT_/x: nowhere.txt\n");
    Put("Shared/knob.png", "shared knob");
    Put("TXT_/y", "y");
    Container *container = Open();
    EXPECT_EQ(Load(container, WCResKey("PNG_", "knob2")), "shared knob");
    FM::WCStPath actual;
    FM::WCStPath theoretical;
    ASSERT_EQ(RM::GetPathToActualFile(container, WCResKey("PNG_", "knob2"), actual), eNoErr);
    ASSERT_EQ(RM::GetPathToTheoreticalFile(container, WCResKey("PNG_", "knob2"), theoretical),
              eNoErr);
    EXPECT_TRUE(actual.IsFile());
    EXPECT_EQ(theoretical.GetLeaf(), "knob2.png");
    EXPECT_FALSE(theoretical.IsExist());
    Resource *resource = nullptr;
    EXPECT_EQ(RM::GetAResource(container, WCResKey("TXT_", "x"), resource), eRMResNotFound);
    EXPECT_EQ(resource, nullptr);
}

TEST_F(BundleFiles, KeysDifferingInTypeCaseShareOneRecord) {
    Put("PNG_/k", "upper");
    Container *container = Open();
    Resource *first = nullptr;
    Resource *second = nullptr;
    ASSERT_EQ(RM::GetAResource(container, WCResKey("PNG_", "k"), first), eNoErr);
    // The file lookup keeps the case of the key that asked first, so this one is never asked.
    ASSERT_EQ(RM::GetAResource(container, WCResKey("png_", "k"), second), eNoErr);
    EXPECT_EQ(first, second);
    EXPECT_EQ(first->m_RetainCount, 2);
    RM::ReleaseResource(first);
    RM::ReleaseResource(second);
}

class BundleBadInput : public BundleTest {};

TEST_F(BundleBadInput, MissingTypeFolderAndZipIsFileNotFoundAndMapUnchanged) {
    Put("TXT_/a", "a");
    Container *container = Open();
    Resource *resource = nullptr;
    EXPECT_EQ(RM::GetAResource(container, WCResKey("NONE", "a"), resource), eFMFileNotFound);
    EXPECT_EQ(resource, nullptr);
    WSResourceManagerInfo info;
    ASSERT_EQ(RM::GetResourceManagerInfo(info, container), eNoErr);
    EXPECT_EQ(info.m_TotalResources, 0u);
    EXPECT_FALSE(RM::DoesResourceExist(container, WCResKey("NONE", "a")));
}

TEST_F(BundleBadInput, CorruptZipIsResNotFoundAndARepairedOneIsReadLater) {
    Put("BIN_.zip", "PK\x03\x04 this is not really a zip at all");
    Container *container = Open();
    Resource *loaded = nullptr;
    Resource *resource = nullptr;
    Put("OK__/a", "fine");
    ASSERT_EQ(RM::GetAResource(container, WCResKey("OK__", "a"), loaded), eNoErr);
    EXPECT_EQ(RM::GetAResource(container, WCResKey("BIN_", "a"), resource), eRMResNotFound);
    std::uint64_t size = 0;
    EXPECT_EQ(RM::GetRawResSize(container, WCResKey("BIN_", "a"), size), eRMResNotFound);
    IDList ids;
    EXPECT_EQ(RM::GetResIDList(container, "BIN_", ids), eRMResNotFound);
    EXPECT_TRUE(ids.empty());
    WSResourceManagerInfo info;
    RM::GetResourceManagerInfo(info, container);
    EXPECT_EQ(info.m_TotalResources, 1u);
    EXPECT_EQ(Text(loaded), "fine");

    MakeZip(Resources() / "BIN_.zip", {{"a", "repaired"}});
    EXPECT_EQ(Load(container, WCResKey("BIN_", "a")), "repaired");
    RM::ReleaseResource(loaded);
}

TEST_F(BundleBadInput, BrokenOrMisshapenYAMLRefusesTheWholeConfigurationAndTheBundleStaysUsable) {
    Put("extensions.txt", "TXT_ .txt\n");
    Put("TXT_/a", "plain");
    Put("TXT_/a.txt", "by extension");
    for (const char *yaml :
         {"Extensions: [unclosed\n  - : :\n", "Extensions:\n  TXT_: .txt\nAttributes: [1, 2]\n"}) {
        SCOPED_TRACE(yaml);
        Put("resource_config.yaml", yaml);
        Container *container = Open();
        ASSERT_NE(container, nullptr);
        EXPECT_EQ(WCResContainer_Base::FromHandle(container)->GetConfigurationError(),
                  eRMInvalidResContainer);
        // No extension came from anywhere: the text file is not a fallback for a refused YAML.
        EXPECT_EQ(Load(container, WCResKey("TXT_", "a")), "plain");
        RM::Dispose();
    }
}

TEST_F(BundleBadInput, RefusedYAMLIsNotOverwrittenByChangedAttributes) {
    const std::string broken = "Extensions: [unclosed\nRedirection:\n  TXT_/b: a\n";
    Put("resource_config.yaml", broken);
    Put("TXT_/a", "a");
    Container *container = Open();
    ASSERT_EQ(RM::SetResourceAttrib(container, WCResKey("TXT_", "a"), "gain", "3"), eNoErr);
    EXPECT_EQ(RM::WriteResContainer(container), eRMInvalidResContainer);
    EXPECT_EQ(ReadText(Resources() / "resource_config.yaml"), broken);
}

TEST_F(BundleBadInput, KeysThatWouldLeaveTheBundleAreRefused) {
    Put("TXT_/a", "a");
    WriteText(Bundle().parent_path() / "secret", "outside");
    Container *container = Open();
    Resource *resource = nullptr;
    EXPECT_EQ(RM::GetAResource(container, WCResKey("TXT_", "../../../secret"), resource),
              eRMInvalidResID);
    EXPECT_EQ(RM::GetAResource(container, WCResKey("..", "secret"), resource), eRMInvalidResID);
    EXPECT_EQ(RM::GetAResource(container, WCResKey("TXT_", ""), resource), eRMInvalidResID);
    FM::WCStPath path;
    EXPECT_EQ(RM::GetPathToTheoreticalFile(container, WCResKey("TXT_", "a/b"), path),
              eRMInvalidResID);
    IDList ids;
    EXPECT_EQ(RM::GetResIDList(container, "../Resources", ids), eRMInvalidResID);
}

TEST_F(BundleBadInput, FilesOutsideTheResourcesFolderAreNeitherReadNorWritten) {
    // Everything below lies outside "Contents/Resources": a sibling of the bundle, a file of the
    // bundle's own "Contents", and the targets of links inside the resources folder.
    const fs::path outside = m_home.path() / "outside.txt";
    const fs::path outsideFolder = m_home.path() / "elsewhere";
    WriteText(outside, "secret");
    WriteText(outsideFolder / "a", "secret");
    WriteText(Bundle() / "Contents" / "Info.plist", "secret");
    Put("TXT_/kept", "inside");
    fs::create_symlink(outside, Resources() / "TXT_" / "linked");
    fs::create_symlink(outsideFolder, Resources() / "EXT_");
    const std::string dots = fs::relative(outside, Resources() / "TXT_").string();
    Put("resource_config.yaml", "Redirection:\n  TXT_/dots: " + dots +
                                    "\n  TXT_/absolute: " + outside.string() +
                                    "\n  TXT_/contents: ../../Info.plist\n"
                                    "  TXT_/via-link: linked\n  TXT_/within: kept\n");
    Container *container = Open();
    EXPECT_EQ(Load(container, WCResKey("TXT_", "within")), "inside");

    // An absolute redirection is taken relative to the type folder, where nothing stands: so a
    // write goes to the key's own file, inside.
    const std::pair<const char *, int> cases[] = {{"dots", eRMResNotFound},
                                                  {"absolute", eNoErr},
                                                  {"contents", eRMResNotFound},
                                                  {"via-link", eRMResNotFound},
                                                  {"linked", eRMResNotFound}};
    for (const auto &[id, writeResult] : cases) {
        SCOPED_TRACE(id);
        const WCResKey key("TXT_", id);
        Resource *resource = nullptr;
        EXPECT_EQ(RM::GetAResource(container, key, resource), eRMResNotFound);
        EXPECT_FALSE(RM::DoesResourceExist(container, key));
        FM::WCStPath actual;
        EXPECT_EQ(RM::GetPathToActualFile(container, key, actual), eRMResNotFound);
        ASSERT_EQ(RM::AddResourceCopyData(container, key, "overwritten", 11, resource), eNoErr);
        EXPECT_EQ(RM::WriteResource(resource), writeResult);
        RM::ReleaseResource(resource);
    }
    EXPECT_EQ(ReadText(Resources() / "TXT_" / "absolute"), "overwritten");
    // A type folder that is a link: neither its files nor a new one in it.
    Resource *resource = nullptr;
    EXPECT_EQ(RM::GetAResource(container, WCResKey("EXT_", "a"), resource), eRMResNotFound);
    ASSERT_EQ(RM::AddResourceCopyData(container, WCResKey("EXT_", "new"), "n", 1, resource),
              eNoErr);
    EXPECT_EQ(RM::WriteResource(resource), eRMResNotFound);
    RM::ReleaseResource(resource);

    EXPECT_EQ(ReadText(outside), "secret");
    EXPECT_EQ(ReadText(outsideFolder / "a"), "secret");
    EXPECT_FALSE(fs::exists(outsideFolder / "new"));
    EXPECT_EQ(ReadText(Bundle() / "Contents" / "Info.plist"), "secret");
}

TEST_F(BundleBadInput, ZipLinkedFromOutsideTheBundleIsNotRead) {
    MakeZip(m_home.path() / "IMG_.zip", {{"a", "from outside"}});
    fs::create_directories(Resources());
    fs::create_symlink(m_home.path() / "IMG_.zip", Resources() / "IMG_.zip");
    Resource *resource = nullptr;
    EXPECT_EQ(RM::GetAResource(Open(), WCResKey("IMG_", "a"), resource), eFMFileNotFound);
    EXPECT_EQ(resource, nullptr);
}

class BundleListing : public BundleFiles {};

TEST_F(BundleListing, IDsAreSortedCutAndFilteredByExtensionAndTheFolderHidesTheZip) {
    const std::string longName(40, 'x');
    struct {
        const char *name;
        Entries files;
        std::vector<std::pair<std::string, Entries>> zips;
        std::vector<std::string> ids;
    } const cases[] = {
        {"folder",
         {{"extensions.txt", "PNG_ .png"}, {"PNG_/b.png", ""}, {"PNG_/a.png", ""},
          {"PNG_/notes.txt", ""}, {"PNG_/.hidden.png", ""}, {"PNG_/" + longName + ".png", ""}},
         {}, {"kept", "a", "b", std::string(31, 'x')}},
        {"folder hides the zip", {{"extensions.txt", "PNG_ .png"}, {"PNG_/a.png", ""}},
         {{"PNG_.zip", {{"a.png", ""}, {"z.png", ""}}}}, {"kept", "a"}},
        {"zip", {{"extensions.txt", "PNG_ .png"}},
         {{"PNG_.zip", {{"c.png", ""}, {"Sub/a.png", ""}, {"readme.txt", ""}, {"c.png.bak", ""}}}},
         {"kept", "a", "c"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        IDList ids{WCFixedString<31>("kept")};
        ASSERT_EQ(RM::GetResIDList(Fresh(c.files, c.zips), "PNG_", ids), eNoErr);
        EXPECT_EQ(Strings(ids), c.ids);
    }
}

TEST_F(BundleListing, ShortFormKeepsOnlyNumbers) {
    Put("XML_/1000", "");
    Put("XML_/1001", "");
    Put("XML_/abc", "");
    Put("XML_/70000", "");
    Container *container = Open();
    std::vector<short> ids;
    ASSERT_EQ(RM::GetResIDList(container, "XML_", ids), eNoErr);
    EXPECT_EQ(ids, (std::vector<short>{1000, 1001}));
}

TEST_F(BundleListing, TypesComeFromFoldersAndZipsWithoutDuplicates) {
    Put("PNG_/a", "");
    Put("XML_/b", "");
    MakeZip(Resources() / "PNG_.zip", {{"a", ""}});
    MakeZip(Resources().parent_path() / "WAV_.zip", {{"a", ""}});
    MakeZip(Resources() / (std::string(40, 'L') + ".zip"), {{"a", ""}});
    Put("resource_config.yaml", "");
    Container *container = Open();
    IDList types;
    ASSERT_EQ(RM::GetResTypeList(container, types), eNoErr);
    EXPECT_EQ(Strings(types), (std::vector<std::string>{"PNG_", "WAV_", "XML_"}));
}

class BundleChanges : public BundleTest {};

TEST_F(BundleChanges, AddedResourceIsWrittenToItsTheoreticalPath) {
    Put("extensions.txt", "TXT_ .txt");
    Container *container = Open();
    Resource *resource = nullptr;
    ASSERT_EQ(RM::AddResourceCopyData(container, WCResKey("TXT_", "new"), "fresh", 5, resource),
              eNoErr);
    EXPECT_NE(resource->m_Flags & RM::kResFlagAddedNotOnDisk, 0u);
    ASSERT_EQ(RM::WriteResource(resource), eNoErr);
    EXPECT_EQ(ReadText(Resources() / "TXT_" / "new.txt"), "fresh");
    EXPECT_EQ(resource->m_Flags & RM::kResFlagAddedNotOnDisk, 0u);
    RM::ReleaseResource(resource);
}

TEST_F(BundleChanges, AddOnAStoredKeyIsRefusedUntilLoadedAndReplaceOrUpdateChangeItsBytes) {
    Put("TXT_/a", "stored");
    Container *container = Open();
    Resource *resource = nullptr;
    EXPECT_EQ(RM::AddResource(container, WCResKey("TXT_", "a"), "x", 1, resource), eRMResExists);
    ASSERT_EQ(RM::AddOrReplaceResource(container, WCResKey("TXT_", "a"), "new", 3, resource),
              eNoErr);
    ASSERT_EQ(RM::WriteResource(resource), eNoErr);
    EXPECT_EQ(ReadText(Resources() / "TXT_" / "a"), "new");

    // Loaded, the key takes the caller's bytes; an update without bytes changes nothing.
    static const char kCallerData[] = "caller";
    Resource *added = nullptr;
    ASSERT_EQ(RM::AddResource(container, WCResKey("TXT_", "a"), kCallerData, 6, added), eNoErr);
    EXPECT_EQ(added, resource);
    EXPECT_EQ(resource->m_Data.m_pData, kCallerData);
    EXPECT_EQ(resource->m_RetainCount, 2);
    RM::ReleaseResource(added);
    ASSERT_EQ(RM::UpdateResource(resource, "newer", 5), eNoErr);
    EXPECT_EQ(RM::UpdateResource(resource, nullptr, 3), eMemNullPointer);
    EXPECT_EQ(Text(resource), "newer");
    RM::ReleaseResource(resource);
}

TEST_F(BundleChanges, DeferredWriteWaitsForTheContainer) {
    Put("TXT_/keep", "k");
    Container *container = Open();
    Resource *resource = nullptr;
    ASSERT_EQ(RM::AddResourceCopyData(container, WCResKey("TXT_", "later"), "late", 4, resource,
                                      RM::kResLoadDeferredWrite),
              eNoErr);
    ASSERT_EQ(RM::WriteResource(resource), eNoErr);
    EXPECT_FALSE(fs::exists(Resources() / "TXT_" / "later"));
    ASSERT_EQ(RM::WriteResContainer(container), eNoErr);
    EXPECT_EQ(ReadText(Resources() / "TXT_" / "later"), "late");
    RM::ReleaseResource(resource);
}

TEST_F(BundleChanges, MarkedResourceExistsUntilItsFileIsDeletedAtItsLastRelease) {
    Put("TXT_/gone", "bye");
    Container *container = Open();
    Resource *resource = nullptr;
    ASSERT_EQ(RM::GetAResource(container, WCResKey("TXT_", "gone"), resource), eNoErr);
    ASSERT_EQ(RM::MarkResourceForDelete(resource), eNoErr);
    EXPECT_TRUE(RM::DoesResourceExist(container, WCResKey("TXT_", "gone")));
    EXPECT_TRUE(fs::exists(Resources() / "TXT_" / "gone"));
    RM::ReleaseResource(resource);
    EXPECT_FALSE(fs::exists(Resources() / "TXT_" / "gone"));
    EXPECT_FALSE(RM::DoesResourceExist(container, WCResKey("TXT_", "gone")));

    // Added and never written, a marked record has nothing that holds it.
    ASSERT_EQ(RM::AddResourceCopyData(container, WCResKey("TXT_", "new"), "n", 1, resource),
              eNoErr);
    ASSERT_EQ(RM::MarkResourceForDelete(resource), eNoErr);
    EXPECT_FALSE(RM::DoesResourceExist(container, WCResKey("TXT_", "new")));
    RM::ReleaseResource(resource);
}

TEST_F(BundleChanges, AttributesComeFromTextAndPersistAsYAML) {
    Put("attributes.txt", "PNG_:knob:frames 64\n");
    Put("PNG_/knob", "");
    Container *container = Open();
    WCFixedString<127> value;
    ASSERT_EQ(RM::GetResourceAttrib(container, WCResKey("PNG_", "knob"), "frames", value), eNoErr);
    EXPECT_EQ(value, "64");
    EXPECT_FALSE(RM::HasResourceAttrib(container, WCResKey("PNG_", "knob"), "width"));
    EXPECT_EQ(RM::GetResourceAttrib(container, WCResKey("PNG_", "knob"), "width", value),
              eRMResNotFound);
    ASSERT_EQ(RM::SetResourceAttrib(container, WCResKey("PNG_", "knob"), "width", "32"), eNoErr);
    ASSERT_EQ(RM::WriteResContainer(container), eNoErr);
    RM::CloseResContainer(container);

    container = Open();
    ASSERT_EQ(RM::GetResourceAttrib(container, WCResKey("PNG_", "knob"), "width", value), eNoErr);
    EXPECT_EQ(value, "32");
    ASSERT_EQ(RM::GetResourceAttrib(container, WCResKey("PNG_", "knob"), "frames", value), eNoErr);
    EXPECT_EQ(value, "64");
}

} // namespace
