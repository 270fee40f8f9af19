#include "resources/WCStRes.h"

#include <sys/stat.h>
#include <utime.h>

#include <gtest/gtest.h>

#include "resources/WCResConvertCXMLElement.h"
#include "resources/WCStResCacheFile.h"
#include "tests/resources/ResourcesTestSupport.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using resources_test::BundleTest;
using resources_test::ReadText;
using resources_test::WriteText;
namespace fs = std::filesystem;

void SetMTime(const fs::path &path, time_t time) {
    utimbuf times{time, time};
    ASSERT_EQ(utime(path.c_str(), &times), 0);
}

time_t MTime(const fs::path &path) {
    struct stat info {};
    EXPECT_EQ(stat(path.c_str(), &info), 0);
    return info.st_mtime;
}

class ScopedHolders : public BundleTest {};

TEST_F(ScopedHolders, StResOwnsItsRetainOnAContainer) {
    Put("TXT_/a", "scoped");
    Container *container = Open();
    {
        RM::WCStRes resource(container, WCResKey("TXT_", "a"));
        ASSERT_TRUE(resource.IsValid());
        std::string text;
        ASSERT_EQ(resource.CopyResourceToStdString(text), eNoErr);
        EXPECT_EQ(text, "scoped");
        EXPECT_EQ(resource.GetResSize(), 6u);
    }
    Resource *loaded = nullptr;
    EXPECT_EQ(RM::IsResourceLoaded(container, WCResKey("TXT_", "a"), loaded), eRMResRefNotFound);
}

TEST_F(ScopedHolders, StResStartsInvalidAndKeepsTheLoadCode) {
    Put("TXT_/a", "a");
    Container *container = Open();
    RM::WCStRes empty;
    EXPECT_EQ(empty.GetError(), eRMInvalidResRef);
    RM::WCStRes missing(container, WCResKey("TXT_", "zzz"));
    EXPECT_EQ(missing.GetError(), eRMResNotFound);
    std::string text;
    EXPECT_EQ(missing.CopyResourceToStdString(text), eRMResNotFound);
    EXPECT_EQ(missing.LoadResource(container, WCResKey("TXT_", "a")), eNoErr);
    EXPECT_TRUE(missing.IsValid());
}

TEST_F(ScopedHolders, UserReleasesWhatItsStResTook) {
    Put("TXT_/a", "a");
    Put("TXT_/b", "b");
    Container *container = Open();
    {
        RM::WCResContainerUser user(container);
        RM::WCStRes a(user, WCResKey("TXT_", "a"));
        {
            RM::WCStRes b(user, WCResKey("TXT_", "b"));
            ASSERT_TRUE(b.IsValid());
        }
        // The holder went, the user still keeps the resource.
        Resource *loaded = nullptr;
        EXPECT_EQ(RM::IsResourceLoaded(container, WCResKey("TXT_", "b"), loaded), eNoErr);
        EXPECT_EQ(user.GetNumLoadedResources(), 2u);
        RM::WCStRes missing(user, WCResKey("TXT_", "none"));
        EXPECT_EQ(user.GetNumLoadedResources(), 2u);
    }
    WSResourceManagerInfo info;
    RM::GetResourceManagerInfo(info, container);
    EXPECT_EQ(info.m_TotalResources, 0u);
}

TEST_F(ScopedHolders, StResContainerRetainsAndCloses) {
    Put("TXT_/a", "a");
    resources_test::MakeZip(Resources() / "ZIP_.zip", {{"z", "zipped"}});
    Container *container = Open();
    {
        RM::WCStResContainer held(container);
        ASSERT_TRUE(held.IsValid());
        EXPECT_EQ(RM::GetRetainCount(container), 2);
        std::vector<WCResKey> keys;
        ASSERT_EQ(held.GetResourceList(keys), eNoErr);
        ASSERT_EQ(keys.size(), 2u);
        EXPECT_EQ(keys[0].str('/'), "TXT_/a");
        EXPECT_EQ(keys[1].str('/'), "ZIP_/z");
        EXPECT_TRUE(held.DoesNativeResourceExist(WCResKey("ZIP_", "z")));
    }
    EXPECT_EQ(RM::GetRetainCount(container), 1);
    RM::WCStResContainer byPath(FM::WCStPath(Bundle().c_str()));
    EXPECT_EQ(byPath.Get(), container);
    RM::WCStResContainer bad(FM::WCStPath((m_home.path() / "x.txt").c_str()));
    EXPECT_EQ(bad.GetError(), eRMInvalidResContainer);
}

