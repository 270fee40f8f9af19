// Feeds arbitrary bytes to the expat tree builder, whole and in two chunks. A document it accepts
// whole is written and read back, and must give the same tree; writing that again must give the
// same text. Nothing may crash, hang or grow without bound.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <strings.h>

#include <string>
#include <string_view>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "Utilities/XML/Code/WCExpatXMLParser.h"
#include "Utilities/XML/Code/WCXMLLog.h"
#include "Utilities/XML/Code/WriteXMLToStream.h"

using namespace MIREL_NAMESPACE_NAME;

namespace {

void Quiet(int, const char *) {}

bool SameTree(const XML::CXMLElement &a, const XML::CXMLElement &b) {
    if (a.GetName().compare(b.GetName()) != 0 || a.GetText() != b.GetText() ||
        a.IsCDATA() != b.IsCDATA() || a.GetAttributesString() != b.GetAttributesString() ||
        a.GetSubElements().size() != b.GetSubElements().size())
        return false;
    for (std::size_t i = 0; i < a.GetSubElements().size(); ++i) {
        if (!SameTree(*a.GetSubElements()[i], *b.GetSubElements()[i]))
            return false;
    }
    return true;
}

// What the writer cannot carry through a second parse, by the rules of XML itself: line breaks
// and tabs in attribute values (normalised to blanks), CR in text (read as LF), a CDATA flag
// on an empty text (written as an empty element), a value holding the packed form's own end mark,
// and a text with blanks at an end: only a quoted four-character code keeps them ('ab\n\t' reads
// as "ab\n\t"), and the writer puts it out without quotes, so the next read trims them.
bool RoundTrips(const XML::CXMLElement &e) {
    static constexpr std::string_view kTrimmed(" \r\n\t\v\b\f\a");
    const std::string &text = e.GetText();
    if (e.GetName().empty() || (e.IsCDATA() && text.empty()) ||
        text.find('\r') != std::string::npos ||
        (!text.empty() && (kTrimmed.find(text.front()) != std::string_view::npos ||
                           kTrimmed.find(text.back()) != std::string_view::npos)))
        return false;
    const std::string &packed = e.GetAttributesString();
    std::size_t marks = 0;
    for (std::size_t i = 0; i + 1 < packed.size(); ++i) {
        if (packed[i] == '"' && packed[i + 1] == '\r')
            ++marks;
    }
    std::size_t opens = 0;
    for (std::size_t at = packed.find("=\""); at != std::string::npos;
         at = packed.find("=\"", at + 2))
        ++opens;
    if (marks != opens)
        return false;
    std::vector<XML::WTAttribStdStringPair> attributes;
    XML::StringToAttribStdStringVec(packed, attributes);
    for (const auto &attribute : attributes) {
        if (attribute.second.find_first_of("\r\n\t") != std::string::npos)
            return false;
    }
    for (const XML::CXMLElement *child : e.GetSubElements()) {
        if (!RoundTrips(*child))
            return false;
    }
    return true;
}

// True when expat read a declaration naming an encoding other than UTF-8: asked of the parser,
// since a declaration may hold the word in other places than its encoding.
bool DeclaresOtherThanUTF8(const char *text, std::size_t size) {
    XML::CXMLElement probe;
    XML::WCExpatXMLParser parser(&probe);
    bool closed = false;
    (void)parser.Parse(text, size, closed);
    const auto &encoding = parser.GetXMLEncoding();
    return !encoding.empty() && strcasecmp(encoding.c_str(), "UTF-8") != 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const auto previous = XML::SetXMLLogHandler(&Quiet);
    (void)previous;
    const char *text = reinterpret_cast<const char *>(data);

    XML::CXMLElement root;
    XML::CXMLTreeBuilder builder(root);
    const WTErr err = builder.BuildFromSingleBuffer(text, size);
    if (size < 4 && err != eMemNullPointer)
        std::abort();

    // Fed in two chunks, the same bytes must give the same tree. Only the tree: a parse that is
    // never final may see an error in what follows the root later or not at all.
    XML::CXMLElement chunked;
    XML::CXMLTreeBuilder chunkedBuilder(chunked);
    bool done = false;
    WTErr chunkedErr = chunkedBuilder.BuildFromBuffer(text, size / 2, done);
    if (chunkedErr == eNoErr)
        chunkedErr = chunkedBuilder.BuildFromBuffer(text + size / 2, size - size / 2, done);
    if (err == eNoErr && chunkedErr == eNoErr && size >= 4 && root.IsValid() &&
        !SameTree(root, chunked))
        std::abort();

    if (err != eNoErr || !root.IsValid() || !RoundTrips(root))
        return 0;
    // A document declared in another encoding is read through that encoding's character classes
    // and written as UTF-8, so expat may judge the written names differently; only documents read
    // as UTF-8 must read back to the same tree.
    if (DeclaresOtherThanUTF8(text, size))
        return 0;
    std::string first;
    XML::WriteXMLToString(first, &root, true, true, 0);
    XML::CXMLElement again;
    XML::CXMLTreeBuilder againBuilder(again);
    if (againBuilder.BuildFromSingleBuffer(first.data(), first.size()) != eNoErr ||
        !again.IsValid() || !SameTree(root, again))
        std::abort();
    std::string second;
    XML::WriteXMLToString(second, &again, true, true, 0);
    if (first != second)
        std::abort();
    return 0;
}
