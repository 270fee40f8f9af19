#pragma once

// Kept free of heavy includes: core value types derive from this class.
#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

class CXMLElement;
class WCXMLSerializer;

// The mix-in of what reads and writes itself through one function: a class writes only
// SerializeXML, a chain of serializer calls that describes its format (element name, content,
// end) and that runs unchanged for reading and for writing.
// ReadFromXML runs it with a reader on the element, WriteToXML with a writer that fills the
// element, which it returns. Neither fails: what the element lacks keeps the object's value.
// [any-thread] as the derived object allows.
class WCXMLable {
public:
    // constexpr, so value types that derive from this class stay literal types.
    constexpr virtual ~WCXMLable() = default;
    virtual void SerializeXML(WCXMLSerializer &serializer) = 0;

    // eMemNullPointer for a null element, else 0.
    WTErr ReadFromXML(CXMLElement *element);
    CXMLElement *WriteToXML(CXMLElement *element) const;

protected:
    WCXMLable() = default;
    WCXMLable(const WCXMLable &) = default;
    WCXMLable &operator=(const WCXMLable &) = default;
};

} // namespace XML

MIREL_NAMESPACE_END
