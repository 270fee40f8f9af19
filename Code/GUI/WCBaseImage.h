#pragma once

#include <memory>
#include <string>

#include "Utilities/XML/Code/CXMLable.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCPoint2D.h"
#include "core/WURect.h"
#include "resources/WCResKey.h"
#include "resources/WCStRes.h"

MIREL_NAMESPACE_BEGIN

struct WSDecodedImage;

// One picture of a control: a resource number of the plug-in's container (-1 none; -100 an image
// given by file path) and where it sits (the bound rect, "PositionRect"). The pixels are decoded
// on the first LoadFromResource through the resource manager, which shares them: every image of
// every instance that names the same resource holds the same decoding, released with its last
// holder. The resource type ("PNG_", "PNG_2" or "Webp") is decided at the first load from what
// the container holds; "????" until then. [main-thread]
class WCBaseImage : public CXMLable, public RM::WCResContainerUser {
public:
    static constexpr short kNoResID = -1;
    static constexpr short kPathResID = -100;

    WCBaseImage() = default;
    explicit WCBaseImage(short resID) : m_ResID(resID) {}
    ~WCBaseImage() override;

    // Forgets the resource and its pixels; the number and rect go back to none.
    virtual void Clear();
    // A copy that shares the decoded pixels (one more retain), if any.
    virtual std::unique_ptr<WCBaseImage> Clone() const;
    // Becomes a copy of `other`, sharing its decoded pixels.
    void Assign(const WCBaseImage &other);
    virtual short GetResID() const { return m_ResID; }
    void SetResID(short resID);
    // The decoded size when loaded, else the bound rect's.
    virtual int GetDefaultWidth() const;
    virtual int GetDefaultHeight() const;
    virtual WCPoint2D<short> GetDefaultImageSize() const;
    // True outside the pixels or where alpha is 0; false when the image cannot be loaded or
    // has no alpha.
    virtual bool IsPixelTransparent(const WCPoint2D<short> &point) const;
    // Decodes through the resource manager (once per process for a resource held anywhere).
    // eRMInvalidResID without a number; the manager's or the decoder's code otherwise. 0 when
    // already loaded.
    virtual int LoadFromResource(WTResContainerType *container);
    int LoadPNGFromResource(WTResContainerType *container);
    int LoadWebpFromResource(WTResContainerType *container);
    // Sets the resource type from what `container` holds under the number; eRMResNotFound when
    // it holds nothing.
    int DecideResType(WTResContainerType *container);

    // "ResID" (a whole number; else eNotANumber and nothing changes), "Path" for an image by path,
    // and the child "PositionRect".
    WTErr ReadFromXML(const XML::CXMLElement *const element) override;
    virtual WTErr UpdateFromXML(const XML::CXMLElement *const element) {
        return ReadFromXML(element);
    }
    XML::CXMLElement *WriteToXML(XML::CXMLElement *element) const override;
    using CXMLable::ReadFromXML;
    using CXMLable::WriteToXML;

    const WCFixedString<31> &GetResType() const noexcept { return m_ResType; }
    const std::string &GetPath() const noexcept { return m_Path; }
    const WURect<short> &GetBoundRect() const noexcept { return m_BoundRect; }
    void SetBoundRect(const WURect<short> &rect) noexcept { m_BoundRect = rect; }
    const WSDecodedImage *GetPixels() const noexcept { return m_pPixels; }
    bool IsLoaded() const noexcept { return m_pPixels != nullptr; }
    // The frame of a sequence this image stands for ("SequenceSteps").
    int GetSequenceNumber() const noexcept { return m_SequenceNumber; }
    void SetSequenceNumber(int number) noexcept { m_SequenceNumber = number; }

protected:
    void CopyFieldsTo(WCBaseImage &other) const;
    int LoadAs(WTResContainerType *container, const char *type);

    short m_ResID = kNoResID;
    WCFixedString<31> m_ResType{"????"};
    // Most images are resources without a path, and a knob's strip is cloned once per frame:
    // the path lives out of line so that an image stays small.
    std::string m_Path;
    WURect<short> m_BoundRect;
    int m_SequenceNumber = -1;
    const WSDecodedImage *m_pPixels = nullptr;
    WTResourceType *m_pResource = nullptr;
};

MIREL_NAMESPACE_END
