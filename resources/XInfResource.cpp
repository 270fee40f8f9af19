#include "resources/XInfResource.h"

#include <pugixml.hpp>

#include "Utilities/XML/Code/PugiXML.h"
#include "core/WCStMemObj.h"
#include "core/WUAssert.h"
#include "resources/MirelComponentInfo.h"
#include "resources/ResourceManager.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

namespace {

int ReadXInf(WTResContainerType *container, pugi::xml_document &doc) {
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    Utils::WCStMemObj bytes;
    const int err = GetRawResourceData(container, WCResKey(kXInfResType, kXInfResID), bytes);
    if (err != eNoErr)
        return err;
    if (PugiXML::read_xml_from_mem_obj(bytes, doc) != 0 ||
        std::string_view(doc.document_element().name()) != "XInf")
        return eXMLTreeNotValid;
    return eNoErr;
}

// The child's text, or null when absent.
const char *Value(const pugi::xml_document &doc, const char *name) {
    const pugi::xml_node child = doc.document_element().child(name);
    return child ? child.child_value() : nullptr;
}

int ReadVersion(const pugi::xml_document &doc, const char *name, WCVersion &out) {
    const char *text = Value(doc, name);
    if (text == nullptr)
        return eXMLElementMissing;
    out = WCVersion(text);
    return eNoErr;
}

// The two versions every XInf carries; nothing is written unless both are there.
int ReadPluginVersions(const pugi::xml_document &doc, WCVersion &outInternal,
                       WCVersion &outExternal) {
    WCVersion internal, external;
    int err = ReadVersion(doc, "InternalVersion", internal);
    if (err == eNoErr)
        err = ReadVersion(doc, "PluginExternalVersion", external);
    if (err != eNoErr)
        return err;
    outInternal = internal;
    outExternal = external;
    return eNoErr;
}

} // namespace

int GetResourceValueByName(WTResContainerType *container, const char *name,
                           WCFixedStringBase &outValue) {
    MIREL_ASSERT_RETURN(name != nullptr, eMemNullPointer);
    pugi::xml_document doc;
    const int err = ReadXInf(container, doc);
    if (err != eNoErr)
        return err;
    const char *text = Value(doc, name);
    if (text == nullptr)
        return eXMLElementMissing;
    outValue = text;
    return eNoErr;
}

int GetPluginVersionsFromXInfResource(WTResContainerType *container, WCVersion &outInternal,
                                      WCVersion &outExternal) {
    pugi::xml_document doc;
    const int err = ReadXInf(container, doc);
    return err != eNoErr ? err : ReadPluginVersions(doc, outInternal, outExternal);
}

int GetKPAPIVersionsFromXInfResource(WTResContainerType *container, WCVersion &outAPI,
                                     WCVersion &outInternal, WCVersion &outExternal,
                                     WCFixedStringBase &outVendor) {
    pugi::xml_document doc;
    int err = ReadXInf(container, doc);
    WCVersion api, internal, external;
    if (err == eNoErr)
        err = ReadVersion(doc, "APIVersion", api);
    if (err == eNoErr)
        err = ReadPluginVersions(doc, internal, external);
    if (err != eNoErr)
        return err;
    outAPI = api;
    outInternal = internal;
    outExternal = external;
    const char *vendor = Value(doc, "VendorName");
    outVendor = vendor != nullptr && vendor[0] != '\0' ? vendor : kMirelVendorName;
    return eNoErr;
}

int GetArtistAndMirelLibWithPhase(WTResContainerType *container, WCFixedStringBase &outShellsBase,
                                  WCFixedStringBase &outArtistDlls,
                                  WCFixedStringBase &outDynamicLib) {
    pugi::xml_document doc;
    const int err = ReadXInf(container, doc);
    if (err != eNoErr)
        return err;
    const char *shells = Value(doc, "MirelShellsBaseName");
    if (shells == nullptr)
        return eXMLElementMissing;
    const char *artist = Value(doc, "ArtistDlls");
    const char *dynamic = Value(doc, "DynamicPluginLibName");
    outShellsBase = shells;
    outArtistDlls = artist != nullptr ? artist : "";
    outDynamicLib = dynamic != nullptr ? dynamic : "";
    return eNoErr;
}

} // namespace RM

MIREL_NAMESPACE_END
