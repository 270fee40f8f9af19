#include "files/WCStFolderIterator.h"

#include <algorithm>
#include <istream>
#include <map>
#include <new>
#include <sstream>

#include <boost/filesystem/operations.hpp>
#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/yaml.h>

#include "files/WTPathType.h"
#include "files/WUBundles.h"
#include "files/WUOpenFile.h"
#include "files/WUPathAccess.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

namespace bfs = boost::filesystem;

struct WCStFolderIterator::WSState {
    bfs::directory_iterator m_current;
};

namespace {

WTErr CheckFolder(WCStPath const &folder) {
    if (!folder.IsValid())
        return folder.GetError();
    boost::system::error_code failure;
    bfs::file_status const status = bfs::status(BoostPath(folder), failure);
    if (!bfs::exists(status))
        return eFMFileNotFound;
    if (!bfs::is_directory(status))
        return eFMIsNotAFolder;
    return eNoErr;
}

WCStPath MakePath(bfs::path path) {
    WCStPath item;
    WUPathAccess::Assign(item, std::move(path));
    return item;
}

void Collect(bfs::path const &folder, FileFilterFunctor const &filter,
             WCStFolderIterator::WTPathVector &outPaths, int depth, bool enterBundles) {
    boost::system::error_code failure;
    bfs::directory_iterator entry(folder, failure);
    for (; !failure && entry != bfs::directory_iterator(); entry.increment(failure)) {
        WCStPath item = MakePath(entry->path());
        bool const passes = filter(item);
        // symlink_status: a link to a folder is listed but never entered.
        boost::system::error_code statusFailure;
        bool const descend = depth != 0 &&
                             bfs::is_directory(entry->symlink_status(statusFailure)) &&
                             (enterBundles || !IsBundlePath(item));
        if (passes)
            outPaths.push_back(std::move(item));
        if (descend)
            Collect(entry->path(), filter, outPaths,
                    depth == WCStFolderIterator::kNoDepthLimit ? depth : depth - 1, enterBundles);
    }
}

void SortByName(WCStFolderIterator::WTPathVector &ioPaths) {
    std::sort(ioPaths.begin(), ioPaths.end());
}

// Collects the names of "List Order" sequences from parser events. Events are used instead of
// loading whole documents because the loader of the YAML library can, on some broken input, keep
// producing empty documents without reading on; counting documents against the length of the
// text stops that.
class WCListOrderHandler final : public YAML::EventHandler {
public:
    struct WSTooManyDocuments {};

    WCListOrderHandler(WCStFolderIterator::WTNameVector &outNames, std::size_t maxDocuments)
        : m_names(outNames), m_maxDocuments(maxDocuments) {}

    void OnDocumentStart(YAML::Mark const &) override {
        if (++m_documents > m_maxDocuments)
            throw WSTooManyDocuments{};
        m_stack.clear();
    }
    void OnDocumentEnd() override {}
    void OnNull(YAML::Mark const &, YAML::anchor_t) override { Leaf(nullptr); }
    void OnAlias(YAML::Mark const &, YAML::anchor_t anchor) override {
        auto const found = m_anchoredScalars.find(anchor);
        Leaf(found != m_anchoredScalars.end() ? &found->second : nullptr);
    }
    void OnScalar(YAML::Mark const &, std::string const &, YAML::anchor_t anchor,
                  std::string const &value) override {
        if (anchor != YAML::NullAnchor)
            m_anchoredScalars[anchor] = value;
        Leaf(&value);
    }
    void OnSequenceStart(YAML::Mark const &, std::string const &, YAML::anchor_t,
                         YAML::EmitterStyle::value) override {
        Open(eSequence);
    }
    void OnSequenceEnd() override { Close(); }
    void OnMapStart(YAML::Mark const &, std::string const &, YAML::anchor_t,
                    YAML::EmitterStyle::value) override {
        Open(eMap);
    }
    void OnMapEnd() override { Close(); }

private:
    enum WEKind { eMap, eSequence };
    enum WERole { eIgnored, eRootMap, eListOrder };
    struct WSLevel {
        WEKind m_kind;
        WERole m_role;
        bool m_expectKey = true;
        bool m_keyIsListOrder = false;
    };

    // Where a new node lands: the role its container gives it.
    WERole RoleOfNextNode(WEKind kind) const {
        if (m_stack.empty())
            return kind == eMap ? eRootMap : eIgnored;
        WSLevel const &top = m_stack.back();
        if (top.m_role == eRootMap && !top.m_expectKey && top.m_keyIsListOrder && kind == eSequence)
            return eListOrder;
        return eIgnored;
    }
    // A node is done: in a map, keys and values alternate.
    void NodeDone(std::string const *keyText) {
        if (m_stack.empty() || m_stack.back().m_kind != eMap)
            return;
        WSLevel &top = m_stack.back();
        if (top.m_expectKey)
            top.m_keyIsListOrder = keyText != nullptr && *keyText == "List Order";
        top.m_expectKey = !top.m_expectKey;
    }
    void Leaf(std::string const *text) {
        if (!m_stack.empty() && m_stack.back().m_role == eListOrder && text != nullptr)
            m_names.push_back(*text);
        NodeDone(text);
    }
    void Open(WEKind kind) { m_stack.push_back(WSLevel{kind, RoleOfNextNode(kind)}); }
    void Close() {
        if (!m_stack.empty())
            m_stack.pop_back();
        NodeDone(nullptr);
    }

