#include "files/WCStCachePath.h"

#include <new>

#include <boost/filesystem/operations.hpp>

#include "files/WTPathType.h"
#include "files/WUPathAccess.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

WCStCachePath::WCStCachePath(WCStPath const &source) : WCStPath(eUserDomain, eMirelCacheFolder) {
    if (!IsValid())
        return;
    if (!source.IsValid()) {
        WUPathAccess::Invalidate(*this, source.GetError());
        return;
    }
    try {
        boost::filesystem::path absolute = boost::filesystem::absolute(BoostPath(source));
        // Lexical only: the twin must not depend on links, and ".." must not climb out of the
        // cache.
        absolute = absolute.lexically_normal();
        boost::filesystem::path twin = BoostPath(*this);
        for (auto const &element : absolute) {
            std::string const text = element.string();
            if (text == "/" || text == "." || text == ".." || text.empty())
                continue;
            twin /= element;
        }
        WUPathAccess::Assign(*this, std::move(twin));
    } catch (std::bad_alloc const &) {
        WUPathAccess::Invalidate(*this, eMemOutOfMemory);
    } catch (boost::filesystem::filesystem_error const &error) {
        WUPathAccess::Invalidate(*this, FMErrorFromBoost(error.code(), eFMIllegalPathRef));
    }
}

} // namespace FM
MIREL_NAMESPACE_END
