#include "Code/GUI/WCBaseImageVector.h"

#include <cstring>

#include "Code/GUI/WCAnimation.h"
#include "Utilities/XML/Code/CXMLElement.h"

MIREL_NAMESPACE_BEGIN

WCBaseImageVector::~WCBaseImageVector() = default;

WTErr WCBaseImageVector::AddFromXML_OneImage(const XML::CXMLElement *element) {
    if (element == nullptr)
        return eMemNullPointer;
    std::unique_ptr<WCBaseImage> image;
    if (element->GetName() == "Animation")
        image = std::make_unique<WCAnimation>();
    else
        image = std::make_unique<WCBaseImage>();
    if (const WTErr err = image->ReadFromXML(element); err != eNoErr)
        return err;
    AddImage(std::move(image));
    return eNoErr;
}

WTErr WCBaseImageVector::AddFromXML(const XML::CXMLElement *element) {
    if (element == nullptr)
        return eMemNullPointer;
    for (const XML::CXMLElement *child : element->GetSubElements()) {
        if (child->GetName() != "Image" && child->GetName() != "Animation")
            continue;
        if (const WTErr err = AddFromXML_OneImage(child); err != eNoErr)
            return err;
    }
    return eNoErr;
}

WTErr WCBaseImageVector::ReadFromXML(const XML::CXMLElement *const element) {
    if (element == nullptr)
        return eMemNullPointer;
    Clear();
    return AddFromXML(element);
}

XML::CXMLElement *WCBaseImageVector::WriteToXML(XML::CXMLElement *element) const {
    if (element == nullptr)
        return nullptr;
    for (const auto &image : m_Images) {
        if (!image)
            continue;
        const bool animation = dynamic_cast<const WCAnimation *>(image.get()) != nullptr;
        element->push_back(
            image->WriteToXML(new XML::CXMLElement(animation ? "Animation" : "Image")));
    }
    return element;
}

void WCBaseImageVector::AddImage(std::unique_ptr<WCBaseImage> image) {
    m_Images.push_back(std::move(image));
}

void WCBaseImageVector::InsertImage(std::unique_ptr<WCBaseImage> image, std::size_t index) {
    if (index >= m_Images.size())
        m_Images.resize(index + 1);
    m_Images[index] = std::move(image);
}

void WCBaseImageVector::Clear() {
    m_Images.clear();
    m_CurrentIndex = 0;
}

void WCBaseImageVector::PopBack() {
    if (!m_Images.empty())
        m_Images.pop_back();
    if (m_CurrentIndex >= m_Images.size())
        m_CurrentIndex = 0;
}

void WCBaseImageVector::CopyImages(const WCBaseImageVector &other) {
    Clear();
    for (const auto &image : other.m_Images)
        m_Images.push_back(image ? image->Clone() : nullptr);
    m_CurrentIndex = other.m_CurrentIndex;
    m_HasOffState = other.m_HasOffState;
}

WCBaseImage *WCBaseImageVector::GetImagePtr(std::size_t index, bool fallback) const {
    if (index < m_Images.size() && m_Images[index])
        return m_Images[index].get();
    return fallback && index != m_CurrentIndex ? GetCurrentImage() : nullptr;
}

WCBaseImage *WCBaseImageVector::GetCurrentImage() const {
    return m_CurrentIndex < m_Images.size() ? m_Images[m_CurrentIndex].get() : nullptr;
}

short WCBaseImageVector::GetCurrentImageResID() const {
    const WCBaseImage *image = GetCurrentImage();
    return image != nullptr ? image->GetResID() : WCBaseImage::kNoResID;
}

int WCBaseImageVector::SetCurrentImage(std::size_t index) {
    if (index >= m_Images.size())
        return eOutOfRangeNumber;
    m_CurrentIndex = index;
    return eNoErr;
}

int WCBaseImageVector::SetNextImage() {
    if (m_Images.empty())
        return eOutOfRangeNumber;
    m_CurrentIndex = (m_CurrentIndex + 1) % m_Images.size();
    return eNoErr;
}

bool WCBaseImageVector::IsImageLoadable(std::size_t index) const {
    const WCBaseImage *image = GetImagePtr(index);
    return image != nullptr && image->GetResID() != WCBaseImage::kNoResID &&
           image->GetResID() != WCBaseImage::kPathResID;
}

int WCBaseImageVector::LoadAll(WTResContainerType *container) {
    int first = eNoErr;
    for (const auto &image : m_Images) {
        if (!image || image->GetResID() == WCBaseImage::kNoResID ||
            image->GetResID() == WCBaseImage::kPathResID)
            continue;
        const int err = image->LoadFromResource(container);
        if (first == eNoErr)
            first = err;
    }
    return first;
}

MIREL_NAMESPACE_END
