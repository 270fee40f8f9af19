#include "Utilities/XML/Code/WCXMLTemplatizer.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <sstream>

#include <boost/regex.hpp>

#include "Utilities/XML/Code/PugiXML.h"

MIREL_NAMESPACE_BEGIN

namespace PugiXML {

namespace {

// Compiled once; a function-local static is initialised thread-safely and only read afterwards.
const boost::regex &VarExpression() {
    static const boost::regex expression("\\$\\(([\\w]+)(=([\\w]+))?\\)");
    return expression;
}

// atoi without its undefined overflow: leading blanks, a sign, digits; clamped to int.
int ClampedAtoi(const char *text) {
    errno = 0;
    const long long value = std::strtoll(text, nullptr, 10);
    if (value > INT_MAX)
        return INT_MAX;
    if (value < INT_MIN)
        return INT_MIN;
    return static_cast<int>(value);
}

// Writes an element's own text, escaped, for the structural levels, whose elements are written
// by hand rather than by pugixml.
void WriteEscaped(std::string &out, const char *text) {
    for (const char *p = text; *p != '\0'; ++p) {
        switch (*p) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        default: out += *p;
        }
    }
}

// Collects pugixml's printing into a string.
class StringWriter : public pugi::xml_writer {
public:
    explicit StringWriter(std::string &text) : m_Text(text) {}
    void write(const void *data, std::size_t size) override {
        m_Text.append(static_cast<const char *>(data), size);
    }

private:
    std::string &m_Text;
};

} // namespace

WCXMLTemplatizer::WCXMLTemplatizer()
    : m_OwnDoc(std::make_unique<pugi::xml_document>()), m_Doc(*m_OwnDoc) {}

WCXMLTemplatizer::WCXMLTemplatizer(pugi::xml_document &doc) : m_Doc(doc) {}

int WCXMLTemplatizer::read_from_file(const XML::WTXMLPath &path) {
    Reset();
    return read_xml_from_file(path, m_Doc);
}

int WCXMLTemplatizer::read_from_mem_obj(const Utils::WCStConstMemObj &memObj) {
    Reset();
    if (memObj.Empty())
        return eXMLTreeEmpty;
    return ParseResult(read_xml_from_mem_obj(memObj, m_Doc));
}

int WCXMLTemplatizer::ParseResult(int status) const {
    if (status == pugi::status_no_document_element)
        return eXMLTreeEmpty;
    if (status != pugi::status_ok)
        return eXMLTreeNotValid;
    return m_Doc.document_element() ? eNoErr : eXMLTreeEmpty;
}

int WCXMLTemplatizer::read_from_str(const std::string &text) {
    Reset();
    return ParseResult(read_xml_from_string(text, m_Doc));
}

void WCXMLTemplatizer::Reset() {
    m_Templates.clear();
    m_AccumNames.clear();
    m_Scopes.clear();
    m_ActiveTemplates.clear();
    m_Written = 0;
    m_Cut = false;
}

int WCXMLTemplatizer::write_to_file(const XML::WTXMLPath &path) {
    std::string text;
    const int err = write_to_str(text);
    if (err != eNoErr)
        return err;
    if (path.has_parent_path()) {
        const int folderErr = XML::CreateFolder(path.parent_path());
        if (folderErr != eNoErr)
            return folderErr;
    }
    return XML::WriteWholeFile(path, text.data(), text.size());
}

int WCXMLTemplatizer::write_to_mem_obj(Utils::WCStMemObj &memObj) {
    std::string text;
    const int err = write_to_str(text);
    if (err != eNoErr && err != eXMLElementIncomplete)
        return err;
    const int assignErr = memObj.Assign(text.data(), text.size());
    return assignErr != eNoErr ? assignErr : err;
}

int WCXMLTemplatizer::write_to_ostream(std::ostream &stream) {
    return resolve_doc_to_stream(stream);
}

int WCXMLTemplatizer::write_to_str(std::string &text) {
    std::ostringstream stream;
    const int err = resolve_doc_to_stream(stream);
    text = std::move(stream).str();
    return err;
}

void WCXMLTemplatizer::templates_to_stream(std::ostream &stream) const {
    for (const auto &[name, node] : m_Templates)
        stream << "---\n" << name.c_str() << "\n...\n";
}

