#pragma once

#include <set>
#include <string>

#include "core/MirelNamespace.h"
#include "resources/MirelComponentInfo.h"
#include "resources/WCMirelComponentInfoList.h"
#include "resources/WCResKey.h"

MIREL_NAMESPACE_BEGIN

// The "ProcessXML" resource: type "thng", id "ProcessXML.xml" (the bundle file
// Contents/Resources/thng/ProcessXML.xml).
inline constexpr const char *kProcessXMLResType = "thng";
inline constexpr const char *kProcessXMLResID = "ProcessXML.xml";

// Reads which sub-components a bundle offers. [any-thread]
class SubCompTypeScanner {
public:
    // What the bundle's environment enables: the feature flags that are on, and whether hidden
    // sub-components are listed too (a test host lists them).
    struct WSOptions {
        std::set<std::string> m_EnabledFeatures;
        bool m_IncludeHidden = false;
    };

    // Appends to `outList` one record per sub-component of the bundle's "ProcessXML" resource,
    // each a copy of `bundleInfo` (path, type, versions, vendor) with its own sub-type, name,
    // affiliation and process code description. The list is unchanged on failure: the manager's
    // code for a missing resource, eXMLTreeNotValid for text that does not parse or whose root
    // has no "SubComponentList".
    static int BuildSubComponentList(WTResContainerType *container,
                                     const MirelComponentInfo &bundleInfo, const WSOptions &options,
                                     WCMirelComponentInfoList &outList);
};

MIREL_NAMESPACE_END
