#include "graphic_stream/GraphicStreamVocabulary.h"

#include <cstring>

#include <gtest/gtest.h>

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

namespace {

// The stream bytes of a code, as they lie in memory.
std::string StreamBytes(std::int32_t code) {
    char bytes[4];
    std::memcpy(bytes, &code, 4);
    return std::string(bytes, 4);
}

} // namespace

TEST(GraphicStreamVocabulary, CodesAreTheirStreamBytesReadLittleEndian) {
    struct {
        std::int32_t code;
        std::uint32_t value;
    } const table[] = {
        {eGSBeginStream, 0x4D545342u},     {eGSEndStream, 0x4D545345u},
        {eGSBeginFrame, 0x4D524642u},      {eGSDataHere, 0x3E3E3E0Du},
        {eGSDataPtr, 0x2A2A2A2Au},         {eGSFont, 0x666F6E74u},
        {eGSDrawOval, 0x4F76616Cu},        {eGSTypeRect, 0x72656374u},
        {eGSPurposeRGBColor, 0x7267625Fu}, {eGSPolygon, 0x706F6C79u},
        {eGSPointSquares, 0x706E7371u},    {eGSAlignBottom, 0x7662746Du},
        {eGSIllegalCommand, 0xBAADF00Du},  {eGSStreamFormat, 0xA0A0A0A0u},
    };
    for (auto const &row : table)
        EXPECT_EQ(static_cast<std::uint32_t>(row.code), row.value);
    EXPECT_EQ(StreamBytes(eGSBeginStream), "BSTM");
    EXPECT_EQ(StreamBytes(eGSDataHere), "\r>>>");
}

TEST(GraphicStreamVocabulary, AlternativeColumnFallsBackToPrimaryText) {
    EXPECT_STREQ(GraphicStreamCommandToText(eGSBeginStream, 0), "BeginStream");
    EXPECT_STREQ(GraphicStreamCommandToText(eGSBeginStream, 1), "stream");
    EXPECT_STREQ(GraphicStreamCommandToText(eGSDrawImage, 1), "DrawImage");
    // The other texts of the dump are held by its reviewed YAML files.
    EXPECT_STREQ(GraphicStreamCommandToText(eGSAlignHCenter, 0), "HCenter");
}

TEST(GraphicStreamVocabulary, UnknownCodePrintsAsFourCharacters) {
    EXPECT_STREQ(GraphicStreamCommandToText(GSCode("zzyx")), "Unknown GraphicStreamCommand xyzz");
    // Individual points have no row of their own.
    EXPECT_STREQ(GraphicStreamCommandToText(eGSPoints), "Unknown GraphicStreamCommand pnts");
}

TEST(GraphicStreamVocabulary, TextLookupRoundTripsAndRejectsStrangers) {
    for (std::int32_t code : {eGSBeginStream, eGSDrawVertices, eGSTypeInt16, eGSPurposeMetaData,
                              eGSStraightLines, eGSAlignTop, eGSFrameChildren}) {
        EXPECT_EQ(GraphicStreamTextToCommand(GraphicStreamCommandToText(code, 0), 0), code);
        EXPECT_EQ(GraphicStreamTextToCommand(GraphicStreamCommandToText(code, 1), 1), code);
    }
    EXPECT_EQ(GraphicStreamTextToCommand("stream", 1), eGSBeginStream);
    EXPECT_EQ(GraphicStreamTextToCommand("stream", 0), eGSIllegalCommand);
    EXPECT_EQ(GraphicStreamTextToCommand("no such text", 0), eGSIllegalCommand);
    EXPECT_EQ(GraphicStreamTextToCommand(nullptr, 0), eGSIllegalCommand);
}

