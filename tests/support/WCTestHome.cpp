#include "tests/support/WCTestHome.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <system_error>

namespace mirel_test {

WCTempDir::WCTempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "mirel-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("mkdtemp failed");
    m_path = pattern;
}

WCTempDir::~WCTempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

WCTestHome::WCTestHome(ETMPDIR tmpdir)
    : m_saved{{"HOME", false, {}},
              {"XDG_CONFIG_HOME", false, {}},
              {"XDG_DATA_HOME", false, {}},
              {"XDG_CACHE_HOME", false, {}},
              {"XDG_STATE_HOME", false, {}},
              {"XDG_DATA_DIRS", false, {}},
              {"XDG_CONFIG_DIRS", false, {}},
              {"XDG_DESKTOP_DIR", false, {}},
              {"TMPDIR", false, {}}} {
    for (auto &saved : m_saved) {
        if (const char *value = std::getenv(saved.name)) {
            saved.had = true;
            saved.value = value;
        }
    }
    auto const &home = m_dir.path();
    auto set = [](const char *name, std::filesystem::path const &value) {
        std::filesystem::create_directories(value);
        setenv(name, value.c_str(), 1);
    };
    set("HOME", home);
    set("XDG_CONFIG_HOME", home / ".config");
    set("XDG_DATA_HOME", home / ".local/share");
    set("XDG_CACHE_HOME", home / ".cache");
    set("XDG_STATE_HOME", home / ".local/state");
    set("XDG_DATA_DIRS", home / "usr/share");
    set("XDG_CONFIG_DIRS", home / "etc/xdg");
    set("XDG_DESKTOP_DIR", home / "Desktop");
    if (tmpdir == eTMPDIRInside)
        set("TMPDIR", home / "tmp");
}

WCTestHome::~WCTestHome() {
    for (auto const &saved : m_saved) {
        if (saved.had)
            setenv(saved.name, saved.value.c_str(), 1);
        else
            unsetenv(saved.name);
    }
}

namespace {
std::unique_ptr<WCTestHome> gProgramHome;
std::filesystem::path gCurrent;
std::filesystem::path gLastRemoved;
} // namespace

void WCTestHomeEnvironment::SetUp() {
    gProgramHome = std::make_unique<WCTestHome>(WCTestHome::eTMPDIRInside);
    gCurrent = gProgramHome->path();
}

void WCTestHomeEnvironment::TearDown() {
    gProgramHome.reset();
    gLastRemoved = gCurrent;
    gCurrent.clear();
}

std::filesystem::path const &WCTestHomeEnvironment::Current() {
    return gCurrent;
}

std::filesystem::path const &WCTestHomeEnvironment::LastRemoved() {
    return gLastRemoved;
}

} // namespace mirel_test
