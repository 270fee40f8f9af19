#include "tests/support/WCTestHome.h"

#include <cstdlib>
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

WCTestHome::WCTestHome()
    : m_saved{{"HOME", false, {}},          {"XDG_CONFIG_HOME", false, {}},
              {"XDG_DATA_HOME", false, {}}, {"XDG_CACHE_HOME", false, {}},
              {"XDG_DATA_DIRS", false, {}}, {"XDG_DESKTOP_DIR", false, {}},
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
    set("XDG_DATA_DIRS", home / "usr/share");
    set("XDG_DESKTOP_DIR", home / "Desktop");
}

WCTestHome::~WCTestHome() {
    for (auto const &saved : m_saved) {
        if (saved.had)
            setenv(saved.name, saved.value.c_str(), 1);
        else
            unsetenv(saved.name);
    }
}

} // namespace mirel_test
