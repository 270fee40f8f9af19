#pragma once

#include <boost/filesystem/path.hpp>

#include "core/MirelNamespace.h"
#include "files/WTFileManagerTypes.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

class WCStPath;

// The inside of a path handle: one boost path. Only the file layer and the code that must hand a
// path to boost look here; everyone else holds a WCStPath.
struct WTPathType {
    boost::filesystem::path m_path;
};

// Frees a handle made by WCStPath::CreatePathRefCopy and nulls the caller's pointer. [any-thread]
void DisposePathRef(WTPathType *&ioPathRef) noexcept;

// The boost path of a valid WCStPath, or an empty path for an invalid one. [any-thread]
boost::filesystem::path const &BoostPath(WCStPath const &path) noexcept;

} // namespace FM
MIREL_NAMESPACE_END
