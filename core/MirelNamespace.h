#pragma once

// Every symbol of the run-time lives in one versioned inline namespace, so two versions of the
// library can be loaded into one process without their symbols meeting, while users still write
// plain names (`cALGORITHM`, `FM::WCStPath`).
#define MIREL_VERSION_MAJOR 13
#define MIREL_VERSION_MINOR 1
#define MIREL_VERSION_REVISION 0
#define MIREL_VERSION_STAGE 186
#define MIREL_VERSION_STRING "13.1.0.186"
#define MIREL_NAMESPACE_NAME MirelLib_13_1_0_186
#define MIREL_NAMESPACE_TEXT "MirelLib_13_1_0_186"

#define MIREL_NAMESPACE_BEGIN inline namespace MirelLib_13_1_0_186 {
#define MIREL_NAMESPACE_END }
