// The resource manager's two paths that matter: the hit of GetAResource + ReleaseResource on a
// container of a few thousand keys, against a bare std::map lookup with the same key type (the
// floor); and the first load of an XML resource through WCResConvertCXMLElement, against reading
// the file and building the tree directly. The closing lines print the ratios.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "bench/support/WCBenchRatios.h"
#include "core/WCStMemObj.h"
#include "files/WCStFile.h"
#include "resources/ResourceManager.h"
#include "resources/WCResConvertCXMLElement.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;

constexpr int kNumKeys = 4000;

// A bundle in a fresh temporary folder, removed at exit.
struct WSBenchBundle {
    WSBenchBundle() {
        std::string pattern = (fs::temp_directory_path() / "mirel-res-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            std::abort();
        root = pattern;
        bundle = root / "Bench.bundle";
        const fs::path xmlFolder = bundle / "Contents" / "Resources" / "XML_";
        fs::create_directories(xmlFolder);
        std::ofstream out(xmlFolder / "1001.xml");
        out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<cALGORITHM Name=\"Bench\">\n";
        for (int i = 0; i < 300; ++i)
            out << "  <Parameter Name=\"P" << i << "\" Min=\"0\" Max=\"1\" Default=\"0.5\">"
                << "<Scale>Linear</Scale></Parameter>\n";
        out << "</cALGORITHM>\n";
        std::ofstream ext(bundle / "Contents" / "Resources" / "extensions.txt");
        ext << "XML_ .xml\n";
    }
    ~WSBenchBundle() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }
    fs::path root;
    fs::path bundle;
};

WSBenchBundle &Bundle() {
    static WSBenchBundle bundle;
    return bundle;
}

std::vector<WCResKey> MakeKeys() {
    std::vector<WCResKey> keys;
    keys.reserve(kNumKeys);
    for (int i = 0; i < kNumKeys; ++i) {
        const std::string id = "resource_" + std::to_string(i * 7919 % 100000);
        keys.emplace_back(i % 2 ? "PNG_" : "png_", id.c_str());
    }
    return keys;
}

void Hit_GetAResourceRelease(benchmark::State &state) {
    WTResContainerType *container = nullptr;
    if (RM::OpenResContainer(Bundle().bundle.c_str(), 0, container) != eNoErr) {
        state.SkipWithError("open failed");
        return;
    }
    const std::vector<WCResKey> keys = MakeKeys();
    std::vector<WTResourceType *> held(keys.size());
    static const char kData[] = "payload";
    for (std::size_t i = 0; i < keys.size(); ++i)
        RM::AddResource(container, keys[i], kData, sizeof kData, held[i]);
    std::size_t i = 0;
    for (auto _ : state) {
        WTResourceType *resource = nullptr;
        RM::GetAResource(container, keys[i], resource);
        benchmark::DoNotOptimize(resource->m_Data.m_pData);
        RM::ReleaseResource(resource);
        if (++i == keys.size())
            i = 0;
    }
    RM::ReleaseResources(container, held.data(), held.size());
    RM::CloseResContainer(container);
}

void Floor_StdMapFind(benchmark::State &state) {
    const std::vector<WCResKey> keys = MakeKeys();
    std::map<WCResKey, int *> map;
    static int value = 0;
    for (const auto &key : keys)
        map.emplace(key, &value);
    std::size_t i = 0;
    for (auto _ : state) {
        auto found = map.find(keys[i]);
        benchmark::DoNotOptimize(found->second);
        if (++i == keys.size())
            i = 0;
    }
}

void FirstLoad_XMLResource(benchmark::State &state) {
    WTResContainerType *container = nullptr;
    if (RM::OpenResContainer(Bundle().bundle.c_str(), 0, container) != eNoErr) {
        state.SkipWithError("open failed");
        return;
    }
    WCResKey key("XML_", short(1001));
    key.SetConverter(std::make_shared<RM::WCResConvertCXMLElement>());
    for (auto _ : state) {
        WTResourceType *resource = nullptr;
        if (RM::GetAResource(container, key, resource) != eNoErr) {
            state.SkipWithError("load failed");
            break;
        }
        benchmark::DoNotOptimize(resource->m_Data.m_pData);
        // The last release drops the record, so every get is a first load.
        RM::ReleaseResource(resource);
    }
    RM::CloseResContainer(container);
}

void Direct_ReadFileAndParse(benchmark::State &state) {
    const FM::WCStPath path(
        (Bundle().bundle / "Contents" / "Resources" / "XML_" / "1001.xml").c_str());
    for (auto _ : state) {
        Utils::WCStMemObj bytes;
        FM::WCStFileRead file(path);
        file.ReadToWCStMemObj(bytes);
        XML::CXMLElement root;
        XML::CXMLTreeBuilder builder(&root);
        builder.BuildFromWCStMemObj(bytes);
        benchmark::DoNotOptimize(root.IsValid());
    }
}

BENCHMARK(Hit_GetAResourceRelease);
BENCHMARK(Floor_StdMapFind);
BENCHMARK(Hit_GetAResourceRelease)->Threads(2);
BENCHMARK(FirstLoad_XMLResource)->Unit(benchmark::kMicrosecond);
BENCHMARK(Direct_ReadFileAndParse)->Unit(benchmark::kMicrosecond);

void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    ratios.PrintRatio("Hit_GetAResourceRelease", "Floor_StdMapFind",
                      std::to_string(kNumKeys) + " keys");
    ratios.PrintRatio("FirstLoad_XMLResource", "Direct_ReadFileAndParse");
}

} // namespace

int main(int argc, char **argv) {
    const int result = mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                            mirel_bench::WCBenchRatios::eCPUTime);
    RM::Dispose();
    return result;
}
