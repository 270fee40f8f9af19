// mirel-lv2-ttl: writes the description of an LV2 bundle for a plug-in built on the library.
//
//   mirel-lv2-ttl <plug-in module .so> <LV2 bundle folder> <name>
//
// Loads the module and its bundle, starts the plug-in as the wrapper does and writes
// manifest.ttl and <name>.ttl into the folder: the plug-in `urn:mirel:<name>`, its binary the
// generic wrapper mirel_lv2.so, and its ports in the wrapper's order.

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

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
    const bool audio = port.kind == WSLV2Port::eAudioIn || port.kind == WSLV2Port::eAudioOut;
    const bool input = port.kind == WSLV2Port::eAudioIn || port.kind == WSLV2Port::eControlIn;
    out << "        a lv2:" << (input ? "InputPort" : "OutputPort") << " , lv2:"
        << (audio ? "AudioPort" : "ControlPort") << " ;\n"
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
    int err = shell.LoadModule(argv[1]);
    ml::MirelComponentInfo info;
    if (err == ml::eNoErr)
        err = shell.GetModuleComponentInfo(0, info);
    if (err == ml::eNoErr)
        err = shell.Create(info);
    if (err == ml::eNoErr)
        err = shell.Start();
    mirel_lv2::WCLV2PortLayout layout;
    if (err == ml::eNoErr)
        err = layout.Build(shell.Algorithm(), shell.DSPReqRes().inputs,
                           shell.DSPReqRes().outputs);
    if (err != ml::eNoErr) {
        std::fprintf(stderr, "mirel-lv2-ttl: %s: %d (%s)\n", argv[1], err, ml::WTErrName(err));
        return 1;
    }
    const std::string uri = "<urn:mirel:" + name + ">";
    const std::string prefixes = "@prefix doap: <http://usefulinc.com/ns/doap#> .\n"
                                 "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
                                 "@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .\n\n";

    std::ostringstream manifest;
    manifest << prefixes << uri << "\n    a lv2:Plugin ;\n    lv2:binary <mirel_lv2.so> ;\n"
             << "    rdfs:seeAlso <" << name << ".ttl> .\n";

    std::ostringstream plugin;
    plugin << prefixes << uri << "\n    a lv2:Plugin ;\n"
           << "    doap:name " << Quoted(info.m_ShortName.c_str()) << " ;\n"
           // Not hardRTCapable yet: a control change is still applied with a lock in run().
           << "    lv2:binary <mirel_lv2.so> ;\n    lv2:port";
    auto const &ports = layout.Ports();
    for (std::size_t i = 0; i < ports.size(); ++i) {
        plugin << (i == 0 ? " [\n" : " , [\n");
        WritePort(plugin, ports[i]);
        plugin << "    ]";
    }
    plugin << " .\n";
    return Write(folder + "/manifest.ttl", manifest.str()) +
           Write(folder + "/" + name + ".ttl", plugin.str());
}
