#include "files/WUFileSystemObjects.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <new>

#include <boost/filesystem/operations.hpp>

#include "core/WCStMemObj.h"
#include "core/WUAssert.h"
#include "files/WCStPath.h"
#include "files/WTPathType.h"
#include "files/WUOpenFile.h"
#include "files/WUPathAccess.h"
#include "files/WUReadAll.h"
#include "files/linux/WUPlatformFiles.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

namespace bfs = boost::filesystem;

namespace {

// Writes `size` bytes to a new file beside `target`, then renames it over `target`. The new
// file is removed on every failure, so `target` is either the old file or the new one. With
// `keepTargetMode`, a file already at `target` keeps its permissions and, when this process may
// not write it, stays as it is (eFMPermissionErr); `mode` is for a new file only.
WTErr ReplaceWithBytes(bfs::path const &target, void const *data, std::uint64_t size, int mode,
                       bool keepTargetMode) {
    int oldMode = -1;
    if (keepTargetMode) {
        WTErr const refused = Platform::ReplacedFileMode(target.c_str(), oldMode);
        if (refused != eNoErr)
            return refused;
    }
    std::string made;
    WTOpenFileType file = kNoOpenFile;
    std::string folder = target.parent_path().native();
    if (folder.empty())
        folder = ".";
    WTErr error = Platform::CreateUniqueFile(
        folder, Platform::StagingPrefix(target.filename().native()), mode, made, file);
    if (error != eNoErr)
        return error == eFMFileNotFound ? eFMCreateFailed : error;
    if (oldMode >= 0)
        error = Platform::SetOpenFileMode(file, oldMode);
    std::uint64_t written = 0;
    if (error == eNoErr)
        error = Platform::WriteFile(file, data, size, written);
    if (error == eNoErr)
        error = Platform::SyncFile(file);
    WTErr const closing = Platform::CloseFile(file);
    if (error == eNoErr)
        error = closing;
    if (error == eNoErr) {
        boost::system::error_code failure;
        bfs::rename(made, target, failure);
        if (failure)
            error = FMErrorFromBoost(failure, eFMWriteFailed);
    }
    if (error != eNoErr) {
        boost::system::error_code ignored;
        bfs::remove(made, ignored);
    }
    return error;
}

WTErr CopyFileBytes(bfs::path const &from, bfs::path const &to, bool replace) {
    boost::system::error_code failure;
    bfs::file_status const status = bfs::status(from, failure);
    if (failure)
        return FMErrorFromBoost(failure, eFMReadFailed);
    if (bfs::is_directory(status))
        return eFMIsAFolder;
    if (!bfs::is_regular_file(status))
        return eFMIsNotAFile;
    bfs::file_status const targetStatus = bfs::status(to, failure);
    if (bfs::is_directory(targetStatus))
        return eFMIsAFolder;
    if (bfs::exists(targetStatus) && !replace)
        return eFMFileAllreadyExists;
    std::string bytes;
    WTOpenFileType file = kNoOpenFile;
    WTErr error = Platform::OpenFile(from.c_str(), eFMReadPermission,
                                     Platform::WEDisposition::eOpenExisting, 0, file);
    if (error != eNoErr)
        return error;
    WCStringSink sink(bytes);
    error = ReadAllFromStart(file, sink);
    Platform::CloseFile(file);
    if (error != eNoErr)
        return error;
    int const mode = static_cast<int>(status.permissions() & bfs::perms_mask);
    return ReplaceWithBytes(to, bytes.data(), bytes.size(), mode, false);
}

// Removes what `path` names (a link, not its target); `recursive` empties a folder first.
WTErr Delete(WCStPath const &path, bool recursive) {
    if (!path.IsValid())
        return path.GetError();
    try {
        boost::system::error_code failure;
        bfs::path const &target = BoostPath(path);
        if (!bfs::exists(bfs::symlink_status(target, failure)))
            return eFMFileNotFound;
        if (recursive)
            bfs::remove_all(target, failure);
        else
            bfs::remove(target, failure);
        if (!failure)
            return eNoErr;
        // Some systems report a folder that is not empty as EEXIST rather than ENOTEMPTY.
        return !recursive && failure.value() == EEXIST ? eFMFileNotEmpty
                                                       : FMErrorFromBoost(failure, eFMDeleteFailed);
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    } catch (bfs::filesystem_error const &error) {
        return FMErrorFromBoost(error.code(), eFMDeleteFailed);
    }
}

} // namespace

