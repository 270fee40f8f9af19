// Feeds arbitrary bytes to the reader of the module locations file.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "files/WULocationIndicators.h"

using namespace MIREL_NAMESPACE_NAME;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::string const text(reinterpret_cast<char const *>(data), size);
    std::string value = "stale";
    int const error = FM::ReadLocationValue(text, "LocationV13", value);
    if (error == eNoErr ? value.size() <= 3 : !value.empty())
        std::abort();
    return 0;
}
