#include "Utilities/XML/Code/WUPlainXMLReader.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WCExpatXMLParser.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

namespace {

// Character classes of the accepted subset, one table per context.
struct WSPlainTables {
    bool m_NameStart[256] = {};
    bool m_Name[256] = {};
    bool m_Blank[256] = {};
    // Text bytes taken as they are: tab, line feed and printable ASCII but '<', '&' and ']'.
    bool m_Text[256] = {};
    // Attribute bytes taken as they are: printable ASCII but '<', '&' and both quotes.
    bool m_Value[256] = {};
    constexpr WSPlainTables() {
        for (int ch = 0; ch < 256; ++ch) {
            const bool letter = (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z');
            const bool digit = ch >= '0' && ch <= '9';
            m_NameStart[ch] = letter || ch == '_';
            m_Name[ch] = letter || digit || ch == '_' || ch == '-' || ch == '.';
            m_Blank[ch] = ch == ' ' || ch == '\t' || ch == '\n';
            const bool printable = ch >= 0x20 && ch < 0x7F;
            m_Text[ch] =
                (printable || ch == '\t' || ch == '\n') && ch != '<' && ch != '&' && ch != ']';
            m_Value[ch] = printable && ch != '<' && ch != '&' && ch != '"' && ch != '\'';
        }
    }
};
constexpr WSPlainTables kTables;

// Thrown inside the reader when the document leaves the subset; the caller gives it to expat.
constexpr int kDecline = eXMLParserFailed;

class WCPlainReader {
public:
    WCPlainReader(const char *text, std::uint64_t length, std::int32_t depthLimit)
        : m_p(text), m_end(text + length), m_depthLimit(depthLimit) {}

    void Read(CXMLElement &root) {
        SkipBlanks();
        Expect('<');
        ReadStartTag(&root);
        while (!m_open.empty())
            ReadContent();
        SkipBlanks();
        if (m_p != m_end)
            throw kDecline;
        root.SetError(eNoErr);
    }

private:
    struct WSOpen {
        CXMLElement *m_Element;
        std::string_view m_Name;
    };

    unsigned char Peek() const {
        if (m_p == m_end)
            throw kDecline;
        return static_cast<unsigned char>(*m_p);
    }
    void Expect(char ch) {
        if (Peek() != static_cast<unsigned char>(ch))
            throw kDecline;
        ++m_p;
    }
    bool SkipBlanks() {
        const char *const start = m_p;
        while (m_p != m_end && kTables.m_Blank[static_cast<unsigned char>(*m_p)])
            ++m_p;
        return m_p != start;
    }
    std::string_view ReadName() {
        if (!kTables.m_NameStart[Peek()])
            throw kDecline;
        const char *const start = m_p;
        while (m_p != m_end && kTables.m_Name[static_cast<unsigned char>(*m_p)])
            ++m_p;
        return std::string_view(start, static_cast<std::size_t>(m_p - start));
    }

