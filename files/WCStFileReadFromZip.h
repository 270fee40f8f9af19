#pragma once

#include <cstdint>
#include <string>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"
#include "core/WUValidatable.h"
#include "files/WCStPath.h"

struct zip;

MIREL_NAMESPACE_BEGIN
namespace Utils {
class WCStMemObj;
}
namespace FM {

// A zip file open for reading its entries, for the life of the object.
//
// Invalid with eFMFileNotFound (no file), eFMIsAFolder, eFMIsNotAFile (a device or a pipe),
// eFMReadFailed (not a zip, or damaged), eFMOpenFailed or eFMPermissionErr. An entry is found by
// its full name, or else by its leaf alone, so "Images/knob.png" is found as "knob.png" too; a
// missing entry is eFMFileNotFound.
// Entries larger than kMaxEntrySize are refused with eFMFileSizeTooBig, and a damaged entry
// (short data, bad checksum) is eFMReadFailed with the output left empty. One thread at a time.
// [any-thread]
class WCStFileReadFromZip : public WUValidatable {
public:
    static constexpr std::uint64_t kMaxEntrySize = std::uint64_t(1) << 30;

    explicit WCStFileReadFromZip(WCStPath const &zipPath);
    WCStFileReadFromZip(WCStFileReadFromZip const &) = delete;
    WCStFileReadFromZip &operator=(WCStFileReadFromZip const &) = delete;
    ~WCStFileReadFromZip() override;

    int GetEntrySize(char const *name, std::uint64_t &outSize) const;
    int ReadToStdString(char const *name, std::string &outData) const;
    int ReadToWCStMemObj(char const *name, Utils::WCStMemObj &outData) const;
    std::uint64_t GetNumEntries() const;
    WCStPath const &GetPath() const noexcept { return m_path; }
    ::zip *GetZip() const noexcept { return m_zip; }

protected:
    bool IsValidSelf() const override { return m_zip != nullptr; }

private:
    int Locate(char const *name, std::uint64_t &outIndex, std::uint64_t &outSize) const;
    template <class Sink>
    int ReadEntry(char const *name, Sink &sink) const;

    WCStPath m_path;
    ::zip *m_zip;
};

// Goes over the file entries of a zip by index, skipping folder entries (names ending in "/"),
// and gives each entry's leaf. Either opens the zip itself or walks one already open, which must
// outlive the iterator. [any-thread], one thread at a time.
class WCStZipFileIterator : public WUValidatable {
public:
    explicit WCStZipFileIterator(WCStPath const &zipPath);
    explicit WCStZipFileIterator(WCStFileReadFromZip const &zipFile);
    WCStZipFileIterator(WCStZipFileIterator const &) = delete;
    WCStZipFileIterator &operator=(WCStZipFileIterator const &) = delete;
    ~WCStZipFileIterator() override;

    // eNoErr with the next leaf, then eFMEndOfFolder when the entries are used up.
    int GetNextItemFromZip(WCFixedString<255> &outLeaf);
    // As above, with the entry's full name too.
    int GetNextItemFromZip(WCFixedString<255> &outLeaf, WCFixedString<1023> &outFullName);
    void Restart() noexcept { m_index = 0; }

protected:
    bool IsValidSelf() const override { return m_zip != nullptr; }

private:
    WCStFileReadFromZip *m_owned;
    ::zip *m_zip;
    std::uint64_t m_count;
    std::uint64_t m_index;
};

} // namespace FM
MIREL_NAMESPACE_END
