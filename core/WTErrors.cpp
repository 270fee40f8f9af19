#include "core/WTErrors.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

MIREL_NAMESPACE_BEGIN

namespace {

struct WSErrName {
    WTErr code;
    const char *name;
};

// Sorted by descending code, so a lookup is a binary search.
constexpr WSErrName kErrNames[] = {
    {eNoErr, "eNoErr"},
    {eGenericErr, "eGenericErr"},
    {eUserCanceled, "eUserCanceled"},
    {eUnknownErr, "eUnknownErr"},
    {eExceptionErr, "eExceptionErr"},
    {eEndianError, "eEndianError"},
    {eThreadSafeError, "eThreadSafeError"},
    {eSomeThingNotInitailzed, "eSomeThingNotInitailzed"},
    {eWrongObjectState, "eWrongObjectState"},
    {eUninitalized, "eUninitalized"},
    {eDeprecated, "eDeprecated"},
    {eCommandLineParameter, "eCommandLineParameter"},
    {eNotANumber, "eNotANumber"},
    {eNotJustANumber, "eNotJustANumber"},
    {eNegativeNumber, "eNegativeNumber"},
    {eTimeOut, "eTimeOut"},
    {eCoreAudioFailed, "eCoreAudioFailed"},
    {eSomeThingInitailzedTwice, "eSomeThingInitailzedTwice"},
    {eGenerateHelpInfo, "eGenerateHelpInfo"},
    {eOutOfRangeNumber, "eOutOfRangeNumber"},
    {eMacOnlyCode, "eMacOnlyCode"},
    {eWinOnlyCode, "eWinOnlyCode"},
    {eAppLaunchFailed, "eAppLaunchFailed"},
    {eAppTerminateFailed, "eAppTerminateFailed"},
    {eAppReturnedError, "eAppReturnedError"},
    {eNotImplemented, "eNotImplemented"},
    {eNotEmpty, "eNotEmpty"},
    {eSessionTemplatesNotFound, "eSessionTemplatesNotFound"},
    {eFailedToLockAlg, "eFailedToLockAlg"},
    {eValueNotFound, "eValueNotFound"},
    {eValueWrongSize, "eValueWrongSize"},
    {eOperatingSystemNotSupported, "eOperatingSystemNotSupported"},
    {eFMNoSuchVolume, "eFMNoSuchVolume"},
    {eFMFileNotFound, "eFMFileNotFound"},
    {eFMFileAllreadyExists, "eFMFileAllreadyExists"},
    {eFMAllreadyOpenWithWritePerm, "eFMAllreadyOpenWithWritePerm"},
    {eFMEndOfFile, "eFMEndOfFile"},
    {eFMPermissionErr, "eFMPermissionErr"},
    {eFMBusyErr, "eFMBusyErr"},
    {eFMOpenFailed, "eFMOpenFailed"},
    {eFMTranslateFileNameFailed, "eFMTranslateFileNameFailed"},
    {eFMWTPathRefCreationFailed, "eFMWTPathRefCreationFailed"},
    {eFMReadFailed, "eFMReadFailed"},
    {eFMIllegalPathRef, "eFMIllegalPathRef"},
    {eFMFileNotOpened, "eFMFileNotOpened"},
    {eFMFileSizeTooBig, "eFMFileSizeTooBig"},
    {eFMNoSuchDomain, "eFMNoSuchDomain"},
    {eFMNoSuchSystemFolder, "eFMNoSuchSystemFolder"},
    {eFMWrongParameters, "eFMWrongParameters"},
    {eFMIsNotAFolder, "eFMIsNotAFolder"},
    {eFMIsAFolder, "eFMIsAFolder"},
    {eFMIsNotAFile, "eFMIsNotAFile"},
    {eFMIsAFile, "eFMIsAFile"},
    {eFMDeleteFailed, "eFMDeleteFailed"},
    {eFMCreateFailed, "eFMCreateFailed"},
    {eFMPathTooLong, "eFMPathTooLong"},
    {eFMIOError, "eFMIOError"},
    {eFMIllegalOpenFileRef, "eFMIllegalOpenFileRef"},
    {eFMDiskFull, "eFMDiskFull"},
    {eFMFileNotEmpty, "eFMFileNotEmpty"},
    {eFMEndOfFolder, "eFMEndOfFolder"},
    {eFMSamePath, "eFMSamePath"},
    {eFMPathTooShort, "eFMPathTooShort"},
    {eFMIncompletePath, "eFMIncompletePath"},
    {eFMIsNoAFileSystemLink, "eFMIsNoAFileSystemLink"},
    {eFMSymlinkBroken, "eFMSymlinkBroken"},
    {eFMMoveFailed, "eFMMoveFailed"},
    {eFMWriteFailed, "eFMWriteFailed"},
    {eFMTooManyOpenFiles, "eFMTooManyOpenFiles"},
    {eFMTooManySymlinks, "eFMTooManySymlinks"},
    {eFMFileIsEmpty, "eFMFileIsEmpty"},
    {eGenericSystemError, "eGenericSystemError"},
    {eSysNoEnvironmentVariable, "eSysNoEnvironmentVariable"},
    {eDLLLoadingFailed, "eDLLLoadingFailed"},
    {eFuncPointerNotFound, "eFuncPointerNotFound"},
    {eDLLNotFound, "eDLLNotFound"},
    {eBundleExecutableNotFound, "eBundleExecutableNotFound"},
    {eRMResNotFound, "eRMResNotFound"},
    {eRMResExists, "eRMResExists"},
    {eRMContainerNotFound, "eRMContainerNotFound"},
    {eRMResRefNotFound, "eRMResRefNotFound"},
    {eRMInvalidResRef, "eRMInvalidResRef"},
    {eRMInvalidResContainer, "eRMInvalidResContainer"},
    {eRMInvalidNativeResContainer, "eRMInvalidNativeResContainer"},
    {eRMAttachResContainerFailed, "eRMAttachResContainerFailed"},
    {eRMInvalidResID, "eRMInvalidResID"},
    {eRMResUpdateFailed, "eRMResUpdateFailed"},
    {eGMIsNotInitailzed, "eGMIsNotInitailzed"},
    {eGMInvalidImage, "eGMInvalidImage"},
    {eGMGenericErr, "eGMGenericErr"},
    {eGMNoCurrentContext, "eGMNoCurrentContext"},
    {eGUISkinNotFound, "eGUISkinNotFound"},
    {eGMNoVertices, "eGMNoVertices"},
    {eGMNoColors, "eGMNoColors"},
    {eGMIncompatibleOGLVersion, "eGMIncompatibleOGLVersion"},
    {eGMNoDeviceContext, "eGMNoDeviceContext"},
    {eGMNoPixelFormat, "eGMNoPixelFormat"},
    {eGMNoOGLContext, "eGMNoOGLContext"},
    {eGMNoOGLContextSharing, "eGMNoOGLContextSharing"},
    {eGMUnsupportedImageFormat, "eGMUnsupportedImageFormat"},
    {eGMUninitializedContext, "eGMUninitializedContext"},
    {eControlOutOfRange, "eControlOutOfRange"},
    {eGMUninitializedFont, "eGMUninitializedFont"},
    {eGMInvalidFontDrawMethod, "eGMInvalidFontDrawMethod"},
    {eGMUnreleasedTextures, "eGMUnreleasedTextures"},
    {eGMWrongThread, "eGMWrongThread"},
    {eMemNewFailed, "eMemNewFailed"},
    {eMemNewTPtrFailed, "eMemNewTPtrFailed"},
    {eMemNullPointer, "eMemNullPointer"},
    {eMemObjNotInitialized, "eMemObjNotInitialized"},
    {eMemBuffTooShort, "eMemBuffTooShort"},
    {eInstanciationFailed, "eInstanciationFailed"},
    {eMemAddressSpaceError, "eMemAddressSpaceError"},
    {eMemBadPointer, "eMemBadPointer"},
    {eMemOutOfMemory, "eMemOutOfMemory"},
    {eXMLParserFailed, "eXMLParserFailed"},
    {eXMLTreeNotValid, "eXMLTreeNotValid"},
    {eXMLTreeEmpty, "eXMLTreeEmpty"},
    {eXMLElementMissing, "eXMLElementMissing"},
    {eXMLElementUninitalized, "eXMLElementUninitalized"},
    {eXMLElementIncomplete, "eXMLElementIncomplete"},
    {eXMLAttribMissing, "eXMLAttribMissing"},
    {ePresetFileProblem, "ePresetFileProblem"},
    {eInvalidFileFormatProblem, "eInvalidFileFormatProblem"},
    {ePresetLockedProblem, "ePresetLockedProblem"},
    {ePresetInfoNotFound, "ePresetInfoNotFound"},
    {eDuplicatePluginSpecificTag, "eDuplicatePluginSpecificTag"},
    {ePluginSpecifcNotExisting, "ePluginSpecifcNotExisting"},
    {eBuffSizeToSmall, "eBuffSizeToSmall"},
    {eCreatingPopupWhereAnItemExists, "eCreatingPopupWhereAnItemExists"},
    {eDeletePluginSpecifcFailed, "eDeletePluginSpecifcFailed"},
    {eFactoryPresetNumOutOfRange, "eFactoryPresetNumOutOfRange"},
    {eNoFactoryPresets, "eNoFactoryPresets"},
    {eLoadPresetToPlugin_vec_empty, "eLoadPresetToPlugin_vec_empty"},
    {eFactoryPresetNotFound, "eFactoryPresetNotFound"},
    {eCantCreateUserPrefFile, "eCantCreateUserPrefFile"},
    {eDataFormatNotSupported, "eDataFormatNotSupported"},
    {eCantLoadProcessFunction, "eCantLoadProcessFunction"},
    {eIllegalChunkIndex, "eIllegalChunkIndex"},
    {eIllegalChunkID, "eIllegalChunkID"},
    {eIllegalChunkVersion, "eIllegalChunkVersion"},
    {eNotAPluginFile, "eNotAPluginFile"},
    {eFaildToLoadPluginDLL, "eFaildToLoadPluginDLL"},
    {eNoPluginManager, "eNoPluginManager"},
    {eGetAvailablePluginsFailed, "eGetAvailablePluginsFailed"},
    {eNoPluginsAvailable, "eNoPluginsAvailable"},
    {ePluginSubComponentNotFound, "ePluginSubComponentNotFound"},
    {ePluginOpenFailed, "ePluginOpenFailed"},
    {eSubComponentRejected, "eSubComponentRejected"},
    {eIncompatibleNumOfIOs, "eIncompatibleNumOfIOs"},
    {eStemProblem, "eStemProblem"},
    {eComponentTypeNotSupported, "eComponentTypeNotSupported"},
    {ePluginNotLoaded, "ePluginNotLoaded"},
    {ePluginInstanceNotCreate, "ePluginInstanceNotCreate"},
    {ePluginAlgNotCreate, "ePluginAlgNotCreate"},
    {ePluginGUINotCreate, "ePluginGUINotCreate"},
    {eNetShellInitFailed, "eNetShellInitFailed"},
    {eCommEndOfRecievedMessage, "eCommEndOfRecievedMessage"},
    {eCommSocketDisconnected, "eCommSocketDisconnected"},
    {eWMEventNotHandled, "eWMEventNotHandled"},
    {eNotJobServerThread, "eNotJobServerThread"},
    {eNotJobServerTrack, "eNotJobServerTrack"},
    {eNotMixerSerialJob, "eNotMixerSerialJob"},
    {eActiveJobIsNull, "eActiveJobIsNull"},
    {eInvalidJobContext, "eInvalidJobContext"},
    {ePauseContextFailed, "ePauseContextFailed"},
    {eKeyNotFound, "eKeyNotFound"},
    {eWrongValueType, "eWrongValueType"},
};

constexpr bool IsSortedDescending() {
    for (std::size_t i = 1; i < std::size(kErrNames); ++i)
        if (kErrNames[i - 1].code <= kErrNames[i].code)
            return false;
    return true;
}
static_assert(IsSortedDescending(), "the error table must descend strictly");

} // namespace

