#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "core/MirelNamespace.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

// The only place where the XML layer touches the file system. Everything above it (the tree
// builder, the XML file, the pugi readers and writers) calls these few operations, so that the
// file layer can take them over without the rest of the layer changing. Errors are the codes of
// the file-manager band.
// [any-thread]; the functions share no state.

// The path type of the layer's file functions: a native path, UTF-8 on Linux.
using WTXMLPath = std::filesystem::path;

// 0 when `path` names an existing regular file (links followed); eFMFileNotFound when nothing is
// there, eFMIsAFolder for a folder, eFMIsNotAFile for anything else.
WTErr CheckIsFile(const WTXMLPath &path) noexcept;

// Size of an existing regular file, or the code of CheckIsFile.
WTErr GetFileSize(const WTXMLPath &path, std::uint64_t &size) noexcept;

// Reads the whole file into `out` (replacing its content). On failure `out` is left as it was.
WTErr ReadWholeFile(const WTXMLPath &path, Utils::WCStMemObj &out) noexcept;

// Creates `folder` and every missing parent; 0 when it exists already.
WTErr CreateFolder(const WTXMLPath &folder) noexcept;

// The user's desktop folder: $XDG_DESKTOP_DIR, else $HOME/Desktop. eFMNoSuchSystemFolder when
// neither variable is set.
WTErr GetDesktopFolder(WTXMLPath &folder) noexcept;

// A file being written so that it appears complete or not at all: bytes go to a temporary file in
// the target's folder, which Commit moves over the target in one rename. An object destroyed
// without Commit removes the temporary file and leaves any earlier file at the path untouched.
// [any-thread] one object per thread.
class WCXMLWriteFile {
public:
    // Creates the temporary file with POSIX permission bits `mode` (420, rw-r--r--, by default).
    // Check GetError before writing.
    explicit WCXMLWriteFile(const WTXMLPath &path, unsigned int mode = 0644) noexcept;
    ~WCXMLWriteFile();
    WCXMLWriteFile(const WCXMLWriteFile &) = delete;
    WCXMLWriteFile &operator=(const WCXMLWriteFile &) = delete;

    WTErr GetError() const noexcept { return m_error; }

    // Writes up to `size` bytes and reports how many went out; the caller loops until all are.
    WTErr Write(const void *data, std::uint64_t size, std::uint64_t &written) noexcept;
    // Flushes to disk and renames the temporary file over the target.
    WTErr Commit() noexcept;

private:
    WTXMLPath m_target;
    std::string m_temporary;
    int m_fd = -1;
    WTErr m_error = eNoErr;
};

// The open-file type of AppendToOpenFile.
using WTOpenFileType = WCXMLWriteFile;

// Writes `size` bytes to `path` through a WCXMLWriteFile: all of them, or none.
WTErr WriteWholeFile(const WTXMLPath &path, const void *data, std::uint64_t size,
                     unsigned int mode = 0644) noexcept;

} // namespace XML

MIREL_NAMESPACE_END
