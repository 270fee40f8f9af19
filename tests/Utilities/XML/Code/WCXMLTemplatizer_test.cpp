#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "Utilities/XML/Code/PugiXML.h"
#include "Utilities/XML/Code/WCXMLTemplatizer.h"
#include "core/WTErrors.h"
#include "tests/Utilities/XML/Code/XMLTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;
using ML::PugiXML::WCXMLTemplatizer;

std::string DataPath(const char *name) {
    return std::string(MIREL_TEMPLATE_TEST_DATA "/") + name;
}

// Expands a document from tests/data/templates at `depth` and parses the result back.
std::string Expand(const char *name, int depth, pugi::xml_document &out, int *err = nullptr) {
    WCXMLTemplatizer templatizer;
    EXPECT_EQ(templatizer.read_from_file(DataPath(name)), ML::eNoErr);
    templatizer.set_depth(depth);
    std::string text;
    const int code = templatizer.write_to_str(text);
    if (err != nullptr)
        *err = code;
    else
        EXPECT_EQ(code, ML::eNoErr);
    EXPECT_EQ(ML::PugiXML::read_xml_from_string(text, out), 0) << text;
    return text;
}

TEST(WCXMLTemplatizerVariables, DefaultsMissingNamesAndEnclosingInstances) {
    pugi::xml_document doc;
    Expand("defaults.xml", 0, doc);
    const pugi::xml_node gain = doc.child("GUI").find_child_by_attribute("Knob", "Name", "Gain");
    ASSERT_TRUE(gain);
    EXPECT_STREQ(gain.attribute("Size").value(), "5");
    EXPECT_STREQ(gain.attribute("Missing").value(), "");
    EXPECT_STREQ(gain.attribute("Colour").value(), "Blue"); // from the configuration scope
    const pugi::xml_node pan = doc.child("GUI").find_child_by_attribute("Knob", "Name", "Pan");
    ASSERT_TRUE(pan);
    EXPECT_STREQ(pan.attribute("Size").value(), "7");
    EXPECT_STREQ(pan.attribute("Missing").value(), "7");
    // The unknown template wrote nothing, and no statement leaks into the result.
    EXPECT_FALSE(doc.child("GUI").find_child_by_attribute("Knob", "Name", "Lost"));
    EXPECT_FALSE(doc.child("GUI").child("Template"));
    EXPECT_FALSE(doc.child("GUI").child("ConfigVar"));
}

TEST(WCXMLTemplatizerVariables, AccumulatingVariableSumsThroughNestedInstances) {
    pugi::xml_document doc;
    Expand("accumulate.xml", 0, doc);
    EXPECT_STREQ(doc.child("GUI").child("Control").attribute("Top").value(), "13");
    EXPECT_STREQ(doc.child("GUI").attribute("Name").value(), "Main");
}

TEST(WCXMLTemplatizerVariables, ResolveVarSearchesInnermostScopeFirst) {
    WCXMLTemplatizer templatizer;
    ASSERT_EQ(templatizer.read_from_str("<R><Template Name='T'><E a='$(v)' b='$(w=d)'/></Template>"
                                        "<Instance Template='T' v='outer' w='x'/></R>"),
              ML::eNoErr);
    std::string text;
    ASSERT_EQ(templatizer.write_to_str(text), ML::eNoErr);
    EXPECT_NE(text.find("<E a=\"outer\" b=\"x\""), std::string::npos) << text;
    // Text that looks like a reference but does not match the expression stays as it is.
    ASSERT_EQ(templatizer.read_from_str("<R><Template Name='T'><E a='$(a b) $( ) $(x=) $(' "
                                        "t='$(Template)'/></Template><Instance Template='T'/></R>"),
              ML::eNoErr);
    ASSERT_EQ(templatizer.write_to_str(text), ML::eNoErr);
    EXPECT_NE(text.find("a=\"$(a b) $( ) $(x=) $(\" t=\"T\""), std::string::npos) << text;
}

