#pragma once

#include <cstdint>
#include <memory>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"

MIREL_NAMESPACE_BEGIN

namespace RM {
class WCResConvertObj;
}

// Handle of an open resource container. Only the resource manager makes and reads them; the
// container classes derive from it so a handle converts to its container without a lookup.
struct WTResContainerType {
protected:
    WTResContainerType() = default;
    ~WTResContainerType() = default;
};

// Handle of a loaded native module (a shared object on this platform).
using WTNativeDLLRefType = void;

// Identifies a resource of a container: type, id and an optional variant, with the converter
// that turns the raw bytes into the object users get. Keys order by the type without regard to
// case, then by id and variant byte by byte; the converter takes no part in comparing, so a key
// finds a loaded resource whatever converter it carries. [any-thread] on distinct objects.
class WCResKey {
public:
    using WTKeyString = WCFixedString<31>;
    using WTConverterPtr = std::shared_ptr<RM::WCResConvertObj>;

    // Type "????", empty id and variant.
    WCResKey();
    WCResKey(const char *type, const char *id, const char *variant = nullptr);
    // The id printed in decimal.
    WCResKey(const char *type, short id, const char *variant = nullptr);
    // The id as the code's four characters.
    WCResKey(const char *type, WCFourCC id, const char *variant = nullptr);
    WCResKey(const WCResKey &) = default;
    WCResKey(WCResKey &&) noexcept = default;
    WCResKey &operator=(const WCResKey &) = default;
    WCResKey &operator=(WCResKey &&) noexcept = default;
    virtual ~WCResKey() = default;

    // Type, the separator, id and, with a variant, "!" and the variant.
    WCFixedString<127> str(char separator = '/') const;

    // A null converter puts the process-wide default back.
    void SetConverter(WTConverterPtr converter);
    const WTConverterPtr &GetConverter() const noexcept { return m_Converter; }
    // The same key without its variant: the key of the base a variant shares its data with.
    WCResKey BaseKey() const;

    // The process-wide default converter (a WCDefaultResConvert), copied by every constructor.
    static const WTConverterPtr &DefaultConverter();

    friend bool operator<(const WCResKey &a, const WCResKey &b) noexcept;
    friend bool operator==(const WCResKey &a, const WCResKey &b) noexcept;

    WTKeyString m_Type;
    WTKeyString m_ID;
    WTKeyString m_Variant;
    WTConverterPtr m_Converter;
};

MIREL_NAMESPACE_END
