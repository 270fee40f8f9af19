#include "files/WUBundles.h"

#include <cstring>
#include <strings.h>

MIREL_NAMESPACE_BEGIN
namespace FM {

namespace {

char const *WithoutDot(char const *extension) {
    return (extension != nullptr && extension[0] == '.') ? extension + 1 : extension;
}

int LayoutPath(WCStPath const &bundle, char const *tail, WCStPath &outPath) {
    if (!bundle.IsValid())
        return bundle.GetError();
    outPath = WCStPath(bundle, tail);
    return outPath.GetError();
}

} // namespace

bool IsSameExtension(char const *extension1, char const *extension2) {
    char const *a = WithoutDot(extension1);
    char const *b = WithoutDot(extension2);
    if (a == nullptr || b == nullptr)
        return a == b;
    return ::strcasecmp(a, b) == 0;
}

bool IsBundleExtension(char const *extension) {
    return IsSameExtension(extension, "bundle");
}

bool IsBundlePath(WCStPath const &path) {
    return path.IsValid() && IsBundleExtension(path.GetExtension().c_str());
}

bool IsExistingBundle(WCStPath const &path) {
    return IsBundlePath(path) && path.IsFolder();
}

bool IsBundleAndOnlyBundlePath(WCStPath const &path) {
    if (!IsBundlePath(path))
        return false;
    WCStPath::WTPathElements elements;
    if (path.SplitPath(elements) != eNoErr || elements.empty())
        return false;
    for (std::size_t i = 0; i + 1 < elements.size(); ++i) {
        char const *dot = std::strrchr(elements[i].c_str(), '.');
        if (dot != nullptr && dot != elements[i].c_str() && IsBundleExtension(dot))
            return false;
    }
    return true;
}

bool IsExistingBundleAndOnlyBundle(WCStPath const &path) {
    return IsBundleAndOnlyBundlePath(path) && path.IsFolder();
}

int GetPathToBundleResourcesFolder(WCStPath const &bundle, WCStPath &outPath) {
    return LayoutPath(bundle, "Contents/Resources", outPath);
}

int GetPathToBundlePluginsFolder(WCStPath const &bundle, WCStPath &outPath) {
    return LayoutPath(bundle, "Contents/PlugIns", outPath);
}

int GetPathToBundleLinux32Folder(WCStPath const &bundle, WCStPath &outPath) {
    return LayoutPath(bundle, "Contents/Linux32", outPath);
}

int GetPathToBundleLinux64Folder(WCStPath const &bundle, WCStPath &outPath) {
    return LayoutPath(bundle, "Contents/Linux64", outPath);
}

int GetPathToBundleDLLFolder(WCStPath const &bundle, WCStPath &outPath) {
    WCFixedString<31> folder("Contents/Win");
    folder << static_cast<int>(sizeof(void *) * 8);
    return LayoutPath(bundle, folder.c_str(), outPath);
}

int GetPathToBundleMainExecutable(WCStPath const &bundle, WCStPath &outPath) {
    if (!IsExistingBundle(bundle))
        return eBundleExecutableNotFound;
    WCStPath executable;
    int const error = GetPathToBundleLinux64Folder(bundle, executable);
    if (error != eNoErr)
        return error;
    WCFixedString<255> leaf(bundle.GetBase());
    leaf << ".so";
    executable.Append(leaf.c_str());
    if (!executable.IsFile(false))
        return eBundleExecutableNotFound;
    outPath = executable;
    return eNoErr;
}

int GetPathToBundleGivenMainExecutable(WCStPath const &executable, WCStPath &outPath) {
    if (!executable.IsValid())
        return executable.GetError();
    WCStPath bundle(executable, "../../..");
    if (!IsBundlePath(bundle))
        return eBundleExecutableNotFound;
    outPath = bundle;
    return eNoErr;
}

} // namespace FM
MIREL_NAMESPACE_END
