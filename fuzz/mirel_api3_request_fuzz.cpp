// Feeds arbitrary bytes, parsed as JSON, to every named request of a running algorithm. The only
// exceptions a request may let out are the JSON library's own; anything else, or a crash, is a
// fault.

#include <cstddef>
#include <cstdint>

#include <nlohmann/json.hpp>

#include "Code/Algorithm/MirelAPI3Internal.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Presets/CPresetInfo.h"
#include "core/WUAssert.h"
#include "tests/support/WCSilentAlgorithm.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

using WCFuzzAlgorithm = mirel_test::WCSilentAlgorithm;

// A process side that refuses to make buffers and accepts everything else.
int RefusingProcessSide(int op, std::int64_t, void *, void *, void *) {
    return op == ml::eExecNewBuffer ? -1 : 0;
}

void QuietAssert(char const *, int, char const *) {}

using RequestFunc = int (*)(ml::MirelAPI3Internal::Request &);
namespace API = ml::MirelAPI3Internal;
const RequestFunc kRequests[] = {
    API::GetAutomationControlIndexByName,
    API::GetAutomationRefCons,
    API::GetAutomationControlResetState,
    API::GetAutomationControlByNameHack,
    API::GetGuiControlPtrByNameHack,
    API::GetPressedToolbarButtonHack,
    API::GetGuiLimitRectByIndex,
    API::InsideWhichControl,
    API::IsToolbarControlUnderPoint,
    API::IsSupportContentScale,
    API::UpdateDPIScalingFactor,
    API::SetViewRect,
    API::FileDragOver,
    API::FileDrop,
    API::NotifyAutomation,
    API::NotifyAutomationAllParams,
    API::SetNoiseRatio,
    API::GetPluginValue_c_str,
    API::GetPluginValue_double,
    API::GetPluginValue_float,
    API::SetPluginValue_bool,
    API::SetPluginValue_c_str,
    API::SetPluginValue_double,
    API::SetRedisKeyValue,
    API::GetMIDIControlID,
    API::SetMIDIControlID,
    API::GetMIDIEventControls,
    API::SetCanControlDAWMixer,
    API::TransportChange,
    API::UpdateHostTrackState,
    API::GetCurrentPresetInfoHack,
    API::SetCurrentPresetInfoHack,
    API::GetPresetCompatibleSubComps,
    API::LoadControlsFromPresetHack,
    API::PreparePresetChunkHack,
};

struct WSWorld {
    WSWorld() {
        ml::SetAssertHandler(&QuietAssert);
        ml::MirelComponentInfo info;
        info.m_ComponentType = ml::WCFourCC("Nati");
        ml::WTResContainerType *container = nullptr;
        alg = new WCFuzzAlgorithm(info, container);
        alg->SetMainThreadRef();
        alg->SetExecCallBack(&RefusingProcessSide, 1);
        alg->InitProcessCode();
        alg->FinishCreate();
        alg->InitData();
        alg->InitInstanceData();
        alg->SetProcessActive(true);
        instance.m_pAlg = alg;
    }
    WCFuzzAlgorithm *alg = nullptr;
    ml::PluginInstance instance;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static WSWorld world;
    // Requests that set values add keys; a bounded store keeps long runs inside their memory.
    if (world.alg->KeyValues().size() > 4096)
        world.alg->KeyValues().Clear();
    // Byte 0 picks the request, byte 1 the payload slot (bit 0 set: a slot of bits 1-7 bytes),
    // the rest is the request JSON.
    if (size < 2)
        return 0;
    const RequestFunc request = kRequests[data[0] % (sizeof kRequests / sizeof kRequests[0])];
    nlohmann::json parsed = nlohmann::json::parse(data + 2, data + size, nullptr, false);
    if (parsed.is_discarded())
        return 0;

    ml::WSMirelAPI3_RawRequest raw;
    raw.m_pInstance = &world.instance;
    // A payload slot that is always big enough for the requests that write into it.
    alignas(8) unsigned char payload[512] = {};
    // The preset requests take a pointer to a preset object, as a shell passes one: they get a
    // real one of their type, never raw bytes.
    ml::Preset::CPresetInfo info;
    ml::Preset::sPresetData presetData;
    if (data[1] & 1) {
        raw.SetPayloadPtr(payload);
        raw.m_PayloadSize = data[1] >> 1;
        if (request == &API::GetCurrentPresetInfoHack || request == &API::SetCurrentPresetInfoHack)
            raw.SetPayloadPtr(&info);
        else if (request == &API::LoadControlsFromPresetHack)
            raw.SetPayloadPtr(&presetData);
    }
    ml::WCMirelAPI3_PluginSide_RequestAndResponse call;
    call.m_pRawRequest = &raw;
    call.m_Request = std::move(parsed);
    try {
        request(call);
    } catch (nlohmann::json::exception const &) {
        // The JSON library's type errors are part of the contract.
    }
    return 0;
}
