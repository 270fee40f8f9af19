// The command-line host: drives the run-time from a shell.
//   mirel-host version          the library's version and a few error names
//   mirel-host demo [module]    loads a plug-in module (the example GainFilter by default),
//                               walks its life cycle and prints what it answered
//   mirel-host preset print FILE / preset convert [--index N] IN OUT
//                               shows a preset file, or writes it in the other form
//   mirel-host gui [--out FOLDER] [module]
//                               paints the plug-in's main GUI to PNG, SVG and YAML files
//   mirel-host replay SCRIPT [--out FOLDER] [module]
//                               plays an event script into the main GUI, painting its frame marks

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <map>
#include <numbers>
#include <string>
#include <vector>

#include "Code/Algorithm/MirelAPI3Internal.h"
#include "Code/Algorithm/PluginInfoSelectors.h"
#include "Code/Process/WUNativeProcess.h"
#include "Code/Process/WUProcessorSpec.h"
#include "core/MirelNamespace.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"
#include "resources/ResourceManager.h"
#include "tools/mirel-host/DemoGUI.h"
#include "tools/mirel-host/DemoPresets.h"
#include "tools/mirel-host/GUIFrames.h"
#include "tools/mirel-host/PresetCommand.h"
#include "tools/mirel-host/ReplayCommand.h"
#include "tools/shell/WCRecordingShell.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

int PrintVersion() {
    std::printf("MirelLib %s (namespace %s)\n", MIREL_VERSION_STRING, MIREL_NAMESPACE_TEXT);
    for (ml::WTErr code : {ml::eNoErr, ml::eFMFileNotFound, ml::eRMResNotFound, ml::eMemNullPointer,
                           ml::eXMLParserFailed, ml::eKeyNotFound, ml::kErrSharingViolation})
        std::printf("%8d  %s\n", code, ml::WTErrName(code));
    return 0;
}

void PrintUsage(std::FILE *out) {
    std::fprintf(out, "usage: mirel-host version\n"
                      "       mirel-host demo [plug-in module]\n"
                      "       mirel-host gui [--out FOLDER] [plug-in module]\n");
    mirel_host::PrintReplayUsage(out, false);
    mirel_host::PrintPresetUsage(out, false);
}

char const *OpName(int op) {
    switch (op) {
    case 0: return "send";
    case 1: return "send-init";
    case 3: return "chain";
    case 4: return "free";
    case 5: return "new-buffer";
    case 7: return "write-frac-converter";
    case 8: return "write-int-converter";
    case 9: return "read-frac-converter";
    case 10: return "read-int-converter";
    case 11: return "locate-flag";
    case 12: return "word-size";
    case 13: return "write-fix-converter";
    case 14: return "read-fix-converter";
    case 20: return "write-dfrac-converter";
    case 21: return "read-dfrac-converter";
    case 36: return "shell-event";
    case 74: return "side-chain";
    case 78: return "batch";
    default: return "?";
    }
}

void PrintCode(char const *what, int code) {
    std::printf("  %-34s -> %d (%s)\n", what, code, ml::WTErrName(code));
}

// Prints the exec calls logged since `from`, folding repeats of one op into a count.
void PrintExecCalls(mirel_shell::WCRecordingShell const &shell, std::size_t from) {
    auto const &calls = shell.Calls();
    for (std::size_t i = from; i < calls.size();) {
        std::size_t j = i;
        while (j < calls.size() && calls[j].op == calls[i].op)
            ++j;
        std::printf("    op %2d %-22s", calls[i].op, OpName(calls[i].op));
        if (j - i > 1)
            std::printf(" x%zu", j - i);
        else if (calls[i].op == 0 || calls[i].op == 1 || calls[i].op == 4)
            std::printf(" (%lld buffer(s))", static_cast<long long>(calls[i].arg1));
        else if (calls[i].op == 5)
            std::printf(" (kind %lld, %lld word(s))", static_cast<long long>(calls[i].arg1),
                        static_cast<long long>(calls[i].arg2));
        std::printf("\n");
        i = j;
    }
}

