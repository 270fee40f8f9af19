#include "files/WUOpenFile.h"

#include <new>

#include <boost/filesystem/operations.hpp>

#include "core/WCStMemObj.h"
#include "files/WCStPath.h"
#include "files/WTPathType.h"
#include "files/WUFileSystemObjects.h"
#include "files/WUPathAccess.h"
#include "files/WUReadAll.h"
#include "files/linux/WUPlatformFiles.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

namespace bfs = boost::filesystem;

WTErr CreateAFile(WCStPath const &path, WECreateFlags flags, WEPermitions permissions,
                  WTOpenFileType &outFile, int mode) {
    outFile = kNoOpenFile;
    if (!path.IsValid())
        return path.GetError();
    Platform::WEDisposition disposition;
    switch (flags) {
    case eFMCreateAlways: disposition = Platform::WEDisposition::eCreateAlways; break;
    case eFMCreateAppend: disposition = Platform::WEDisposition::eOpenOrCreate; break;
    case eFMCreateNew: disposition = Platform::WEDisposition::eCreateNew; break;
    default: return eFMWrongParameters;
    }
    if (path.IsFolder())
        return eFMIsAFolder;
    WTErr error = CreateFolder(path.GetParent());
    if (error != eNoErr)
        return error;
    error = Platform::OpenFile(BoostPath(path).c_str(), permissions | eFMWritePermission,
                               disposition, mode, outFile);
    if (error != eNoErr)
        return error;
    if (flags == eFMCreateAppend) {
        std::uint64_t end = 0;
        error = Platform::SeekFile(outFile, 0, eFMFromEnd, end);
        if (error != eNoErr)
            Platform::CloseFile(outFile);
    }
    return error;
}

WTErr OpenFile(WCStPath const &path, WEPermitions permissions, WTOpenFileType &outFile) {
    outFile = kNoOpenFile;
    if (!path.IsValid())
        return path.GetError();
    if ((permissions & eFMReadWritePermission) == 0)
        return eFMWrongParameters;
    return Platform::OpenFile(BoostPath(path).c_str(), permissions,
                              Platform::WEDisposition::eOpenExisting, 0, outFile);
}

WTErr CloseFile(WTOpenFileType &ioFile) {
    return Platform::CloseFile(ioFile);
}

WTErr ReadFromFile(WTOpenFileType file, void *buffer, std::uint64_t size, std::uint64_t &outRead) {
    return Platform::ReadFile(file, buffer, size, outRead);
}

WTErr WriteToFile(WTOpenFileType file, void const *data, std::uint64_t size,
                  std::uint64_t &outWritten) {
    return Platform::WriteFile(file, data, size, outWritten);
}

WTErr SetFileCursor(WTOpenFileType file, std::int64_t offset, WEPositionMode mode) {
    std::uint64_t ignored = 0;
    return Platform::SeekFile(file, offset, mode, ignored);
}

WTErr GetFileCursor(WTOpenFileType file, std::uint64_t &outOffset) {
    return Platform::SeekFile(file, 0, eFMFromCurrent, outOffset);
}

WTErr SetFileSize(WTOpenFileType file, std::uint64_t size) {
    return Platform::TruncateFile(file, size);
}

WTErr FlushFileBuffers(WTOpenFileType file) {
    return Platform::SyncFile(file);
}

WTErr GetFileSizeFromOpenFileRef(WTOpenFileType file, std::uint64_t &outSize) {
    return Platform::GetOpenFileSize(file, outSize);
}

WTErr ReadTheWholeFile(WTOpenFileType file, Utils::WCStMemObj &outData) {
    WCMemObjSink sink(outData);
    return ReadAllFromStart(file, sink);
}

WTErr ReadTheWholeFile(WTOpenFileType file, std::string &outData) {
    WCStringSink sink(outData);
    return ReadAllFromStart(file, sink);
}

WTErr ReadTheWholeFile(WCStPath const &path, std::string &outData) {
    WCStringSink sink(outData);
    return ReadAllOfFile(path, sink);
}

WTErr CreateTempFile(WCStPath const &place, WCStPath &outPath, WTOpenFileType &outFile,
                     char const *prefix, int mode) {
    outFile = kNoOpenFile;
    try {
        std::string folder;
        if (!place.IsValid())
            folder = Platform::TemporaryFolder();
        else if (place.IsFolder())
            folder = BoostPath(place).native();
        else
            folder = BoostPath(place).parent_path().native();
        if (folder.empty())
            folder = ".";
        std::string made;
        WTErr const error = Platform::CreateUniqueFile(folder, prefix != nullptr ? prefix : "",
                                                       mode, made, outFile);
        if (error != eNoErr)
            return error;
        WUPathAccess::Assign(outPath, bfs::path(std::move(made)));
        return eNoErr;
    } catch (std::bad_alloc const &) {
        if (outFile != kNoOpenFile)
            Platform::CloseFile(outFile);
        return eMemOutOfMemory;
    }
}

} // namespace FM
MIREL_NAMESPACE_END
