#include "Utilities/XML/Code/WCXMLFileIO.h"

#include "files/WCStPath.h"
#include "files/WTFileManagerTypes.h"
#include "files/WUFileSystemObjects.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

namespace {

// An empty path gives an invalid FM path, which every check below treats as "nothing there".
FM::WCStPath FMPath(const WTXMLPath &path) {
    return FM::WCStPath(path.native());
}

// A file standing where a folder of the path should be means nothing is at the path.
WTErr NotFoundOnTheWay(WTErr err) {
    return err == eFMIsNotAFolder ? eFMFileNotFound : err;
}

WTErr CheckIsFile(const FM::WCStPath &path) {
    if (!path.IsValid())
        return eFMFileNotFound;
    if (path.IsFile())
        return eNoErr;
    if (path.IsFolder())
        return eFMIsAFolder;
    // Asked only for the code of its status call: why nothing is there, or 0 when something that
    // is neither file nor folder (a pipe, a device) is.
    int permissions = 0;
    const WTErr err = path.GetPermissions(permissions);
    return err == eNoErr ? eFMIsNotAFile : NotFoundOnTheWay(err);
}

} // namespace

WTErr CheckIsFile(const WTXMLPath &path) {
    return CheckIsFile(FMPath(path));
}

WTErr ReadWholeFile(const WTXMLPath &path, Utils::WCStMemObj &out) {
    const FM::WCStPath file = FMPath(path);
    // Checked before opening: opening a pipe for reading would wait for a writer.
    WTErr err = CheckIsFile(file);
    if (err != eNoErr)
        return err;
    Utils::WCStMemObj content;
    err = FM::ReadFileToWCStMemObj(file, content);
    if (err != eNoErr)
        return err;
    out.TakeOver(content);
    return eNoErr;
}

WTErr CreateFolder(const WTXMLPath &folder) {
    if (folder.empty())
        return eFMWrongParameters;
    return FM::CreateFolder(FMPath(folder));
}

WTErr GetDesktopFolder(WTXMLPath &folder) {
    const FM::WCStPath desktop(FM::eUserDomain, FM::eDesktopFolder);
    if (!desktop.IsValid())
        return desktop.GetError();
    folder = desktop.GetPathString().c_str();
    return eNoErr;
}

WTErr WriteWholeFile(const WTXMLPath &path, const void *data, std::uint64_t size,
                     unsigned int mode) {
    if (path.empty() || !path.has_filename())
        return eFMWrongParameters;
    // Missing folders are made, as for every file the file layer creates.
    return FM::ReplaceFileContents(FMPath(path), data, size, static_cast<int>(mode));
}

} // namespace XML

MIREL_NAMESPACE_END
