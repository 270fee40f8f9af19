// The preset readers over arbitrary bytes: the first byte picks the reader (an .xps document with
// its data, each of its blocks also read as a link law; a host chunk; a .yps text whose chunk
// then goes through the chunk reader; or the file API's lists and chunk reader for one plug-in,
// which filter by type lists). What a reader accepts is written, read back and written again,
// and the two texts must be the same; what it refuses must leave its target as it was. Presets
// older than 11.0.0 are read but not compared. Nothing may crash, hang or grow without bound.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Presets/CPresetAPI.h"
#include "Code/Presets/PresetDocuments.h"
#include "Code/Presets/PresetYAML.h"
#include "Code/Presets/WUPresetLinkLaw.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "Utilities/XML/Code/PugiXML.h"
#include "Utilities/XML/Code/WCXMLLog.h"
#include "tests/support/WCSilentAlgorithm.h"

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

// Every block read as a link law: a refused block leaves the law as it was, an accepted one
// writes and reads back the same.
void FuzzLinkLaws(const Preset::WTPresetList &list) {
    const Preset::WSLinkLaw untouched{1, 2, {{3, 4}}};
    for (const auto &info : list) {
        for (const auto &data : info->m_Data) {
            for (const auto &block : data->m_PluginSpecific) {
                Preset::WSLinkLaw law = untouched;
                if (Preset::LoadLinklawFromPreset(*info, block->m_TagName.c_str(), data->m_Setup,
                                                  law) != eNoErr) {
                    if (!(law == untouched))
                        std::abort();
                    continue;
                }
                Preset::CPresetInfo saved;
                Preset::WSLinkLaw again;
                if (Preset::SaveLinklawToPreset(saved, law, "law", eSetupA) != eNoErr ||
                    Preset::LoadLinklawFromPreset(saved, "law", eSetupA, again) != eNoErr ||
                    !(again == law))
                    std::abort();
            }
        }
    }
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
    FuzzLinkLaws(list);
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

// A plug-in of type "XGai", sub-type "TsAl" that takes presets of "XGa2" too.
class WCFuzzAlgorithm : public mirel_test::WCSilentAlgorithm {
public:
    WCFuzzAlgorithm() : WCSilentAlgorithm(MirelComponentInfo(), NoContainer()) {
        SetAlgTypes(WCFourCC("XGai"), WCFourCC("TsAl"));
    }

private:
    static WTResContainerType *&NoContainer() {
        static WTResContainerType *none = nullptr;
        return none;
    }
};

class WCFuzzPublicAlg : public Preset::CPublicAlg {
public:
    using CPublicAlg::CPublicAlg;
    std::vector<WCFourCC> GetPresetCompatibleTypes(WCFourCC) const override {
        return {WCFourCC("XGa2")};
    }
};

// The plug-in's lists of a document in both XML worlds, and its chunk reader: what is refused
// leaves the target as it was.
void FuzzPresetAPI(const std::string &text) {
    static const WCFuzzAlgorithm algorithm;
    const WCFuzzPublicAlg alg(algorithm);
    const Preset::CPresetsFileInfo file;
    Preset::WTPresetList list;
    XML::CXMLElement root;
    XML::CXMLTreeBuilder builder(root);
    if (text.size() >= 4 && builder.BuildFromSingleBuffer(text.data(), text.size()) == eNoErr &&
        root.IsValid())
        Preset::CPresetAPI::GetPresetList_XML(alg, file, root, list, WCFourCC::Unreadable(),
                                              WCFourCC::Unreadable(), -1, true);
    pugi::xml_document doc;
    if (PugiXML::read_xml_from_string(text, doc) == 0)
        Preset::CPresetAPI::GetPresetList_XML_Pugi(alg, file, doc.document_element(), list,
                                                   WCFourCC::Unreadable(), WCFourCC::Unreadable(),
                                                   -1);
    Preset::CPresetAPI::DisableDuplicatePresets(list);
    Preset::CPresetAPI::FixPresetOrderIfNeeded(list);

    Preset::CPresetInfo info;
    info.m_PresetName = "untouched";
    const Utils::WCStConstMemObj chunk(text.data(), text.size());
    if (Preset::CPresetAPI::SetPresetChunk(alg, info, chunk) != eNoErr &&
        (info.m_PresetName != "untouched" || !info.m_Data.empty()))
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const auto previous = XML::SetXMLLogHandler(&Quiet);
    (void)previous;
    if (size == 0)
        return 0;
    const std::string text(reinterpret_cast<const char *>(data) + 1, size - 1);
    switch (data[0] % 4) {
    case 0: FuzzDocument(text); break;
    case 1: FuzzChunk(text); break;
    case 2: FuzzYAML(text); break;
    default: FuzzPresetAPI(text); break;
    }
    return 0;
}