const char *WTErrName(WTErr code) noexcept {
    auto found = std::lower_bound(std::begin(kErrNames), std::end(kErrNames), code,
                                  [](WSErrName const &entry, WTErr c) { return entry.code > c; });
    if (found != std::end(kErrNames) && found->code == code)
        return found->name;
    return "Unnamed error";
}

WTErr ConvertErrorWIN(unsigned long systemError) noexcept {
    switch (systemError) {
    case 0: return eNoErr;
    case 2:   // file not found
    case 3:   // path not found
    case 126: // module not found
        return eFMFileNotFound;
    case 6: return kErrInvalidHandle;
    case 8: return eMemOutOfMemory;
    case 14: return eMemNewFailed;
    case 32: return kErrSharingViolation;
    case 183: return eFMFileAllreadyExists;
    case 193: return kErrBadExecutable;
    default: return eGenericErr;
    }
}

WTErr ConvertErrno(int errnoValue) noexcept {
    switch (errnoValue) {
    case 0: return ConvertErrorWIN(0);
    case ENOENT:
    case ENOTDIR: return ConvertErrorWIN(3);
    case EBADF: return ConvertErrorWIN(6);
    case ENOMEM: return ConvertErrorWIN(8);
    case EBUSY:
    case ETXTBSY: return ConvertErrorWIN(32);
    case EEXIST: return ConvertErrorWIN(183);
    case ENOEXEC: return ConvertErrorWIN(193);
    default: return ConvertErrorWIN(~0UL);
    }
}

MIREL_NAMESPACE_END
