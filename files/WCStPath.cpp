#include "files/WCStPath.h"

#include <algorithm>
#include <new>

#include <boost/filesystem/operations.hpp>

#include "files/WTPathType.h"
#include "files/WUFileSystemObjects.h"
#include "files/WUPathAccess.h"
#include "files/linux/WUPlatformFiles.h"
#include "files/linux/WUPlatformFolders.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

namespace bfs = boost::filesystem;

namespace {

// Drops trailing separators so that the leaf of "a/b/" is "b", keeping a lone root.
bfs::path WithoutTrailingSlash(std::string text) {
    while (text.size() > 1 && text.back() == '/')
        text.pop_back();
    return bfs::path(std::move(text));
}

// True when no element of `tail` is empty, "." or "..".
bool IsPlainTail(std::string_view tail) {
    if (tail.empty())
        return false;
    std::size_t start = 0;
    for (;;) {
        std::size_t const slash = tail.find('/', start);
        std::string_view const element = tail.substr(start, slash - start);
        if (element.empty() || element == "." || element == "..")
            return false;
        if (slash == std::string_view::npos)
            return true;
        start = slash + 1;
    }
}

// Appends a relative tail element by element: ".." climbs, "." and empty elements are skipped,
// so "a/b" + "../c" is "a/c" whatever the file system holds.
void AppendTail(bfs::path &ioPath, char const *tail) {
    std::string_view rest(tail);
    // The common tail is plain names: one append, no copies of elements.
    if (IsPlainTail(rest)) {
        ioPath /= tail;
        return;
    }
    while (!rest.empty()) {
        auto const slash = rest.find('/');
        std::string_view const element = rest.substr(0, slash);
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
        if (element.empty() || element == ".")
            continue;
        if (element == "..") {
            if (ioPath.has_parent_path() && ioPath.filename() != "..")
                ioPath = ioPath.parent_path();
            else if (!ioPath.has_root_path() && !ioPath.empty() && ioPath.filename() != "..")
                // A single relative name lies in the current folder, and "." is the parent of
                // neither: stepping out of "." leaves it.
                ioPath = ioPath.filename() == "." ? bfs::path("..") : bfs::path(".");
            else
                ioPath /= "..";
            continue;
        }
        ioPath /= std::string(element);
    }
}

// The status of what `path` names, following a link; a failure is the file layer's code.
WTErr ReadStatus(bfs::path const &path, bfs::file_status &outStatus) {
    boost::system::error_code failure;
    outStatus = bfs::status(path, failure);
    return FMErrorFromBoost(failure, eFMReadFailed);
}

// The status of the target, or of a link itself when `resolveLink` is false. The questions
// asked of it have no error to give: what cannot be read counts as not there.
bfs::file_status QuietStatus(bfs::path const &path, bool resolveLink) {
    boost::system::error_code failure;
    return resolveLink ? bfs::status(path, failure) : bfs::symlink_status(path, failure);
}

std::vector<std::string> Elements(bfs::path const &path) {
    std::vector<std::string> elements;
    for (auto const &element : path) {
        std::string text = element.string();
        // boost yields "." for a trailing separator; it is no element of the path.
        if (text == "." && !elements.empty())
            continue;
        elements.push_back(std::move(text));
    }
    return elements;
}

} // namespace

void DisposePathRef(WTPathType *&ioPathRef) noexcept {
    delete ioPathRef;
    ioPathRef = nullptr;
}

boost::filesystem::path const &BoostPath(WCStPath const &path) noexcept {
    static bfs::path const empty;
    WTPathType const *ref = path.GetPathRef();
    return ref != nullptr ? ref->m_path : empty;
}

void WUPathAccess::Assign(WCStPath &path, boost::filesystem::path value) {
    if (path.m_pathRef == nullptr)
        path.m_pathRef = new WTPathType{std::move(value)};
    else
        path.m_pathRef->m_path = std::move(value);
    path.SetError(eNoErr);
    path.RefreshText();
}

