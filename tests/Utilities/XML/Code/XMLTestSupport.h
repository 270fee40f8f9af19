#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "Utilities/XML/Code/WCXMLLog.h"
#include "tests/support/WCGoldenFile.h"

namespace mirel_test {

namespace ML = MIREL_NAMESPACE_NAME;

// Collects what the XML layer logs while the object lives, instead of printing it.
class WCXMLLogRecorder {
public:
    WCXMLLogRecorder() { m_previous = ML::XML::SetXMLLogHandler(&Record); }
    ~WCXMLLogRecorder() {
        ML::XML::SetXMLLogHandler(m_previous);
        Messages().clear();
    }
    static std::vector<std::string> &Messages() {
        static std::vector<std::string> messages;
        return messages;
    }

private:
    static void Record(int severity, const char *message) {
        Messages().push_back(std::to_string(severity) + ":" + message);
    }
    ML::XML::WTXMLLogHandler m_previous;
};

// Parses `text` into `root`; returns the builder's code.
inline ML::WTErr Parse(std::string_view text, ML::XML::CXMLElement &root) {
    ML::XML::CXMLTreeBuilder builder(root);
    return builder.BuildFromSingleBuffer(text.data(), text.size());
}

// The text the tree builder writes for `root` (no declaration: the tree is not read here).
inline std::string Write(ML::XML::CXMLElement &root) {
    std::string text;
    ML::XML::CXMLTreeBuilder builder(root);
    builder.WriteToString(text);
    return text;
}

// A file's bytes, whole and unchanged; empty when it cannot be read.
inline std::string ReadFile(const std::filesystem::path &path) {
    return ReadFileText(path.string());
}

// The names of the descendants of a node, each followed by its children in brackets and a blank:
// "A B(C ) ". One form for both XML worlds, so a filter's results compare as one line.
inline std::string Names(const pugi::xml_node &node) {
    std::string names;
    for (const pugi::xml_node child : node.children())
        names +=
            std::string(child.name()) + (child.first_child() ? "(" + Names(child) + ")" : "") + " ";
    return names;
}

inline std::string Names(const ML::XML::CXMLElement &element) {
    std::string names;
    for (const ML::XML::CXMLElement *child : element.GetSubElements())
        names += std::string(child->GetName().c_str()) +
                 (child->GetSubElements().empty() ? "" : "(" + Names(*child) + ")") + " ";
    return names;
}

// Structural equality: names, texts, CDATA flags, packed attributes and children, in order.
inline bool SameTree(const ML::XML::CXMLElement &a, const ML::XML::CXMLElement &b) {
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

} // namespace mirel_test
