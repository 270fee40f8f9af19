#include "resources/WCResContainer_Base.h"

#include <ctime>
#include <memory>
#include <new>
#include <ostream>
#include <vector>

#include "resources/WCResConvertObj.h"

MIREL_NAMESPACE_BEGIN

namespace {

// Whether a record's data is the caller's or raw bytes that may be replaced.
bool IsRawForm(const WTResourceType &resource) {
    return resource.m_Data.m_Form == RM::kResFormMemObj;
}

// Whether releasing the record disposes of its data: bases, and variants that converted their own.
bool OwnsData(const WTResourceType &resource) {
    return resource.m_pParent == nullptr || (resource.m_Flags & RM::kResFlagOwnsConversion) != 0;
}

RM::WCResConvertObj &ConverterOf(const WCResKey &key) {
    return key.GetConverter() ? *key.GetConverter() : *WCResKey::DefaultConverter();
}

} // namespace

WCResContainer_Base::WCResContainer_Base(const WCResContainerInfo &info)
    : WCResContainerInfo(info) {
    if (m_Mutex.init() != eNoErr)
        SetError(eMemOutOfMemory);
}

WCResContainer_Base::~WCResContainer_Base() {
    ReleaseAllResources();
    m_Mutex.uninit();
}

bool WCResContainer_Base::IsValidSelf() const {
    return m_Mutex.is_init();
}

int WCResContainer_Base::GetRawResSize(const WCResKey &, std::uint64_t &) {
    return eRMResNotFound;
}

bool WCResContainer_Base::DoesNativeResourceExist(const WCResKey &) {
    return false;
}

const FM::WCStPath &WCResContainer_Base::GetContainerPath() const {
    return m_Path;
}

FM::WCStPath &WCResContainer_Base::GetContainerPath() {
    return m_Path;
}

int WCResContainer_Base::GetPathToActualFile(const WCResKey &, FM::WCStPath &) {
    return eRMResNotFound;
}

int WCResContainer_Base::GetPathToTheoreticalFile(const WCResKey &, FM::WCStPath &) {
    return eRMResNotFound;
}

int WCResContainer_Base::GetResTypeList(WTTypeList &) {
    return eNoErr;
}

int WCResContainer_Base::GetResIDList(const char *, WTTypeList &) {
    return eNoErr;
}

int WCResContainer_Base::ReadRawData(const WCResKey &, Utils::WCStMemObj &) {
    return eRMResNotFound;
}

int WCResContainer_Base::CheckResource(const WTResourceType &resource) {
    CheckKeyFields(resource);
    return eNoErr;
}

int WCResContainer_Base::LoadResourceData(WTResourceType &resource) {
    return ReadRawData(resource, resource.m_Data.m_MemObj);
}

void WCResContainer_Base::Dump(std::ostream &out) const {
    out << GetContainerPath().GetPathString().c_str() << " retain " << m_RetainCount << '\n';
    for (const auto &[key, resource] : m_ResMap) {
        out << "  " << key.str('/').c_str() << " retain " << resource->m_RetainCount << " size "
            << resource->m_Data.m_DataSize << ' ' << resource->m_Data.m_Form.c_str() << '\n';
    }
}

int WCResContainer_Base::WriteResourceData(WTResourceType &) {
    return eRMResUpdateFailed;
}

int WCResContainer_Base::DeleteResourceData(WTResourceType &) {
    return eNoErr;
}

void WCResContainer_Base::CheckKeyFields(const WCResKey &key) {
    auto bad = [](const WCFixedStringBase &field, bool mayBeEmpty) {
        if (field.empty())
            return !mayBeEmpty;
        if (field == "." || field == "..")
            return true;
        return field.find_first_of("/\\") != WCFixedStringBase::npos;
    };
    if (bad(key.m_Type, false) || bad(key.m_ID, false) || bad(key.m_Variant, true))
        throw int(eRMInvalidResID);
}

WCFixedString<63> WCResContainer_Base::AttributeKey(const WCResKey &key, const char *name) {
    WCFixedString<63> text;
    text << key.m_Type << ':' << key.m_ID << ':' << name;
    return text;
}

WTResourceType *WCResContainer_Base::FindLocked(const WCResKey &key) {
    const auto found = m_ResMap.find(key);
    return found == m_ResMap.end() ? nullptr : found->second;
}

