#include "Utilities/XML/Code/XMLHelpers.h"

#include <gtest/gtest.h>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/PugiXML.h"
#include "Utilities/XML/Code/PugiXMLHelpers.h"
#include "Utilities/XML/Code/WUAtoi.h"
#include "Utilities/XML/Code/XMLPathHelpers.h"
#include "tests/Utilities/XML/Code/XMLTestSupport.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;
using ML::XML::CXMLElement;

TEST(XMLHelpersIntVector, SignsSeparatorsAndOverflow) {
    CXMLElement element("v", "1,-2;+3 --4 - x5y -+-6");
    std::vector<int> values{99};
    ASSERT_EQ(ML::XML::ReadFromXML_Int_Vector(&element, values), ML::eNoErr);
    EXPECT_EQ(values, (std::vector<int>{1, -2, 3, 4, 5, 6}));

    CXMLElement wrapping("v", "300 -129");
    std::vector<signed char> bytes;
    ML::XML::ReadFromXML_Int_Vector(&wrapping, bytes);
    EXPECT_EQ(bytes, (std::vector<signed char>{44, 127}));

    CXMLElement out("v");
    ML::XML::WriteToXML_Int_Vector(&out, std::vector<std::int64_t>{-5, 0, 1ll << 40});
    EXPECT_EQ(out.GetText(), "-5 0 1099511627776");
    EXPECT_EQ(ML::XML::ReadFromXML_Int_Vector(static_cast<CXMLElement *>(nullptr), values),
              ML::eXMLElementMissing);
}

TEST(XMLHelpersFloatVector, SplitsAtTheListedSeparatorsAndWritesTenDecimals) {
    CXMLElement element("v", "1.5, -2e1;;\t3\n junk");
    std::vector<double> values;
    ML::XML::ReadFromXML_Float_Vector(&element, values);
    EXPECT_EQ(values, (std::vector<double>{1.5, -20.0, 3.0, 0.0}));
    CXMLElement out("v");
    const float raw[] = {0.5f, -1.0f};
    ML::XML::WriteToXML_Float_Array(&out, raw, 2);
    EXPECT_EQ(out.GetText(), "0.5000000000 -1.0000000000");
}

TEST(XMLHelpersFourCC, BothWorldsReadQuotedAndPlainCodes) {
    struct {
        const char *text;
        const char *expected;
    } const cases[] = {{"abcd", "abcd"},
                       {"'abcd'", "abcd"},
                       {"'abcd", "abcd"},
                       {"abc", "????"},
                       {"'ab", "????"},
                       {"abcde", "????"},
                       // After the quote, four characters are taken whatever they are.
                       {"'abc'", "abc'"}};
    for (const auto &c : cases) {
        CXMLElement element("c", c.text);
        ML::WCFourCC code;
        ML::XML::ReadFromXML_WCFourCC(&element, code);
        EXPECT_EQ(code, ML::WCFourCC::FromText(c.expected)) << c.text;
    }
    CXMLElement out("c");
    ML::XML::WriteToXML_WCFourCC(&out, ML::WCFourCC("Ab d"));
    EXPECT_EQ(out.GetText(), "'Ab d'");

    pugi::xml_document doc;
    ASSERT_EQ(ML::PugiXML::read_xml_from_string("<r><c>  \"'wxyz</c><s>'ab'</s></r>", doc), 0);
    ML::WCFourCC code;
    ML::PugiXML::ReadFromXML_WCFourCC(doc.child("r").child("c"), code);
    EXPECT_EQ(code, ML::WCFourCC("wxyz"));
    ML::PugiXML::ReadFromXML_WCFourCC(doc.child("r").child("s"), code);
    EXPECT_TRUE(code.IsUnreadable());
}

