#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// The signed 32-bit result of every public function: 0 for success, negative for failure.
using WTErr = std::int32_t;

// The error table. Codes descend inside each group; a value missing from the list has no name
// and WTErrName answers "Unnamed error" for it.
// general
inline constexpr WTErr eNoErr = 0;
inline constexpr WTErr eGenericErr = -1;
inline constexpr WTErr eUserCanceled = -2;
inline constexpr WTErr eUnknownErr = -3;
inline constexpr WTErr eExceptionErr = -4;
inline constexpr WTErr eEndianError = -5;
inline constexpr WTErr eThreadSafeError = -6;
inline constexpr WTErr eSomeThingNotInitailzed = -7;
inline constexpr WTErr eWrongObjectState = -8;
inline constexpr WTErr eUninitalized = -9;
inline constexpr WTErr eDeprecated = -10;
inline constexpr WTErr eCommandLineParameter = -11;
inline constexpr WTErr eNotANumber = -12;
inline constexpr WTErr eNotJustANumber = -13;
inline constexpr WTErr eNegativeNumber = -14;
inline constexpr WTErr eTimeOut = -15;
inline constexpr WTErr eCoreAudioFailed = -16;
inline constexpr WTErr eSomeThingInitailzedTwice = -17;
inline constexpr WTErr eGenerateHelpInfo = -18;
inline constexpr WTErr eOutOfRangeNumber = -19;
inline constexpr WTErr eMacOnlyCode = -20;
inline constexpr WTErr eWinOnlyCode = -21;
inline constexpr WTErr eAppLaunchFailed = -22;
inline constexpr WTErr eAppTerminateFailed = -23;
inline constexpr WTErr eAppReturnedError = -24;
inline constexpr WTErr eNotImplemented = -25;
inline constexpr WTErr eNotEmpty = -26;
inline constexpr WTErr eSessionTemplatesNotFound = -27;
inline constexpr WTErr eFailedToLockAlg = -28;
inline constexpr WTErr eValueNotFound = -29;
inline constexpr WTErr eValueWrongSize = -30;
inline constexpr WTErr eOperatingSystemNotSupported = -31;
// file manager
inline constexpr WTErr eFMNoSuchVolume = -1001;
inline constexpr WTErr eFMFileNotFound = -1002;
inline constexpr WTErr eFMFileAllreadyExists = -1003;
inline constexpr WTErr eFMAllreadyOpenWithWritePerm = -1004;
inline constexpr WTErr eFMEndOfFile = -1005;
inline constexpr WTErr eFMPermissionErr = -1006;
inline constexpr WTErr eFMBusyErr = -1007;
inline constexpr WTErr eFMOpenFailed = -1008;
inline constexpr WTErr eFMTranslateFileNameFailed = -1009;
inline constexpr WTErr eFMWTPathRefCreationFailed = -1010;
inline constexpr WTErr eFMReadFailed = -1011;
inline constexpr WTErr eFMIllegalPathRef = -1012;
inline constexpr WTErr eFMFileNotOpened = -1013;
inline constexpr WTErr eFMFileSizeTooBig = -1014;
inline constexpr WTErr eFMNoSuchDomain = -1015;
inline constexpr WTErr eFMNoSuchSystemFolder = -1016;
inline constexpr WTErr eFMWrongParameters = -1017;
inline constexpr WTErr eFMIsNotAFolder = -1018;
inline constexpr WTErr eFMIsAFolder = -1019;
inline constexpr WTErr eFMIsNotAFile = -1020;
inline constexpr WTErr eFMIsAFile = -1021;
inline constexpr WTErr eFMDeleteFailed = -1022;
inline constexpr WTErr eFMCreateFailed = -1023;
inline constexpr WTErr eFMPathTooLong = -1024;
inline constexpr WTErr eFMIOError = -1025;
inline constexpr WTErr eFMIllegalOpenFileRef = -1026;
inline constexpr WTErr eFMDiskFull = -1027;
inline constexpr WTErr eFMFileNotEmpty = -1028;
inline constexpr WTErr eFMEndOfFolder = -1029;
inline constexpr WTErr eFMSamePath = -1030;
inline constexpr WTErr eFMPathTooShort = -1031;
inline constexpr WTErr eFMIncompletePath = -1032;
inline constexpr WTErr eFMIsNoAFileSystemLink = -1033;
inline constexpr WTErr eFMSymlinkBroken = -1034;
inline constexpr WTErr eFMMoveFailed = -1035;
inline constexpr WTErr eFMWriteFailed = -1036;
inline constexpr WTErr eFMTooManyOpenFiles = -1037;
inline constexpr WTErr eFMTooManySymlinks = -1038;
inline constexpr WTErr eFMFileIsEmpty = -1039;
// system
inline constexpr WTErr eGenericSystemError = -2000;
inline constexpr WTErr eSysNoEnvironmentVariable = -2001;
inline constexpr WTErr eDLLLoadingFailed = -2002;
inline constexpr WTErr eFuncPointerNotFound = -2003;
inline constexpr WTErr eDLLNotFound = -2004;
// system
inline constexpr WTErr eBundleExecutableNotFound = -2007;
// resources
inline constexpr WTErr eRMResNotFound = -3000;
inline constexpr WTErr eRMResExists = -3001;
inline constexpr WTErr eRMContainerNotFound = -3002;
inline constexpr WTErr eRMResRefNotFound = -3003;
inline constexpr WTErr eRMInvalidResRef = -3004;
inline constexpr WTErr eRMInvalidResContainer = -3005;
inline constexpr WTErr eRMInvalidNativeResContainer = -3006;
inline constexpr WTErr eRMAttachResContainerFailed = -3007;
inline constexpr WTErr eRMInvalidResID = -3008;
inline constexpr WTErr eRMResUpdateFailed = -3009;
// graphics
inline constexpr WTErr eGMIsNotInitailzed = -3500;
inline constexpr WTErr eGMInvalidImage = -3501;
inline constexpr WTErr eGMGenericErr = -3502;
inline constexpr WTErr eGMNoCurrentContext = -3503;
inline constexpr WTErr eGUISkinNotFound = -3504;
inline constexpr WTErr eGMNoVertices = -3505;
inline constexpr WTErr eGMNoColors = -3506;
// graphics
inline constexpr WTErr eGMIncompatibleOGLVersion = -3508;
inline constexpr WTErr eGMNoDeviceContext = -3509;
inline constexpr WTErr eGMNoPixelFormat = -3510;
inline constexpr WTErr eGMNoOGLContext = -3511;
inline constexpr WTErr eGMNoOGLContextSharing = -3512;
inline constexpr WTErr eGMUnsupportedImageFormat = -3513;
inline constexpr WTErr eGMUninitializedContext = -3514;
inline constexpr WTErr eControlOutOfRange = -3515;
inline constexpr WTErr eGMUninitializedFont = -3516;
inline constexpr WTErr eGMInvalidFontDrawMethod = -3517;
inline constexpr WTErr eGMUnreleasedTextures = -3518;
inline constexpr WTErr eGMWrongThread = -3519;
// memory
inline constexpr WTErr eMemNewFailed = -4001;
inline constexpr WTErr eMemNewTPtrFailed = -4002;
inline constexpr WTErr eMemNullPointer = -4003;
inline constexpr WTErr eMemObjNotInitialized = -4004;
inline constexpr WTErr eMemBuffTooShort = -4005;
inline constexpr WTErr eInstanciationFailed = -4006;
inline constexpr WTErr eMemAddressSpaceError = -4007;
inline constexpr WTErr eMemBadPointer = -4008;
inline constexpr WTErr eMemOutOfMemory = -4009;
// XML
inline constexpr WTErr eXMLParserFailed = -6001;
inline constexpr WTErr eXMLTreeNotValid = -6002;
inline constexpr WTErr eXMLTreeEmpty = -6003;
inline constexpr WTErr eXMLElementMissing = -6004;
inline constexpr WTErr eXMLElementUninitalized = -6005;
inline constexpr WTErr eXMLElementIncomplete = -6006;
inline constexpr WTErr eXMLAttribMissing = -6007;
// presets
inline constexpr WTErr ePresetFileProblem = -7860;
inline constexpr WTErr eInvalidFileFormatProblem = -7861;
inline constexpr WTErr ePresetLockedProblem = -7862;
inline constexpr WTErr ePresetInfoNotFound = -7863;
// plug-in data
inline constexpr WTErr eDuplicatePluginSpecificTag = -7959;
inline constexpr WTErr ePluginSpecifcNotExisting = -7960;
inline constexpr WTErr eBuffSizeToSmall = -7961;
inline constexpr WTErr eCreatingPopupWhereAnItemExists = -7962;
inline constexpr WTErr eDeletePluginSpecifcFailed = -7963;
inline constexpr WTErr eFactoryPresetNumOutOfRange = -7964;
inline constexpr WTErr eNoFactoryPresets = -7965;
inline constexpr WTErr eLoadPresetToPlugin_vec_empty = -7966;
inline constexpr WTErr eFactoryPresetNotFound = -7967;
inline constexpr WTErr eCantCreateUserPrefFile = -7968;
inline constexpr WTErr eDataFormatNotSupported = -7969;
inline constexpr WTErr eCantLoadProcessFunction = -7970;
inline constexpr WTErr eIllegalChunkIndex = -7971;
inline constexpr WTErr eIllegalChunkID = -7972;
inline constexpr WTErr eIllegalChunkVersion = -7973;
// plug-in loading
inline constexpr WTErr eNotAPluginFile = -8001;
inline constexpr WTErr eFaildToLoadPluginDLL = -8002;
inline constexpr WTErr eNoPluginManager = -8003;
inline constexpr WTErr eGetAvailablePluginsFailed = -8004;
inline constexpr WTErr eNoPluginsAvailable = -8005;
inline constexpr WTErr ePluginSubComponentNotFound = -8006;
inline constexpr WTErr ePluginOpenFailed = -8007;
// plug-in loading
inline constexpr WTErr eSubComponentRejected = -8009;
inline constexpr WTErr eIncompatibleNumOfIOs = -8010;
inline constexpr WTErr eStemProblem = -8011;
inline constexpr WTErr eComponentTypeNotSupported = -8012;
inline constexpr WTErr ePluginNotLoaded = -8013;
inline constexpr WTErr ePluginInstanceNotCreate = -8014;
inline constexpr WTErr ePluginAlgNotCreate = -8015;
inline constexpr WTErr ePluginGUINotCreate = -8016;
// network shell
inline constexpr WTErr eNetShellInitFailed = -9001;
// communication
inline constexpr WTErr eCommEndOfRecievedMessage = -11001;
inline constexpr WTErr eCommSocketDisconnected = -11002;
// window messages
inline constexpr WTErr eWMEventNotHandled = -12001;
// job server
inline constexpr WTErr eNotJobServerThread = -23001;
inline constexpr WTErr eNotJobServerTrack = -23002;
inline constexpr WTErr eNotMixerSerialJob = -23003;
inline constexpr WTErr eActiveJobIsNull = -23004;
inline constexpr WTErr eInvalidJobContext = -23005;
inline constexpr WTErr ePauseContextFailed = -23006;
// key/value
inline constexpr WTErr eKeyNotFound = -25001;
inline constexpr WTErr eWrongValueType = -25002;

// Codes that are used but deliberately have no name in the table.
inline constexpr WTErr kErrBadExecutable = -2012;
inline constexpr WTErr kErrInvalidHandle = -2013;
inline constexpr WTErr kErrSharingViolation = -2014;

// [any-thread] The name of a code as a constant string, or "Unnamed error".
const char *WTErrName(WTErr code) noexcept;

// [any-thread] Maps a Windows system error number to the table; kept for data that carries such
// numbers.
WTErr ConvertErrorWIN(unsigned long systemError) noexcept;

// [any-thread] Maps a POSIX errno value to the code that ConvertErrorWIN gives for its Windows
// equivalent.
WTErr ConvertErrno(int errnoValue) noexcept;

MIREL_NAMESPACE_END
