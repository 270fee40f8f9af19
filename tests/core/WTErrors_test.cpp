#include "core/WTErrors.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>

namespace {

// Every named constant of the published table, read from the header itself, so that a constant
// added without its entry in the name table (as -1039 once was) or misspelled there shows.
std::map<int, std::string> NamedConstants() {
    std::ifstream header(std::filesystem::path(__FILE__).parent_path() / "../../core/WTErrors.h");
    std::regex const line(R"(^inline constexpr WTErr (e\w+) = (-?\d+);)");
    std::map<int, std::string> named;
    std::smatch match;
    for (std::string text; std::getline(header, text);)
        if (std::regex_search(text, match, line))
            named.emplace(std::stoi(match[2]), match[1]);
    return named;
}

TEST(WTErrName, EveryNamedConstantHasItsNameAndOtherCodesNone) {
    std::map<int, std::string> const named = NamedConstants();
    ASSERT_GT(named.size(), 150u) << "the header was not found or not read";
    EXPECT_EQ(named.at(-1039), "eFMFileIsEmpty");
    for (int code = 100; code >= -26000; --code) {
        auto const found = named.find(code);
        ASSERT_STREQ(WTErrName(code),
                     found != named.end() ? found->second.c_str() : "Unnamed error")
            << "code " << code;
    }
}

TEST(ConvertErrors, WindowsNumbersAndErrnoMapToTheTable) {
    struct WSWin {
        unsigned long win;
        int code;
    } const kWin[] = {{0, 0},      {2, -1002},  {3, -1002},   {126, -1002}, {6, -2013}, {8, -4009},
                      {14, -4001}, {32, -2014}, {183, -1003}, {193, -2012}, {5, -1}};
    for (auto const &row : kWin)
        EXPECT_EQ(ConvertErrorWIN(row.win), row.code) << row.win;
    struct WSErrno {
        int value;
        int code;
    } const kErrno[] = {{0, 0},           {ENOENT, -1002}, {ENOTDIR, -1002}, {EBADF, -2013},
                        {ENOMEM, -4009},  {EEXIST, -1003}, {EBUSY, -2014},   {ETXTBSY, -2014},
                        {ENOEXEC, -2012}, {EINVAL, -1}};
    for (auto const &row : kErrno)
        EXPECT_EQ(ConvertErrno(row.value), row.code) << row.value;
}

} // namespace
