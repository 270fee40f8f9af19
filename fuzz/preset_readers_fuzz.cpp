// The preset readers over arbitrary bytes: the first byte picks the reader (an .xps document with
// its data, a host chunk, or a .yps text whose chunk then goes through the chunk reader). What a
// reader accepts is written, read back and written again, and the two texts must be the same;
// what it refuses must leave its target as it was. Presets older than 11.0.0 are read but not
// compared. Nothing may crash, hang or grow without bound.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "Code/Presets/PresetDocuments.h"
#include "Code/Presets/PresetYAML.h"
#include "Utilities/XML/Code/WCXMLLog.h"

using namespace MIREL_NAMESPACE_NAME;

namespace {

void Quiet(int, const char *) {}

// Presets older than 11.0.0 read numbers with the old conversion, which does not give back the
// value that was printed; only the others must come back the same.
bool ReadsOldNumbers(const Preset::WTPresetList &list) {
    for (const auto &info : list) {
        if (info->IsStringToDoubleObsoleteVersion())
            return true;
    }
    return false;
}

std::vector<const Preset::CPresetInfo *> Pointers(const Preset::WTPresetList &list) {
    std::vector<const Preset::CPresetInfo *> pointers;
    for (const auto &info : list)
        pointers.push_back(info.get());
    return pointers;
}

void FuzzDocument(const std::string &text) {
    Preset::WTPresetList list;
    list.push_back(std::make_unique<Preset::CPresetInfo>());
    if (Preset::ReadPresetsFromXMLText(text.data(), text.size(), Preset::CPresetsFileInfo(), list,
                                       true) != eNoErr) {
        if (list.size() != 1)
            std::abort();
        return;
    }
    if (ReadsOldNumbers(list))
        return;
    std::string first;
    if (Preset::WritePresetsToXMLString(Pointers(list), Preset::kPresetFileRoot, first) != eNoErr)
        return;
    Preset::WTPresetList again;
    if (Preset::ReadPresetsFromXMLText(first.data(), first.size(), Preset::CPresetsFileInfo(),
                                       again, true) != eNoErr)
        std::abort();
    std::string second;
    if (Preset::WritePresetsToXMLString(Pointers(again), Preset::kPresetFileRoot, second) != eNoErr)
        std::abort();
    // The first read normalises (trimmed texts, cut names); from there the form is a fixed point.
    Preset::WTPresetList third;
    std::string last;
    Preset::ReadPresetsFromXMLText(second.data(), second.size(), Preset::CPresetsFileInfo(), third,
                                   true);
    Preset::WritePresetsToXMLString(Pointers(third), Preset::kPresetFileRoot, last);
    if (second != last)
        std::abort();
}

void FuzzChunk(const std::string &text) {
    Preset::CPresetInfo info;
    info.m_PresetName = "untouched";
    const Utils::WCStConstMemObj chunk(text.data(), text.size());
    if (Preset::SetChunkToPreset(Preset::kChunkWholeState, chunk, info) != eNoErr) {
        if (info.m_PresetName != "untouched" || !info.m_Data.empty())
            std::abort();
        return;
    }
    if (info.IsStringToDoubleObsoleteVersion())
        return;
    Utils::WCStMemObj first, second, third;
    if (Preset::GetChunkFromPreset(Preset::kChunkWholeState, info, first) != eNoErr)
        return;
    Preset::CPresetInfo again;
    if (Preset::SetChunkToPreset(Preset::kChunkWholeState, first, again) != eNoErr ||
        Preset::GetChunkFromPreset(Preset::kChunkWholeState, again, second) != eNoErr)
        std::abort();
    Preset::CPresetInfo last;
    if (Preset::SetChunkToPreset(Preset::kChunkWholeState, second, last) != eNoErr ||
        Preset::GetChunkFromPreset(Preset::kChunkWholeState, last, third) != eNoErr ||
        !(second == third))
        std::abort();
}

void FuzzYAML(const std::string &text) {
    std::string chunk = "untouched";
    Preset::WSYAMLPresetHeader header;
    if (Preset::GetDataChunkFromYAMLPresetText(text, chunk, &header) != eNoErr) {
        if (chunk != "untouched")
            std::abort();
        return;
    }
    FuzzChunk(chunk);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const auto previous = XML::SetXMLLogHandler(&Quiet);
    (void)previous;
    if (size == 0)
        return 0;
    const std::string text(reinterpret_cast<const char *>(data) + 1, size - 1);
    switch (data[0] % 3) {
    case 0: FuzzDocument(text); break;
    case 1: FuzzChunk(text); break;
    default: FuzzYAML(text); break;
    }
    return 0;
}
