#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "resources/WCNativeModule.h"

MIREL_NAMESPACE_BEGIN

// Loaded native modules by name. The map holds one reference to each module, through
// the library's loader, and releases every one when it dies, so a module stays loaded as long as
// the map that loaded it. [main-thread]
class DLLMap {
public:
    DLLMap() = default;
    DLLMap(DLLMap const &) = delete;
    DLLMap &operator=(DLLMap const &) = delete;
    virtual ~DLLMap();

    // Loads `path` under `name`; a name already present answers its module without loading.
    // The loader's codes (eDLLNotFound, eDLLLoadingFailed); eFMWrongParameters for a null name.
    WTErr Load(char const *name, char const *path, void *&handle);
    // The module under `name`, or null.
    void *Find(char const *name) const;
    // Releases the module under `name`; false when there is none.
    bool Release(char const *name);
    std::size_t size() const { return m_modules.size(); }

private:
    std::map<std::string, Utils::WCNativeModule> m_modules;
};

MIREL_NAMESPACE_END