TEST(WCXMLTemplatizerVariables, TextOfABodyIsExpandedWithItsElements) {
    WCXMLTemplatizer templatizer;
    ASSERT_EQ(templatizer.read_from_str("<R><Title><Template Name='Caption'>$(Name) &amp; Co<B/>"
                                        "<![CDATA[$(Name)]]>$(Name=x) end</Template>"
                                        "<Instance Template='Caption' Name='Gain'/></Title></R>"),
              ML::eNoErr);
    templatizer.set_depth(1);
    std::string text;
    ASSERT_EQ(templatizer.write_to_str(text), ML::eNoErr);
    // The leading text, a CDATA section and the text after an element all take the variables.
    EXPECT_EQ(text, "<R>\n<Title>\nGain &amp; Co\n<B />\n<![CDATA[Gain]]>Gain end</Title>\n</R>\n");
}

TEST(WCXMLTemplatizerArrays, CountsFromStartAndSkipsEmptyArrays) {
    pugi::xml_document doc;
    Expand("arrays.xml", 0, doc);
    std::string names;
    for (const pugi::xml_node slider : doc.child("GUI").children("Slider"))
        names += std::string(slider.attribute("Name").value()) + ",";
    // Start 4 from the array's own attribute, then a nested array counted through a reference,
    // then one whose size names a configuration variable.
    EXPECT_EQ(names, "Band4,Band5,Band6,Band0,Band1,Band7,Band8,");
}

TEST(WCXMLTemplatizerBadInput, CyclesAndRunawayArraysEnd) {
    WCXMLTemplatizer templatizer;
    ASSERT_EQ(templatizer.read_from_file(DataPath("cycle.xml")), ML::eNoErr);
    templatizer.set_output_limit(1 << 20);
    std::string text;
    // The self-instancing array runs into the limit; the cut is reported, nothing hangs.
    EXPECT_EQ(templatizer.write_to_str(text), ML::eXMLElementIncomplete);
    EXPECT_LE(text.size(), std::size_t(1) << 20);
    EXPECT_NE(text.find("<Many Index=\"1000\""), std::string::npos);
    EXPECT_EQ(text.find("<After"), std::string::npos);
    // The cycle A -> B -> A stopped at the second A, and Self inside Self wrote nothing.
    EXPECT_EQ(text.find("<Me />"), text.rfind("<Me />"));
    EXPECT_EQ(text.find("<Before />"), text.rfind("<Before />"));
    EXPECT_NE(text.find("<InB />"), std::string::npos);
}

TEST(WCXMLTemplatizerBadInput, HugeArrayOfEmptyBodyIsCutNotLooped) {
    WCXMLTemplatizer templatizer;
    ASSERT_EQ(templatizer.read_from_str("<R><Template Name='E'/>"
                                        "<InstanceArray Template='E' ArraySize='2147483647'/></R>"),
              ML::eNoErr);
    templatizer.set_output_limit(100000);
    std::string text;
    EXPECT_EQ(templatizer.write_to_str(text), ML::eXMLElementIncomplete);
}

TEST(WCXMLTemplatizerBadInput, UnreadableDocumentsAreRefused) {
    WCXMLTemplatizer templatizer;
    EXPECT_EQ(templatizer.read_from_str("<R><unclosed></R>"), ML::eXMLTreeNotValid);
    EXPECT_EQ(templatizer.read_from_str(""), ML::eXMLTreeEmpty);
    std::string text = "kept";
    EXPECT_EQ(templatizer.write_to_str(text), ML::eXMLTreeEmpty);
    EXPECT_EQ(templatizer.read_from_mem_obj(ML::Utils::WCStConstMemObj()), ML::eXMLTreeEmpty);
}

