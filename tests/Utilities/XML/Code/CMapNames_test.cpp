#include "Utilities/XML/Code/CMapNames.h"

#include <gtest/gtest.h>

#include "Utilities/XML/Code/CMapAttrib.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WCXPathUtils.h"
#include "tests/Utilities/XML/Code/XMLTestSupport.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;
using ML::XML::CXMLElement;

class XMLIndexes : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(mirel_test::Parse(R"(<GUI ID="0">
              <Control ID="1" Type="Slider"><Image ID="10"/><Control ID="11" Type="Knob"/></Control>
              <Control Type="Button"/>
              <Group><Control ID="2" Type="Slider"><Name>second</Name></Control></Group>
              <Control ID="1" Type="Clone">dup</Control>
            </GUI>)",
                                    root),
                  ML::eNoErr);
    }
    CXMLElement root;
};

TEST_F(XMLIndexes, NamesMapKeepsDepthFirstOrderAmongEqualNames) {
    ML::XML::CMapNames shallow(&root, 1);
    EXPECT_EQ(shallow.Count("Control"), 3u);
    EXPECT_EQ(shallow.Count("Image"), 0u);

    ML::XML::CMapNames deep(&root, 3);
    std::vector<CXMLElement *> controls;
    EXPECT_EQ(deep.FindElements("Control", controls), 5u);
    // Pre-order: the first control's own child comes before its next sibling.
    EXPECT_EQ(controls[0]->GetAttribInt("ID"), 1);
    EXPECT_EQ(controls[1]->GetAttribInt("ID"), 11);
    EXPECT_EQ(controls[2]->GetAttribString("Type").compare("Button"), 0);
    EXPECT_EQ(deep.FindNthElement("Control", 4), controls[4]);
    EXPECT_EQ(deep.FindNthElement("Control", 5), nullptr);

    std::string text;
    EXPECT_EQ(deep.GetElementText("Name", text), ML::eNoErr);
    EXPECT_EQ(text, "second");
    EXPECT_EQ(deep.GetElementText("Nothing", text), ML::eXMLElementMissing);

    std::vector<ML::XML::CMapNames::WTName> names;
    deep.GetNameList(names);
    ASSERT_EQ(names.size(), 4u);
    EXPECT_EQ(names[0].compare("Control"), 0);

    EXPECT_EQ(ML::XML::CMapNames(&root, 0).Count("Control"), 0u);
    EXPECT_EQ(ML::XML::CMapNames(nullptr, 5).Count("Control"), 0u);
}

TEST(XMLNameIndex, LongNamesFindTheElementsMadeWithThem) {
    // 2 + 40 two-byte characters: an element keeps 62 bytes, since 63 would end inside one.
    std::string utf8 = "ab";
    for (int i = 0; i < 40; ++i)
        utf8 += "\xC3\xA9";
    const std::string ascii(80, 'n');
    CXMLElement root("r");
    root.push_sub_element(new CXMLElement(utf8.c_str()));
    root.push_sub_element(new CXMLElement(ascii.c_str()));
    ML::XML::CMapNames names(&root, 1);
    EXPECT_EQ(names.FindElement(utf8.c_str()), root.GetSubElements()[0]);
    EXPECT_EQ(names.Count(ascii.c_str()), 1u);
}

TEST_F(XMLIndexes, AttributeMapKeepsTheFirstOfAValueAndVisitsBelowSkippedElements) {
    ML::XML::CMapIDs ids(&root);
    EXPECT_EQ(ids.FindElement(0), &root);
    EXPECT_EQ(ids.FindElement(1)->GetAttribString("Type").compare("Slider"), 0);
    // Group has no ID, yet the control inside it is mapped.
    EXPECT_NE(ids.FindElement("2"), nullptr);
    EXPECT_EQ(ids.FindElement(99), nullptr);

    ML::XML::CMultiMapAttrib byType("Type", &root);
    ML::XML::CMultiMapAttrib::WTMap::const_iterator first, last;
    ASSERT_TRUE(byType.FindElements("Slider", first, last));
    EXPECT_EQ(std::distance(first, last), 2);
    EXPECT_EQ(first->second->GetAttribInt("ID"), 1);
    EXPECT_FALSE(byType.FindElements("Missing", first, last));
}