void PrintSelectors(ml::PluginInstance &instance) {
    std::printf("selectors:\n");
    ml::WCFixedString<1023> text;
    for (char const *sel : {"sAlN", "algT", "sPFN", "cost"}) {
        text.clear();
        const int err =
            ml::GetPluginInfo_WCFixedString(instance, ml::WCFourCC::FromText(sel), text, 0);
        std::printf("  string  '%s' -> %d \"%s\"\n", sel, err, text.c_str());
    }
    text = "unchanged";
    int err = ml::GetPluginInfo_WCFixedString(instance, ml::WCFourCC("cost"), text, 5);
    std::printf("  string  'cost' arg 5 -> %d (%s) \"%s\"\n", err, ml::WTErrName(err),
                text.c_str());
    for (char const *sel : {"pact", "byps", "issb", "susp"}) {
        bool value = false;
        err = ml::GetPluginInfo_bool(instance, ml::WCFourCC::FromText(sel), value, 0);
        std::printf("  bool    '%s' -> %d %s\n", sel, err, value ? "true" : "false");
    }
    for (char const *sel : {"inpu", "outp", "gncf", "maxr"}) {
        std::int32_t value = 0;
        err = ml::GetPluginInfo_int32_t(instance, ml::WCFourCC::FromText(sel), value, 0);
        std::printf("  int32   '%s' -> %d %d\n", sel, err, value);
    }
    for (char const *sel : {"Orrt", "Metr", "cont", "gCon"}) {
        std::uint32_t value = 0;
        err = ml::GetPluginInfo_uint32_t(instance, ml::WCFourCC::FromText(sel), value, 0);
        std::printf("  uint32  '%s' -> %d %u\n", sel, err, value);
    }
    double number = 0.0;
    err = ml::GetPluginInfo_double(instance, ml::WCFourCC("pnst"), number, 0);
    std::printf("  double  'pnst' -> %d %.1f\n", err, number);
    float ratio = 0.0f;
    err = ml::GetPluginInfo_float(instance, ml::WCFourCC("moir"), ratio, 0);
    std::printf("  float   'moir' -> %d %.1f\n", err, ratio);
    std::size_t size = 0;
    err = ml::GetPluginInfo_size_t(instance, ml::WCFourCC("cais"), size, 0);
    std::printf("  size_t  'cais' -> %d %zu\n", err, size);
    err = ml::GetPluginInfo_size_t(instance, ml::WCFourCC("FcPC"), size, 0);
    std::printf("  size_t  'FcPC' -> %d (%s)\n", err, ml::WTErrName(err));
    err = ml::GetPluginInfo_double(instance, ml::WCFourCC("zzzz"), number, 0);
    std::printf("  double  'zzzz' -> %d (%s)\n", err, ml::WTErrName(err));
}

void PrintRequests(ml::PluginInstance &instance) {
    std::printf("named requests:\n");
    struct WSCall {
        char const *name;
        int (*function)(ml::MirelAPI3Internal::Request &);
        char const *request;
    };
    const WSCall calls[] = {
        {"GetAutomationControlIndexByName", &ml::MirelAPI3Internal::GetAutomationControlIndexByName,
         R"({"params":{"control_name":"Gain"}})"},
        {"GetPluginValue_double", &ml::MirelAPI3Internal::GetPluginValue_double,
         R"({"params":{"key":"samplerate"}})"},
        {"GetPluginValue_c_str", &ml::MirelAPI3Internal::GetPluginValue_c_str,
         R"({"params":{"key":"no such key"}})"},
        {"GetPresetCompatibleSubComps", &ml::MirelAPI3Internal::GetPresetCompatibleSubComps, "{}"},
        {"InsideWhichControl", &ml::MirelAPI3Internal::InsideWhichControl,
         R"({"params":{"x":10,"y":true,"gui_name":"Secondary"}})"},
        {"GetAutomationRefCons", &ml::MirelAPI3Internal::GetAutomationRefCons,
         R"({"params":{"control_index":"first"}})"},
    };
    for (auto const &call : calls) {
        ml::WSMirelAPI3_RawRequest raw;
        raw.m_pInstance = &instance;
        ml::WCMirelAPI3_PluginSide_RequestAndResponse request;
        request.m_pRawRequest = &raw;
        request.m_Request = nlohmann::json::parse(call.request);
        try {
            const int err = call.function(request);
            std::printf("  %-32s %s -> %d %s%s%s\n", call.name, call.request, err,
                        request.m_Response.dump().c_str(), request.m_ErrorText.empty() ? "" : " ",
                        request.m_ErrorText.c_str());
        } catch (nlohmann::json::type_error const &error) {
            std::printf("  %-32s %s -> type error: %s\n", call.name, call.request, error.what());
        }
    }
}

