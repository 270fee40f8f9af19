#include "Utilities/XML/Code/CXMLTreeBuilder.h"

#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WriteXMLToStream.h"
#include "core/WUAssert.h"
#include "files/WCStPath.h"
#include "files/WUOpenFile.h"
#include "tests/Utilities/XML/Code/XMLTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;
using mirel_test::Parse;
using mirel_test::ReadFile;
using ML::XML::CXMLElement;
using ML::XML::CXMLTreeBuilder;

TEST(CXMLTreeBuilderText, TrimsTextAndDropsLeadingWhiteSpaceOfEachChunk) {
    CXMLElement root("before");
    ASSERT_EQ(Parse("<doc>\n  <a>  \t hello world \r\n </a><b>x <i/> y</b>"
                    "<nbsp>\xC2\xA0x\xC2\xA0</nbsp></doc>",
                    root),
              ML::eNoErr);
    EXPECT_EQ(root.GetName().compare("doc"), 0);
    EXPECT_TRUE(root.IsValid());
    EXPECT_EQ(root.SubElement("a")->GetText(), "hello world");
    EXPECT_EQ(root.SubElement("b")->GetText(), "x  y");
    // U+00A0 (no-break space) is C2 A0 in UTF-8: bytes with the high bit are never white space.
    EXPECT_EQ(root.SubElement("nbsp")->GetText(), "\xC2\xA0x\xC2\xA0");
}

TEST(CXMLTreeBuilderText, QuotedFourCharacterCodeLosesItsQuotesOnlyInText) {
    CXMLElement root;
    ASSERT_EQ(Parse("<r a=\"'Abcd'\"><c>'Abcd'</c><three>'abc'</three><dq>\"abcd\"</dq>"
                    "<padded>  'wxyz'  </padded></r>",
                    root),
              ML::eNoErr);
    EXPECT_EQ(root.SubElement("c")->GetText(), "Abcd");
    EXPECT_EQ(root.SubElement("three")->GetText(), "'abc'");
    EXPECT_EQ(root.SubElement("dq")->GetText(), "\"abcd\"");
    EXPECT_EQ(root.SubElement("padded")->GetText(), "wxyz");
    EXPECT_EQ(root.GetAttribString("a").compare("'Abcd'"), 0);
}

TEST(CXMLTreeBuilderText, UnknownEncodingReadsAsLatin1) {
    CXMLElement root;
    ASSERT_EQ(Parse("<?xml version=\"1.0\" encoding=\"x-mirel-8bit\"?><r>\xE9</r>", root),
              ML::eNoErr);
    EXPECT_EQ(root.GetText(), "\xC3\xA9"); // é, now in UTF-8
}

TEST(CXMLTreeBuilderStructure, ElementsBeyondTheDepthLimitVanishWithTheirText) {
    CXMLElement root;
    CXMLTreeBuilder builder(root);
    builder.SetParseLevel(2);
    const std::string text = "<r><l1><l2>kept<l3>gone<l4/></l3></l2><l2b/></l1><tail>t</tail></r>";
    ASSERT_EQ(builder.BuildFromSingleBuffer(text.data(), text.size()), ML::eNoErr);
    EXPECT_TRUE(root.IsValid());
    const CXMLElement *l1 = root.SubElement("l1");
    ASSERT_NE(l1, nullptr);
    EXPECT_EQ(l1->SubElement("l2")->GetText(), "kept");
    EXPECT_TRUE(l1->SubElement("l2")->GetSubElements().empty());
    EXPECT_NE(l1->SubElement("l2b"), nullptr);
    EXPECT_EQ(root.SubElement("tail")->GetText(), "t");
}

TEST(CXMLTreeBuilderStructure, DeepDocumentIsCutAtTheDefaultLimit) {
    std::string text;
    for (int i = 0; i < 2000; ++i)
        text += "<d>";
    for (int i = 0; i < 2000; ++i)
        text += "</d>";
    CXMLElement root;
    ASSERT_EQ(Parse(text, root), ML::eNoErr);
    EXPECT_TRUE(root.IsValid());
    EXPECT_EQ(root.CountSubElements(10000), 512u);
}

TEST(CXMLTreeBuilderStructure, CDATAMarksTheElement) {
    CXMLElement root;
    ASSERT_EQ(Parse("<r><c><![CDATA[ <not markup> & ]]></c><p>plain</p></r>", root), ML::eNoErr);
    EXPECT_TRUE(root.SubElement("c")->IsCDATA());
    EXPECT_EQ(root.SubElement("c")->GetText(), "<not markup> &");
    EXPECT_FALSE(root.SubElement("p")->IsCDATA());
}

TEST(CXMLTreeBuilderIncomplete, TruncatedDocumentIsNoErrorButAnIncompleteRoot) {
    const std::string whole = "<r><a x=\"1\">text</a><b><c/></b></r>";
    for (std::size_t cut = 4; cut < whole.size(); ++cut) {
        CXMLElement root;
        EXPECT_EQ(Parse(whole.substr(0, cut), root), ML::eNoErr) << cut;
        EXPECT_EQ(root.GetError(), ML::eXMLElementIncomplete) << cut;
    }
}

