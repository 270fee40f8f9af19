#include "Utilities/XML/Code/WCExpatXMLParser.h"

#include <climits>
#include <cstring>
#include <expat.h>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WCXMLLog.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

namespace {

// Expat takes an int length; larger inputs go in slices of this size.
constexpr std::uint64_t kMaxSlice = 1u << 30;

bool IsLeadingSpace(char ch) noexcept {
    // isspace in the C locale, without its locale lookup; bytes with the high bit are never
    // white space here.
    return ch == ' ' || ch == '\t' || ch == '\n' || ch == '\v' || ch == '\f' || ch == '\r';
}

bool IsTrimmed(char ch) noexcept {
    return ch == ' ' || ch == '\r' || ch == '\n' || ch == '\t' || ch == '\v' || ch == '\b' ||
           ch == '\f' || ch == '\a';
}

void TrimText(std::string &text) {
    std::uint64_t last = text.size();
    while (last > 0 && IsTrimmed(text[last - 1]))
        --last;
    std::uint64_t first = 0;
    while (first < last && IsTrimmed(text[first]))
        ++first;
    text.erase(last);
    text.erase(0, first);
    // A four-character code written in quotes, 'Abcd', is kept as Abcd.
    if (text.size() == 6 && text.front() == '\'' && text.back() == '\'') {
        text.pop_back();
        text.erase(0, 1);
    }
}

void AddAttributes(CXMLElement &element, const char **attributes) {
    if (attributes == nullptr || attributes[0] == nullptr)
        return;
    // One reservation for the whole packed string: lengths plus the four marks per attribute.
    std::uint64_t bytes = 0;
    for (const char **pair = attributes; pair[0] != nullptr; pair += 2)
        bytes += std::strlen(pair[0]) + std::strlen(pair[1]) + 4;
    element.ReserveAttributes(bytes);
    for (const char **pair = attributes; pair[0] != nullptr; pair += 2)
        element.AddAttrib(pair[0], pair[1]);
}

void IgnoreProcessingInstruction(void *, const char *, const char *) {}
void IgnoreDefault(void *, const char *, int) {}
void IgnoreUnparsedEntity(void *, const char *, const char *, const char *, const char *,
                          const char *) {}
void IgnoreNotation(void *, const char *, const char *, const char *, const char *) {}

int UnknownEncoding(void *, const char *, XML_Encoding *info) {
    // Every byte stands for the code point of the same value: Latin-1.
    for (int i = 0; i < 256; ++i)
        info->map[i] = i;
    info->data = nullptr;
    info->convert = nullptr;
    info->release = nullptr;
    return XML_STATUS_OK;
}

} // namespace

WCExpatXMLParser::WCExpatXMLParser(CXMLElement *root) : m_root(root) {
    if (m_root != nullptr)
        m_root->SetError(eXMLElementIncomplete);
    m_parser = XML_ParserCreate(nullptr);
    if (m_parser == nullptr)
        return;
    XML_SetUserData(m_parser, this);
    XML_SetElementHandler(m_parser, &StartRootElement, &EndElement);
    XML_SetCharacterDataHandler(m_parser, &CharacterData);
    XML_SetStartCdataSectionHandler(m_parser, &StartCDATA);
    XML_SetXmlDeclHandler(m_parser, &XMLDeclaration);
    XML_SetUnknownEncodingHandler(m_parser, &UnknownEncoding, nullptr);
    XML_SetProcessingInstructionHandler(m_parser, &IgnoreProcessingInstruction);
    // A default handler also keeps references to entities declared in a DTD from being
    // expanded: they are dropped, which leaves no room for entity expansion attacks.
    XML_SetDefaultHandler(m_parser, &IgnoreDefault);
    XML_SetUnparsedEntityDeclHandler(m_parser, &IgnoreUnparsedEntity);
    XML_SetNotationDeclHandler(m_parser, &IgnoreNotation);
}

WCExpatXMLParser::~WCExpatXMLParser() {
    if (m_parser != nullptr)
        XML_ParserFree(m_parser);
}