WTErr FMErrorFromBoost(boost::system::error_code const &error, WTErr fallback) noexcept {
    if (!error)
        return eNoErr;
    if (error.category() == boost::system::system_category() ||
        error.category() == boost::system::generic_category())
        return Platform::ErrnoToFMError(error.value(), fallback);
    return fallback;
}

WCStPath::WCStPath() noexcept : WUValidatable(eFMIllegalPathRef), m_pathRef(nullptr) {}

WCStPath::WCStPath(char const *text, bool isNativeUTF8)
    : WUValidatable(eFMIllegalPathRef), m_pathRef(nullptr) {
    if (text != nullptr)
        AssignText(text, std::char_traits<char>::length(text), eFMPathTooShort);
}

WCStPath::WCStPath(std::string const &text, bool isNativeUTF8)
    : WUValidatable(eFMIllegalPathRef), m_pathRef(nullptr) {
    AssignText(text.data(), text.size(), eFMPathTooShort);
}

WCStPath::WCStPath(WCFixedStringBase const &text, bool isNativeUTF8)
    : WUValidatable(eFMIllegalPathRef), m_pathRef(nullptr) {
    AssignText(text.data(), text.size(), eFMPathTooShort);
}

WCStPath::WCStPath(WCStPath const &parent, char const *tail) : WCStPath(parent) {
    if (!IsValid())
        return;
    if (tail == nullptr) {
        MakeInvalid(eFMIllegalPathRef);
        return;
    }
    try {
        AppendTail(m_pathRef->m_path, tail);
        RefreshText();
    } catch (std::bad_alloc const &) {
        MakeInvalid(eMemOutOfMemory);
    }
}

WCStPath::WCStPath(WTPathType const *pathRef)
    : WUValidatable(eFMIllegalPathRef), m_pathRef(nullptr) {
    if (pathRef == nullptr)
        return;
    try {
        WUPathAccess::Assign(*this, pathRef->m_path);
    } catch (std::bad_alloc const &) {
        MakeInvalid(eMemOutOfMemory);
    }
}

WCStPath::WCStPath(WEFoldersDomain domain, WESystemFolders folder, bool create)
    : WCStPath(domain, folder, nullptr, create) {}

WCStPath::WCStPath(WEFoldersDomain domain, WESystemFolders folder, char const *name, bool create)
    : WUValidatable(eFMIllegalPathRef), m_pathRef(nullptr) {
    try {
        std::string base;
        WTErr const error = Platform::GetSystemFolderPath(domain, folder, base);
        if (error != eNoErr) {
            MakeInvalid(error);
            return;
        }
        bfs::path path = WithoutTrailingSlash(std::move(base));
        if (name != nullptr)
            AppendTail(path, name);
        WUPathAccess::Assign(*this, std::move(path));
        if (create) {
            WTErr const made = CreateFolder(*this);
            if (made != eNoErr)
                MakeInvalid(made);
        }
    } catch (std::bad_alloc const &) {
        MakeInvalid(eMemOutOfMemory);
    }
}

WCStPath::WCStPath(WCStPath const &other)
    : WUValidatable(other.GetError()), m_pathRef(nullptr), m_pathText(other.m_pathText) {
    if (other.m_pathRef != nullptr)
        m_pathRef = new WTPathType(*other.m_pathRef);
}

WCStPath::WCStPath(WCStPath &&other) noexcept
    : WUValidatable(other.GetError()), m_pathRef(other.m_pathRef), m_pathText(other.m_pathText) {
    other.m_pathRef = nullptr;
    other.MakeInvalid(eFMIllegalPathRef);
}

WCStPath &WCStPath::operator=(WCStPath const &other) {
    if (this == &other)
        return *this;
    if (other.m_pathRef == nullptr) {
        MakeInvalid(other.GetError());
        return *this;
    }
    if (m_pathRef == nullptr)
        m_pathRef = new WTPathType(*other.m_pathRef);
    else
        m_pathRef->m_path = other.m_pathRef->m_path;
    m_pathText = other.m_pathText;
    SetError(other.GetError());
    return *this;
}

