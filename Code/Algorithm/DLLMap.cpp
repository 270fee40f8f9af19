#include "Code/Algorithm/DLLMap.h"

MIREL_NAMESPACE_BEGIN

DLLMap::~DLLMap() = default;

WTErr DLLMap::Load(char const *name, char const *path, void *&handle) {
    handle = nullptr;
    if (name == nullptr)
        return eFMWrongParameters;
    if (void *found = Find(name)) {
        handle = found;
        return eNoErr;
    }
    Utils::WCNativeModule module;
    const WTErr err = module.Load(path);
    if (err != eNoErr)
        return err;
    handle = module.GetHandle();
    m_modules.emplace(name, std::move(module));
    return eNoErr;
}

void *DLLMap::Find(char const *name) const {
    if (name == nullptr)
        return nullptr;
    const auto found = m_modules.find(name);
    return found == m_modules.end() ? nullptr : found->second.GetHandle();
}

bool DLLMap::Release(char const *name) {
    return name != nullptr && m_modules.erase(name) != 0;
}

MIREL_NAMESPACE_END
