#pragma once

#include <cstdint>
#include <string>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "files/WTFileManagerTypes.h"

MIREL_NAMESPACE_BEGIN
namespace Utils {
class WCStMemObj;
}
namespace FM {

class WCStPath;

// Free functions on open files. Each returns a code of the file band and throws nothing; a
// handle is kNoOpenFile when nothing is open, and every function refuses that handle with
// eFMIllegalOpenFileRef. A handle belongs to one thread at a time. [any-thread]

// Makes the parent folders, then opens the file for `permissions` (write is added, since the
// file may be created). eFMCreateAlways truncates in place, eFMCreateAppend keeps the contents
// and puts the cursor at the end, eFMCreateNew refuses an existing file. `mode` is the POSIX
// permission of a new file, less the umask.
WTErr CreateAFile(WCStPath const &path, WECreateFlags flags, WEPermitions permissions,
                  WTOpenFileType &outFile, int mode = 0644);
// Opens an existing file.
WTErr OpenFile(WCStPath const &path, WEPermitions permissions, WTOpenFileType &outFile);
WTErr CloseFile(WTOpenFileType &ioFile);
// Reads up to `size` bytes; fewer only at the end of the file.
WTErr ReadFromFile(WTOpenFileType file, void *buffer, std::uint64_t size, std::uint64_t &outRead);
// Writes all `size` bytes or fails.
WTErr WriteToFile(WTOpenFileType file, void const *data, std::uint64_t size,
                  std::uint64_t &outWritten);
WTErr SetFileCursor(WTOpenFileType file, std::int64_t offset, WEPositionMode mode);
WTErr GetFileCursor(WTOpenFileType file, std::uint64_t &outOffset);
WTErr SetFileSize(WTOpenFileType file, std::uint64_t size);
WTErr FlushFileBuffers(WTOpenFileType file);
WTErr GetFileSizeFromOpenFileRef(WTOpenFileType file, std::uint64_t &outSize);
// Reads from the start to the end, whatever the cursor was; the cursor ends at the end.
WTErr ReadTheWholeFile(WTOpenFileType file, Utils::WCStMemObj &outData);
WTErr ReadTheWholeFile(WTOpenFileType file, std::string &outData);
// Opens, reads whole and closes.
WTErr ReadTheWholeFile(WCStPath const &path, std::string &outData);
// A new, empty file with a unique name, open for reading and writing: in `place` when it is a
// folder, beside it when it is a file or missing, in the temporary folder when `place` is
// invalid. The name starts with `prefix`.
WTErr CreateTempFile(WCStPath const &place, WCStPath &outPath, WTOpenFileType &outFile,
                     char const *prefix = ".mirel-tmp-", int mode = 0600);

} // namespace FM
MIREL_NAMESPACE_END
