#include "tests/support/WCGUITestTools.h"

#include <gtest/gtest.h>

#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "Utilities/XML/Code/WriteXMLToStream.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCGraphicStreamToCairo.h"
#include "graphic_stream/WCGraphicStreamToYAML.h"
#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCGoldenPicture.h"

namespace mirel_test {

namespace ml = MIREL_NAMESPACE_NAME;

std::unique_ptr<ml::XML::CXMLElement> ParseXML(const std::string &text) {
    auto root = std::make_unique<ml::XML::CXMLElement>();
    ml::XML::CXMLTreeBuilder(root.get()).BuildFromSingleBuffer(text.data(), text.size());
    EXPECT_TRUE(root->IsValid()) << text;
    return root;
}

std::string WrittenXML(const ml::WCGUIControl &control) {
    ml::XML::CXMLElement element("cCONTROLLER");
    control.WriteToXMLWithAlg(&element);
    std::string text;
    ml::XML::WriteXMLToString(text, &element, false, true, 0);
    return text;
}

void ExpectGoldenFrame(ml::CStandardGUI_X &gui, const std::string &folder,
                       const std::string &name) {
    ml::miGS::WCGraphicStreamBinaryWriter writer(0);
    writer.ActivateRemarks(true);
    gui.SetNeedToRedrawGUI();
    ASSERT_EQ(gui.GetDrawInstructions(writer), 0);
    ml::miGS::WCGraphicStreamToYAML yaml;
    ASSERT_EQ(yaml.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), 0);
    std::string text = yaml.GetYamlStr();
    if (const std::size_t at = text.find("resources_base_url"); at != std::string::npos)
        text.erase(at, text.find('\n', at) - at);
    ExpectGoldenFile(text, folder, (name + ".yaml").c_str());

    ml::miGS::WCGraphicStreamToCairo painter;
    painter.FollowDataPointers(true);
    painter.ExecStream(static_cast<char *>(writer.GetStreamPtr()), writer.GetStreamSize());
    EXPECT_EQ(painter.GetFirstDrawError(), 0);
    ExpectGoldenPicture(painter.GetSurface(), folder, name);
}

} // namespace mirel_test