    // Reads a reference after its '&' and appends its character as UTF-8.
    void ReadReference(std::string &out) {
        if (Peek() != '#') {
            static constexpr std::pair<std::string_view, char> kNamed[] = {
                {"amp;", '&'}, {"lt;", '<'}, {"gt;", '>'}, {"quot;", '"'}, {"apos;", '\''}};
            const std::string_view rest(m_p, static_cast<std::size_t>(m_end - m_p));
            for (const auto &[name, ch] : kNamed) {
                if (rest.substr(0, name.size()) == name) {
                    m_p += name.size();
                    out.push_back(ch);
                    return;
                }
            }
            throw kDecline;
        }
        ++m_p;
        const bool hex = Peek() == 'x';
        if (hex)
            ++m_p;
        std::uint32_t code = 0;
        int digits = 0;
        for (;; ++digits, ++m_p) {
            const unsigned char ch = Peek();
            std::uint32_t value = 0;
            if (ch >= '0' && ch <= '9')
                value = ch - '0';
            else if (hex && ch >= 'a' && ch <= 'f')
                value = ch - 'a' + 10;
            else if (hex && ch >= 'A' && ch <= 'F')
                value = ch - 'A' + 10;
            else
                break;
            code = code * (hex ? 16u : 10u) + value;
            if (code > 0x10FFFF)
                throw kDecline;
        }
        if (digits == 0)
            throw kDecline;
        Expect(';');
        // The characters XML allows; a reference to any other is not well-formed.
        const bool allowed = code == 0x9 || code == 0xA || code == 0xD ||
                             (code >= 0x20 && code <= 0xD7FF) ||
                             (code >= 0xE000 && code <= 0xFFFD) || code >= 0x10000;
        if (!allowed)
            throw kDecline;
        if (code < 0x80) {
            out.push_back(static_cast<char>(code));
        } else if (code < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (code >> 6)));
            out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
        } else if (code < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | (code >> 12)));
            out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | (code >> 18)));
            out.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
        }
    }

    // The start tag after its '<': `target` is the root for the first tag, else null for a new
    // child of the open element.
    void ReadStartTag(CXMLElement *target) {
        const std::string_view name = ReadName();
        CXMLElement *element = target;
        if (element == nullptr) {
            // The expat parser drops elements past the depth limit; those documents go to it.
            if (static_cast<std::int64_t>(m_open.size()) > m_depthLimit)
                throw kDecline;
            element = new CXMLElement();
            auto &siblings = m_open.back().m_Element->GetSubElements();
            if (siblings.capacity() < 4)
                siblings.reserve(4);
            siblings.push_back(element);
        }
        // SetName cuts at the name's capacity; the copy only adds the terminating zero.
        char cut[256];
        const std::size_t kept = std::min(name.size(), sizeof cut - 1);
        std::memcpy(cut, name.data(), kept);
        cut[kept] = 0;
        element->SetName(cut);

        std::string packed;
        std::vector<std::string_view> names;
        while (true) {
            const bool blank = SkipBlanks();
            const unsigned char ch = Peek();
            if (ch == '/') {
                ++m_p;
                Expect('>');
                element->SetAttributesString(std::move(packed));
                return;
            }
            if (ch == '>') {
                ++m_p;
                element->SetAttributesString(std::move(packed));
                m_open.push_back({element, name});
                return;
            }
            if (!blank)
                throw kDecline;
            const std::string_view attribute = ReadName();
            for (const std::string_view other : names) {
                if (other == attribute)
                    throw kDecline;
            }
            names.push_back(attribute);
            SkipBlanks();
            Expect('=');
            SkipBlanks();
            const unsigned char quote = Peek();
            if (quote != '"' && quote != '\'')
                throw kDecline;
            ++m_p;
            packed.append(attribute);
            packed.append("=\"", 2);
            while (true) {
                const unsigned char value = Peek();
                if (kTables.m_Value[value]) {
                    packed.push_back(static_cast<char>(value));
                    ++m_p;
                } else if (value == quote) {
                    ++m_p;
                    break;
                } else if (value == '"' || value == '\'') {
                    packed.push_back(static_cast<char>(value));
                    ++m_p;
                } else if (value == '\t' || value == '\n') {
                    // Blanks in attribute values are normalised to spaces.
                    packed.push_back(' ');
                    ++m_p;
                } else if (value == '&') {
                    ++m_p;
                    ReadReference(packed);
                } else {
                    throw kDecline;
                }
            }
            packed.append("\"\r", 2);
        }
    }

    // Text bytes that need no look: sixteen at a time where the compiler offers vectors, so a
    // block with a line feed is walked byte by byte and the next one is tested whole again.
    void SkipPlainText() {
#if defined(__GNUC__)
        using WTBytes = unsigned char __attribute__((vector_size(16)));
        auto splat = [](unsigned char ch) {
            WTBytes bytes = {};
            for (int lane = 0; lane < 16; ++lane)
                bytes[lane] = ch;
            return bytes;
        };
        const WTBytes space = splat(0x20), tilde = splat(0x7E), lt = splat('<'), amp = splat('&'),
                      bracket = splat(']');
        while (m_end - m_p >= 16) {
            WTBytes bytes;
            std::memcpy(&bytes, m_p, 16);
            const auto odd = (bytes < space) | (bytes > tilde) | (bytes == lt) | (bytes == amp) |
                             (bytes == bracket);
            std::uint64_t halves[2];
            std::memcpy(halves, &odd, sizeof halves);
            if ((halves[0] | halves[1]) != 0) {
                const char *const block = m_p + 16;
                while (m_p != block && kTables.m_Text[static_cast<unsigned char>(*m_p)])
                    ++m_p;
                if (m_p != block)
                    return;
                continue;
            }
            m_p += 16;
        }
#endif
        while (m_p != m_end && kTables.m_Text[static_cast<unsigned char>(*m_p)])
            ++m_p;
    }

    // Text up to the next tag of the open element, then that tag.
    void ReadContent() {
        CXMLElement &element = *m_open.back().m_Element;
        const char *run = m_p;
        while (true) {
            SkipPlainText();
            const unsigned char ch = Peek();
            if (ch == '<')
                break;
            if (ch == ']') {
                // "]]>" may not appear in text.
                if (m_end - m_p >= 3 && m_p[1] == ']' && m_p[2] == '>')
                    throw kDecline;
                ++m_p;
            } else if (ch == '&') {
                WCExpatXMLParser::AppendElementText(element, run,
                                                    static_cast<std::uint64_t>(m_p - run));
                ++m_p;
                m_reference.clear();
                ReadReference(m_reference);
                WCExpatXMLParser::AppendElementText(element, m_reference.data(),
                                                    m_reference.size());
                run = m_p;
            } else if (kTables.m_Text[ch]) {
                ++m_p;
            } else {
                throw kDecline;
            }
        }
        WCExpatXMLParser::AppendElementText(element, run, static_cast<std::uint64_t>(m_p - run));
        ++m_p;
        const unsigned char next = Peek();
        if (next == '/') {
            ++m_p;
            const std::string_view name = ReadName();
            SkipBlanks();
            Expect('>');
            if (name != m_open.back().m_Name)
                throw kDecline;
            WCExpatXMLParser::CloseElementText(element);
            m_open.pop_back();
            return;
        }
        // Comments, CDATA and processing instructions are expat's.
        if (!kTables.m_NameStart[next])
            throw kDecline;
        ReadStartTag(nullptr);
    }

    const char *m_p;
    const char *const m_end;
    const std::int32_t m_depthLimit;
    std::vector<WSOpen> m_open;
    std::string m_reference;
};

bool IsEmpty(const CXMLElement &root) noexcept {
    return root.GetName().empty() && root.GetText().empty() && !root.IsCDATA() &&
           root.GetAttributesString().empty() && root.GetSubElements().empty();
}

} // namespace

bool ReadPlainXML(const char *text, std::uint64_t length, std::int32_t depthLimit,
                  CXMLElement &root) {
    if (text == nullptr || !IsEmpty(root))
        return false;
    try {
        WCPlainReader(text, length, depthLimit).Read(root);
        return true;
    } catch (int) {
    } catch (const std::bad_alloc &) {
    }
    // Back to the empty element it was, for expat.
    root.Clear();
    return false;
}

} // namespace XML

MIREL_NAMESPACE_END