class CacheFiles : public BundleTest {};

TEST_F(CacheFiles, ResourceIsWrittenIntoTheUserCache) {
    Put("TXT_/a", "cache me");
    Container *container = Open();
    RM::WCStResCacheFile cache(container, WCResKey("TXT_", "a"));
    ASSERT_TRUE(cache.IsValid()) << cache.ErrorName();
    const fs::path path(cache.GetCacheFilePath().GetPathString().c_str());
    EXPECT_EQ(path.string().rfind((m_home.path() / ".cache").string(), 0), 0u);
    EXPECT_EQ(ReadText(path), "cache me");
    EXPECT_FALSE(cache.WasUpToDate());
}

TEST_F(CacheFiles, RewrittenWhenItsTimeIsNotStrictlyLater) {
    Put("TXT_/a", "version 1");
    Container *container = Open();
    const fs::path cachePath = [&] {
        RM::WCStResCacheFile cache(container, WCResKey("TXT_", "a"));
        return fs::path(cache.GetCacheFilePath().GetPathString().c_str());
    }();
    const time_t resourceTime = 1700000000;
    SetMTime(Resources() / "TXT_" / "a", resourceTime);

    // Later: kept as it is, even if its bytes differ.
    WriteText(cachePath, "stale but newer");
    SetMTime(cachePath, resourceTime + 1);
    {
        RM::WCStResCacheFile cache(container, WCResKey("TXT_", "a"));
        EXPECT_TRUE(cache.WasUpToDate());
        EXPECT_EQ(ReadText(cachePath), "stale but newer");
    }
    // Equal: rewritten.
    SetMTime(cachePath, resourceTime);
    {
        RM::WCStResCacheFile cache(container, WCResKey("TXT_", "a"));
        EXPECT_FALSE(cache.WasUpToDate());
        EXPECT_EQ(ReadText(cachePath), "version 1");
        EXPECT_GT(MTime(cachePath), resourceTime);
    }
}

TEST_F(CacheFiles, ResourceHeldAsATreeIsCachedAsItsStoredBytes) {
    Put("XML_/1", "<root/>");
    Container *container = Open();
    WCResKey treeKey("XML_", "1");
    treeKey.SetConverter(std::make_shared<RM::WCResConvertCXMLElement>());
    RM::WCStRes tree(container, treeKey);
    ASSERT_TRUE(tree.IsValid());
    RM::WCStResCacheFile cache(container, WCResKey("XML_", "1"));
    ASSERT_TRUE(cache.IsValid()) << cache.ErrorName();
    EXPECT_EQ(ReadText(cache.GetCacheFilePath().GetPathString().c_str()), "<root/>");
}

TEST_F(CacheFiles, ProcessorTypesGetADllName) {
    Put("AVXProcessor/1000", "code");
    Container *container = Open();
    RM::WCStResCacheFile cache(container, WCResKey("AVXProcessor", short(1000)));
    ASSERT_TRUE(cache.IsValid());
    EXPECT_EQ(cache.GetCacheFilePath().GetLeaf(), "1000.dll");
    EXPECT_FALSE(RM::WCStResCacheFile::IsProcessorType(WCFixedString<31>("avxprocessor")));
}

TEST_F(CacheFiles, MissingResourceLeavesNoFile) {
    Put("TXT_/a", "a");
    Container *container = Open();
    RM::WCStResCacheFile cache(container, WCResKey("TXT_", "none"));
    EXPECT_EQ(cache.GetError(), eRMResNotFound);
    EXPECT_FALSE(cache.GetCacheFilePath().IsExist());
}

} // namespace