int WCResContainer_Base::GetResource(const WCResKey &key, std::uint32_t flags,
                                     WTResourceType *&outResource) {
    outResource = nullptr;
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    if (WTResourceType *loaded = FindLocked(key)) {
        // The first load decided the form; this key's converter is not asked.
        ++loaded->m_RetainCount;
        outResource = loaded;
        return eNoErr;
    }
    try {
        CheckKeyFields(key);
        std::unique_ptr<WTResourceType> record(new (std::nothrow) WTResourceType(key));
        if (!record)
            return eMemNewTPtrFailed;
        if ((flags & RM::kResLoadDeferredWrite) != 0)
            record->m_Flags |= RM::kResFlagDeferredWrite;
        if (!key.m_Variant.empty()) {
            // A variant with its own converter converts the base's raw bytes for itself, so the
            // base is loaded raw; without one it shares whatever the base holds.
            const bool ownConversion =
                key.GetConverter() && key.GetConverter() != WCResKey::DefaultConverter();
            WCResKey baseKey = key.BaseKey();
            if (ownConversion)
                baseKey.SetConverter(nullptr);
            WTResourceType *base = nullptr;
            int err = GetResource(baseKey, flags, base);
            if (err != eNoErr)
                return err == eRMInvalidResID ? err : eRMInvalidResRef;
            // The variant keeps the retain just taken on its base.
            record->m_pParent = base;
            if (ownConversion && IsRawForm(*base)) {
                err = record->m_Data.m_MemObj.Assign(base->m_Data.m_pData, base->m_Data.m_DataSize);
                if (err == eNoErr)
                    err = ConverterOf(*record).ConvertAfterLoad(record->m_Data);
                if (err != eNoErr) {
                    ReleaseLocked(base);
                    return err;
                }
                record->m_Flags |= RM::kResFlagOwnsConversion;
            } else {
                record->m_Data.m_pData = base->m_Data.m_pData;
                record->m_Data.m_DataSize = base->m_Data.m_DataSize;
                record->m_Data.m_Form = base->m_Data.m_Form;
            }
        } else {
            int err = CheckResource(*record);
            if (err == eNoErr)
                err = LoadResourceData(*record);
            if (err == eNoErr) {
                ++m_LoadCount;
                err = ConverterOf(*record).ConvertAfterLoad(record->m_Data);
            }
            if (err != eNoErr)
                return err;
        }
        record->m_RetainCount = 1;
        record->m_pContainer = this;
        WTResourceType *entered = record.get();
        try {
            m_ResMap.emplace(key, entered);
        } catch (...) {
            if (OwnsData(*entered))
                ConverterOf(*entered).Release(entered->m_Data);
            if (entered->m_pParent)
                ReleaseLocked(entered->m_pParent);
            throw;
        }
        outResource = record.release();
        return eNoErr;
    } catch (int err) {
        return err;
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

int WCResContainer_Base::RetainResource(WTResourceType *resource) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    ++resource->m_RetainCount;
    return eNoErr;
}

int WCResContainer_Base::ReleaseResource(WTResourceType *&ioResource) {
    WTResourceType *resource = ioResource;
    ioResource = nullptr;
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    return ReleaseLocked(resource);
}

int WCResContainer_Base::ReleaseLocked(WTResourceType *resource) {
    if (resource->m_RetainCount > 1) {
        --resource->m_RetainCount;
        return eNoErr;
    }
    const auto found = m_ResMap.find(*resource);
    if (found == m_ResMap.end() || found->second != resource)
        return eRMResRefNotFound;
    m_ResMap.erase(found);
    WTResourceType *parent = resource->m_pParent;
    DestroyRecord(resource);
    return parent ? ReleaseLocked(parent) : eNoErr;
}

void WCResContainer_Base::DestroyRecord(WTResourceType *resource) {
    if ((resource->m_Flags & RM::kResFlagMarkedForDelete) != 0 && resource->m_pParent == nullptr)
        DeleteResourceData(*resource);
    if (OwnsData(*resource)) {
        ConverterOf(*resource).Release(resource->m_Data);
    } else {
        // A sharing variant's data belongs to its base.
        resource->m_Data.m_pData = nullptr;
        resource->m_Data.m_DataSize = 0;
        resource->m_Data.m_Form << RM::kResFormReleasedSuffix;
    }
    resource->m_RetainCount = 0;
    delete resource;
}

int WCResContainer_Base::ReleaseAllResources() {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    WTResMap records;
    records.swap(m_ResMap);
    // Variants first, so no base is disposed of while a variant still points at its data.
    std::vector<WTResourceType *> bases;
    bases.reserve(records.size());
    for (auto &[key, resource] : records) {
        if (resource->m_pParent != nullptr)
            DestroyRecord(resource);
        else
            bases.push_back(resource);
    }
    for (WTResourceType *resource : bases)
        DestroyRecord(resource);
    return eNoErr;
}

int WCResContainer_Base::IsResourceLoaded(const WCResKey &key, WTResourceType *&outResource) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    outResource = FindLocked(key);
    return outResource ? eNoErr : eRMResRefNotFound;
}

