#pragma once

#include <boost/filesystem/path.hpp>
#include <boost/system/error_code.hpp>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

// Inside the file layer only: sets a path from a boost path without a trip through text, and
// turns boost's error codes into the codes of the file band.
struct WUPathAccess {
    static void Assign(WCStPath &path, boost::filesystem::path value);
    static void Invalidate(WCStPath &path, int error) noexcept { path.MakeInvalid(error); }
};

// The code of a boost error: its errno mapped to the file band, `fallback` when nothing fits,
// and -1 when the error is not a system one.
WTErr FMErrorFromBoost(boost::system::error_code const &error, WTErr fallback) noexcept;

// Throws `code` when it is an error: the file layer's way of failing inside a public function.
inline void ThrowIfError(WTErr code) {
    if (code != eNoErr)
        throw static_cast<int>(code);
}

} // namespace FM
MIREL_NAMESPACE_END
