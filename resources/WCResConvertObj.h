#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCStMemObj.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

// What a converter works on: the raw bytes, what users get (pointer and size) and a text naming
// the form of that data.
struct WSResDataBlock {
    Utils::WCStMemObj m_MemObj;
    void *m_pData = nullptr;
    std::uint64_t m_DataSize = 0;
    WCFixedString<31> m_Form;
};

// Forms of resource data. The raw form's text is spelled so on purpose: it is the system's own.
inline constexpr const char *kResFormMemObj = "WCStMemeObj";
inline constexpr const char *kResFormCXMLElement = "CXMLElement";
inline constexpr const char *kResFormPugiXML = "pugi::xml_document";
inline constexpr const char *kResFormReleasedSuffix = ":Released";

// Lets the raw bytes go and empties the block, its form marked released: how every converter's
// Release ends, once its own object is deleted.
int ReleaseBytes(WSResDataBlock &data);

// Turns the raw bytes of a resource into the object its users get, back into bytes before a
// write, and disposes of the object at the last release. A converter holds no state of a
// resource, so one object serves every key that carries it. Called under the container's lock.
class WCResConvertObj {
public:
    virtual ~WCResConvertObj() = default;
    virtual int ConvertAfterLoad(WSResDataBlock &data) = 0;
    virtual int ConvertBeforeWrite(WSResDataBlock &data) = 0;
    virtual int Release(WSResDataBlock &data) = 0;
};

// Keeps the raw bytes as they are: users get the memory object's pointer and size.
class WCDefaultResConvert : public WCResConvertObj {
public:
    int ConvertAfterLoad(WSResDataBlock &data) override;
    // Copies data that a caller set from elsewhere into the memory object.
    int ConvertBeforeWrite(WSResDataBlock &data) override;
    int Release(WSResDataBlock &data) override;
};

} // namespace RM

MIREL_NAMESPACE_END
