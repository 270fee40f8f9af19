#include "Code/Presets/CDynamicPresetsScanner.h"

#include <new>
#include <utility>

#include "Code/Presets/CPresetAPI.h"
#include "files/FileFilterFunctor.h"
#include "files/WCStFolderIterator.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

class OnlyPresetFiles : public FM::FileFilterFunctor {
public:
    bool operator()(const FM::WCStPath &path) const override {
        if (path.IsFolder())
            return true;
        const auto extension = path.GetExtension();
        return extension == "xps" || extension == "yps";
    }
};

} // namespace

WTErr CDynamicPresetsScanner::ParseFolderContents(const CPublicAlg &alg, const FM::WCStPath &folder,
                                                  WTPresetList &list, EPresetSection section) try {
    if (!folder.IsValid() || !folder.IsFolder())
        return ePresetFileProblem;
    FM::WCStFolderIterator::WTPathVector paths;
    // A broken "List Order.txt" still lists the folder, in name order.
    (void)FM::WCStFolderIterator::GetFilePathVectorFromFolderWithSettingsFile(
        folder, OnlyPresetFiles(), paths, FM::WCStFolderIterator::kListOrderFileName,
        FM::WCStFolderIterator::kNoDepthLimit);
    WTPresetList read;
    for (const FM::WCStPath &path : paths) {
        if (path.IsFolder())
            continue;
        CPresetsFileInfo file(path, CPresetAPI::GetPresetFileFormat(alg, path), section);
        file.m_Category = section;
        WTPresetList presets;
        if (CPresetAPI::GetPresetListWithPugi(alg, file, presets) != eNoErr)
            continue;
        for (auto &info : presets)
            read.push_back(std::move(info));
    }
    for (auto &info : read)
        list.push_back(std::move(info));
    return eNoErr;
} catch (const std::bad_alloc &) {
    return eMemOutOfMemory;
}

} // namespace Preset

MIREL_NAMESPACE_END
