// mirel-lv2-ttl: writes the description of an LV2 bundle for a plug-in built on the library.
//
//   mirel-lv2-ttl <plug-in module .so> <LV2 bundle folder> <name>
//
// Loads the module and its bundle, starts the plug-in as the wrapper does and writes
// manifest.ttl, <name>.ttl and presets.ttl into the folder: the plug-in `urn:mirel:<name>`, its
// binary the generic wrapper mirel_lv2.so, its ports in the wrapper's order, and one LV2 preset
// per factory preset of the bundle, holding the values it gives the input control ports.

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "Code/Presets/CPresetsManager.h"
#include "Code/Presets/CPublicAlg.h"
#include "core/WTErrors.h"
#include "hosts/lv2/WCLV2PortLayout.h"
#include "tools/shell/WCRecordingShell.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using mirel_lv2::WSLV2Port;

// Turtle wants a plain decimal that reads back as the same number.
std::string Number(double value) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out.precision(9);
    out << std::showpoint << value;
    std::string text = out.str();
    // Drop trailing zeros but keep one digit after the point.
    const auto point = text.find('.');
    if (point != std::string::npos && text.find('e') == std::string::npos) {
        while (text.size() > point + 2 && text.back() == '0')
            text.pop_back();
    }
    return text;
}

std::string Quoted(std::string const &text) {
    std::string out = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    return out + "\"";
}

void WritePort(std::ostream &out, WSLV2Port const &port) {
    if (port.kind == WSLV2Port::eLatency) {
        out << "        a lv2:OutputPort , lv2:ControlPort ;\n"
            << "        lv2:index " << port.index << " ;\n"
            << "        lv2:symbol " << Quoted(port.symbol) << " ;\n"
            << "        lv2:name " << Quoted(port.name) << " ;\n"
            << "        lv2:designation lv2:latency ;\n"
            << "        lv2:minimum 0 ;\n        lv2:maximum " << Number(port.maximum) << " ;\n"
            << "        lv2:portProperty lv2:reportsLatency , lv2:integer\n";
        return;
    }
    const bool audio = port.kind == WSLV2Port::eAudioIn || port.kind == WSLV2Port::eAudioOut;
    const bool input = port.kind == WSLV2Port::eAudioIn || port.kind == WSLV2Port::eControlIn;
    out << "        a lv2:" << (input ? "InputPort" : "OutputPort")
        << " , lv2:" << (audio ? "AudioPort" : "ControlPort") << " ;\n"
        << "        lv2:index " << port.index << " ;\n"
        << "        lv2:symbol " << Quoted(port.symbol) << " ;\n"
        << "        lv2:name " << Quoted(port.name);
    if (!audio) {
        out << " ;\n        lv2:default " << Number(port.value) << " ;\n"
            << "        lv2:minimum " << Number(port.minimum) << " ;\n"
            << "        lv2:maximum " << Number(port.maximum);
        if (port.toggled)
            out << " ;\n        lv2:portProperty lv2:toggled";
        else if (port.integer)
            out << " ;\n        lv2:portProperty lv2:integer";
    }
    out << "\n";
}

