#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "files/WTFileManagerTypes.h"

MIREL_NAMESPACE_BEGIN
namespace FM {
namespace Platform {

// The few file calls the file manager needs below boost::filesystem: descriptors, exact permission
// tests, unique files and links. Every function answers a code of the -1000s band, never throws,
// and retries calls interrupted by signals. [any-thread]

enum class WEDisposition {
    eOpenExisting, // the file must exist
    eCreateAlways, // create or truncate
    eOpenOrCreate, // keep the contents when it exists
    eCreateNew     // fail with eFMFileAllreadyExists when it exists
};

// Maps errno to the most specific code of the file band, or `fallback` when none fits.
WTErr ErrnoToFMError(int errnoValue, WTErr fallback) noexcept;

WTErr OpenFile(char const *path, int permissions, WEDisposition disposition, int mode,
               WTOpenFileType &outFile) noexcept;
WTErr CloseFile(WTOpenFileType &ioFile) noexcept;
// Reads until `size` bytes are in or the end of the file is reached.
WTErr ReadFile(WTOpenFileType file, void *buffer, std::uint64_t size,
               std::uint64_t &outRead) noexcept;
// Writes until every byte is out or the system refuses.
WTErr WriteFile(WTOpenFileType file, void const *buffer, std::uint64_t size,
                std::uint64_t &outWritten) noexcept;
WTErr SeekFile(WTOpenFileType file, std::int64_t offset, WEPositionMode mode,
               std::uint64_t &outPosition) noexcept;
WTErr TruncateFile(WTOpenFileType file, std::uint64_t size) noexcept;
WTErr SyncFile(WTOpenFileType file) noexcept;
WTErr GetOpenFileSize(WTOpenFileType file, std::uint64_t &outSize) noexcept;
// eNoErr for a regular file; eFMIsNotAFile for a device, pipe or socket, eFMIsAFolder for a folder.
WTErr CheckPlainFile(WTOpenFileType file) noexcept;

// Creates a new file, never an existing one, in `folder` with a name of `prefix` and
// kUniqueNameChars random characters, opened for reading and writing with `mode` (less the umask).
inline constexpr std::size_t kUniqueNameChars = 10;
WTErr CreateUniqueFile(std::string const &folder, std::string const &prefix, int mode,
                       std::string &outPath, WTOpenFileType &outFile) noexcept;
// For a file about to be replaced by another written beside it: eFMPermissionErr when this process
// may not write it, else its permission bits in `outMode`, or -1 when there is no file there yet.
WTErr ReplacedFileMode(char const *path, int &outMode) noexcept;
// Sets the permission bits of an open file exactly, the umask aside.
WTErr SetOpenFileMode(WTOpenFileType file, int mode) noexcept;
// The prefix of a hidden file written beside `leaf` and then renamed over it: "." + leaf + ".",
// with the leaf cut so that the unique name stays within the system's limit for one name.
std::string StagingPrefix(std::string_view leaf);

// Whether this process may write the object (or, for a missing object, create it in its folder).
bool IsWritableByProcess(char const *path) noexcept;
// Whether the object carries no write permission at all: the analogue of a locked file.
bool HasNoWritePermission(char const *path) noexcept;

// The folder for temporary files: $TMPDIR when it is an absolute path, else "/tmp".
std::string TemporaryFolder();
// The user's home: $HOME when absolute, else the password database.
std::string HomeFolder();
// The process's working folder, or empty when it has gone.
std::string CurrentFolder();

} // namespace Platform
} // namespace FM
MIREL_NAMESPACE_END
