#include "Code/Algorithm/DLLMap.h"

#include "Code/Algorithm/linux/WUNativeModule.h"

MIREL_NAMESPACE_BEGIN

DLLMap::~DLLMap() {
    for (auto &[name, handle] : m_modules)
        NativeModule::Unload(handle);
}

WTErr DLLMap::Load(char const *name, char const *path, void *&handle) {
    handle = nullptr;
    if (name == nullptr)
        return eFMWrongParameters;
    if (void *found = Find(name)) {
        handle = found;
        return eNoErr;
    }
    const WTErr err = NativeModule::Load(path, handle);
    if (err == eNoErr)
        m_modules.emplace(name, handle);
    return err;
}

void *DLLMap::Find(char const *name) const {
    if (name == nullptr)
        return nullptr;
    const auto found = m_modules.find(name);
    return found == m_modules.end() ? nullptr : found->second;
}

bool DLLMap::Release(char const *name) {
    if (name == nullptr)
        return false;
    const auto found = m_modules.find(name);
    if (found == m_modules.end())
        return false;
    NativeModule::Unload(found->second);
    m_modules.erase(found);
    return true;
}

MIREL_NAMESPACE_END
