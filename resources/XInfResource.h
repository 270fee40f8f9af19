#pragma once

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCVersion.h"
#include "core/WTErrors.h"
#include "resources/WCResKey.h"

MIREL_NAMESPACE_BEGIN

// The XInf resource of a bundle: the facts about the plug-in file that do not depend on a
// component. It is an XML resource of type "XInf", id "XInf.xml" (the file
// Contents/Resources/XInf/XInf.xml of the bundle), whose root element "XInf" holds one child per
// value, the value being the child's text:
//
//   <XInf>
//     <APIVersion>13.1.0.186</APIVersion>
//     <InternalVersion>1.2.0.7</InternalVersion>
//     <PluginExternalVersion>1.2.0.0</PluginExternalVersion>
//     <VendorName>Mirel</VendorName>
//     <MirelShellsBaseName>MirelShells</MirelShellsBaseName>
//     <ArtistDlls>GainFilterArt</ArtistDlls>
//     <DynamicPluginLibName>libGainFilter.so</DynamicPluginLibName>
//   </XInf>
//
// Versions are "major.minor.revision.stage". Readers go through the resource manager and take
// the raw bytes without keeping the resource loaded. They return the manager's code when the
// resource is missing, eXMLTreeNotValid when it does not parse, eXMLElementMissing when a value
// asked for is absent; on failure the outputs keep what they held. [any-thread]
inline constexpr const char *kXInfResType = "XInf";
inline constexpr const char *kXInfResID = "XInf.xml";

namespace RM {

// One named value, cut to the capacity of `outValue`.
int GetResourceValueByName(WTResContainerType *container, const char *name,
                           WCFixedStringBase &outValue);
// "InternalVersion" and "PluginExternalVersion".
int GetPluginVersionsFromXInfResource(WTResContainerType *container, WCVersion &outInternal,
                                      WCVersion &outExternal);
// "APIVersion", "InternalVersion", "PluginExternalVersion" and "VendorName"; a missing vendor
// gives the library's vendor name.
int GetKPAPIVersionsFromXInfResource(WTResContainerType *container, WCVersion &outAPI,
                                     WCVersion &outInternal, WCVersion &outExternal,
                                     WCFixedStringBase &outVendor);
// "MirelShellsBaseName", "ArtistDlls", "DynamicPluginLibName": the libraries a shell loads with
// the plug-in. Only the shells' base name is required; the other two may be absent (empty).
int GetArtistAndMirelLibWithPhase(WTResContainerType *container, WCFixedStringBase &outShellsBase,
                                  WCFixedStringBase &outArtistDlls,
                                  WCFixedStringBase &outDynamicLib);

} // namespace RM

MIREL_NAMESPACE_END
