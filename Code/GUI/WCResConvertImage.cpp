#include "Code/GUI/WCResConvertImage.h"

#include <memory>
#include <new>

#include "Code/GUI/WUImageDecoder.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

int WCResConvertImage::ConvertAfterLoad(WSResDataBlock &data) {
    std::unique_ptr<WSDecodedImage> image(new (std::nothrow) WSDecodedImage());
    if (!image)
        return eMemNewFailed;
    const int err = ImageDecoder::Decode(data.m_MemObj.GetPtr(), data.m_MemObj.GetSize(), *image);
    if (err != eNoErr)
        return err;
    data.m_MemObj.DisposePtr();
    data.m_pData = image.release();
    data.m_DataSize = 1;
    data.m_Form = kResFormDecodedImage;
    return eNoErr;
}

int WCResConvertImage::ConvertBeforeWrite(WSResDataBlock &) {
    return eNotImplemented;
}

int WCResConvertImage::Release(WSResDataBlock &data) {
    if (data.m_Form == kResFormDecodedImage)
        delete static_cast<WSDecodedImage *>(data.m_pData);
    return ReleaseBytes(data);
}

} // namespace RM

MIREL_NAMESPACE_END
