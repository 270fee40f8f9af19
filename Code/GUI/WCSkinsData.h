#pragma once

#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"
#include "core/WURect.h"
#include "resources/MirelComponentInfo.h"
#include "resources/WCResKey.h"
#include "resources/WCStRes.h"

MIREL_NAMESPACE_BEGIN

class WCGUIControl;

namespace XML {
class CXMLElement;
}

// One alternative look of a GUI: its name, the skin it builds on, its view rect, its XML and
// whether controls it does not name are hidden.
struct WCSkinDetails {
    WCFixedString<63> m_Name;
    WCFixedString<63> m_FatherName;
    WURect<short> m_ViewRect;
    const XML::CXMLElement *m_pXML = nullptr;
    bool m_HideControls = false;
};

// The skins of one GUI, read from the "Skins" resource of the GUI's id ("/Skins/Skin"), and the
// list of every control a skin may show. A GUI without that resource has no skins. The skin
// elements live in the resource, which the user given at construction keeps loaded. [main-thread]
class WCSkinsData {
public:
    static constexpr const char *kDefaultSkinName = "Default";
    static constexpr const char *kSkinsResType = "Skins";

    explicit WCSkinsData(RM::WCResContainerUser *user) : m_pUser(user) {}

    // Reads the skins of the GUI resource `guiKey` and keeps `controls`. No skins resource is
    // success; a skins resource that does not load is its code, with no skins kept.
    int InitSkins(const WCResKey &guiKey, const MirelComponentInfo &info,
                  const WURect<short> &viewRect, const std::vector<WCGUIControl *> &controls);
    std::size_t GetNumSkins() const noexcept { return m_Skins.size(); }
    const WCSkinDetails *FindSkinDetailsByName(const char *name) const;
    // Empty for a skin without a father or an unknown skin.
    WCFixedString<63> GetSkinFatherName(const char *name) const;
    // The GUI's own view rect for a skin without one.
    WURect<short> GetSkinViewRect(const char *name) const;
    const XML::CXMLElement *GetSkinXML(const char *name) const;
    // The skin's XML after its ancestors', first ancestor first; a father cycle ends the walk.
    std::vector<const XML::CXMLElement *> GetSkinXMLHierarchy(const char *name) const;
    bool ControlExists(const char *name) const;
    void addControl(WCGUIControl *control);
    void RemoveControl(WCGUIControl *control);

private:
    RM::WCResContainerUser *m_pUser;
    std::vector<WCSkinDetails> m_Skins;
    std::vector<WCGUIControl *> m_Controls;
    WURect<short> m_ViewRect;
};

MIREL_NAMESPACE_END
