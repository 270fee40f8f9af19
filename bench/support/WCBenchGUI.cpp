#include "bench/support/WCBenchGUI.h"

#include <cstring>
#include <fstream>
#include <string>

#include <unistd.h>

#include "Code/GUI/CStandardGUI_X.h"
#include "tests/support/WCSilentAlgorithm.h"

namespace mirel_bench {

namespace ml = MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;

namespace {

class WCPlugin : public mirel_test::WCSilentAlgorithm {
public:
    WCPlugin(ml::MirelComponentInfo const &info, ml::WTResContainerType *&container,
             const char *name, const char *paramXML)
        : WCSilentAlgorithm(info, container), m_ParamXML(paramXML) {
        SetAlgName(name);
    }

protected:
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(m_ParamXML, std::strlen(m_ParamXML));
    }

private:
    const char *m_ParamXML;
};

} // namespace

WCBenchGUI::WCBenchGUI(const char *name, const char *paramXML, const std::string &guiXML,
                       const std::function<void(const fs::path &)> &prepare) {
    m_Folder = fs::temp_directory_path() /
               ("mirel-bench-" + std::string(name) + "-" + std::to_string(::getpid()));
    const fs::path bundle = m_Folder / (std::string(name) + ".bundle");
    const fs::path resources = bundle / "Contents/Resources";
    fs::create_directories(resources / "GUIXML");
    std::ofstream(resources / "resource_config.yaml")
        << "Extensions:\n  GUIXML: .xml\n  PNG_: .png\n";
    std::ofstream(resources / "GUIXML/1000.xml") << guiXML;
    if (prepare)
        prepare(resources);
    ml::RM::OpenResContainer(bundle.c_str(), 0, m_Container);
    ml::MirelComponentInfo info;
    m_Alg = std::make_unique<WCPlugin>(info, m_Container, name, paramXML);
    m_Alg->FinishCreate();
    m_Alg->DoIdle(0);
    if (m_Alg->CreateGuiAndAddToMap(nullptr, "1000", "Primary") == 0)
        m_GUI = m_Alg->GetGUIPtr("Primary");
}

WCBenchGUI::~WCBenchGUI() {
    m_Alg.reset();
    ml::RM::CloseResContainer(m_Container);
    ml::RM::Dispose();
    std::error_code err;
    fs::remove_all(m_Folder, err);
}

ml::cALGORITHM *WCBenchGUI::Algorithm() const {
    return m_Alg.get();
}

} // namespace mirel_bench
