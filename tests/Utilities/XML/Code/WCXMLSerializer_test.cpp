#include "Utilities/XML/Code/WCXMLSerializer.h"

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WCStlContainerXMLSerializer.h"
#include "Utilities/XML/Code/WCXMLable.h"
#include "core/WC16BytesID.h"
#include "core/WCFourCC.h"
#include "core/WCVersion.h"
#include "tests/Utilities/XML/Code/XMLTestSupport.h"
#include "tests/support/WCGoldenFile.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;
using ML::XML::CXMLElement;
using ML::XML::WCXMLSerializer;

struct WSPoint : ML::XML::WCXMLable {
    int x = 0;
    int y = 0;
    void SerializeXML(WCXMLSerializer &s) override {
        s.element_name("X").element_content(x).element_end();
        s.element_name("Y").element_content(y).element_end();
    }
    bool operator==(const WSPoint &o) const { return x == o.x && y == o.y; }
};

enum EMode { eModeOff = 0, eModeOn = 1, eModeAuto = 2 };

// One class that exercises every content form, read and written through the same function.
struct WSEverything : ML::XML::WCXMLable {
    std::string text = "default";
    ML::WCFixedString<15> name;
    bool flag = false;
    bool present = false;
    unsigned short u16 = 0;
    unsigned int u32 = 0;
    std::uint64_t u64 = 0;
    short s16 = 0;
    int s32 = 0;
    std::int64_t s64 = 0;
    float f = 0;
    double d = 0;
    ML::WCFourCC code;
    ML::WC16BytesID id;
    ML::WCVersion version;
    int mode = eModeOff;
    int attribMode = eModeOff;
    int ratio = 100;
    int count = 0;
    ML::WCFixedString<31> label;
    WSPoint origin;
    std::vector<WSPoint> points;
    std::vector<int> numbers;

    void SerializeXML(WCXMLSerializer &s) override {
        static std::map<ML::WCFixedString<63>, int> modes = {
            {"off", eModeOff}, {"on", eModeOn}, {"auto", eModeAuto}, {"enabled", eModeOn}};
        s.element_name("Text").element_content(text).element_end();
        s.element_name("Name").element_content(name).element_end();
        s.element_name("Flag").element_content(flag).element_end();
        s.element_name_and_bool_if_exist("Present", present).element_end();
        s.element_name("U16").element_content(u16).element_end();
        s.element_name("U32").element_content(u32).element_end();
        s.element_name("U64").element_content(u64).element_end();
        s.element_name("S16").element_content(s16).element_end();
        s.element_name("S32").element_content(s32).element_end();
        s.element_name("S64").element_content(s64).element_end();
        s.element_name("F").element_content(f).element_end();
        s.element_name("D").element_content(d).element_end();
        s.element_name("Code").element_content(code).element_end();
        s.element_name("ID").element_content(id).element_end();
        s.element_name("Version").element_content(version).element_end();
        s.element_name("Mode").element_content_enum(mode, modes).element_end();
        s.element_name("Attribs");
        s.attrib_content_enum("mode", attribMode, modes);
        s.attrib_int("ratio", ratio, 100);
        s.attrib_int("count", count);
        s.attrib_content("label", label);
        s.element_end();
        s.element_name("Origin").element_content(origin).element_end();
        ML::XML::WCStlContainerXMLSerializer<std::vector<WSPoint>> pointList("Point", points);
        s.element_name("Points").element_content(pointList).element_end();
        ML::XML::WCStlContainerXMLSerializer<std::vector<int>> numberList("N", numbers);
        s.element_name("Numbers").element_content(numberList).element_end();
    }
};

WSEverything Filled() {
    WSEverything v;
    v.text = "free <text> & more";
    v.name = "fixed";
    v.flag = true;
    v.present = true;
    v.u16 = 65535;
    v.u32 = 4000000000u;
    v.u64 = 18000000000000000000ull;
    v.s16 = -32768;
    v.s32 = -7;
    v.s64 = -9000000000000000000ll;
    v.f = 0.25f;
    v.d = 1234567.125;
    v.code = ML::WCFourCC("Abcd");
    const unsigned char bytes[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 255};
    v.id = ML::WC16BytesID(bytes);
    v.version = ML::WCVersion(13, 1, 0, 186);
    v.mode = eModeAuto;
    v.attribMode = eModeOn;
    v.ratio = 50;
    v.count = 3;
    v.label = "lbl";
    v.origin.x = 4;
    v.origin.y = -5;
    v.points = {WSPoint(), WSPoint()};
    v.points[1].x = 9;
    v.numbers = {3, 1, 2};
    return v;
}

TEST(WCXMLSerializerRoundTrip, EveryContentFormSurvivesWriteAndReadThroughText) {
    const WSEverything original = Filled();
    CXMLElement written("Everything");
    original.WriteToXML(&written);
    const std::string text = mirel_test::Write(written);
    // The written forms (ten decimals, quoted codes, the first key in key order of an enum value:
    // "enabled" before "on") are held by the reviewed file.
    mirel_test::ExpectGoldenFile(text, MIREL_XML_TEST_DATA, "serializer_everything.xml");

    // Every filled value differs from the default, so a field that is not read back, or read
    // back otherwise, is written otherwise.
    CXMLElement parsed;
    ASSERT_EQ(mirel_test::Parse(text, parsed), ML::eNoErr);
    WSEverything back;
    ASSERT_EQ(back.ReadFromXML(&parsed), ML::eNoErr);
    CXMLElement rewritten("Everything");
    back.WriteToXML(&rewritten);
    EXPECT_EQ(mirel_test::Write(rewritten), text);
}