// Prints each buffer of a chain as the process side will receive it: where it writes and the
// words it carries, as hex and as a fraction.
void PrintChain(ml::BUFFER_HEADER const *chain) {
    if (chain == nullptr)
        std::printf("    (no buffer: nothing to send)\n");
    for (; chain != nullptr; chain = chain->next) {
        std::printf("    buffer kind %d op %d marker %d offset %d count %d:", chain->kind,
                    chain->memOp, chain->coefMarker, chain->offset, chain->count);
        for (int i = 0; i < chain->count && chain->data != nullptr; ++i) {
            std::uint32_t word = 0;
            float fraction = 0.0f;
            std::memcpy(&word, static_cast<char const *>(chain->data) + 4 * i, 4);
            std::memcpy(&fraction, &word, 4);
            std::printf(" 0x%08x (%.4f)", word, fraction);
        }
        std::printf("\n");
    }
}

// One change through the update pipeline: the chain it answered, then its send.
void SendChange(mirel_shell::WCRecordingShell &shell, char const *what, ml::BUFFER_HEADER *chain) {
    std::printf("  %s\n", what);
    PrintChain(chain);
    const std::size_t mark = shell.Calls().size();
    const int err = shell.Algorithm()->SendAndFreeBuffers(chain, 0, true);
    PrintExecCalls(shell, mark);
    std::printf("    SendAndFreeBuffers -> %d; process side now holds gain %.4f b0 %.4f a1 %.4f\n",
                err, shell.CoefAsFloat(0), shell.CoefAsFloat(1), shell.CoefAsFloat(2));
}

// Parameter changes from each source, down to the coefficient words the process side received.
void ChangeParameters(mirel_shell::WCRecordingShell &shell) {
    ml::cALGORITHM &alg = *shell.Algorithm();
    std::uint64_t gain = 0, cutoff = 0;
    alg.GetParamIDFromName("Gain", gain);
    alg.GetParamIDFromName("Cutoff", cutoff);
    std::printf("parameter changes through the update pipeline:\n");
    SendChange(shell, "UpdateParamRequestState(Gain, 500) (state 500 of -24..12 dB is -6 dB)",
               alg.UpdateParamRequestState(gain, 500.0));
    SendChange(shell, "UpdateParamRequestState(Gain, 500) again (a repeat)",
               alg.UpdateParamRequestState(gain, 500.0));
    ml::cALGORITHM::ETranslateTextRetType ret = ml::cALGORITHM::eTranslateTextNotHandled;
    SendChange(shell, "UpdateParamFromText(Cutoff, \"2k\")",
               alg.UpdateParamFromText(cutoff, "2k", ret));
    SendChange(shell, "UpdateParamRequestRealWorld(Cutoff, 500 Hz)",
               alg.UpdateParamRequestRealWorld(cutoff, 500.0));
    std::printf("  idle makes the value texts:");
    alg.DoIdle(0);
    for (std::uint64_t id : {gain, cutoff})
        std::printf(" %s \"%s\"", alg.GetParam(id)->m_Name.c_str(),
                    alg.GetParam(id)->GetValueString().c_str());
    std::printf("\n");
}

