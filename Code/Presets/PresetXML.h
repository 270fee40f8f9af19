#pragma once

#include "Code/Algorithm/EPluginSetup.h"
#include "Code/Presets/CPresetInfo.h"
#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace XML {
class CXMLElement;
}

namespace Preset {

// The XML form of one preset: a "Preset" element with "PresetHeader", "MessageToShell",
// "VST24SideChainActive" and a "PresetData" per setup, each element in a fixed order so files
// and chunks compare byte for byte. Reading is tolerant: unknown elements are skipped and a
// missing attribute leaves the default. [any-thread] on distinct objects.

struct WSPresetWriteOptions {
    // A host chunk also carries "ExternalPresetPath" and "LoadMenuCategory".
    bool m_AsChunk = false;
    // Every real-world value as a number, whatever its kind (the "RealWorldPluginState" feature).
    bool m_AllRealWorldAsNumbers = false;
    // The file being written: blocks with side files write them beside it. Without one (texts,
    // chunks) nothing is written to disk.
    const FM::WCStPath *m_PresetFile = nullptr;
};

// Fills `element` as the "Preset" element of `info`. A separator or title entry gives a
// "Separator" or "Title" element instead.
WTErr WriteToXML_CPresetInfo(const CPresetInfo &info, XML::CXMLElement &element,
                             const WSPresetWriteOptions &options = {});

// Attributes, "PresetHeader", "MessageToShell", "VST24SideChainActive", and the "PresetData"
// shells (setups and block headers, no values). `info` is replaced only on success.
WTErr ReadHeadersFromXML_CPresetInfo(const XML::CXMLElement *const element, CPresetInfo &info);
// Scans the root's "Preset" children for the one named like `info` and builds its shells.
// ePresetInfoNotFound when there is none.
WTErr ReadDataHeadersFromXML_CPresetInfo(const XML::CXMLElement *const root, CPresetInfo &info);
// Fills the data of `info` from its "Preset" element: a "PresetData" with "Setup" fills that
// setup only, one without fills every setup. Blocks are found by "TagName". On failure `info`
// is left as it was.
WTErr ReadDataFromXML_CPresetInfo(const XML::CXMLElement *const element, CPresetInfo &info);
// "SETUP_A", "SETUP_B", "CURRENT" exactly; an empty element is SETUP_A. Other words leave
// `setup` and answer eValueNotFound.
WTErr ReadFromXML_EPluginSetup(const XML::CXMLElement *const element, EPluginSetup &setup);
// The children of one "PresetData" into `data` (values, controls, plug-in XML, blocks).
WTErr ReadFromXML_sPresetData(const XML::CXMLElement *const element, bool obsolete,
                              sPresetData &data);

} // namespace Preset

MIREL_NAMESPACE_END
