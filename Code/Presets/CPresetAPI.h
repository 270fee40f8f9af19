#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "Code/Presets/CPresetInfo.h"
#include "Code/Presets/CPublicAlg.h"
#include "Code/Presets/PresetDocuments.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace XML {
class CXMLElement;
}

namespace Preset {

// The preset file API: turns an .xps file, a .yps file or a bundle's "Presets" resource into
// lists of CPresetInfo for one plug-in, and presets back into files. Only presets whose
// "GenericType" and "SubComp" lists admit the plug-in are seen, read, replaced or removed; the
// others in a file are kept untouched by every write. A file is always rewritten whole and
// atomically, so a write that fails leaves the old file as it was; a file that cannot be read is
// never overwritten. Reading functions throw nothing and leave their target as it was on failure.
// Which file to use and when is the presets manager's policy. [main-thread], or the host's chunk
// thread under the algorithm's lock for SetPresetChunk.
class CPresetAPI {
public:
    using WTFourCCList = std::vector<WCFourCC>;
    using WTPresetMap = std::map<std::string, std::unique_ptr<CPresetInfo>>;

    // The id of "Presets" that applies when neither the caller nor the preset names one.
    static constexpr short kDefaultPresetResourceID = 1000;
    static constexpr short kNoResourceID = -1;
    // A compatible type that takes presets of every type.
    static constexpr WCFourCC kAnyType{"****"};
    static constexpr const char *kPresetResourceType = "Presets";
    static constexpr const char *kDefaultPresetName = "My Default Preset";

    // ---- formats ----------------------------------------------------------------------------
    // "xps" 4 and "yps" 6 by the exact extension; else a bundle holding resource "Presets" of the
    // plug-in's preset id (1000 by default) 3; else 0.
    static EPresetsFormat GetPresetFileFormat(const CPublicAlg &alg, const FM::WCStPath &path);
    // Rewrites a valid .xps file in the current form, with the plug-in's name and version in its
    // own presets. A locked file is ePresetLockedProblem; a bundle's resource cannot be
    // rewritten (eInvalidFileFormatProblem). The format becomes 4 on success.
    static WTErr ConvertFileToCurrFormat(const CPublicAlg &alg, CPresetsFileInfo &file);

    // ---- lists ------------------------------------------------------------------------------
    // The presets, titles and separators of `file` that admit a plug-in of `type` and `subType`
    // ("????" for the plug-in's own) in file order, duplicates flagged disabled. `resID` is the
    // resource's id for a bundle (kNoResourceID: the plug-in's). With `withData` the values are
    // read too. ePresetFileProblem for a missing or broken file; `list` is replaced on success
    // only.
    static WTErr GetPresetList(const CPublicAlg &alg, const CPresetsFileInfo &file,
                               WTPresetList &list, WCFourCC type = WCFourCC::Unreadable(),
                               WCFourCC subType = WCFourCC::Unreadable(),
                               short resID = kNoResourceID, bool withData = false);
    // The same headers through the pugi parser.
    static WTErr GetPresetListWithPugi(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                       WTPresetList &list, WCFourCC type = WCFourCC::Unreadable(),
                                       WCFourCC subType = WCFourCC::Unreadable(),
                                       short resID = kNoResourceID);
    // GetPresetList with every value read.
    static WTErr ReadAllPresetsInfo(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                    WTPresetList &list, WCFourCC type = WCFourCC::Unreadable(),
                                    WCFourCC subType = WCFourCC::Unreadable(),
                                    short resID = kNoResourceID);
    // The list readers over a tree already built; they append to `list`.
    static WTErr GetPresetList_XML(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                   const XML::CXMLElement &root, WTPresetList &list, WCFourCC type,
                                   WCFourCC subType, short resID, bool withData);
    static WTErr GetPresetList_XML_Pugi(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                        const pugi::xml_node &root, WTPresetList &list,
                                        WCFourCC type, WCFourCC subType, short resID);
    // The document of `file` in the pugi world: .xps, bundle resource or the chunk of a .yps.
    static WTErr GetPugiPresetParser(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                     pugi::xml_document &doc, short resID = kNoResourceID);
    // Flags the later of two enabled entries with the same name, group and file as disabled.
    // Titles and separators are never duplicates.
    static void DisableDuplicatePresets(WTPresetList &list);
    // Gathers each group's members in the slots of grouped entries, groups in the order they
    // first appear; entries without a group keep their slots. True when anything moved.
    static bool FixPresetOrderIfNeeded(WTPresetList &list);

    // ---- one preset -------------------------------------------------------------------------
    // Headers and data of the first preset of `info`'s file named like `info` that admits
    // `type` ("????": the plug-in's own). ePresetFileProblem for a missing or broken file,
    // ePresetInfoNotFound when no such preset is there; `info` changes on success only.
    static WTErr ReadPresetInfo(const CPublicAlg &alg, CPresetInfo &info,
                                WCFourCC type = WCFourCC::Unreadable());
    static WTErr ReadPresetInfo_XML(const CPublicAlg &alg, CPresetInfo &info,
                                    WCFourCC type = WCFourCC::Unreadable());
    // Only the setups' shells (setups, names, block headers) of the preset named like `info`.
    static WTErr ReadDataHeadersFromXML(CPresetInfo &info);
    // The preset named like `info` (kDefaultPresetName when it has none) in the default file
    // that `info` names; false, with `info` as it was, when it is not there.
    static bool ReadDefaultPresetFromFile(const CPublicAlg &alg, CPresetInfo &info);
    // Every preset of the default file `file`, keyed by name; false when none was read.
    static bool ReadDefaultPresetsFromFile(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                           WTPresetMap &presets);
    // The first "Preset" of a chunk that admits the plug-in, headers and data with every load
    // flag set, into `info` (format 5). A broken chunk gives its code, one without such a preset
    // ePresetInfoNotFound; `info` changes on success only.
    static WTErr SetPresetChunk(const CPublicAlg &alg, CPresetInfo &info,
                                const Utils::WCStConstMemObj &chunk);

