#pragma once

#include "core/MirelNamespace.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

// Decides which items of a folder a listing keeps. Filters hold no state and may be shared
// between threads. [any-thread]
class FileFilterFunctor {
public:
    virtual ~FileFilterFunctor() = default;
    virtual bool operator()(WCStPath const &path) const = 0;
};

class EveryThing : public FileFilterFunctor {
public:
    bool operator()(WCStPath const &path) const override;
};

class OnlyFiles : public FileFilterFunctor {
public:
    bool operator()(WCStPath const &path) const override;
};

class OnlyFolders : public FileFilterFunctor {
public:
    bool operator()(WCStPath const &path) const override;
};

class FoldersOrZips : public FileFilterFunctor {
public:
    bool operator()(WCStPath const &path) const override;
};

// Drops the names the other desktop systems leave behind: names starting with a dot (".DS_Store",
// "._x", ".Trashes"), "Icon\r" and "__MACOSX".
class EverythingButMacHidden : public FileFilterFunctor {
public:
    bool operator()(WCStPath const &path) const override;
};

class OnlyBundles : public FileFilterFunctor {
public:
    bool operator()(WCStPath const &path) const override;
};

class OnlyBundlesThatAreRealyBundles : public FileFilterFunctor {
public:
    bool operator()(WCStPath const &path) const override;
};

class OnlyFoldersAndXPS : public FileFilterFunctor {
public:
    bool operator()(WCStPath const &path) const override;
};

class OnlyZips : public FileFilterFunctor {
public:
    bool operator()(WCStPath const &path) const override;
};

} // namespace FM

// Kept outside FM as well, where callers have always found it.
using FM::OnlyZips;

MIREL_NAMESPACE_END
