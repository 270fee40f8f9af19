#include "graphic_stream/GraphicStreamVocabulary.h"

#include <cstring>
#include <string>
#include <utility>

#include <gtest/gtest.h>

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

// The values of the codes the writer uses are held byte for byte by the reviewed demo.gs.
TEST(GraphicStreamVocabulary, CodesAreTheirFourCharactersInStreamOrder) {
    const auto bytes = [](std::int32_t code) {
        char text[4];
        std::memcpy(text, &code, 4);
        return std::string(text, 4);
    };
    EXPECT_EQ(bytes(eGSBeginStream), "BSTM");
    EXPECT_EQ(bytes(eGSDataHere), "\r>>>");
    EXPECT_EQ(static_cast<std::uint32_t>(eGSIllegalCommand), 0xBAADF00Du);
}

TEST(GraphicStreamVocabulary, TextLookupRoundTripsAndRejectsStrangers) {
    for (std::int32_t code : {eGSBeginStream, eGSDrawVertices, eGSTypeInt16, eGSPurposeMetaData,
                              eGSStraightLines, eGSAlignTop, eGSFrameChildren}) {
        EXPECT_EQ(GraphicStreamTextToCommand(GraphicStreamCommandToText(code, 0), 0), code);
        EXPECT_EQ(GraphicStreamTextToCommand(GraphicStreamCommandToText(code, 1), 1), code);
    }
    // The alternative column falls back to the primary text where it has none.
    EXPECT_STREQ(GraphicStreamCommandToText(eGSBeginStream, 1), "stream");
    EXPECT_STREQ(GraphicStreamCommandToText(eGSDrawImage, 1), "DrawImage");
    EXPECT_EQ(GraphicStreamTextToCommand("stream", 0), eGSIllegalCommand);
    EXPECT_EQ(GraphicStreamTextToCommand("no such text", 0), eGSIllegalCommand);
    EXPECT_EQ(GraphicStreamTextToCommand(nullptr, 0), eGSIllegalCommand);
    // An unknown code prints its value's four characters; individual points have no row.
    EXPECT_STREQ(GraphicStreamCommandToText(GSCode("zzyx")), "Unknown GraphicStreamCommand xyzz");
    EXPECT_STREQ(GraphicStreamCommandToText(eGSPoints), "Unknown GraphicStreamCommand pnts");
}

TEST(GraphicStreamVocabulary, DrawLineFlagTextsRoundTripByBitIndex) {
    for (int bit = 0; bit < 3; ++bit)
        EXPECT_EQ(GraphicStreamTextToDrawLineFlags(GraphicStreamDrawLineFlagsToText(bit)),
                  1u << bit);
    EXPECT_STREQ(GraphicStreamDrawLineFlagsToText(3), "");
    EXPECT_STREQ(GraphicStreamDrawLineFlagsToText(-1), "");
    EXPECT_EQ(GraphicStreamTextToDrawLineFlags("Bold"), 0xFFFFFFFFu);
}

TEST(GraphicStreamVocabulary, OpenCommandsHaveTheirCloseCommands) {
    EXPECT_EQ(CloseCommandFromOpenCommand(eGSBeginStream), eGSEndStream);
    EXPECT_EQ(CloseCommandFromOpenCommand(eGSBeginFrame), eGSEndFrame);
    EXPECT_EQ(CloseCommandFromOpenCommand(eGSDrawImage), eGSIllegalCommand);
}

// The walk bounds every data record by these sizes, so a wrong one reads past the record.
TEST(GraphicStreamVocabulary, ElementSizesOfDataTypes) {
    const std::pair<std::int32_t, int> table[] = {
        {eGSTypeChar, 1},  {eGSTypeFloat, 4}, {eGSTypeUInt8, 1},    {eGSTypeInt16, 2},
        {eGSTypeInt32, 4}, {eGSTypeRect, 16}, {eGSPurposeText, 0}};
    for (const auto &[type, size] : table)
        EXPECT_EQ(GraphicStreamDataTypeElementSize(type), size) << type;
}

TEST(GraphicStreamVocabulary, ColoursPrintAsHtml) {
    WCFixedString<15> text;
    SGSRGBAColorToHTMLColor(SGSRGBAColor{0x0A, 0xFF, 0x80, 0x10}, text);
    EXPECT_STREQ(text.c_str(), "#0aff80");
}
