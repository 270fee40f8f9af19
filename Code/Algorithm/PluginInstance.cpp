#include "Code/Algorithm/PluginInstance.h"

MIREL_NAMESPACE_BEGIN

PluginInstance::PluginInstance() noexcept
    : MirelComponentInfo(), m_pAlg(nullptr), m_PluginFileName(), m_NativeResourceRef(nullptr) {}

PluginInstance::PluginInstance(MirelComponentInfo const &info) noexcept
    : MirelComponentInfo(info), m_pAlg(nullptr), m_PluginFileName(), m_NativeResourceRef(nullptr) {}

MIREL_NAMESPACE_END
