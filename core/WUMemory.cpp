#include "core/WUMemory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

MIREL_NAMESPACE_BEGIN

namespace Utils {

void *NewWTPtr(std::uint64_t size) noexcept {
    if (size == 0)
        return nullptr;
    return std::malloc(static_cast<std::size_t>(size));
}

void *NewWTPtrClear(std::uint64_t size) noexcept {
    if (size == 0)
        return nullptr;
    return std::calloc(1, static_cast<std::size_t>(size));
}

WTErr ResizeWTPtr(void *&ptr, std::uint64_t newSize) noexcept {
    if (newSize == 0) {
        DisposeWTPtr(ptr);
        return eNoErr;
    }
    errno = 0;
    void *grown = ptr ? std::realloc(ptr, static_cast<std::size_t>(newSize))
                      : std::malloc(static_cast<std::size_t>(newSize));
    if (grown == nullptr) {
        // A heap that fails without setting errno is still out of memory.
        const int systemError = errno;
        return systemError ? ConvertErrno(systemError) : eMemOutOfMemory;
    }
    ptr = grown;
    return eNoErr;
}

void DisposeWTPtr(void *&ptr) noexcept {
    if (ptr != nullptr) {
        std::free(ptr);
        ptr = nullptr;
    }
}

WTErr DuplicateWTPtr(const void *source, std::uint64_t size, void *&destination) noexcept {
    destination = nullptr;
    if (size != 0 && source != nullptr) {
        destination = NewWTPtrClear(size);
        if (destination != nullptr)
            std::memcpy(destination, source, static_cast<std::size_t>(size));
    }
    return eNoErr;
}

} // namespace Utils

MIREL_NAMESPACE_END
