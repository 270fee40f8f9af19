#pragma once

#include <functional>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"
#include "files/FileFilterFunctor.h"
#include "files/WCStFolderIterator.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

enum WEDialogKind : int {
    eSaveAsDialogKind = 0,
    eSelectFileSystemObjectDialogKind = 1,
    eSelectFileSystemObjectDialogTreeKind = 2
};

// One line of a file type menu: "Presets" and "xps" show as "Presets (*.xps)".
struct WSDialogFilter {
    WCFixedString<127> m_description;
    WCFixedString<31> m_extension;
};

// What a file dialog shows and allows.
struct WCDialogCreationOptions {
    WCFixedString<255> m_title;
    WCFixedString<255> m_message;
    WCStPath m_defaultFolder;
    WCFixedString<255> m_defaultName;
    std::vector<WSDialogFilter> m_filters;
    bool m_selectFiles = true;
    bool m_selectFolders = false;
    bool m_allowMultiple = false;
    // The tree dialog lists the tree below m_defaultFolder through this filter (every item when
    // null) unless m_tree is given already.
    FileFilterFunctor const *m_treeFilter = nullptr;
    std::vector<WSFolderTreeItem> m_tree;
};

// What the user chose: one path or more, and the filter line in use (-1 for none).
struct WCDialogReply {
    std::vector<WCStPath> m_paths;
    int m_filterIndex = -1;
    int m_treeItemID = -1;
};

// The seam to the system's file dialogs; the view layer installs one where a desktop exists.
class WIFileDialogs {
public:
    virtual ~WIFileDialogs() = default;
    virtual int SaveAs(WCDialogCreationOptions const &options, WCDialogReply &outReply) = 0;
    virtual int SelectFileSystemObject(WCDialogCreationOptions const &options,
                                       WCDialogReply &outReply) = 0;
    virtual int SelectFileSystemObjectTree(WCDialogCreationOptions const &options,
                                           WCDialogReply &outReply) = 0;
};

// Answers a dialog without a window: fills the reply and returns eNoErr, or a code
// (eUserCanceled for cancel).
using WTDialogResponder = std::function<int(
    WEDialogKind kind, WCDialogCreationOptions const &options, WCDialogReply &outReply)>;

// [any-thread] Installs the dialogs (not owned; null restores the headless default) and returns
// the previous ones.
WIFileDialogs *SetFileDialogs(WIFileDialogs *dialogs);
// [any-thread] Installs the responder of the headless default (an empty one makes it cancel).
void SetDialogResponder(WTDialogResponder responder);

// [main-thread] The dialogs. The reply is cleared first; eUserCanceled (-2) when the user
// cancels, when no dialog can be shown, or when a dialog answers without a path.
int SaveAsDialog(WCDialogCreationOptions const &options, WCDialogReply &outReply);
int SelectFileSystemObjectDialog(WCDialogCreationOptions const &options, WCDialogReply &outReply);
int SelectFileSystemObjectDialogTree(WCDialogCreationOptions const &options,
                                     WCDialogReply &outReply);

// "Presets (*.xps)": the description, " (*." and the extension without its dot, then ")".
void MakeDialogFilterText(WSDialogFilter const &filter, WCFixedStringBase &outText);

} // namespace FM
MIREL_NAMESPACE_END