void WCXMLTemplatizer::Emit(std::ostream &stream, std::string_view text) {
    if (m_Cut)
        return;
    if (text.size() > m_OutputLimit - m_Written) {
        m_Cut = true;
        return;
    }
    m_Written += text.size();
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

int WCXMLTemplatizer::resolve_doc_to_stream(std::ostream &stream) {
    Reset();
    const pugi::xml_node root = m_Doc.document_element();
    if (!root)
        return eXMLTreeEmpty;
    try {
        write_doc_prefix_to_stream(root, stream);
        m_Scopes.resize(2);
        int depth = m_Depth > kMaxDepth ? kMaxDepth : m_Depth;
        if (depth < 0)
            depth = 0;
        for (auto it = root.begin(); it != root.end(); ++it)
            recursive_resolve_doc_to_stream(it, stream, depth);
        write_doc_suffix_to_stream(root, stream);
    } catch (const std::bad_alloc &) {
        m_Scopes.clear();
        return eMemOutOfMemory;
    }
    m_Scopes.clear();
    return m_Cut ? eXMLElementIncomplete : eNoErr;
}

void WCXMLTemplatizer::recursive_resolve_doc_to_stream(const pugi::xml_node_iterator &it,
                                                       std::ostream &stream, int depth) {
    const pugi::xml_node node = *it;
    if (m_Cut)
        return;
    switch (node.type()) {
    case pugi::node_element: break;
    case pugi::node_pcdata: {
        std::string text;
        WriteEscaped(text, node.value());
        text += '\n';
        Emit(stream, text);
        return;
    }
    case pugi::node_cdata: {
        std::string text("<![CDATA[");
        text.append(node.value()).append("]]>\n");
        Emit(stream, text);
        return;
    }
    default: return; // comments and processing instructions are not part of the result
    }
    if (depth <= 0) {
        resolveSegment(node, stream);
        return;
    }
    write_doc_prefix_to_stream(node, stream);
    for (auto child = node.begin(); child != node.end(); ++child)
        recursive_resolve_doc_to_stream(child, stream, depth - 1);
    write_doc_suffix_to_stream(node, stream);
}

void WCXMLTemplatizer::resolveSegment(const pugi::xml_node &node, std::ostream &stream) {
    const char *name = node.name();
    if (std::strcmp(name, "AccumVar") == 0) {
        const WTName varName(node.child_value());
        const pugi::xml_attribute init = node.attribute("init");
        m_AccumNames.insert(varName);
        m_Scopes[0][varName] = init ? init.value() : "0";
    } else if (std::strcmp(name, "ConfigVar") == 0) {
        m_Scopes[1][WTName(node.child_value())] = node.attribute("init").value();
    } else if (std::strcmp(name, "Template") == 0) {
        read_template(node);
    } else if (std::strcmp(name, "Instance") == 0) {
        resolve_instance_to_stream(node, stream);
    } else if (std::strcmp(name, "InstanceArray") == 0) {
        resolve_array_instance_to_stream(node, stream);
    } else {
        std::string text;
        StringWriter writer(text);
        node.print(writer, " ", pugi::format_indent);
        Emit(stream, text);
    }
}

void WCXMLTemplatizer::read_template(const pugi::xml_node &node) {
    m_Templates[WTName(node.attribute("Name").value())] = node;
}

WCXMLTemplatizer::WTScope WCXMLTemplatizer::ScopeOf(const pugi::xml_node &node) {
    WTScope scope;
    for (const pugi::xml_attribute &attribute : node.attributes())
        scope[WTName(attribute.name())] = attribute.value();
    return scope;
}

const pugi::xml_node *WCXMLTemplatizer::FindTemplate(const pugi::xml_node &instance, WTName &name) {
    std::string resolved;
    ResolveVarsInto(instance.attribute("Template").value(), resolved);
    name = resolved;
    const auto found = m_Templates.find(name);
    if (found == m_Templates.end())
        return nullptr;
    // A template inside its own expansion would never end: the inner instance writes nothing.
    for (const WTName &active : m_ActiveTemplates)
        if (active == name)
            return nullptr;
    if (m_ActiveTemplates.size() >= static_cast<std::size_t>(kMaxInstanceNesting))
        return nullptr;
    return &found->second;
}

void WCXMLTemplatizer::EmitBody(const pugi::xml_node &body, std::ostream &stream) {
    // Each expansion costs a short line of the limit, so that bodies writing nothing cannot loop
    // for billions of array entries: the default limit allows about a million expansions.
    constexpr std::uint64_t kExpansionCost = 64;
    if (m_Cut || m_OutputLimit - m_Written < kExpansionCost) {
        m_Cut = true;
        return;
    }
    m_Written += kExpansionCost;
    std::string text;
    // Text in a body is written like its elements, so a template can fill a structural element's
    // text; a body's leading text is kept in the template node itself when the document is read.
    if (body.value()[0] != '\0') {
        WriteEscaped(text, body.value());
        text += '\n';
        resolve_vars_in_str(text, stream);
    }
    for (const pugi::xml_node &child : body.children()) {
        if (m_Cut)
            return;
        const pugi::xml_node_type type = child.type();
        if (type != pugi::node_element && type != pugi::node_pcdata && type != pugi::node_cdata)
            continue;
        if (std::strcmp(child.name(), "Instance") == 0) {
            resolve_instance_to_stream(child, stream);
        } else if (std::strcmp(child.name(), "InstanceArray") == 0) {
            resolve_array_instance_to_stream(child, stream);
        } else {
            text.clear();
            StringWriter writer(text);
            child.print(writer, " ", pugi::format_indent);
            resolve_vars_in_str(text, stream);
        }
    }
}

void WCXMLTemplatizer::resolve_instance_to_stream(const pugi::xml_node &node,
                                                  std::ostream &stream) {
    m_Scopes.push_back(ScopeOf(node));
    WTName name;
    if (const pugi::xml_node *body = FindTemplate(node, name)) {
        m_ActiveTemplates.push_back(name);
        EmitBody(*body, stream);
        m_ActiveTemplates.pop_back();
    }
    m_Scopes.pop_back();
}

void WCXMLTemplatizer::resolve_array_instance_to_stream(const pugi::xml_node &node,
                                                        std::ostream &stream) {
    m_Scopes.push_back(ScopeOf(node));
    WTName name;
    const pugi::xml_node *body = FindTemplate(node, name);
    if (body != nullptr) {
        std::string sizeText;
        ResolveVarsInto(node.attribute("ArraySize").value(), sizeText);
        // A size that is no number names a variable, as "ArrayVar" does, so a configuration
        // variable can size the arrays of a whole document.
        WTName sizeValue(sizeText);
        char *numberEnd = nullptr;
        (void)std::strtoll(sizeValue.c_str(), &numberEnd, 10);
        if (numberEnd == sizeValue.c_str())
            resolve_var(WTName(sizeText), WTName(sizeText), sizeValue);
        const int count = ClampedAtoi(sizeValue.c_str());
        const WTName loopVar(node.attribute("ArrayVar").value());
        WTName startText;
        resolve_var(loopVar, WTName("0"), startText);
        const long long start = ClampedAtoi(startText.c_str());
        m_ActiveTemplates.push_back(name);
        for (int index = 0; index < count && !m_Cut; ++index) {
            WTName value;
            value << (start + index);
            if (!loopVar.empty())
                m_Scopes.back()[loopVar] = value;
            EmitBody(*body, stream);
        }
        m_ActiveTemplates.pop_back();
    }
    m_Scopes.pop_back();
}

void WCXMLTemplatizer::ResolveVarsInto(std::string_view text, std::string &out) {
    const char *begin = text.data();
    const char *end = text.data() + text.size();
    const char *tail = begin;
    try {
        boost::cregex_iterator match(begin, end, VarExpression());
        for (const boost::cregex_iterator last; match != last; ++match) {
            const boost::cmatch &found = *match;
            out.append(tail, found[0].first);
            WTName value;
            resolve_var(WTName(std::string_view(found[1].first, found[1].length())),
                        WTName(found[3].matched
                                   ? std::string_view(found[3].first, found[3].length())
                                   : std::string_view()),
                        value);
            out.append(value.c_str(), value.size());
            tail = found[0].second;
        }
    } catch (const std::runtime_error &) {
        // The expression gave up on the text: what is left goes out unexpanded.
    }
    out.append(tail, end);
}

void WCXMLTemplatizer::resolve_vars_in_str(std::string_view text, std::ostream &stream) {
    std::string out;
    out.reserve(text.size());
    ResolveVarsInto(text, out);
    Emit(stream, out);
}

bool WCXMLTemplatizer::resolve_var(const WTName &name, const WTName &defaultValue,
                                   WTName &value) const {
    if (is_accum_var(name)) {
        long long sum = 0;
        bool found = false;
        for (const WTScope &scope : m_Scopes) {
            const auto it = scope.find(name);
            if (it != scope.end()) {
                sum += ClampedAtoi(it->second.c_str());
                found = true;
            }
        }
        value.clear();
        value << sum;
        return found;
    }
    value = defaultValue;
    for (auto scope = m_Scopes.rbegin(); scope != m_Scopes.rend(); ++scope) {
        const auto it = scope->find(name);
        if (it != scope->end()) {
            value = it->second;
            return true;
        }
    }
    return false;
}

bool WCXMLTemplatizer::is_accum_var(const WTName &name) const {
    return m_AccumNames.count(name) != 0;
}

void WCXMLTemplatizer::write_doc_prefix_to_stream(const pugi::xml_node &node,
                                                  std::ostream &stream) {
    // Values go out as they stand, without escaping: the root's attributes are the author's text.
    std::string text("<");
    text += node.name();
    for (const pugi::xml_attribute &attribute : node.attributes())
        text.append(" ").append(attribute.name()).append("=\"").append(attribute.value()) += '"';
    text += ">\n";
    // The embedded text of a structural element would otherwise be lost.
    if (node.value()[0] != '\0') {
        WriteEscaped(text, node.value());
        text += '\n';
    }
    Emit(stream, text);
}

void WCXMLTemplatizer::write_doc_suffix_to_stream(const pugi::xml_node &node,
                                                  std::ostream &stream) {
    std::string text("</");
    text.append(node.name()).append(">\n");
    Emit(stream, text);
}

} // namespace PugiXML

MIREL_NAMESPACE_END
