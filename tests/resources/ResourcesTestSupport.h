#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <zip.h>

#include "resources/ResourceManager.h"
#include "tests/support/WCTestHome.h"

namespace resources_test {

namespace fs = std::filesystem;

inline void WriteFile(const fs::path &path, const std::string &text) {
    fs::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
}

inline std::string ReadFile(const fs::path &path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A zip made with libzip, entries deflated.
inline void MakeZip(const fs::path &path,
                    const std::vector<std::pair<std::string, std::string>> &entries) {
    fs::create_directories(path.parent_path());
    int error = 0;
    zip_t *archive = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    ASSERT_NE(archive, nullptr);
    for (const auto &[name, data] : entries) {
        zip_source_t *source = zip_source_buffer(archive, data.data(), data.size(), 0);
        ASSERT_NE(source, nullptr);
        ASSERT_GE(zip_file_add(archive, name.c_str(), source, ZIP_FL_OVERWRITE), 0);
    }
    ASSERT_EQ(zip_close(archive), 0);
}

// A bundle folder in a temporary home; the process's resource manager is torn down after each
// test so no container or resource leaks from one case into the next.
class BundleTest : public ::testing::Test {
protected:
    using Container = MIREL_NAMESPACE_NAME::WTResContainerType;
    using Resource = MIREL_NAMESPACE_NAME::WTResourceType;

    void TearDown() override { MIREL_NAMESPACE_NAME::RM::Dispose(); }

    fs::path Bundle() const { return m_home.path() / "Plugins" / "Gain.bundle"; }
    fs::path Resources() const { return Bundle() / "Contents" / "Resources"; }
    void Put(const std::string &relative, const std::string &text) const {
        WriteFile(Resources() / relative, text);
    }
    Container *Open() {
        Container *container = nullptr;
        EXPECT_EQ(MIREL_NAMESPACE_NAME::RM::OpenResContainer(Bundle().c_str(), 0, container),
                  MIREL_NAMESPACE_NAME::eNoErr);
        return container;
    }
    static std::string Text(Resource *resource) {
        return std::string(static_cast<const char *>(resource->m_Data.m_pData),
                           resource->m_Data.m_DataSize);
    }

    mirel_test::WCTestHome m_home;
};

} // namespace resources_test