TEST(XMLHelpersBool, ElementAndNodeRulesDiffer) {
    bool value = false;
    CXMLElement empty("x");
    ML::XML::ReadFromXML_Bool(&empty, value);
    EXPECT_TRUE(value);
    for (const char *text : {"false", "no"}) {
        CXMLElement e("x", text);
        ML::XML::ReadFromXML_Bool(&e, value);
        EXPECT_FALSE(value) << text;
    }
    CXMLElement upper("x", "FALSE");
    ML::XML::ReadFromXML_Bool(&upper, value);
    EXPECT_TRUE(value); // the element form compares exactly

    pugi::xml_document doc;
    ASSERT_EQ(
        ML::PugiXML::read_xml_from_string("<r><u>FALSE</u><y>Yes</y><e/><m>maybe</m></r>", doc), 0);
    const pugi::xml_node r = doc.child("r");
    value = true;
    EXPECT_EQ(ML::PugiXML::ReadFromXML_Bool(r.child("missing"), value), ML::eXMLElementMissing);
    EXPECT_FALSE(value);
    ML::PugiXML::ReadFromXML_Bool(r.child("e"), value);
    EXPECT_TRUE(value);
    ML::PugiXML::ReadFromXML_Bool(r.child("u"), value);
    EXPECT_FALSE(value);
    ML::PugiXML::ReadFromXML_Bool(r.child("m"), value);
    EXPECT_FALSE(value); // unknown words keep the value
    ML::PugiXML::ReadFromXML_Bool(r.child("y"), value);
    EXPECT_TRUE(value);
}

TEST(XMLHelpersGeometry, RectanglesReadChildrenThenAttributesAndSizesLast) {
    CXMLElement element;
    ASSERT_EQ(mirel_test::Parse("<R left=\"5\" width=\"10\"><left>1</left><top>2</top>"
                                "<bottom>40</bottom><height>3</height></R>",
                                element),
              ML::eNoErr);
    ML::WURect<short> rect(100, 100, 100, 100);
    ML::XML::ReadFromXML_WURect(&element, rect);
    EXPECT_EQ(rect, ML::WURect<short>(2, 5, 5, 15));

    CXMLElement out("R");
    ML::XML::WriteToXML_WURect(&out, ML::WURect<int>(1, 2, 11, 22));
    EXPECT_EQ(out.GetAttributesString(), "left=\"2\"\rtop=\"1\"\rwidth=\"20\"\rheight=\"10\"\r");

    pugi::xml_document doc;
    ML::PugiXML::read_xml_from_string("<R right=\"9\" height=\"4\"/>", doc);
    ML::WURect<double> pugiRect(7, 7, 7, 7);
    ML::PugiXML::ReadFromXML_WURect(doc.child("R"), pugiRect);
    EXPECT_EQ(pugiRect, ML::WURect<double>(0, 0, 4, 9));
}

TEST(XMLHelpersGeometry, PointsFallBackToXAndYAndSizesUseChildren) {
    CXMLElement element("P");
    element.AddAttrib("x", "3");
    element.AddAttrib("v", "-4");
    element.AddAttrib("y", "99");
    ML::WCPoint2D<short> point;
    ML::XML::ReadFromXML_WCPoint(&element, point);
    EXPECT_EQ(point, ML::WCPoint2D<short>(3, -4));
    CXMLElement out("P");
    ML::XML::WriteToXML_WCPoint(&out, ML::WCPoint2D<double>(0.1, 2));
    EXPECT_EQ(out.GetAttributesString(), "h=\"0.1\"\rv=\"2\"\r");

    CXMLElement size("S");
    ML::XML::WriteToXML_WCSize(&size, ML::WCSize2D<unsigned int>(640, 480));
    ML::WCSize2D<int> back;
    ML::XML::ReadFromXML_WCSize(&size, back);
    EXPECT_EQ(back, ML::WCSize2D<int>(640, 480));
}

TEST(XMLHelpersColour, ChildrenOrAttributesWithOpaqueDefault) {
    CXMLElement byChildren;
    ASSERT_EQ(mirel_test::Parse("<C><Red>10</Red><Blue>30</Blue><Other>5</Other></C>", byChildren),
              ML::eNoErr);
    ML::WCRGBAColor color(1, 2, 3, 4);
    ML::XML::ReadFromXML_WCRGBAColor(&byChildren, color);
    EXPECT_EQ(color, ML::WCRGBAColor(10, 2, 30, 4));

    CXMLElement byAttributes("C");
    byAttributes.AddAttrib("green", 7);
    ML::XML::ReadFromXML_WCRGBAColor(&byAttributes, color);
    EXPECT_EQ(color, ML::WCRGBAColor(10, 7, 30, 255));

    pugi::xml_document doc;
    ML::PugiXML::read_xml_from_string("<C red=\"1\"/>", doc);
    ML::PugiXML::ReadFromXML_WCRGBAColor(doc.child("C"), color);
    EXPECT_EQ(color, ML::WCRGBAColor(1, 255, 255, 255));
}

