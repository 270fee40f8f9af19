#pragma once

#include <cstdint>
#include <string>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"
#include "core/WUValidatable.h"
#include "files/WCStPath.h"
#include "files/WTFileManagerTypes.h"

MIREL_NAMESPACE_BEGIN
namespace Utils {
class WCStConstMemObj;
class WCStMemObj;
} // namespace Utils
namespace FM {

// An open file held for a scope: the handle is closed when the object goes. Invalid with the
// code of the failed open (or eFMFileNotOpened when made empty); every operation on an invalid
// object answers that code. Movable, not copyable; one thread at a time. [any-thread]
class WCStFile : public WUValidatable {
public:
    WCStFile() noexcept;
    // Opens an existing file.
    WCStFile(WCStPath const &path, WEPermitions permissions);
    // Takes over an open handle (kNoOpenFile gives an empty object).
    explicit WCStFile(WTOpenFileType file) noexcept;
    WCStFile(WCStFile &&other) noexcept;
    WCStFile &operator=(WCStFile &&other) noexcept;
    WCStFile(WCStFile const &) = delete;
    WCStFile &operator=(WCStFile const &) = delete;
    ~WCStFile() override;

    WTOpenFileType GetOpenFileRef() const noexcept { return m_file; }
    // Hands the handle to the caller, who closes it; the object becomes empty.
    WTOpenFileType Release() noexcept;
    virtual int Close();

    int GetFileSize(std::uint64_t &outSize) const;
    int SetFileCursor(std::int64_t offset, WEPositionMode mode = eFMFromStart);
    int GetFileCursor(std::uint64_t &outOffset) const;
    int Flush();

protected:
    bool IsValidSelf() const override { return m_file != kNoOpenFile; }
    void Adopt(WTOpenFileType file) noexcept;
    void Fail(int error) const noexcept;
    // What an opening gave: its handle, or its code when it failed.
    void AdoptOpened(int error, WTOpenFileType file) noexcept;

    WTOpenFileType m_file;
};

// A file opened for reading. [any-thread]
class WCStFileRead : public WCStFile {
public:
    explicit WCStFileRead(WCStPath const &path);

    // Up to `size` bytes from the cursor; fewer only at the end.
    int Read(void *buffer, std::uint64_t size, std::uint64_t &outRead);
    // The whole file, from its start whatever the cursor.
    int ReadToStdString(std::string &outText);
    int ReadToWCStMemObj(Utils::WCStMemObj &outData);
};

// A file opened for reading and writing. The first failed write is remembered
// (GetFirstWriteError) so a replacing writer never commits a half-written file. [any-thread]
class WCStFileWrite : public WCStFile {
public:
    // Opens an existing file, cursor at the start.
    explicit WCStFileWrite(WCStPath const &path);

    int Write(void const *data, std::uint64_t size, std::uint64_t &outWritten);
    int Write(void const *data, std::uint64_t size);
    int SetFileSize(std::uint64_t size);
    int WriteFromString(std::string const &text);
    int WriteFromString(WCFixedStringBase const &text);
    int WriteFromString(char const *text);
    int WriteFromWCStMemObj(Utils::WCStConstMemObj const &data);
    int GetFirstWriteError() const noexcept { return m_firstWriteError; }

protected:
    WCStFileWrite() noexcept;
    int RecordWrite(int error) noexcept;

    int m_firstWriteError;
};

// Creates a file. With eFMCreateAlways and eFMCreateNew the bytes go to a new file beside the
// target, which takes the target's name only when the writer is closed without a failed write
// (Close, or the destructor when no exception is unwinding); so a failure leaves the old file
// whole, and eFMCreateNew never replaces a file that appeared meanwhile. eFMCreateAppend writes
// in place. Parent folders are made. `mode` is the POSIX permission (0644, 0666) of a new file,
// less the umask; a replaced file keeps its own, and one this process may not write is refused
// with eFMPermissionErr. [any-thread]
class WCStFileCreate : public WCStFileWrite {
public:
    WCStFileCreate(WCStPath const &path, WECreateFlags flags = eFMCreateAlways,
                   WEPermitions permissions = eFMReadWritePermission, int mode = 0644);
    ~WCStFileCreate() override;

    // Flushes, closes and puts the file in place; answers the first failure.
    int Close() override;
    // Drops what was written: the target stays as it was.
    void Abandon() noexcept;
    WCStPath const &GetPath() const noexcept { return m_target; }

private:
    int Commit();

    WCStPath m_target;
    WCStPath m_staging;
    WECreateFlags m_flags;
    int m_uncaughtAtStart;
};

// A new, empty file with a unique name, beside a path (in it when it is a folder) or in the
// temporary folder; removed with the object unless Keep or MoveTo was called. [any-thread]
class WCStTempFile : public WCStFileWrite {
public:
    WCStTempFile();
    explicit WCStTempFile(WCStPath const &place);
    ~WCStTempFile() override;

    WCStPath const &GetPath() const noexcept { return m_path; }
    // The file stays after the object.
    void Keep() noexcept { m_keep = true; }
    // Closes the file and renames it to `target` (same volume), replacing what is there.
    int MoveTo(WCStPath const &target);

private:
    WCStPath m_path;
    bool m_keep;
};

} // namespace FM
MIREL_NAMESPACE_END
