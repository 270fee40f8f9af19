#include "Utilities/XML/Code/WriteXMLToStream.h"

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "Utilities/XML/Code/CXMLElement.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

namespace {

struct WSStreamSink {
    std::ostream &stream;
    void put(std::string_view text) { stream.write(text.data(), std::streamsize(text.size())); }
    void put(char ch) { stream.put(ch); }
};

struct WSStringSink {
    std::string &target;
    void put(std::string_view text) { target.append(text.data(), text.size()); }
    void put(char ch) { target.push_back(ch); }
};

// The characters written as entities.
struct WSEntityTable {
    bool m_Escaped[256] = {};
    constexpr WSEntityTable() {
        for (const unsigned char ch : {'&', '<', '>', '"', '\''})
            m_Escaped[ch] = true;
    }
};
constexpr WSEntityTable kEntities;

// The index of the first character of `text` that needs an entity, or its size. Long texts (a
// preset's values) are mostly plain, so sixteen bytes are tested at once where the compiler
// offers vectors.
std::uint64_t FindEscaped(std::string_view text) noexcept {
    const char *const data = text.data();
    const std::uint64_t size = text.size();
    std::uint64_t i = 0;
#if defined(__GNUC__)
    using WTBytes = unsigned char __attribute__((vector_size(16)));
    auto splat = [](unsigned char ch) {
        WTBytes bytes = {};
        for (int lane = 0; lane < 16; ++lane)
            bytes[lane] = ch;
        return bytes;
    };
    const WTBytes amp = splat('&'), lt = splat('<'), gt = splat('>'), quot = splat('"'),
                  apos = splat('\'');
    for (; i + 16 <= size; i += 16) {
        WTBytes bytes;
        std::memcpy(&bytes, data + i, 16);
        const auto hits =
            (bytes == amp) | (bytes == lt) | (bytes == gt) | (bytes == quot) | (bytes == apos);
        std::uint64_t halves[2];
        std::memcpy(halves, &hits, sizeof halves);
        if ((halves[0] | halves[1]) != 0)
            break;
    }
#endif
    for (; i < size; ++i) {
        if (kEntities.m_Escaped[static_cast<unsigned char>(data[i])])
            return i;
    }
    return size;
}

template <typename Sink>
void PutEscaped(Sink &sink, std::string_view text) {
    while (true) {
        const std::uint64_t at = FindEscaped(text);
        sink.put(text.substr(0, at));
        if (at == text.size())
            return;
        switch (text[at]) {
        case '&': sink.put("&amp;"); break;
        case '<': sink.put("&lt;"); break;
        case '>': sink.put("&gt;"); break;
        case '"': sink.put("&quot;"); break;
        default: sink.put("&apos;"); break;
        }
        text.remove_prefix(at + 1);
    }
}

template <typename Sink>
void PutIndent(Sink &sink, bool indent, int level) {
    if (!indent)
        return;
    for (int i = 0; i < level; ++i)
        sink.put("    ");
}

template <typename Sink>
void PutAttributes(Sink &sink, const std::string &packed) {
    // Walks the packed form directly: names and values are written whole, never cut.
    std::uint64_t position = 0;
    while (position + 2 <= packed.size()) {
        const std::uint64_t mark = packed.find("=\"", position, 2);
        if (mark == std::string::npos)
            return;
        const std::uint64_t close = packed.find("\"\r", mark + 2, 2);
        if (close == std::string::npos)
            return;
        sink.put(' ');
        sink.put(std::string_view(packed).substr(position, mark - position));
        sink.put("=\"");
        PutEscaped(sink, std::string_view(packed).substr(mark + 2, close - mark - 2));
        sink.put('"');
        position = close + 2;
    }
}

template <typename Sink>
void PutCDATA(Sink &sink, const std::string &text, bool indent, int level) {
    std::string split(text);
    // The search goes on behind each replacement, so a "]]>" is never split twice.
    static constexpr std::string_view kClose = "]]>";
    static constexpr std::string_view kSplit = "]]]]><![CDATA[>";
    for (std::uint64_t at = split.find(kClose); at != std::string::npos;
         at = split.find(kClose, at + kSplit.size()))
        split.replace(at, kClose.size(), kSplit);
    PutIndent(sink, indent, level);
    sink.put("<![CDATA[");
    sink.put('\n');
    PutIndent(sink, indent, level);
    sink.put(split);
    sink.put('\n');
    PutIndent(sink, indent, level);
    sink.put("]]>");
}

struct WSOpenElement {
    const CXMLElement *element;
    int level;          // level of the children
    std::uint64_t next; // next child to write
    bool block;         // children or CDATA: the close tag goes on its own indented line
};

template <typename Sink>
void WriteTree(Sink &sink, const CXMLElement *root, bool checkValidity, bool indent, int level) {
    if (root == nullptr)
        return;
    std::vector<WSOpenElement> open;
    auto writeOpen = [&](const CXMLElement *element, int elementLevel) {
        if (checkValidity && !element->IsValid()) {
            sink.put("XML not valid");
            sink.put('\n');
            return;
        }
        PutIndent(sink, indent, elementLevel);
        sink.put('<');
        sink.put(element->GetName().view());
        PutAttributes(sink, element->GetAttributesString());
        const bool hasChildren = !element->GetSubElements().empty();
        const std::string &text = element->GetText();
        if (!hasChildren && text.empty()) {
            sink.put("/>");
            sink.put('\n');
            return;
        }
        sink.put('>');
        const bool block = hasChildren || element->IsCDATA();
        int innerLevel = elementLevel;
        if (block) {
            sink.put('\n');
            ++innerLevel;
        }
        if (!text.empty()) {
            if (element->IsCDATA())
                PutCDATA(sink, text, indent, innerLevel);
            else
                PutEscaped(sink, text);
        }
        if (block)
            sink.put('\n');
        open.push_back({element, innerLevel, 0, block});
    };
    auto writeClose = [&](const WSOpenElement &entry) {
        if (entry.block)
            PutIndent(sink, indent, entry.level - 1);
        sink.put("</");
        sink.put(entry.element->GetName().view());
        sink.put('>');
        sink.put('\n');
    };

    writeOpen(root, level);
    while (!open.empty()) {
        WSOpenElement &top = open.back();
        const auto &children = top.element->GetSubElements();
        if (top.next < children.size()) {
            const CXMLElement *child = children[top.next++];
            const int childLevel = top.level;
            writeOpen(child, childLevel); // may grow `open`; `top` is not used after this
        } else {
            const WSOpenElement done = top;
            open.pop_back();
            writeClose(done);
        }
    }
}

} // namespace

void WriteXMLToStream(std::ostream &stream, const CXMLElement *element, bool checkValidity,
                      bool indent, int level) {
    WSStreamSink sink{stream};
    WriteTree(sink, element, checkValidity, indent, level);
}

void WriteXMLToString(std::string &target, const CXMLElement *element, bool checkValidity,
                      bool indent, int level) {
    WSStringSink sink{target};
    WriteTree(sink, element, checkValidity, indent, level);
}

} // namespace XML

MIREL_NAMESPACE_END