WTErr CreateFolder(WCStPath const &folder) {
    if (!folder.IsValid())
        return folder.GetError();
    try {
        boost::system::error_code failure;
        bfs::path const &path = BoostPath(folder);
        bfs::file_status const status = bfs::status(path, failure);
        if (bfs::is_directory(status))
            return eNoErr;
        if (bfs::exists(status))
            return eFMIsAFile;
        bfs::create_directories(path, failure);
        if (failure) {
            // A file somewhere up the chain shows as "not a directory" or "exists".
            if (failure.value() == ENOTDIR || failure.value() == EEXIST)
                return eFMIsAFile;
            return FMErrorFromBoost(failure, eFMCreateFailed);
        }
        return eNoErr;
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    }
}

WTErr DeleteFileSystemObject(WCStPath const &path) {
    return Delete(path, false);
}

WTErr DeleteFileSystemObjectRecursively(WCStPath const &path) {
    return Delete(path, true);
}

WTErr MoveFileSystemObject(WCStPath const &from, WCStPath const &to) {
    if (!from.IsValid())
        return from.GetError();
    if (!to.IsValid())
        return to.GetError();
    try {
        boost::system::error_code failure;
        bfs::path const &source = BoostPath(from);
        bfs::path const &target = BoostPath(to);
        bfs::file_status const status = bfs::symlink_status(source, failure);
        if (!bfs::exists(status))
            return eFMFileNotFound;
        if (source == target)
            return eFMSamePath;
        bfs::rename(source, target, failure);
        if (!failure)
            return eNoErr;
        if (failure.value() != EXDEV || !bfs::is_regular_file(status))
            return FMErrorFromBoost(failure, eFMMoveFailed);
        // Another volume: copy whole, then remove the source.
        WTErr const error = CopyFileBytes(source, target, true);
        if (error != eNoErr)
            return error;
        bfs::remove(source, failure);
        return failure ? FMErrorFromBoost(failure, eFMMoveFailed) : eNoErr;
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    }
}

WTErr DuplicateFile(WCStPath const &from, WCStPath const &to, WEDuplicateFlags flags) {
    if (!from.IsValid())
        return from.GetError();
    if (!to.IsValid())
        return to.GetError();
    try {
        if (BoostPath(from) == BoostPath(to))
            return eFMSamePath;
        // A copy over a file is a write to it: one this process may not write stays.
        int targetMode = -1;
        WTErr const refused = flags == eFMDuplicateReplace
                                  ? Platform::ReplacedFileMode(BoostPath(to).c_str(), targetMode)
                                  : eNoErr;
        if (refused != eNoErr)
            return refused;
        return CopyFileBytes(BoostPath(from), BoostPath(to), flags == eFMDuplicateReplace);
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    }
}

WTErr ReadFileToWCStMemObj(WCStPath const &path, Utils::WCStMemObj &outData) {
    WCMemObjSink sink(outData);
    return ReadAllOfFile(path, sink);
}

WTErr WriteFileFromWCStMemObj(WCStPath const &path, Utils::WCStConstMemObj const &data, int mode) {
    return ReplaceFileContents(path, data.GetPtr(), data.GetSize(), mode);
}

WTErr ReplaceFileContents(WCStPath const &path, void const *data, std::uint64_t size, int mode) {
    if (!path.IsValid())
        return path.GetError();
    MIREL_ASSERT_RETURN(data != nullptr || size == 0, eMemNullPointer);
    try {
        if (path.IsFolder())
            return eFMIsAFolder;
        WTErr const error = CreateFolder(path.GetParent());
        if (error != eNoErr)
            return error;
        return ReplaceWithBytes(BoostPath(path), data, size, mode, true);
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    }
}

