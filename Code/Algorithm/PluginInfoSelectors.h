#pragma once

#include <cstddef>
#include <cstdint>

#include "Code/Algorithm/PluginInstance.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {
class WCStMemObj;
}

// The selector calls: how a shell asks a plug-in for facts and gives it settings. The selector is
// a four-character code. 'prvt' goes to the algorithm's `..._Private` virtual (the channel between
// a plug-in and its own shell code); a selector the frame does not know goes to the algorithm's
// virtual of the same name, whose default answers -25 (eNotImplemented) and leaves `out` alone.
// Every other result is the code of the selector's target; a target whose Part is not built yet
// answers eNotImplemented, never 0 with `out` untouched. An instance without an algorithm
// answers -4003. [main-thread] unless the shell serialises the calls itself.
int GetPluginInfo_WCFixedString(PluginInstance &instance, unsigned int selector,
                                WCFixedStringBase &out, std::int64_t arg);
int GetPluginInfo_WCStMemObj(PluginInstance &instance, unsigned int selector,
                             Utils::WCStMemObj &out, std::int64_t arg);
int GetPluginInfo_bool(PluginInstance &instance, unsigned int selector, bool &out,
                       std::int64_t arg);
int GetPluginInfo_double(PluginInstance &instance, unsigned int selector, double &out,
                         std::int64_t arg);
int GetPluginInfo_float(PluginInstance &instance, unsigned int selector, float &out,
                        std::int64_t arg);
int GetPluginInfo_int32_t(PluginInstance &instance, unsigned int selector, std::int32_t &out,
                          std::int64_t arg);
int GetPluginInfo_size_t(PluginInstance &instance, unsigned int selector, std::size_t &out,
                         std::int64_t arg);
int GetPluginInfo_struct(PluginInstance &instance, unsigned int selector, void *out,
                         std::int64_t arg);
int GetPluginInfo_uint32_t(PluginInstance &instance, unsigned int selector, std::uint32_t &out,
                           std::int64_t arg);

int SetPluginInfo_bool(PluginInstance &instance, unsigned int selector, bool value,
                       std::int64_t arg);
int SetPluginInfo_c_str(PluginInstance &instance, unsigned int selector, char const *value,
                        std::int64_t arg);
int SetPluginInfo_double(PluginInstance &instance, unsigned int selector, double value,
                         std::int64_t arg);
int SetPluginInfo_int32_t(PluginInstance &instance, unsigned int selector, std::int32_t value,
                          std::int64_t arg);
int SetPluginInfo_size_t(PluginInstance &instance, unsigned int selector, std::size_t value,
                         std::int64_t arg);
int SetPluginInfo_struct(PluginInstance &instance, unsigned int selector, void *value,
                         std::int64_t arg);
int SetPluginInfo_uint32_t(PluginInstance &instance, unsigned int selector, std::uint32_t value,
                           std::int64_t arg);

MIREL_NAMESPACE_END
