#include "resources/WCResKey.h"

#include <strings.h>

#include "resources/WCResConvertObj.h"

MIREL_NAMESPACE_BEGIN

WCResKey::WCResKey() : m_Type("????"), m_Converter(DefaultConverter()) {}

WCResKey::WCResKey(const char *type, const char *id, const char *variant)
    : m_Type(type), m_ID(id), m_Variant(variant), m_Converter(DefaultConverter()) {}

WCResKey::WCResKey(const char *type, short id, const char *variant)
    : m_Type(type), m_Variant(variant), m_Converter(DefaultConverter()) {
    m_ID << id;
}

WCResKey::WCResKey(const char *type, WCFourCC id, const char *variant)
    : m_Type(type), m_Variant(variant), m_Converter(DefaultConverter()) {
    m_ID << id;
}

WCFixedString<127> WCResKey::str(char separator) const {
    WCFixedString<127> text;
    text << m_Type << separator << m_ID;
    if (!m_Variant.empty())
        text << '!' << m_Variant;
    return text;
}

void WCResKey::SetConverter(WTConverterPtr converter) {
    m_Converter = converter ? std::move(converter) : DefaultConverter();
}

WCResKey WCResKey::BaseKey() const {
    WCResKey base(*this);
    base.m_Variant.clear();
    return base;
}

const WCResKey::WTConverterPtr &WCResKey::DefaultConverter() {
    // Built on first use, so keys made during static initialisation still get it.
    static const WTConverterPtr converter = std::make_shared<RM::WCDefaultResConvert>();
    return converter;
}

bool operator<(const WCResKey &a, const WCResKey &b) noexcept {
    const int byType = ::strcasecmp(a.m_Type.c_str(), b.m_Type.c_str());
    if (byType != 0)
        return byType < 0;
    const int byID = a.m_ID.compare(b.m_ID);
    if (byID != 0)
        return byID < 0;
    return a.m_Variant.compare(b.m_Variant) < 0;
}

bool operator==(const WCResKey &a, const WCResKey &b) noexcept {
    return ::strcasecmp(a.m_Type.c_str(), b.m_Type.c_str()) == 0 && a.m_ID == b.m_ID &&
           a.m_Variant == b.m_Variant;
}

MIREL_NAMESPACE_END
