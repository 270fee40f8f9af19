#pragma once

#include <string>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"
#include "files/WTFileManagerTypes.h"

MIREL_NAMESPACE_BEGIN
namespace Utils {
class WCStConstMemObj;
class WCStMemObj;
} // namespace Utils
namespace FM {

class WCStPath;

// Free functions on file system objects named by paths. Each returns a code of the file band
// and throws nothing. Every function that replaces a file writes a new file beside it and renames
// it over the old one, so a failure leaves the old contents whole. [any-thread]

// Makes the folder with every missing level; an existing folder is success, a file in the way
// eFMIsAFile.
WTErr CreateFolder(WCStPath const &folder);
// A file, a link or an empty folder: eFMFileNotFound when missing, eFMFileNotEmpty for a folder
// with contents.
WTErr DeleteFileSystemObject(WCStPath const &path);
// The object and all it holds; links are removed, never followed.
WTErr DeleteFileSystemObjectRecursively(WCStPath const &path);
// Renames `from` to `to`, replacing a file at `to`; a file on another volume is copied first.
WTErr MoveFileSystemObject(WCStPath const &from, WCStPath const &to);
// Copies a file with its permissions; eFMDuplicateFailIfExists refuses an existing target, and a
// target this process may not write is eFMPermissionErr.
WTErr DuplicateFile(WCStPath const &from, WCStPath const &to,
                    WEDuplicateFlags flags = eFMDuplicateFailIfExists);
WTErr ReadFileToWCStMemObj(WCStPath const &path, Utils::WCStMemObj &outData);
// Replaces (or creates, with its folders) the file with the bytes of `data`.
WTErr WriteFileFromWCStMemObj(WCStPath const &path, Utils::WCStConstMemObj const &data,
                              int mode = 0644);
// Replaces (or creates, with its folders) the file with `size` bytes. A replaced file keeps its
// permissions (`mode` is for a new one); one this process may not write is eFMPermissionErr.
WTErr ReplaceFileContents(WCStPath const &path, void const *data, std::uint64_t size,
                          int mode = 0644);
// Makes `link` a symbolic link to `target` (kept as given, so relative targets stay relative).
WTErr CreateFileSystemLink(WCStPath const &target, WCStPath const &link);
// Whether the file is a shell link of the other desktop system: extension "lnk" and the link
// header. Such files are recognised so they can be skipped; they cannot be followed here.
bool IsWinShortcut(WCStPath const &path);
// Always eWinOnlyCode on this platform, with `outTarget` left alone.
WTErr ResolveWinShortcut(WCStPath const &shortcut, WCStPath &outTarget);
// The canonical form of a path: absolute, links resolved where they exist, no "." or "..".
// Paths of any length the system takes are kept whole; an empty result or one longer than the
// system's limit is eFMPathTooLong.
WTErr NormalizePathString(char const *text, std::string &outText);
WTErr NormalizePathString(char const *text, WCFixedStringBase &outText);
// Strips the long-path prefix "\\?\" (and "UNC\" after it, keeping a UNC path's leading
// separator) that texts from the other desktop system may carry; other texts are left alone.
void UnNormalizePathString(std::string &ioText);
void UnNormalizePathString(WCFixedStringBase &ioText);
// Whether the diagnostics switch `name` is on: a folder of that name under "Diagnostics" in the
// user's Mirel preferences. Switches are folders made by hand, so a shipped plug-in behaves
// differently only on a machine a developer set up for it.
bool IsExistSpecificDiagnosticsFolder(char const *name);

} // namespace FM
MIREL_NAMESPACE_END