WCStPath &WCStPath::operator=(WCStPath &&other) noexcept {
    if (this == &other)
        return *this;
    delete m_pathRef;
    m_pathRef = other.m_pathRef;
    m_pathText = other.m_pathText;
    SetError(other.GetError());
    other.m_pathRef = nullptr;
    other.MakeInvalid(eFMIllegalPathRef);
    return *this;
}

WCStPath::~WCStPath() {
    delete m_pathRef;
}

bool WCStPath::operator==(WCStPath const &other) const noexcept {
    if (m_pathRef == nullptr || other.m_pathRef == nullptr)
        return m_pathRef == other.m_pathRef;
    return m_pathRef->m_path.native() == other.m_pathRef->m_path.native();
}

bool WCStPath::operator<(WCStPath const &other) const noexcept {
    if (m_pathRef == nullptr || other.m_pathRef == nullptr)
        return m_pathRef == nullptr && other.m_pathRef != nullptr;
    return m_pathRef->m_path.native() < other.m_pathRef->m_path.native();
}

void WCStPath::AssignText(char const *text, std::uint64_t length, int errorIfEmpty) {
    try {
        if (length == 0) {
            MakeInvalid(errorIfEmpty);
            return;
        }
        // The system would see only the text before a zero and act on another file.
        if (std::char_traits<char>::find(text, length, '\0') != nullptr) {
            MakeInvalid(eFMIllegalPathRef);
            return;
        }
        WUPathAccess::Assign(*this, WithoutTrailingSlash(std::string(text, length)));
    } catch (std::bad_alloc const &) {
        MakeInvalid(eMemOutOfMemory);
    }
}

void WCStPath::MakeInvalid(int error) noexcept {
    delete m_pathRef;
    m_pathRef = nullptr;
    m_pathText.clear();
    SetError(error != eNoErr ? error : eFMIllegalPathRef);
}

void WCStPath::RefreshText() noexcept {
    if (m_pathRef == nullptr) {
        m_pathText.clear();
        return;
    }
    std::string const &native = m_pathRef->m_path.native();
    m_pathText.assign(native.data(), native.size());
}

int WCStPath::Append(char const *name) {
    // Whatever made the path invalid, there is no path to append to.
    if (m_pathRef == nullptr) {
        MakeInvalid(eFMIllegalPathRef);
        return GetError();
    }
    if (name == nullptr) {
        MakeInvalid(eFMIllegalPathRef);
        return GetError();
    }
    try {
        // An appended name never replaces the path, even when it starts with a separator.
        while (*name == '/')
            ++name;
        AppendTail(m_pathRef->m_path, name);
        RefreshText();
    } catch (std::bad_alloc const &) {
        MakeInvalid(eMemOutOfMemory);
    }
    return GetError();
}

int WCStPath::Append(std::string const &name) {
    // A zero inside would cut the name short without a word.
    if (name.find('\0') != std::string::npos) {
        MakeInvalid(eFMIllegalPathRef);
        return GetError();
    }
    return Append(name.c_str());
}

void WCStPath::Clear() noexcept {
    MakeInvalid(eFMIllegalPathRef);
}

int WCStPath::ChangeExtension(char const *extension) {
    if (m_pathRef == nullptr)
        return GetError();
    try {
        std::string ext = extension != nullptr ? extension : "";
        if (!ext.empty() && ext.front() != '.')
            ext.insert(ext.begin(), '.');
        m_pathRef->m_path.replace_extension(ext);
        RefreshText();
    } catch (std::bad_alloc const &) {
        MakeInvalid(eMemOutOfMemory);
    }
    return GetError();
}

int WCStPath::ExtendLeafName(char const *text) {
    if (m_pathRef == nullptr)
        return GetError();
    if (text == nullptr || text[0] == 0)
        return GetError();
    try {
        bfs::path &path = m_pathRef->m_path;
        std::string leaf = path.stem().string();
        leaf += text;
        leaf += path.extension().string();
        path.remove_filename();
        path /= leaf;
        RefreshText();
    } catch (std::bad_alloc const &) {
        MakeInvalid(eMemOutOfMemory);
    }
    return GetError();
}

