#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "files/WCStPath.h"

// Small helpers of the file layer's suites: they make and read files with the standard library,
// so that a fault of the layer cannot hide itself.
namespace files_test {

namespace fs = std::filesystem;
namespace FM = MIREL_NAMESPACE_NAME::FM;

inline void WriteText(fs::path const &path, std::string const &text) {
    fs::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
}

inline std::string ReadText(fs::path const &path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline FM::WCStPath PathOf(fs::path const &path) {
    return FM::WCStPath(path.string());
}

} // namespace files_test
