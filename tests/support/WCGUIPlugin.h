#pragma once

#include <filesystem>
#include <string>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "tools/shell/WCRecordingShell.h"
#include "view/WCEventData.h"

namespace mirel_test {

// A plug-in of the test's parameters, started through the recording shell, with its main GUI
// read from a bundle written into the test's home: the world of the GUI layer's tests. Each
// parameter change sends one coefficient word, so a test counts what reaches the process side;
// a quiet plug-in sends nothing, so that what a test counts is the library's own doing.
class WCGUIPlugin {
public:
    WCGUIPlugin() = default;
    ~WCGUIPlugin();
    WCGUIPlugin(const WCGUIPlugin &) = delete;
    WCGUIPlugin &operator=(const WCGUIPlugin &) = delete;

    // Writes "<home>/<name>.bundle" with `guiXML` as the GUI XML 1000 and starts the plug-in
    // with `paramXML` (kept, not copied); a step that fails is a test failure. The bundle has
    // the pictures of the example plug-in as its "PNG_" resources (ids 2000 to 2099, drawn at
    // build time), so that a test's controls draw real images.
    void Start(const std::filesystem::path &home, const char *name, const char *paramXML,
               const std::string &guiXML);
    // Stops the plug-in and closes the bundle; the destructor does it too.
    // Ends the plug-in, and the view manager when OpenView started it.
    void Stop();
    // A view of `width` by `height` pixels on the headless desktop, shown by the GUI; a step that
    // fails is a test failure.
    void OpenView(short width, short height);
    MIREL_NAMESPACE_NAME::WSPluginView *View() const { return m_View; }

    MIREL_NAMESPACE_NAME::CStandardGUI_X *GUI() const { return m_GUI; }
    MIREL_NAMESPACE_NAME::cALGORITHM *Algorithm() const;
    mirel_shell::WCRecordingShell &Shell() { return m_Shell; }
    void SetQuiet(bool quiet);
    // How many chains the process side was sent since the log was last cleared.
    int Sends() const;

    // The left button at view pixels, straight to the GUI's handlers, as a single click's press,
    // moves and release; a handler's refusal is a test failure.
    void Down(short x, short y);
    void Move(short x, short y);
    void Up(short x, short y);
    void Click(short x, short y);

private:
    class WCAlgorithm;
    MIREL_NAMESPACE_NAME::WTResContainerType *m_Container = nullptr;
    mirel_shell::WCRecordingShell m_Shell;
    WCAlgorithm *m_Alg = nullptr;
    MIREL_NAMESPACE_NAME::CStandardGUI_X *m_GUI = nullptr;
    bool m_Started = false;
    MIREL_NAMESPACE_NAME::WSPluginView *m_View = nullptr;
    MIREL_NAMESPACE_NAME::PluginViewManager::WCEventData m_Event;

    MIREL_NAMESPACE_NAME::PluginViewManager::WCEventData &Event(short x, short y, bool pressed);
};

} // namespace mirel_test
