#include "files/linux/WUPlatformFiles.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

MIREL_NAMESPACE_BEGIN
namespace FM {
namespace Platform {

namespace {

int AsFd(WTOpenFileType file) noexcept {
    return static_cast<int>(file);
}

bool IsAbsolute(char const *text) noexcept {
    return text != nullptr && text[0] == '/';
}

} // namespace

WTErr ErrnoToFMError(int errnoValue, WTErr fallback) noexcept {
    switch (errnoValue) {
    case 0: return eNoErr;
    case ENOENT: return eFMFileNotFound;
    case ENOTDIR: return eFMIsNotAFolder;
    case EISDIR: return eFMIsAFolder;
    case EEXIST: return eFMFileAllreadyExists;
    case EACCES:
    case EPERM:
    case EROFS: return eFMPermissionErr;
    case EBUSY:
    case ETXTBSY: return eFMBusyErr;
    case ENOSPC:
    case EDQUOT: return eFMDiskFull;
    case ENAMETOOLONG: return eFMPathTooLong;
    case EMFILE:
    case ENFILE: return eFMTooManyOpenFiles;
    case ELOOP: return eFMTooManySymlinks;
    case ENOTEMPTY: return eFMFileNotEmpty;
    case EIO: return eFMIOError;
    case EBADF: return eFMIllegalOpenFileRef;
    case ENOMEM: return eMemOutOfMemory;
    case EFBIG: return eFMFileSizeTooBig;
    case ENODEV:
    case ENXIO: return eFMNoSuchVolume;
    default: return fallback;
    }
}

WTErr OpenFile(char const *path, int permissions, WEDisposition disposition, int mode,
               WTOpenFileType &outFile) noexcept {
    outFile = kNoOpenFile;
    if (path == nullptr || path[0] == 0)
        return eFMIllegalPathRef;
    int flags = O_CLOEXEC;
    bool const wantRead = (permissions & eFMReadPermission) != 0;
    bool const wantWrite = (permissions & eFMWritePermission) != 0;
    if (wantRead && wantWrite)
        flags |= O_RDWR;
    else if (wantWrite)
        flags |= O_WRONLY;
    else
        flags |= O_RDONLY;
    switch (disposition) {
    case WEDisposition::eOpenExisting: break;
    case WEDisposition::eCreateAlways: flags |= O_CREAT | O_TRUNC; break;
    case WEDisposition::eOpenOrCreate: flags |= O_CREAT; break;
    case WEDisposition::eCreateNew: flags |= O_CREAT | O_EXCL; break;
    }
    if ((flags & O_CREAT) && !wantWrite)
        return eFMWrongParameters;
    // Without O_NONBLOCK, opening a pipe waits for a writer (or reader) that may never come.
    int fd;
    do {
        fd = ::open(path, flags | O_NONBLOCK, static_cast<mode_t>(mode));
    } while (fd < 0 && errno == EINTR);
    if (fd < 0) {
        int const failure = errno;
        struct stat named {};
        // A pipe opened for writing with no reader, or a socket, fails with ENXIO: no file either.
        if (failure == ENXIO && ::stat(path, &named) == 0 &&
            (S_ISFIFO(named.st_mode) || S_ISSOCK(named.st_mode)))
            return eFMIsNotAFile;
        return ErrnoToFMError(failure, eFMOpenFailed);
    }
    // open() succeeds on a folder for reading; callers asked for a file. A pipe or a socket has
    // no contents to seek in or to read to an end.
    struct stat info {};
    if (::fstat(fd, &info) == 0) {
        if (S_ISDIR(info.st_mode) || S_ISFIFO(info.st_mode) || S_ISSOCK(info.st_mode)) {
            ::close(fd);
            return S_ISDIR(info.st_mode) ? eFMIsAFolder : eFMIsNotAFile;
        }
    }
    int const status = ::fcntl(fd, F_GETFL);
    if (status == -1 || ::fcntl(fd, F_SETFL, status & ~O_NONBLOCK) == -1) {
        int const failure = errno;
        ::close(fd);
        return ErrnoToFMError(failure, eFMOpenFailed);
    }
    outFile = fd;
    return eNoErr;
}

WTErr CloseFile(WTOpenFileType &ioFile) noexcept {
    if (ioFile == kNoOpenFile)
        return eFMIllegalOpenFileRef;
    int const fd = AsFd(ioFile);
    ioFile = kNoOpenFile;
    // close() must not be retried on EINTR: the descriptor is gone either way.
    if (::close(fd) != 0 && errno != EINTR)
        return ErrnoToFMError(errno, eFMIOError);
    return eNoErr;
}

WTErr ReadFile(WTOpenFileType file, void *buffer, std::uint64_t size,
               std::uint64_t &outRead) noexcept {
    outRead = 0;
    if (file == kNoOpenFile)
        return eFMIllegalOpenFileRef;
    if (size == 0)
        return eNoErr;
    if (buffer == nullptr)
        return eMemNullPointer;
    auto *cursor = static_cast<char *>(buffer);
    while (outRead < size) {
        std::uint64_t const chunk = std::min<std::uint64_t>(size - outRead, 1u << 30);
        ssize_t const got = ::read(AsFd(file), cursor + outRead, chunk);
        if (got < 0) {
            if (errno == EINTR)
                continue;
            return ErrnoToFMError(errno, eFMReadFailed);
        }
        if (got == 0)
            break;
        outRead += static_cast<std::uint64_t>(got);
    }
    return eNoErr;
}

WTErr WriteFile(WTOpenFileType file, void const *buffer, std::uint64_t size,
                std::uint64_t &outWritten) noexcept {
    outWritten = 0;
    if (file == kNoOpenFile)
        return eFMIllegalOpenFileRef;
    if (size == 0)
        return eNoErr;
    if (buffer == nullptr)
        return eMemNullPointer;
    auto const *cursor = static_cast<char const *>(buffer);
    while (outWritten < size) {
        std::uint64_t const chunk = std::min<std::uint64_t>(size - outWritten, 1u << 30);
        ssize_t const put = ::write(AsFd(file), cursor + outWritten, chunk);
        if (put < 0) {
            if (errno == EINTR)
                continue;
            return ErrnoToFMError(errno, eFMWriteFailed);
        }
        if (put == 0)
            return eFMWriteFailed;
        outWritten += static_cast<std::uint64_t>(put);
    }
    return eNoErr;
}

WTErr SeekFile(WTOpenFileType file, std::int64_t offset, WEPositionMode mode,
               std::uint64_t &outPosition) noexcept {
    outPosition = 0;
    if (file == kNoOpenFile)
        return eFMIllegalOpenFileRef;
    int whence;
    switch (mode) {
    case eFMFromStart: whence = SEEK_SET; break;
    case eFMFromCurrent: whence = SEEK_CUR; break;
    case eFMFromEnd: whence = SEEK_END; break;
    default: return eFMWrongParameters;
    }
    off_t const at = ::lseek(AsFd(file), static_cast<off_t>(offset), whence);
    if (at < 0)
        return errno == EINVAL ? eFMWrongParameters : ErrnoToFMError(errno, eFMIOError);
    outPosition = static_cast<std::uint64_t>(at);
    return eNoErr;
}

WTErr TruncateFile(WTOpenFileType file, std::uint64_t size) noexcept {
    if (file == kNoOpenFile)
        return eFMIllegalOpenFileRef;
    if (size > static_cast<std::uint64_t>(INT64_MAX))
        return eFMFileSizeTooBig;
    int result;
    do {
        result = ::ftruncate(AsFd(file), static_cast<off_t>(size));
    } while (result != 0 && errno == EINTR);
    if (result != 0)
        return errno == EINVAL ? eFMPermissionErr : ErrnoToFMError(errno, eFMWriteFailed);
    return eNoErr;
}

WTErr SyncFile(WTOpenFileType file) noexcept {
    if (file == kNoOpenFile)
        return eFMIllegalOpenFileRef;
    int result;
    do {
        result = ::fsync(AsFd(file));
    } while (result != 0 && errno == EINTR);
    // Pipes and some special files cannot be synced; there is nothing to lose there.
    if (result != 0 && errno != EINVAL && errno != EROFS)
        return ErrnoToFMError(errno, eFMWriteFailed);
    return eNoErr;
}

WTErr GetOpenFileSize(WTOpenFileType file, std::uint64_t &outSize) noexcept {
    outSize = 0;
    if (file == kNoOpenFile)
        return eFMIllegalOpenFileRef;
    struct stat info {};
    if (::fstat(AsFd(file), &info) != 0)
        return ErrnoToFMError(errno, eFMIOError);
    outSize = static_cast<std::uint64_t>(info.st_size);
    return eNoErr;
}

WTErr CheckPlainFile(WTOpenFileType file) noexcept {
    if (file == kNoOpenFile)
        return eFMIllegalOpenFileRef;
    struct stat info {};
    if (::fstat(AsFd(file), &info) != 0)
        return ErrnoToFMError(errno, eFMIOError);
    if (S_ISDIR(info.st_mode))
        return eFMIsAFolder;
    return S_ISREG(info.st_mode) ? eNoErr : eFMIsNotAFile;
}

WTErr CreateUniqueFile(std::string const &folder, std::string const &prefix, int mode,
                       std::string &outPath, WTOpenFileType &outFile) noexcept {
    outFile = kNoOpenFile;
    outPath.clear();
    try {
        static constexpr char kChars[] =
            "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        thread_local std::mt19937_64 generator{std::random_device{}()};
        std::string base = folder;
        if (base.empty())
            base = ".";
        if (base.back() != '/')
            base += '/';
        base += prefix;
        // A clash is rare; a hundred tries only fail when something else is wrong.
        for (int attempt = 0; attempt < 100; ++attempt) {
            std::string candidate = base;
            for (std::size_t i = 0; i < kUniqueNameChars; ++i)
                candidate += kChars[generator() % (sizeof(kChars) - 1)];
            int fd;
            do {
                fd = ::open(candidate.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC,
                            static_cast<mode_t>(mode));
            } while (fd < 0 && errno == EINTR);
            if (fd >= 0) {
                outFile = fd;
                outPath = std::move(candidate);
                return eNoErr;
            }
            if (errno != EEXIST)
                return ErrnoToFMError(errno, eFMCreateFailed);
        }
        return eFMCreateFailed;
    } catch (...) {
        return eMemOutOfMemory;
    }
}

WTErr ReplacedFileMode(char const *path, int &outMode) noexcept {
    outMode = -1;
    struct stat info {};
    if (path == nullptr || ::stat(path, &info) != 0 || !S_ISREG(info.st_mode))
        return eNoErr;
    // Renaming over a file needs no right on the file itself; asking keeps a read-only file safe
    // from a replacement, as writing it in place would.
    if (::access(path, W_OK) != 0)
        return errno == EACCES || errno == EPERM || errno == EROFS ? eFMPermissionErr : eNoErr;
    outMode = static_cast<int>(info.st_mode & 07777);
    return eNoErr;
}

WTErr SetOpenFileMode(WTOpenFileType file, int mode) noexcept {
    if (file == kNoOpenFile)
        return eFMIllegalOpenFileRef;
    if (::fchmod(AsFd(file), static_cast<mode_t>(mode)) != 0)
        return ErrnoToFMError(errno, eFMWriteFailed);
    return eNoErr;
}

std::string StagingPrefix(std::string_view leaf) {
    // A name as long as the system allows leaves no room for the dots and the random part.
    std::size_t const room = NAME_MAX - 2 - kUniqueNameChars;
    std::string prefix = ".";
    prefix += leaf.substr(0, room);
    prefix += '.';
    return prefix;
}

bool IsWritableByProcess(char const *path) noexcept {
    if (path == nullptr || path[0] == 0)
        return false;
    if (::access(path, W_OK) == 0)
        return true;
    if (errno != ENOENT)
        return false;
    try {
        std::string parent(path);
        while (parent.size() > 1 && parent.back() == '/')
            parent.pop_back();
        auto const slash = parent.rfind('/');
        if (slash == std::string::npos)
            parent = ".";
        else
            parent.resize(slash == 0 ? 1 : slash);
        return ::access(parent.c_str(), W_OK) == 0;
    } catch (...) {
        return false;
    }
}

bool HasNoWritePermission(char const *path) noexcept {
    struct stat info {};
    if (path == nullptr || ::stat(path, &info) != 0)
        return false;
    return (info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

std::string TemporaryFolder() {
    char const *value = std::getenv("TMPDIR");
    if (IsAbsolute(value))
        return value;
    return "/tmp";
}

std::string HomeFolder() {
    char const *value = std::getenv("HOME");
    if (IsAbsolute(value))
        return value;
    long bufferSize = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(bufferSize > 0 ? static_cast<std::size_t>(bufferSize) : 16384);
    struct passwd entry {};
    struct passwd *found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr && IsAbsolute(found->pw_dir))
        return found->pw_dir;
    return "/";
}

std::string CurrentFolder() {
    std::vector<char> buffer(PATH_MAX);
    for (;;) {
        if (::getcwd(buffer.data(), buffer.size()) != nullptr)
            return buffer.data();
        if (errno != ERANGE)
            return {};
        buffer.resize(buffer.size() * 2);
    }
}

} // namespace Platform
} // namespace FM
MIREL_NAMESPACE_END
