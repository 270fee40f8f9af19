#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "Code/Process/CProcessCodeManager.h"
#include "Code/Process/WUNativeProcess.h"
#include "Code/Process/WUProcessorSpec.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using ml::SProcessorSpec;

// Two builds for x86: one that runs on every model from Pentium up (cycles 900 on the weakest,
// 700 on PentiumPro), one exact AVX build; and a 56k build no x86 may take.
const char *kProcessXML = R"(<ProcessXML resBase="100">
  <SubComponentTypeList><SubComponentType><Name>Native</Name>
    <ProcessCodeMatch>x64</ProcessCodeMatch></SubComponentType></SubComponentTypeList>
  <SubComponentList><SubComponent><Type>GnFl</Type><ProcessCodeMatch>Native</ProcessCodeMatch>
    </SubComponent></SubComponentList>
  <ProcessCodeDescriptionList>
    <ProcessCodeDescription resType="Nati" resID="1">
      <Coefs>4</Coefs><States>2</States><NumInputs>2</NumInputs><NumOutputs>2</NumOutputs>
      <MaxSampleRate>192000</MaxSampleRate><ProcessorFamily>x86</ProcessorFamily>
      <CycleCount>900, 700</CycleCount><ProcessFunctionName>Process</ProcessFunctionName>
      <ExternalReq><memSpace>YMEM</memSpace><theSize>64</theSize><accessCount>3</accessCount>
        <cyclic>true</cyclic></ExternalReq>
    </ProcessCodeDescription>
    <ProcessCodeDescription resType="Nati" resID="2">
      <Coefs>8</Coefs><ProcessorFamily>3</ProcessorFamily><CanRunOn>3</CanRunOn>
      <CycleCount>300</CycleCount></ProcessCodeDescription>
    <ProcessCodeDescription resType="sigD" resID="3">
      <ProcessorFamily>56k</ProcessorFamily><CycleCount>50</CycleCount></ProcessCodeDescription>
  </ProcessCodeDescriptionList>
  <ProcessCodeMatchList><ProcessCodeMatch><Name>x64</Name>
    <ProcessCodeDescriptionID>0</ProcessCodeDescriptionID>
    <ProcessCodeDescriptionID>1</ProcessCodeDescriptionID></ProcessCodeMatch>
  </ProcessCodeMatchList>
</ProcessXML>)";

ml::CProcessCodeManager Read(const char *text, const char *subType = "GnFl") {
    pugi::xml_document doc;
    EXPECT_TRUE(doc.load_string(text));
    ml::CProcessCodeManager manager;
    EXPECT_EQ(manager.ReadProcCodeDescForComponentFromXMLTrees({doc.document_element()},
                                                               ml::WCFourCC::FromText(subType), ""),
              0);
    return manager;
}

TEST(ProcessCode, BuildChoiceFallsBackToTheWeakestOfTheFamilyOnly) {
    const ml::CProcessCodeManager manager = Read(kProcessXML);
    ASSERT_EQ(manager.GetDescriptions().size(), 2u) << "the 56k build is not this type's";
    const struct {
        SProcessorSpec asked;
        bool runs;
        SProcessorSpec chosen;
        int cycles;
        std::uint32_t coefs;
    } cases[] = {
        {{3, 1}, true, {3, 1}, 700, 4},  // an exact entry of the first build
        {{3, 3}, true, {3, 3}, 300, 8},  // the exact AVX build wins over the earlier fallback
        {{3, 4}, true, {3, 0}, 900, 4},  // no build for it: the weakest of the family
        {{1, 0}, false, {0, -1}, -1, 0}, // another family never falls back
    };
    for (auto const &c : cases) {
        ml::ProcessMemory::SDSPReqRes needs;
        EXPECT_EQ(manager.GetDSPReqResForSpecificProcessor(c.asked, needs), c.runs);
        EXPECT_EQ(needs.cycles, c.cycles);
        if (!c.runs)
            continue;
        EXPECT_EQ(needs.processor.specific, c.chosen.specific);
        EXPECT_EQ(needs.coefsWords, c.coefs);
    }
    ml::ProcessMemory::SDSPReqRes needs;
    ASSERT_TRUE(manager.GetDSPReqResForSpecificProcessor({3, 0}, needs));
    EXPECT_EQ(needs.codeResID, 101) << "the document's resource base is added";
    ASSERT_EQ(needs.extBuffs.size(), 1u);
    EXPECT_EQ(needs.extBuffs[0].memSpace, ml::WCFourCC("YMEM"));
    EXPECT_EQ(needs.extBuffs[0].size, 64u);
    EXPECT_TRUE(needs.extBuffs[0].cyclic);
    EXPECT_EQ(needs.extBuffs[0].memoryRef, 0) << "the process side fills the reference";
}

TEST(ProcessCode, WeakestEntriesAndProcessorNames) {
    ml::ProcessMemory::CProcCodeDesc desc;
    desc.m_ProcessorFamily = 3;
    desc.m_CyclesList = {-1, 5};
    SProcessorSpec out;
    ASSERT_TRUE(desc.FindWeakestProcessor(out));
    EXPECT_EQ(out.specific, 1);
    int cycles = 0;
    EXPECT_FALSE(desc.CyclesForSpecificProcessor({3, 3}, out, cycles)) << "entry 0 is -1";
    desc.m_CyclesList = {9, 7};
    ASSERT_TRUE(desc.CyclesForSpecificProcessor({3, 3}, out, cycles));
    EXPECT_EQ(out.specific, 0);
    EXPECT_FALSE(ml::WeakerProcessor({1, 0}, {3, 0}, out));
    ASSERT_TRUE(ml::WeakerProcessor({3, 2}, {3, 2}, out));
    EXPECT_FALSE(ml::IsValidSpec({3, 5}));
    EXPECT_TRUE(ml::IsValidSpec({3, 4}));
    EXPECT_STREQ(ml::ProcessorFamilyName(9), "Unknown Processor family");
    ml::WCFixedString<63> name;
    ml::ProcessorName({3, 1}, name);
    EXPECT_STREQ(name.c_str(), "x86 PentiumPro");
}