TEST(GraphicStreamVocabulary, DrawLineFlagsByBitIndex) {
    EXPECT_STREQ(GraphicStreamDrawLineFlagsToText(0), "NoAntialias");
    EXPECT_STREQ(GraphicStreamDrawLineFlagsToText(1), "ColorsInData");
    EXPECT_STREQ(GraphicStreamDrawLineFlagsToText(2), "eDrawInXORMode");
    EXPECT_STREQ(GraphicStreamDrawLineFlagsToText(3), "");
    EXPECT_STREQ(GraphicStreamDrawLineFlagsToText(-1), "");
    EXPECT_EQ(GraphicStreamTextToDrawLineFlags("ColorsInData"), eGSColorsInData);
    EXPECT_EQ(GraphicStreamTextToDrawLineFlags("eDrawInXORMode"), eGSDrawInXORMode);
    EXPECT_EQ(GraphicStreamTextToDrawLineFlags("Bold"), 0xFFFFFFFFu);
}

TEST(GraphicStreamVocabulary, OpenCommandsHaveTheirCloseCommands) {
    EXPECT_EQ(CloseCommandFromOpenCommand(eGSBeginStream), eGSEndStream);
    EXPECT_EQ(CloseCommandFromOpenCommand(eGSBeginFrame), eGSEndFrame);
    EXPECT_EQ(CloseCommandFromOpenCommand(eGSDrawImage), eGSIllegalCommand);
}

TEST(GraphicStreamVocabulary, TypePurposePairsAreExactlyTheListedOnes) {
    std::int32_t const types[] = {eGSTypeChar,  eGSTypeFloat, eGSTypeInt8, eGSTypeUInt8,
                                  eGSTypeInt16, eGSTypeInt32, eGSTypeRect};
    std::int32_t const purposes[] = {
        eGSPurposeResID,    eGSPurposeText,      eGSPurposePoint2D,   eGSPurposePoint3D,
        eGSPurposeRGBColor, eGSPurposeRGBAColor, eGSPurposeClipRects, eGSPurposeResourcesBaseURL,
        eGSPurposeRemark,   eGSPurposeMetaData};
    int matches = 0;
    for (auto type : types)
        for (auto purpose : purposes)
            matches += DataTypeToPurposeMatch(type, purpose) ? 1 : 0;
    EXPECT_EQ(matches, 11);
    EXPECT_TRUE(DataTypeToPurposeMatch(eGSTypeChar, eGSPurposeResourcesBaseURL));
    EXPECT_TRUE(DataTypeToPurposeMatch(eGSTypeInt16, eGSPurposePoint3D));
    EXPECT_TRUE(DataTypeToPurposeMatch(eGSTypeRect, eGSPurposeClipRects));
    EXPECT_FALSE(DataTypeToPurposeMatch(eGSTypeInt32, eGSPurposePoint2D));
    EXPECT_FALSE(DataTypeToPurposeMatch(eGSTypeInt8, eGSPurposeRGBColor));
}

TEST(GraphicStreamVocabulary, ElementSizesOfDataTypes) {
    EXPECT_EQ(GraphicStreamDataTypeElementSize(eGSTypeChar), 1);
    EXPECT_EQ(GraphicStreamDataTypeElementSize(eGSTypeFloat), 4);
    EXPECT_EQ(GraphicStreamDataTypeElementSize(eGSTypeUInt8), 1);
    EXPECT_EQ(GraphicStreamDataTypeElementSize(eGSTypeInt16), 2);
    EXPECT_EQ(GraphicStreamDataTypeElementSize(eGSTypeInt32), 4);
    EXPECT_EQ(GraphicStreamDataTypeElementSize(eGSTypeRect), 16);
    EXPECT_EQ(GraphicStreamDataTypeElementSize(eGSPurposeText), 0);
}

TEST(GraphicStreamVocabulary, ColoursPrintAsHtml) {
    WCFixedString<15> text;
    SGSRGBAColorToHTMLColor(SGSRGBAColor{0x0A, 0xFF, 0x80, 0x10}, text);
    EXPECT_STREQ(text.c_str(), "#0aff80");
}
