#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Code/Presets/CPresetInfo.h"
#include "Code/Presets/PresetXML.h"
#include "core/MirelNamespace.h"
#include "core/WCFourCC.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

// Whole preset documents: an .xps file ("PresetXMLTree") with presets, and in factory files
// separators and titles, and the host chunk ("PresetChunkXMLTree" with one preset). Both are the
// writer's text of a tree built in memory, so neither carries an XML declaration. Readers take
// any bytes: a broken, cut or foreign document gives ePresetFileProblem and leaves the target as
// it was. [any-thread] on distinct objects; the frame calls them on the main thread, or on the
// host's chunk thread under the algorithm's lock.

using WTPresetList = std::vector<std::unique_ptr<CPresetInfo>>;

inline constexpr const char *kPresetFileRoot = "PresetXMLTree";
inline constexpr const char *kPresetChunkRoot = "PresetChunkXMLTree";

// The document text of `list`, in list order, under `rootName` with "version" "2".
WTErr WritePresetsToXMLString(const std::vector<const CPresetInfo *> &list, const char *rootName,
                              std::string &text, const WSPresetWriteOptions &options = {});

// Every "Preset", "Title" and "Separator" of a document, each a CPresetInfo made from `file`
// with the root's "version" ("None" without one) as preset version and, unless the element set
// one, its running index. With `withData` the values are read too. `list` is replaced on
// success only.
// The element tree of a preset document or chunk (any root), parsed by pugixml with the expat
// builder's text rules; ePresetFileProblem for text that does not parse, `root` untouched.
WTErr BuildPresetTree(const char *text, std::uint64_t length, XML::CXMLElement &root);
WTErr ReadPresetsFromXMLText(const char *text, std::uint64_t length, const CPresetsFileInfo &file,
                             WTPresetList &list, bool withData);

// An .xps file: written atomically (rw-r--r-- less the umask), side files beside it.
WTErr WritePresetsFile(const FM::WCStPath &path, const std::vector<const CPresetInfo *> &list);
WTErr ReadPresetsFile(const CPresetsFileInfo &file, WTPresetList &list, bool withData);

// One preset as a host chunk's text, and back: the first "Preset" of the chunk, headers and data,
// with every load flag set. An empty result of writing is kErrPresetChunkEmpty.
WTErr WritePresetChunk(const CPresetInfo &info, Utils::WCStMemObj &chunk);
WTErr ReadPresetChunk(const Utils::WCStConstMemObj &chunk, CPresetInfo &info);

// The chunk ids of the frame: 'XPst' (the whole state) and 'curS' (the current setup) carry
// `info` as chunk text, 'pref' is always empty and ignored, any other id is kErrUnknownChunkID.
WTErr GetChunkFromPreset(WCFourCC id, const CPresetInfo &info, Utils::WCStMemObj &chunk);
WTErr SetChunkToPreset(WCFourCC id, const Utils::WCStConstMemObj &chunk, CPresetInfo &info);

} // namespace Preset

MIREL_NAMESPACE_END