TEST(WCXMLTemplatizerDepth, ZeroTreatsRootChildrenAsStatements) {
    pugi::xml_document doc;
    Expand("structure.xml", 0, doc);
    // "Page" is printed as it stands: its template statements are not run.
    EXPECT_TRUE(doc.child("GUI").child("Page").child("Section").child("Template"));
    EXPECT_FALSE(doc.child("GUI").child("Page").child("Section").child("Item"));
}

TEST(WCXMLTemplatizerDepth, StructureKeptDownToDepthAndCappedAt100) {
    pugi::xml_document two, deeper;
    Expand("structure.xml", 2, two);
    const pugi::xml_node section = two.child("GUI").child("Page").child("Section");
    EXPECT_STREQ(section.child("Item").attribute("V").value(), "1");
    EXPECT_FALSE(section.child("Template"));
    // Deeper than the document: nothing is a statement, all is kept as structure.
    Expand("structure.xml", 200, deeper);
    const pugi::xml_node kept =
        deeper.child("GUI").child("Page").child("Section").child("Template");
    EXPECT_STREQ(kept.child("Item").attribute("V").value(), "$(v)");
    WCXMLTemplatizer deep;
    std::string text = "<R>";
    for (int i = 0; i < 150; ++i)
        text += "<L>";
    text += "<Template Name='T'/>";
    for (int i = 0; i < 150; ++i)
        text += "</L>";
    text += "</R>";
    ASSERT_EQ(deep.read_from_str(text), ML::eNoErr);
    deep.set_depth(200);
    std::string out;
    ASSERT_EQ(deep.write_to_str(out), ML::eNoErr);
    // Below 100 levels the rest is printed by pugixml, indented, not written as structure.
    EXPECT_NE(out.find("<Template Name=\"T\" />"), std::string::npos);
}

TEST(WCXMLTemplatizerOutput, RootAttributesAreWrittenWithoutEscaping) {
    WCXMLTemplatizer templatizer;
    ASSERT_EQ(templatizer.read_from_str("<GUI Title='a&lt;b &amp; &quot;c&quot;'/>"), ML::eNoErr);
    std::ostringstream stream;
    EXPECT_EQ(templatizer.write_to_ostream(stream), ML::eNoErr);
    EXPECT_EQ(stream.str(), "<GUI Title=\"a<b & \"c\"\">\n</GUI>\n");
}

TEST(WCXMLTemplatizerOutput, FileAndMemoryFormsAgreeAndDumpTemplates) {
    mirel_test::WCTempDir dir;
    WCXMLTemplatizer templatizer;
    ASSERT_EQ(templatizer.read_from_file(DataPath("arrays.xml")), ML::eNoErr);
    ASSERT_EQ(templatizer.write_to_file(dir.path() / "out" / "a.xml"), ML::eNoErr);
    ML::Utils::WCStMemObj mem;
    ASSERT_EQ(templatizer.write_to_mem_obj(mem), ML::eNoErr);
    EXPECT_EQ(mirel_test::ReadFile(dir.path() / "out" / "a.xml"),
              std::string(static_cast<const char *>(mem.GetPtr()), mem.GetSize()));
    std::ostringstream dump;
    templatizer.templates_to_stream(dump);
    EXPECT_EQ(dump.str(), "---\nBank\n...\n---\nRow\n...\n");
}

TEST(WCXMLTemplatizerOutput, WorksOnTheCallersDocument) {
    pugi::xml_document doc;
    ASSERT_EQ(ML::PugiXML::read_xml_from_string(
                  "<R><Template Name='T'><X/></Template><Instance Template='T'/></R>", doc),
              0);
    WCXMLTemplatizer templatizer(doc);
    std::string text;
    ASSERT_EQ(templatizer.write_to_str(text), ML::eNoErr);
    EXPECT_EQ(text, "<R>\n<X />\n</R>\n");
    // A second pass starts again from fresh scopes and templates.
    ASSERT_EQ(templatizer.write_to_str(text), ML::eNoErr);
    EXPECT_EQ(text, "<R>\n<X />\n</R>\n");
}

} // namespace
