#include "files/WCStFile.h"

#include <cerrno>
#include <exception>
#include <new>

#include <boost/filesystem/operations.hpp>

#include "core/WCStMemObj.h"
#include "files/WTPathType.h"
#include "files/WUFileSystemObjects.h"
#include "files/WUOpenFile.h"
#include "files/WUPathAccess.h"
#include "files/linux/WUPlatformFiles.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

namespace bfs = boost::filesystem;

// ---- WCStFile

WCStFile::WCStFile() noexcept : WUValidatable(eFMFileNotOpened), m_file(kNoOpenFile) {}

WCStFile::WCStFile(WCStPath const &path, WEPermitions permissions) : WCStFile() {
    WTOpenFileType file = kNoOpenFile;
    WTErr const error = OpenFile(path, permissions, file);
    AdoptOpened(error, file);
}

WCStFile::WCStFile(WTOpenFileType file) noexcept : WCStFile() {
    Adopt(file);
}

WCStFile::WCStFile(WCStFile &&other) noexcept
    : WUValidatable(other.GetError()), m_file(other.m_file) {
    other.m_file = kNoOpenFile;
    other.SetError(eFMFileNotOpened);
}

WCStFile &WCStFile::operator=(WCStFile &&other) noexcept {
    if (this != &other) {
        if (m_file != kNoOpenFile)
            Platform::CloseFile(m_file);
        m_file = other.m_file;
        SetError(other.GetError());
        other.m_file = kNoOpenFile;
        other.SetError(eFMFileNotOpened);
    }
    return *this;
}

WCStFile::~WCStFile() {
    if (m_file != kNoOpenFile)
        Platform::CloseFile(m_file);
}

WTOpenFileType WCStFile::Release() noexcept {
    WTOpenFileType const file = m_file;
    m_file = kNoOpenFile;
    SetError(eFMFileNotOpened);
    return file;
}

int WCStFile::Close() {
    if (m_file == kNoOpenFile)
        return GetError();
    WTErr const error = Platform::CloseFile(m_file);
    SetError(eFMFileNotOpened);
    return error;
}

int WCStFile::GetFileSize(std::uint64_t &outSize) const {
    outSize = 0;
    if (!IsValid())
        return GetError();
    return Platform::GetOpenFileSize(m_file, outSize);
}

int WCStFile::SetFileCursor(std::int64_t offset, WEPositionMode mode) {
    if (!IsValid())
        return GetError();
    return FM::SetFileCursor(m_file, offset, mode);
}

int WCStFile::GetFileCursor(std::uint64_t &outOffset) const {
    outOffset = 0;
    if (!IsValid())
        return GetError();
    return FM::GetFileCursor(m_file, outOffset);
}

int WCStFile::Flush() {
    if (!IsValid())
        return GetError();
    return Platform::SyncFile(m_file);
}

void WCStFile::Adopt(WTOpenFileType file) noexcept {
    if (m_file != kNoOpenFile && m_file != file)
        Platform::CloseFile(m_file);
    m_file = file;
    SetError(file == kNoOpenFile ? eFMFileNotOpened : eNoErr);
}

void WCStFile::Fail(int error) const noexcept {
    SetError(error != eNoErr ? error : eGenericErr);
}

void WCStFile::AdoptOpened(int error, WTOpenFileType file) noexcept {
    if (error != eNoErr)
        Fail(error);
    else
        Adopt(file);
}

// ---- WCStFileRead

WCStFileRead::WCStFileRead(WCStPath const &path) : WCStFile(path, eFMReadPermission) {}

int WCStFileRead::Read(void *buffer, std::uint64_t size, std::uint64_t &outRead) {
    outRead = 0;
    if (!IsValid())
        return GetError();
    return Platform::ReadFile(m_file, buffer, size, outRead);
}

int WCStFileRead::ReadToStdString(std::string &outText) {
    if (!IsValid())
        return GetError();
    return ReadTheWholeFile(m_file, outText);
}

int WCStFileRead::ReadToWCStMemObj(Utils::WCStMemObj &outData) {
    if (!IsValid())
        return GetError();
    return ReadTheWholeFile(m_file, outData);
}

// ---- WCStFileWrite

WCStFileWrite::WCStFileWrite() noexcept : m_firstWriteError(eNoErr) {}

WCStFileWrite::WCStFileWrite(WCStPath const &path)
    : WCStFile(path, eFMReadWritePermission), m_firstWriteError(eNoErr) {}

int WCStFileWrite::RecordWrite(int error) noexcept {
    if (error != eNoErr && m_firstWriteError == eNoErr)
        m_firstWriteError = error;
    return error;
}

int WCStFileWrite::Write(void const *data, std::uint64_t size, std::uint64_t &outWritten) {
    outWritten = 0;
    if (!IsValid())
        return GetError();
    return RecordWrite(Platform::WriteFile(m_file, data, size, outWritten));
}

int WCStFileWrite::Write(void const *data, std::uint64_t size) {
    std::uint64_t written = 0;
    return Write(data, size, written);
}

int WCStFileWrite::SetFileSize(std::uint64_t size) {
    if (!IsValid())
        return GetError();
    return RecordWrite(Platform::TruncateFile(m_file, size));
}

int WCStFileWrite::WriteFromString(std::string const &text) {
    return Write(text.data(), text.size());
}

int WCStFileWrite::WriteFromString(WCFixedStringBase const &text) {
    return Write(text.data(), text.size());
}

