#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Code/GUI/WCBaseImage.h"
#include "Utilities/XML/Code/CXMLable.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// An ordered list of images with a current index: the frames of a knob, the background of a
// control with its "off" state, the selection images by level. Slots may be empty (null). The
// vector owns its images. [main-thread]
class WCBaseImageVector : public CXMLable {
public:
    WCBaseImageVector() = default;
    ~WCBaseImageVector() override;
    WCBaseImageVector(const WCBaseImageVector &) = delete;
    WCBaseImageVector &operator=(const WCBaseImageVector &) = delete;

    // Appends one image per child "Image" of `element` (and an "Animation" per child of that
    // name). The first child that does not read ends the walk with its code; those before stay.
    virtual WTErr AddFromXML(const XML::CXMLElement *element);
    virtual WTErr AddFromXML_OneImage(const XML::CXMLElement *element);
    // Clears, then AddFromXML.
    WTErr ReadFromXML(const XML::CXMLElement *const element) override;
    virtual WTErr UpdateFromXML(const XML::CXMLElement *element) { return ReadFromXML(element); }
    // One "Image" (or "Animation") child per non-empty slot.
    XML::CXMLElement *WriteToXML(XML::CXMLElement *element) const override;
    using CXMLable::ReadFromXML;
    using CXMLable::WriteToXML;

    virtual void AddImage(std::unique_ptr<WCBaseImage> image);
    // Puts `image` at `index`, growing the vector with empty slots; the image there goes.
    virtual void InsertImage(std::unique_ptr<WCBaseImage> image, std::size_t index);
    virtual void Clear();
    virtual bool Empty() const { return m_Images.empty(); }
    virtual void PopBack();
    // Deep copies of `other`'s images (sharing their pixels).
    virtual void CopyImages(const WCBaseImageVector &other);
    virtual std::size_t GetImagesVectorSize() const { return m_Images.size(); }
    // The image at `index`; out of range or empty, the current image when `fallback`, else null.
    virtual WCBaseImage *GetImagePtr(std::size_t index, bool fallback = false) const;
    virtual WCBaseImage *GetCurrentImage() const;
    virtual std::size_t GetCurrentImageIndex() const { return m_CurrentIndex; }
    // -1 without a current image.
    virtual short GetCurrentImageResID() const;
    // eOutOfRangeNumber beyond the size, with the index unchanged.
    virtual int SetCurrentImage(std::size_t index);
    // The next index, back to 0 after the last.
    virtual int SetNextImage();
    // Whether the image at `index` has a number to load.
    virtual bool IsImageLoadable(std::size_t index) const;
    // Loads every image through the resource manager; the first failing code, the rest tried.
    int LoadAll(WTResContainerType *container);

    // The "off" state of a background or foreground list.
    bool HasOffState() const noexcept { return m_HasOffState; }
    void SetHasOffState(bool has) noexcept { m_HasOffState = has; }

protected:
    std::vector<std::unique_ptr<WCBaseImage>> m_Images;
    std::size_t m_CurrentIndex = 0;
    bool m_HasOffState = false;
};

MIREL_NAMESPACE_END
