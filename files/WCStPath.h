#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"
#include "core/WUValidatable.h"
#include "files/WTFileManagerTypes.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

// A file system path with a validity code and its text kept ready.
//
// Holds an owned handle (a boost path) and a copy of its text in a WCFixedString<1023>, refreshed
// after every change; a path longer than that is cut in the text but stays whole in the handle,
// and every file system call uses the handle. A default path has no handle and is invalid with
// eFMIllegalPathRef; an operation that fails on a path makes it invalid, and operations on an
// invalid path keep it so. Paths are UTF-8 texts. Nothing here is locked: a path belongs to one
// thread at a time. [any-thread]
class WCStPath : public WUValidatable {
public:
    using WTPathElements = std::vector<WCFixedString<255>>;

    WCStPath() noexcept;
    // From a UTF-8 text. `isNativeUTF8` tells whether the text is in the system's own form; on
    // this platform both forms are the same. A null text, or one with a zero byte inside, is
    // eFMIllegalPathRef, an empty one eFMPathTooShort.
    explicit WCStPath(char const *text, bool isNativeUTF8 = true);
    explicit WCStPath(std::string const &text, bool isNativeUTF8 = true);
    explicit WCStPath(WCFixedStringBase const &text, bool isNativeUTF8 = true);
    // `parent` plus a relative tail of one or more levels; ".." alone means the parent.
    WCStPath(WCStPath const &parent, char const *tail);
    // A copy of the handle's path; a null handle gives an invalid path.
    explicit WCStPath(WTPathType const *pathRef);
    // The system folder `folder` of `domain`, created with every level when `create` is true.
    WCStPath(WEFoldersDomain domain, WESystemFolders folder, bool create = false);
    // The same folder plus `name`, which is created as a folder when `create` is true.
    WCStPath(WEFoldersDomain domain, WESystemFolders folder, char const *name, bool create = false);

    WCStPath(WCStPath const &other);
    WCStPath(WCStPath &&other) noexcept;
    WCStPath &operator=(WCStPath const &other);
    WCStPath &operator=(WCStPath &&other) noexcept;
    ~WCStPath() override;

    // Equal when both are invalid, or both valid with the same native text; `<` orders by that
    // text, invalid paths first.
    bool operator==(WCStPath const &other) const noexcept;
    bool operator!=(WCStPath const &other) const noexcept { return !(*this == other); }
    bool operator<(WCStPath const &other) const noexcept;

    // Changing the path. Each returns the path's code afterwards.
    int Append(char const *name);
    int Append(std::string const &name);
    void Clear() noexcept;
    // `extension` with or without its dot; an empty one removes the extension.
    int ChangeExtension(char const *extension);
    // Adds `text` to the leaf before its extension: "a/b.txt" with "_1" is "a/b_1.txt".
    int ExtendLeafName(char const *text);
    // Takes ownership of `pathRef` (a null one makes the path invalid).
    void TakeOver(WTPathType *pathRef) noexcept;
    // A new handle with a copy of the path, owned by the caller (DisposePathRef), or null.
    WTPathType *CreatePathRefCopy() const;
    WTPathType const *GetPathRef() const noexcept { return m_pathRef; }

    // Parts of the path. The extension comes without its dot.
    WCFixedString<255> GetBase() const;
    WCFixedString<255> GetExtension() const;
    WCFixedString<255> GetLeaf() const;
    // The name of the folder that holds the leaf.
    WCFixedString<255> GetParentDirectory() const;
    WCStPath GetParent() const;
    WCFixedString<1023> const &GetPathString() const noexcept { return m_pathText; }
    WCFixedString<1023> GetNativePathString() const;
    WCFixedString<1023> GetPosixPathString() const;
    // The text that leads from `other` to this path: one ".." per element of `other` past the
    // shared start, then the rest of this path.
    WCFixedString<1023> GetRelativeDifference(WCStPath const &other) const;
    // The first `level` elements of SplitPath joined again ("/" counts as the first element);
    // the whole path when `level` is at least the number of elements.
    WCFixedString<1023> GetStringFromPathToLevel(std::uint64_t level) const;
    int SplitPath(WTPathElements &outElements) const;

    // Asking the file system.
    int GetFileSize(std::uint64_t &outSize) const;
    int GetFileLastWriteTime(std::time_t &outTime) const;
    // The POSIX permission bits (0644...).
    int GetPermissions(int &outPermissions) const;
    bool IsExist() const;
    bool IsFile(bool resolveLink = true) const;
    bool IsFolder(bool resolveLink = true) const;
    bool IsFileSystemLink() const;
    // True when the object exists and carries no write permission for anyone.
    bool IsLocked() const;
    // True when this process may change the object, or create it when it is missing.
    bool IsWritable() const;
    // Whether `other` lies in this folder: this path's elements are a prefix of `other`'s.
    bool IsPathContained(WCStPath const &other) const;
    // Replaces a link by what it points to (relative targets against the link's folder):
    // eFMIsNoAFileSystemLink when not a link, eFMSymlinkBroken when the target is missing.
    int ResolveFileSystemLink();

    static void WindowsToPosixSlashes(WCFixedStringBase &ioText) noexcept;
    static void WindowsToPosixSlashes(std::string &ioText) noexcept;

protected:
    bool IsValidSelf() const override { return m_pathRef != nullptr; }
    // Sets the path from a boost-compatible text, or makes it invalid with `errorIfEmpty`.
    void AssignText(char const *text, std::uint64_t length, int errorIfEmpty);
    void MakeInvalid(int error) noexcept;
    void RefreshText() noexcept;

private:
    WTPathType *m_pathRef;
    WCFixedString<1023> m_pathText;

    friend struct WUPathAccess;
};

// Whether `path` lies in `folder` (by elements, with the folder no longer than the path).
bool IsPathContained(WCStPath const &folder, WCStPath const &path);
// The text that leads from `from` to `to`.
WCFixedString<1023> GetRelativeDifference(WCStPath const &to, WCStPath const &from);

} // namespace FM
MIREL_NAMESPACE_END
