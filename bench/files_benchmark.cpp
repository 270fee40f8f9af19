// The file layer against what a caller would otherwise write: standard streams for whole files,
// boost paths for path arithmetic, libzip for entries and the YAML loader for list order files.
// Each pair runs in the same program; the ratios (ours / theirs) are printed at the end.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <boost/filesystem/path.hpp>
#include <yaml-cpp/yaml.h>
#include <zip.h>

#include "bench/support/WCBenchRatios.h"
#include "core/WCStMemObj.h"
#include "files/WCStFile.h"
#include "files/WCStFileReadFromZip.h"
#include "files/WCStFolderIterator.h"
#include "files/WCStPath.h"
#include "files/WUOpenFile.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;

fs::path const &Folder() {
    static fs::path const folder = [] {
        std::string pattern = (fs::temp_directory_path() / "mirel-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            std::abort();
        return fs::path(pattern);
    }();
    return folder;
}

std::string const &Payload() {
    static std::string const payload = [] {
        std::string text;
        for (int i = 0; text.size() < 256 * 1024; ++i)
            text += "<Preset name=\"" + std::to_string(i) + "\" value=\"0.5\"/>\n";
        return text;
    }();
    return payload;
}

fs::path const &PayloadFile() {
    static fs::path const path = [] {
        fs::path file = Folder() / "payload.xml";
        std::ofstream(file, std::ios::binary) << Payload();
        return file;
    }();
    return path;
}

void ReadWhole_Mirel(benchmark::State &state) {
    FM::WCStPath const path(PayloadFile().string());
    std::string text;
    for (auto _ : state) {
        FM::ReadTheWholeFile(path, text);
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Payload().size()));
}
BENCHMARK(ReadWhole_Mirel);

void ReadWhole_Ifstream(benchmark::State &state) {
    for (auto _ : state) {
        // The quick stream idiom: size from the end, then one read.
        std::ifstream in(PayloadFile(), std::ios::binary | std::ios::ate);
        std::string text(static_cast<std::size_t>(in.tellg()), '\0');
        in.seekg(0);
        in.read(text.data(), static_cast<std::streamsize>(text.size()));
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Payload().size()));
}
BENCHMARK(ReadWhole_Ifstream);

// Replacing a file safely (new file, sync, rename) against writing over it with a stream, which
// loses the old contents on any failure.
void ReplaceFile_Mirel(benchmark::State &state) {
    FM::WCStPath const path((Folder() / "replaced.xml").string());
    for (auto _ : state) {
        FM::WCStFileCreate file(path);
        file.WriteFromString(Payload());
        benchmark::DoNotOptimize(file.Close());
    }
}
BENCHMARK(ReplaceFile_Mirel)->Unit(benchmark::kMicrosecond);

void ReplaceFile_Ofstream(benchmark::State &state) {
    fs::path const path = Folder() / "overwritten.xml";
    for (auto _ : state) {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out << Payload();
        out.flush();
    }
}
BENCHMARK(ReplaceFile_Ofstream)->Unit(benchmark::kMicrosecond);

void PathAppend_Mirel(benchmark::State &state) {
    FM::WCStPath const base("/home/user/.config/Mirel Audio/Preferences");
    for (auto _ : state) {
        FM::WCStPath path(base, "Presets/Bass/Warm Bass.xps");
        benchmark::DoNotOptimize(path.GetLeaf());
    }
}
BENCHMARK(PathAppend_Mirel);

void PathAppend_Boost(benchmark::State &state) {
    boost::filesystem::path const base("/home/user/.config/Mirel Audio/Preferences");
    for (auto _ : state) {
        boost::filesystem::path path = base / "Presets/Bass/Warm Bass.xps";
        benchmark::DoNotOptimize(path.filename().string());
    }
}
BENCHMARK(PathAppend_Boost);

fs::path const &ZipFile() {
    static fs::path const path = [] {
        fs::path file = Folder() / "Images.zip";
        int error = 0;
        zip_t *archive = zip_open(file.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
        for (int i = 0; i < 64; ++i) {
            std::string const name = "Images/knob" + std::to_string(i) + ".png";
            zip_source_t *source = zip_source_buffer(archive, Payload().data(), 16 * 1024, 0);
            zip_file_add(archive, name.c_str(), source, ZIP_FL_OVERWRITE);
        }
        zip_close(archive);
        return file;
    }();
    return path;
}

void ZipEntry_Mirel(benchmark::State &state) {
    FM::WCStFileReadFromZip zip(FM::WCStPath(ZipFile().string()));
    Utils::WCStMemObj data;
    for (auto _ : state) {
        zip.ReadToWCStMemObj("knob42.png", data);
        benchmark::DoNotOptimize(data.GetPtr());
    }
}
BENCHMARK(ZipEntry_Mirel);

void ZipEntry_Libzip(benchmark::State &state) {
    int error = 0;
    zip_t *archive = zip_open(ZipFile().c_str(), ZIP_RDONLY, &error);
    std::string data;
    for (auto _ : state) {
        zip_int64_t const index = zip_name_locate(archive, "Images/knob42.png", 0);
        zip_stat_t info;
        zip_stat_index(archive, static_cast<zip_uint64_t>(index), 0, &info);
        data.resize(info.size);
        zip_file_t *entry = zip_fopen_index(archive, static_cast<zip_uint64_t>(index), 0);
        zip_fread(entry, data.data(), info.size);
        zip_fclose(entry);
        benchmark::DoNotOptimize(data.data());
    }
    zip_discard(archive);
}
BENCHMARK(ZipEntry_Libzip);

std::string const &ListOrderText() {
    static std::string const text = [] {
        std::string yaml = "List Order:\n";
        for (int i = 0; i < 200; ++i)
            yaml += "  - Preset " + std::to_string(i) + ".xps\n";
        return yaml;
    }();
    return text;
}

void ListOrder_Mirel(benchmark::State &state) {
    FM::WCStFolderIterator::WTNameVector names;
    for (auto _ : state) {
        names.clear();
        FM::WCStFolderIterator::ReadItemOrderFromString(ListOrderText(), names);
        benchmark::DoNotOptimize(names.data());
    }
}
BENCHMARK(ListOrder_Mirel);

void ListOrder_YamlLoadAll(benchmark::State &state) {
    std::vector<std::string> names;
    for (auto _ : state) {
        names.clear();
        for (auto const &document : YAML::LoadAll(ListOrderText()))
            for (auto const &entry : document["List Order"])
                names.push_back(entry.Scalar());
        benchmark::DoNotOptimize(names.data());
    }
}
BENCHMARK(ListOrder_YamlLoadAll);

// Ours against theirs.
void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    ratios.PrintRatio("ReadWhole_Mirel", "ReadWhole_Ifstream");
    ratios.PrintRatio("ReplaceFile_Mirel", "ReplaceFile_Ofstream");
    ratios.PrintRatio("PathAppend_Mirel", "PathAppend_Boost");
    ratios.PrintRatio("ZipEntry_Mirel", "ZipEntry_Libzip");
    ratios.PrintRatio("ListOrder_Mirel", "ListOrder_YamlLoadAll");
}

} // namespace

int main(int argc, char **argv) {
    const int result = mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                            mirel_bench::WCBenchRatios::eCPUTime);
    std::error_code ignored;
    fs::remove_all(Folder(), ignored);
    return result;
}
