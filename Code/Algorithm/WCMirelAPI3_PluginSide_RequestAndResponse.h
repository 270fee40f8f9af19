#pragma once

#include <cstdint>

#include <nlohmann/json.hpp>

#include "Code/Algorithm/PluginInstance.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCStMemObj.h"

MIREL_NAMESPACE_BEGIN

// The shell's raw record of one named request. The request function writes its code here; the
// payload slot carries a pointer in or out (a preset info, a rectangle, a MIDI event, a control)
// with its size in bytes, and binary results go to the memory object.
struct WSMirelAPI3_RawRequest {
    std::int32_t m_Error = 0;
    PluginInstance *m_pInstance = nullptr;
    std::uint64_t m_Payload = 0;
    std::uint64_t m_PayloadSize = 0;
    Utils::WCStMemObj m_BinaryOutput;

    void *PayloadPtr() const { return reinterpret_cast<void *>(m_Payload); }
    void SetPayloadPtr(void const *ptr) { m_Payload = reinterpret_cast<std::uint64_t>(ptr); }
};

// One named request as a request function sees it: the raw record, the request JSON (arguments
// under "params"), the response JSON (results under "result") and the error text that a failed
// request leaves for the shell. [main-thread] unless the shell serialises the calls itself.
struct WCMirelAPI3_PluginSide_RequestAndResponse {
    WSMirelAPI3_RawRequest *m_pRawRequest = nullptr;
    nlohmann::json m_Request = nlohmann::json::object();
    nlohmann::json m_Response = nlohmann::json::object();
    WCFixedString<255> m_ErrorText;
};

MIREL_NAMESPACE_END
