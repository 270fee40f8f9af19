#include "Code/GUI/WCSkinsData.h"

#include <algorithm>
#include <cstring>

#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "resources/GetAndFilterXMLResource.h"
#include "resources/ResourceManager.h"

MIREL_NAMESPACE_BEGIN

int WCSkinsData::InitSkins(const WCResKey &guiKey, const MirelComponentInfo &info,
                           const WURect<short> &viewRect,
                           const std::vector<WCGUIControl *> &controls) {
    m_Skins.clear();
    m_ViewRect = viewRect;
    m_Controls = controls;
    if (m_pUser == nullptr || m_pUser->GetContainer() == nullptr)
        return eNoErr;
    const WCResKey key(kSkinsResType, guiKey.m_ID.c_str());
    if (!RM::DoesResourceExist(m_pUser->GetContainer(), key))
        return eNoErr;
    WTResourceType *resource = nullptr;
    void *data = nullptr;
    if (const int err =
            RM::GetAndFilterXMLResourceByComponentInfo(*m_pUser, key, info, resource, data);
        err != eNoErr)
        return err;
    const auto *root = static_cast<const XML::CXMLElement *>(data);
    if (root == nullptr || root->GetName() != "Skins")
        return eXMLTreeNotValid;
    for (const XML::CXMLElement *element : root->GetSubElements()) {
        if (element->GetName() != "Skin")
            continue;
        WCSkinDetails skin;
        element->GetAttrib("Name", skin.m_Name);
        element->GetAttrib("FatherName", skin.m_FatherName);
        skin.m_HideControls = GUIXML::IsAttribTrue(*element, "HideControls");
        skin.m_ViewRect = viewRect;
        if (const XML::CXMLElement *list = element->SubElement("ViewRect_List"))
            if (const XML::CXMLElement *rect = list->SubElement("Rect"))
                GUIXML::ReadRect(*rect, skin.m_ViewRect);
        skin.m_pXML = element;
        m_Skins.push_back(skin);
    }
    return eNoErr;
}

const WCSkinDetails *WCSkinsData::FindSkinDetailsByName(const char *name) const {
    if (name == nullptr)
        return nullptr;
    const auto found = std::find_if(m_Skins.begin(), m_Skins.end(), [name](const auto &skin) {
        return std::strcmp(skin.m_Name.c_str(), name) == 0;
    });
    return found == m_Skins.end() ? nullptr : &*found;
}

WCFixedString<63> WCSkinsData::GetSkinFatherName(const char *name) const {
    const WCSkinDetails *skin = FindSkinDetailsByName(name);
    return skin != nullptr ? skin->m_FatherName : WCFixedString<63>();
}

WURect<short> WCSkinsData::GetSkinViewRect(const char *name) const {
    const WCSkinDetails *skin = FindSkinDetailsByName(name);
    return skin != nullptr ? skin->m_ViewRect : m_ViewRect;
}

const XML::CXMLElement *WCSkinsData::GetSkinXML(const char *name) const {
    const WCSkinDetails *skin = FindSkinDetailsByName(name);
    return skin != nullptr ? skin->m_pXML : nullptr;
}

std::vector<const XML::CXMLElement *> WCSkinsData::GetSkinXMLHierarchy(const char *name) const {
    std::vector<const WCSkinDetails *> chain;
    for (const WCSkinDetails *skin = FindSkinDetailsByName(name); skin != nullptr;
         skin = FindSkinDetailsByName(skin->m_FatherName.c_str())) {
        if (std::find(chain.begin(), chain.end(), skin) != chain.end())
            break;
        chain.push_back(skin);
    }
    std::vector<const XML::CXMLElement *> hierarchy;
    for (auto it = chain.rbegin(); it != chain.rend(); ++it)
        hierarchy.push_back((*it)->m_pXML);
    return hierarchy;
}

bool WCSkinsData::ControlExists(const char *name) const {
    return name != nullptr &&
           std::any_of(m_Controls.begin(), m_Controls.end(), [name](const WCGUIControl *control) {
               return std::strcmp(control->GetName().c_str(), name) == 0;
           });
}

void WCSkinsData::addControl(WCGUIControl *control) {
    if (control != nullptr &&
        std::find(m_Controls.begin(), m_Controls.end(), control) == m_Controls.end())
        m_Controls.push_back(control);
}

void WCSkinsData::RemoveControl(WCGUIControl *control) {
    m_Controls.erase(std::remove(m_Controls.begin(), m_Controls.end(), control), m_Controls.end());
}

MIREL_NAMESPACE_END
