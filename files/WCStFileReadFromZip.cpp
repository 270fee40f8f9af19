#include "files/WCStFileReadFromZip.h"

#include <cerrno>
#include <new>

#include <zip.h>

#include "core/WCStMemObj.h"
#include "files/WTPathType.h"
#include "files/WUReadAll.h"
#include "files/linux/WUPlatformFiles.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

namespace {

WTErr ZipOpenError(int zipError, int systemError) {
    switch (zipError) {
    case ZIP_ER_NOENT: return eFMFileNotFound;
    case ZIP_ER_MEMORY: return eMemOutOfMemory;
    case ZIP_ER_OPEN: return Platform::ErrnoToFMError(systemError, eFMOpenFailed);
    case ZIP_ER_READ:
    case ZIP_ER_SEEK: return Platform::ErrnoToFMError(systemError, eFMReadFailed);
    default: return eFMReadFailed; // not a zip, inconsistent, unsupported...
    }
}

} // namespace

WCStFileReadFromZip::WCStFileReadFromZip(WCStPath const &zipPath)
    : WUValidatable(eFMFileNotOpened), m_path(zipPath), m_zip(nullptr) {
    if (!zipPath.IsValid()) {
        SetError(zipPath.GetError());
        return;
    }
    if (!zipPath.IsExist()) {
        SetError(eFMFileNotFound);
        return;
    }
    if (zipPath.IsFolder()) {
        SetError(eFMIsAFolder);
        return;
    }
    // The zip library opens what it is given and reads it: a pipe would block it for ever.
    if (!zipPath.IsFile()) {
        SetError(eFMIsNotAFile);
        return;
    }
    int zipError = 0;
    m_zip = zip_open(BoostPath(zipPath).c_str(), ZIP_RDONLY, &zipError);
    if (m_zip == nullptr) {
        SetError(ZipOpenError(zipError, errno));
        return;
    }
    SetError(eNoErr);
}

WCStFileReadFromZip::~WCStFileReadFromZip() {
    if (m_zip != nullptr)
        zip_discard(m_zip);
}

std::uint64_t WCStFileReadFromZip::GetNumEntries() const {
    if (m_zip == nullptr)
        return 0;
    zip_int64_t const count = zip_get_num_entries(m_zip, 0);
    return count > 0 ? static_cast<std::uint64_t>(count) : 0;
}

int WCStFileReadFromZip::Locate(char const *name, std::uint64_t &outIndex,
                                std::uint64_t &outSize) const {
    outIndex = 0;
    outSize = 0;
    if (!IsValid())
        return GetError();
    if (name == nullptr || name[0] == 0)
        return eFMFileNotFound;
    zip_int64_t index = zip_name_locate(m_zip, name, 0);
    if (index < 0)
        index = zip_name_locate(m_zip, name, ZIP_FL_NODIR);
    if (index < 0)
        return eFMFileNotFound;
    zip_stat_t info;
    zip_stat_init(&info);
    if (zip_stat_index(m_zip, static_cast<zip_uint64_t>(index), 0, &info) != 0 ||
        (info.valid & ZIP_STAT_SIZE) == 0)
        return eFMReadFailed;
    outIndex = static_cast<std::uint64_t>(index);
    outSize = info.size;
    return eNoErr;
}

int WCStFileReadFromZip::GetEntrySize(char const *name, std::uint64_t &outSize) const {
    std::uint64_t index = 0;
    return Locate(name, index, outSize);
}

template <class Sink>
int WCStFileReadFromZip::ReadEntry(char const *name, Sink &sink) const {
    std::uint64_t index = 0;
    std::uint64_t size = 0;
    int error = Locate(name, index, size);
    if (error != eNoErr)
        return error;
    if (size > kMaxEntrySize)
        return eFMFileSizeTooBig;
    zip_file_t *entry = zip_fopen_index(m_zip, index, 0);
    if (entry == nullptr)
        return eFMReadFailed;
    // One byte more than announced: a longer entry shows, and the last read checks the CRC.
    char *buffer = sink.Grow(size + 1);
    if (buffer == nullptr) {
        zip_fclose(entry);
        return eMemOutOfMemory;
    }
    std::uint64_t filled = 0;
    while (filled <= size) {
        zip_int64_t const got = zip_fread(entry, buffer + filled, size + 1 - filled);
        if (got < 0) {
            error = eFMReadFailed;
            break;
        }
        if (got == 0)
            break;
        filled += static_cast<std::uint64_t>(got);
    }
    zip_fclose(entry);
    if (error == eNoErr && filled != size)
        error = eFMReadFailed;
    sink.Finish(error == eNoErr ? size : 0);
    return error;
}

int WCStFileReadFromZip::ReadToStdString(char const *name, std::string &outData) const {
    outData.clear();
    WCStringSink sink(outData);
    return ReadEntry(name, sink);
}

int WCStFileReadFromZip::ReadToWCStMemObj(char const *name, Utils::WCStMemObj &outData) const {
    WCMemObjSink sink(outData);
    int const error = ReadEntry(name, sink);
    if (error != eNoErr)
        outData.ResizePtr(0);
    return error;
}

// ---- WCStZipFileIterator

WCStZipFileIterator::WCStZipFileIterator(WCStPath const &zipPath)
    : WUValidatable(eFMFileNotOpened), m_owned(nullptr), m_zip(nullptr), m_count(0), m_index(0) {
    m_owned = new (std::nothrow) WCStFileReadFromZip(zipPath);
    if (m_owned == nullptr) {
        SetError(eMemOutOfMemory);
        return;
    }
    if (!m_owned->IsValid()) {
        SetError(m_owned->GetError());
        return;
    }
    m_zip = m_owned->GetZip();
    m_count = m_owned->GetNumEntries();
    SetError(eNoErr);
}

WCStZipFileIterator::WCStZipFileIterator(WCStFileReadFromZip const &zipFile)
    : WUValidatable(zipFile.GetError()), m_owned(nullptr), m_zip(zipFile.GetZip()),
      m_count(zipFile.GetNumEntries()), m_index(0) {
    if (m_zip == nullptr && GetError() == eNoErr)
        SetError(eFMFileNotOpened);
}

WCStZipFileIterator::~WCStZipFileIterator() {
    delete m_owned;
}

int WCStZipFileIterator::GetNextItemFromZip(WCFixedString<255> &outLeaf) {
    WCFixedString<1023> fullName;
    return GetNextItemFromZip(outLeaf, fullName);
}

int WCStZipFileIterator::GetNextItemFromZip(WCFixedString<255> &outLeaf,
                                            WCFixedString<1023> &outFullName) {
    outLeaf.clear();
    outFullName.clear();
    if (!IsValid())
        return GetError();
    while (m_index < m_count) {
        char const *name = zip_get_name(m_zip, m_index++, 0);
        if (name == nullptr)
            continue; // a deleted or unreadable entry
        std::string_view const full(name);
        if (full.empty() || full.back() == '/')
            continue;
        auto const slash = full.rfind('/');
        std::string_view const leaf =
            slash == std::string_view::npos ? full : full.substr(slash + 1);
        outLeaf.assign(leaf.data(), leaf.size());
        outFullName.assign(full.data(), full.size());
        return eNoErr;
    }
    return eFMEndOfFolder;
}

} // namespace FM
MIREL_NAMESPACE_END
