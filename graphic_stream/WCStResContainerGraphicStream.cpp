#include "graphic_stream/WCStResContainerGraphicStream.h"

#include <string>

#include "resources/ResourceManager.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

namespace {

// A GUI names the resources folder inside its bundle; the container to open is the bundle.
FM::WCStPath ContainerPath(const FM::WCStPath &path) {
    const FM::WCStPath contents = path.GetParent();
    if (path.GetLeaf() == "Resources" && contents.GetLeaf() == "Contents")
        return contents.GetParent();
    return path;
}

} // namespace

WCStResContainerGraphicStream::WCStResContainerGraphicStream(const FM::WCStPath &path)
    : m_Path(ContainerPath(path)) {}

// The container's own destructor releases the images it remembered before it closes.
WCStResContainerGraphicStream::~WCStResContainerGraphicStream() = default;

WTResContainerType *WCStResContainerGraphicStream::GetContainer() {
    if (m_Container == nullptr) {
        // One try only: a folder that cannot be opened is not asked again at every image.
        m_Container = std::make_unique<RM::WCStResContainer>(m_Path);
        m_OpenError = m_Container->Get() != nullptr ? eNoErr : m_Container->GetError();
        if (m_OpenError == eNoErr && m_Container->Get() == nullptr)
            m_OpenError = eRMInvalidResContainer;
    }
    return m_Container->Get();
}

int WCStResContainerGraphicStream::GetImage(std::int32_t resID, WTResourceType *&outResource) {
    outResource = nullptr;
    if (resID < 0)
        return eRMInvalidResID;
    if (const auto found = m_Images.find(resID); found != m_Images.end()) {
        outResource = found->second;
        return eNoErr;
    }
    if (GetContainer() == nullptr)
        return m_OpenError;
    RM::WCStRes image(static_cast<RM::WCResContainerUser &>(*m_Container),
                      WCResKey(kImageType, std::to_string(resID).c_str()));
    if (image.GetError() != eNoErr)
        return image.GetError();
    outResource = image.GetResource();
    m_Images.emplace(resID, outResource);
    return eNoErr;
}

} // namespace miGS
MIREL_NAMESPACE_END
