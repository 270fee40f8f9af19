#pragma once

#include <map>
#include <memory>

#include "core/MirelNamespace.h"
#include "files/WCStFileReadFromZip.h"
#include "resources/WCResContainer_Base.h"

MIREL_NAMESPACE_BEGIN

// A container over the resources folder of a bundle ("<bundle>/Contents/Resources").
//
// A resource is the file "<type>/<id><extension>" below the resources folder, the extension
// being the one configured for the type (none when unknown). A missing file may be redirected by
// the configuration to another file relative to the type's folder. A type may also stand as
// "<type>.zip", looked for in the parent of the resources folder and then in it, with entries
// named "<id><extension>"; a zip is opened once, at its first use, and kept open with the
// container. The configuration is read once, when the container is made; a broken
// "resource_config.yaml" leaves it empty and is reported by GetConfigurationError.
// The resources folder is the boundary of every file read or written for a resource: a file that,
// with ".." and links resolved, lies elsewhere (through a redirection, a linked type folder or a
// linked file) is refused with eRMResNotFound, and a zip must lie in the bundle.
// Invalid with eRMInvalidResContainer when the bundle folder does not exist.
// [any-thread], under the base's lock.
class WCResContainer_Bundle : public WCResContainer_Base {
public:
    explicit WCResContainer_Bundle(const WCResContainerInfo &info);
    ~WCResContainer_Bundle() override;

    int GetRawResSize(const WCResKey &key, std::uint64_t &outSize) override;
    bool DoesNativeResourceExist(const WCResKey &key) override;
    int GetPathToActualFile(const WCResKey &key, FM::WCStPath &outPath) override;
    int GetPathToTheoreticalFile(const WCResKey &key, FM::WCStPath &outPath) override;
    int GetResTypeList(WTTypeList &outTypes) override;
    int GetResIDList(const char *type, WTTypeList &outIDs) override;
    // eRMResNotFound when neither file nor zip entry is there, or the zip cannot be read;
    // eFMFileNotFound when the type has neither a folder nor a zip.
    int ReadRawData(const WCResKey &key, Utils::WCStMemObj &outData) override;
    int WriteResourceData(WTResourceType &resource) override;
    int DeleteResourceData(WTResourceType &resource) override;
    // A resource standing in a zip takes the zip's time.
    int GetModificationTime(const WCResKey &key, std::int64_t &outTime) override;

    // Writes the configuration back as "resource_config.yaml" when it changed; a file that was
    // refused when read is left alone and its code answered.
    int WriteConfiguration() override;

    // "<type>/<id>[!variant]<extension>", the text redirections are keyed by.
    WCFixedString<255> KeyText(const WCResKey &key) const;

private:
    enum class EFileLookup { eFound, eMissing, eRefused };
    // The resource's own file or the one its redirection names: eMissing when neither exists (a
    // zip may stand in), eRefused when the file found lies outside the resources folder. Throws
    // eRMInvalidResID for a key that could name a file outside the container.
    EFileLookup FindFile(const WCResKey &key, FM::WCStPath &outTheoretical,
                         FM::WCStPath &outActual);
    // Whether the path, with ".." and links resolved, lies in the resources folder.
    bool IsInResourcesFolder(const FM::WCStPath &path) const;
    // The open zip of a type; throws eFMFileNotFound when the type has neither zip nor folder,
    // eRMResNotFound when the zip cannot be read or only the folder exists.
    FM::WCStFileReadFromZip &GetZip(const WCFixedStringBase &type);
    // Null with `outFile` set when the resource has a file of its own, else the zip of its type;
    // throws eRMResNotFound for a refused file, what FindFile throws, and what GetZip throws.
    FM::WCStFileReadFromZip *FindFileOrZip(const WCResKey &key, FM::WCStPath &outFile);
    FM::WCStPath FindZipPath(const WCFixedStringBase &type, bool resourcesFolderFirst) const;
    WCFixedString<255> ZipEntryName(const WCResKey &key) const;

    std::map<WCFixedString<31>, std::unique_ptr<FM::WCStFileReadFromZip>> m_Zips;
};

MIREL_NAMESPACE_END
