#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// The host's record of tempo and signature, as a shell hands it over. A field of -1.0 was not
// given. The time-measure work extends this record; the frame only carries it.
struct WCMusicInfo {
    double m_Tempo = -1.0;
    double m_Resolution = -1.0;
    double m_TimeSigNum = -1.0;
    double m_TimeSigDen = -1.0;
};

MIREL_NAMESPACE_END
