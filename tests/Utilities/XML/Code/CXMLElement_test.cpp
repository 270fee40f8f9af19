#include "Utilities/XML/Code/CXMLElement.h"

#include <gtest/gtest.h>

#include "tests/Utilities/XML/Code/XMLTestSupport.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;
using ML::XML::CXMLElement;

TEST(CXMLElementAttributes, PackedFormIsNameQuoteValueQuoteCRAndSetReplacesTheFirstOrAppends) {
    CXMLElement element("e");
    element.AddAttrib("a", "1");
    element.AddAttrib("b", 2);
    element.AddAttrib("c", 1.5f);
    EXPECT_EQ(element.GetAttributesString(), "a=\"1\"\rb=\"2\"\rc=\"1.50000\"\r");
    element.SetAttrib("a", "long value");
    element.SetAttrib("z", 7);
    EXPECT_EQ(element.GetAttributesString(), "a=\"long value\"\rb=\"2\"\rc=\"1.50000\"\rz=\"7\"\r");
}

TEST(CXMLElementAttributes, DuplicateIsFoundOnceWithFirstValueAndWrittenTwice) {
    CXMLElement element("e");
    element.AddAttrib("id", "first");
    element.AddAttrib("id", "second");
    EXPECT_EQ(element.GetAttribString("id").compare("first"), 0);
    EXPECT_EQ(mirel_test::Write(element), "<e id=\"first\" id=\"second\"/>\n");
}

TEST(CXMLElementAttributes, LookupMatchesWholeNamesAndNeverInsideValues) {
    CXMLElement element("e");
    element.AddAttrib("xID", "1");
    element.AddAttrib("IDx", "2");
    element.AddAttrib("a", "ID=\"y");
    element.AddAttrib("b", "");
    element.AddAttrib("ID", "3");
    int id = 0;
    ASSERT_TRUE(element.GetID(id));
    EXPECT_EQ(id, 3);
    EXPECT_FALSE(element.AttribExists("D"));
    EXPECT_EQ(element.GetAttribString("a").compare("ID=\"y"), 0);
    EXPECT_TRUE(element.AttribExists("b"));
}

TEST(CXMLElementAttributes, NumericReadsRejectTextAndKeepTheTarget) {
    CXMLElement element("e");
    element.AddAttrib("n", "12");
    element.AddAttrib("bad", "12abc");
    element.AddAttrib("big", "70000");
    element.AddAttrib("f", "garbage");
    int value = -1;
    EXPECT_FALSE(element.GetAttrib("bad", value));
    EXPECT_EQ(value, -1);
    EXPECT_FALSE(element.GetAttrib("missing", value));
    EXPECT_TRUE(element.GetAttrib("n", value));
    EXPECT_EQ(value, 12);
    short small = 5;
    EXPECT_FALSE(element.GetAttrib("big", small));
    EXPECT_EQ(small, 5);
    // The float form cannot fail once the attribute is there.
    float f = 3.0f;
    EXPECT_TRUE(element.GetAttrib("f", f));
    EXPECT_EQ(f, 0.0f);
}

TEST(CXMLElementAttributes, StringReadsClearTheTargetAndCutAtCapacity) {
    CXMLElement element("e");
    element.AddAttrib("long", "abcdefghij");
    ML::WCFixedString<4> shortText("zz");
    EXPECT_TRUE(element.GetAttrib("long", shortText));
    EXPECT_EQ(shortText.compare("abcd"), 0);
    EXPECT_FALSE(element.GetAttrib("missing", shortText));
    EXPECT_TRUE(shortText.empty());
    std::string text = "old";
    EXPECT_FALSE(element.GetAttrib("missing", text));
    EXPECT_TRUE(text.empty());
}

TEST(CXMLElementAttributes, ParseBackCutsAndReportsAnUnclosedValue) {
    std::vector<ML::XML::WTAttribPair> pairs;
    EXPECT_EQ(ML::XML::StringToAttribVec("x", pairs), ML::eNoErr);
    EXPECT_EQ(ML::XML::StringToAttribVec("no marks here", pairs), ML::eNoErr);
    EXPECT_TRUE(pairs.empty());

    const std::string longName(40, 'n');
    const std::string longValue(300, 'v');
    const std::string packed = longName + "=\"" + longValue + "\"\rb=\"2\"\rc=\"unclosed";
    EXPECT_EQ(ML::XML::StringToAttribVec(packed, pairs), ML::eXMLAttribMissing);
    ASSERT_EQ(pairs.size(), 2u);
    EXPECT_EQ(pairs[0].first.size(), 31u);
    EXPECT_EQ(pairs[0].second.size(), 255u);
    EXPECT_EQ(pairs[1].second.compare("2"), 0);

    std::vector<ML::XML::WTAttribStdStringPair> whole;
    EXPECT_EQ(ML::XML::StringToAttribStdStringVec(packed, whole), ML::eXMLAttribMissing);
    ASSERT_EQ(whole.size(), 2u);
    EXPECT_EQ(whole[0].second, longValue);

    EXPECT_EQ(ML::XML::AttribVecToString({{"a", "1"}, {"b", ""}}), "a=\"1\"\rb=\"\"\r");
}

