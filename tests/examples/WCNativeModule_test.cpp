// The library's one module loader, on the built example module.
#include <filesystem>
#include <fstream>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "resources/WCNativeModule.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using ml::Utils::WCNativeModule;

TEST(WCNativeModule, LoadsTheExampleModuleAndFindsItsEntryPoints) {
    WCNativeModule module;
    ASSERT_EQ(module.Load(MIREL_EXAMPLE_MODULE), ml::eNoErr) << module.GetLoadError();
    ASSERT_TRUE(module.IsLoaded());
    void *create = nullptr;
    EXPECT_EQ(module.FindSymbol("MirelPlugin_CreateAlgorithm", create), ml::eNoErr);
    EXPECT_NE(create, nullptr);

    // The same module seen from an address inside it, and from its handle.
    void *handle = nullptr;
    ml::FM::WCStPath path;
    ASSERT_EQ(WCNativeModule::GetModuleOfAddress(create, handle, &path), ml::eNoErr);
    EXPECT_EQ(handle, module.GetHandle());
    EXPECT_EQ(std::filesystem::canonical(path.GetNativePathString().c_str()),
              std::filesystem::canonical(MIREL_EXAMPLE_MODULE));
    ASSERT_EQ(WCNativeModule::GetPathOfHandle(module.GetHandle(), path), ml::eNoErr);
    EXPECT_EQ(std::filesystem::canonical(path.GetNativePathString().c_str()),
              std::filesystem::canonical(MIREL_EXAMPLE_MODULE));
}

TEST(WCNativeModule, RefusesAMissingSymbolAndAMissingFileWithTheirCodes) {
    WCNativeModule module(MIREL_EXAMPLE_MODULE);
    ASSERT_TRUE(module.IsLoaded());
    void *address = &module;
    EXPECT_EQ(module.FindSymbol("NoSuchEntryPoint", address), ml::eFuncPointerNotFound);
    EXPECT_EQ(address, nullptr);
    EXPECT_EQ(module.FindSymbol(nullptr, address), ml::eFuncPointerNotFound);

    EXPECT_EQ(module.Load("/no/such/folder/Missing.so"), ml::eDLLNotFound);
    EXPECT_EQ(module.GetLoadCode(), ml::eDLLNotFound);
    EXPECT_FALSE(module.IsLoaded());
    EXPECT_EQ(module.FindSymbol("MirelPlugin_CreateAlgorithm", address), ml::eFuncPointerNotFound);
    EXPECT_EQ(WCNativeModule(nullptr).GetLoadCode(), ml::eDLLNotFound);
    EXPECT_EQ(WCNativeModule("").GetLoadCode(), ml::eDLLNotFound);
}

TEST(WCNativeModule, RefusesAFileThatIsNoModule) {
    mirel_test::WCTempDir dir;
    const std::filesystem::path fake = dir.path() / "fake.so";
    std::ofstream(fake) << "not an ELF file";
    WCNativeModule module;
    EXPECT_EQ(module.Load(fake.c_str()), ml::eDLLLoadingFailed);
    EXPECT_FALSE(module.GetLoadError().empty());
    EXPECT_FALSE(module.IsLoaded());
}

TEST(WCNativeModule, MovesItsReferenceAndNeverCopies) {
    static_assert(!std::is_copy_constructible_v<WCNativeModule>);
    static_assert(!std::is_copy_assignable_v<WCNativeModule>);
    static_assert(std::is_nothrow_move_constructible_v<WCNativeModule>);
    WCNativeModule first(MIREL_EXAMPLE_MODULE);
    void *const handle = first.GetHandle();
    ASSERT_NE(handle, nullptr);
    WCNativeModule second(std::move(first));
    EXPECT_FALSE(first.IsLoaded()); // a moved-from loader holds nothing
    EXPECT_EQ(second.GetHandle(), handle);
    WCNativeModule third;
    third = std::move(second);
    EXPECT_EQ(third.GetHandle(), handle);
    EXPECT_NE(third.GetSymbol("MirelPlugin_DestroyAlgorithm"), nullptr);
    third.Unload();
    EXPECT_FALSE(third.IsLoaded());
}

TEST(WCNativeModule, AnAddressOutsideEveryModuleHasNone) {
    int local = 0;
    void *handle = &local;
    ml::FM::WCStPath path;
    EXPECT_EQ(WCNativeModule::GetModuleOfAddress(&local, handle), ml::eDLLNotFound);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(WCNativeModule::GetPathOfAddress(&local, path), ml::eDLLNotFound);
    EXPECT_EQ(WCNativeModule::GetPathOfHandle(nullptr, path), ml::eMemNullPointer);
}

} // namespace
