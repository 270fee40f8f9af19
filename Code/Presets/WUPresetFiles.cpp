#include "Code/Presets/WUPresetFiles.h"

#include <new>

#include "files/WCStFile.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

WTErr ReadPresetFileText(const FM::WCStPath &path, std::string &text) {
    if (!path.IsValid() || !path.IsFile())
        return ePresetFileProblem;
    std::uint64_t size = 0;
    if (path.GetFileSize(size) != eNoErr || size > kMaxPresetFileSize)
        return ePresetFileProblem;
    try {
        FM::WCStFileRead file(path);
        std::string read;
        if (!file.IsValid() || file.ReadToStdString(read) != eNoErr ||
            read.size() > kMaxPresetFileSize)
            return ePresetFileProblem;
        text.swap(read);
        return eNoErr;
    } catch (int) {
        return ePresetFileProblem;
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr WritePresetFileBytes(const FM::WCStPath &path, const void *data, std::uint64_t size,
                           int mode) {
    if (!path.IsValid())
        return path.GetError() != eNoErr ? path.GetError() : eFMIllegalPathRef;
    try {
        FM::WCStFileCreate file(path, FM::eFMCreateAlways, FM::eFMReadWritePermission, mode);
        if (!file.IsValid())
            return file.GetError();
        if (size != 0) {
            const int written = file.Write(data, size);
            if (written != eNoErr) {
                file.Abandon();
                return written;
            }
        }
        return file.Close();
    } catch (int error) {
        return error;
    }
}

} // namespace Preset

MIREL_NAMESPACE_END
