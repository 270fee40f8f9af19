#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include "Utilities/XML/Code/WCXMLFileIO.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace PugiXML {

// Expands the template language of GUI and algorithm documents into plain XML text.
//
// The root and its structure down to the depth (set_depth, at most 100) are written as they
// stand; below that depth each element is a statement: "AccumVar" and "ConfigVar" declare
// variables, "Template" stores a body under its "Name", "Instance" and "InstanceArray" write a
// stored body with the instance's attributes as a new scope of variables, and anything else is
// printed unchanged. In a body, `$(Name)` and `$(Name=Default)` take the innermost scope's value
// (accumulating variables take the sum over all scopes).
//
// Bad documents end with text, never a hang: an unknown template, and an instance of a template
// that is already being expanded (a cycle), write nothing; instances nest at most
// kMaxInstanceNesting deep; and the written text stops at the output limit, which makes the write
// functions answer eXMLElementIncomplete.
//
// A template is known from the point where its "Template" statement stands, so a document defines
// its templates before it uses them. One object expands one document at a time; the write
// functions may be called again and start from fresh scopes. [any-thread] on distinct objects.
class WCXMLTemplatizer {
public:
    using WTName = WCFixedString<127>;
    using WTScope = std::map<WTName, WTName>;

    static constexpr int kMaxDepth = 100;
    static constexpr int kMaxInstanceNesting = 100;
    static constexpr std::uint64_t kDefaultOutputLimit = 64ull * 1024 * 1024;

    // With a document of its own, filled by the read functions.
    WCXMLTemplatizer();
    // On the caller's document, which must outlive this object.
    explicit WCXMLTemplatizer(pugi::xml_document &doc);
    WCXMLTemplatizer(const WCXMLTemplatizer &) = delete;
    WCXMLTemplatizer &operator=(const WCXMLTemplatizer &) = delete;

    // Replace the document. The parse's code: eXMLTreeNotValid, eXMLTreeEmpty, a file code.
    int read_from_file(const XML::WTXMLPath &path);
    int read_from_mem_obj(const Utils::WCStConstMemObj &memObj);
    int read_from_str(const std::string &text);

    // Levels below the root kept as structure. Negative acts as 0, above 100 as 100.
    void set_depth(int depth) noexcept { m_Depth = depth; }
    int get_depth() const noexcept { return m_Depth; }
    // Bytes the expansion may write before it is cut.
    void set_output_limit(std::uint64_t bytes) noexcept { m_OutputLimit = bytes; }

    // The expanded text. eXMLTreeEmpty without a root, eXMLElementIncomplete when cut at the
    // output limit (what was written stays), a file code for the file form (nothing is written
    // then: the file appears complete or not at all).
    int write_to_file(const XML::WTXMLPath &path);
    int write_to_mem_obj(Utils::WCStMemObj &memObj);
    int write_to_ostream(std::ostream &stream);
    int write_to_str(std::string &text);
    // A debugging dump of the templates read so far: each name between "---\n" and "\n...\n".
    void templates_to_stream(std::ostream &stream) const;

    // The steps of the pass; public so that tools and tests can drive them one at a time.
    int resolve_doc_to_stream(std::ostream &stream);
    void recursive_resolve_doc_to_stream(const pugi::xml_node_iterator &it, std::ostream &stream,
                                         int depth);
    void resolveSegment(const pugi::xml_node &node, std::ostream &stream);
    void read_template(const pugi::xml_node &node);
    void resolve_instance_to_stream(const pugi::xml_node &node, std::ostream &stream);
    void resolve_array_instance_to_stream(const pugi::xml_node &node, std::ostream &stream);
    void resolve_vars_in_str(std::string_view text, std::ostream &stream);
    bool resolve_var(const WTName &name, const WTName &defaultValue, WTName &value) const;
    bool is_accum_var(const WTName &name) const;
    void write_doc_prefix_to_stream(const pugi::xml_node &node, std::ostream &stream);
    void write_doc_suffix_to_stream(const pugi::xml_node &node, std::ostream &stream);

    // Scopes, for tests and tools: base scope 0 holds accumulating variables, 1 configuration.
    const std::vector<WTScope> &GetScopes() const noexcept { return m_Scopes; }
    std::uint64_t GetNumTemplates() const noexcept { return m_Templates.size(); }

private:
    void Emit(std::ostream &stream, std::string_view text);
    void EmitBody(const pugi::xml_node &body, std::ostream &stream);
    void ResolveVarsInto(std::string_view text, std::string &out);
    // The node's attributes as a scope, names and values cut to 127 characters, later ones win.
    static WTScope ScopeOf(const pugi::xml_node &node);
    const pugi::xml_node *FindTemplate(const pugi::xml_node &instance, WTName &name);
    void Reset();
    int ParseResult(int status) const;

    std::unique_ptr<pugi::xml_document> m_OwnDoc;
    pugi::xml_document &m_Doc;
    std::map<WTName, pugi::xml_node> m_Templates;
    std::set<WTName> m_AccumNames;
    std::vector<WTScope> m_Scopes;
    int m_Depth = 0;

    // Names of the templates being expanded, innermost last.
    std::vector<WTName> m_ActiveTemplates;
    std::uint64_t m_OutputLimit = kDefaultOutputLimit;
    std::uint64_t m_Written = 0;
    bool m_Cut = false;
};

} // namespace PugiXML

MIREL_NAMESPACE_END
