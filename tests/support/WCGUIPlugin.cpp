#include "tests/support/WCGUIPlugin.h"

#include <cstring>
#include <fstream>

#include <gtest/gtest.h>

#include "resources/ResourceManager.h"
#include "tests/support/WCSilentAlgorithm.h"
#include "view/PluginViewManager.h"

namespace mirel_test {

namespace ml = MIREL_NAMESPACE_NAME;

class WCGUIPlugin::WCAlgorithm : public WCSilentAlgorithm {
public:
    WCAlgorithm(ml::MirelComponentInfo const &info, ml::WTResContainerType *&container,
                const char *paramXML)
        : WCSilentAlgorithm(info, container), m_ParamXML(paramXML) {}
    bool m_Quiet = false;

protected:
    void InitProcessCodeSelf() override {
        DSPReqRes().coefsWords = 1;
        DSPReqRes().cycles = 1;
    }
    BUFFER_HEADER *UpdateParamSelf(std::uint64_t) override {
        return m_Quiet ? nullptr : PrepareCoefBufferWithBypass(0, 1, true);
    }
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(m_ParamXML, std::strlen(m_ParamXML));
    }

private:
    const char *m_ParamXML;
};

WCGUIPlugin::~WCGUIPlugin() {
    Stop();
}

void WCGUIPlugin::Start(const std::filesystem::path &home, const char *name, const char *paramXML,
                        const std::string &guiXML) {
    const std::filesystem::path bundle = home / (std::string(name) + ".bundle");
    const std::filesystem::path resources = bundle / "Contents/Resources";
    std::filesystem::create_directories(resources / "GUIXML");
    std::ofstream(resources / "resource_config.yaml")
        << "Extensions:\n  GUIXML: .xml\n  PNG_: .png\n";
    std::ofstream(resources / "GUIXML/1000.xml") << guiXML;
    std::error_code error;
    std::filesystem::copy(MIREL_EXAMPLE_IMAGES, resources / "PNG_",
                          std::filesystem::copy_options::recursive |
                              std::filesystem::copy_options::overwrite_existing,
                          error);
    ASSERT_FALSE(error) << "the example's pictures, " << MIREL_EXAMPLE_IMAGES << ": "
                        << error.message();
    ASSERT_EQ(ml::RM::OpenResContainer(bundle.c_str(), 0, m_Container), 0);
    m_Started = true;
    ml::MirelComponentInfo info;
    info.m_ComponentType = ml::WCFourCC("Nati");
    ASSERT_EQ(m_Shell.Create(
                  info,
                  [this, paramXML](ml::MirelComponentInfo const &component,
                                   ml::WTResContainerType *&container) {
                      container = m_Container;
                      return m_Alg = new WCAlgorithm(component, container, paramXML);
                  },
                  [](ml::cALGORITHM *alg) { delete alg; }),
              0);
    ASSERT_EQ(m_Shell.Start(), 0);
    ASSERT_EQ(m_Alg->CreateGuiAndAddToMap(nullptr, "1000", "Primary"), 0);
    m_GUI = m_Alg->GetGUIPtr("Primary");
    m_Shell.ClearLog();
}

void WCGUIPlugin::OpenView(short width, short height) {
    ASSERT_NE(m_GUI, nullptr);
    ASSERT_EQ(ml::PluginViewManager::Init(), 0);
    ml::PluginViewManager::WCPluginViewCreateOptions options;
    options.m_width = width;
    options.m_height = height;
    ASSERT_EQ(ml::PluginViewManager::CreatePluginView(options, m_View), 0);
    m_GUI->SetPluginView(m_View);
}

void WCGUIPlugin::Stop() {
    if (m_View != nullptr && m_GUI != nullptr)
        m_GUI->SetPluginView(nullptr);
    if (m_Started) {
        m_Started = false;
        m_Shell.Stop();
        m_GUI = nullptr;
        m_Alg = nullptr;
        ml::RM::CloseResContainer(m_Container);
        ml::RM::Dispose();
    }
    if (m_View != nullptr) {
        ml::PluginViewManager::Dispose();
        m_View = nullptr;
    }
}

ml::cALGORITHM *WCGUIPlugin::Algorithm() const {
    return m_Alg;
}

void WCGUIPlugin::SetQuiet(bool quiet) {
    if (m_Alg != nullptr)
        m_Alg->m_Quiet = quiet;
}

int WCGUIPlugin::Sends() const {
    int sends = 0;
    for (const auto &call : m_Shell.Calls())
        sends += call.op == ml::eExecSendBuffers;
    return sends;
}

namespace PVM = ml::PluginViewManager;

PVM::WCEventData &WCGUIPlugin::Event(short x, short y, bool pressed) {
    m_Event.SetMouseClickCount(PVM::eClickSingle);
    m_Event.SetMouseButtonPressed(PVM::eMouseButtonLeft, pressed);
    m_Event.SetMouseLocation({x, y});
    return m_Event;
}

void WCGUIPlugin::Down(short x, short y) {
    m_Event.SetMouseDownLocation({x, y});
    EXPECT_EQ(m_GUI->DoMouseDown(Event(x, y, true)), 0);
}

void WCGUIPlugin::Move(short x, short y) {
    EXPECT_EQ(m_GUI->DoMouseMove(Event(x, y, true)), 0);
}

void WCGUIPlugin::Up(short x, short y) {
    EXPECT_EQ(m_GUI->DoMouseUp(Event(x, y, false)), 0);
}

void WCGUIPlugin::Click(short x, short y) {
    Down(x, y);
    Up(x, y);
}

} // namespace mirel_test
