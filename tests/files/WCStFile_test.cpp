#include "files/WCStFile.h"

#include <csignal>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "core/WCStMemObj.h"
#include "files/WTPathType.h"
#include "files/WUFileSystemObjects.h"
#include "files/WUOpenFile.h"
#include "tests/files/FilesTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using files_test::PathOf;
using files_test::ReadText;
using files_test::WriteText;
namespace fs = std::filesystem;

std::size_t CountEntries(fs::path const &folder) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

// Files above `limit` bytes cannot be written while the object lives: the system refuses with
// EFBIG instead of the signal it would send.
class WCFileSizeLimit {
public:
    explicit WCFileSizeLimit(rlim_t limit) {
        getrlimit(RLIMIT_FSIZE, &m_saved);
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit reduced = m_saved;
        reduced.rlim_cur = limit;
        setrlimit(RLIMIT_FSIZE, &reduced);
    }
    ~WCFileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_saved);
        std::signal(SIGXFSZ, m_oldHandler);
    }

private:
    rlimit m_saved{};
    void (*m_oldHandler)(int);
};

using WCStFileTest = files_test::WCTempFolderTest;

TEST_F(WCStFileTest, EveryWriteFormReadsBackThroughEveryReadForm) {
    std::string const text = "plain text\n";
    WCFixedString<63> const fixed("fixed text\n");
    Utils::WCStMemObj bytes("\x00\x01\x02\xFF", 4);
    {
        FM::WCStFileCreate file(PathOf(At("sub/dir/out.bin")));
        ASSERT_TRUE(file.IsValid()) << file.ErrorName();
        EXPECT_EQ(file.WriteFromString(text), eNoErr);
        EXPECT_EQ(file.WriteFromString(fixed), eNoErr);
        EXPECT_EQ(file.WriteFromString("c text\n"), eNoErr);
        EXPECT_EQ(file.WriteFromWCStMemObj(bytes), eNoErr);
        EXPECT_EQ(file.Close(), eNoErr);
    }
    std::string const expected = text + "fixed text\nc text\n" + std::string("\x00\x01\x02\xFF", 4);
    EXPECT_EQ(ReadText(At("sub/dir/out.bin")), expected);

    FM::WCStFileRead reader(PathOf(At("sub/dir/out.bin")));
    ASSERT_TRUE(reader.IsValid());
    std::string asString;
    EXPECT_EQ(reader.ReadToStdString(asString), eNoErr);
    EXPECT_EQ(asString, expected);
    Utils::WCStMemObj asMem;
    EXPECT_EQ(reader.ReadToWCStMemObj(asMem), eNoErr);
    ASSERT_EQ(asMem.GetSize(), expected.size());
    EXPECT_EQ(std::string(static_cast<char const *>(asMem.GetPtr()), asMem.GetSize()), expected);
    char head[5] = {};
    std::uint64_t got = 0;
    EXPECT_EQ(reader.SetFileCursor(0), eNoErr);
    EXPECT_EQ(reader.Read(head, 5, got), eNoErr);
    EXPECT_EQ(got, 5u);
    EXPECT_EQ(std::string(head, 5), "plain");
    std::uint64_t size = 0;
    EXPECT_EQ(reader.GetFileSize(size), eNoErr);
    EXPECT_EQ(size, expected.size());
}

TEST_F(WCStFileTest, WriterChangesAnExistingFileInPlace) {
    WriteText(At("w.txt"), "0123456789");
    FM::WCStFileWrite writer(PathOf(At("w.txt")));
    ASSERT_TRUE(writer.IsValid());
    EXPECT_EQ(writer.SetFileCursor(3), eNoErr);
    EXPECT_EQ(writer.WriteFromString("abc"), eNoErr);
    std::uint64_t at = 0;
    EXPECT_EQ(writer.GetFileCursor(at), eNoErr);
    EXPECT_EQ(at, 6u);
    EXPECT_EQ(writer.SetFileSize(8), eNoErr);
    EXPECT_EQ(writer.Close(), eNoErr);
    EXPECT_EQ(ReadText(At("w.txt")), "012abc67");
}

