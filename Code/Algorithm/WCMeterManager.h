#pragma once

// The meter manager belongs to the process side; the algorithm's older include path still finds
// it here.
#include "Code/Process/WCMeterManager.h"
