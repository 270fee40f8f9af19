#pragma once

#include <memory>
#include <vector>

#include "Code/GUI/WCHTMLBase.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;
class CStandardGUI_X;

// The web pages of one GUI, in the order the GUI XML lists them, and the address of the local
// WebSocket server the pages talk to. Owns its pages. [main-thread]
class WCHtmlManager {
public:
    static constexpr const char *kDefaultWSAddress = "ws://127.0.0.1:6985";

    WCHtmlManager(cALGORITHM *alg, CStandardGUI_X *gui) : m_pAlg(alg), m_pGUI(gui) {}

    void AddHTMLWindow(std::unique_ptr<WCHTMLBase> page);
    // Null beyond the list.
    WCHTMLBase *GetHTMLPageByIndex(int index) const;
    std::size_t GetNumPages() const noexcept { return m_Pages.size(); }
    // eOutOfRangeNumber for an index beyond the list; otherwise the page's answer.
    int ActivateHtmlWindow(int index);
    int DeActivateHtmlWindow(int index);
    int ExecuteHTMLJavaScript(int index, const std::string &script);
    int ExecuteJavaScriptQueue(int index);
    bool GetHTMLPinMode(int index) const;
    bool GetDeactivateWindowWhenHide(int index) const;
    void DisposeHTMLVector() { m_Pages.clear(); }

    cALGORITHM *GetAlgorithm() const noexcept { return m_pAlg; }
    CStandardGUI_X *GetGUI() const noexcept { return m_pGUI; }
    const WCFixedString<127> &GetWSAddress() const noexcept { return m_WSAddress; }
    void SetWSAddress(const char *address) { m_WSAddress = address; }

private:
    cALGORITHM *m_pAlg;
    CStandardGUI_X *m_pGUI;
    std::vector<std::unique_ptr<WCHTMLBase>> m_Pages;
    WCFixedString<127> m_WSAddress{kDefaultWSAddress};
};

MIREL_NAMESPACE_END
