#include "resources/WCStResCacheFile.h"

#include <ctime>

#include "core/WCStMemObj.h"
#include "files/WCStCachePath.h"
#include "files/WCStFile.h"
#include "resources/ResourceManager.h"
#include "resources/WCStRes.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

bool WCStResCacheFile::IsProcessorType(const WCFixedStringBase &type) {
    return type == "GenericWinProcess" || type == "GenericMultiCoreProcessor" ||
           type == "AVXProcessor" || type == "AVX512Processor";
}

WCStResCacheFile::WCStResCacheFile(WTResContainerType *const container, const WCResKey &key) {
    FM::WCStPath theoretical;
    int err = container ? GetPathToTheoreticalFile(container, key, theoretical) : eMemNullPointer;
    if (err != eNoErr) {
        SetError(err);
        return;
    }
    if (IsProcessorType(key.m_Type)) {
        WCFixedString<1023> text(theoretical.GetPathString());
        text << ".dll";
        theoretical = FM::WCStPath(text);
    }
    m_CachePath = FM::WCStCachePath(theoretical);
    if (!m_CachePath.IsValid()) {
        SetError(m_CachePath.GetError());
        return;
    }
    (void)CheckAndWriteCacheFile(container, key);
}

WCStResCacheFile::WCStResCacheFile(WTResContainerType *const container, const FM::WCStPath &path,
                                   const WCResKey &key)
    : m_CachePath(path) {
    if (!m_CachePath.IsValid()) {
        SetError(m_CachePath.GetError());
        return;
    }
    (void)CheckAndWriteCacheFile(container, key);
}

WCStResCacheFile::~WCStResCacheFile() = default;

bool WCStResCacheFile::DoesCacheFileExistAndUpToDate(WTResContainerType *const container,
                                                     const WCResKey &key) {
    if (!m_CachePath.IsFile())
        return false;
    std::time_t cacheTime = 0;
    if (m_CachePath.GetFileLastWriteTime(cacheTime) != eNoErr)
        return false;
    std::int64_t resourceTime = 0;
    if (GetModificationTime(container, key, resourceTime) != eNoErr)
        return false;
    // Strictly later: a file written in the same second as the resource may predate its change.
    return static_cast<std::int64_t>(cacheTime) > resourceTime;
}

int WCStResCacheFile::CheckAndWriteCacheFile(WTResContainerType *const container,
                                             const WCResKey &key) {
    m_WasUpToDate = false;
    if (container == nullptr) {
        SetError(eMemNullPointer);
        return eMemNullPointer;
    }
    if (DoesCacheFileExistAndUpToDate(container, key)) {
        m_WasUpToDate = true;
        SetError(eNoErr);
        return eNoErr;
    }
    Utils::WCStMemObj data;
    int err = eNoErr;
    {
        WCStRes resource(container, key);
        err = resource.GetError();
        if (err == eNoErr)
            err = resource.CopyResourceToWCStMemObj(data);
        // Held by others in a converted form, which is no file: the file gets the stored bytes.
        if (err == eRMInvalidResRef)
            err = GetRawResourceData(container, key, data);
    }
    if (err != eNoErr) {
        SetError(err);
        return err;
    }
    FM::WCStFileCreate file(m_CachePath);
    if (!file.IsValid()) {
        err = WaitForOtherThreadToCreateFile(container, key, file.GetError());
        SetError(err);
        return err;
    }
    err = file.WriteFromWCStMemObj(data);
    if (err == eNoErr)
        err = file.Close();
    else
        file.Abandon();
    SetError(err);
    return err;
}

int WCStResCacheFile::WaitForOtherThreadToCreateFile(WTResContainerType *const container,
                                                     const WCResKey &key, int createError) {
    if (createError != kErrSharingViolation)
        return createError;
    for (int i = 0; i < kWaitTries; ++i)
        if (DoesCacheFileExistAndUpToDate(container, key))
            return eNoErr;
    return createError;
}

} // namespace RM

MIREL_NAMESPACE_END