    WCStFolderIterator::WTNameVector &m_names;
    std::size_t const m_maxDocuments;
    std::size_t m_documents = 0;
    std::vector<WSLevel> m_stack;
    std::map<YAML::anchor_t, std::string> m_anchoredScalars;
};

int ReadNames(std::istream &stream, std::size_t maxDocuments,
              WCStFolderIterator::WTNameVector &outNames) {
    try {
        WCStFolderIterator::WTNameVector names;
        WCListOrderHandler handler(names, maxDocuments);
        YAML::Parser parser(stream);
        while (parser.HandleNextDocument(handler)) {
        }
        outNames.insert(outNames.end(), std::make_move_iterator(names.begin()),
                        std::make_move_iterator(names.end()));
        return eNoErr;
    } catch (YAML::Exception const &) {
        return eFMReadFailed;
    } catch (WCListOrderHandler::WSTooManyDocuments const &) {
        return eFMReadFailed;
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    }
}

void BuildTree(bfs::path const &folder, FileFilterFunctor const &filter,
               std::vector<WSFolderTreeItem> &outItems, int depth, char const *settingsFile) {
    WCStFolderIterator::WTPathVector level;
    WCStFolderIterator::GetFilePathVectorFromFolderWithSettingsFile(MakePath(folder), filter, level,
                                                                    settingsFile, 0, true);
    for (auto &path : level) {
        WSFolderTreeItem item;
        bool const descend = depth != 0 && path.IsFolder(false);
        item.m_path = std::move(path);
        if (descend)
            BuildTree(BoostPath(item.m_path), filter, item.m_children,
                      depth == WCStFolderIterator::kNoDepthLimit ? depth : depth - 1, settingsFile);
        outItems.push_back(std::move(item));
    }
}

void Number(std::vector<WSFolderTreeItem> &ioItems, int parentID, int firstID,
            WCStFolderIterator::WTPathVector &outFlat) {
    for (auto &item : ioItems) {
        item.m_id = firstID + static_cast<int>(outFlat.size());
        item.m_parentID = parentID;
        outFlat.push_back(item.m_path);
        Number(item.m_children, item.m_id, firstID, outFlat);
    }
}

} // namespace

WCStFolderIterator::WCStFolderIterator(WCStPath const &folder) : WUValidatable(eNoErr) {
    WTErr error = CheckFolder(folder);
    if (error == eNoErr) {
        try {
            boost::system::error_code failure;
            auto state = std::make_unique<WSState>();
            state->m_current = bfs::directory_iterator(BoostPath(folder), failure);
            if (failure)
                error = FMErrorFromBoost(failure, eFMReadFailed);
            else
                m_state = std::move(state);
        } catch (std::bad_alloc const &) {
            error = eMemOutOfMemory;
        }
    }
    SetError(error);
}

WCStFolderIterator::~WCStFolderIterator() = default;

int WCStFolderIterator::GetNextFolderItem(WCStPath &outItem) {
    if (!IsValid())
        return GetError();
    try {
        if (m_state->m_current == bfs::directory_iterator())
            return eFMEndOfFolder;
        WUPathAccess::Assign(outItem, m_state->m_current->path());
        boost::system::error_code failure;
        m_state->m_current.increment(failure);
        if (failure) {
            // The item in hand is good; the next call reports the end.
            m_state->m_current = bfs::directory_iterator();
        }
        return eNoErr;
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    }
}

int WCStFolderIterator::GetFilePathVectorFromFolder(WCStPath const &folder,
                                                    FileFilterFunctor const &filter,
                                                    WTPathVector &outPaths, int depth,
                                                    bool enterBundles) {
    outPaths.clear();
    WTErr const error = CheckFolder(folder);
    if (error != eNoErr)
        return error;
    try {
        boost::system::error_code failure;
        bfs::directory_iterator probe(BoostPath(folder), failure);
        if (failure)
            return FMErrorFromBoost(failure, eFMReadFailed);
        Collect(BoostPath(folder), filter, outPaths, depth, enterBundles);
    } catch (std::bad_alloc const &) {
        outPaths.clear();
        return eMemOutOfMemory;
    }
    return eNoErr;
}

int WCStFolderIterator::GetFilePathVectorFromFolderSortByName(WCStPath const &folder,
                                                              FileFilterFunctor const &filter,
                                                              WTPathVector &outPaths, int depth,
                                                              bool enterBundles) {
    int const error = GetFilePathVectorFromFolder(folder, filter, outPaths, depth, enterBundles);
    SortByName(outPaths);
    return error;
}

