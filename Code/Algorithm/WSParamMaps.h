#pragma once

#include <functional>
#include <map>

#include "Code/Algorithm/WCParamExtension.h"
#include "Code/Algorithm/WCParam_Base.h"
#include "Code/Algorithm/sCONTROL_PARAM.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

using WTParamMapKey = WCFixedString<127>;
using WTDisplayFunctionsMap = std::map<WTParamMapKey, DisplayFunctionProxy>;
using WTMouseDeltaFunctionsMap = std::map<WTParamMapKey, WTMouseDeltaFunction>;
// Factories get the "DataType" text of the XML element; they may return null.
using WTDrawClassFactory = std::function<WCGraphDataBase *(char const *dataType)>;
using WTParamExtensionFactory = std::function<WCParamExtension *(char const *dataType)>;
using WTDrawClassFactoryMap = std::map<WTParamMapKey, WTDrawClassFactory>;
using WTParamExtensionFactoryMap = std::map<WTParamMapKey, WTParamExtensionFactory>;

// The five name-keyed maps the parameter XML refers to. The algorithm fills them before it
// reads its parameters (built-ins first, then the plug-in's hooks) and keeps them for its GUIs.
// [main-thread]
struct WSParamMaps {
    WTDisplayFunctionsMap displayFunctions;
    WTScaleFunctionsMap scaleFunctions;
    WTMouseDeltaFunctionsMap mouseDeltaFunctions;
    WTDrawClassFactoryMap drawClassFactories;
    WTParamExtensionFactoryMap extensionFactories;
};

MIREL_NAMESPACE_END
