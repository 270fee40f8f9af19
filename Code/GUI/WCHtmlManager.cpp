#include "Code/GUI/WCHtmlManager.h"

MIREL_NAMESPACE_BEGIN

void WCHtmlManager::AddHTMLWindow(std::unique_ptr<WCHTMLBase> page) {
    if (page != nullptr)
        m_Pages.push_back(std::move(page));
}

WCHTMLBase *WCHtmlManager::GetHTMLPageByIndex(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= m_Pages.size())
        return nullptr;
    return m_Pages[static_cast<std::size_t>(index)].get();
}

int WCHtmlManager::ActivateHtmlWindow(int index) {
    WCHTMLBase *page = GetHTMLPageByIndex(index);
    return page != nullptr ? page->ActivateHtmlWindow() : eOutOfRangeNumber;
}

int WCHtmlManager::DeActivateHtmlWindow(int index) {
    WCHTMLBase *page = GetHTMLPageByIndex(index);
    return page != nullptr ? page->DeactivateHtmlWindow() : eOutOfRangeNumber;
}

int WCHtmlManager::ExecuteHTMLJavaScript(int index, const std::string &script) {
    WCHTMLBase *page = GetHTMLPageByIndex(index);
    return page != nullptr ? page->ExecuteJavaScript(script) : eOutOfRangeNumber;
}

int WCHtmlManager::ExecuteJavaScriptQueue(int index) {
    WCHTMLBase *page = GetHTMLPageByIndex(index);
    return page != nullptr ? page->ExecuteJavaScriptQueue() : eOutOfRangeNumber;
}

bool WCHtmlManager::GetHTMLPinMode(int index) const {
    const WCHTMLBase *page = GetHTMLPageByIndex(index);
    return page != nullptr && page->GetPinMode();
}

bool WCHtmlManager::GetDeactivateWindowWhenHide(int index) const {
    const WCHTMLBase *page = GetHTMLPageByIndex(index);
    return page != nullptr && page->GetDeactivateWindowWhenHide();
}

MIREL_NAMESPACE_END
