// Reads arbitrary bytes as a parameter XML. Whatever the text says, reading ends with a code,
// every built parameter has finite states and real-world values over its whole state axis, and
// what is written back reads again to as many parameters.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <vector>

#include "Code/Algorithm/WUDisplayFunctions.h"
#include "Code/Algorithm/WUParametersXML.h"
#include "Code/Process/WCParamExtensionMeter.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

double Double(double state, ml::sSCALE_INFO *) {
    return state * 2.0;
}

ml::WSParamMaps const &Maps() {
    static const ml::WSParamMaps maps = [] {
        ml::WSParamMaps m;
        ml::DisplayFunctions::AddBuiltIns(m.displayFunctions);
        m.scaleFunctions[ml::WTParamMapKey("double")] = {Double, nullptr};
        m.extensionFactories[ml::WTParamMapKey("Ext")] = [](char const *) {
            return new ml::WCParamExtension;
        };
        // The meter elements inside an extension element are outside text too.
        m.extensionFactories[ml::WTParamMapKey("Meter")] =
            [](char const *) -> ml::WCParamExtension * {
            return new ml::WCParamExtensionMeterWithClip;
        };
        return m;
    }();
    return maps;
}

void Check(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::vector<ml::sCONTROL_PARAM> params;
    const int err = ml::ParamXML::ReadParametersXMLFromText(reinterpret_cast<char const *>(data),
                                                            size, Maps(), params);
    if (err != 0) {
        Check(params.empty());
        return 0;
    }
    for (auto &param : params) {
        param.InitRealWorldAndUpdate(0);
        Check(std::isfinite(param.GetState(0)) && param.GetState(0) >= 0.0 &&
              param.GetState(0) <= 1000.0);
        for (double state : {0.0, 1.0, 333.4, 500.0, 999.9, 1000.0}) {
            const double rw = param.StateToRealWorld(param.QuantizeState(state));
            Check(std::isfinite(rw));
            Check(std::isfinite(param.RealWorldToState(rw)));
        }
        Check(std::isfinite(param.DefaultMouseDelta(5.0)));
        param.UpdateValueString(0);
        if (auto *meter = dynamic_cast<ml::WCParamExtensionMeter *>(param.m_Extension.get())) {
            Check(std::isfinite(meter->GetMultiplier()) && std::isfinite(meter->GetRangeMin()));
            Check(meter->GetAttackCoef() >= 0.0 && meter->GetAttackCoef() < 1.0);
            Check(meter->GetReleaseCoef() >= 0.0 && meter->GetReleaseCoef() < 1.0);
            meter->SetValueFromDSP(0.5);
            Check(std::isfinite(meter->GetDisplayValue()));
        }
    }
    pugi::xml_document doc;
    Check(ml::ParamXML::WriteParametersXML(params, doc) == 0);
    std::ostringstream text;
    doc.save(text);
    const std::string written = text.str();
    std::vector<ml::sCONTROL_PARAM> again;
    Check(ml::ParamXML::ReadParametersXMLFromText(written.data(), written.size(), Maps(), again) ==
          0);
    Check(again.size() == params.size());
    return 0;
}
