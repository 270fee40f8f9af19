#pragma once

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

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

// Points HOME and the XDG variables (XDG_CONFIG_HOME, XDG_DATA_HOME, XDG_CACHE_HOME,
// XDG_STATE_HOME, XDG_DATA_DIRS, XDG_CONFIG_DIRS, XDG_DESKTOP_DIR) at folders of a temporary home
// for the life of the object, so the library's folders never reach the real user's, and restores
// them afterwards. With eKeepTMPDIR, TMPDIR is left as it is (but restored too, so a test may
// change it freely); with eTMPDIRInside it points at the home's "tmp" folder, so temporary
// folders made meanwhile lie in the home and go with it. Homes nest: each restores what the one
// before set.
class WCTestHome {
public:
    enum ETMPDIR { eKeepTMPDIR, eTMPDIRInside };

    explicit WCTestHome(ETMPDIR tmpdir = eKeepTMPDIR);
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
    WSSaved m_saved[9];
};

// The temporary home of a whole test program: a global GoogleTest environment that every program
// made by mirel_add_test registers (tests/support/WCTestHomeEnvironment.cpp), also those with
// their own main. Before the first test it makes a WCTestHome, with TMPDIR inside it, in the
// temporary folder of the start; after the last one it restores the variables and removes the
// folder. So no test reads the real user's folders or finds a real Redis configuration.
class WCTestHomeEnvironment : public ::testing::Environment {
public:
    void SetUp() override;
    void TearDown() override;

    // The home of the running program, empty outside SetUp and TearDown.
    static std::filesystem::path const &Current();
    // The home that the last TearDown removed (empty before one): for a check after the run.
    static std::filesystem::path const &LastRemoved();
};

} // namespace mirel_test
