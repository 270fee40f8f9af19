#pragma once

#include <memory>
#include <string>

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"

namespace mirel_test {

// What the GUI suites do again and again: a control's XML read and written back, and a whole
// frame held against its reviewed YAML and picture.

// The text parsed into a tree; a document that does not parse whole is a test failure.
std::unique_ptr<MIREL_NAMESPACE_NAME::XML::CXMLElement> ParseXML(const std::string &text);
// The control's "cCONTROLLER" element as it writes itself back, pretty printed.
std::string WrittenXML(const MIREL_NAMESPACE_NAME::WCGUIControl &control);
// A full frame of `gui`, with its remarks, against `folder`/`name`.yaml (the bundle's path, which
// changes from run to run, left out) and painted against `folder`/`name`.png.
void ExpectGoldenFrame(MIREL_NAMESPACE_NAME::CStandardGUI_X &gui, const std::string &folder,
                       const std::string &name);

} // namespace mirel_test
