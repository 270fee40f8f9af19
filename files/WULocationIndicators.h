#pragma once

#include <string>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

// Installed module folders, found by an indicator word ("MainPluginFolder", "V13PluginFolder"...).
//
// Each word maps to a value name ("Location", "LocationV13"...). The values live in YAML maps of
// value name to folder, in the files "Mirel Audio/Locations.yaml" under the first three entries of
// $XDG_DATA_DIRS (the first one is the local domain), tried in that order until one gives a text
// longer than 3 characters:
//
//     Location: /opt/Mirel/Plug-Ins
//     LocationV13: /opt/Mirel/Plug-Ins/V13
//
// Codes: eFMWrongParameters for a word not in the table, eFMFileNotFound when no file holds the
// value, eMemNullPointer when the value found is 3 characters or shorter, eFMReadFailed when the
// first file that exists is not a YAML map of texts (the first error wins). [any-thread]

bool IsValidIndicator(char const *indicator);
// The value name of a word, or null for an unknown word.
char const *GetIndicatorValueName(char const *indicator);
int GetPathFromIndicator(char const *indicator, WCStPath &outPath);
// Looks the value up in one YAML text; the same codes, eFMFileNotFound for a missing value.
int ReadLocationValue(std::string const &yamlText, char const *valueName, std::string &outValue);

} // namespace FM
MIREL_NAMESPACE_END