TEST(CXMLElementText, ConstructorsPrintValues) {
    EXPECT_EQ(CXMLElement("e", 255, std::hex).GetText(), "ff");
    EXPECT_EQ(CXMLElement("e", short(-3)).GetText(), "-3");
    EXPECT_EQ(CXMLElement("e", std::int64_t(1) << 40).GetText(), "1099511627776");
    EXPECT_EQ(CXMLElement("e", true).GetText(), "true");
    EXPECT_EQ(CXMLElement("e", "abcdef", 3).GetText(), "abc");
    EXPECT_EQ(CXMLElement(std::string(80, 'n').c_str()).GetName().size(), 63u);
}

TEST(CXMLElementText, LongNamesAreCutOnACharacterBoundary) {
    // 31 two-byte characters and a third byte: 63 bytes would end inside the 32nd character.
    std::string name = "a";
    for (int i = 0; i < 40; ++i)
        name += "\xC3\xA9";
    CXMLElement element(name.c_str());
    EXPECT_EQ(element.GetName().size(), 63u);
    CXMLElement cut((std::string("ab") + name.substr(1)).c_str());
    EXPECT_EQ(cut.GetName().size(), 62u);
    EXPECT_EQ(cut.GetName().view().back(), '\xA9');
}

class CXMLElementTree : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(mirel_test::Parse("<r><a><x/><y/></a><b><z/></b><a><w/></a></r>", root),
                  ML::eNoErr);
    }
    CXMLElement root;
};

TEST_F(CXMLElementTree, CountsByLevels) {
    EXPECT_EQ(root.CountSubElements(0), 0u);
    EXPECT_EQ(root.CountSubElements(1), 3u);
    EXPECT_EQ(root.CountSubElements(2), 7u);
    EXPECT_EQ(root.CountSubElements(50), 7u);
}

TEST_F(CXMLElementTree, SubElementFindsFirstExactName) {
    EXPECT_EQ(root.SubElement("a"), root.GetSubElements()[0]);
    EXPECT_EQ(root.SubElement("x"), nullptr);
    EXPECT_EQ(root.SubElement(nullptr), nullptr);
    EXPECT_EQ(root.SubElementText("q"), nullptr);
    EXPECT_STREQ(root.SubElementText("b"), "");
}

TEST_F(CXMLElementTree, PromoteReplacesChildrenByGrandchildrenInOrder) {
    root.PromoteSubElements();
    std::string names;
    for (const CXMLElement *child : root.GetSubElements())
        names += child->GetName().c_str();
    EXPECT_EQ(names, "xyzw");
}

TEST_F(CXMLElementTree, CopyIsDeepAndIndependent) {
    CXMLElement copy(root);
    EXPECT_TRUE(mirel_test::SameTree(copy, root));
    copy.GetSubElements()[0]->SetName("changed");
    EXPECT_EQ(root.GetSubElements()[0]->GetName().compare("a"), 0);
    CXMLElement assigned;
    assigned = root;
    EXPECT_TRUE(mirel_test::SameTree(assigned, root));
    CXMLElement moved(std::move(assigned));
    EXPECT_TRUE(mirel_test::SameTree(moved, root));
    EXPECT_TRUE(assigned.GetSubElements().empty());
}

TEST_F(CXMLElementTree, MoveAssigningADescendantReplacesTheTreeByThatSubTree) {
    root = std::move(*root.GetSubElements()[0]);
    EXPECT_EQ(root.GetName().compare("a"), 0);
    std::string names;
    for (const CXMLElement *child : root.GetSubElements())
        names += child->GetName().c_str();
    EXPECT_EQ(names, "xy");
    root = std::move(*root.GetSubElements()[1]);
    EXPECT_EQ(root.GetName().compare("y"), 0);
    EXPECT_TRUE(root.GetSubElements().empty());
}

TEST_F(CXMLElementTree, ClearEmptiesEverythingAndMemoryShrinks) {
    const auto before = root.GetMemoryUsage();
    EXPECT_GT(before, 7 * sizeof(CXMLElement));
    root.AddAttrib("k", "v");
    root.SetCDATA(true);
    root.Clear();
    EXPECT_TRUE(root.GetName().empty());
    EXPECT_TRUE(root.GetAttributesString().empty());
    EXPECT_FALSE(root.IsCDATA());
    EXPECT_LT(root.GetMemoryUsage(), before);
}

TEST(CXMLElementDepth, VeryDeepTreeIsCopiedAndDestroyedWithoutRecursion) {
    CXMLElement root("r");
    CXMLElement *tip = &root;
    for (int i = 0; i < 200000; ++i)
        tip = tip->push_sub_element(new CXMLElement("d"));
    CXMLElement copy(root);
    EXPECT_EQ(copy.CountSubElements(1), 1u);
}

} // namespace