int Write(std::string const &path, std::string const &text) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (!file) {
        std::fprintf(stderr, "mirel-lv2-ttl: cannot write %s\n", path.c_str());
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: mirel-lv2-ttl <plug-in module .so> <LV2 bundle> <name>\n");
        return 2;
    }
    const std::string folder = argv[2];
    const std::string name = argv[3];
    mirel_shell::WCRecordingShell shell;
    int err = shell.Open(argv[1]);
    mirel_lv2::WCLV2PortLayout layout;
    if (err == ml::eNoErr)
        err = layout.Build(shell.Algorithm(), shell.DSPReqRes().inputs, shell.DSPReqRes().outputs);
    if (err != ml::eNoErr) {
        std::fprintf(stderr, "mirel-lv2-ttl: %s: %d (%s)\n", argv[1], err, ml::WTErrName(err));
        return 1;
    }
    const std::string uri = "<urn:mirel:" + name + ">";
    const std::string prefixes = "@prefix doap: <http://usefulinc.com/ns/doap#> .\n"
                                 "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
                                 "@prefix pset: <http://lv2plug.in/ns/ext/presets#> .\n"
                                 "@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .\n"
                                 "@prefix state: <http://lv2plug.in/ns/ext/state#> .\n"
                                 "@prefix urid: <http://lv2plug.in/ns/ext/urid#> .\n"
                                 "@prefix work: <http://lv2plug.in/ns/ext/worker#> .\n\n";

    std::ostringstream plugin;
    plugin << prefixes << uri << "\n    a lv2:Plugin ;\n"
           << "    doap:name " << Quoted(shell.Instance().m_ShortName.c_str()) << " ;\n"
           << "    lv2:binary <mirel_lv2.so> ;\n"
           // Real-time safe where the host offers the worker, as real-time hosts do; without it
           // run() does a control change's work in place.
           << "    lv2:optionalFeature lv2:hardRTCapable , work:schedule , urid:map ;\n"
           << "    lv2:extensionData work:interface , state:interface ;\n    lv2:port";
    auto const &ports = layout.Ports();
    for (std::size_t i = 0; i < ports.size(); ++i) {
        plugin << (i == 0 ? " [\n" : " , [\n");
        WritePort(plugin, ports[i]);
        plugin << "    ]";
    }
    plugin << " .\n";

    // Each factory preset loaded in turn, and the input controls read back.
    ml::cALGORITHM &alg = *shell.Algorithm();
    ml::Preset::CPresetsManager *manager = alg.GetPresetsManager();
    std::ostringstream presets;
    presets << prefixes;
    std::ostringstream manifestPresets;
    for (std::size_t i = 0; manager != nullptr && i < manager->GetNumFactoryPresets(); ++i) {
        ml::Preset::CPresetInfo const &entry = *manager->GetFactoryPreset(i);
        if (entry.IsSeperator() || entry.IsDummyTitle() || entry.IsDisabled())
            continue;
        err = manager->LoadFactoryPresetToPluginByIndex(ml::Preset::CPublicAlg(alg), i);
        if (err != ml::eNoErr) {
            std::fprintf(stderr, "mirel-lv2-ttl: factory preset %zu: %d (%s)\n", i, err,
                         ml::WTErrName(err));
            return 1;
        }
        const std::string preset = "<urn:mirel:" + name + ":preset:" + std::to_string(i) + ">";
        manifestPresets << preset << "\n    a pset:Preset ;\n    lv2:appliesTo " << uri
                        << " ;\n    rdfs:seeAlso <presets.ttl> .\n\n";
        presets << preset << "\n    a pset:Preset ;\n    lv2:appliesTo " << uri << " ;\n"
                << "    rdfs:label " << Quoted(entry.m_PresetName.c_str()) << " ;\n    lv2:port";
        bool first = true;
        for (WSLV2Port const &port : ports) {
            double value = 0.0;
            if (port.kind != WSLV2Port::eControlIn ||
                alg.GetParamRealWorld(port.paramID, value) != ml::eNoErr)
                continue;
            presets << (first ? " [\n" : " , [\n") << "        lv2:symbol " << Quoted(port.symbol)
                    << " ;\n        pset:value " << Number(value) << "\n    ]";
            first = false;
        }
        presets << " .\n\n";
    }

    std::ostringstream manifest;
    manifest << prefixes << uri << "\n    a lv2:Plugin ;\n    lv2:binary <mirel_lv2.so> ;\n"
             << "    rdfs:seeAlso <" << name << ".ttl> .\n\n"
             << manifestPresets.str();
    return Write(folder + "/manifest.ttl", manifest.str()) +
           Write(folder + "/" + name + ".ttl", plugin.str()) +
           Write(folder + "/presets.ttl", presets.str());
}