bool WCResContainer_Base::DoesResourceExist(const WCResKey &key) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    // A record marked for delete still exists while the store holds it: its file goes only when
    // the container is written or the record's last retain is released.
    const WTResourceType *loaded = FindLocked(key);
    if (loaded != nullptr && (loaded->m_Flags & RM::kResFlagMarkedForDelete) == 0)
        return true;
    try {
        CheckKeyFields(key);
        std::uint64_t size = 0;
        return GetRawResSize(key, size) == eNoErr;
    } catch (...) {
        return false;
    }
}

int WCResContainer_Base::AddResource(const WCResKey &key, const void *data, std::uint64_t size,
                                     std::uint32_t flags, bool copyData, bool replaceStored,
                                     WTResourceType *&outResource) {
    outResource = nullptr;
    if (data == nullptr && size != 0)
        return eMemNullPointer;
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    try {
        CheckKeyFields(key);
        if (WTResourceType *loaded = FindLocked(key)) {
            const int err = copyData ? UpdateResource(loaded, data, size) : [&] {
                if (loaded->m_pParent != nullptr || !IsRawForm(*loaded))
                    return eRMResUpdateFailed;
                loaded->m_Data.m_MemObj.DisposePtr();
                loaded->m_Data.m_pData = const_cast<void *>(data);
                loaded->m_Data.m_DataSize = size;
                loaded->m_Flags &= ~RM::kResFlagDataCopied;
                ShareWithVariantsLocked(*loaded);
                return eNoErr;
            }();
            if (err == eNoErr) {
                ++loaded->m_RetainCount;
                outResource = loaded;
            }
            return err;
        }
        if (!key.m_Variant.empty())
            return eRMInvalidResID;
        if (!replaceStored && DoesNativeResourceExist(key))
            return eRMResExists;
        std::unique_ptr<WTResourceType> record(new (std::nothrow) WTResourceType(key));
        if (!record)
            return eMemNewTPtrFailed;
        record->m_Flags = RM::kResFlagAddedNotOnDisk;
        if ((flags & RM::kResLoadDeferredWrite) != 0)
            record->m_Flags |= RM::kResFlagDeferredWrite;
        if (copyData) {
            const int err = record->m_Data.m_MemObj.Assign(data, size);
            if (err != eNoErr)
                return err;
            record->m_Data.m_pData = record->m_Data.m_MemObj.GetPtr();
            record->m_Flags |= RM::kResFlagDataCopied;
        } else {
            record->m_Data.m_pData = const_cast<void *>(data);
        }
        record->m_Data.m_DataSize = size;
        record->m_Data.m_Form = RM::kResFormMemObj;
        record->m_RetainCount = 1;
        record->m_pContainer = this;
        m_ResMap.emplace(key, record.get());
        m_Dirty = true;
        outResource = record.release();
        return eNoErr;
    } catch (int err) {
        return err;
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

int WCResContainer_Base::UpdateResource(WTResourceType *resource, const void *data,
                                        std::uint64_t size) {
    if (data == nullptr && size != 0)
        return eMemNullPointer;
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    if (resource->m_pParent != nullptr || !IsRawForm(*resource))
        return eRMResUpdateFailed;
    // Built aside first, so a failed copy leaves the record's data as it was.
    Utils::WCStMemObj copy;
    if (copy.Assign(data, size) != eNoErr)
        return eRMResUpdateFailed;
    resource->m_Data.m_MemObj.TakeOver(copy);
    resource->m_Data.m_pData = resource->m_Data.m_MemObj.GetPtr();
    resource->m_Data.m_DataSize = size;
    resource->m_Flags |= RM::kResFlagDataCopied;
    ShareWithVariantsLocked(*resource);
    m_Dirty = true;
    return eNoErr;
}

void WCResContainer_Base::ShareWithVariantsLocked(const WTResourceType &base) {
    // A base's variants follow it in the map: same type and id, a variant sorting after none.
    for (auto it = m_ResMap.upper_bound(base); it != m_ResMap.end() && it->first.BaseKey() == base;
         ++it) {
        WTResourceType *variant = it->second;
        if (variant->m_pParent != &base || (variant->m_Flags & RM::kResFlagOwnsConversion) != 0)
            continue;
        variant->m_Data.m_pData = base.m_Data.m_pData;
        variant->m_Data.m_DataSize = base.m_Data.m_DataSize;
        variant->m_Data.m_Form = base.m_Data.m_Form;
    }
}

int WCResContainer_Base::WriteResource(WTResourceType *resource) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    if (resource->m_pParent != nullptr)
        return eRMResUpdateFailed;
    if ((resource->m_Flags & RM::kResFlagDeferredWrite) != 0) {
        m_Dirty = true;
        return eNoErr;
    }
    return WriteRecordLocked(*resource);
}

int WCResContainer_Base::WriteRecordLocked(WTResourceType &resource) {
    const void *const handedOut = resource.m_Data.m_pData;
    const WCFixedString<31> form = resource.m_Data.m_Form;
    int err = eNoErr;
    try {
        err = ConverterOf(resource).ConvertBeforeWrite(resource.m_Data);
        if (err == eNoErr)
            err = WriteResourceData(resource);
    } catch (int thrown) {
        err = thrown;
    }
    // The converter names the bytes it wrote, but users still hold the converted object, so the
    // record keeps naming that: a later write, copy or update must not take it for raw bytes.
    if (resource.m_Data.m_pData == handedOut)
        resource.m_Data.m_Form = form;
    if (err == eNoErr)
        resource.m_Flags &= ~RM::kResFlagAddedNotOnDisk;
    return err;
}

int WCResContainer_Base::MarkResourceForDelete(WTResourceType *resource) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    resource->m_Flags |= RM::kResFlagMarkedForDelete;
    m_Dirty = true;
    return eNoErr;
}

