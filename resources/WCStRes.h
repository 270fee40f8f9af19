#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCStMemObj.h"
#include "core/WUValidatable.h"
#include "files/WCStPath.h"
#include "resources/WCResKey.h"
#include "resources/WTResourceType.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

// A base for anything that holds resources of one container: it remembers what it took and
// releases it all at once, at the latest in its destructor. The container reference is the
// owner's variable, so a later open is seen. [any-thread], one thread at a time.
class WCResContainerUser {
public:
    explicit WCResContainerUser(WTResContainerType *&containerRef)
        : m_pContainerRef(&containerRef) {}
    WCResContainerUser();
    virtual ~WCResContainerUser();
    WCResContainerUser(const WCResContainerUser &) = delete;
    WCResContainerUser &operator=(const WCResContainerUser &) = delete;

    // Ignores null.
    void RememberLoadedResource(WTResourceType *resource);
    void ReleaseAllLoadedResources();
    void SetContainerRef(WTResContainerType *&containerRef) { m_pContainerRef = &containerRef; }
    WTResContainerType *GetContainer() const { return *m_pContainerRef; }
    std::uint64_t GetNumLoadedResources() const { return m_LoadedResources.size(); }

protected:
    WTResContainerType **m_pContainerRef;
    // Used when made without a reference.
    WTResContainerType *m_pOwnContainer = nullptr;
    std::vector<WTResourceType *> m_LoadedResources;
};

// One resource held for a scope. Made on a container it owns its retain and releases it at the
// end; made on a WCResContainerUser it hands the resource to the user, who releases it.
// Invalid with eRMInvalidResRef until a resource is loaded, then with the load's code.
// [any-thread], one thread at a time.
class WCStRes : public WUValidatable {
public:
    WCStRes();
    WCStRes(WTResContainerType *const container, const WCResKey &key);
    WCStRes(WCResContainerUser &user, const WCResKey &key);
    ~WCStRes() override;
    WCStRes(const WCStRes &) = delete;
    WCStRes &operator=(const WCStRes &) = delete;

    // Releases what it held (when it owns it), then loads; answers the load's code.
    int LoadResource(WTResContainerType *const container, const WCResKey &key);
    void *GetResData() const;
    std::uint64_t GetResSize() const;
    WTResourceType *GetResource() const noexcept { return m_pResource; }
    int CopyResourceToWCStMemObj(Utils::WCStMemObj &outData) const;
    int CopyResourceToStdString(std::string &outText) const;

private:
    void ReleaseOwned();

    WTResourceType *m_pResource = nullptr;
    bool m_ReleaseInDestructor = true;
};

// A container held open for a scope: opened from a path, attached from a module, or one more
// retain on an open handle; closed at the end, after its remembered resources are released.
// [any-thread], one thread at a time.
class WCStResContainer : public WUValidatable, public WCResContainerUser {
public:
    WCStResContainer(const FM::WCStPath &path, int mode = 0, unsigned int flags = 0);
    explicit WCStResContainer(WTNativeDLLRefType *const module, unsigned int flags = 0);
    // Retains an open container.
    explicit WCStResContainer(WTResContainerType *const container);
    ~WCStResContainer() override;

    WTResContainerType *Get() const noexcept { return m_pOwnContainer; }
    operator WTResContainerType *() const noexcept { return m_pOwnContainer; }

    int GetContainerPath(FM::WCStPath &outPath) const;
    int GetPathToActualFile(const WCResKey &key, FM::WCStPath &outPath) const;
    int GetRawResSize(const WCResKey &key, std::uint64_t &outSize) const;
    int GetResourcesFolderPath(FM::WCStPath &outPath) const;
    bool DoesNativeResourceExist(const WCResKey &key) const;
    // Every resource of every type, as keys with the default converter.
    int GetResourceList(std::vector<WCResKey> &outKeys) const;
    int GetResourceListByType(const char *type, std::vector<WCResKey> &outKeys) const;
};

} // namespace RM

MIREL_NAMESPACE_END
