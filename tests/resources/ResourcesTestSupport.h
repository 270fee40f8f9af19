#pragma once

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "resources/ResourceManager.h"
#include "tests/files/FilesTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace resources_test {

namespace fs = std::filesystem;
using files_test::MakeZip;
using files_test::ReadText;
using files_test::WriteText;

// A bundle folder in a temporary home; the process's resource manager is torn down after each
// test so no container or resource leaks from one case into the next.
class BundleTest : public ::testing::Test {
protected:
    using Container = MIREL_NAMESPACE_NAME::WTResContainerType;
    using Resource = MIREL_NAMESPACE_NAME::WTResourceType;

    void TearDown() override { MIREL_NAMESPACE_NAME::RM::Dispose(); }

    fs::path Bundle() const { return m_home.path() / "Plugins" / "Gain.bundle"; }
    fs::path Resources() const { return Bundle() / "Contents" / "Resources"; }
    void Put(const std::string &relative, const std::string &text) const {
        WriteText(Resources() / relative, text);
    }
    Container *Open() {
        Container *container = nullptr;
        EXPECT_EQ(MIREL_NAMESPACE_NAME::RM::OpenResContainer(Bundle().c_str(), 0, container),
                  MIREL_NAMESPACE_NAME::eNoErr);
        return container;
    }
    static std::string Text(Resource *resource) {
        return std::string(static_cast<const char *>(resource->m_Data.m_pData),
                           resource->m_Data.m_DataSize);
    }
    // The bytes of a resource, its record released again; a failed load fails the test.
    static std::string Load(Container *container, const MIREL_NAMESPACE_NAME::WCResKey &key) {
        Resource *resource = nullptr;
        EXPECT_EQ(MIREL_NAMESPACE_NAME::RM::GetAResource(container, key, resource),
                  MIREL_NAMESPACE_NAME::eNoErr);
        if (resource == nullptr)
            return {};
        std::string text = Text(resource);
        MIREL_NAMESPACE_NAME::RM::ReleaseResource(resource);
        return text;
    }

    mirel_test::WCTestHome m_home;
};

} // namespace resources_test
