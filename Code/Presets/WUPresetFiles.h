#pragma once

#include <cstdint>
#include <string>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

// Preset files and their side files come from users and the network; nothing larger than this
// is one, and refusing it early keeps a hostile file from exhausting memory.
inline constexpr std::uint64_t kMaxPresetFileSize = 64ull * 1024 * 1024;

// The whole file into `text`: ePresetFileProblem for a missing, unreadable or oversized file,
// with `text` untouched. [any-thread]
WTErr ReadPresetFileText(const FM::WCStPath &path, std::string &text);

// Writes `size` bytes atomically (the old file stays whole on failure), creating folders; a new
// file gets `mode` less the umask. [any-thread]
WTErr WritePresetFileBytes(const FM::WCStPath &path, const void *data, std::uint64_t size,
                           int mode = 0644);

} // namespace Preset

MIREL_NAMESPACE_END