void WCStPath::TakeOver(WTPathType *pathRef) noexcept {
    if (pathRef == m_pathRef)
        return;
    delete m_pathRef;
    m_pathRef = pathRef;
    if (m_pathRef == nullptr) {
        MakeInvalid(eFMIllegalPathRef);
        return;
    }
    SetError(eNoErr);
    RefreshText();
}

WTPathType *WCStPath::CreatePathRefCopy() const {
    if (m_pathRef == nullptr)
        return nullptr;
    return new (std::nothrow) WTPathType(*m_pathRef);
}

WCFixedString<255> WCStPath::GetBase() const {
    if (m_pathRef == nullptr)
        return {};
    return WCFixedString<255>(m_pathRef->m_path.stem().string());
}

WCFixedString<255> WCStPath::GetExtension() const {
    if (m_pathRef == nullptr)
        return {};
    std::string const ext = m_pathRef->m_path.extension().string();
    return WCFixedString<255>(ext.empty() ? std::string_view() : std::string_view(ext).substr(1));
}

WCFixedString<255> WCStPath::GetLeaf() const {
    if (m_pathRef == nullptr)
        return {};
    return WCFixedString<255>(m_pathRef->m_path.filename().string());
}

WCFixedString<255> WCStPath::GetParentDirectory() const {
    if (m_pathRef == nullptr)
        return {};
    return WCFixedString<255>(m_pathRef->m_path.parent_path().filename().string());
}

WCStPath WCStPath::GetParent() const {
    return WCStPath(*this, "..");
}

WCFixedString<1023> WCStPath::GetNativePathString() const {
    return m_pathText;
}

WCFixedString<1023> WCStPath::GetPosixPathString() const {
    WCFixedString<1023> text(m_pathText);
    WindowsToPosixSlashes(text);
    return text;
}

WCFixedString<1023> WCStPath::GetRelativeDifference(WCStPath const &other) const {
    WCFixedString<1023> result;
    if (m_pathRef == nullptr || other.m_pathRef == nullptr)
        return result;
    std::vector<std::string> const mine = Elements(m_pathRef->m_path);
    std::vector<std::string> const theirs = Elements(other.m_pathRef->m_path);
    std::size_t shared = 0;
    while (shared < mine.size() && shared < theirs.size() && mine[shared] == theirs[shared])
        ++shared;
    auto addElement = [&result](std::string_view element) {
        if (!result.empty() && result[result.size() - 1] != '/')
            result << '/';
        result << element;
    };
    for (std::size_t i = shared; i < theirs.size(); ++i)
        addElement("..");
    for (std::size_t i = shared; i < mine.size(); ++i)
        addElement(mine[i]);
    return result;
}

WCFixedString<1023> WCStPath::GetStringFromPathToLevel(std::uint64_t level) const {
    WCFixedString<1023> result;
    if (m_pathRef == nullptr)
        return result;
    bfs::path partial;
    std::uint64_t taken = 0;
    for (auto const &element : Elements(m_pathRef->m_path)) {
        if (taken++ == level)
            break;
        partial /= element;
    }
    result = partial.native();
    return result;
}

int WCStPath::SplitPath(WTPathElements &outElements) const {
    outElements.clear();
    if (m_pathRef == nullptr)
        return GetError();
    try {
        for (auto const &element : Elements(m_pathRef->m_path))
            outElements.emplace_back(element);
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    }
    return eNoErr;
}

int WCStPath::GetFileSize(std::uint64_t &outSize) const {
    outSize = 0;
    if (m_pathRef == nullptr)
        return GetError();
    bfs::file_status status;
    if (WTErr const error = ReadStatus(m_pathRef->m_path, status); error != eNoErr)
        return error;
    if (bfs::is_directory(status))
        return eFMIsAFolder;
    boost::system::error_code failure;
    std::uintmax_t const size = bfs::file_size(m_pathRef->m_path, failure);
    if (failure)
        return FMErrorFromBoost(failure, eFMReadFailed);
    outSize = size;
    return eNoErr;
}

