#include "tools/mirel-host/ReplayCommand.h"

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "core/WTErrors.h"
#include "files/WUFileSystemObjects.h"
#include "tools/mirel-host/WCPaintedView.h"
#include "tools/shell/WCRecordingShell.h"
#include "view/PluginViewManager.h"
#include "view/WCEventScript.h"
#include "view/linux/WUEventScriptPlayer.h"
#include "view/linux/WUHeadlessView.h"

namespace mirel_host {

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace PVM = ml::PluginViewManager;

// Frames the view's clock runs after each message: the idle that carries a change to the
// controls and the frame that paints it fall in the first two.
constexpr int kSettleFrames = 3;

struct WSParamValue {
    double m_realWorld = 0.0;
    std::string m_text;
};

// A parameter's real-world value and its text as the plug-in displays it, with its units when
// the display leaves them out.
WSParamValue ReadValue(ml::cALGORITHM &alg, std::uint64_t id) {
    ml::sCONTROL_PARAM *param = alg.GetParam(id);
    if (param == nullptr)
        return {};
    const int setup = alg.GetActiveSetup();
    param->UpdateValueString(setup);
    WSParamValue value{param->GetRealWorld(setup), param->GetValueString().c_str()};
    const std::string units = param->GetUnits().c_str();
    if (value.m_text.empty())
        value.m_text = std::to_string(value.m_realWorld);
    if (!units.empty() && value.m_text.find(units) == std::string::npos)
        value.m_text += " " + units;
    return value;
}

std::vector<WSParamValue> ReadValues(ml::cALGORITHM &alg) {
    std::vector<WSParamValue> values;
    for (std::uint64_t id = 0; id < alg.GetNumParams(); ++id)
        values.push_back(ReadValue(alg, id));
    return values;
}

std::string DefaultFolder() {
    std::error_code err;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", err);
    return (err ? std::filesystem::current_path() : self.parent_path()).string() + "/replay-frames";
}

// Plays the script into the started plug-in's "Primary" GUI; answers an exit code.
int Replay(mirel_shell::WCRecordingShell &shell, const PVM::WCEventScript &script,
           const std::string &folder) {
    ml::cALGORITHM &alg = *shell.Algorithm();
    ml::CStandardGUI_X *gui = alg.GetGUIPtr("Primary");
    if (gui == nullptr)
        return 2;
    WCPaintedView view(*gui, &ml::CStandardGUI_X::ViewEventCallback);
    // Wheel acceleration reads the view's clock, which the script's waits advance, so a replay
    // moves the same every time.
    gui->SetInputClock(
        []() -> std::int64_t { return static_cast<std::int64_t>(PVM::GetCurrentTimeMs()) * 1000; });
    int timer = 0;
    int err = view.GetError();
    // The plug-in's idle runs on the view's clock, as a host's idle timer would.
    if (err == ml::eNoErr)
        err = PVM::StartViewTimer(
            view.GetView(), WCPaintedView::kFramePeriodMs, [&shell] { shell.Idle(0, 1); }, timer);
    if (err != ml::eNoErr) {
        std::printf("  headless view -> %d (%s)\n", err, ml::WTErrName(err));
        return 2;
    }
    gui->SetNeedToRedrawGUI();
    view.Run(kSettleFrames);
    const std::vector<WSParamValue> start = ReadValues(alg);
    const std::size_t callMark = shell.Calls().size();
    int exitCode = 0;
    const auto atFrame = [&](const std::string &name) {
        const std::string png = folder + "/" + name + ".png";
        const int written = view.GetPainter().WriteToPNG(png.c_str());
        std::printf("frame %s: %s", name.c_str(), png.c_str());
        if (written != ml::eNoErr) {
            std::printf(" not written: %d (%s)\n", written, ml::WTErrName(written));
            exitCode = 4;
            return written;
        }
        std::printf("\n");
        for (std::uint64_t id = 0; id < start.size(); ++id) {
            const WSParamValue now = ReadValue(alg, id);
            if (now.m_realWorld != start[id].m_realWorld)
                std::printf("  %-12s %s -> %s\n", alg.GetParam(id)->m_Name.c_str(),
                            start[id].m_text.c_str(), now.m_text.c_str());
        }
        return ml::eNoErr;
    };
    err = PVM::PlayEventScript(view.GetView(), script, atFrame,
                               WCPaintedView::kFramePeriodMs * kSettleFrames);
    if (err != ml::eNoErr && exitCode == 0) {
        std::printf("play stopped: %d (%s)\n", err, ml::WTErrName(err));
        exitCode = 3;
    }
    std::size_t chains = 0, buffers = 0;
    const auto &calls = shell.Calls();
    for (std::size_t i = callMark; i < calls.size(); ++i)
        if (calls[i].op == 0) {
            ++chains;
            buffers += static_cast<std::size_t>(calls[i].arg1);
        }
    std::printf("the process side received %zu buffer chain(s), %zu buffer(s), during the play\n",
                chains, buffers);
    if (const int drawError = view.GetPainter().GetFirstDrawError(); drawError != ml::eNoErr)
        std::printf("painting: %d (%s)\n", drawError, ml::WTErrName(drawError));
    PVM::StopViewTimer(timer);
    return exitCode;
}

} // namespace

void PrintReplayUsage(std::FILE *out, bool alone) {
    std::fprintf(out, "%s mirel-host replay SCRIPT [--out FOLDER] [plug-in module]\n",
                 alone ? "usage:" : "      ");
}

int RunReplayCommand(int argc, char **argv, const char *defaultModule) {
    const char *scriptPath = nullptr;
    const char *module = defaultModule;
    std::string folder;
    for (int i = 0; i < argc; ++i) {
        if (std::strcmp(argv[i], "--out") == 0 && i + 1 < argc)
            folder = argv[++i];
        else if (argv[i][0] == '-' || (scriptPath != nullptr && module != defaultModule))
            return PrintReplayUsage(stderr, true), 1;
        else if (scriptPath == nullptr)
            scriptPath = argv[i];
        else
            module = argv[i];
    }
    if (scriptPath == nullptr)
        return PrintReplayUsage(stderr, true), 1;
    PVM::WCEventScript script;
    if (script.ReadFromFile(scriptPath) != ml::eNoErr) {
        std::fprintf(stderr, "%s\n", script.GetLastError().c_str());
        return 2;
    }
    if (folder.empty())
        folder = DefaultFolder();
    if (const int err = ml::FM::CreateFolder(ml::FM::WCStPath(folder.c_str())); err != ml::eNoErr) {
        std::fprintf(stderr, "cannot make %s: %d (%s)\n", folder.c_str(), err, ml::WTErrName(err));
        return 4;
    }
    mirel_shell::WCRecordingShell shell;
    int err = shell.Open(module);
    if (err == ml::eNoErr)
        err = shell.Algorithm()->CreateGuiAndAddToMap(nullptr, "1000", "Primary");
    if (err != ml::eNoErr) {
        std::printf("the plug-in did not start: %d (%s)\n", err, ml::WTErrName(err));
        return 2;
    }
    std::printf("replaying %s (%zu step(s)) into %s:\n", scriptPath, script.GetSteps().size(),
                shell.Instance().m_ShortName.c_str());
    const int exitCode = Replay(shell, script, folder);
    shell.Stop();
    return exitCode;
}

} // namespace mirel_host