int WCStFileWrite::WriteFromString(char const *text) {
    if (text == nullptr)
        return IsValid() ? eNoErr : GetError();
    return Write(text, std::char_traits<char>::length(text));
}

int WCStFileWrite::WriteFromWCStMemObj(Utils::WCStConstMemObj const &data) {
    return Write(data.GetPtr(), data.GetSize());
}

// ---- WCStFileCreate

WCStFileCreate::WCStFileCreate(WCStPath const &path, WECreateFlags flags, WEPermitions permissions,
                               int mode)
    : m_target(path), m_flags(flags), m_uncaughtAtStart(std::uncaught_exceptions()) {
    if (!path.IsValid()) {
        Fail(path.GetError());
        return;
    }
    WTOpenFileType file = kNoOpenFile;
    if (flags == eFMCreateAppend) {
        WTErr const error = CreateAFile(path, flags, permissions, file, mode);
        AdoptOpened(error, file);
        return;
    }
    if (flags != eFMCreateAlways && flags != eFMCreateNew) {
        Fail(eFMWrongParameters);
        return;
    }
    if (path.IsFolder()) {
        Fail(eFMIsAFolder);
        return;
    }
    if (flags == eFMCreateNew && path.IsExist()) {
        Fail(eFMFileAllreadyExists);
        return;
    }
    // A file already there keeps its permissions, and one this process may not write stays.
    int oldMode = -1;
    WTErr error = Platform::ReplacedFileMode(BoostPath(path).c_str(), oldMode);
    if (error == eNoErr)
        error = CreateFolder(path.GetParent());
    if (error == eNoErr) {
        std::string const prefix = Platform::StagingPrefix(BoostPath(path).filename().native());
        error = CreateTempFile(path, m_staging, file, prefix.c_str(), mode);
    }
    if (error == eNoErr && oldMode >= 0)
        error = Platform::SetOpenFileMode(file, oldMode);
    if (error != eNoErr && file != kNoOpenFile) {
        Platform::CloseFile(file);
        Abandon();
    }
    AdoptOpened(error, file);
}

WCStFileCreate::~WCStFileCreate() {
    if (std::uncaught_exceptions() > m_uncaughtAtStart)
        Abandon();
    else
        Commit();
}

int WCStFileCreate::Close() {
    return Commit();
}

void WCStFileCreate::Abandon() noexcept {
    if (m_file != kNoOpenFile)
        Platform::CloseFile(m_file);
    SetError(eFMFileNotOpened);
    if (m_staging.IsValid()) {
        boost::system::error_code ignored;
        bfs::remove(BoostPath(m_staging), ignored);
        m_staging.Clear();
    }
}

int WCStFileCreate::Commit() {
    if (m_file == kNoOpenFile)
        return GetError() == eFMFileNotOpened ? eNoErr : GetError();
    if (!m_staging.IsValid())
        return WCStFile::Close();
    WTErr error = m_firstWriteError;
    if (error == eNoErr)
        error = Platform::SyncFile(m_file);
    WTErr const closing = Platform::CloseFile(m_file);
    SetError(eFMFileNotOpened);
    if (error == eNoErr)
        error = closing;
    boost::system::error_code failure;
    bfs::path const &staged = BoostPath(m_staging);
    bfs::path const &target = BoostPath(m_target);
    if (error == eNoErr && m_flags == eFMCreateNew) {
        // A hard link fails when the name was taken meanwhile, where a rename would replace.
        bfs::create_hard_link(staged, target, failure);
        boost::system::error_code probe;
        if (failure && failure.value() != EEXIST && !bfs::exists(target, probe)) {
            // Volumes without hard links: a rename, right after the check, is the best left.
            failure.clear();
            bfs::rename(staged, target, failure);
        }
        if (failure)
            error = FMErrorFromBoost(failure, eFMCreateFailed);
    } else if (error == eNoErr) {
        bfs::rename(staged, target, failure);
        if (failure)
            error = FMErrorFromBoost(failure, eFMWriteFailed);
    }
    if (error != eNoErr || m_flags == eFMCreateNew)
        bfs::remove(staged, failure);
    m_staging.Clear();
    return error;
}

// ---- WCStTempFile

WCStTempFile::WCStTempFile() : WCStTempFile(WCStPath()) {}

WCStTempFile::WCStTempFile(WCStPath const &place) : m_keep(false) {
    WTOpenFileType file = kNoOpenFile;
    WTErr const error = CreateTempFile(place, m_path, file);
    AdoptOpened(error, file);
}

WCStTempFile::~WCStTempFile() {
    if (m_file != kNoOpenFile)
        Platform::CloseFile(m_file);
    if (!m_keep && m_path.IsValid()) {
        boost::system::error_code ignored;
        bfs::remove(BoostPath(m_path), ignored);
    }
}

int WCStTempFile::MoveTo(WCStPath const &target) {
    if (!m_path.IsValid())
        return GetError();
    if (!target.IsValid())
        return target.GetError();
    if (m_file != kNoOpenFile) {
        WTErr error = m_firstWriteError;
        if (error == eNoErr)
            error = Platform::SyncFile(m_file);
        if (error != eNoErr)
            return error;
        error = Platform::CloseFile(m_file);
        SetError(eFMFileNotOpened);
        if (error != eNoErr)
            return error;
    }
    boost::system::error_code failure;
    bfs::rename(BoostPath(m_path), BoostPath(target), failure);
    if (failure)
        return FMErrorFromBoost(failure, eFMMoveFailed);
    m_path = target;
    m_keep = true;
    return eNoErr;
}

} // namespace FM
MIREL_NAMESPACE_END
