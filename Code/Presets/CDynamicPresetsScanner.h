#pragma once

#include "Code/Presets/CPublicAlg.h"
#include "Code/Presets/PresetDocuments.h"
#include "Code/Presets/WTPresetTypes.h"
#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

// Turns a folder of preset files into one list: every .xps and .yps file below it, each level in
// name order unless its "List Order.txt" orders it, each file's presets in file order. Only the
// headers are read; a file that does not read is left out rather than hiding the others.
// [main-thread]
class CDynamicPresetsScanner {
public:
    // Appends to `list`, each entry in `section`. ePresetFileProblem for a path that is no
    // readable folder, with `list` untouched.
    static WTErr ParseFolderContents(const CPublicAlg &alg, const FM::WCStPath &folder,
                                     WTPresetList &list, EPresetSection section);
};

} // namespace Preset

MIREL_NAMESPACE_END
