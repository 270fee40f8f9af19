#pragma once

#include <cstdint>
#include <limits>
#include <new>
#include <string>

#include "core/MirelNamespace.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"
#include "files/WTFileManagerTypes.h"
#include "files/WUOpenFile.h"
#include "files/linux/WUPlatformFiles.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

// Inside the file layer only: reads a whole open file into a growing buffer without an extra
// copy. A sink offers `Grow(size)` (returns the start of a buffer of at least `size` bytes, or
// null) and `Finish(size)`.

class WCStringSink {
public:
    explicit WCStringSink(std::string &target) : m_target(target) {}
    char *Grow(std::uint64_t size) {
        if (size > m_target.max_size())
            return nullptr;
        try {
            m_target.resize(static_cast<std::size_t>(size));
        } catch (std::bad_alloc const &) {
            return nullptr;
        }
        return m_target.data();
    }
    void Finish(std::uint64_t size) { m_target.resize(static_cast<std::size_t>(size)); }

private:
    std::string &m_target;
};

class WCMemObjSink {
public:
    explicit WCMemObjSink(Utils::WCStMemObj &target) : m_target(target) {}
    char *Grow(std::uint64_t size) {
        if (m_target.ResizePtr(size) != eNoErr)
            return nullptr;
        return static_cast<char *>(m_target.GetPtr());
    }
    void Finish(std::uint64_t size) { m_target.ResizePtr(size); }

private:
    Utils::WCStMemObj &m_target;
};

// Reads from offset 0 to the end. The size the system reports is only a first guess: files that
// grow, and files of /proc that report 0, are read until the end all the same. Devices are
// refused (eFMIsNotAFile), since one such as /dev/zero has no end and would fill the memory.
template <class Sink>
WTErr ReadAllFromStart(WTOpenFileType file, Sink &sink) {
    WTErr error = Platform::CheckPlainFile(file);
    if (error != eNoErr)
        return error;
    std::uint64_t position = 0;
    error = Platform::SeekFile(file, 0, eFMFromStart, position);
    if (error != eNoErr)
        return error;
    std::uint64_t guess = 0;
    error = Platform::GetOpenFileSize(file, guess);
    if (error != eNoErr)
        return error;
    std::uint64_t capacity = guess + 1; // one more byte shows the end without a second pass
    std::uint64_t filled = 0;
    for (;;) {
        char *buffer = sink.Grow(capacity);
        if (buffer == nullptr) {
            sink.Finish(0);
            return guess >= (std::numeric_limits<std::uint64_t>::max() >> 1) ? eFMFileSizeTooBig
                                                                             : eMemOutOfMemory;
        }
        std::uint64_t got = 0;
        error = Platform::ReadFile(file, buffer + filled, capacity - filled, got);
        if (error != eNoErr) {
            sink.Finish(0);
            return error;
        }
        filled += got;
        if (filled < capacity)
            break;
        capacity = capacity < 4096 ? 8192 : capacity * 2;
    }
    sink.Finish(filled);
    return eNoErr;
}

// Opens the file at `path` for reading, reads it whole and closes it; the first error wins.
template <class Sink>
WTErr ReadAllOfFile(WCStPath const &path, Sink &sink) {
    WTOpenFileType file = kNoOpenFile;
    WTErr error = OpenFile(path, eFMReadPermission, file);
    if (error != eNoErr)
        return error;
    error = ReadAllFromStart(file, sink);
    WTErr const closing = CloseFile(file);
    return error != eNoErr ? error : closing;
}

} // namespace FM
MIREL_NAMESPACE_END
