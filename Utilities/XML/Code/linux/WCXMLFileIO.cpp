// POSIX implementation of the XML layer's file seam.
#include "Utilities/XML/Code/WCXMLFileIO.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

MIREL_NAMESPACE_BEGIN

namespace XML {

namespace {

// The codes of the file-manager band for the errno values a file operation meets; anything else
// is `fallback`, the code of the operation that failed.
WTErr FileError(int error, WTErr fallback) noexcept {
    switch (error) {
    case ENOENT:
    case ENOTDIR: return eFMFileNotFound;
    case EACCES:
    case EPERM:
    case EROFS: return eFMPermissionErr;
    case EISDIR: return eFMIsAFolder;
    case ENOSPC:
    case EDQUOT: return eFMDiskFull;
    case ENAMETOOLONG: return eFMPathTooLong;
    case EMFILE:
    case ENFILE: return eFMTooManyOpenFiles;
    case ELOOP: return eFMTooManySymlinks;
    case ENOMEM: return eMemOutOfMemory;
    default: return fallback;
    }
}

WTErr StatFile(const WTXMLPath &path, struct stat &info) noexcept {
    if (path.empty())
        return eFMFileNotFound;
    if (::stat(path.c_str(), &info) != 0)
        return FileError(errno, eFMFileNotFound);
    if (S_ISDIR(info.st_mode))
        return eFMIsAFolder;
    if (!S_ISREG(info.st_mode))
        return eFMIsNotAFile;
    return eNoErr;
}

class WCFd {
public:
    explicit WCFd(int fd) noexcept : m_fd(fd) {}
    ~WCFd() {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    WCFd(const WCFd &) = delete;
    WCFd &operator=(const WCFd &) = delete;
    int get() const noexcept { return m_fd; }

private:
    int m_fd;
};

} // namespace

WTErr CheckIsFile(const WTXMLPath &path) noexcept {
    struct stat info {};
    return StatFile(path, info);
}

WTErr GetFileSize(const WTXMLPath &path, std::uint64_t &size) noexcept {
    struct stat info {};
    const WTErr err = StatFile(path, info);
    if (err == eNoErr)
        size = static_cast<std::uint64_t>(info.st_size);
    return err;
}

WTErr ReadWholeFile(const WTXMLPath &path, Utils::WCStMemObj &out) noexcept {
    struct stat info {};
    WTErr err = StatFile(path, info);
    if (err != eNoErr)
        return err;
    WCFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (fd.get() < 0)
        return FileError(errno, eFMOpenFailed);
    // The size is only a hint: the file may grow or shrink while it is read.
    Utils::WCStMemObj content;
    err = content.ReservePtr(static_cast<std::uint64_t>(info.st_size) + 1);
    if (err != eNoErr)
        return err;
    for (;;) {
        if (content.GetCapacity() == content.GetSize()) {
            err = content.ReserveHeadroom(content.GetSize() + 4096);
            if (err != eNoErr)
                return err;
        }
        const std::uint64_t room = content.GetCapacity() - content.GetSize();
        char *const target = static_cast<char *>(content.GetPtr()) + content.GetSize();
        const ssize_t got = ::read(fd.get(), target, room);
        if (got < 0) {
            if (errno == EINTR)
                continue;
            return FileError(errno, eFMReadFailed);
        }
        if (got == 0)
            break;
        content.ResizePtr(content.GetSize() + static_cast<std::uint64_t>(got));
    }
    out.TakeOver(content);
    return eNoErr;
}

WTErr CreateFolder(const WTXMLPath &folder) noexcept {
    if (folder.empty())
        return eFMWrongParameters;
    std::error_code ec;
    std::filesystem::create_directories(folder, ec);
    if (ec)
        return FileError(ec.value(), eFMCreateFailed);
    if (!std::filesystem::is_directory(folder, ec))
        return eFMIsNotAFolder;
    return eNoErr;
}

WTErr GetDesktopFolder(WTXMLPath &folder) noexcept {
    if (const char *desktop = std::getenv("XDG_DESKTOP_DIR"); desktop != nullptr && *desktop) {
        folder = desktop;
        return eNoErr;
    }
    if (const char *home = std::getenv("HOME"); home != nullptr && *home) {
        folder = WTXMLPath(home) / "Desktop";
        return eNoErr;
    }
    return eFMNoSuchSystemFolder;
}

WCXMLWriteFile::WCXMLWriteFile(const WTXMLPath &path, unsigned int mode) noexcept : m_target(path) {
    if (path.empty() || !path.has_filename()) {
        m_error = eFMWrongParameters;
        return;
    }
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode)) {
        m_error = eFMIsAFolder;
        return;
    }
    // mkstemp beside the target, so the final rename never crosses file systems.
    m_temporary = path.string() + ".tmp-XXXXXX";
    std::vector<char> pattern(m_temporary.begin(), m_temporary.end());
    pattern.push_back('\0');
    m_fd = ::mkostemp(pattern.data(), O_CLOEXEC);
    if (m_fd < 0) {
        m_error = FileError(errno, eFMCreateFailed);
        m_temporary.clear();
        return;
    }
    m_temporary.assign(pattern.data());
    ::fchmod(m_fd, static_cast<mode_t>(mode));
}

WCXMLWriteFile::~WCXMLWriteFile() {
    if (m_fd >= 0)
        ::close(m_fd);
    if (!m_temporary.empty())
        ::unlink(m_temporary.c_str());
}

WTErr WCXMLWriteFile::Write(const void *data, std::uint64_t size, std::uint64_t &written) noexcept {
    written = 0;
    if (m_error != eNoErr)
        return m_error;
    if (m_fd < 0)
        return eFMFileNotOpened;
    if (size == 0)
        return eNoErr;
    for (;;) {
        const ssize_t put = ::write(m_fd, data, size);
        if (put < 0) {
            if (errno == EINTR)
                continue;
            m_error = FileError(errno, eFMWriteFailed);
            return m_error;
        }
        written = static_cast<std::uint64_t>(put);
        return eNoErr;
    }
}

WTErr WCXMLWriteFile::Commit() noexcept {
    if (m_error != eNoErr)
        return m_error;
    if (m_fd < 0)
        return eFMFileNotOpened;
    if (::fsync(m_fd) != 0)
        m_error = FileError(errno, eFMWriteFailed);
    if (::close(m_fd) != 0 && m_error == eNoErr)
        m_error = FileError(errno, eFMWriteFailed);
    m_fd = -1;
    if (m_error != eNoErr)
        return m_error;
    if (::rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        m_error = FileError(errno, eFMWriteFailed);
        return m_error;
    }
    m_temporary.clear();
    return eNoErr;
}

WTErr WriteWholeFile(const WTXMLPath &path, const void *data, std::uint64_t size,
                     unsigned int mode) noexcept {
    WCXMLWriteFile file(path, mode);
    if (file.GetError() != eNoErr)
        return file.GetError();
    const char *cursor = static_cast<const char *>(data);
    while (size > 0) {
        std::uint64_t written = 0;
        const WTErr err = file.Write(cursor, size, written);
        if (err != eNoErr)
            return err;
        if (written == 0)
            return eFMWriteFailed;
        cursor += written;
        size -= written;
    }
    return file.Commit();
}

} // namespace XML

MIREL_NAMESPACE_END