int WCStPath::GetFileLastWriteTime(std::time_t &outTime) const {
    outTime = 0;
    if (m_pathRef == nullptr)
        return GetError();
    boost::system::error_code failure;
    std::time_t const when = bfs::last_write_time(m_pathRef->m_path, failure);
    if (failure)
        return FMErrorFromBoost(failure, eFMReadFailed);
    outTime = when;
    return eNoErr;
}

int WCStPath::GetPermissions(int &outPermissions) const {
    outPermissions = 0;
    if (m_pathRef == nullptr)
        return GetError();
    bfs::file_status status;
    if (WTErr const error = ReadStatus(m_pathRef->m_path, status); error != eNoErr)
        return error;
    outPermissions = static_cast<int>(status.permissions() & bfs::perms_mask);
    return eNoErr;
}

bool WCStPath::IsExist() const {
    return m_pathRef != nullptr && bfs::exists(QuietStatus(m_pathRef->m_path, false));
}

bool WCStPath::IsFile(bool resolveLink) const {
    return m_pathRef != nullptr &&
           bfs::is_regular_file(QuietStatus(m_pathRef->m_path, resolveLink));
}

bool WCStPath::IsFolder(bool resolveLink) const {
    return m_pathRef != nullptr && bfs::is_directory(QuietStatus(m_pathRef->m_path, resolveLink));
}

bool WCStPath::IsFileSystemLink() const {
    return m_pathRef != nullptr && bfs::is_symlink(QuietStatus(m_pathRef->m_path, false));
}

bool WCStPath::IsLocked() const {
    if (m_pathRef == nullptr)
        return false;
    return Platform::HasNoWritePermission(m_pathRef->m_path.c_str());
}

bool WCStPath::IsWritable() const {
    if (m_pathRef == nullptr)
        return false;
    return Platform::IsWritableByProcess(m_pathRef->m_path.c_str());
}

bool WCStPath::IsPathContained(WCStPath const &other) const {
    if (m_pathRef == nullptr || other.m_pathRef == nullptr)
        return false;
    std::vector<std::string> const folder = Elements(m_pathRef->m_path);
    std::vector<std::string> const path = Elements(other.m_pathRef->m_path);
    if (folder.size() > path.size())
        return false;
    return std::equal(folder.begin(), folder.end(), path.begin());
}

int WCStPath::ResolveFileSystemLink() {
    if (m_pathRef == nullptr)
        return GetError();
    try {
        boost::system::error_code failure;
        if (!bfs::is_symlink(bfs::symlink_status(m_pathRef->m_path, failure)))
            return failure ? FMErrorFromBoost(failure, eFMIsNoAFileSystemLink)
                           : eFMIsNoAFileSystemLink;
        bfs::path target = bfs::read_symlink(m_pathRef->m_path, failure);
        if (failure)
            return FMErrorFromBoost(failure, eFMSymlinkBroken);
        if (target.is_relative())
            target = m_pathRef->m_path.parent_path() / target;
        target = target.lexically_normal();
        if (!bfs::exists(bfs::status(target, failure)))
            return eFMSymlinkBroken;
        WUPathAccess::Assign(*this, WithoutTrailingSlash(target.native()));
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    }
    return eNoErr;
}

void WCStPath::WindowsToPosixSlashes(WCFixedStringBase &ioText) noexcept {
    ioText.replace('\\', '/');
}

void WCStPath::WindowsToPosixSlashes(std::string &ioText) noexcept {
    std::replace(ioText.begin(), ioText.end(), '\\', '/');
}

bool IsPathContained(WCStPath const &folder, WCStPath const &path) {
    return folder.IsPathContained(path);
}

WCFixedString<1023> GetRelativeDifference(WCStPath const &to, WCStPath const &from) {
    return to.GetRelativeDifference(from);
}

} // namespace FM
MIREL_NAMESPACE_END
