#include "Utilities/XML/Code/WCXMLFile.h"

#include <fstream>

#include <gtest/gtest.h>

#include "Utilities/XML/Code/WCXMLSerializer.h"
#include "Utilities/XML/Code/WCXMLable.h"
#include "core/WCVersion.h"
#include "tests/Utilities/XML/Code/XMLTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;
using ML::XML::CXMLElement;
using mirel_test::ReadFile;

TEST(WCXMLFileRead, MissingFileIsKeptAsValidity) {
    mirel_test::WCTempDir dir;
    ML::WCXMLFile file(dir.path() / "Settings.xml");
    EXPECT_EQ(file.GetXML()->GetName().compare("Settings"), 0);
    EXPECT_EQ(file.Read(), ML::eFMFileNotFound);
    EXPECT_EQ(file.GetError(), ML::eFMFileNotFound);
    ML::WCXMLFile folder(dir.path());
    EXPECT_EQ(folder.Read(), ML::eFMFileNotFound);
    ML::WCXMLFile empty{ML::XML::WTXMLPath()};
    EXPECT_EQ(empty.Read(), ML::eFMIllegalPathRef);
}

TEST(WCXMLFileRead, BrokenOrTruncatedFileKeepsTheTreeItHad) {
    mirel_test::WCTempDir dir;
    const auto path = dir.path() / "doc.xml";
    std::ofstream(path) << "<doc><a>1</a></doc>";
    ML::WCXMLFile file(path);
    ASSERT_EQ(file.Read(), ML::eNoErr);
    ASSERT_TRUE(file.IsValid());

    std::ofstream(path) << "<doc><a>2</a>";
    EXPECT_EQ(file.Read(), ML::eXMLElementIncomplete);
    EXPECT_EQ(file.GetXML()->SubElement("a")->GetText(), "1");
    std::ofstream(path) << "<doc><a>3</b></doc>";
    {
        mirel_test::WCXMLLogRecorder quiet;
        EXPECT_EQ(file.Read(), ML::eXMLParserFailed);
    }
    EXPECT_EQ(file.GetXML()->SubElement("a")->GetText(), "1");
}

TEST(WCXMLFileWrite, WritesAndReplacesAtomically) {
    mirel_test::WCTempDir dir;
    const auto path = dir.path() / "out.xml";
    ML::WCXMLFile file(path);
    file.GetXML()->push_sub_element(new CXMLElement("Item", "x"));
    ASSERT_EQ(file.Write(), ML::eNoErr);
    EXPECT_EQ(ReadFile(path), "<out>\n\n    <Item>x</Item>\n</out>\n");

    ML::WCXMLFile unwritable(path / "f.xml");
    EXPECT_EQ(unwritable.Write(), ML::eFMIsAFile);
    EXPECT_FALSE(unwritable.IsValid());
    // Only the one file is there: no temporary was left behind.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()),
                            std::filesystem::directory_iterator()),
              1);
}

struct WSSettings : ML::XML::WCXMLable {
    ML::WCVersion version;
    int volume = 0;
    void SerializeXML(ML::XML::WCXMLSerializer &s) override {
        s.element_name("Version").element_content(version).element_end();
        s.element_name("Volume").element_content(volume).element_end();
    }
};

TEST(WCXMLableFiles, ObjectsRoundTripAndBadFilesLeaveThemAlone) {
    mirel_test::WCTempDir dir;
    const auto path = dir.path() / "settings.xml";
    WSSettings written;
    written.version = ML::WCVersion(1, 2, 3, 4);
    written.volume = -6;
    ASSERT_EQ(ML::XML::WriteWCXMLableToFile(path, written, "Settings"), ML::eNoErr);
    EXPECT_EQ(ReadFile(path).rfind("<Settings>", 0), 0u);

    WSSettings read;
    ASSERT_EQ(ML::XML::ReadWCXMLableFromFile(path, read), ML::eNoErr);
    EXPECT_EQ(read.version, written.version);
    EXPECT_EQ(read.volume, -6);

    std::ofstream(path) << "<Settings><Volume>9</Volume>";
    EXPECT_EQ(ML::XML::ReadWCXMLableFromFile(path, read), ML::eXMLElementIncomplete);
    EXPECT_EQ(read.volume, -6);
    EXPECT_EQ(ML::XML::ReadWCXMLableFromFile(dir.path() / "none.xml", read), ML::eFMFileNotFound);
}

} // namespace
