#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "resources/MirelComponentInfo.h"
#include "resources/WCMirelComponentInfoList.h"

namespace {

namespace ML = MIREL_NAMESPACE_NAME;
using ML::MirelComponentInfo;
using ML::WCFourCC;
using ML::WCMirelComponentInfoList;

MirelComponentInfo Make(const char *name, WCFourCC subType, WCFourCC type = WCFourCC("EQ__")) {
    MirelComponentInfo info;
    info.m_ShortName = name;
    info.m_ComponentSubType = subType;
    info.m_ComponentType = type;
    return info;
}

MirelComponentInfo Full() {
    MirelComponentInfo info = Make("Gain", WCFourCC("Gnst"));
    info.m_PluginType = MirelComponentInfo::eVSTPlugin;
    info.m_FilePath = ML::FM::WCStPath("/opt/plugins/Gain.bundle");
    info.m_Affiliation = WCFourCC("abcd");
    info.m_InternalVersion = ML::WCVersion(1, 2, 3, 4);
    info.m_APIVersion = ML::WCVersion(13, 1, 0, 186);
    info.m_InstanceType = MirelComponentInfo::eInitPluginForTest;
    info.m_ProcCodeDesc.m_ResType = WCFourCC("Nati");
    info.m_ProcCodeDesc.m_Coefs = 4;
    info.m_ProcCodeDesc.m_CyclesList = {-1, 40};
    info.m_ProcCodeDesc.m_ExternBuffs.resize(1);
    info.m_ProcCodeDesc.m_ExternBuffs[0].m_Size = 64;
    info.m_VendorName = "Other";
    info.m_CategoryName = "Dynamics";
    info.m_ExternalVersion = ML::WCVersion(2, 0, 1, 0);
    const unsigned char id[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 255};
    info.m_VSTClassID = ML::WC16BytesID(id);
    info.m_AudioSuiteDisabledHandle = true;
    return info;
}

TEST(MirelComponentInfo, XMLRoundTripKeepsEveryFieldWithItsWords) {
    const MirelComponentInfo original = Full();
    ML::XML::CXMLElement element("MirelComponentInfo");
    ASSERT_EQ(ML::Write_MirelComponentInfo_ToXML(&element, original), ML::eNoErr);
    ASSERT_EQ(element.GetSubElements().size(), 15u);
    EXPECT_STREQ(element.GetSubElements()[0]->GetName().c_str(), "PluginType");
    EXPECT_EQ(element.GetSubElements()[0]->GetText(), "VSTPlugin");
    EXPECT_STREQ(element.GetSubElements()[14]->GetName().c_str(), "AudioSuiteDisabledHandle");
    EXPECT_EQ(element.SubElement("ePluginInstanceType")->GetText(), "eInitPluginForTest");

    MirelComponentInfo read;
    ASSERT_EQ(ML::Read_MirelComponentInfo_FromXML(&element, read), ML::eNoErr);
    EXPECT_TRUE(read == original);
    EXPECT_STREQ(MirelComponentInfo::TypeToString(4), "KPAPIShell");
    EXPECT_STREQ(MirelComponentInfo::TypeToString(17), "UnknownType");
}

TEST(MirelComponentInfo, ReadKeepsFieldsTheDocumentLacksAndIgnoresUnknownWords) {
    ML::XML::CXMLElement element;
    const std::string text = "<MirelComponentInfo><PluginType>Nonsense</PluginType>"
                             "<shortName>Only</shortName></MirelComponentInfo>";
    {
        ML::XML::CXMLTreeBuilder builder(&element);
        ASSERT_EQ(builder.BuildFromSingleBuffer(text.data(), text.size()), ML::eNoErr);
    }
    MirelComponentInfo info = Full();
    ASSERT_EQ(ML::Read_MirelComponentInfo_FromXML(&element, info), ML::eNoErr);
    EXPECT_STREQ(info.m_ShortName.c_str(), "Only");
    EXPECT_EQ(info.m_PluginType, MirelComponentInfo::eVSTPlugin);
    EXPECT_EQ(info.m_VendorName, Full().m_VendorName);
    EXPECT_EQ(ML::Read_MirelComponentInfo_FromXML(nullptr, info), ML::eXMLElementMissing);
}

TEST(MirelComponentInfo, CachePurposeIgnoresNamesButNotVersionsOrPath) {
    MirelComponentInfo a = Full();
    MirelComponentInfo b = a;
    b.m_ShortName = "Renamed";
    b.m_CategoryName = "Other";
    EXPECT_TRUE(a.CompareForCachePurpose(b));
    EXPECT_FALSE(a == b);
    b.m_InternalVersion = ML::WCVersion(1, 2, 3, 5);
    EXPECT_FALSE(a.CompareForCachePurpose(b));
    b = a;
    b.m_FilePath = ML::FM::WCStPath("/elsewhere/Gain.bundle");
    EXPECT_FALSE(a.CompareForCachePurpose(b));
}

TEST(MirelComponentInfo, SortOrdersByNameWithoutCaseThenSubType) {
    WCMirelComponentInfoList list;
    list.Add(Make("beta", WCFourCC("BBBB")));
    list.Add(Make("Alpha", WCFourCC("ZZZZ")));
    list.Add(Make("alpha", WCFourCC("AAAA")));
    list.Sort();
    EXPECT_EQ(list.GetMirelComponentInfo(0)->m_ComponentSubType, WCFourCC("AAAA"));
    EXPECT_EQ(list.GetMirelComponentInfo(1)->m_ComponentSubType, WCFourCC("ZZZZ"));
    EXPECT_STREQ(list.GetMirelComponentInfo(2)->m_ShortName.c_str(), "beta");
    EXPECT_TRUE(list.GetMirelComponentInfo(0)->IsNameBefore(*list.GetMirelComponentInfo(2)));
    EXPECT_EQ(list.GetMirelComponentInfo(0)->CompareName(*list.GetMirelComponentInfo(1)), 0);
}

TEST(WCPluginUniqueID, OrdersAndComparesOnAllFourFields) {
    ML::WCPluginUniqueID id;
    EXPECT_TRUE(id.IsDefault());
    const ML::WCPluginUniqueID a(Full());
    ML::WCPluginUniqueID b(a);
    EXPECT_TRUE(a == b);
    b.m_VendorName = "Zeta";
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    b.clear();
    EXPECT_TRUE(b.IsDefault());
}

TEST(WCMirelComponentInfoList, LookupRemoveAndFilter) {
    WCMirelComponentInfoList list;
    list.Add(Make("A", WCFourCC("Mnom"), WCFourCC("EQ__")));
    list.Add(Make("A", WCFourCC("Stes"), WCFourCC("EQ__")));
    list.Add(Make("B", WCFourCC("Xxxx"), WCFourCC("Dyn_")));
    EXPECT_EQ(list.GetMirelComponentIndex(WCFourCC("Stes")), 1);
    EXPECT_EQ(list.GetMirelComponentIndex(WCFourCC("none")), WCMirelComponentInfoList::kNotFound);
    EXPECT_EQ(list.GetMirelComponentIndexByID(ML::WCPluginUniqueID(*list.GetMirelComponentInfo(2))),
              2);
    EXPECT_EQ(list.GetMirelComponentInfo(3), nullptr);

    WCMirelComponentInfoList kept = list;
    kept.FilterByComponentType(WCFourCC("EQ__"));
    EXPECT_EQ(kept.GetNumComponents(), 2u);
    WCMirelComponentInfoList dropped = list;
    dropped.FilterOut(WCFourCC("EQ__"));
    EXPECT_EQ(dropped.GetNumComponents(), 1u);

    EXPECT_EQ(list.RemoveSubComponentInfo(WCFourCC("none")), ML::ePluginSubComponentNotFound);
    EXPECT_EQ(list.RemoveSubComponentInfo(WCFourCC("Mnom")), ML::eNoErr);
    EXPECT_EQ(list.RemoveMirelComponentInfo(5), ML::ePluginSubComponentNotFound);
    EXPECT_EQ(list.RemoveMirelComponentInfo(0), ML::eNoErr);
    EXPECT_EQ(list.GetNumComponents(), 1u);
}

TEST(WCMirelComponentInfoList, MonoStereoNamesAreAddedOnceAndNetShellAdjustsAll) {
    WCMirelComponentInfoList list;
    list.Add(Make("Comp", WCFourCC("Cmpm")));
    list.Add(Make("Comp Stereo", WCFourCC("Cmps")));
    list.Add(Make("Other", WCFourCC("Cmpx")));
    list.AddMonoStereoToNames();
    list.AddMonoStereoToNames();
    EXPECT_STREQ(list.GetMirelComponentInfo(0)->m_ShortName.c_str(), "Comp Mono");
    EXPECT_STREQ(list.GetMirelComponentInfo(1)->m_ShortName.c_str(), "Comp Stereo");
    EXPECT_STREQ(list.GetMirelComponentInfo(2)->m_ShortName.c_str(), "Other");

    list.AdjustToNetShell(WCFourCC("NetS"), MirelComponentInfo::eKPAPIShell, " (Net)");
    for (const MirelComponentInfo &info : list.GetComponents()) {
        EXPECT_EQ(info.m_ComponentType, WCFourCC("NetS"));
        EXPECT_EQ(info.m_PluginType, MirelComponentInfo::eKPAPIShell);
    }
    EXPECT_STREQ(list.GetMirelComponentInfo(2)->m_ShortName.c_str(), "Other (Net)");
}

TEST(WCMirelComponentInfoList, XMLRoundTripWritesOneElementPerRecord) {
    WCMirelComponentInfoList list;
    list.Add(Full());
    list.Add(Make("Second", WCFourCC("Sec2")));
    ML::XML::CXMLElement element("List");
    ASSERT_EQ(list.WriteToXML(&element), &element);
    ASSERT_EQ(element.GetSubElements().size(), 2u);
    EXPECT_STREQ(element.GetSubElements()[1]->GetName().c_str(), "MirelComponentInfo");
    WCMirelComponentInfoList read;
    read.Add(Make("stale", WCFourCC("Stal")));
    ASSERT_EQ(read.ReadFromXML(&element), ML::eNoErr);
    EXPECT_TRUE(read == list);
}

} // namespace
