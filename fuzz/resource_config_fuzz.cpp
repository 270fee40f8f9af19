// Feeds arbitrary text to the bundle configuration reader: the YAML form must either be refused
// with its code, leaving the maps as they were, or be accepted and survive a write and re-read
// unchanged; the whitespace-pair form never fails.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "resources/WCResConfiguration.h"

using namespace MIREL_NAMESPACE_NAME;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);

    RM::WCResConfiguration config;
    config.SetExtension("KEEP", ".k");
    const int err = config.ReadFromYAML(text);
    if (err != eNoErr) {
        if (err != eRMInvalidResContainer || config.GetExtension(WCFixedString<31>("KEEP")) != ".k")
            std::abort();
    } else {
        RM::WCResConfiguration back;
        if (back.ReadFromYAML(config.WriteToYAML()) != eNoErr ||
            back.Extensions().size() != config.Extensions().size() ||
            back.Redirections().size() != config.Redirections().size() ||
            back.Attributes().size() != config.Attributes().size())
            std::abort();
        for (const auto &[key, value] : config.Extensions())
            if (back.GetExtension(key) != value)
                std::abort();
    }

    RM::WCResConfiguration::WTExtensionMap extensions;
    RM::WCResConfiguration::WTAttributeMap attributes;
    RM::WCResConfiguration::ReadPairs(text, extensions);
    RM::WCResConfiguration::ReadPairs(text, attributes);
    return 0;
}