WTErr WCExpatXMLParser::Parse(const char *buffer, std::uint64_t length, bool &done) {
    done = m_done;
    if (m_parser == nullptr || m_root == nullptr)
        return m_parser == nullptr ? eMemNewFailed : eMemNullPointer;
    if (buffer == nullptr && length != 0)
        return eMemNullPointer;
    do {
        const std::uint64_t slice = length < kMaxSlice ? length : kMaxSlice;
        // Never final: a document cut short is not an error here; the root stays incomplete.
        if (XML_Parse(m_parser, buffer, static_cast<int>(slice), 0) == XML_STATUS_ERROR) {
            const XML_Error code = XML_GetErrorCode(m_parser);
            WCFixedString<2047> message;
            message << "XML_Parse failed, errorCode: '" << XML_ErrorString(code) << "' ("
                    << static_cast<int>(code) << ") at line "
                    << static_cast<unsigned long>(XML_GetCurrentLineNumber(m_parser));
            XMLLog(6, message.c_str());
            done = m_done;
            return eXMLParserFailed;
        }
        buffer += slice;
        length -= slice;
    } while (length > 0);
    done = m_done;
    return eNoErr;
}

void WCExpatXMLParser::StartRootElement(void *data, const char *name, const char **attributes) {
    auto *self = static_cast<WCExpatXMLParser *>(data);
    CXMLElement *root = self->m_root;
    root->SetName(name);
    AddAttributes(*root, attributes);
    self->m_current = root;
    XML_SetStartElementHandler(self->m_parser, &StartElement);
}

void WCExpatXMLParser::StartElement(void *data, const char *name, const char **attributes) {
    auto *self = static_cast<WCExpatXMLParser *>(data);
    if (++self->m_depth > self->m_depthLimit || self->m_current == nullptr)
        return;
    auto *element = new CXMLElement(name);
    // Open until its end tag is seen, like the root.
    element->SetError(eXMLElementIncomplete);
    AddAttributes(*element, attributes);
    auto &siblings = self->m_current->GetSubElements();
    if (siblings.capacity() < 4)
        siblings.reserve(4);
    siblings.push_back(element);
    element->SetParent(self->m_current);
    self->m_current = element;
}

void WCExpatXMLParser::EndElement(void *data, const char *) {
    auto *self = static_cast<WCExpatXMLParser *>(data);
    if (self->m_depth > self->m_depthLimit || self->m_current == nullptr) {
        --self->m_depth;
        return;
    }
    CXMLElement *element = self->m_current;
    element->SetError(eNoErr);
    CloseElementText(*element);
    self->m_current = element->GetParent();
    element->SetParent(nullptr);
    --self->m_depth;
    if (self->m_current == nullptr)
        self->m_done = true;
}

void WCExpatXMLParser::CharacterData(void *data, const char *text, int length) {
    auto *self = static_cast<WCExpatXMLParser *>(data);
    CXMLElement *element = self->m_current;
    if (self->m_depth > self->m_depthLimit || element == nullptr || length <= 0)
        return;
    AppendElementText(*element, text, static_cast<std::uint64_t>(length));
}

void WCExpatXMLParser::AppendElementText(CXMLElement &element, const char *text,
                                         std::uint64_t length) {
    if (element.GetText().empty()) {
        while (length > 0 && IsLeadingSpace(*text)) {
            ++text;
            --length;
        }
    }
    if (length > 0)
        element.AppendText(text, length);
}

void WCExpatXMLParser::CloseElementText(CXMLElement &element) {
    TrimText(element.GetText());
}

void WCExpatXMLParser::StartCDATA(void *data) {
    auto *self = static_cast<WCExpatXMLParser *>(data);
    if (self->m_depth <= self->m_depthLimit && self->m_current != nullptr)
        self->m_current->SetCDATA(true);
}

void WCExpatXMLParser::XMLDeclaration(void *data, const char *version, const char *encoding, int) {
    auto *self = static_cast<WCExpatXMLParser *>(data);
    self->m_version = version;
    self->m_encoding = encoding;
}

} // namespace XML

MIREL_NAMESPACE_END