int WCStFolderIterator::GetFilePathVectorFromFolderWithSettingsFile(WCStPath const &folder,
                                                                    FileFilterFunctor const &filter,
                                                                    WTPathVector &outPaths,
                                                                    char const *settingsFile,
                                                                    int depth, bool enterBundles) {
    int error =
        GetFilePathVectorFromFolderSortByName(folder, filter, outPaths, depth, enterBundles);
    if (error != eNoErr || settingsFile == nullptr || settingsFile[0] == 0)
        return error;
    WCStPath const settings(folder, settingsFile);
    outPaths.erase(std::remove(outPaths.begin(), outPaths.end(), settings), outPaths.end());
    if (!settings.IsFile())
        return eNoErr;
    WTNameVector names;
    error = ParseSettingsFile(settings, names);
    if (error != eNoErr)
        return error;
    OrderItemsInFolder(names, outPaths);
    return eNoErr;
}

int WCStFolderIterator::GetFolderTree(WCStPath const &folder, FileFilterFunctor const &filter,
                                      std::vector<WSFolderTreeItem> &outItems, int depth,
                                      char const *settingsFile) {
    outItems.clear();
    WTErr const error = CheckFolder(folder);
    if (error != eNoErr)
        return error;
    try {
        BuildTree(BoostPath(folder), filter, outItems, depth, settingsFile);
    } catch (std::bad_alloc const &) {
        outItems.clear();
        return eMemOutOfMemory;
    }
    return eNoErr;
}

void WCStFolderIterator::SetIDsAndGetFlatFolderList(std::vector<WSFolderTreeItem> &ioItems,
                                                    WTPathVector &outFlat, int firstID) {
    outFlat.clear();
    Number(ioItems, -1, firstID, outFlat);
}

bool WCStFolderIterator::IsFolderEmpty(WCStPath const &folder, FileFilterFunctor const &filter) {
    WCStFolderIterator iterator(folder);
    WCStPath item;
    while (iterator.GetNextFolderItem(item) == eNoErr) {
        if (filter(item))
            return false;
    }
    return true;
}

void WCStFolderIterator::OrderItemsInFolder(WTNameVector const &names, WTPathVector &ioPaths) {
    std::size_t nextSlot = 0;
    for (auto const &name : names) {
        auto const found =
            std::find_if(ioPaths.begin() + static_cast<std::ptrdiff_t>(nextSlot), ioPaths.end(),
                         [&name](WCStPath const &path) { return path.GetLeaf().view() == name; });
        if (found == ioPaths.end())
            continue;
        // A rotation keeps the items it passes over in their order.
        auto const slot = ioPaths.begin() + static_cast<std::ptrdiff_t>(nextSlot);
        std::rotate(slot, found, found + 1);
        ++nextSlot;
    }
}

int WCStFolderIterator::ParseSettingsFile(WCStPath const &path, WTNameVector &outNames) {
    if (!path.IsValid())
        return path.GetError();
    if (path.IsFolder())
        return eFMIsAFolder;
    std::uint64_t size = 0;
    int error = path.GetFileSize(size);
    if (error != eNoErr)
        return error;
    if (size > kMaxSettingsFileSize)
        return eFMFileSizeTooBig;
    std::string text;
    error = ReadTheWholeFile(path, text);
    if (error != eNoErr)
        return error;
    if (text.size() > kMaxSettingsFileSize)
        return eFMFileSizeTooBig;
    return ReadItemOrderFromString(text, outNames);
}

int WCStFolderIterator::ReadItemOrderFromIstream(std::istream &stream, WTNameVector &outNames) {
    // The length of a stream is not known beforehand: it is read into memory so the guard on the
    // number of documents applies, and no further than a settings file may be, since a stream
    // without end would otherwise fill the memory.
    try {
        std::string text;
        char chunk[4096];
        for (;;) {
            stream.read(chunk, sizeof(chunk));
            std::streamsize const got = stream.gcount();
            if (got <= 0)
                break;
            text.append(chunk, static_cast<std::size_t>(got));
            if (text.size() > kMaxSettingsFileSize)
                return eFMFileSizeTooBig;
        }
        if (stream.bad())
            return eFMReadFailed;
        return ReadItemOrderFromString(text, outNames);
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    } catch (std::ios_base::failure const &) {
        return eFMReadFailed;
    }
}

int WCStFolderIterator::ReadItemOrderFromString(std::string const &text, WTNameVector &outNames) {
    // Every document but the first needs a three-character marker.
    std::size_t const maxDocuments = text.size() / 3 + 2;
    try {
        std::istringstream stream(text);
        return ReadNames(stream, maxDocuments, outNames);
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    }
}

} // namespace FM
MIREL_NAMESPACE_END