TEST(WCXMLSerializerWriting, DefaultsFalseFlagsAndEmptyTextsAreLeftOut) {
    WSEverything plain;
    CXMLElement root("Everything");
    plain.WriteToXML(&root);
    EXPECT_EQ(root.SubElement("Present"), nullptr);
    const CXMLElement *attribs = root.SubElement("Attribs");
    EXPECT_FALSE(attribs->AttribExists("ratio"));
    EXPECT_TRUE(attribs->AttribExists("count"));
    EXPECT_FALSE(attribs->AttribExists("label"));
}

TEST(WCXMLSerializerReading, MissingOrUnreadableContentKeepsTheDefaults) {
    CXMLElement root;
    ASSERT_EQ(mirel_test::Parse("<E><S32>not a number</S32><U16>70000</U16><Mode>sideways</Mode>"
                                "<Code>abc</Code><Attribs mode=\"bogus\" count=\"x\"/></E>",
                                root),
              ML::eNoErr);
    WSEverything v;
    v.s32 = 11;
    v.u16 = 12;
    v.mode = eModeOn;
    v.attribMode = eModeAuto;
    v.count = 5;
    v.ReadFromXML(&root);
    EXPECT_EQ(v.text, "default");
    EXPECT_EQ(v.s32, 11);
    EXPECT_EQ(v.u16, 12);
    EXPECT_EQ(v.mode, eModeOn);
    EXPECT_EQ(v.attribMode, eModeAuto);
    EXPECT_EQ(v.count, 5);
    // A text that is there but too short is an unreadable code.
    EXPECT_TRUE(v.code.IsUnreadable());
    EXPECT_FALSE(v.present);
}

TEST(WCXMLSerializerReading, FlagsAreSetByPresenceAndBoolsByWord) {
    CXMLElement root;
    ASSERT_EQ(mirel_test::Parse("<E><Present/><Flag/></E>", root), ML::eNoErr);
    WSEverything v;
    v.ReadFromXML(&root);
    EXPECT_TRUE(v.present);
    EXPECT_TRUE(v.flag); // an empty element reads as true
}

struct WSFiltered : ML::XML::WCXMLable {
    std::string a = "-";
    std::string b = "-";
    std::string inner = "-";
    void SerializeXML(WCXMLSerializer &s) override {
        s.element_name("Item", 0).filter_by_attrib("kind", "a").element_content(a).element_end();
        s.element_name("Item", 1).filter_by_attrib("kind", "a").element_content(b).element_end();
        s.element_name("Group").level_down();
        s.element_name("Inner").element_content(inner).element_end();
        s.level_up().element_end();
    }
};

TEST(WCXMLSerializerReading, FilterRejectsOtherValuesAndLevelsDescend) {
    CXMLElement root;
    ASSERT_EQ(mirel_test::Parse("<E><Item kind=\"a\">first</Item><Item kind=\"b\">second</Item>"
                                "<Group><Inner>deep</Inner></Group><Inner>shallow</Inner></E>",
                                root),
              ML::eNoErr);
    WSFiltered v;
    v.ReadFromXML(&root);
    EXPECT_EQ(v.a, "first");
    EXPECT_EQ(v.b, "-");
    EXPECT_EQ(v.inner, "deep");

    // Writing ignores filters and nests the level.
    CXMLElement out("E");
    v.WriteToXML(&out);
    EXPECT_EQ(mirel_test::Write(out), "<E>\n\n    <Item>first</Item>\n    <Item>-</Item>\n"
                                      "    <Group>\n\n        <Inner>deep</Inner>\n    </Group>\n"
                                      "</E>\n");
}

TEST(WCXMLSerializerReading, VersionReadsItsTextAndKeepsItsValueWhenMissing) {
    CXMLElement element("V", "2.5.1");
    ML::WCVersion version(9, 9, 9, 9);
    ML::XML::WCXMLSerializerReader(&element).element_content(version);
    EXPECT_EQ(version, ML::WCVersion(2, 5, 1, 0));

    CXMLElement parent;
    ASSERT_EQ(mirel_test::Parse("<P/>", parent), ML::eNoErr);
    WSEverything v;
    v.version = ML::WCVersion(1, 2, 3, 4);
    v.ReadFromXML(&parent);
    EXPECT_EQ(v.version, ML::WCVersion(1, 2, 3, 4));
}

TEST(WCXMLSerializerDirections, ArrayCountsComeFromTheDocumentOnlyWhenReading) {
    CXMLElement root("r");
    root.push_sub_element(new CXMLElement("n"));
    root.push_sub_element(new CXMLElement("n"));
    ML::XML::WCXMLSerializerReader reader(&root);
    ML::XML::WCXMLSerializerWriter writer(&root);
    EXPECT_EQ(reader.get_num_array_elements("n", 7), 2u);
    EXPECT_EQ(writer.get_num_array_elements("n", 7), 7u);
    // An unbalanced level_up never leaves the root level.
    reader.level_up().level_up();
    EXPECT_EQ(reader.get_num_array_elements("n", 0), 2u);
}

} // namespace
