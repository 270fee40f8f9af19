#pragma once

#include "core/MirelNamespace.h"
#include "core/WUValidatable.h"
#include "files/WCStPath.h"
#include "resources/WCResKey.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

// A resource made into a real file in the user's cache, for consumers that need a path. The
// file is (re)written unless it exists with a write time strictly later than the resource's;
// when another creator holds the file, the object waits a bounded while for it to appear.
// The file stays after the object. Invalid with the code of the load or the write.
// [any-thread]
class WCStResCacheFile : public WUValidatable {
public:
    // Types whose files get ".dll" appended, as their consumers load them by that name.
    static bool IsProcessorType(const WCFixedStringBase &type);
    // Tries before a wait for another creator gives up.
    static constexpr int kWaitTries = 512;

    // The cache twin of the resource's theoretical path.
    WCStResCacheFile(WTResContainerType *const container, const WCResKey &key);
    // A path of the caller's choosing.
    WCStResCacheFile(WTResContainerType *const container, const FM::WCStPath &path,
                     const WCResKey &key);
    ~WCStResCacheFile() override;

    const FM::WCStPath &GetCacheFilePath() const noexcept { return m_CachePath; }
    // Whether the last check found the file up to date without writing it.
    bool WasUpToDate() const noexcept { return m_WasUpToDate; }

    int CheckAndWriteCacheFile(WTResContainerType *const container, const WCResKey &key);
    bool DoesCacheFileExistAndUpToDate(WTResContainerType *const container, const WCResKey &key);

private:
    // Polls for the file another creator is writing; only for the sharing-violation code.
    int WaitForOtherThreadToCreateFile(WTResContainerType *const container, const WCResKey &key,
                                       int createError);

    FM::WCStPath m_CachePath;
    bool m_WasUpToDate = false;
};

} // namespace RM

MIREL_NAMESPACE_END
