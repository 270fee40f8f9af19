#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <zip.h>

#include "files/WCStPath.h"
#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCTestHome.h"

// Small helpers of the file and resource layers' suites: they make and read files with the
// standard library and libzip, so that a fault of the layer cannot hide itself.
namespace files_test {

namespace fs = std::filesystem;
namespace FM = MIREL_NAMESPACE_NAME::FM;

inline void WriteText(fs::path const &path, std::string const &text) {
    fs::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
}

inline std::string ReadText(fs::path const &path) {
    return mirel_test::ReadFileText(path.string());
}

inline FM::WCStPath PathOf(fs::path const &path) {
    return FM::WCStPath(path.string());
}

// A suite whose tests work in a fresh temporary folder; At names a place inside it.
class WCTempFolderTest : public ::testing::Test {
protected:
    mirel_test::WCTempDir m_dir;
    fs::path At(char const *name) const { return m_dir.path() / name; }
};

// Makes a zip with libzip: folder entries for names ending in "/", stored (uncompressed) entries
// when `store` is set so a test can find and damage their bytes, deflated ones otherwise.
inline void MakeZip(fs::path const &path,
                    std::vector<std::pair<std::string, std::string>> const &entries,
                    bool store = false) {
    fs::create_directories(path.parent_path());
    int error = 0;
    zip_t *archive = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    ASSERT_NE(archive, nullptr);
    for (auto const &[name, data] : entries) {
        if (!name.empty() && name.back() == '/') {
            ASSERT_GE(zip_dir_add(archive, name.c_str(), 0), 0);
            continue;
        }
        zip_source_t *source = zip_source_buffer(archive, data.data(), data.size(), 0);
        ASSERT_NE(source, nullptr);
        zip_int64_t const index = zip_file_add(archive, name.c_str(), source, ZIP_FL_OVERWRITE);
        ASSERT_GE(index, 0);
        if (store)
            zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0);
    }
    ASSERT_EQ(zip_close(archive), 0);
}

} // namespace files_test