// The replacing writer stages its bytes beside the target: readers see the old file until the
// writer is done, and an abandoned, unwound or failed writer leaves it whole.
TEST_F(WCStFileTest, ReplacingCommitsOnlyAWriterThatEndsWell) {
    enum WEEnd { eDestroyed, eAbandoned, eUnwound, eTooBig };
    for (WEEnd end : {eDestroyed, eAbandoned, eUnwound, eTooBig}) {
        SCOPED_TRACE(end);
        WriteText(At("p.xps"), "old");
        try {
            std::optional<WCFileSizeLimit> limit;
            if (end == eTooBig)
                limit.emplace(16);
            FM::WCStFileCreate file(PathOf(At("p.xps")));
            ASSERT_TRUE(file.IsValid());
            EXPECT_EQ(file.WriteFromString(std::string(100, 'x')),
                      end == eTooBig ? eFMFileSizeTooBig : eNoErr);
            EXPECT_EQ(ReadText(At("p.xps")), "old");
            if (end == eAbandoned)
                file.Abandon();
            if (end == eUnwound)
                throw static_cast<int>(eFMWriteFailed);
            if (end == eTooBig) {
                EXPECT_EQ(file.Close(), eFMFileSizeTooBig);
            }
        } catch (int) {
        }
        EXPECT_EQ(ReadText(At("p.xps")), end == eDestroyed ? std::string(100, 'x') : "old");
        EXPECT_EQ(CountEntries(m_dir.path()), 1u) << "no staging file is left behind";
    }
}

