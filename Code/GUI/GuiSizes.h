#pragma once

#include "core/MirelNamespace.h"
#include "core/WCFourCC.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

// The GUI size a user chose, kept across sessions in the user's preferences:
// "<preferences>/SizesPreferences/GuiSizes.xml", root "GuiSizes", one "Size" child per plug-in
// type ("Type" is "Alg" with the type's four characters in "Alg") and one default ("Type"
// "Default"), each holding the factor as text. [main-thread]
namespace GuiSizes {

FM::WCStPath GetPrefsFilePath();
// The plug-in's own entry, else the default entry, else 1.0; a factor that is no positive
// number counts as absent.
double ReadGuiSizeFromPrefs(WCFourCC algType);
// Sets the plug-in's entry (or the default entry with `asDefault`), keeping the others; a file
// that does not parse is replaced. The file is replaced whole, so a failure leaves the old one.
WTErr WriteGuiSizeToPrefs(WCFourCC algType, double factor, bool asDefault);

} // namespace GuiSizes

MIREL_NAMESPACE_END
