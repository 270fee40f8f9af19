#include "core/WTErrors.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <set>
#include <string>

namespace {

struct WSNamedCode {
    int code;
    const char *name;
};

// Written out from the published table rather than generated from the code under test.
constexpr WSNamedCode kTable[] = {
    {0, "eNoErr"},
    {-1, "eGenericErr"},
    {-2, "eUserCanceled"},
    {-3, "eUnknownErr"},
    {-4, "eExceptionErr"},
    {-5, "eEndianError"},
    {-6, "eThreadSafeError"},
    {-7, "eSomeThingNotInitailzed"},
    {-8, "eWrongObjectState"},
    {-9, "eUninitalized"},
    {-10, "eDeprecated"},
    {-11, "eCommandLineParameter"},
    {-12, "eNotANumber"},
    {-13, "eNotJustANumber"},
    {-14, "eNegativeNumber"},
    {-15, "eTimeOut"},
    {-16, "eCoreAudioFailed"},
    {-17, "eSomeThingInitailzedTwice"},
    {-18, "eGenerateHelpInfo"},
    {-19, "eOutOfRangeNumber"},
    {-20, "eMacOnlyCode"},
    {-21, "eWinOnlyCode"},
    {-22, "eAppLaunchFailed"},
    {-23, "eAppTerminateFailed"},
    {-24, "eAppReturnedError"},
    {-25, "eNotImplemented"},
    {-26, "eNotEmpty"},
    {-27, "eSessionTemplatesNotFound"},
    {-28, "eFailedToLockAlg"},
    {-29, "eValueNotFound"},
    {-30, "eValueWrongSize"},
    {-31, "eOperatingSystemNotSupported"},
    {-1001, "eFMNoSuchVolume"},
    {-1002, "eFMFileNotFound"},
    {-1003, "eFMFileAllreadyExists"},
    {-1004, "eFMAllreadyOpenWithWritePerm"},
    {-1005, "eFMEndOfFile"},
    {-1006, "eFMPermissionErr"},
    {-1007, "eFMBusyErr"},
    {-1008, "eFMOpenFailed"},
    {-1009, "eFMTranslateFileNameFailed"},
    {-1010, "eFMWTPathRefCreationFailed"},
    {-1011, "eFMReadFailed"},
    {-1012, "eFMIllegalPathRef"},
    {-1013, "eFMFileNotOpened"},
    {-1014, "eFMFileSizeTooBig"},
    {-1015, "eFMNoSuchDomain"},
    {-1016, "eFMNoSuchSystemFolder"},
    {-1017, "eFMWrongParameters"},
    {-1018, "eFMIsNotAFolder"},
    {-1019, "eFMIsAFolder"},
    {-1020, "eFMIsNotAFile"},
    {-1021, "eFMIsAFile"},
    {-1022, "eFMDeleteFailed"},
    {-1023, "eFMCreateFailed"},
    {-1024, "eFMPathTooLong"},
    {-1025, "eFMIOError"},
    {-1026, "eFMIllegalOpenFileRef"},
    {-1027, "eFMDiskFull"},
    {-1028, "eFMFileNotEmpty"},
    {-1029, "eFMEndOfFolder"},
    {-1030, "eFMSamePath"},
    {-1031, "eFMPathTooShort"},
    {-1032, "eFMIncompletePath"},
    {-1033, "eFMIsNoAFileSystemLink"},
    {-1034, "eFMSymlinkBroken"},
    {-1035, "eFMMoveFailed"},
    {-1036, "eFMWriteFailed"},
    {-1037, "eFMTooManyOpenFiles"},
    {-1038, "eFMTooManySymlinks"},
    {-1039, "eFMFileIsEmpty"},
    {-2000, "eGenericSystemError"},
    {-2001, "eSysNoEnvironmentVariable"},
    {-2002, "eDLLLoadingFailed"},
    {-2003, "eFuncPointerNotFound"},
    {-2004, "eDLLNotFound"},
    {-2007, "eBundleExecutableNotFound"},
    {-3000, "eRMResNotFound"},
    {-3001, "eRMResExists"},
    {-3002, "eRMContainerNotFound"},
    {-3003, "eRMResRefNotFound"},
    {-3004, "eRMInvalidResRef"},
    {-3005, "eRMInvalidResContainer"},
    {-3006, "eRMInvalidNativeResContainer"},
    {-3007, "eRMAttachResContainerFailed"},
    {-3008, "eRMInvalidResID"},
    {-3009, "eRMResUpdateFailed"},
    {-3500, "eGMIsNotInitailzed"},
    {-3501, "eGMInvalidImage"},
    {-3502, "eGMGenericErr"},
    {-3503, "eGMNoCurrentContext"},
    {-3504, "eGUISkinNotFound"},
    {-3505, "eGMNoVertices"},
    {-3506, "eGMNoColors"},
    {-3508, "eGMIncompatibleOGLVersion"},
    {-3509, "eGMNoDeviceContext"},
    {-3510, "eGMNoPixelFormat"},
    {-3511, "eGMNoOGLContext"},
    {-3512, "eGMNoOGLContextSharing"},
    {-3513, "eGMUnsupportedImageFormat"},
    {-3514, "eGMUninitializedContext"},
    {-3515, "eControlOutOfRange"},
    {-3516, "eGMUninitializedFont"},
    {-3517, "eGMInvalidFontDrawMethod"},
    {-3518, "eGMUnreleasedTextures"},
    {-3519, "eGMWrongThread"},
    {-4001, "eMemNewFailed"},
    {-4002, "eMemNewTPtrFailed"},
    {-4003, "eMemNullPointer"},
    {-4004, "eMemObjNotInitialized"},
    {-4005, "eMemBuffTooShort"},
    {-4006, "eInstanciationFailed"},
    {-4007, "eMemAddressSpaceError"},
    {-4008, "eMemBadPointer"},
    {-4009, "eMemOutOfMemory"},
    {-6001, "eXMLParserFailed"},
    {-6002, "eXMLTreeNotValid"},
    {-6003, "eXMLTreeEmpty"},
    {-6004, "eXMLElementMissing"},
    {-6005, "eXMLElementUninitalized"},
    {-6006, "eXMLElementIncomplete"},
    {-6007, "eXMLAttribMissing"},
    {-7860, "ePresetFileProblem"},
    {-7861, "eInvalidFileFormatProblem"},
    {-7862, "ePresetLockedProblem"},
    {-7863, "ePresetInfoNotFound"},
    {-7959, "eDuplicatePluginSpecificTag"},
    {-7960, "ePluginSpecifcNotExisting"},
    {-7961, "eBuffSizeToSmall"},
    {-7962, "eCreatingPopupWhereAnItemExists"},
    {-7963, "eDeletePluginSpecifcFailed"},
    {-7964, "eFactoryPresetNumOutOfRange"},
    {-7965, "eNoFactoryPresets"},
    {-7966, "eLoadPresetToPlugin_vec_empty"},
    {-7967, "eFactoryPresetNotFound"},
    {-7968, "eCantCreateUserPrefFile"},
    {-7969, "eDataFormatNotSupported"},
    {-7970, "eCantLoadProcessFunction"},
    {-7971, "eIllegalChunkIndex"},
    {-7972, "eIllegalChunkID"},
    {-7973, "eIllegalChunkVersion"},
    {-8001, "eNotAPluginFile"},
    {-8002, "eFaildToLoadPluginDLL"},
    {-8003, "eNoPluginManager"},
    {-8004, "eGetAvailablePluginsFailed"},
    {-8005, "eNoPluginsAvailable"},
    {-8006, "ePluginSubComponentNotFound"},
    {-8007, "ePluginOpenFailed"},
    {-8009, "eSubComponentRejected"},
    {-8010, "eIncompatibleNumOfIOs"},
    {-8011, "eStemProblem"},
    {-8012, "eComponentTypeNotSupported"},
    {-8013, "ePluginNotLoaded"},
    {-8014, "ePluginInstanceNotCreate"},
    {-8015, "ePluginAlgNotCreate"},
    {-8016, "ePluginGUINotCreate"},
    {-9001, "eNetShellInitFailed"},
    {-11001, "eCommEndOfRecievedMessage"},
    {-11002, "eCommSocketDisconnected"},
    {-12001, "eWMEventNotHandled"},
    {-23001, "eNotJobServerThread"},
    {-23002, "eNotJobServerTrack"},
    {-23003, "eNotMixerSerialJob"},
    {-23004, "eActiveJobIsNull"},
    {-23005, "eInvalidJobContext"},
    {-23006, "ePauseContextFailed"},
    {-25001, "eKeyNotFound"},
    {-25002, "eWrongValueType"},
};

TEST(WTErrName, EveryNameSitsAtItsCode) {
    for (auto const &entry : kTable)
        EXPECT_STREQ(WTErrName(entry.code), entry.name) << "code " << entry.code;
}

TEST(WTErrName, CodesOutsideTheTableAreUnnamed) {
    std::set<int> named;
    for (auto const &entry : kTable)
        named.insert(entry.code);
    for (int code = 100; code >= -26000; --code) {
        if (named.count(code) == 0) {
            ASSERT_STREQ(WTErrName(code), "Unnamed error") << "code " << code;
        }
    }
}

TEST(ConvertErrorWIN, MapsTheListedSystemErrors) {
    EXPECT_EQ(ConvertErrorWIN(0), 0);
    EXPECT_EQ(ConvertErrorWIN(2), -1002);
    EXPECT_EQ(ConvertErrorWIN(3), -1002);
    EXPECT_EQ(ConvertErrorWIN(126), -1002);
    EXPECT_EQ(ConvertErrorWIN(6), -2013);
    EXPECT_EQ(ConvertErrorWIN(8), -4009);
    EXPECT_EQ(ConvertErrorWIN(14), -4001);
    EXPECT_EQ(ConvertErrorWIN(32), -2014);
    EXPECT_EQ(ConvertErrorWIN(183), -1003);
    EXPECT_EQ(ConvertErrorWIN(193), -2012);
    EXPECT_EQ(ConvertErrorWIN(5), -1);
}

TEST(ConvertErrno, FollowsTheWindowsEquivalents) {
    EXPECT_EQ(ConvertErrno(0), 0);
    EXPECT_EQ(ConvertErrno(ENOENT), eFMFileNotFound);
    EXPECT_EQ(ConvertErrno(ENOTDIR), eFMFileNotFound);
    EXPECT_EQ(ConvertErrno(EBADF), -2013);
    EXPECT_EQ(ConvertErrno(ENOMEM), eMemOutOfMemory);
    EXPECT_EQ(ConvertErrno(EEXIST), eFMFileAllreadyExists);
    EXPECT_EQ(ConvertErrno(EBUSY), -2014);
    EXPECT_EQ(ConvertErrno(ETXTBSY), -2014);
    EXPECT_EQ(ConvertErrno(ENOEXEC), -2012);
    EXPECT_EQ(ConvertErrno(EINVAL), eGenericErr);
}

} // namespace