TEST_F(WCStFileTest, CreateFlagsAppendAndRefuse) {
    WriteText(At("log.txt"), "one\n");
    {
        FM::WCStFileCreate file(PathOf(At("log.txt")), FM::eFMCreateAppend);
        ASSERT_TRUE(file.IsValid());
        file.WriteFromString("two\n");
    }
    EXPECT_EQ(ReadText(At("log.txt")), "one\ntwo\n");
    FM::WCStFileCreate refused(PathOf(At("log.txt")), FM::eFMCreateNew);
    EXPECT_EQ(refused.GetError(), eFMFileAllreadyExists);
    {
        FM::WCStFileCreate fresh(PathOf(At("fresh.txt")), FM::eFMCreateNew,
                                 FM::eFMReadWritePermission, 0600);
        ASSERT_TRUE(fresh.IsValid());
        fresh.WriteFromString("made");
    }
    EXPECT_EQ(ReadText(At("fresh.txt")), "made");
    EXPECT_EQ(fs::status(At("fresh.txt")).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(WCStFileTest, MissingFilesAndFoldersGiveTheirCodes) {
    fs::create_directory(At("folder"));
    EXPECT_EQ(FM::WCStFileRead(PathOf(At("none.txt"))).GetError(), eFMFileNotFound);
    EXPECT_EQ(FM::WCStFileRead(PathOf(At("folder"))).GetError(), eFMIsAFolder);
    EXPECT_EQ(FM::WCStFileWrite(PathOf(At("none.txt"))).GetError(), eFMFileNotFound);
    EXPECT_EQ(FM::WCStFileCreate(PathOf(At("folder"))).GetError(), eFMIsAFolder);
    EXPECT_EQ(FM::WCStFileRead(FM::WCStPath()).GetError(), eFMIllegalPathRef);
    WriteText(At("plain"), "x");
    EXPECT_EQ(FM::WCStFileCreate(PathOf(At("plain/child.txt"))).GetError(), eFMIsAFile);

    FM::WCStFileRead invalid(PathOf(At("none.txt")));
    std::string text = "untouched";
    EXPECT_EQ(invalid.ReadToStdString(text), eFMFileNotFound);
    EXPECT_EQ(text, "untouched");
    EXPECT_FALSE(fs::exists(At("none.txt")));
}

// Replacing a file must not widen who may read it, nor get round its lack of write permission.
TEST_F(WCStFileTest, ReplacedFilesKeepTheirPermissionsAndReadOnlyOnesStay) {
    fs::path const secret = At("secret.txt");
    WriteText(secret, "old");
    fs::permissions(secret, fs::perms::owner_read | fs::perms::owner_write);
    {
        FM::WCStFileCreate file(PathOf(secret), FM::eFMCreateAlways, FM::eFMReadWritePermission,
                                0666);
        file.WriteFromString("new");
        EXPECT_EQ(file.Close(), eNoErr);
    }
    EXPECT_EQ(ReadText(secret), "new");
    EXPECT_EQ(fs::status(secret).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    std::string const text = "newer";
    EXPECT_EQ(FM::ReplaceFileContents(PathOf(secret), text.data(), text.size(), 0666), eNoErr);
    EXPECT_EQ(fs::status(secret).permissions(), fs::perms::owner_read | fs::perms::owner_write);

    // A file the writer may not change, in a folder where it may make files. Root may write any
    // file, so the writer is a child process that gives up root first.
    fs::path const shared = At("shared");
    fs::create_directory(shared);
    fs::permissions(m_dir.path(), fs::perms::all);
    fs::permissions(shared, fs::perms::all);
    fs::path const locked = shared / "locked.txt";
    WriteText(locked, "keep");
    fs::permissions(locked, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    fs::path const source = At("source.txt");
    WriteText(source, "copy me");
    fs::permissions(source, fs::perms::owner_all | fs::perms::others_read);
    pid_t const child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0))
            _exit(2);
        bool const refused =
            FM::WCStFileCreate(PathOf(locked)).GetError() == eFMPermissionErr &&
            FM::ReplaceFileContents(PathOf(locked), text.data(), text.size()) == eFMPermissionErr &&
            FM::DuplicateFile(PathOf(source), PathOf(locked), FM::eFMDuplicateReplace) ==
                eFMPermissionErr;
        _exit(refused ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
    EXPECT_EQ(ReadText(locked), "keep");
    EXPECT_EQ(CountEntries(shared), 1u) << "no staging file is left behind";
}

// The replacing writers stage their bytes in a hidden file named after the target; a target name
// as long as the system allows must still be writable.
TEST_F(WCStFileTest, NamesOfTheLongestLengthAreWrittenAndReplaced) {
    std::string const name = std::string(251, 'n') + ".txt";
    {
        FM::WCStFileCreate file(PathOf(At(name.c_str())));
        ASSERT_TRUE(file.IsValid()) << WTErrName(file.GetError());
        file.WriteFromString("first");
        EXPECT_EQ(file.Close(), eNoErr);
    }
    EXPECT_EQ(ReadText(At(name.c_str())), "first");
    std::string const text = "second";
    EXPECT_EQ(FM::ReplaceFileContents(PathOf(At(name.c_str())), text.data(), text.size()), eNoErr);
    EXPECT_EQ(ReadText(At(name.c_str())), "second");
    std::string const copy = std::string(251, 'c') + ".txt";
    EXPECT_EQ(FM::DuplicateFile(PathOf(At(name.c_str())), PathOf(At(copy.c_str()))), eNoErr);
    EXPECT_EQ(ReadText(At(copy.c_str())), "second");
    EXPECT_EQ(CountEntries(m_dir.path()), 2u) << "no staging file is left behind";
}

// A pipe would block the opener until a writer comes, and /dev/zero never ends: both are refused
// at once, and the caller's buffer keeps what it held.
TEST_F(WCStFileTest, PipesAndDevicesAreRefusedWithoutBlockingOrFillingMemory) {
    fs::path const pipe = At("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(FM::WCStFileRead(PathOf(pipe)).GetError(), eFMIsNotAFile);
    EXPECT_EQ(FM::WCStFileWrite(PathOf(pipe)).GetError(), eFMIsNotAFile);
    std::string text = "untouched";
    EXPECT_EQ(FM::ReadTheWholeFile(PathOf(pipe), text), eFMIsNotAFile);
    EXPECT_EQ(FM::ReadTheWholeFile(FM::WCStPath("/dev/zero"), text), eFMIsNotAFile);
    EXPECT_EQ(text, "untouched");
    Utils::WCStMemObj data;
    EXPECT_EQ(FM::ReadFileToWCStMemObj(FM::WCStPath("/dev/zero"), data), eFMIsNotAFile);
    EXPECT_EQ(data.GetSize(), 0u);
    FM::WCStFileRead device(FM::WCStPath("/dev/zero"));
    ASSERT_TRUE(device.IsValid()) << "a device may still be opened and read piecemeal";
    EXPECT_EQ(device.ReadToStdString(text), eFMIsNotAFile);
    EXPECT_EQ(text, "untouched");
}

TEST_F(WCStFileTest, TempFileGoesAwayUnlessKeptOrMoved) {
    fs::path made;
    {
        FM::WCStTempFile temp(PathOf(m_dir.path()));
        ASSERT_TRUE(temp.IsValid());
        made = FM::BoostPath(temp.GetPath()).string();
        EXPECT_EQ(made.parent_path(), m_dir.path());
        EXPECT_TRUE(fs::exists(made));
    }
    EXPECT_FALSE(fs::exists(made));
    {
        FM::WCStTempFile temp(PathOf(At("beside.txt")));
        temp.WriteFromString("payload");
        EXPECT_EQ(temp.MoveTo(PathOf(At("final.txt"))), eNoErr);
    }
    EXPECT_EQ(ReadText(At("final.txt")), "payload");
    EXPECT_EQ(CountEntries(m_dir.path()), 1u);
}

TEST_F(WCStFileTest, TempFileWithoutPlaceUsesTheTemporaryFolder) {
    mirel_test::WCTempDir tmp;
    {
        mirel_test::WCTestHome home; // restores TMPDIR
        setenv("TMPDIR", tmp.path().c_str(), 1);
        FM::WCStTempFile temp;
        ASSERT_TRUE(temp.IsValid());
        EXPECT_TRUE(FM::WCStPath(tmp.path().string()).IsPathContained(temp.GetPath()));
    }
    EXPECT_EQ(CountEntries(tmp.path()), 0u);
}

TEST_F(WCStFileTest, OpenFileFunctionsRoundTrip) {
    FM::WTOpenFileType file = FM::kNoOpenFile;
    ASSERT_EQ(FM::CreateAFile(PathOf(At("deep/h.bin")), FM::eFMCreateAlways,
                              FM::eFMReadWritePermission, file),
              eNoErr);
    std::uint64_t done = 0;
    EXPECT_EQ(FM::WriteToFile(file, "abcdef", 6, done), eNoErr);
    EXPECT_EQ(done, 6u);
    EXPECT_EQ(FM::FlushFileBuffers(file), eNoErr);
    EXPECT_EQ(FM::SetFileCursor(file, -2, FM::eFMFromEnd), eNoErr);
    std::uint64_t at = 0;
    EXPECT_EQ(FM::GetFileCursor(file, at), eNoErr);
    EXPECT_EQ(at, 4u);
    char tail[8] = {};
    EXPECT_EQ(FM::ReadFromFile(file, tail, sizeof(tail), done), eNoErr);
    EXPECT_EQ(done, 2u);
    EXPECT_EQ(std::string(tail, 2), "ef");
    EXPECT_EQ(FM::SetFileSize(file, 3), eNoErr);
    std::uint64_t size = 0;
    EXPECT_EQ(FM::GetFileSizeFromOpenFileRef(file, size), eNoErr);
    EXPECT_EQ(size, 3u);
    Utils::WCStMemObj whole;
    EXPECT_EQ(FM::ReadTheWholeFile(file, whole), eNoErr);
    EXPECT_EQ(std::string(static_cast<char const *>(whole.GetPtr()), whole.GetSize()), "abc");
    EXPECT_EQ(FM::CloseFile(file), eNoErr);
    EXPECT_EQ(file, FM::kNoOpenFile);

    EXPECT_EQ(FM::CloseFile(file), eFMIllegalOpenFileRef);
    EXPECT_EQ(FM::WriteToFile(file, "x", 1, done), eFMIllegalOpenFileRef);
    EXPECT_EQ(FM::SetFileCursor(file, 0, FM::eFMFromStart), eFMIllegalOpenFileRef);
    EXPECT_EQ(FM::OpenFile(PathOf(At("nothing")), FM::eFMReadPermission, file), eFMFileNotFound);
    EXPECT_EQ(
        FM::CreateAFile(PathOf(At("deep/h.bin")), FM::eFMCreateNew, FM::eFMWritePermission, file),
        eFMFileAllreadyExists);

    ASSERT_EQ(FM::OpenFile(PathOf(At("deep/h.bin")), FM::eFMReadPermission, file), eNoErr);
    EXPECT_EQ(FM::SetFileCursor(file, -10, FM::eFMFromStart), eFMWrongParameters);
    EXPECT_NE(FM::WriteToFile(file, "x", 1, done), eNoErr);
    FM::CloseFile(file);

    std::string text;
    EXPECT_EQ(FM::ReadTheWholeFile(PathOf(At("deep/h.bin")), text), eNoErr);
    EXPECT_EQ(text, "abc");
}

TEST_F(WCStFileTest, ReadsFilesThatReportNoSize) {
    // Special files report size 0 yet have contents; they must still be read to the end.
    std::string text;
    ASSERT_EQ(FM::ReadTheWholeFile(FM::WCStPath("/proc/self/status"), text), eNoErr);
    EXPECT_NE(text.find("Name:"), std::string::npos);
}

} // namespace