TEST(CXMLTreeBuilderIncomplete, ChunksMayBeFedInSequence) {
    const std::string whole = "<r><a>one</a><b>two</b></r>";
    CXMLElement root;
    CXMLTreeBuilder builder(root);
    bool done = true;
    ASSERT_EQ(builder.BuildFromBuffer(whole.data(), 9, done), ML::eNoErr);
    EXPECT_FALSE(done);
    EXPECT_FALSE(root.IsValid());
    ASSERT_EQ(builder.BuildFromBuffer(whole.data() + 9, whole.size() - 9, done), ML::eNoErr);
    EXPECT_TRUE(done);
    EXPECT_TRUE(root.IsValid());
    EXPECT_EQ(root.SubElement("b")->GetText(), "two");
}

TEST(CXMLTreeBuilderErrors, BrokenDocumentsFailWithTheParserCodeAndAreLogged) {
    mirel_test::WCXMLLogRecorder log;
    for (const char *text : {"<r><a></b></r>", "<r a=1/>", "<r/><second/>", "not xml at all",
                             "<r>&undefined;</r>", "<r a=\"1\" a=\"2\"/>"}) {
        CXMLElement root;
        EXPECT_EQ(Parse(text, root), ML::eXMLParserFailed) << text;
    }
    ASSERT_EQ(log.Messages().size(), 6u);
    EXPECT_EQ(log.Messages()[0].rfind("6:XML_Parse failed, errorCode: '", 0), 0u);
    EXPECT_NE(log.Messages()[0].find("' (7) at line 1"), std::string::npos);
}

TEST(CXMLTreeBuilderErrors, ShortAndEmptyInputs) {
    CXMLElement root("kept");
    CXMLTreeBuilder builder(root);
    EXPECT_EQ(builder.BuildFromSingleBuffer("<a/", 3), ML::eMemNullPointer);
    EXPECT_EQ(builder.BuildFromSingleBuffer(nullptr, 10), ML::eMemNullPointer);
    ML::Utils::WCStMemObj empty;
    EXPECT_EQ(builder.BuildFromWCStMemObj(empty), ML::eNoErr);
    EXPECT_EQ(root.GetName().compare("kept"), 0);
    EXPECT_TRUE(root.IsValid());
}

TEST(CXMLTreeBuilderErrors, IdleFormCallsBackOnceAndRefusesLongDocuments) {
    int calls = 0;
    CXMLElement root;
    CXMLTreeBuilder builder(root);
    builder.SetIdleCallBack([](void *context) { ++*static_cast<int *>(context); }, &calls);
    EXPECT_EQ(builder.BuildFromSingleBufferWithIdle("<r/>", 4), ML::eNoErr);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(root.IsValid());

    static bool reported = false;
    const auto previous =
        ML::SetAssertHandler([](const char *, int, const char *) { reported = true; });
    const std::string longText = "<r>" + std::string(2000, 'x') + "</r>";
    CXMLElement other;
    CXMLTreeBuilder otherBuilder(other);
    EXPECT_EQ(otherBuilder.BuildFromSingleBufferWithIdle(longText.data(), longText.size()),
              ML::eValueWrongSize);
    ML::SetAssertHandler(previous);
    EXPECT_TRUE(reported);
}

TEST(CXMLTreeBuilderWriting, GoldenLayoutByteForByte) {
    CXMLElement root("Doc");
    root.AddAttrib("version", "2");
    auto *leaf = root.push_sub_element(new CXMLElement("Leaf", "a<b & 'c' \"d\">"));
    leaf->AddAttrib("q", "<&>\"'");
    root.push_sub_element(new CXMLElement("Empty"));
    auto *cdata = root.push_sub_element(new CXMLElement("Code", "x ]]> y"));
    cdata->SetCDATA(true);
    auto *mixed = root.push_sub_element(new CXMLElement("Mixed", "words"));
    mixed->push_sub_element(new CXMLElement("Inner", "1"));
    EXPECT_EQ(mirel_test::Write(root),
              ReadFile(std::filesystem::path(MIREL_XML_TEST_DATA) / "writer_golden.xml"));
}

