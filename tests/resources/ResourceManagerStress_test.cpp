#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "resources/ResourceManager.h"
#include "resources/WCResContainer_Base.h"
#include "resources/WCResConvertCXMLElement.h"
#include "tests/resources/ResourcesTestSupport.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using resources_test::BundleTest;

class ResourceManagerStress : public BundleTest {};

// Threads get and release the same and different resources of one container, with and without
// variants and conversion; at the end every count is back to zero, each resource was read from
// disk no more often than it was fully released, and no data was ever seen torn.
TEST_F(ResourceManagerStress, ThreadsGetAndReleaseTheSameAndDifferentResources) {
    constexpr int kIDs = 8;
    for (int i = 0; i < kIDs; ++i)
        Put("TXT_/" + std::to_string(i), "text " + std::to_string(i));
    Put("XML_/1", "<root><a/></root>");
    Container *container = Open();
    Resource *pinned = nullptr;
    ASSERT_EQ(RM::GetAResource(container, WCResKey("TXT_", "0"), pinned), eNoErr);

    constexpr int kThreads = 6;
    constexpr int kRounds = 400;
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            auto xmlKey = WCResKey("XML_", "1");
            xmlKey.SetConverter(std::make_shared<RM::WCResConvertCXMLElement>());
            for (int round = 0; round < kRounds; ++round) {
                const int id = (t + round) % kIDs;
                const std::string idText = std::to_string(id);
                WCResKey key("TXT_", idText.c_str(), (round % 3 == 0) ? "v" : nullptr);
                Resource *resource = nullptr;
                Resource *same = nullptr;
                Resource *xml = nullptr;
                if (RM::GetAResource(container, key, resource) != eNoErr ||
                    RM::GetAResource(container, WCResKey("TXT_", "0"), same) != eNoErr ||
                    RM::GetAResource(container, xmlKey, xml) != eNoErr) {
                    ++failures;
                    break;
                }
                const std::string text(static_cast<const char *>(resource->m_Data.m_pData),
                                       resource->m_Data.m_DataSize);
                if (text != "text " + idText || xml->m_Data.m_DataSize != 1)
                    ++failures;
                if (RM::ReleaseResource(xml) != eNoErr || RM::ReleaseResource(same) != eNoErr ||
                    RM::ReleaseResource(resource) != eNoErr)
                    ++failures;
            }
        });
    }
    for (auto &thread : threads)
        thread.join();
    EXPECT_EQ(failures.load(), 0);
    EXPECT_EQ(pinned->m_RetainCount, 1);
    ASSERT_EQ(RM::ReleaseResource(pinned), eNoErr);
    WSResourceManagerInfo info;
    ASSERT_EQ(RM::GetResourceManagerInfo(info, container), eNoErr);
    EXPECT_EQ(info.m_TotalResources, 0u);
}

// Several threads open and close the same bundle while others use it: one object throughout.
TEST_F(ResourceManagerStress, ThreadsOpenAndCloseOneBundle) {
    Put("TXT_/a", "a");
    Container *anchor = Open();
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                Container *container = nullptr;
                if (RM::OpenResContainer(Bundle().c_str(), 0, container) != eNoErr ||
                    container != anchor) {
                    ++failures;
                    break;
                }
                Resource *resource = nullptr;
                if (RM::GetAResource(container, WCResKey("TXT_", "a"), resource) != eNoErr)
                    ++failures;
                else
                    RM::ReleaseResource(resource);
                if (RM::CloseResContainer(container) != eNoErr)
                    ++failures;
            }
        });
    }
    for (auto &thread : threads)
        thread.join();
    EXPECT_EQ(failures.load(), 0);
    EXPECT_EQ(RM::GetRetainCount(anchor), 1);
}

} // namespace