// One idle tick reads the plug-in's meters from the state words the audio code left (resetting
// their peak holds) and makes their texts; prints each.
void PrintMeters(ml::cALGORITHM &alg) {
    ml::WCMeterManager &meters = alg.GetMeterManager();
    alg.DoIdle(0);
    for (std::uint32_t index = 0; index < meters.GetNumMeters(); ++index) {
        double value = 0.0;
        meters.GetMeterValue(index, value);
        const std::uint64_t id = meters.GetMeters()[index].m_ParamID;
        if (alg.GetParam(id) == nullptr)
            continue;
        std::printf("   meter %s %s (peak word %.3f)", alg.GetParam(id)->m_Name.c_str(),
                    alg.GetParam(id)->GetValueString().c_str(), value);
    }
    std::printf("\n");
}

// Runs one second of two test tones through the plug-in's audio code, as the bundle keeps it
// for this machine's processor, over the coefficient and state words the plug-in placed in the
// shell's process memory.
void RunAudio(mirel_shell::WCRecordingShell &shell) {
    ml::cALGORITHM &alg = *shell.Algorithm();
    ml::FM::WCStPath bundle;
    if (shell.Container() != nullptr)
        ml::RM::GetContainerPath(shell.Container(), bundle);
    const ml::ProcessorType cpu = ml::GetCPUTypeForBundle(bundle);
    ml::WTNativeProcessFunction process = nullptr;
    std::uint64_t size = 0;
    const int err = alg.GetNSProcess(cpu, ml::GetCurrentOSType(), &process, &size);
    if (err != 0) {
        std::printf("audio: no native build of the audio code could be loaded (%d)\n", err);
        return;
    }
    ml::WCFixedString<63> processor;
    ml::ProcessorName(shell.DSPReqRes().processor, processor);
    std::printf("process build: %s (machine %s; description for %s, %d cycles; module %llu "
                "bytes)\n",
                ml::GetNativeProcessDisplayName(alg.GetLoadedNativeProcessType()),
                ml::GetCPUTypeString(cpu), processor.c_str(), shell.DSPReqRes().cycles,
                static_cast<unsigned long long>(size));
    const int rate = shell.Algorithm()->GetSampleRate();
    std::printf("audio through the placed coefficients (%d Hz):\n", rate);
    for (double tone : {100.0, 10000.0}) {
        std::vector<float> in(2 * rate), out(2 * rate);
        for (int i = 0; i < rate; ++i)
            in[2 * i] = in[2 * i + 1] =
                static_cast<float>(0.5 * std::sin(2.0 * std::numbers::pi * tone * i / rate));
        process(shell.CoefWords(), shell.StateWords(), in.data(), out.data(), rate);
        double inPower = 0.0, outPower = 0.0;
        for (int i = rate / 2; i < rate; ++i) {
            inPower += in[2 * i] * in[2 * i];
            outPower += out[2 * i] * out[2 * i];
        }
        std::printf("  %7.0f Hz tone: %+6.1f dB", tone, 10.0 * std::log10(outPower / inPower));
        PrintMeters(alg);
    }
}

// What the bundle's "AlgXML" and "ParamXML" made of the algorithm.
void PrintBundleResources(ml::cALGORITHM &alg) {
    ml::WCFixedString<63> name;
    ml::WCFixedString<15> shortName;
    alg.GetAlgName(name);
    alg.GetAlgNameOfLength(3, shortName);
    std::printf("algorithm XML: name \"%s\" (\"%s\"), undo depth %llu, refresh %u Hz, "
                "sample based %s\n",
                name.c_str(), shortName.c_str(),
                static_cast<unsigned long long>(alg.GetUndoLevel()), alg.GetOptimalRefreshRate(),
                alg.GetPluginValue_bool("IsSampleBased", false) ? "yes" : "no");
    std::printf("parameter XML: %llu parameter(s)\n",
                static_cast<unsigned long long>(alg.GetNumParams()));
    for (std::uint64_t id = 0; id < alg.GetNumParams(); ++id) {
        ml::sCONTROL_PARAM &param = *alg.GetParam(id);
        param.UpdateValueString(0);
        std::printf("  %llu %-8s state %6.1f  %s\n", static_cast<unsigned long long>(id),
                    param.m_Name.c_str(), param.GetState(0), param.GetValueString().c_str());
    }
}

