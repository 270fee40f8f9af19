#include "tools/mirel-host/DemoGUI.h"

#include <filesystem>

#include <cstdio>
#include <string>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/X_CToolbarButton.h"
#include "core/WTErrors.h"
#include "tools/mirel-host/GUIFrames.h"
#include "tools/shell/WCRecordingShell.h"

namespace mirel_host {

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

void PrintGUI(const ml::CStandardGUI_X &gui) {
    const auto &rect = gui.GetViewRect();
    std::printf("    view %dx%d, %zu control(s) in drawing order:\n", rect.Width(), rect.Height(),
                gui.GetNumGUIControllers());
    ml::cALGORITHM *alg = gui.GetAlgorithm();
    for (const ml::WCGUIControl *control : gui.GetControls()) {
        std::string params;
        for (std::size_t i = 0; i < control->GetNumRegistrations(); ++i) {
            const ml::sCONTROL_PARAM *param =
                alg->GetParam(control->GetRegistration(i).GetRegisteredParam());
            params += (params.empty() ? "" : ", ") +
                      std::string(param != nullptr ? param->m_Name.c_str() : "?");
        }
        std::printf("      %-10s %-13s %s\n", control->GetName().c_str(),
                    control->GetClassType().c_str(), params.c_str());
    }
    if (gui.GetNumToolBarControls() > 0) {
        std::printf("    toolbar:");
        for (std::size_t i = 0; i < gui.GetNumToolBarControls(); ++i)
            std::printf(" %s", gui.GetToolBarControl(i)->GetType().c_str());
        std::printf("\n");
    }
    if (gui.GetNumGroups() > 0)
        std::printf("    %zu group(s), tab ring of %zu\n", gui.GetNumGroups(),
                    gui.GetTabList(false).size());
}

} // namespace

void TourGUIs(mirel_shell::WCRecordingShell &shell) {
    ml::cALGORITHM *alg = shell.Algorithm();
    std::printf("GUIs:\n");
    const struct {
        const char *id;
        const char *name;
    } guis[] = {{"1000", "Primary"}, {"1001", "Secondary"}};
    for (const auto &[id, name] : guis) {
        const int err = alg->CreateGuiAndAddToMap(nullptr, id, name);
        std::printf("  %s from GUIXML %s -> %d%s%s\n", name, id, err, err != ml::eNoErr ? " " : "",
                    err != ml::eNoErr ? ml::WTErrName(err) : "");
        if (const ml::CStandardGUI_X *gui = alg->GetGUIPtr(name))
            PrintGUI(*gui);
    }
    ml::CStandardGUI_X *primary = alg->GetGUIPtr("Primary");
    if (primary == nullptr || primary->GetNumGUIControllers() == 0) {
        std::printf("\n");
        return;
    }
    ml::WCGUIControl *first = primary->GetControlPtrByIndex(0);
    while (first->NeedToRedrawControl())
        first->UpdateRedrawControl();
    ml::BUFFER_HEADER *chain = alg->UpdateParamRequestState(first->GetLeadParamID(), 250.0);
    alg->SendAndFreeBuffers(chain, 0, true);
    shell.Idle(0, 1);
    std::printf("  a change of %s's parameter reaches it at idle: %s\n", first->GetName().c_str(),
                first->NeedToRedrawControl() ? "redraw pending" : "no redraw");
    const int disposed = alg->DisposeGuiAndRemoveFromMap("Secondary");
    std::printf("  GUI frames, painted without a window:\n");
    std::error_code err;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", err);
    ExportGUIFrames(shell, (err ? std::filesystem::current_path() : self.parent_path()).string() +
                               "/GUI-frames");
    std::printf("  dispose Secondary -> %d; GUIs left: %zu\n\n", disposed, alg->GetGUIMap().size());
}

} // namespace mirel_host