TEST_F(XMLIndexes, LongAttributeValuesAreCutTo63Characters) {
    CXMLElement tree("r");
    const std::string longValue(100, 'v');
    tree.push_sub_element(new CXMLElement("x"))->AddAttrib("k", longValue.c_str());
    ML::XML::CMapAttrib map("k", &tree);
    EXPECT_NE(map.FindElement(longValue.substr(0, 63).c_str()), nullptr);
    EXPECT_NE(map.FindElement(longValue.c_str()), nullptr); // the lookup is cut the same way
}

std::vector<CXMLElement *> Path(const CXMLElement &root, const char *expression,
                                const char *separator = nullptr) {
    std::vector<CXMLElement *> result;
    EXPECT_EQ(ML::XML::WCXPathUtils::GetXPathElements(&root, result, expression, separator),
              ML::eNoErr);
    return result;
}

TEST_F(XMLIndexes, PathFromRootNameReachesDirectChildren) {
    const auto controls = Path(root, "GUI/Control");
    ASSERT_EQ(controls.size(), 3u); // not the ones inside Group or inside another Control
    EXPECT_EQ(controls[2]->GetText(), "dup");
}

TEST_F(XMLIndexes, FirstStepFindsNearestMatchesAnywhere) {
    // The first "Control" matches hide the nested one with ID 11.
    const auto controls = Path(root, "Control");
    ASSERT_EQ(controls.size(), 4u);
    EXPECT_EQ(controls[2]->GetAttribInt("ID"), 2);
    EXPECT_EQ(Path(root, "Group/Control/Name").size(), 1u);
    EXPECT_EQ(Path(root, "Control/Image").size(), 1u);
}

TEST_F(XMLIndexes, FilterWithoutTheAttributeAddsNothingAndDoesNotDescend) {
    const auto sliders = Path(root, "GUI/Control[@Type=\"Slider\"]");
    ASSERT_EQ(sliders.size(), 1u);
    EXPECT_EQ(sliders[0]->GetAttribInt("ID"), 1);
    // Control 1 matches the name but not the value, so its nested Knob is not searched.
    EXPECT_TRUE(Path(root, "Control[@Type=\"Knob\"]").empty());
    EXPECT_TRUE(Path(root, "Group[@ID=\"5\"]/Control").empty());
}

TEST_F(XMLIndexes, DoubleSlashAndSeparatorsAndPairs) {
    EXPECT_EQ(Path(root, "//Name").size(), 1u);
    EXPECT_EQ(Path(root, "GUI|Group|Control", "|").size(), 1u);
    std::vector<std::pair<CXMLElement *, int>> withIDs;
    ASSERT_EQ(ML::XML::WCXPathUtils::GetXPathElements(&root, withIDs, "GUI/Control"), ML::eNoErr);
    ASSERT_EQ(withIDs.size(), 3u);
    EXPECT_EQ(withIDs[0].second, 1);
    EXPECT_EQ(withIDs[1].second, -1);
}

TEST(WCXPathUtilsParse, StepsFollowTheScanPattern) {
    ML::XML::WCXPathUtils::WTSteps steps;
    ML::XML::WCXPathUtils::ParseXpathExpression(
        "//A[@id=\"7\"]/B[@flag]/[@x=\"1\"]/C[@v=\"\"]/D[x]", steps, nullptr);
    ASSERT_EQ(steps.size(), 4u);
    EXPECT_EQ(steps[0].first.compare("!A"), 0);
    EXPECT_EQ(steps[0].second.first.compare("id"), 0);
    EXPECT_EQ(steps[0].second.second.compare("7"), 0);
    EXPECT_EQ(steps[1].second.first.compare("flag]"), 0); // read up to '=' or the end
    EXPECT_TRUE(steps[1].second.second.empty());
    EXPECT_EQ(steps[2].first.compare("C"), 0); // the step without a name is dropped
    EXPECT_EQ(steps[2].second.first.compare("v"), 0);
    EXPECT_TRUE(steps[3].second.first.empty());
}

} // namespace
