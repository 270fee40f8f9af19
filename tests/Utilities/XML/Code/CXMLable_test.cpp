#include "Utilities/XML/Code/CXMLable.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "Utilities/XML/Code/CXMLElement.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;

// A class that overrides nothing: every read is a placeholder and says so with eNotImplemented
// (-25), never with a success that read nothing. The writes hand their argument back.
TEST(CXMLableDefaults, ReadsAnswerNotImplementedAndWritesReturnTheirArgument) {
    ML::CXMLable object;
    ML::XML::CXMLElement element("e");
    pugi::xml_document doc;
    pugi::xml_node node = doc.append_child("e");
    EXPECT_EQ(object.ReadFromXML(&element), ML::eNotImplemented);
    EXPECT_EQ(object.ReadFromXML(node), ML::eNotImplemented);
    EXPECT_EQ(object.WriteToXML(&element), &element);
    EXPECT_EQ(object.WriteToXML(node), node);
}

} // namespace
