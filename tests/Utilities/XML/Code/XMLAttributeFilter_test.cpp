#include <string>

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/PugiXML.h"
#include "Utilities/XML/Code/XMLAttributeFilter.h"
#include "tests/Utilities/XML/Code/XMLTestSupport.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;
using ML::XML::WSAttributeRequirement;

const char *kDoc = "<P><A S='x,y'/><B S='z'><C/></B><D/><E S='y'><F S='z'/><G S='y'/></E></P>";

using mirel_test::Names;

TEST(XMLAttributeFilter, BothTreeFormsKeepMatchesAlternativesAndElementsWithoutAttribute) {
    const WSAttributeRequirement rules[] = {{"S", "y"}};
    pugi::xml_document doc;
    ASSERT_EQ(ML::PugiXML::read_xml_from_string(kDoc, doc), 0);
    pugi::xml_node root = doc.document_element();
    ML::XML::FilterPugiXMLByAttributes(rules, 1, root);
    EXPECT_EQ(Names(root), "A D E(G ) ");

    ML::XML::CXMLElement element;
    ASSERT_EQ(mirel_test::Parse(kDoc, element), ML::eNoErr);
    ML::XML::FilterXMLByAttributes(rules, 1, element);
    EXPECT_EQ(Names(element), "A D E(G ) ");
}

TEST(XMLAttributeFilter, RulesApplyOneAfterAnother) {
    const WSAttributeRequirement rules[] = {{"S", "y"}, {"T", "1"}};
    pugi::xml_document doc;
    ASSERT_EQ(ML::PugiXML::read_xml_from_string("<P><A S='y' T='2'/><B T='12'/></P>", doc), 0);
    pugi::xml_node root = doc.document_element();
    ML::XML::FilterPugiXMLByAttributes(rules, 2, root);
    EXPECT_EQ(Names(root), "B ");
}

TEST(XMLAttributeFilter, ACodeFarIntoALongListStillKeepsItsElement) {
    const std::string text = "<P><A S='" + std::string(300, 'x') + ",y'/></P>";
    const WSAttributeRequirement rules[] = {{"S", "y"}};
    ML::XML::CXMLElement element;
    ASSERT_EQ(mirel_test::Parse(text, element), ML::eNoErr);
    ML::XML::FilterXMLByAttributes(rules, 1, element);
    EXPECT_EQ(Names(element), "A ");
}

TEST(XMLAttributeFilter, DeepTreesDoNotExhaustTheStack) {
    std::string text;
    for (int i = 0; i < 100000; ++i)
        text += "<L>";
    for (int i = 0; i < 100000; ++i)
        text += "</L>";
    pugi::xml_document doc;
    ASSERT_EQ(ML::PugiXML::read_xml_from_string(text, doc), 0);
    const WSAttributeRequirement rules[] = {{"S", "y"}};
    pugi::xml_node root = doc.document_element();
    ML::XML::FilterPugiXMLByAttributes(rules, 1, root);
    EXPECT_TRUE(root.first_child());
}

} // namespace
