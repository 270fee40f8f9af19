// A started plug-in with one GUI, read from a bundle written to a temporary folder: the world of
// the GUI layer's benchmarks. The plug-in builds no buffers and does no work, so what a
// benchmark measures is the library's own doing. Lives for the run of a benchmark program.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "core/MirelNamespace.h"
#include "resources/ResourceManager.h"

MIREL_NAMESPACE_BEGIN
class CStandardGUI_X;
class cALGORITHM;
MIREL_NAMESPACE_END

namespace mirel_bench {

class WCBenchGUI {
public:
    // `prepare` writes what the GUI needs besides its XML (pictures) into the resources folder,
    // before the bundle opens.
    WCBenchGUI(const char *name, const char *paramXML, const std::string &guiXML,
               const std::function<void(const std::filesystem::path &resources)> &prepare = {});
    ~WCBenchGUI();
    WCBenchGUI(const WCBenchGUI &) = delete;
    WCBenchGUI &operator=(const WCBenchGUI &) = delete;

    // Null when the GUI did not build.
    MIREL_NAMESPACE_NAME::CStandardGUI_X *GUI() const { return m_GUI; }
    MIREL_NAMESPACE_NAME::cALGORITHM *Algorithm() const;

private:
    std::filesystem::path m_Folder;
    MIREL_NAMESPACE_NAME::WTResContainerType *m_Container = nullptr;
    std::unique_ptr<MIREL_NAMESPACE_NAME::cALGORITHM> m_Alg;
    MIREL_NAMESPACE_NAME::CStandardGUI_X *m_GUI = nullptr;
};

} // namespace mirel_bench
