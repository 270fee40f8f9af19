// A program with its own main gets the temporary home too; after the run it checks that the
// environment gave the variables back and removed the folder.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/WCTestHome.h"

int main(int argc, char **argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const char *before = std::getenv("HOME");
    const std::string home = before != nullptr ? before : "<unset>";
    const int result = RUN_ALL_TESTS();
    const std::filesystem::path removed = mirel_test::WCTestHomeEnvironment::LastRemoved();
    if (removed.empty()) // nothing ran, as when the tests are only listed
        return result;
    const char *after = std::getenv("HOME");
    if (std::filesystem::exists(removed) || home != (after != nullptr ? after : "<unset>")) {
        std::fprintf(stderr, "the program's home %s was not removed or HOME not restored\n",
                     removed.c_str());
        return 1;
    }
    return result;
}