TEST(XMLHelpersImages, NoneIdWritesNothingAndOtherNamesAreIgnored) {
    CXMLElement parent("P");
    ML::XML::WriteToXML_Image(&parent, short(-1), "PNG_");
    EXPECT_TRUE(parent.GetSubElements().empty());
    ML::XML::WriteToXML_Image(&parent, 1200, "PNG_");
    short id = 0;
    ML::WCFixedString<63> type;
    EXPECT_EQ(ML::XML::ReadFromXML_Image(&parent, id, type), ML::eXMLElementMissing);
    ASSERT_EQ(ML::XML::ReadFromXML_Image(parent.SubElement("Image"), id, type), ML::eNoErr);
    EXPECT_EQ(id, 1200);
    EXPECT_EQ(type.compare("PNG_"), 0);
}

TEST(XMLHelpersStrings, VectorsDropEmptyTokensAndCDATAEntitiesRoundTrip) {
    CXMLElement element("s", ",a,,b c,");
    std::vector<std::string> values;
    ML::XML::ReadFromXML_String_Vector(&element, values, ", ");
    EXPECT_EQ(values, (std::vector<std::string>{"a", "b", "c"}));

    std::string text = "x[1]]]>";
    ML::XML::InsertCDATAEntities(text);
    EXPECT_EQ(text, "x&lsqb;1&rsqb;&rsqb;&rsqb;>");
    ML::XML::RemoveCDATAEntities(text);
    EXPECT_EQ(text, "x[1]]]>");

    pugi::xml_document doc;
    ML::PugiXML::read_xml_from_string("<r><Flag/></r>", doc);
    bool flag = false;
    ML::PugiXML::ReadFromXML_SetBoolTrueIfSubElementExists(doc.child("r"), "Flag", flag);
    EXPECT_TRUE(flag);
    ML::PugiXML::ReadFromXML_SetBoolTrueIfSubElementExists(doc.child("r"), "None", flag);
    EXPECT_TRUE(flag); // never cleared
}

TEST(XMLHelpersPaths, InvalidTextKeepsThePath) {
    ML::FM::WCStPath path("/tmp/kept");
    CXMLElement empty("P");
    EXPECT_EQ(ML::XML::ReadFromXML_WTPathRef(&empty, path), ML::eNoErr);
    EXPECT_EQ(path.GetNativePathString().compare("/tmp/kept"), 0);
    CXMLElement other("P", "/opt/new place");
    ML::XML::ReadFromXML_WTPathRef(&other, path);
    EXPECT_EQ(path.GetNativePathString().compare("/opt/new place"), 0);
    CXMLElement out("P");
    ML::XML::WriteToXML_WTPathRef(&out, path);
    EXPECT_EQ(out.GetText(), "/opt/new place");
}

TEST(WUAtoiTable, WholeNumbersOnly) {
    struct {
        const char *text;
        ML::WTErr err;
        int value;
    } const cases[] = {{"42", ML::eNoErr, 42},
                       {"  -7 ", ML::eNoErr, -7},
                       {"+3", ML::eNoErr, 3},
                       {"", ML::eNotANumber, 0},
                       {"-", ML::eNotANumber, 0},
                       {"1.5", ML::eNotJustANumber, 0},
                       {"2147483648", ML::eOutOfRangeNumber, 0},
                       {"-2147483648", ML::eNoErr, -2147483647 - 1}};
    for (const auto &c : cases) {
        int value = 0;
        EXPECT_EQ(ML::WUAtoi(c.text, value), c.err) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
    }
    unsigned int u = 9;
    EXPECT_EQ(ML::WUAtoi("-1", u), ML::eOutOfRangeNumber);
    EXPECT_EQ(u, 9u);
    EXPECT_EQ(ML::WUStod(" 1.25e2xyz"), 125.0);
    EXPECT_EQ(ML::WUStod("--1"), 0.0);
    EXPECT_EQ(ML::WUStod(nullptr), 0.0);
}

} // namespace
