#include "files/WUFileDialogs.h"

#include <mutex>

MIREL_NAMESPACE_BEGIN
namespace FM {

namespace {

// Without a desktop there is no one to ask: dialogs answer from the responder, else cancel.
class WCHeadlessFileDialogs final : public WIFileDialogs {
public:
    int SaveAs(WCDialogCreationOptions const &options, WCDialogReply &outReply) override {
        return Ask(eSaveAsDialogKind, options, outReply);
    }
    int SelectFileSystemObject(WCDialogCreationOptions const &options,
                               WCDialogReply &outReply) override {
        return Ask(eSelectFileSystemObjectDialogKind, options, outReply);
    }
    int SelectFileSystemObjectTree(WCDialogCreationOptions const &options,
                                   WCDialogReply &outReply) override {
        return Ask(eSelectFileSystemObjectDialogTreeKind, options, outReply);
    }

    void SetResponder(WTDialogResponder responder) {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_responder = std::move(responder);
    }

private:
    int Ask(WEDialogKind kind, WCDialogCreationOptions const &options, WCDialogReply &outReply) {
        WTDialogResponder responder;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            responder = m_responder;
        }
        if (!responder)
            return eUserCanceled;
        return responder(kind, options, outReply);
    }

    std::mutex m_mutex;
    WTDialogResponder m_responder;
};

WCHeadlessFileDialogs &Headless() {
    static WCHeadlessFileDialogs dialogs;
    return dialogs;
}

std::mutex gDialogsMutex;
WIFileDialogs *gDialogs = nullptr;

WIFileDialogs &Current() {
    std::lock_guard<std::mutex> lock(gDialogsMutex);
    return gDialogs != nullptr ? *gDialogs : static_cast<WIFileDialogs &>(Headless());
}

// A dialog that says yes must name something.
int Checked(int result, WCDialogReply &ioReply) {
    if (result == eNoErr && (ioReply.m_paths.empty() || !ioReply.m_paths.front().IsValid()))
        result = eUserCanceled;
    if (result != eNoErr)
        ioReply = WCDialogReply();
    return result;
}

} // namespace

WIFileDialogs *SetFileDialogs(WIFileDialogs *dialogs) {
    std::lock_guard<std::mutex> lock(gDialogsMutex);
    WIFileDialogs *previous = gDialogs;
    gDialogs = dialogs;
    return previous;
}

void SetDialogResponder(WTDialogResponder responder) {
    Headless().SetResponder(std::move(responder));
}

int SaveAsDialog(WCDialogCreationOptions const &options, WCDialogReply &outReply) {
    outReply = WCDialogReply();
    return Checked(Current().SaveAs(options, outReply), outReply);
}

int SelectFileSystemObjectDialog(WCDialogCreationOptions const &options, WCDialogReply &outReply) {
    outReply = WCDialogReply();
    return Checked(Current().SelectFileSystemObject(options, outReply), outReply);
}

int SelectFileSystemObjectDialogTree(WCDialogCreationOptions const &options,
                                     WCDialogReply &outReply) {
    outReply = WCDialogReply();
    if (!options.m_tree.empty() || !options.m_defaultFolder.IsValid())
        return Checked(Current().SelectFileSystemObjectTree(options, outReply), outReply);
    WCDialogCreationOptions withTree(options);
    EveryThing const everything;
    FileFilterFunctor const &filter =
        options.m_treeFilter != nullptr ? *options.m_treeFilter : everything;
    int const error =
        WCStFolderIterator::GetFolderTree(options.m_defaultFolder, filter, withTree.m_tree);
    if (error != eNoErr)
        return error;
    WCStFolderIterator::WTPathVector flat;
    WCStFolderIterator::SetIDsAndGetFlatFolderList(withTree.m_tree, flat);
    return Checked(Current().SelectFileSystemObjectTree(withTree, outReply), outReply);
}

void MakeDialogFilterText(WSDialogFilter const &filter, WCFixedStringBase &outText) {
    outText = filter.m_description;
    char const *extension = filter.m_extension.c_str();
    if (extension[0] == '.')
        ++extension;
    outText << " (*." << extension << ")";
}

} // namespace FM
MIREL_NAMESPACE_END