TEST(CXMLTreeBuilderWriting, ReadDocumentKeepsItsDeclarationInEveryTarget) {
    CXMLElement root;
    CXMLTreeBuilder builder(root);
    const std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r><a k=\"&amp;\">1</a></r>";
    ASSERT_EQ(builder.BuildFromSingleBuffer(text.data(), text.size()), ML::eNoErr);
    std::string expected;
    ASSERT_EQ(builder.WriteToString(expected), ML::eNoErr);
    EXPECT_EQ(
        expected,
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<r>\n\n    <a k=\"&amp;\">1</a>\n</r>\n");
    ML::WCFixedString<127> declaration("keep");
    CXMLElement memoryRoot("m");
    EXPECT_FALSE(CXMLTreeBuilder(memoryRoot).FormatXMLDecl(declaration)); // a tree made in memory
    EXPECT_EQ(declaration.compare("keep"), 0);

    ML::Utils::WCStMemObj memory("stale bytes", 11);
    ASSERT_EQ(builder.WriteToWCStMemObj(memory), ML::eNoErr);
    EXPECT_EQ(std::string(static_cast<const char *>(memory.GetPtr()), memory.GetSize()), expected);

    // Written at the file's cursor, after what is there.
    mirel_test::WCTempDir dir;
    const auto path = dir.path() / "log.xml";
    std::ofstream(path) << "head\n";
    ML::FM::WTOpenFileType file = ML::FM::kNoOpenFile;
    ASSERT_EQ(ML::FM::CreateAFile(ML::FM::WCStPath(path.native()), ML::FM::eFMCreateAppend,
                                  ML::FM::eFMWritePermission, file),
              ML::eNoErr);
    EXPECT_EQ(builder.AppendToOpenFile(&file), ML::eNoErr);
    ASSERT_EQ(ML::FM::CloseFile(file), ML::eNoErr);
    EXPECT_EQ(ReadFile(path), "head\n" + expected);
}

TEST(CXMLTreeBuilderWriting, CheckedWriteReplacesInvalidSubTrees) {
    CXMLElement root("r");
    root.push_sub_element(new CXMLElement("ok"));
    root.push_sub_element(new CXMLElement("bad"))->SetError(ML::eXMLElementIncomplete);
    std::ostringstream out;
    ML::XML::WriteXMLToStream(out, &root, true, true, 0);
    EXPECT_EQ(out.str(), "<r>\n\n    <ok/>\nXML not valid\n</r>\n");
}

TEST(CXMLTreeBuilderRoundTrip, WrittenDocumentReadsBackToTheSameTree) {
    CXMLElement original("Doc");
    original.AddAttrib("all", "&<>\"'");
    auto *code = original.push_sub_element(new CXMLElement("Code", "a]]>b]]]>c"));
    code->SetCDATA(true);
    original.push_sub_element(new CXMLElement("Type", "'Abcd'"));
    original.push_sub_element(new CXMLElement("Text", "x & y < z"))->AddAttrib("k", "'v'");
    auto *nested = original.push_sub_element(new CXMLElement("Nested"));
    nested->push_sub_element(new CXMLElement("Deeper", "1"));

    CXMLElement first;
    ASSERT_EQ(Parse(mirel_test::Write(original), first), ML::eNoErr);
    ASSERT_TRUE(first.IsValid());
    EXPECT_EQ(first.SubElement("Code")->GetText(), "a]]>b]]]>c");
    EXPECT_TRUE(first.SubElement("Code")->IsCDATA());
    EXPECT_EQ(first.SubElement("Type")->GetText(), "Abcd");
    EXPECT_EQ(first.GetAttribString("all").compare("&<>\"'"), 0);

    CXMLElement second;
    ASSERT_EQ(Parse(mirel_test::Write(first), second), ML::eNoErr);
    EXPECT_TRUE(mirel_test::SameTree(first, second));
}

TEST(CXMLTreeBuilderFiles, MissingEmptyAndWrittenFiles) {
    mirel_test::WCTempDir dir;
    CXMLElement root;
    CXMLTreeBuilder builder(root);
    EXPECT_EQ(builder.BuildFromFile(dir.path() / "missing.xml"), ML::eFMFileNotFound);
    std::ofstream(dir.path() / "empty.xml").close();
    EXPECT_EQ(builder.BuildFromFile(dir.path() / "empty.xml"), ML::eFMFileIsEmpty);
    EXPECT_EQ(builder.BuildFromFile(dir.path()), ML::eFMIsAFolder);

    CXMLElement tree("Tree", "text");
    const auto target = dir.path() / "out.xml";
    ASSERT_EQ(CXMLTreeBuilder(tree).WriteToDataFork(target), ML::eNoErr);
    EXPECT_EQ(ReadFile(target), "<Tree>text</Tree>\n");
    EXPECT_EQ(std::filesystem::status(target).permissions() & std::filesystem::perms::all,
              std::filesystem::perms(0644));

    CXMLElement back;
    ASSERT_EQ(CXMLTreeBuilder(back).BuildFromFile(target), ML::eNoErr);
    EXPECT_TRUE(mirel_test::SameTree(back, tree));
}

TEST(CXMLTreeBuilderFiles, FailedWriteLeavesNoFileBehind) {
    mirel_test::WCTempDir dir;
    CXMLElement tree("Tree");
    std::ofstream(dir.path() / "in-the-way") << "x";
    EXPECT_EQ(CXMLTreeBuilder(tree).WriteToDataFork(dir.path() / "in-the-way" / "out.xml"),
              ML::eFMIsAFile);
    EXPECT_EQ(CXMLTreeBuilder(tree).WriteToDataFork(dir.path()), ML::eFMIsAFolder);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()),
                            std::filesystem::directory_iterator()),
              1);
    // A missing folder is made.
    EXPECT_EQ(CXMLTreeBuilder(tree).WriteToDataFork(dir.path() / "new" / "out.xml"), ML::eNoErr);
    EXPECT_TRUE(std::filesystem::is_regular_file(dir.path() / "new" / "out.xml"));
}

} // namespace
