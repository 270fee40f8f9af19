#pragma once

#include <cstdint>
#include <filesystem>

#include "core/MirelNamespace.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

// The XML layer's few file operations, done by the file layer (FM). The layer's functions take
// std::filesystem paths; these hand them to FM and keep the codes the layer has always given
// where FM's answer differs (a file standing where a folder of the path should be is
// eFMFileNotFound when reading). Errors are the codes of the file-manager band.
// [any-thread]; the functions share no state.

// The path type of the layer's file functions: a native path, UTF-8 on Linux.
using WTXMLPath = std::filesystem::path;

// 0 when `path` names an existing regular file (links followed); eFMFileNotFound when nothing is
// there, eFMIsAFolder for a folder, eFMIsNotAFile for anything else.
WTErr CheckIsFile(const WTXMLPath &path);

// Reads the whole file into `out` (replacing its content), or the code of CheckIsFile. On failure
// `out` is left as it was.
WTErr ReadWholeFile(const WTXMLPath &path, Utils::WCStMemObj &out);

// Creates `folder` and every missing parent; 0 when it exists already, eFMIsAFile when a file is
// in the way.
WTErr CreateFolder(const WTXMLPath &folder);

// The user's desktop folder, by the file layer's rule: $XDG_DESKTOP_DIR when it is absolute, else
// Desktop in the home folder.
WTErr GetDesktopFolder(WTXMLPath &folder);

// Writes `size` bytes to `path`, all or nothing: a new file beside it is renamed over it once
// complete, so a failure leaves an earlier file whole and no temporary file behind. Missing
// folders are made; a file in their way gives eFMIsAFile. `mode` is the POSIX permission of the
// file, less the umask.
WTErr WriteWholeFile(const WTXMLPath &path, const void *data, std::uint64_t size,
                     unsigned int mode = 0644);

} // namespace XML

MIREL_NAMESPACE_END
