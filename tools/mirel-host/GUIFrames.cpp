#include "tools/mirel-host/GUIFrames.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "core/WTErrors.h"
#include "files/WUFileSystemObjects.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "tools/mirel-host/WCPaintedView.h"
#include "tools/shell/WCRecordingShell.h"

namespace mirel_host {

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

int Step(const char *what, int err) {
    if (err != ml::eNoErr)
        std::printf("  %s -> %d (%s)\n", what, err, ml::WTErrName(err));
    return err;
}

// `bytes` as a writer's stream, for the GUI's file writers.
int WriteFrame(ml::CStandardGUI_X &gui, const std::string &bytes, const char *format,
               const std::string &name) {
    ml::Utils::WCStMemObj copy;
    copy.Assign(bytes.data(), bytes.size());
    ml::miGS::WCGraphicStreamBinaryWriter writer(copy, 0);
    return gui.WriteGraphicStreamToFile(writer, format, name.c_str());
}

} // namespace

int ExportGUIFrames(mirel_shell::WCRecordingShell &shell, const std::string &folder) {
    ml::cALGORITHM *alg = shell.Algorithm();
    ml::CStandardGUI_X *gui = alg->GetGUIPtr("Primary");
    if (gui == nullptr)
        return Step("the Primary GUI", ml::kErrNoGUI);
    if (const int err = ml::FM::CreateFolder(ml::FM::WCStPath(folder.c_str())); err != ml::eNoErr)
        return Step("making the folder", err);
    ml::WCFixedString<63> name;
    alg->GetAlgName(name);
    const std::string base = std::string(name.c_str()) + "-Primary";
    gui->SetGraphicStreamDumpFolder(folder.c_str());

    WCPaintedView view(*gui);
    if (view.GetError() != ml::eNoErr)
        return Step("headless view", view.GetError());
    // Idle first: what the start left for the controls reaches them before the first picture.
    shell.Idle(0, 1);
    gui->SetNeedToRedrawGUI();
    view.Run(4);
    const std::uint64_t framesBefore = view.GetFrameCount();

    ml::WCGUIControl *first = gui->GetControlPtrByIndex(0);
    if (first != nullptr && first->GetNumRegistrations() > 0) {
        ml::BUFFER_HEADER *chain = alg->UpdateParamRequestState(first->GetLeadParamID(), 250.0);
        alg->SendAndFreeBuffers(chain, 0, true);
        shell.Idle(0, 1);
    }
    view.Run(1);
    const std::string minimal = view.GetLastFrame();
    const std::size_t dirty = gui->GetDirtyRects().size();
    view.Run(4);
    std::printf("  view timer: %llu frame(s) for the first picture, then %llu for the change of "
                "%s, the first of them %zu bytes for %zu dirty rect(s)\n",
                static_cast<unsigned long long>(framesBefore),
                static_cast<unsigned long long>(view.GetFrameCount() - framesBefore),
                first != nullptr ? first->GetName().c_str() : "nothing", minimal.size(), dirty);
    int result =
        Step("minimal frame to yaml", WriteFrame(*gui, minimal, "yaml", base + "-minimal"));
    const std::string png = folder + "/" + base + ".png";
    if (const int err = view.GetPainter().WriteToPNG(png.c_str()); err != ml::eNoErr)
        result = Step("picture", err);
    if (const int err = view.GetPainter().GetFirstDrawError(); err != ml::eNoErr)
        Step("painting", err);
    // The SVG and YAML files show a whole frame of the new state.
    ml::miGS::WCGraphicStreamBinaryWriter writer(0);
    gui->SetNeedToRedrawGUI();
    if (const int err = gui->GetDrawInstructions(writer); err != ml::eNoErr)
        return Step("full frame after the change", err);
    for (const char *format : {"svg", "yaml", "gs"})
        if (const int err =
                Step(format, gui->WriteGraphicStreamToFile(writer, format, base.c_str()));
            result == ml::eNoErr)
            result = err;
    for (const char *suffix : {".png", ".svg", ".yaml", ".gs", "-minimal.yaml"})
        std::printf("  wrote %s/%s%s\n", folder.c_str(), base.c_str(), suffix);
    return result;
}

int RunGUICommand(int argc, char **argv, const char *defaultModule) {
    std::string folder;
    const char *module = defaultModule;
    for (int i = 0; i < argc; ++i) {
        if (std::strcmp(argv[i], "--out") == 0 && i + 1 < argc)
            folder = argv[++i];
        else
            module = argv[i];
    }
    if (folder.empty()) {
        std::error_code err;
        const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", err);
        folder = (err ? std::filesystem::current_path() : self.parent_path()).string();
        folder += "/GUI-frames";
    }
    mirel_shell::WCRecordingShell shell;
    ml::MirelComponentInfo info;
    if (Step("load", shell.LoadModule(module)) != ml::eNoErr ||
        Step("component", shell.GetModuleComponentInfo(0, info)) != ml::eNoErr ||
        Step("create", shell.Create(info)) != ml::eNoErr ||
        Step("start", shell.Start()) != ml::eNoErr)
        return 2;
    std::printf("GUI frames of %s:\n", info.m_ShortName.c_str());
    int err =
        Step("Primary GUI", shell.Algorithm()->CreateGuiAndAddToMap(nullptr, "1000", "Primary"));
    if (err == ml::eNoErr)
        err = ExportGUIFrames(shell, folder);
    shell.Stop();
    return err == ml::eNoErr ? 0 : 1;
}

} // namespace mirel_host
