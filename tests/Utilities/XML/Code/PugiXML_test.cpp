#include "Utilities/XML/Code/PugiXML.h"

#include <fstream>

#include <gtest/gtest.h>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WCPugiXMLBuilder.h"
#include "tests/Utilities/XML/Code/XMLTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;
using ML::XML::CXMLElement;

void WriteText(const std::filesystem::path &path, const std::string &text) {
    std::ofstream(path, std::ios::binary) << text;
}

TEST(PugiXMLReading, ParseFlagsTrimEmbedKeepCDATAAndNormaliseQuotedCodesInTextOnly) {
    pugi::xml_document doc;
    ASSERT_EQ(ML::PugiXML::read_xml_from_string(
                  "<r a=\"x\ty\" q=\"'Abcd'\"><t>  padded  </t><c><![CDATA[ raw <> ]]></c>"
                  "<code>'Abcd'</code><d>'abc'</d><e><![CDATA['wxyz']]></e><!--gone--></r>",
                  doc),
              0);
    const pugi::xml_node r = doc.child("r");
    EXPECT_STREQ(r.attribute("a").value(), "x y");
    EXPECT_STREQ(r.child("t").text().get(), "padded");
    EXPECT_EQ(r.child("c").first_child().type(), pugi::node_cdata);
    EXPECT_FALSE(r.last_child().type() == pugi::node_comment);
    EXPECT_STREQ(r.child("code").text().get(), "Abcd");
    EXPECT_STREQ(r.child("d").text().get(), "'abc'");
    EXPECT_STREQ(r.child("e").text().get(), "wxyz");
    EXPECT_STREQ(r.attribute("q").value(), "'Abcd'");
}

TEST(PugiXMLReading, BufferFormsReturnPugiStatusAndStillNormalise) {
    pugi::xml_document doc;
    EXPECT_EQ(ML::PugiXML::read_xml_from_string("<r><c>'Abcd'</c><x></r>", doc),
              pugi::status_end_element_mismatch);
    EXPECT_EQ(ML::PugiXML::read_xml_from_string("", doc), pugi::status_no_document_element);
    std::string inplace = "<r><c>'wxyz'</c></r>";
    EXPECT_EQ(ML::PugiXML::read_xml_from_string_inplace(inplace, doc), 0);
    EXPECT_STREQ(doc.child("r").child("c").text().get(), "wxyz");
}

TEST(PugiXMLReading, FileStatusIsMappedToTheSystemCodes) {
    mirel_test::WCTempDir dir;
    pugi::xml_document doc;
    EXPECT_EQ(ML::PugiXML::read_xml_from_file(dir.path() / "missing.xml", doc),
              ML::eFMFileNotFound);
    WriteText(dir.path() / "broken.xml", "<r><a></r>");
    EXPECT_EQ(ML::PugiXML::read_xml_from_file(dir.path() / "broken.xml", doc),
              ML::eXMLTreeNotValid);
    WriteText(dir.path() / "empty.xml", "  ");
    EXPECT_EQ(ML::PugiXML::read_xml_from_file(dir.path() / "empty.xml", doc), ML::eXMLTreeEmpty);
    WriteText(dir.path() / "good.xml", "<r><c>'Abcd'</c></r>");
    ML::PugiXML::WCPugiXMLBuilder builder(doc);
    EXPECT_EQ(builder.BuildFromFile(dir.path() / "good.xml"), ML::eNoErr);
    EXPECT_STREQ(doc.child("r").child("c").text().get(), "Abcd");
}

