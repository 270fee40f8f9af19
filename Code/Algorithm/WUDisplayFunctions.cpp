#include "Code/Algorithm/WUDisplayFunctions.h"

#include <cmath>
#include <cstdio>

MIREL_NAMESPACE_BEGIN

namespace DisplayFunctions {

namespace {

// Prints a number with `decimals` decimals and a suffix. A value that rounds to zero prints
// without a minus sign, the way a user expects to read it.
void PrintFixed(WCFixedStringBase &out, double value, int decimals, char const *suffix) {
    if (!std::isfinite(value)) {
        out = std::isnan(value) ? "NaN" : (value > 0 ? "Inf" : "-Inf");
        out << suffix;
        return;
    }
    const double half = 0.5 * std::pow(10.0, -decimals);
    if (std::fabs(value) < half)
        value = 0.0;
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f%s", decimals, value, suffix);
    out = buffer;
}

// The real-world value as an integer, the way a toggle reads it; values no integer can hold are
// neither 0 nor 1.
long long AsInteger(double value) noexcept {
    if (!(value > -9.0e18 && value < 9.0e18))
        return -1;
    return static_cast<long long>(value);
}

template <int Decimals>
void DisplayFloat(double, double realWorld, WCFixedStringBase &out) {
    PrintFixed(out, realWorld, Decimals, "");
}

} // namespace

void AddBuiltIns(WTDisplayFunctionsMap &map) {
    map[WTParamMapKey("DisplayFloat0")] = DisplayFloat<0>;
    map[WTParamMapKey("DisplayFloat1")] = DisplayFloat<1>;
    map[WTParamMapKey("DisplayFloat2")] = DisplayFloat<2>;
    map[WTParamMapKey("DisplayFloat3")] = DisplayFloat<3>;
    map[WTParamMapKey("DisplayFloat4")] = DisplayFloat<4>;
    map[WTParamMapKey("DisplayVuHold")] = [](double, double rw, WCFixedStringBase &out) {
        if (rw > -99.9)
            PrintFixed(out, rw, 1, "");
        else
            out = "-Inf";
    };
    map[WTParamMapKey("DisplayOnOff")] = [](double, double rw, WCFixedStringBase &out) {
        out = rw > 0.0 ? "On" : "Off";
    };
    map[WTParamMapKey("DisplayInOut")] = [](double, double rw, WCFixedStringBase &out) {
        out = rw > 0.0 ? "In" : "Out";
    };
    map[WTParamMapKey("DisplayInOutDefaultOut")] = [](double, double rw, WCFixedStringBase &out) {
        out = AsInteger(rw) == 0 ? "Out" : "In";
    };
    map[WTParamMapKey("DisplayInOutDefaultIn")] = [](double, double rw, WCFixedStringBase &out) {
        out = AsInteger(rw) == 0 ? "In" : "Out";
    };
    map[WTParamMapKey("DisplayGainWithDB")] = [](double, double rw, WCFixedStringBase &out) {
        PrintFixed(out, rw, 1, " dB");
    };
    map[WTParamMapKey("DisplayFloat0WithHz")] = [](double, double rw, WCFixedStringBase &out) {
        PrintFixed(out, rw, 0, " Hz");
    };
    map[WTParamMapKey("DisplayFloat1WithHz")] = [](double, double rw, WCFixedStringBase &out) {
        PrintFixed(out, rw, 1, " Hz");
    };
    // The number is printed as it stands: a parameter shown in KHz holds KHz.
    map[WTParamMapKey("DisplayFloat0WithKHz")] = [](double, double rw, WCFixedStringBase &out) {
        PrintFixed(out, rw, 0, " KHz");
    };
    map[WTParamMapKey("DisplayFloat1WithKHz")] = [](double, double rw, WCFixedStringBase &out) {
        PrintFixed(out, rw, 1, " KHz");
    };
    map[WTParamMapKey("DisplayRatioFloat2")] = [](double, double rw, WCFixedStringBase &out) {
        PrintFixed(out, rw, 2, ":1");
    };
    map[WTParamMapKey("DisplayPhaseDefaultPlus")] = [](double, double rw, WCFixedStringBase &out) {
        out = AsInteger(rw) == 1 ? "-" : "+";
    };
    map[WTParamMapKey("DisplayNothing")] = [](double, double, WCFixedStringBase &out) {
        out.clear();
    };
    // The value string already holds the text, set by whoever changed it.
    map[WTParamMapKey("DisplayTheSame")] = [](double, double, WCFixedStringBase &) {};
    // Without a table of its own the real-world string is empty; the reader binds the table.
    map[WTParamMapKey("DisplayRealWorldString")] = MakeRealWorldString({});
}

DisplayFunctionProxy MakeRealWorldString(std::vector<WCFixedString<127>> const &table) {
    return [table](double, double rw, WCFixedStringBase &out) {
        if (!(rw >= 0.0) || !(rw < static_cast<double>(table.size()))) {
            out.clear();
            return;
        }
        out = table[static_cast<std::size_t>(rw)];
    };
}

} // namespace DisplayFunctions

MIREL_NAMESPACE_END