int WCResContainer_Base::WriteContainer() {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    int first = eNoErr;
    for (auto &[key, resource] : m_ResMap) {
        if (resource->m_pParent != nullptr)
            continue;
        int err = eNoErr;
        if ((resource->m_Flags & RM::kResFlagMarkedForDelete) != 0) {
            err = DeleteResourceData(*resource);
        } else if ((resource->m_Flags & RM::kResFlagDeferredWrite) != 0) {
            err = WriteRecordLocked(*resource);
        }
        if (first == eNoErr)
            first = err;
    }
    if (m_ConfigDirty) {
        const int err = WriteConfiguration();
        if (err == eNoErr)
            m_ConfigDirty = false;
        else if (first == eNoErr)
            first = err;
    }
    if (first == eNoErr)
        m_Dirty = false;
    return first;
}

int WCResContainer_Base::GetModificationTime(const WCResKey &key, std::int64_t &outTime) {
    FM::WCStPath path;
    const int err = GetPathToActualFile(key, path);
    return err != eNoErr ? err : FileModificationTime(path, outTime);
}

int WCResContainer_Base::FileModificationTime(const FM::WCStPath &path, std::int64_t &outTime) {
    std::time_t time = 0;
    const int err = path.GetFileLastWriteTime(time);
    if (err == eNoErr)
        outTime = static_cast<std::int64_t>(time);
    return err;
}

int WCResContainer_Base::SetResourceAttrib(const WCResKey &key, const char *name,
                                           const char *value) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    m_Config.SetAttribute(AttributeKey(key, name), value);
    m_Dirty = true;
    m_ConfigDirty = true;
    return eNoErr;
}

int WCResContainer_Base::GetResourceAttrib(const WCResKey &key, const char *name,
                                           WCFixedStringBase &outValue) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    const WCFixedString<127> *value = m_Config.FindAttribute(AttributeKey(key, name));
    if (value == nullptr)
        return eRMResNotFound;
    outValue = *value;
    return eNoErr;
}

bool WCResContainer_Base::HasResourceAttrib(const WCResKey &key, const char *name) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    return m_Config.FindAttribute(AttributeKey(key, name)) != nullptr;
}

std::uint64_t WCResContainer_Base::GetNumLoadedResources() {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    return m_ResMap.size();
}

std::uint64_t WCResContainer_Base::GetTotalResourceRetain() {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    std::uint64_t total = 0;
    for (const auto &[key, resource] : m_ResMap)
        total += static_cast<std::uint64_t>(resource->m_RetainCount);
    return total;
}

MIREL_NAMESPACE_END
