#pragma once

#include <filesystem>
#include <string>

namespace mirel_test {

// A fresh temporary folder, removed with everything in it when the object goes.
class WCTempDir {
public:
    WCTempDir();
    ~WCTempDir();
    WCTempDir(WCTempDir const &) = delete;
    WCTempDir &operator=(WCTempDir const &) = delete;

    std::filesystem::path const &path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

// Points HOME and the XDG variables at a temporary home for the life of the object, so the
// library's folders never reach the real user's, and restores them afterwards. TMPDIR is left as
// it is but restored too, so a test may change it freely.
class WCTestHome {
public:
    WCTestHome();
    ~WCTestHome();
    WCTestHome(WCTestHome const &) = delete;
    WCTestHome &operator=(WCTestHome const &) = delete;

    std::filesystem::path const &path() const { return m_dir.path(); }

private:
    struct WSSaved {
        const char *name;
        bool had;
        std::string value;
    };
    WCTempDir m_dir;
    WSSaved m_saved[7];
};

} // namespace mirel_test
