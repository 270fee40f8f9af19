#include "files/WUBundles.h"

#include <gtest/gtest.h>

#include "tests/files/FilesTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using files_test::PathOf;
using files_test::WriteText;
namespace fs = std::filesystem;

TEST(Bundles, ExtensionsCompareWithoutCaseOrDot) {
    EXPECT_TRUE(FM::IsSameExtension("bundle", ".BUNDLE"));
    EXPECT_TRUE(FM::IsBundleExtension(".Bundle"));
    EXPECT_FALSE(FM::IsBundleExtension("bundles"));
    EXPECT_FALSE(FM::IsSameExtension("zip", nullptr));
    EXPECT_TRUE(FM::IsSameExtension(nullptr, nullptr));
}

TEST(Bundles, PathPredicatesTestTheNameAndExistingOnesTheDisk) {
    mirel_test::WCTempDir dir;
    fs::create_directories(dir.path() / "Real.bundle/Contents");
    WriteText(dir.path() / "Fake.bundle", "x");
    EXPECT_TRUE(FM::IsBundlePath(PathOf(dir.path() / "Fake.bundle")));
    EXPECT_FALSE(FM::IsExistingBundle(PathOf(dir.path() / "Fake.bundle")));
    EXPECT_TRUE(FM::IsExistingBundle(PathOf(dir.path() / "Real.bundle")));
    EXPECT_TRUE(FM::IsBundlePath(FM::WCStPath("/nowhere/X.BUNDLE")));
    EXPECT_FALSE(FM::IsBundlePath(FM::WCStPath()));

    EXPECT_TRUE(FM::IsBundleAndOnlyBundlePath(FM::WCStPath("/p/Outer.bundle")));
    EXPECT_FALSE(
        FM::IsBundleAndOnlyBundlePath(FM::WCStPath("/p/Outer.bundle/Contents/Inner.bundle")));
    EXPECT_TRUE(FM::IsExistingBundleAndOnlyBundle(PathOf(dir.path() / "Real.bundle")));
}

TEST(Bundles, LayoutFoldersHangBelowContents) {
    FM::WCStPath const bundle("/p/Synth.bundle");
    FM::WCStPath out;
    EXPECT_EQ(FM::GetPathToBundleResourcesFolder(bundle, out), eNoErr);
    EXPECT_STREQ(out.GetPathString().c_str(), "/p/Synth.bundle/Contents/Resources");
    FM::GetPathToBundlePluginsFolder(bundle, out);
    EXPECT_STREQ(out.GetPathString().c_str(), "/p/Synth.bundle/Contents/PlugIns");
    FM::GetPathToBundleLinux32Folder(bundle, out);
    EXPECT_STREQ(out.GetPathString().c_str(), "/p/Synth.bundle/Contents/Linux32");
    FM::GetPathToBundleLinux64Folder(bundle, out);
    EXPECT_STREQ(out.GetPathString().c_str(), "/p/Synth.bundle/Contents/Linux64");
    FM::GetPathToBundleDLLFolder(bundle, out);
    EXPECT_STREQ(out.GetPathString().c_str(), "/p/Synth.bundle/Contents/Win64");
    EXPECT_EQ(FM::GetPathToBundleResourcesFolder(FM::WCStPath(), out), eFMIllegalPathRef);
}

TEST(Bundles, MainExecutableIsThePlainSharedObjectNamedAfterTheBundle) {
    mirel_test::WCTempDir dir;
    fs::path const bundle = dir.path() / "Synth.bundle";
    FM::WCStPath out;
    EXPECT_EQ(FM::GetPathToBundleMainExecutable(PathOf(bundle), out), eBundleExecutableNotFound);
    fs::create_directories(bundle / "Contents/Linux64");
    EXPECT_EQ(FM::GetPathToBundleMainExecutable(PathOf(bundle), out), eBundleExecutableNotFound);
    WriteText(dir.path() / "elsewhere.so", "ELF");
    fs::create_symlink(dir.path() / "elsewhere.so", bundle / "Contents/Linux64/Synth.so");
    EXPECT_EQ(FM::GetPathToBundleMainExecutable(PathOf(bundle), out), eBundleExecutableNotFound);
    fs::remove(bundle / "Contents/Linux64/Synth.so");
    WriteText(bundle / "Contents/Linux64/Synth.so", "ELF");
    ASSERT_EQ(FM::GetPathToBundleMainExecutable(PathOf(bundle), out), eNoErr);
    EXPECT_EQ(out, PathOf(bundle / "Contents/Linux64/Synth.so"));

    FM::WCStPath back;
    EXPECT_EQ(FM::GetPathToBundleGivenMainExecutable(out, back), eNoErr);
    EXPECT_EQ(back, PathOf(bundle));
    EXPECT_EQ(FM::GetPathToBundleGivenMainExecutable(FM::WCStPath("/usr/lib/x/libz.so"), back),
              eBundleExecutableNotFound);
}

} // namespace
