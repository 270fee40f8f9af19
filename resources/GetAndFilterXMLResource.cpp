#include "resources/GetAndFilterXMLResource.h"

#include <cctype>
#include <memory>

#include "core/WUAssert.h"
#include "resources/ResourceManager.h"
#include "resources/WCResConvertXMLFilterByComponentInfo.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

namespace {

void AppendCode(WCFixedStringBase &text, WCFourCC code) {
    const auto value = static_cast<std::uint32_t>(code);
    bool plain = true;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const int c = static_cast<int>((value >> shift) & 0xFF);
        if (c < 0x21 || c > 0x7E || c == '/' || c == '\\' || c == '.')
            plain = false;
    }
    if (plain) {
        text << code.GetString();
        return;
    }
    static const char kHex[] = "0123456789abcdef";
    for (int shift = 28; shift >= 0; shift -= 4)
        text << kHex[(value >> shift) & 0xF];
}

template <typename Converter, typename... Args>
int Load(WTResContainerType *container, const WCResKey &key, const char *tag,
         const MirelComponentInfo &info, WTResourceType *&outResource, void *&outData,
         Args... args) {
    outResource = nullptr;
    outData = nullptr;
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    WCResKey componentKey = MakeComponentKey(key, tag, info);
    try {
        componentKey.SetConverter(std::make_shared<Converter>(&info, args...));
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
    WTResourceType *resource = nullptr;
    const int err = GetAResource(container, componentKey, resource);
    if (err != eNoErr)
        return err;
    outResource = resource;
    outData = resource->m_Data.m_pData;
    return eNoErr;
}

template <typename Converter, typename... Args>
int LoadForUser(WCResContainerUser &user, const WCResKey &key, const char *tag,
                const MirelComponentInfo &info, WTResourceType *&outResource, void *&outData,
                Args... args) {
    const int err =
        Load<Converter>(user.GetContainer(), key, tag, info, outResource, outData, args...);
    if (err == eNoErr)
        user.RememberLoadedResource(outResource);
    return err;
}

} // namespace

WCResKey MakeComponentKey(const WCResKey &key, const char *tag, const MirelComponentInfo &info) {
    WCResKey componentKey(key);
    componentKey.m_Variant.clear();
    componentKey.m_Variant << tag << '_';
    AppendCode(componentKey.m_Variant, info.m_ComponentSubType);
    componentKey.m_Variant << '_';
    AppendCode(componentKey.m_Variant, info.m_ComponentType);
    componentKey.m_Variant << '_';
    AppendCode(componentKey.m_Variant, info.m_Affiliation);
    return componentKey;
}

int GetAndFilterXMLResourceByComponentInfo(WTResContainerType *container, const WCResKey &key,
                                           const MirelComponentInfo &info,
                                           WTResourceType *&outResource, void *&outData) {
    return Load<WCResConvertXMLFilterByComponentInfo>(container, key, "XMLC", info, outResource,
                                                      outData);
}

int GetAndFilterXMLResourceByComponentInfo(WCResContainerUser &user, const WCResKey &key,
                                           const MirelComponentInfo &info,
                                           WTResourceType *&outResource, void *&outData) {
    return LoadForUser<WCResConvertXMLFilterByComponentInfo>(user, key, "XMLC", info, outResource,
                                                             outData);
}

int GetAndFilterPugiXMLResourceByComponentInfo(WTResContainerType *container, const WCResKey &key,
                                               const MirelComponentInfo &info,
                                               WTResourceType *&outResource, void *&outData) {
    return Load<WCResConvertPugiXMLFilterByComponentInfo>(container, key, "XMLP", info, outResource,
                                                          outData);
}

int GetAndFilterPugiXMLResourceByComponentInfo(WCResContainerUser &user, const WCResKey &key,
                                               const MirelComponentInfo &info,
                                               WTResourceType *&outResource, void *&outData) {
    return LoadForUser<WCResConvertPugiXMLFilterByComponentInfo>(user, key, "XMLP", info,
                                                                 outResource, outData);
}

int GetAndFilterXMLResourceByComponentInfoAfterResolvingTemplates(WTResContainerType *container,
                                                                  const WCResKey &key,
                                                                  const MirelComponentInfo &info,
                                                                  WTResourceType *&outResource,
                                                                  void *&outData, int depth) {
    return Load<WCResConvertXMLFilterByComponentInfoAfterResolvingTemplates>(
        container, key, "XMLT", info, outResource, outData, depth);
}

int GetAndFilterXMLResourceByComponentInfoAfterResolvingTemplates(WCResContainerUser &user,
                                                                  const WCResKey &key,
                                                                  const MirelComponentInfo &info,
                                                                  WTResourceType *&outResource,
                                                                  void *&outData, int depth) {
    return LoadForUser<WCResConvertXMLFilterByComponentInfoAfterResolvingTemplates>(
        user, key, "XMLT", info, outResource, outData, depth);
}

} // namespace RM

MIREL_NAMESPACE_END
