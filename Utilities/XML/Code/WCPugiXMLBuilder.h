#pragma once

#include <cstdint>
#include <string>

#include <pugixml.hpp>

#include "Utilities/XML/Code/WCXMLFileIO.h"
#include "core/MirelNamespace.h"
#include "core/WCStMemObj.h"

MIREL_NAMESPACE_BEGIN

namespace PugiXML {

// The builder interface of the older tree, over a pugi document: each call forwards to the
// PugiXML free function of the same purpose, with its codes. The document must outlive the
// builder; in-place builds also need the memory object to outlive the document's use.
// [any-thread] one object per thread.
class WCPugiXMLBuilder {
public:
    explicit WCPugiXMLBuilder(pugi::xml_document &doc) noexcept : m_doc(doc) {}

    int BuildFromFile(const XML::WTXMLPath &path);
    int BuildFromSingleBuffer(const void *buffer, std::uint64_t length);
    int BuildFromConstWCStMemObj(const Utils::WCStConstMemObj &memObj);
    int BuildFromWCStMemObj_inplace(Utils::WCStMemObj &memObj);
    int WriteToFile(const XML::WTXMLPath &path, unsigned int format = 0) const;
    void WriteToString(std::string &text) const;
    int WriteToWCStMemObj(Utils::WCStMemObj &memObj) const;

    pugi::xml_document &GetDocument() const noexcept { return m_doc; }

private:
    pugi::xml_document &m_doc;
};

} // namespace PugiXML

MIREL_NAMESPACE_END
