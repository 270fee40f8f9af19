// Reads arbitrary bytes as a bundle's "ProcessXML". Whatever the text says, reading ends with a
// code; a refused document leaves the manager as it was; every build a processor gets has
// cycles that are not -1 and a model of the asked family, and a processor no build serves gets
// cycles -1.

#include <cstdint>
#include <cstdlib>

#include <pugixml.hpp>

#include "Code/Process/CProcessCodeManager.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

void Check(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    pugi::xml_document doc;
    if (!doc.load_buffer(data, size))
        return 0;
    ml::CProcessCodeManager manager;
    for (const char *subType : {"GnFl", "Othr"}) {
        const std::size_t before = manager.GetDescriptions().size();
        const int err = manager.ReadProcCodeDescForComponentFromXMLTrees(
            {doc.document_element()}, ml::WCFourCC::FromText(subType), "x64");
        if (err != 0)
            Check(manager.GetDescriptions().size() == before);
        for (std::int32_t family = 0; family <= 4; ++family) {
            for (std::int32_t specific = -1; specific <= 6; ++specific) {
                ml::ProcessMemory::SDSPReqRes needs;
                const ml::SProcessorSpec spec{family, specific};
                if (manager.GetDSPReqResForSpecificProcessor(spec, needs))
                    Check(needs.cycles != -1 && needs.processor.family == family);
                else
                    Check(needs.cycles == -1);
            }
        }
    }
    return 0;
}
