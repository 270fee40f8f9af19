#include "tests/support/WCGoldenFile.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

namespace mirel_test {

std::string ReadFileText(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void ExpectGoldenFile(const std::string &actual, const std::string &folder, const char *name) {
    const std::string path = folder + "/" + name;
    if (const char *update = std::getenv("MIREL_UPDATE_GOLDEN"); update && *update == '1') {
        std::ofstream(path, std::ios::binary) << actual;
        return;
    }
    const std::string expected = ReadFileText(path);
    ASSERT_FALSE(expected.empty()) << "missing expected file " << path;
    EXPECT_EQ(actual, expected) << "differs from " << path;
}

} // namespace mirel_test
