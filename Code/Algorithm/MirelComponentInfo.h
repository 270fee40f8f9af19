#pragma once

// The plug-in frame uses the full component record of the resources layer.
#include "resources/MirelComponentInfo.h"
