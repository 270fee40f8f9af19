#include "Code/GUI/WCBaseImage.h"

#include <cstring>
#include <memory>

#include "Code/GUI/WCResConvertImage.h"
#include "Code/GUI/WUGUIXML.h"
#include "Code/GUI/WUImageDecoder.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WUAtoi.h"
#include "resources/ResourceManager.h"

MIREL_NAMESPACE_BEGIN

namespace {

// The decoded form lives in a variant of the raw resource, so a user of the raw bytes under the
// same key never receives pixels, nor this one raw bytes.
constexpr const char *kDecodedVariant = "decoded";

const std::shared_ptr<RM::WCResConvertObj> &ImageConverter() {
    static const std::shared_ptr<RM::WCResConvertObj> converter =
        std::make_shared<RM::WCResConvertImage>();
    return converter;
}

} // namespace

WCBaseImage::~WCBaseImage() {
    Clear();
}

void WCBaseImage::Clear() {
    ReleaseAllLoadedResources();
    m_pResource = nullptr;
    m_pPixels = nullptr;
    m_ResID = kNoResID;
    m_ResType = "????";
    m_Path.clear();
    m_BoundRect.Reset();
    m_SequenceNumber = -1;
}

void WCBaseImage::SetResID(short resID) {
    if (resID == m_ResID)
        return;
    ReleaseAllLoadedResources();
    m_pResource = nullptr;
    m_pPixels = nullptr;
    m_ResType = "????";
    m_ResID = resID;
}

void WCBaseImage::CopyFieldsTo(WCBaseImage &other) const {
    other.m_ResID = m_ResID;
    other.m_ResType = m_ResType;
    other.m_Path = m_Path;
    other.m_BoundRect = m_BoundRect;
    other.m_SequenceNumber = m_SequenceNumber;
    if (m_pResource != nullptr && RM::RetainResource(m_pResource) == eNoErr) {
        other.m_pResource = m_pResource;
        other.m_pPixels = m_pPixels;
        other.RememberLoadedResource(m_pResource);
    }
}

void WCBaseImage::Assign(const WCBaseImage &other) {
    if (&other == this)
        return;
    Clear();
    other.CopyFieldsTo(*this);
}

std::unique_ptr<WCBaseImage> WCBaseImage::Clone() const {
    auto copy = std::make_unique<WCBaseImage>();
    CopyFieldsTo(*copy);
    return copy;
}

int WCBaseImage::GetDefaultWidth() const {
    return m_pPixels != nullptr ? m_pPixels->m_Width : m_BoundRect.Width();
}

int WCBaseImage::GetDefaultHeight() const {
    return m_pPixels != nullptr ? m_pPixels->m_Height : m_BoundRect.Height();
}

WCPoint2D<short> WCBaseImage::GetDefaultImageSize() const {
    return WCPoint2D<short>(static_cast<short>(GetDefaultWidth()),
                            static_cast<short>(GetDefaultHeight()));
}

bool WCBaseImage::IsPixelTransparent(const WCPoint2D<short> &point) const {
    if (m_ResID != kNoResID && m_pPixels == nullptr)
        return false;
    if (m_pPixels == nullptr || m_pPixels->m_BytesPerPixel != 4)
        return false;
    if (point.x < 0 || point.y < 0 || point.x >= m_pPixels->m_Width ||
        point.y >= m_pPixels->m_Height)
        return true;
    return m_pPixels->GetRow(point.y)[point.x * 4 + 3] == 0;
}

int WCBaseImage::LoadAs(WTResContainerType *container, const char *type) {
    WCResKey key(type, m_ResID, kDecodedVariant);
    key.SetConverter(ImageConverter());
    WTResourceType *resource = nullptr;
    const int err = RM::GetAResource(container, key, resource);
    if (err != eNoErr)
        return err;
    if (resource->m_Data.m_Form != RM::kResFormDecodedImage ||
        resource->m_Data.m_pData == nullptr) {
        RM::ReleaseResource(resource);
        return eGMInvalidImage;
    }
    ReleaseAllLoadedResources();
    RememberLoadedResource(resource);
    m_pResource = resource;
    m_pPixels = static_cast<const WSDecodedImage *>(resource->m_Data.m_pData);
    m_ResType = type;
    return eNoErr;
}

int WCBaseImage::DecideResType(WTResContainerType *container) {
    for (const char *type : {"PNG_", "PNG_2", "Webp"})
        if (RM::DoesResourceExist(container, WCResKey(type, m_ResID))) {
            m_ResType = type;
            return eNoErr;
        }
    return eRMResNotFound;
}

int WCBaseImage::LoadFromResource(WTResContainerType *container) {
    if (m_pPixels != nullptr)
        return eNoErr;
    if (m_ResID == kNoResID || m_ResID == kPathResID)
        return eRMInvalidResID;
    if (m_ResType == "????") {
        if (const int err = DecideResType(container); err != eNoErr)
            return err;
    }
    return LoadAs(container, m_ResType.c_str());
}

int WCBaseImage::LoadPNGFromResource(WTResContainerType *container) {
    if (m_ResID == kNoResID || m_ResID == kPathResID)
        return eRMInvalidResID;
    return LoadAs(container, "PNG_");
}

int WCBaseImage::LoadWebpFromResource(WTResContainerType *container) {
    if (m_ResID == kNoResID || m_ResID == kPathResID)
        return eRMInvalidResID;
    return LoadAs(container, "Webp");
}

WTErr WCBaseImage::ReadFromXML(const XML::CXMLElement *const element) {
    if (element == nullptr)
        return eMemNullPointer;
    short resID = m_ResID;
    WCFixedString<1023> path;
    if (element->GetAttrib("Path", path) && !path.empty()) {
        resID = kPathResID;
    } else if (element->AttribExists("ResID")) {
        if (const WTErr err = WUAtoi(element->GetAttribString("ResID").c_str(), resID);
            err != eNoErr)
            return err;
    }
    WURect<short> rect = m_BoundRect;
    if (const XML::CXMLElement *position = element->SubElement("PositionRect"))
        if (const WTErr err = GUIXML::ReadRect(*position, rect); err != eNoErr)
            return err;
    SetResID(resID);
    m_Path = path.c_str();
    m_BoundRect = rect;
    return eNoErr;
}

XML::CXMLElement *WCBaseImage::WriteToXML(XML::CXMLElement *element) const {
    if (element == nullptr)
        return nullptr;
    if (m_ResID == kPathResID)
        element->AddAttrib("Path", m_Path.c_str());
    else
        element->AddAttrib("ResID", m_ResID);
    if (!m_BoundRect.IsReset())
        element->push_back(GUIXML::WriteRect("PositionRect", m_BoundRect));
    return element;
}

MIREL_NAMESPACE_END
