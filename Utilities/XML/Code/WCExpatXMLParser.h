#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"

struct XML_ParserStruct;

MIREL_NAMESPACE_BEGIN

namespace XML {

class CXMLElement;

// Fills a CXMLElement tree from XML text through expat. Made on a root element, which it marks
// eXMLElementIncomplete until the document's root element closes; the root takes the document
// root's name. Text is fed in one or more chunks and expat is never told that the input is final,
// so a truncated document is not a parse error: it shows as an incomplete root.
//
// On the way in: elements nested deeper than the depth limit (levels below the root, 512 by
// default) are dropped with their text; an element's text loses its leading ASCII white space and
// is trimmed at both ends; a text of exactly a four-character code in single quotes loses the
// quotes; CDATA marks the element; any encoding that expat does not know reads as Latin-1.
// The parser is used once, for one document.
// [any-thread] one object per thread.
class WCExpatXMLParser {
public:
    static constexpr std::int32_t kDefaultDepthLimit = 512;

    explicit WCExpatXMLParser(CXMLElement *root);
    ~WCExpatXMLParser();
    WCExpatXMLParser(const WCExpatXMLParser &) = delete;
    WCExpatXMLParser &operator=(const WCExpatXMLParser &) = delete;

    // Feeds one chunk. `done` turns true when the root element has closed. eXMLParserFailed for
    // text that is not XML (logged with expat's message and line), eMemNewFailed when the parser
    // could not be made.
    WTErr Parse(const char *buffer, std::uint64_t length, bool &done);

    void SetParseLevel(std::int32_t limit) noexcept { m_depthLimit = limit; }
    std::int32_t GetParseLevel() const noexcept { return m_depthLimit; }
    bool IsDone() const noexcept { return m_done; }

    // What the document's declaration said; empty when it had none.
    const WCFixedString<31> &GetXMLVersion() const noexcept { return m_version; }
    const WCFixedString<31> &GetXMLEncoding() const noexcept { return m_encoding; }
    CXMLElement *GetRoot() const noexcept { return m_root; }

    // The text rules above, shared with the plain reader so both build the same tree: a piece of
    // character data, whose leading white space is dropped while the element has no text yet,
    // and the trimming (and quote removal) when the element closes.
    static void AppendElementText(CXMLElement &element, const char *text, std::uint64_t length);
    static void CloseElementText(CXMLElement &element);

private:
    static void StartRootElement(void *self, const char *name, const char **attributes);
    static void StartElement(void *self, const char *name, const char **attributes);
    static void EndElement(void *self, const char *name);
    static void CharacterData(void *self, const char *text, int length);
    static void StartCDATA(void *self);
    static void XMLDeclaration(void *self, const char *version, const char *encoding,
                               int standalone);

    WCFixedString<31> m_version;
    WCFixedString<31> m_encoding;
    CXMLElement *m_root;
    CXMLElement *m_current = nullptr;
    XML_ParserStruct *m_parser = nullptr;
    bool m_done = false;
    std::int32_t m_depthLimit = kDefaultDepthLimit;
    std::int32_t m_depth = 0;
};

} // namespace XML

MIREL_NAMESPACE_END
