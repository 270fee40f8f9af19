#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "resources/MirelComponentInfo.h"
#include "resources/WCResKey.h"
#include "resources/WCStRes.h"
#include "resources/WTResourceType.h"

MIREL_NAMESPACE_BEGIN

// Loads an XML resource as one component sees it: the key is copied with the converter put in
// and its variant set to the converter's tag ("XMLC", "XMLP", "XMLT"), the component's sub-type,
// type and affiliation, so each component gets its own resource, converted once and then found
// in the container's map, while the raw bytes are shared through the base resource.
// The resource is retained for the caller (the user form hands it to the user, who releases it);
// on failure the outputs are null and nothing stays retained. [any-thread]
namespace RM {

// The default template depth of the "XMLT" form: the root's children are statements.
inline constexpr int kDefaultTemplateDepth = 0;

// The key of one component's view: `key` with its variant replaced. Four-character codes that
// hold characters a key may not (path separators, control characters) are written in hex.
WCResKey MakeComponentKey(const WCResKey &key, const char *tag, const MirelComponentInfo &info);

// An XML::CXMLElement, filtered.
int GetAndFilterXMLResourceByComponentInfo(WTResContainerType *container, const WCResKey &key,
                                           const MirelComponentInfo &info,
                                           WTResourceType *&outResource, void *&outData);
int GetAndFilterXMLResourceByComponentInfo(WCResContainerUser &user, const WCResKey &key,
                                           const MirelComponentInfo &info,
                                           WTResourceType *&outResource, void *&outData);
// A pugi::xml_document, filtered.
int GetAndFilterPugiXMLResourceByComponentInfo(WTResContainerType *container, const WCResKey &key,
                                               const MirelComponentInfo &info,
                                               WTResourceType *&outResource, void *&outData);
int GetAndFilterPugiXMLResourceByComponentInfo(WCResContainerUser &user, const WCResKey &key,
                                               const MirelComponentInfo &info,
                                               WTResourceType *&outResource, void *&outData);
// An XML::CXMLElement, filtered, halved when "DoubleSizeGUI", templates expanded from `depth`.
int GetAndFilterXMLResourceByComponentInfoAfterResolvingTemplates(
    WTResContainerType *container, const WCResKey &key, const MirelComponentInfo &info,
    WTResourceType *&outResource, void *&outData, int depth = kDefaultTemplateDepth);
int GetAndFilterXMLResourceByComponentInfoAfterResolvingTemplates(
    WCResContainerUser &user, const WCResKey &key, const MirelComponentInfo &info,
    WTResourceType *&outResource, void *&outData, int depth = kDefaultTemplateDepth);

} // namespace RM

MIREL_NAMESPACE_END
