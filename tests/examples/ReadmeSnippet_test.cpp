// README.md's "Writing a plug-in" shows the class of examples/SimpleGain/SimpleGain.h, which the
// build compiles; the snippet must be that class, line for line, and the class a working plug-in.
#include <string>

#include <gtest/gtest.h>

#include "examples/SimpleGain/SimpleGain.h"
#include "tests/support/WCGoldenFile.h"
#include "tools/shell/WCRecordingShell.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

// The text between the line holding `begin` and the next line holding `end`, or "" without them.
std::string Between(const std::string &text, const std::string &begin, const std::string &end) {
    const std::size_t mark = text.find(begin);
    if (mark == std::string::npos)
        return {};
    const std::size_t first = text.find('\n', mark);
    const std::size_t last = text.find(end, first);
    if (first == std::string::npos || last == std::string::npos)
        return {};
    return text.substr(first + 1, text.rfind('\n', last) + 1 - (first + 1));
}

TEST(ReadmeSnippet, IsTheClassOfTheCompiledExample) {
    const std::string readme = mirel_test::ReadFileText(MIREL_SOURCE_DIR "/README.md");
    const std::string section = Between(readme, "## Writing a plug-in", "\n## ");
    const std::string snippet = Between(section, "```cpp", "```");
    const std::string example =
        Between(mirel_test::ReadFileText(MIREL_SOURCE_DIR "/examples/SimpleGain/SimpleGain.h"),
                "// README: begin", "// README: end");
    ASSERT_FALSE(example.empty());
    EXPECT_EQ(snippet, example);
}

TEST(ReadmeSnippet, TheClassIsAPluginThatWalksTheLifeCycle) {
    mirel_shell::WCRecordingShell shell;
    ml::MirelComponentInfo info;
    info.m_ComponentType = ml::WCFourCC("Nati");
    info.m_ComponentSubType = ml::WCFourCC("SmGn");
    info.m_ShortName = "SimpleGain";
    ASSERT_EQ(shell.Create(
                  info,
                  [](ml::MirelComponentInfo const &component, ml::WTResContainerType *&container) {
                      return new SimpleGain(component, container);
                  },
                  [](ml::cALGORITHM *alg) { delete alg; }),
              ml::eNoErr);
    EXPECT_EQ(shell.Start(), ml::eNoErr);
    EXPECT_FLOAT_EQ(shell.CoefAsFloat(0), 1.0f); // 0 dB
    EXPECT_EQ(shell.Idle(0, 2), ml::eNoErr);
    EXPECT_EQ(shell.Stop(), ml::eNoErr);
}

} // namespace
