#include "Code/GUI/WCHTMLBase.h"

#include <cmath>
#include <utility>

#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/linux/WUCLocaleNumbers.h"

MIREL_NAMESPACE_BEGIN

WTErr WCHTMLBase::ReadFromXML(const XML::CXMLElement &element) {
    WTErr first = eNoErr;
    auto keep = [&first](WTErr err) {
        if (first == eNoErr)
            first = err;
    };
    element.GetAttrib("Path", m_ResourceName);
    element.GetAttrib("Name", m_WindowTitle);
    for (const XML::CXMLElement *child : element.GetSubElements()) {
        const auto &name = child->GetName();
        WURect<short> rect;
        if (name == "Rect") {
            keep(GUIXML::ReadRect(*child, m_Location));
        } else if (name == "MinRect" || name == "MaxRect") {
            const WTErr err = GUIXML::ReadRect(*child, rect);
            keep(err);
            if (err != eNoErr)
                continue;
            (name == "MinRect" ? m_MinWidth : m_MaxWidth) = rect.Width();
            (name == "MinRect" ? m_MinHeight : m_MaxHeight) = rect.Height();
        } else if (name == "Opacity") {
            char *end = nullptr;
            const double opacity = Utils::CLocaleStrtod(child->GetText().c_str(), &end);
            if (end != child->GetText().c_str() && std::isfinite(opacity))
                m_Opacity = opacity;
            else
                keep(eNotANumber);
        } else if (name == "Flags") {
            for (const XML::CXMLElement *flag : child->GetSubElements()) {
                const auto &f = flag->GetName();
                if (f == "DeactivateWindowWhenHide")
                    m_DeactivateWhenHide = true;
                else if (f == "Resizable")
                    m_Resizable = true;
                else if (f == "Embedded")
                    m_WindowKind = eEmbedded;
                else if (f == "Floating")
                    m_WindowKind = eFloating;
                else if (f == "FloatingNoBorder")
                    m_WindowKind = eFloatingNoBorder;
                else if (f == "Pined")
                    m_PinMode = true;
                else if (f == "SaveWindowPosition")
                    m_SaveWindowPosition = true;
                else if (f == "SaveWindowSize")
                    m_SaveWindowSize = true;
            }
        }
    }
    return first;
}

XML::CXMLElement *WCHTMLBase::WriteToXML() const {
    auto *element = new XML::CXMLElement("HTMLView");
    element->AddAttrib("Path", m_ResourceName.c_str());
    element->AddAttrib("Name", m_WindowTitle.c_str());
    element->push_back(GUIXML::WriteRect("Rect", m_Location));
    element->push_back(GUIXML::WriteRect("MinRect", WURect<short>(0, 0, m_MinHeight, m_MinWidth)));
    element->push_back(GUIXML::WriteRect("MaxRect", WURect<short>(0, 0, m_MaxHeight, m_MaxWidth)));
    element->push_back(new XML::CXMLElement("Opacity", m_Opacity));
    auto *flags = new XML::CXMLElement("Flags");
    static constexpr const char *kKinds[] = {"Embedded", "Floating", "FloatingNoBorder"};
    flags->push_back(new XML::CXMLElement(kKinds[m_WindowKind]));
    const std::pair<bool, const char *> bools[] = {
        {m_DeactivateWhenHide, "DeactivateWindowWhenHide"},
        {m_Resizable, "Resizable"},
        {m_PinMode, "Pined"},
        {m_SaveWindowPosition, "SaveWindowPosition"},
        {m_SaveWindowSize, "SaveWindowSize"}};
    for (const auto &[on, name] : bools)
        if (on)
            flags->push_back(new XML::CXMLElement(name));
    element->push_back(flags);
    return element;
}

// The browser control of this platform is not built: no window opens.
int WCHTMLBase::ActivateHtmlWindow() {
    return eNotImplemented;
}
int WCHTMLBase::DeactivateHtmlWindow() {
    return m_WindowOpen ? eNotImplemented : eNoErr;
}
int WCHTMLBase::ShowHtmlWebWindow() {
    return eNotImplemented;
}
int WCHTMLBase::HideHtmlWebWindow() {
    return m_WindowOpen ? eNotImplemented : eNoErr;
}

int WCHTMLBase::ExecuteJavaScript(const std::string &script) {
    m_ScriptQueue.push_back(script);
    return m_PageLoaded ? ExecuteJavaScriptQueue() : eNoErr;
}

int WCHTMLBase::ExecuteJavaScriptQueue() {
    // Without a loaded page the queue waits for one.
    return m_PageLoaded ? eNotImplemented : eNoErr;
}

MIREL_NAMESPACE_END
