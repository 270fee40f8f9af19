#include "files/WULocationIndicators.h"

#include <cstring>
#include <new>

#include <yaml-cpp/yaml.h>

#include "files/WUOpenFile.h"
#include "files/linux/WUPlatformFolders.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

namespace {

struct WSIndicator {
    char const *m_word;
    char const *m_valueName;
};

// The two studio words share one value on purpose: both products install into the same folder.
constexpr WSIndicator kIndicators[] = {
    {"MainInstallationFolder", "LocationMirel"},
    {"KLSFolder", "LocationKLS"},
    {"MainPluginFolder", "Location"},
    {"V9PluginFolder", "LocationV9"},
    {"KPAPIShellsFolder", "LocationKPAPI"},
    {"HyperBayModulesFolder", "LocationHyperBayModules"},
    {"HyperBayTMModulesFolder", "LocationHyperBayTMModules"},
    {"TMStudioModulesFolder", "LocationTMStudioModules"},
    {"TMForVenueModulesFolder", "LocationTMforVenueModules"},
    {"StageDeskModulesFolder", "LocationStageDeskModules"},
    {"TMStudio2ModulesFolder", "LocationTMStudioModules"},
    {"V10PluginFolder", "LocationV10"},
    {"V11PluginFolder", "LocationV11"},
    {"V12PluginFolder", "LocationV12"},
    {"V13PluginFolder", "LocationV13"},
    {"MixletModulesFolder", "LocationMixletModules"},
    {"StudioLocalModulesFolder", "LocationStudioLocalModules"},
    {"StageDeskNativeModulesFolder", "LocationStageDeskNativeModules"},
};

// A locations file is a handful of lines; anything larger is not one.
constexpr std::uint64_t kMaxLocationsFileSize = 64 * 1024;

} // namespace

char const *GetIndicatorValueName(char const *indicator) {
    if (indicator == nullptr)
        return nullptr;
    for (auto const &entry : kIndicators) {
        if (std::strcmp(entry.m_word, indicator) == 0)
            return entry.m_valueName;
    }
    return nullptr;
}

bool IsValidIndicator(char const *indicator) {
    return GetIndicatorValueName(indicator) != nullptr;
}

int ReadLocationValue(std::string const &yamlText, char const *valueName, std::string &outValue) {
    outValue.clear();
    if (valueName == nullptr)
        return eFMWrongParameters;
    try {
        YAML::Node const root = YAML::Load(yamlText);
        if (root.IsNull())
            return eFMFileNotFound;
        if (!root.IsMap())
            return eFMReadFailed;
        YAML::Node const value = root[valueName];
        if (!value)
            return eFMFileNotFound;
        // "Location:" with nothing after it is an empty value, as short as a value can be.
        if (value.IsNull())
            return eMemNullPointer;
        if (!value.IsScalar())
            return eFMReadFailed;
        std::string const &text = value.Scalar();
        if (text.size() <= 3)
            return eMemNullPointer;
        outValue = text;
        return eNoErr;
    } catch (YAML::Exception const &) {
        return eFMReadFailed;
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    }
}

int GetPathFromIndicator(char const *indicator, WCStPath &outPath) {
    char const *valueName = GetIndicatorValueName(indicator);
    if (valueName == nullptr)
        return eFMWrongParameters;
    try {
        int firstError = eNoErr;
        for (auto const &file : Platform::LocationFilePaths()) {
            WCStPath const path(file);
            if (!path.IsFile())
                continue;
            std::uint64_t size = 0;
            int error = path.GetFileSize(size);
            std::string text;
            if (error == eNoErr && size > kMaxLocationsFileSize)
                error = eFMFileSizeTooBig;
            if (error == eNoErr)
                error = ReadTheWholeFile(path, text);
            std::string value;
            if (error == eNoErr)
                error = ReadLocationValue(text, valueName, value);
            if (error == eNoErr) {
                outPath = WCStPath(value);
                return outPath.GetError();
            }
            if (firstError == eNoErr && error != eFMFileNotFound)
                firstError = error;
        }
        return firstError != eNoErr ? firstError : eFMFileNotFound;
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    }
}

} // namespace FM
MIREL_NAMESPACE_END
