#include "resources/WCResContainer_Bundle.h"

#include <algorithm>
#include <new>

#include "core/WCStMemObj.h"
#include "files/FileFilterFunctor.h"
#include "files/WCStFile.h"
#include "files/WCStFolderIterator.h"
#include "files/WTPathType.h"
#include "files/WUBundles.h"
#include "files/WUFileSystemObjects.h"

MIREL_NAMESPACE_BEGIN

namespace {

void SortUniqueAppend(std::vector<WCFixedString<31>> &found,
                      std::vector<WCFixedString<31>> &outList) {
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    outList.insert(outList.end(), found.begin(), found.end());
}

bool EndsWith(const WCFixedStringBase &text, const WCFixedStringBase &suffix) {
    return suffix.empty() || text.ends_with(suffix.c_str());
}

// Whether `path` lies strictly inside `folder`, both taken with ".." and links resolved. The
// whole path is used, not its text, which is cut at 1023 characters. A path that cannot be
// resolved lies nowhere.
bool LiesInside(const FM::WCStPath &folder, const FM::WCStPath &path) {
    std::string base;
    std::string target;
    if (!folder.IsValid() || !path.IsValid() ||
        FM::NormalizePathString(FM::BoostPath(folder).c_str(), base) != eNoErr ||
        FM::NormalizePathString(FM::BoostPath(path).c_str(), target) != eNoErr)
        return false;
    if (base == "/")
        return target.size() > 1;
    return target.size() > base.size() && target.compare(0, base.size(), base) == 0 &&
           target[base.size()] == '/';
}

} // namespace

WCResContainer_Bundle::WCResContainer_Bundle(const WCResContainerInfo &info)
    : WCResContainer_Base(info) {
    if (!IsValid())
        return;
    if (GetKind() != RM::kResContainerBundle || !m_Path.IsFolder()) {
        SetError(eRMInvalidResContainer);
        return;
    }
    m_ConfigError = m_Config.ReadFromFolder(m_ResourcesFolder);
}

WCResContainer_Bundle::~WCResContainer_Bundle() {
    // Records are disposed of while the zips they may still need for a last delete are open.
    ReleaseAllResources();
}

WCFixedString<255> WCResContainer_Bundle::KeyText(const WCResKey &key) const {
    WCFixedString<255> text(key.str('/'));
    text << m_Config.GetExtension(key.m_Type);
    return text;
}

int WCResContainer_Bundle::GetPathToTheoreticalFile(const WCResKey &key, FM::WCStPath &outPath) {
    try {
        CheckKeyFields(key);
    } catch (int err) {
        return err;
    }
    outPath = FM::WCStPath(m_ResourcesFolder, KeyText(key).c_str());
    return outPath.GetError();
}

bool WCResContainer_Bundle::IsInResourcesFolder(const FM::WCStPath &path) const {
    return LiesInside(m_ResourcesFolder, path);
}

WCResContainer_Bundle::EFileLookup WCResContainer_Bundle::FindFile(const WCResKey &key,
                                                                   FM::WCStPath &outTheoretical,
                                                                   FM::WCStPath &outActual) {
    CheckKeyFields(key);
    const WCFixedString<255> text = KeyText(key);
    outTheoretical = FM::WCStPath(m_ResourcesFolder, text.c_str());
    if (outTheoretical.IsFile()) {
        outActual = outTheoretical;
    } else {
        const WCFixedString<255> *redirect = m_Config.FindRedirection(text);
        if (redirect == nullptr || redirect->empty())
            return EFileLookup::eMissing;
        outActual = FM::WCStPath(outTheoretical.GetParent(), redirect->c_str());
        if (!outActual.IsValid() || !outActual.IsFile())
            return EFileLookup::eMissing;
    }
    // A bad configuration or a linked folder must not make the container read or overwrite a
    // file elsewhere.
    return IsInResourcesFolder(outActual) ? EFileLookup::eFound : EFileLookup::eRefused;
}

int WCResContainer_Bundle::GetPathToActualFile(const WCResKey &key, FM::WCStPath &outPath) {
    try {
        FM::WCStPath theoretical;
        if (FindFile(key, theoretical, outPath) == EFileLookup::eFound)
            return eNoErr;
        outPath = FM::WCStPath();
        return eRMResNotFound;
    } catch (int err) {
        return err;
    }
}

