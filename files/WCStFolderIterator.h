#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "core/WUValidatable.h"
#include "files/FileFilterFunctor.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

// One item of a folder tree: the path, its place in the flat list (-1 until numbered), the place
// of its parent (-1 at the top) and the items it holds.
struct WSFolderTreeItem {
    WCStPath m_path;
    int m_id = -1;
    int m_parentID = -1;
    std::vector<WSFolderTreeItem> m_children;
};

// Walks the items of one folder in the order the system gives them ("." and ".." never come).
// Invalid with eFMFileNotFound, eFMIsNotAFolder or eFMPermissionErr when the folder cannot be
// read. The statics list, sort and order folders; listing descends only into real folders, never
// through links, so a link loop cannot hang it. An object belongs to one thread. [any-thread]
class WCStFolderIterator : public WUValidatable {
public:
    using WTPathVector = std::vector<WCStPath>;
    using WTNameVector = std::vector<std::string>;

    // Depth for the whole tree.
    static constexpr int kNoDepthLimit = -1;
    static constexpr char const *kListOrderFileName = "List Order.txt";
    // A settings file larger than this is refused with eFMFileSizeTooBig.
    static constexpr std::uint64_t kMaxSettingsFileSize = 1 << 20;

    explicit WCStFolderIterator(WCStPath const &folder);
    ~WCStFolderIterator() override;
    WCStFolderIterator(WCStFolderIterator const &) = delete;
    WCStFolderIterator &operator=(WCStFolderIterator const &) = delete;

    // eNoErr with the next item, then eFMEndOfFolder.
    int GetNextFolderItem(WCStPath &outItem);

    // The items that pass `filter`, descending `depth` levels into sub-folders (0: this folder
    // only, kNoDepthLimit: all); bundles are entered only when `enterBundles`. `outPaths` is
    // cleared first. Unreadable sub-folders are skipped.
    static int GetFilePathVectorFromFolder(WCStPath const &folder, FileFilterFunctor const &filter,
                                           WTPathVector &outPaths, int depth = 0,
                                           bool enterBundles = false);
    // `recurse` true descends the whole tree, false stays in the folder. Without this form a
    // caller's `true` would turn into a depth of 1.
    static int GetFilePathVectorFromFolder(WCStPath const &folder, FileFilterFunctor const &filter,
                                           WTPathVector &outPaths, bool recurse,
                                           bool enterBundles = false) {
        return GetFilePathVectorFromFolder(folder, filter, outPaths, DepthOf(recurse),
                                           enterBundles);
    }
    // The same, sorted by path text.
    static int GetFilePathVectorFromFolderSortByName(WCStPath const &folder,
                                                     FileFilterFunctor const &filter,
                                                     WTPathVector &outPaths, int depth = 0,
                                                     bool enterBundles = false);
    static int GetFilePathVectorFromFolderSortByName(WCStPath const &folder,
                                                     FileFilterFunctor const &filter,
                                                     WTPathVector &outPaths, bool recurse,
                                                     bool enterBundles = false) {
        return GetFilePathVectorFromFolderSortByName(folder, filter, outPaths, DepthOf(recurse),
                                                     enterBundles);
    }
    // Sorted by name, then ordered by the settings file of the folder (such as "List Order.txt")
    // when there is one; the settings file itself is never listed. A settings file that cannot
    // be read answers its code (eFMReadFailed for broken YAML) and leaves the name order.
    static int GetFilePathVectorFromFolderWithSettingsFile(
        WCStPath const &folder, FileFilterFunctor const &filter, WTPathVector &outPaths,
        char const *settingsFile = kListOrderFileName, int depth = 0, bool enterBundles = false);
    static int GetFilePathVectorFromFolderWithSettingsFile(WCStPath const &folder,
                                                           FileFilterFunctor const &filter,
                                                           WTPathVector &outPaths,
                                                           char const *settingsFile, bool recurse,
                                                           bool enterBundles = false) {
        return GetFilePathVectorFromFolderWithSettingsFile(folder, filter, outPaths, settingsFile,
                                                           DepthOf(recurse), enterBundles);
    }
    // The tree below `folder`, each level ordered as GetFilePathVectorFromFolderWithSettingsFile
    // does (a broken settings file leaves its level in name order).
    static int GetFolderTree(WCStPath const &folder, FileFilterFunctor const &filter,
                             std::vector<WSFolderTreeItem> &outItems, int depth = kNoDepthLimit,
                             char const *settingsFile = kListOrderFileName);
    // Numbers the tree depth first from `firstID`, sets the parents, and lists the paths so that
    // outFlat[id - firstID] is the item of that id.
    static void SetIDsAndGetFlatFolderList(std::vector<WSFolderTreeItem> &ioItems,
                                           WTPathVector &outFlat, int firstID = 0);
    // True when no item of the folder passes `filter` (also for a folder that cannot be read).
    static bool IsFolderEmpty(WCStPath const &folder, FileFilterFunctor const &filter);
    // Moves each named item (by leaf) to the next slot at the front, in the order of `names`;
    // unknown names are ignored, the other items keep their order behind.
    static void OrderItemsInFolder(WTNameVector const &names, WTPathVector &ioPaths);
    // Reads the names of a settings file; `outNames` is untouched on failure.
    static int ParseSettingsFile(WCStPath const &path, WTNameVector &outNames);
    // Reads the names from YAML documents: in each document that is a map whose "List Order"
    // is a sequence, the scalar entries are names. eFMReadFailed for text that is not YAML, and
    // eFMFileSizeTooBig for a stream longer than kMaxSettingsFileSize.
    static int ReadItemOrderFromIstream(std::istream &stream, WTNameVector &outNames);
    static int ReadItemOrderFromString(std::string const &text, WTNameVector &outNames);

protected:
    bool IsValidSelf() const override { return m_state != nullptr; }

private:
    static constexpr int DepthOf(bool recurse) noexcept { return recurse ? kNoDepthLimit : 0; }

private:
    struct WSState;
    std::unique_ptr<WSState> m_state;
};

} // namespace FM
MIREL_NAMESPACE_END
