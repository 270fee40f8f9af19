#include "resources/WCResConvertObj.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

int ReleaseBytes(WSResDataBlock &data) {
    data.m_MemObj.DisposePtr();
    data.m_pData = nullptr;
    data.m_DataSize = 0;
    data.m_Form << kResFormReleasedSuffix;
    return eNoErr;
}

int WCDefaultResConvert::ConvertAfterLoad(WSResDataBlock &data) {
    data.m_pData = data.m_MemObj.GetPtr();
    data.m_DataSize = data.m_MemObj.GetSize();
    data.m_Form = kResFormMemObj;
    return eNoErr;
}

int WCDefaultResConvert::ConvertBeforeWrite(WSResDataBlock &data) {
    if (data.m_pData != data.m_MemObj.GetPtr() || data.m_DataSize != data.m_MemObj.GetSize()) {
        const int err = data.m_MemObj.Assign(data.m_pData, data.m_DataSize);
        if (err != eNoErr)
            return err;
        data.m_pData = data.m_MemObj.GetPtr();
    }
    data.m_Form = kResFormMemObj;
    return eNoErr;
}

int WCDefaultResConvert::Release(WSResDataBlock &data) {
    return ReleaseBytes(data);
}

} // namespace RM

MIREL_NAMESPACE_END
