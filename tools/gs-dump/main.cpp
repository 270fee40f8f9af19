// gs-dump: prints a graphic stream file as YAML (compact or full) or as SVG, or paints it into a
// PNG picture.
//
//   gs-dump [--yaml | --svg] [--full] [--checksums] [-o OUTPUT] STREAM
//   gs-dump --png OUTPUT STREAM
//
// The stream is read whole; a stream written by another process carries no usable data pointers,
// so their payloads are left out. With -o the output replaces OUTPUT only once it is complete.
// Exit codes: 0 done, 1 bad arguments, 2 the stream could not be read, 3 the stream is corrupt
// (its code is printed), 4 the output could not be written. A picture whose records could not all
// be drawn (images of a resources folder that is not on this machine) is written all the same,
// with the first such code on stderr.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "Utilities/XML/Code/CXMLElement.h"
#include "core/WCStMemObj.h"
#include "graphic_stream/GraphicStreamDefs.h"
#include "graphic_stream/WCGraphicStreamEngineBase.h"
#include "graphic_stream/WCGraphicStreamToCairo.h"
#include "graphic_stream/WCGraphicStreamToSVG.h"
#include "graphic_stream/WCGraphicStreamToYAML.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

namespace {

struct WSOptions {
    bool m_SVG = false;
    bool m_Full = false;
    bool m_Checksums = false;
    std::string m_PNG;
    std::string m_Output;
    std::string m_Input;
};

void Usage(std::ostream &out) {
    out << "usage: gs-dump [--yaml | --svg] [--full] [--checksums] [-o OUTPUT] STREAM\n"
           "       gs-dump --png OUTPUT STREAM\n"
           "  --yaml       YAML, one map per record (the default)\n"
           "  --svg        an SVG picture of the stream\n"
           "  --full       YAML with default values too\n"
           "  --checksums  YAML with the checksum of each record and the counts on stderr\n"
           "  -o OUTPUT    write to OUTPUT instead of standard output\n"
           "  --png OUTPUT paint the stream into the PNG picture OUTPUT\n";
}

bool ParseArguments(int argc, char **argv, WSOptions &options) {
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--yaml")
            options.m_SVG = false;
        else if (arg == "--svg")
            options.m_SVG = true;
        else if (arg == "--full")
            options.m_Full = true;
        else if (arg == "--checksums")
            options.m_Checksums = true;
        else if (arg == "--png" && i + 1 < argc)
            options.m_PNG = argv[++i];
        else if (arg == "-o" && i + 1 < argc)
            options.m_Output = argv[++i];
        else if (arg == "-h" || arg == "--help")
            return false;
        else if (!arg.empty() && arg[0] != '-' && options.m_Input.empty())
            options.m_Input = arg;
        else
            return false;
    }
    return !options.m_Input.empty();
}

bool ReadStream(const std::string &path, Utils::WCStMemObj &memory) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    std::vector<char> chunk(1 << 16);
    while (in) {
        in.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
        if (in.gcount() > 0 && memory.AppendAndReserve(
                                   chunk.data(), static_cast<std::uint64_t>(in.gcount())) != eNoErr)
            return false;
    }
    return in.eof();
}

const char *FaultText(WTErr code) {
    if (code == kGSErrBadRecordSize)
        return "a record does not fit the stream";
    if (code == kGSErrIllegalCommand)
        return "an illegal command";
    return "walk failed";
}

bool WriteOutput(const std::string &path, const std::string &text) {
    if (path.empty()) {
        std::cout << text;
        std::cout.flush();
        return static_cast<bool>(std::cout);
    }
    // Written beside the target and renamed, so a failure never leaves half a file in its place.
    const std::string temporary = path + ".gs-dump-tmp";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out << text;
        out.flush();
        if (!out) {
            std::remove(temporary.c_str());
            return false;
        }
    }
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        std::remove(temporary.c_str());
        return false;
    }
    return true;
}

// Paints the stream and writes the picture beside the target, renamed into place when whole.
int PaintToPNG(const WSOptions &options, char *stream, std::uint64_t length) {
    WCGraphicStreamToCairo painter;
    const WTErr result = painter.ExecStream(stream, length);
    if (result == kGSErrBadRecordSize || result == kGSErrIllegalCommand ||
        painter.GetSurface() == nullptr) {
        std::cerr << "gs-dump: " << options.m_Input << ": corrupt stream: " << FaultText(result)
                  << " (" << result << ")\n";
        return 3;
    }
    if (painter.GetFirstDrawError() != eNoErr)
        std::cerr << "gs-dump: " << options.m_Input << ": some records could not be drawn ("
                  << painter.GetFirstDrawError() << ")\n";
    const std::string temporary = options.m_PNG + ".gs-dump-tmp";
    if (painter.WriteToPNG(temporary.c_str()) != eNoErr ||
        std::rename(temporary.c_str(), options.m_PNG.c_str()) != 0) {
        std::remove(temporary.c_str());
        std::cerr << "gs-dump: " << options.m_PNG << ": cannot write\n";
        return 4;
    }
    return 0;
}

} // namespace

// The font library keeps what it matched for the life of the process, which a sanitized build's
// leak check would report as this tool's own.
extern "C" const char *__lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}

int main(int argc, char **argv) {
    WSOptions options;
    if (!ParseArguments(argc, argv, options)) {
        Usage(std::cerr);
        return 1;
    }

    Utils::WCStMemObj memory;
    if (!ReadStream(options.m_Input, memory)) {
        std::cerr << "gs-dump: " << options.m_Input << ": cannot read: " << std::strerror(errno)
                  << "\n";
        return 2;
    }
    char *stream = static_cast<char *>(memory.GetPtr());
    const std::uint64_t length = memory.GetSize();

    if (!options.m_PNG.empty())
        return PaintToPNG(options, stream, length);

    std::string text;
    WTErr result = eNoErr;
    if (options.m_SVG) {
        XML::CXMLElement root;
        WCGraphicStreamToSVG svg(&root);
        result = svg.ExecStream(stream, length);
        text = svg.GetSVGStr();
    } else {
        WCGraphicStreamToYAML yaml(!options.m_Full);
        yaml.SetReportStream(std::cerr);
        if (options.m_Checksums) {
            std::vector<std::uint64_t> checksums;
            WCGraphicStreamEngineBase::CollectRecordChecksums(stream, length, checksums);
            result = yaml.ExecStreamWithAllChecksums(stream, length, checksums);
        } else {
            result = yaml.ExecStream(stream, length);
        }
        text = yaml.GetYamlStr() + "\n";
    }
    if (result < 0) {
        std::cerr << "gs-dump: " << options.m_Input << ": corrupt stream: " << FaultText(result)
                  << " (" << result << ")\n";
        return 3;
    }
    if (!WriteOutput(options.m_Output, text)) {
        std::cerr << "gs-dump: " << options.m_Output << ": cannot write\n";
        return 4;
    }
    return 0;
}
