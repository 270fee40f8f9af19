#pragma once

#include "Code/Process/KPAPIProcessMemory.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace ProcessMemory {

// The eight converter slots through which values enter and leave process-side words. They start
// as the native defaults (a fraction is a 32-bit float, an integer a 32-bit word, a double
// fraction 64 bits); a DSP process side replaces some of them with its own encodings.
// [any-thread] once filled; filled on the main thread by SetExecCallBack.
struct WUProcessConverters {
    WTWriteFracFunc m_WriteFrac = nullptr;
    WTWriteFracFunc m_WriteFix = nullptr;
    WTWriteIntFunc m_WriteInt = nullptr;
    WTWriteFracFunc m_WriteDFrac = nullptr;
    WTReadFracFunc m_ReadFrac = nullptr;
    WTReadFracFunc m_ReadFix = nullptr;
    WTReadIntFunc m_ReadInt = nullptr;
    WTReadFracFunc m_ReadDFrac = nullptr;

    WUProcessConverters() { SetDefaults(); }
    void SetDefaults();
    // An emptied slot takes its default again (the fixed slots take the fraction ones), so a
    // process side that answers nonsense cannot leave a null converter behind.
    void RepairEmptySlots();

    static int WriteFracDefault(double value, void *destination);
    static int WriteIntDefault(int value, void *destination);
    static int WriteDFracDefault(double value, void *destination);
    static int ReadFracDefault(void const *source, double *value);
    static int ReadIntDefault(void const *source, int *value);
    static int ReadDFracDefault(void const *source, double *value);
};

} // namespace ProcessMemory

MIREL_NAMESPACE_END
