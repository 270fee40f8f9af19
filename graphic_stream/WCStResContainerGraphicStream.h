#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"
#include "resources/WCStRes.h"
#include "resources/WTResourceType.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

// The resources of the streams that name one folder in their resources-folder record: the
// container of that folder, and the images taken from it by resource number. The container is
// opened on the first image asked for, so a walk that draws nothing never touches the disk; it
// stays open, with the images it handed out, until this object goes, so repainting a stream
// loads nothing twice. The engine owns these objects and counts how often the current stream
// refers to each; see WCGraphicStreamEngineBase::CloseRedundantResContainers.
// [main-thread] in the GUI, one thread at a time otherwise, like the engine that owns it.
class WCStResContainerGraphicStream {
public:
    // The resource type of images drawn by number.
    static constexpr const char *kImageType = "PNG_";

    explicit WCStResContainerGraphicStream(const FM::WCStPath &path);
    virtual ~WCStResContainerGraphicStream();
    WCStResContainerGraphicStream(const WCStResContainerGraphicStream &) = delete;
    WCStResContainerGraphicStream &operator=(const WCStResContainerGraphicStream &) = delete;

    const FM::WCStPath &GetPath() const noexcept { return m_Path; }
    // The container, opened now if it was not yet; null when it cannot be opened (see GetError).
    WTResContainerType *GetContainer();
    // eNoErr once the container is open, its code when opening failed; eNoErr before any try.
    int GetError() const noexcept { return m_OpenError; }
    bool IsOpen() const noexcept { return m_Container != nullptr && m_Container->Get() != nullptr; }

    // The image of a resource number. The resource stays loaded while this object lives; the
    // caller does not release it. eRMInvalidResID for a negative number.
    int GetImage(std::int32_t resID, WTResourceType *&outResource);

    std::uint32_t GetUseCount() const noexcept { return m_UseCount; }
    void AddUse() noexcept { ++m_UseCount; }
    void ResetUseCount() noexcept { m_UseCount = 0; }

private:
    FM::WCStPath m_Path;
    std::unique_ptr<RM::WCStResContainer> m_Container;
    int m_OpenError = eNoErr;
    std::map<std::int32_t, WTResourceType *> m_Images;
    std::uint32_t m_UseCount = 0;
};

} // namespace miGS
MIREL_NAMESPACE_END