TEST(PugiXMLWriting, FilesAreIndentedByOneBlankAndWrittenWhole) {
    mirel_test::WCTempDir dir;
    pugi::xml_document doc;
    ASSERT_EQ(ML::PugiXML::read_xml_from_string("<r><a>1</a></r>", doc), 0);
    const auto target = dir.path() / "new" / "folder" / "out.xml";
    ASSERT_EQ(ML::PugiXML::write_xml_to_file(doc, target), ML::eNoErr);
    std::string text;
    ML::PugiXML::write_xml_to_string(doc, text);
    EXPECT_NE(text.find("\n <a>1</a>\n"), std::string::npos);
    pugi::xml_document back;
    EXPECT_EQ(ML::PugiXML::read_xml_from_file(target, back), ML::eNoErr);
    EXPECT_STREQ(back.child("r").child("a").text().get(), "1");

    ML::Utils::WCStMemObj memory("stale", 5);
    ASSERT_EQ(ML::PugiXML::write_xml_to_mem_obj(doc.child("r").child("a"), memory), ML::eNoErr);
    EXPECT_EQ(std::string(static_cast<const char *>(memory.GetPtr()), memory.GetSize()),
              "<a>1</a>\n");

    EXPECT_EQ(ML::PugiXML::write_xml_to_file(doc, dir.path()), ML::eFMWriteFailed);
    WriteText(dir.path() / "in-the-way", "x");
    EXPECT_EQ(ML::PugiXML::write_xml_to_file(doc, dir.path() / "in-the-way" / "out.xml"),
              ML::eFMWriteFailed);
}

TEST(PugiXMLConversion, ElementTreeToPugiAndBack) {
    CXMLElement root("Doc");
    root.AddAttrib("name", "v&1");
    auto *code = root.push_sub_element(new CXMLElement("Code", "a < b"));
    code->SetCDATA(true);
    root.push_sub_element(new CXMLElement("Leaf", "text"))->AddAttrib("k", "'q'");

    pugi::xml_document doc;
    pugi::xml_node node = doc.append_child(pugi::node_element);
    ML::PugiXML::CXMLElement_to_pugi(&root, node);
    EXPECT_STREQ(doc.child("Doc").attribute("name").value(), "v&1");
    EXPECT_EQ(doc.child("Doc").child("Code").first_child().type(), pugi::node_cdata);

    // Through pugi's own text and back.
    std::string text;
    ML::PugiXML::write_xml_to_string(doc, text);
    pugi::xml_document reparsed;
    ASSERT_EQ(ML::PugiXML::read_xml_from_string(text, reparsed), 0);
    CXMLElement back;
    ML::PugiXML::pugi_to_CXMLElement(reparsed.document_element(), &back);
    EXPECT_TRUE(mirel_test::SameTree(root, back));
}

TEST(PugiXMLConversion, TextNodesOfMixedContentBecomeNamelessElements) {
    pugi::xml_document doc;
    ASSERT_EQ(ML::PugiXML::read_xml_from_string("<r>x<b/>y</r>", doc), 0);
    CXMLElement element;
    ML::PugiXML::pugi_to_CXMLElement(doc.child("r"), &element);
    // The first text is embedded in the element by the parse flags; the later one is a node.
    EXPECT_EQ(element.GetText(), "x");
    ASSERT_EQ(element.GetSubElements().size(), 2u);
    EXPECT_EQ(element.GetSubElements()[0]->GetName().compare("b"), 0);
    EXPECT_TRUE(element.GetSubElements()[1]->GetName().empty());
    EXPECT_EQ(element.GetSubElements()[1]->GetText(), "y");
}

TEST(PugiXMLDesktop, WritesNumberedFilesUnderTheDesktopFolder) {
    mirel_test::WCTestHome home;
    CXMLElement element("Dump", "1");
    ASSERT_EQ(ML::PugiXML::write_xml_to_desktop(&element, "Tests"), ML::eNoErr);
    pugi::xml_document doc;
    ML::PugiXML::read_xml_from_string("<Dump>2</Dump>", doc);
    ASSERT_EQ(ML::PugiXML::write_xml_to_desktop(doc.document_element(), "Tests"), ML::eNoErr);
    const auto folder = home.path() / "Desktop" / "XMLWrite" / "Tests";
    std::vector<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    ASSERT_EQ(names.size(), 2u);
    EXPECT_NE(names[0], names[1]);
    EXPECT_EQ(names[0].substr(names[0].size() - 4), ".xml");
}

} // namespace
