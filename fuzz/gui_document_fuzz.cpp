// Reads arbitrary bytes as a GUI XML into a GUI document. Whatever the text says, reading ends,
// the controls are ordered and finished, groups answer whether they are hidden, and the document
// written back reads again to as many controls and toolbar buttons.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "Utilities/XML/Code/WriteXMLToStream.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

void Check(bool condition) {
    if (!condition)
        std::abort();
}

// A document of `root`, read, ordered and finished as InitGui and FinishCreate do.
struct WSDocument {
    ml::WTResContainerType *container = nullptr;
    ml::CStandardGUI_X gui{container, "Fuzz"};
    ml::GUIXML::WCReader reader;

    explicit WSDocument(const ml::XML::CXMLElement &root) {
        gui.ReadFromXML(&root, reader);
        gui.PrepareTabOrder();
        gui.PrepareControlOrder();
        gui.FinishCreate();
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    ml::XML::CXMLElement root;
    if (ml::XML::CXMLTreeBuilder(root).BuildFromSingleBuffer(reinterpret_cast<const char *>(data),
                                                             size) != ml::eNoErr)
        return 0;
    WSDocument first(root);
    for (const ml::WCGUIControl *control : first.gui.GetControls())
        (void)control->ToDraw();
    for (const auto &name : {"A", "B", "G0", "Group"})
        first.gui.GroupShowHide(name, false);
    (void)first.gui.InsideWhichControl(ml::WCPoint2D<short>(10, 10));

    ml::XML::CXMLElement written("GUI");
    first.gui.WriteToXML(&written);
    std::string text;
    ml::XML::WriteXMLToString(text, &written, true, false, 0);
    ml::XML::CXMLElement reread;
    Check(ml::XML::CXMLTreeBuilder(reread).BuildFromSingleBuffer(text.data(), text.size()) ==
          ml::eNoErr);
    WSDocument second(reread);
    Check(second.gui.GetNumGUIControllers() == first.gui.GetNumGUIControllers());
    Check(second.gui.GetNumToolBarControls() == first.gui.GetNumToolBarControls());
    return 0;
}