TEST(ProcessCode, BrokenDescriptionsAreRefusedWholeAndChangeNothing) {
    const ml::CProcessCodeManager good = Read(kProcessXML);
    // Each case replaces a piece of the second build's description.
    const struct {
        const char *piece, *broken;
    } cases[] = {
        {"<Coefs>8</Coefs>", "<Coefs>many</Coefs>"},
        {"<Coefs>8</Coefs>", "<Coefs>999999999999</Coefs>"},
        {"<CycleCount>300</CycleCount>", "<CycleCount>1 x</CycleCount>"},
        {"<CycleCount>300</CycleCount>", "<CycleCount>-7</CycleCount>"},
        {"<CycleCount>300</CycleCount>", "<CycleCount>1 2</CycleCount>"},
        {"<CanRunOn>3</CanRunOn>", "<CanRunOn>9999</CanRunOn>"},
        {"<ProcessorFamily>3</ProcessorFamily>", "<ProcessorFamily>Z80</ProcessorFamily>"},
        {"<Coefs>8</Coefs>", "<Coefs>8</Coefs><ExternalReq><memSpace>TOOLONG</memSpace>"
                             "</ExternalReq>"},
    };
    for (auto const &c : cases) {
        std::string text = kProcessXML;
        text.replace(text.find(c.piece), std::strlen(c.piece), c.broken);
        pugi::xml_document doc;
        ASSERT_TRUE(doc.load_string(text.c_str()));
        ml::CProcessCodeManager manager = good;
        EXPECT_EQ(manager.ReadProcCodeDescForComponentFromXMLTrees({doc.document_element()},
                                                                   ml::WCFourCC("GnFl"), ""),
                  ml::eXMLTreeNotValid)
            << c.broken;
        EXPECT_EQ(manager.GetDescriptions().size(), 2u) << c.broken;
    }
    pugi::xml_document doc;
    ASSERT_TRUE(doc.load_string("<ProcessXML><ProcessCodeMatchList><ProcessCodeMatch><Name>x64"
                                "</Name><ProcessCodeDescriptionID>4</ProcessCodeDescriptionID>"
                                "</ProcessCodeMatch></ProcessCodeMatchList></ProcessXML>"));
    ml::CProcessCodeManager manager;
    EXPECT_EQ(manager.ReadProcCodeDescForComponentFromXMLTrees({doc.document_element()},
                                                               ml::WCFourCC("GnFl"), "x64"),
              ml::eXMLTreeNotValid)
        << "an id past the list";
    ml::ProcessMemory::SDSPReqRes needs;
    EXPECT_FALSE(Read(kProcessXML, "Othr").GetDSPReqResForSpecificProcessor({3, 0}, needs));
    EXPECT_EQ(needs.cycles, -1) << "a sub-type no match names has no build";
}

TEST(NativeProcess, ResourceTypesAndTheDiagnosticsFolder) {
    const struct {
        ml::ProcessorType type;
        ml::EOSType os;
        const char *name;
    } rows[] = {
        {ml::eProcessorTypeGeneric, ml::eOSLinux, "GenericLinux64"},
        {ml::eProcessorTypeGenericMultiCore, ml::eOSLinux, "GenericMultiCoreLinuxIntel64"},
        {ml::eProcessorTypeAVX, ml::eOSLinux, "AVXLinuxIntel64"},
        {ml::eProcessorTypeAVX512, ml::eOSLinux, ""},
        {ml::eProcessorTypeAVX512, ml::eOSWindows, "AVX512Processor"},
        {ml::ProcessorType(99), ml::eOSMacArm, "GenericMacArm"},
    };
    for (auto const &row : rows)
        EXPECT_STREQ(ml::ObtainProcessCodeResourceType(row.type, row.os), row.name);
    ml::ProcessorType weaker = ml::eProcessorTypeAVX512;
    std::vector<ml::ProcessorType> chain;
    for (ml::ProcessorType type = ml::eProcessorTypeAVX512; ml::WeakerProcessorType(type, weaker);
         type = weaker)
        chain.push_back(weaker);
    EXPECT_EQ(chain, (std::vector<ml::ProcessorType>{ml::eProcessorTypeAVX,
                                                     ml::eProcessorTypeGenericMultiCore,
                                                     ml::eProcessorTypeGeneric}));

    const auto bundle = std::filesystem::path(testing::TempDir()) / "Diag.bundle";
    std::filesystem::remove_all(bundle);
    std::filesystem::create_directories(bundle / "Contents/Resources");
    const ml::FM::WCStPath path(bundle.string());
    EXPECT_EQ(ml::GetCPUTypeForBundle(path), ml::GetCPUType());
    std::filesystem::create_directories(bundle / "Contents/Resources/generic_multicore_processor");
    EXPECT_EQ(ml::GetCPUTypeForBundle(path), ml::eProcessorTypeGenericMultiCore);
    std::filesystem::remove_all(bundle);
}

} // namespace
