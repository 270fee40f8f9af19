// Runs `mirel-host replay` with the example's knob script into a temporary folder.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace fs = std::filesystem;

// The command's exit code; its output, errors included, goes to `out`.
int RunReplay(const std::string &arguments, const fs::path &out) {
    const std::string command =
        std::string("'") + MIREL_HOST + "' replay " + arguments + " > '" + out.string() + "' 2>&1";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

TEST(MirelHostReplay, PaintsEachFrameMarkAndNamesTheParametersTheEventsChanged) {
    mirel_test::WCTempDir dir;
    const fs::path out = dir.path() / "out.txt";
    ASSERT_EQ(RunReplay(std::string(MIREL_EXAMPLE_SCRIPTS) + "/knob-drag.yaml --out '" +
                            (dir.path() / "frames").string() + "'",
                        out),
              0)
        << mirel_test::ReadFileText(out);
    const std::string text = mirel_test::ReadFileText(out);
    const std::size_t drag = text.find("frame after-drag");
    ASSERT_NE(drag, std::string::npos) << text;
    EXPECT_NE(text.find("  Gain         0.0 dB -> ", drag), std::string::npos) << text;
    EXPECT_EQ(text.find("received 0 buffer chain"), std::string::npos) << text;
    for (const char *png : {"after-drag.png", "after-wheel.png"})
        EXPECT_GT(fs::file_size(dir.path() / "frames" / png), 0u) << png;

    std::ofstream(dir.path() / "bad.yaml")
        << "events:\n  - {event: wait, ms: 1}\n  - {event: mvoe}\n";
    EXPECT_EQ(RunReplay("'" + (dir.path() / "bad.yaml").string() + "'", out), 2);
    EXPECT_NE(mirel_test::ReadFileText(out).find("step 2 (line 3): unknown event 'mvoe'"),
              std::string::npos);
}
