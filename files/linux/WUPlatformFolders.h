#pragma once

#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "files/WTFileManagerTypes.h"

MIREL_NAMESPACE_BEGIN
namespace FM {
namespace Platform {

// The system folder table on Linux, after the XDG base directory conventions; the table is in
// WUPlatformFolders.cpp. Answers the full path of `folder` in `domain` (with the table's
// sub-folder), or eFMNoSuchDomain / eFMNoSuchSystemFolder. Nothing is created. [any-thread]
WTErr GetSystemFolderPath(int domain, int folder, std::string &outPath);

// The files that stand for the registry views of the location indicators, in the order they are
// tried: "Mirel Audio/Locations.yaml" under each of the first three entries of $XDG_DATA_DIRS
// (the first entry is the local domain). [any-thread]
std::vector<std::string> LocationFilePaths();

} // namespace Platform
} // namespace FM
MIREL_NAMESPACE_END
