#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

// An open file as the system knows it: a descriptor, or kNoOpenFile when nothing is open.
using WTOpenFileType = std::intptr_t;
inline constexpr WTOpenFileType kNoOpenFile = -1;

// The opaque handle of a path; defined in files/WTPathType.h for the code that needs its inside.
struct WTPathType;

// Who a system folder belongs to: the machine, all users, the roaming user, the local user.
enum WEFoldersDomain : int {
    eSystemDomain = 0,
    eLocalDomain = 1,
    eUserDomain = 2,
    eUserLocalDomain = 3
};

enum WESystemFolders : int {
    eSystemFolder = 0,
    eDesktopFolder = 1,
    ePreferencesFolder = 2,
    eMirelPreferencesFolder = 3,
    eTemporaryFolder = 4,
    eTrashFolder = 5,
    eCurrentFolder = 6,
    eRootFolder = 7,
    eLibrariesFolder = 8,
    eAudioComponentsFolder = 9,
    eCacheFolder = 10,
    eMirelCacheFolder = 11,
    eAppDataFolder = 12,
    eMirelAppDataFolder = 13,
    eSharedUserDataFolder = 14,
    eMirelSharedUserDataFolder = 15,
    eMirelScanViewFolder = 16,
    eMirelPreferencesFolder2 = 17,
    eMirelPivotConfigFolder = 18,
    eMirelPluginServerConfigFolder = 19,
    eMirelUserLogsFolder = 20,
    eMirelBoostSharedMemoryDir = 21,
    eAutoLaunchOnStartUpFolder = 22,
    eVST3PluginsFolder = 23,
    eVST3PresetsFolder = 24
};

// How CreateAFile and WCStFileCreate treat a file that is already there.
enum WECreateFlags : int {
    eFMCreateAlways = 0, // replace it
    eFMCreateAppend = 1, // keep it and put the cursor at its end
    eFMCreateNew = 2     // refuse with eFMFileAllreadyExists
};

// Access asked of an open file; a bit mask.
enum WEPermitions : int {
    eFMReadPermission = 1,
    eFMWritePermission = 2,
    eFMReadWritePermission = 3
};

// The origin of a cursor move.
enum WEPositionMode : int { eFMFromStart = 0, eFMFromCurrent = 1, eFMFromEnd = 2 };

// What DuplicateFile does with an existing target.
enum WEDuplicateFlags : int { eFMDuplicateFailIfExists = 0, eFMDuplicateReplace = 1 };

// The names of the two tables: "eUserDomain", "eMirelCacheFolder"...; unknown values give
// "Unknown Folder Domain" and "Unknown System Folder". [any-thread]
char const *WEFoldersDomainName(int domain) noexcept;
char const *WESystemFoldersName(int folder) noexcept;

} // namespace FM
MIREL_NAMESPACE_END