// Saves both setups as a preset file, moves the gain, then loads the file back and sends the
// recomputed coefficients; the host's chunk of the same state is shown by its size.
int Demo(char const *modulePath) {
    PrintVersion();
    mirel_shell::WCRecordingShell shell;
    std::printf("\nloading %s\n", modulePath);
    int err = shell.LoadModule(modulePath);
    if (err != ml::eNoErr) {
        std::printf("cannot load the plug-in module: %d (%s)\n", err, ml::WTErrName(err));
        return 1;
    }
    ml::MirelComponentInfo info;
    err = shell.GetModuleComponentInfo(0, info);
    if (err != ml::eNoErr) {
        std::printf("the module lists no component: %d (%s)\n", err, ml::WTErrName(err));
        return 1;
    }
    std::printf("component: %s type '%s' sub-type '%s' version %s\n", info.m_ShortName.c_str(),
                info.m_ComponentType.GetString().c_str(),
                info.m_ComponentSubType.GetString().c_str(),
                info.m_InternalVersion.GetString(4).c_str());

    std::printf("\nlife cycle:\n");
    err = shell.Create(info);
    PrintCode("create (steps 1-4)", err);
    if (err == ml::eNoErr) {
        err = shell.Start();
        PrintCode("start (steps 5-10)", err);
    }
    for (auto const &step : shell.Steps())
        std::printf("    %s\n", step.c_str());
    std::printf("exec callback so far:\n");
    PrintExecCalls(shell, 0);
    if (err != ml::eNoErr) {
        shell.Stop();
        return 1;
    }
    auto const &needs = shell.DSPReqRes();
    std::printf("process needs: %u coefficient(s), %u state(s), %d in, %d out, max %d Hz\n",
                needs.coefsWords, needs.statesWords, needs.inputs, needs.outputs,
                needs.maxSampleRate);

    std::printf("\n");
    PrintBundleResources(*shell.Algorithm());
    std::printf("\n");
    PrintSelectors(shell.Instance());
    std::printf("\n");
    PrintRequests(shell.Instance());

    std::printf("\n");
    ChangeParameters(shell);
    std::printf("\n");
    mirel_host::TourPresets(shell);
    mirel_host::TourGUIs(shell);
    RunAudio(shell);

    std::printf("\nidle:\n");
    PrintCode("DoIdle x5", shell.Idle(0, 5));
    double idleCalls = 0.0;
    idleCalls = shell.Algorithm()->KeyValues().GetAs<double>("num_DoIdle_calls", -1.0);
    std::printf("  num_DoIdle_calls = %.0f\n", idleCalls);

    std::printf("\nteardown:\n");
    const std::size_t mark = shell.Calls().size();
    const std::size_t stepMark = shell.Steps().size();
    PrintCode("stop (step 12)", shell.Stop());
    for (std::size_t i = stepMark; i < shell.Steps().size(); ++i)
        std::printf("    %s\n", shell.Steps()[i].c_str());
    PrintExecCalls(shell, mark);
    std::printf("  buffers created %zu, still alive %zu\n", shell.BuffersCreated(),
                shell.LiveBuffers());
    return shell.LiveBuffers() == 0 ? 0 : 1;
}

} // namespace

// The font library keeps what it matched for the life of the process, which a sanitized build's
// leak check would report as this tool's own (gui and replay paint text).
extern "C" const char *__lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}

int main(int argc, char **argv) {
    if (argc < 2 || std::strcmp(argv[1], "version") == 0)
        return PrintVersion();
    if (std::strcmp(argv[1], "demo") == 0)
        return Demo(argc > 2 ? argv[2] : MIREL_EXAMPLE_MODULE);
    if (std::strcmp(argv[1], "preset") == 0)
        return mirel_host::RunPresetCommand(argc - 2, argv + 2);
    if (std::strcmp(argv[1], "gui") == 0)
        return mirel_host::RunGUICommand(argc - 2, argv + 2, MIREL_EXAMPLE_MODULE);
    if (std::strcmp(argv[1], "replay") == 0)
        return mirel_host::RunReplayCommand(argc - 2, argv + 2, MIREL_EXAMPLE_MODULE);
    if (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "help") == 0) {
        PrintUsage(stdout);
        return 0;
    }
    PrintUsage(stderr);
    return 1;
}
