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
#include "graphic_stream/WCGraphicStreamToCairo.h"
#include "tools/shell/WCRecordingShell.h"
#include "view/PluginViewManager.h"
#include "view/WCViewCreateOptions.h"
#include "view/linux/WUHeadlessView.h"

namespace mirel_host {

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace PVM = ml::PluginViewManager;

int Step(const char *what, int err) {
    if (err != ml::eNoErr)
        std::printf("  %s -> %d (%s)\n", what, err, ml::WTErrName(err));
    return err;
}

// The view's timer period: the frames of a 60 Hz screen.
constexpr std::uint64_t kFramePeriodMs = 16;

// A headless view showing the GUI: its timer pulls a frame whenever the GUI has something to
// paint, and the painter paints each frame over the last picture.
class WCPaintedView {
public:
    WCPaintedView(ml::CStandardGUI_X &gui) : m_GUI(gui) {
        m_Painter.FollowDataPointers(true);
        m_Painter.SetKeepPicture(true);
        PVM::Init();
        PVM::WCPluginViewCreateOptions options;
        options.m_width = gui.GetViewRect().Width();
        options.m_height = gui.GetViewRect().Height();
        options.m_title = gui.GetPluginName().c_str();
        m_Error = PVM::CreatePluginView(options, m_View);
        if (m_Error != ml::eNoErr)
            return;
        gui.SetPluginView(m_View);
        PVM::SetFramePainter(m_View, [this](const char *stream, std::size_t size) {
            m_Painter.ExecStream(const_cast<char *>(stream), size);
            m_Frame.assign(stream, size);
        });
        m_Error = PVM::SetFrameSource(m_View, &gui, kFramePeriodMs);
    }
    ~WCPaintedView() {
        if (m_View != nullptr) {
            PVM::SetFrameSource(m_View, nullptr, 0);
            PVM::DisposePluginView(m_View);
        }
        m_GUI.ResetPluginView();
        PVM::Dispose();
    }
    int GetError() const { return m_Error; }
    // Runs the view's clock for `frames` timer periods.
    void Run(int frames) { PVM::AdvanceTime(kFramePeriodMs * static_cast<std::uint64_t>(frames)); }
    std::uint64_t GetFrameCount() const {
        std::uint64_t count = 0;
        PVM::GetFrameCount(m_View, count);
        return count;
    }
    const std::string &GetLastFrame() const { return m_Frame; }
    ml::miGS::WCGraphicStreamToCairo &GetPainter() { return m_Painter; }

private:
    ml::CStandardGUI_X &m_GUI;
    ml::WSPluginView *m_View = nullptr;
    ml::miGS::WCGraphicStreamToCairo m_Painter;
    std::string m_Frame;
    int m_Error = ml::eNoErr;
};

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
