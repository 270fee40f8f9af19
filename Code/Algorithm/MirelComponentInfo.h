#pragma once

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"
#include "core/WCVersion.h"

MIREL_NAMESPACE_BEGIN

// The identity record of one plug-in component: which file, which type and sub-type, names and
// versions. This is the part of the record the plug-in frame needs; the component-info work
// replaces it with the full record (process code description, VST class id, XML form), keeping
// these fields and their defaults.
// A plain value; copy it freely. [any-thread]
struct MirelComponentInfo {
    enum EPluginShellType : int {
        eUnknownPluginType = 0,
        eMirelPlugin = 1,
        eVSTPlugin = 2,
        eMirelUtility = 3,
        eKPAPIShell = 4,
    };
    enum EPluginInstanceType : int {
        eInitPluginForTest = 0,
        eInitPlugin = 1,
    };

    EPluginShellType m_PluginType = eMirelPlugin;
    WCFixedString<1023> m_FilePath;
    WCFourCC m_ComponentType = WCFourCC("????");
    WCFourCC m_ComponentSubType = WCFourCC("????");
    WCFourCC m_Affiliation = WCFourCC("ksMI");
    WCFixedString<63> m_ShortName;
    WCVersion m_InternalVersion;
    WCVersion m_APIVersion;
    EPluginInstanceType m_InstanceType = eInitPlugin;
    WCFixedString<63> m_VendorName = WCFixedString<63>("Mirel");
    WCFixedString<63> m_CategoryName;
    WCVersion m_ExternalVersion;
};

MIREL_NAMESPACE_END
