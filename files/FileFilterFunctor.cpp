#include "files/FileFilterFunctor.h"

#include "files/WUBundles.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

bool EveryThing::operator()(WCStPath const &path) const {
    return true;
}

bool OnlyFiles::operator()(WCStPath const &path) const {
    return path.IsFile();
}

bool OnlyFolders::operator()(WCStPath const &path) const {
    return path.IsFolder();
}

bool FoldersOrZips::operator()(WCStPath const &path) const {
    return path.IsFolder() || IsSameExtension(path.GetExtension().c_str(), "zip");
}

bool EverythingButMacHidden::operator()(WCStPath const &path) const {
    WCFixedString<255> const leaf = path.GetLeaf();
    if (leaf.empty() || leaf[0] == '.')
        return false;
    return leaf.compare("Icon\r") != 0 && leaf.compare("__MACOSX") != 0;
}

bool OnlyBundles::operator()(WCStPath const &path) const {
    return IsBundlePath(path);
}

bool OnlyBundlesThatAreRealyBundles::operator()(WCStPath const &path) const {
    return IsExistingBundle(path);
}

bool OnlyFoldersAndXPS::operator()(WCStPath const &path) const {
    return path.IsFolder() || IsSameExtension(path.GetExtension().c_str(), "xps");
}

bool OnlyZips::operator()(WCStPath const &path) const {
    return IsSameExtension(path.GetExtension().c_str(), "zip");
}

} // namespace FM
MIREL_NAMESPACE_END