    // ---- writing ----------------------------------------------------------------------------
    // Puts `info` in its file: for an .xps file a same-named preset of this plug-in is replaced
    // and the preset goes last, the file's other entries kept; a .yps file holds just this
    // preset; format 5 leaves the chunk text in `info.m_XMLString`. A locked file is
    // ePresetLockedProblem, a missing or read-only one ePresetFileProblem, a bundle's resource
    // eInvalidFileFormatProblem.
    static WTErr WritePresetInfo(const CPublicAlg &alg, CPresetInfo &info);
    // The .xps form at `path`, made when missing. A file that exists but cannot be read is
    // refused (ePresetFileProblem) rather than overwritten.
    static WTErr WritePresetInfo_XML(const CPublicAlg &alg, const CPresetInfo &info,
                                     const FM::WCStPath &path);
    // The chunk text of `info`: "PresetChunkXMLTree" with one "Preset".
    static WTErr WritePresetInfo_XML(const CPresetInfo &info, std::string &text);
    // A whole .xps file of `list` in list order, atomically.
    static WTErr WritePresetsDataToFile(const CPublicAlg &alg,
                                        const std::vector<const CPresetInfo *> &list,
                                        const FM::WCStPath &path);
    // An .xps file with no presets (rw-r--r-- less the umask), replacing what was there.
    static WTErr CreatePresetFile(const FM::WCStPath &path);
    // Creates the file at `path` and points `file` at it (format 4). Choosing the path is a
    // dialog of the view layer, which does not exist yet: without a path, eNotImplemented.
    static WTErr CreateNewPresetsFile(const CPublicAlg &alg, CPresetsFileInfo &file,
                                      const FM::WCStPath &path);
    // Removes the preset named like `info` that admits the plug-in and rewrites the file. A
    // locked file is ePresetLockedProblem, a missing one ePresetFileProblem, a resource or .yps
    // eInvalidFileFormatProblem, no such preset ePresetInfoNotFound (the file untouched).
    static WTErr RemovePresetInfo(const CPublicAlg &alg, const CPresetInfo &info);
    static WTErr RemovePresetInfo_XML(const CPublicAlg &alg, const CPresetInfo &info);
    // Deletes that "Preset" child from a document's root; ePresetInfoNotFound when none.
    static WTErr RemovePresetInfoXMLTree(const CPublicAlg &alg, const CPresetInfo &info,
                                         XML::CXMLElement &root);
    // Rewrites the stored preset named like `info` with the plug-in specific blocks of `info`
    // (per setup that `info` holds), its values and place in the file kept.
    static WTErr EditPresetSpecificInfo(const CPublicAlg &alg, const CPresetInfo &info);

    // ---- dialogs ----------------------------------------------------------------------------
    // Both need the view layer's dialogs, which do not exist yet: eNotImplemented. Callers that
    // have a path or a name pass it to the functions above.
    static WTErr GetPresetsFile(const CPublicAlg &alg, FM::WCStPath &path, const char *fileName);
    static WTErr GetPresetNameFromUser(const CPublicAlg &alg, WCFixedStringBase &name);

    // ---- compatibility ----------------------------------------------------------------------
    // The "GenericType" and "SubComp" lists of a "Preset" or "Separator" element.
    static void GetTypeAndSubCompVectors(const XML::CXMLElement &element, WTFourCCList &types,
                                         WTFourCCList &subComps);
    static void GetTypeAndSubCompVectors(const pugi::xml_node &node, WTFourCCList &types,
                                         WTFourCCList &subComps);
    // Appends the codes of a comma-separated list, empty pieces skipped; a piece that is not
    // four characters gives "????", which nothing matches.
    static void ParseToVector4CC(const char *text, WTFourCCList &codes);
    // An empty type list, `type` in it, or with `tryCompatible` one of the plug-in's compatible
    // types in it ("****" admits at once); and an empty sub-component list or the plug-in's
    // sub-type in it.
    static bool IsPresetCompatible(const CPublicAlg &alg, WCFourCC type, bool tryCompatible,
                                   const WTFourCCList &types, const WTFourCCList &subComps);
    static bool IsSeparatorSubCompCompatible(const CPublicAlg &alg, const WTFourCCList &subComps);

private:
    static bool IsCompatible(const CPublicAlg &alg, WCFourCC type, WCFourCC subType,
                             bool tryCompatible, const WTFourCCList &types,
                             const WTFourCCList &subComps);
    // The first "Preset" child of `root` named `name` that admits `type`, or null.
    static XML::CXMLElement *FindPreset(const CPublicAlg &alg, const XML::CXMLElement &root,
                                        const char *name, WCFourCC type);
    // The document of `file` (format 3, 4 or 6) under a preset root; ePresetFileProblem for
    // anything else. `root` is filled on success only.
    static WTErr LoadPresetTree(const CPublicAlg *alg, const CPresetsFileInfo &file,
                                const char *resType, short resID, XML::CXMLElement &root);
    // The raw text of `file` as LoadPresetTree reads it.
    static WTErr LoadPresetText(const CPublicAlg *alg, const CPresetsFileInfo &file,
                                const char *resType, short resID, std::string &text);
    // The tree of an .xps file about to be rewritten: empty for a missing or empty file.
    static WTErr LoadTreeForWriting(const FM::WCStPath &path, XML::CXMLElement &root);
    static WTErr WriteTree(XML::CXMLElement &root, const FM::WCStPath &path);
};

} // namespace Preset

MIREL_NAMESPACE_END