WTErr CreateFileSystemLink(WCStPath const &target, WCStPath const &link) {
    if (!target.IsValid())
        return target.GetError();
    if (!link.IsValid())
        return link.GetError();
    boost::system::error_code failure;
    bfs::create_symlink(BoostPath(target), BoostPath(link), failure);
    return failure ? FMErrorFromBoost(failure, eFMCreateFailed) : eNoErr;
}

bool IsWinShortcut(WCStPath const &path) {
    if (!path.IsValid() || path.GetExtension().case_insensitive_compare("lnk") != 0)
        return false;
    // A shell link starts with its header size, 0x4C, and the link class identifier.
    static constexpr unsigned char kHeader[] = {0x4C, 0x00, 0x00, 0x00, 0x01, 0x14, 0x02,
                                                0x00, 0x00, 0x00, 0x00, 0x00, 0xC0, 0x00,
                                                0x00, 0x00, 0x00, 0x00, 0x00, 0x46};
    WTOpenFileType file = kNoOpenFile;
    if (OpenFile(path, eFMReadPermission, file) != eNoErr)
        return false;
    unsigned char header[sizeof(kHeader)] = {};
    std::uint64_t got = 0;
    WTErr const error = ReadFromFile(file, header, sizeof(header), got);
    CloseFile(file);
    return error == eNoErr && got == sizeof(header) &&
           std::equal(header, header + sizeof(header), kHeader);
}

WTErr ResolveWinShortcut(WCStPath const &shortcut, WCStPath &outTarget) {
    return eWinOnlyCode;
}

WTErr NormalizePathString(char const *text, std::string &outText) {
    outText.clear();
    if (text == nullptr || text[0] == 0)
        return eFMPathTooShort;
    try {
        boost::system::error_code failure;
        bfs::path normal = bfs::weakly_canonical(bfs::absolute(bfs::path(text)), failure);
        if (failure)
            return FMErrorFromBoost(failure, eFMPathTooLong);
        std::string result = normal.lexically_normal().native();
        while (result.size() > 1 && result.back() == '/')
            result.pop_back();
        if (result.empty() || result.size() >= PATH_MAX)
            return eFMPathTooLong;
        outText = std::move(result);
        return eNoErr;
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    } catch (bfs::filesystem_error const &error) {
        return FMErrorFromBoost(error.code(), eFMPathTooLong);
    }
}

WTErr NormalizePathString(char const *text, WCFixedStringBase &outText) {
    outText.clear();
    std::string normal;
    WTErr const error = NormalizePathString(text, normal);
    if (error != eNoErr)
        return error;
    if (normal.size() > outText.capacity())
        return eFMPathTooLong;
    outText.assign(normal.data(), normal.size());
    return eNoErr;
}

void UnNormalizePathString(std::string &ioText) {
    static constexpr std::string_view kLong = "\\\\?\\";
    static constexpr std::string_view kUNC = "UNC\\";
    if (ioText.compare(0, kLong.size(), kLong) != 0)
        return;
    if (ioText.compare(kLong.size(), kUNC.size(), kUNC) == 0)
        ioText.replace(0, kLong.size() + kUNC.size(), "\\\\");
    else
        ioText.erase(0, kLong.size());
}

void UnNormalizePathString(WCFixedStringBase &ioText) {
    std::string text(ioText.data(), ioText.size());
    UnNormalizePathString(text);
    ioText.assign(text.data(), text.size());
}

bool IsExistSpecificDiagnosticsFolder(char const *name) {
    if (name == nullptr || *name == '\0')
        return false;
    WCStPath const diagnostics(eUserDomain, eMirelPreferencesFolder, "Diagnostics");
    return diagnostics.IsValid() && WCStPath(diagnostics, name).IsFolder();
}

} // namespace FM
MIREL_NAMESPACE_END
