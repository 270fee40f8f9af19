#pragma once

#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

// The numbers a scale function works on. Every kind reads the fields it needs: base and factor
// for the linear and logarithmic kinds, resolution and inverse resolution for rounding, the two
// point tables for the table kinds. A plain record, copied freely; scale functions only read it.
// [any-thread] once built.
struct sSCALE_INFO {
    double base = 0.0;
    double factor = 0.0;
    double extra = 0.0;
    double resolution = 1.0;
    double inverseResolution = 1.0;
    std::vector<double> realWorldPoints;
    std::vector<double> statePoints;
    WCFixedString<31> name;
    // The natural logarithm of factor, which the logarithmic inverse divides by, taken once by
    // SetScaleLog rather than on every conversion. It is trusted only while logFactorOf still
    // equals factor, so a factor written by hand later never meets a stale logarithm.
    double logFactor = 0.0;
    double logFactorOf = 0.0;
};

// State to real world or back, for one parameter's scale. Plain function pointers, so the
// update path calls them with no lock and no allocation.
using WTScaleFunction = double (*)(double, sSCALE_INFO *);

// A scale kind a plug-in adds under its own type name.
struct sUserScaleFunctions {
    WTScaleFunction forward = nullptr;
    WTScaleFunction inverse = nullptr;
};

MIREL_NAMESPACE_END