FM::WCStPath WCResContainer_Bundle::FindZipPath(const WCFixedStringBase &type,
                                                bool resourcesFolderFirst) const {
    WCFixedString<63> leaf(type);
    leaf << ".zip";
    const FM::WCStPath inResources(m_ResourcesFolder, leaf.c_str());
    const FM::WCStPath inParent(m_ResourcesFolder.GetParent(), leaf.c_str());
    const FM::WCStPath &first = resourcesFolderFirst ? inResources : inParent;
    const FM::WCStPath &second = resourcesFolderFirst ? inParent : inResources;
    // A zip belongs to the bundle; a link that leads out of it is not followed.
    const FM::WCStPath bundleContents = m_ResourcesFolder.GetParent();
    if (first.IsFile() && LiesInside(bundleContents, first))
        return first;
    if (second.IsFile() && LiesInside(bundleContents, second))
        return second;
    return FM::WCStPath();
}

FM::WCStFileReadFromZip &WCResContainer_Bundle::GetZip(const WCFixedStringBase &type) {
    const WCFixedString<31> name(type);
    const auto found = m_Zips.find(name);
    if (found != m_Zips.end())
        return *found->second;
    const FM::WCStPath path = FindZipPath(type, false);
    if (!path.IsValid()) {
        // With the type's folder there, the resource is what is missing, not the type.
        throw int(FM::WCStPath(m_ResourcesFolder, name.c_str()).IsFolder() ? eRMResNotFound
                                                                           : eFMFileNotFound);
    }
    std::unique_ptr<FM::WCStFileReadFromZip> zip(new (std::nothrow) FM::WCStFileReadFromZip(path));
    if (!zip)
        throw int(eMemNewTPtrFailed);
    // A damaged zip is not kept, so a repaired one is read at the next request.
    if (!zip->IsValid())
        throw int(eRMResNotFound);
    return *m_Zips.emplace(name, std::move(zip)).first->second;
}

WCFixedString<255> WCResContainer_Bundle::ZipEntryName(const WCResKey &key) const {
    WCFixedString<255> entry(key.m_ID);
    const WCFixedString<15> extension = m_Config.GetExtension(key.m_Type);
    if (!extension.empty() && !entry.ends_with(extension.c_str()))
        entry << extension;
    return entry;
}

FM::WCStFileReadFromZip *WCResContainer_Bundle::FindFileOrZip(const WCResKey &key,
                                                              FM::WCStPath &outFile) {
    FM::WCStPath theoretical;
    switch (FindFile(key, theoretical, outFile)) {
    case EFileLookup::eFound: return nullptr;
    case EFileLookup::eRefused: throw int(eRMResNotFound);
    case EFileLookup::eMissing: break;
    }
    return &GetZip(key.m_Type);
}

int WCResContainer_Bundle::ReadRawData(const WCResKey &key, Utils::WCStMemObj &outData) {
    try {
        FM::WCStPath actual;
        if (FM::WCStFileReadFromZip *zip = FindFileOrZip(key, actual))
            return zip->ReadToWCStMemObj(ZipEntryName(key).c_str(), outData) != eNoErr
                       ? eRMResNotFound
                       : eNoErr;
        FM::WCStFileRead file(actual);
        if (!file.IsValid() || file.ReadToWCStMemObj(outData) != eNoErr)
            return eRMResNotFound;
        return eNoErr;
    } catch (int err) {
        return err;
    } catch (...) {
        return eRMResNotFound;
    }
}

int WCResContainer_Bundle::GetRawResSize(const WCResKey &key, std::uint64_t &outSize) {
    try {
        FM::WCStPath actual;
        if (FM::WCStFileReadFromZip *zip = FindFileOrZip(key, actual))
            return zip->GetEntrySize(ZipEntryName(key).c_str(), outSize) != eNoErr ? eRMResNotFound
                                                                                   : eNoErr;
        return actual.GetFileSize(outSize);
    } catch (int err) {
        return err;
    } catch (...) {
        return eRMResNotFound;
    }
}

bool WCResContainer_Bundle::DoesNativeResourceExist(const WCResKey &key) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    std::uint64_t size = 0;
    return GetRawResSize(key, size) == eNoErr;
}

int WCResContainer_Bundle::GetModificationTime(const WCResKey &key, std::int64_t &outTime) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    FM::WCStPath path;
    int err = GetPathToActualFile(key, path);
    if (err == eRMResNotFound) {
        path = FindZipPath(key.m_Type, false);
        if (path.IsValid())
            err = eNoErr;
    }
    return err != eNoErr ? err : FileModificationTime(path, outTime);
}

