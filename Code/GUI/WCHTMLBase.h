#pragma once

#include <deque>
#include <string>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

class CStandardGUI_X;

namespace XML {
class CXMLElement;
}

// One web page of a GUI in its own window, as an "HTMLView" of the GUI XML describes it: the
// resource it shows, the window's title, place, limits, opacity, kind and behaviour. The page
// itself needs a browser control, which this platform layer does not offer yet: opening answers
// eNotImplemented, and script handed over before the page loads waits in the queue. [main-thread]
class WCHTMLBase {
public:
    enum EWindowKind : int { eEmbedded = 0, eFloating = 1, eFloatingNoBorder = 2 };

    explicit WCHTMLBase(CStandardGUI_X *gui) : m_pGUI(gui) {}

    // "Path", "Name", "Rect", "MinRect", "MaxRect", "Opacity" and "Flags". A rectangle or number
    // that does not read leaves its field as it was; the first such code is returned.
    WTErr ReadFromXML(const XML::CXMLElement &element);
    XML::CXMLElement *WriteToXML() const;

    int ActivateHtmlWindow();
    int DeactivateHtmlWindow();
    int ShowHtmlWebWindow();
    int HideHtmlWebWindow();
    // Runs at once in a loaded page; before that the text waits, in order.
    int ExecuteJavaScript(const std::string &script);
    int ExecuteJavaScriptQueue();
    bool GetIsHtmlWindowOpen() const noexcept { return m_WindowOpen; }
    CStandardGUI_X *GetGUI() const noexcept { return m_pGUI; }

    void SetResourceName(const char *name) { m_ResourceName = name; }
    void SetWindowTitle(const char *title) { m_WindowTitle = title; }
    void SetWindowLocation(const WURect<short> &rect) { m_Location = rect; }
    void SetWindowOpacity(double opacity) noexcept { m_Opacity = opacity; }
    void SetWindowResizable(bool resizable) noexcept { m_Resizable = resizable; }
    void SetPinMode(bool pinned) noexcept { m_PinMode = pinned; }

    const WCFixedString<255> &GetResourceName() const noexcept { return m_ResourceName; }
    const WCFixedString<255> &GetWindowTitle() const noexcept { return m_WindowTitle; }
    const WURect<short> &GetWindowLocation() const noexcept { return m_Location; }
    short GetMinWidth() const noexcept { return m_MinWidth; }
    short GetMinHeight() const noexcept { return m_MinHeight; }
    short GetMaxWidth() const noexcept { return m_MaxWidth; }
    short GetMaxHeight() const noexcept { return m_MaxHeight; }
    double GetWindowOpacity() const noexcept { return m_Opacity; }
    int GetWindowKind() const noexcept { return m_WindowKind; }
    bool GetDeactivateWindowWhenHide() const noexcept { return m_DeactivateWhenHide; }
    bool GetPinMode() const noexcept { return m_PinMode; }
    bool IsResizable() const noexcept { return m_Resizable; }
    bool GetSaveWindowPosition() const noexcept { return m_SaveWindowPosition; }
    bool GetSaveWindowSize() const noexcept { return m_SaveWindowSize; }
    std::size_t GetJavaScriptQueueSize() const noexcept { return m_ScriptQueue.size(); }

private:
    CStandardGUI_X *m_pGUI;
    WCFixedString<255> m_WindowTitle;
    WCFixedString<255> m_ResourceName;
    WURect<short> m_Location;
    short m_MinWidth = 0;
    short m_MinHeight = 0;
    short m_MaxWidth = 0;
    short m_MaxHeight = 0;
    double m_Opacity = 1.0;
    int m_WindowKind = eEmbedded;
    bool m_DeactivateWhenHide = false;
    bool m_PinMode = false;
    bool m_Resizable = false;
    bool m_SaveWindowPosition = false;
    bool m_SaveWindowSize = false;
    bool m_WindowOpen = false;
    bool m_PageLoaded = false;
    std::deque<std::string> m_ScriptQueue;
};

MIREL_NAMESPACE_END
