#include "tools/mirel-host/DemoPresets.h"

#include <cstdio>
#include <string>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Presets/CPresetsManager.h"
#include "core/WTErrors.h"

namespace mirel_host {

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace mp = MIREL_NAMESPACE_NAME::Preset;

// Every parameter a preset reaches, as its value text, on one line.
void PrintValues(mirel_shell::WCRecordingShell &shell, const char *step, int err) {
    ml::cALGORITHM &alg = *shell.Algorithm();
    // What a load leaves is sent as UpdateAlg's chain, as a host's idle would.
    if (err == ml::eNoErr)
        err = shell.Update();
    std::printf("  %-34s -> %d", step, err);
    if (err != ml::eNoErr)
        std::printf(" (%s)", ml::WTErrName(err));
    std::printf("  [%s]\n", alg.GetCurrentPresetInfo().m_PresetName.c_str());
    std::string line;
    for (std::uint64_t id = 0; id < alg.GetNumParams(); ++id) {
        ml::sCONTROL_PARAM *param = alg.GetParam(id);
        if (param->IsFlagSet(ml::eParamFlag_DontSaveToPreset))
            continue;
        param->UpdateValueString(alg.GetActiveSetup());
        line += std::string(line.empty() ? "" : ", ") + param->m_Name.c_str() + " " +
                param->GetValueString().c_str();
    }
    std::printf("      %s; process side holds gain %.4f\n", line.c_str(), shell.CoefAsFloat(0));
}

} // namespace

void TourPresets(mirel_shell::WCRecordingShell &shell) {
    ml::cALGORITHM &alg = *shell.Algorithm();
    mp::CPresetsManager *manager = alg.GetPresetsManager();
    std::printf("presets:\n");
    if (manager == nullptr) {
        std::printf("  no presets manager\n");
        return;
    }
    const mp::CPublicAlg face(alg);
    std::printf("  factory presets of %s:\n",
                manager->GetFactoryPresetsFile().GetPathString().c_str());
    for (std::size_t i = 0; i < manager->GetNumFactoryPresets(); ++i) {
        const mp::CPresetInfo &entry = *manager->GetFactoryPreset(i);
        std::printf("    %zu %s%s\n", i, entry.IsDummyTitle() ? "-- " : "   ",
                    entry.IsSeperator() ? "----" : entry.m_PresetName.c_str());
    }
    PrintValues(shell, "now, after the changes above", ml::eNoErr);

    ml::BUFFER_HEADER *chain = alg.UpdateParamRequestRealWorld(0, -4.5);
    alg.SendAndFreeBuffers(chain, ml::eExecSendBuffers, true);
    int err = manager->SaveMenu_SaveAsUserMenuPreset(face, "Demo");
    std::printf("  gain -4.5 dB saved as user preset \"Demo\" in %s -> %d\n",
                manager->GetUserMenuPresetsFile().GetPathString().c_str(), err);
    PrintValues(shell, "factory preset \"Warm\"", alg.LoadFactoryPresetToPluginByName("Warm"));
    PrintValues(shell, "next", manager->LoadPresetFromCurrentPresetSection(face, true));
    PrintValues(shell, "next (over a separator and a title)",
                manager->LoadPresetFromCurrentPresetSection(face, true));
    PrintValues(shell, "previous", manager->LoadPresetFromCurrentPresetSection(face, false));
    PrintValues(shell, "user preset \"Demo\"",
                manager->LoadUserMenuPresetToPluginByName(face, "Demo"));
    std::printf("  changed since loaded: %s\n", manager->FindChangedPreset(face) ? "yes" : "no");

    ml::Utils::WCStMemObj chunk;
    err = alg.GetChunk(ml::WCFourCC("XPst"), chunk, true);
    std::printf("  host chunk 'XPst' -> %d: %llu bytes of preset text\n", err,
                static_cast<unsigned long long>(chunk.GetSize()));
    std::printf("\n");
}

} // namespace mirel_host