int WCResContainer_Bundle::WriteResourceData(WTResourceType &resource) {
    FM::WCStPath theoretical;
    FM::WCStPath target;
    try {
        switch (FindFile(resource, theoretical, target)) {
        case EFileLookup::eFound: break;
        case EFileLookup::eRefused: return eRMResNotFound;
        case EFileLookup::eMissing:
            // A new file goes where the key names it, and a linked type folder may lead elsewhere.
            if (!theoretical.IsValid())
                return theoretical.GetError();
            if (!IsInResourcesFolder(theoretical))
                return eRMResNotFound;
            target = theoretical;
            break;
        }
    } catch (int err) {
        return err;
    }
    FM::WCStFileCreate file(target, FM::eFMCreateAlways, FM::eFMReadWritePermission, 420);
    if (!file.IsValid())
        return eFMWriteFailed;
    if (file.WriteFromWCStMemObj(resource.m_Data.m_MemObj) != eNoErr) {
        file.Abandon();
        return eFMWriteFailed;
    }
    return file.Close() == eNoErr ? eNoErr : eFMWriteFailed;
}

int WCResContainer_Bundle::DeleteResourceData(WTResourceType &resource) {
    FM::WCStPath actual;
    if (GetPathToActualFile(resource, actual) == eNoErr)
        (void)FM::DeleteFileSystemObject(actual);
    return eNoErr;
}

int WCResContainer_Bundle::WriteConfiguration() {
    // A refused file was never read into the maps, so writing them would throw its entries away.
    if (m_ConfigError != eNoErr)
        return m_ConfigError;
    const std::string text = m_Config.WriteToYAML();
    return FM::ReplaceFileContents(
        FM::WCStPath(m_ResourcesFolder, RM::WCResConfiguration::kYAMLFileName), text.data(),
        text.size());
}

int WCResContainer_Bundle::GetResTypeList(WTTypeList &outTypes) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    WTTypeList found;
    auto take = [&found](const FM::WCStPath &item, bool isZip) {
        WCFixedString<255> leaf = item.GetLeaf();
        if (isZip && leaf.size() > 4)
            leaf.resize(leaf.size() - 4);
        if (leaf.size() > 31 || leaf.empty() || leaf[0] == '.')
            return;
        found.emplace_back(leaf);
    };
    FM::WCStFolderIterator::WTPathVector items;
    if (FM::WCStFolderIterator::GetFilePathVectorFromFolder(m_ResourcesFolder, FM::OnlyFolders(),
                                                            items) == eNoErr)
        for (const auto &item : items)
            take(item, false);
    for (const FM::WCStPath &folder : {m_ResourcesFolder, m_ResourcesFolder.GetParent()}) {
        items.clear();
        if (FM::WCStFolderIterator::GetFilePathVectorFromFolder(folder, FM::OnlyZips(), items) ==
            eNoErr)
            for (const auto &item : items)
                if (item.IsFile())
                    take(item, true);
    }
    SortUniqueAppend(found, outTypes);
    return eNoErr;
}

int WCResContainer_Bundle::GetResIDList(const char *type, WTTypeList &outIDs) {
    if (type == nullptr || *type == 0)
        return eRMInvalidResID;
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    try {
        CheckKeyFields(WCResKey(type, "0"));
    } catch (int err) {
        return err;
    }
    const WCFixedString<31> typeName(type);
    const WCFixedString<15> extension = m_Config.GetExtension(typeName);
    WTTypeList found;
    const FM::WCStPath folder(m_ResourcesFolder, typeName.c_str());
    if (folder.IsFolder()) {
        // The folder hides a zip of the same type altogether.
        FM::WCStFolderIterator::WTPathVector items;
        const int err =
            FM::WCStFolderIterator::GetFilePathVectorFromFolder(folder, FM::OnlyFiles(), items);
        if (err != eNoErr)
            return err;
        for (const auto &item : items) {
            const WCFixedString<255> leaf = item.GetLeaf();
            if (leaf.empty() || leaf[0] == '.' || !EndsWith(item.GetNativePathString(), extension))
                continue;
            WCFixedString<255> id(leaf);
            // The id is the leaf without the type's extension; a type without one keeps the base.
            if (!extension.empty())
                id.resize(id.size() - extension.size());
            else
                id = item.GetBase();
            found.emplace_back(id);
        }
    } else {
        const FM::WCStPath zipPath = FindZipPath(typeName, true);
        if (zipPath.IsValid()) {
            FM::WCStZipFileIterator entries(zipPath);
            if (!entries.IsValid())
                return eRMResNotFound;
            WCFixedString<255> leaf;
            while (entries.GetNextItemFromZip(leaf) == eNoErr) {
                if (!EndsWith(leaf, extension) || leaf.size() == extension.size())
                    continue;
                leaf.resize(leaf.size() - extension.size());
                found.emplace_back(leaf);
            }
        }
    }
    SortUniqueAppend(found, outIDs);
    return eNoErr;
}

MIREL_NAMESPACE_END
