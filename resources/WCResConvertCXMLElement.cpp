#include "resources/WCResConvertCXMLElement.h"

#include <memory>
#include <new>
#include <utility>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

namespace {

// Whether the block's pointer is a tree this converter made. After a write the form names the
// bytes while the pointer is still the tree; raw bytes a caller added under an XML key are never
// taken for one, whatever their size.
bool HoldsTree(const WSResDataBlock &data) {
    if (data.m_pData == nullptr || data.m_DataSize != 1 || data.m_pData == data.m_MemObj.GetPtr())
        return false;
    return data.m_Form == kResFormCXMLElement ||
           (data.m_Form == kResFormMemObj && !data.m_MemObj.Empty());
}

} // namespace

int HandOutCXMLElement(std::unique_ptr<XML::CXMLElement> root, const Utils::WCStConstMemObj &bytes,
                       WSResDataBlock &data) {
    int err = eNoErr;
    {
        XML::CXMLTreeBuilder builder(root.get());
        err = builder.BuildFromWCStMemObj(bytes);
    }
    if (err == eNoErr && !root->IsValid())
        err = root->GetError() != eNoErr ? root->GetError() : eXMLTreeNotValid;
    if (err != eNoErr)
        return err;
    data.m_pData = root.release();
    data.m_DataSize = 1;
    data.m_Form = kResFormCXMLElement;
    return eNoErr;
}

int WCResConvertCXMLElement::ConvertAfterLoad(WSResDataBlock &data) {
    std::unique_ptr<XML::CXMLElement> root(new (std::nothrow) XML::CXMLElement());
    if (!root)
        return eMemNewFailed;
    // The builder accepts no bytes without complaint, but no bytes are no document.
    if (data.m_MemObj.Empty())
        return eXMLTreeEmpty;
    const int err = HandOutCXMLElement(std::move(root), data.m_MemObj, data);
    if (err == eNoErr)
        data.m_MemObj.DisposePtr();
    return err;
}

int WCResConvertCXMLElement::ConvertBeforeWrite(WSResDataBlock &data) {
    if (!HoldsTree(data))
        return eMemNullPointer;
    XML::CXMLTreeBuilder builder(static_cast<XML::CXMLElement *>(data.m_pData));
    const int err = builder.WriteToWCStMemObj(data.m_MemObj);
    if (err == eNoErr)
        data.m_Form = kResFormMemObj;
    return err;
}

int WCResConvertCXMLElement::Release(WSResDataBlock &data) {
    if (HoldsTree(data))
        delete static_cast<XML::CXMLElement *>(data.m_pData);
    return ReleaseBytes(data);
}

} // namespace RM

MIREL_NAMESPACE_END
