#include "tools/mirel-host/PresetCommand.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "Code/Presets/PresetDocuments.h"
#include "Code/Presets/PresetYAML.h"
#include "Code/Presets/WTPresetTypes.h"
#include "Code/Presets/sPluginSpecific.h"
#include "Utilities/XML/Code/WriteXMLToStream.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"

namespace mirel_host {

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace mp = MIREL_NAMESPACE_NAME::Preset;

constexpr int kExitDone = 0;
constexpr int kExitBadArguments = 1;
constexpr int kExitBadInput = 2;
constexpr int kExitNotWritten = 4;

enum class EFileKind { eUnknown, eXPS, eYPS };

// A preset file as read: its entries in file order (factory files hold titles and separators
// beside presets) and, for a .yps, the keys around its chunk.
struct WSPresetFile {
    EFileKind m_Kind = EFileKind::eUnknown;
    mp::WTPresetList m_Entries;
    mp::WSYAMLPresetHeader m_YAMLHeader;

    bool IsPreset(const mp::CPresetInfo &entry) const noexcept {
        return !entry.IsSeperator() && !entry.IsDummyTitle();
    }
    std::vector<const mp::CPresetInfo *> Presets() const {
        std::vector<const mp::CPresetInfo *> presets;
        for (const auto &entry : m_Entries) {
            if (IsPreset(*entry))
                presets.push_back(entry.get());
        }
        return presets;
    }
};

EFileKind KindOf(const std::string &path) {
    std::string extension = std::filesystem::path(path).extension().string();
    for (char &c : extension)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    if (extension == ".xps")
        return EFileKind::eXPS;
    if (extension == ".yps")
        return EFileKind::eYPS;
    return EFileKind::eUnknown;
}

// The library's paths are absolute; a path typed in a shell is taken from the working folder.
ml::FM::WCStPath PathOf(const std::string &path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return ml::FM::WCStPath(error ? path : absolute.string());
}

void ReportCode(const char *what, const std::string &path, ml::WTErr code) {
    std::fprintf(stderr, "mirel-host: %s %s: %d (%s)\n", what, path.c_str(), code,
                 ml::WTErrName(code));
}

ml::WTErr ReadPresetFile(const std::string &path, EFileKind kind, WSPresetFile &file) {
    const ml::FM::WCStPath where = PathOf(path);
    file.m_Kind = kind;
    if (kind == EFileKind::eXPS) {
        const mp::CPresetsFileInfo info(where, mp::ePresetsFormatXMLFile,
                                        mp::ePresetSectionExternalFile);
        return mp::ReadPresetsFile(info, file.m_Entries, true);
    }
    std::string chunk;
    if (const ml::WTErr error =
            mp::GetDataChunkFromYAMLPresetFile(where, chunk, &file.m_YAMLHeader);
        error != ml::eNoErr)
        return error;
    auto preset = std::make_unique<mp::CPresetInfo>(
        mp::CPresetsFileInfo(where, mp::ePresetsFormatYAMLFile, mp::ePresetSectionExternalFile));
    if (const ml::WTErr error =
            mp::ReadPresetChunk(ml::Utils::WCStConstMemObj(chunk.data(), chunk.size()), *preset);
        error != ml::eNoErr)
        return error;
    file.m_Entries.push_back(std::move(preset));
    return ml::eNoErr;
}

// Texts come from outside: control characters are escaped, so a hostile file cannot drive the
// terminal; names are also quoted, with their quotes escaped, so blanks at their ends show.
std::string Escaped(std::string_view text, bool quoted) {
    std::string escaped = quoted ? "\"" : "";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (quoted && (c == '"' || c == '\\')) {
            escaped += '\\';
            escaped += c;
        } else if (byte < 0x20 || byte == 0x7F) {
            char escape[8];
            std::snprintf(escape, sizeof(escape), "\\x%02x", byte);
            escaped += escape;
        } else {
            escaped += c;
        }
    }
    return quoted ? escaped + '"' : escaped;
}

std::string Quoted(std::string_view text) {
    return Escaped(text, true);
}

std::string NumberText(double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof(buffer), value);
    return std::string(buffer, result.ptr);
}

// Every line of a multi-line text under an indent; control characters but the line feed are
// escaped like names.
void PrintLines(const char *indent, const std::string &text) {
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        std::printf("%s%s\n", indent,
                    Escaped(std::string_view(text).substr(start, end - start), false).c_str());
        start = end + 1;
    }
}

// The stored values, ten to a line like in the file; "*" keeps a parameter, "R" resets it.
void PrintValues(const mp::sPresetData &data) {
    const bool states = data.m_DataType == mp::ePresetDataStates;
    const std::size_t count = states ? data.m_States.size() : data.m_RealWorld.size();
    std::printf("    parameters  %s, %zu value(s)\n", states ? "states" : "real-world", count);
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned int kind = i < data.m_ValueKinds.size() ? data.m_ValueKinds[i] : 0;
        std::string token = kind == mp::ePresetValueIgnore  ? "*"
                            : kind == mp::ePresetValueReset ? "R"
                            : states                        ? std::to_string(data.m_States[i])
                                                            : NumberText(data.m_RealWorld[i]);
        std::printf("%s%s", i % 10 == 0 ? "      " : " ", token.c_str());
        if (i % 10 == 9 || i + 1 == count)
            std::printf("\n");
    }
}

void PrintControl(const mp::sPresetControlData &control) {
    std::printf("    control     %s: %s, channel %d, id %d, on %s, off %s, transposed note %d, "
                "choice %d, lead parameter %d%s%s\n",
                Quoted(control.m_Name.view()).c_str(),
                mp::GetMIDIEventTypeName(control.m_MIDIEventType), control.m_MIDIChannel,
                control.m_MIDIControlID, NumberText(control.m_OnValue).c_str(),
                NumberText(control.m_OffValue).c_str(), control.m_TransposedNote,
                control.m_ChoiceID, control.m_LeadParam, control.m_Latching ? ", latching" : "",
                control.m_Keyswitch ? ", keyswitch" : "");
}

void PrintBlock(const mp::sPluginSpecific &block) {
    std::printf("    block       %s, id %d, %s", Quoted(block.m_TagName.view()).c_str(),
                block.m_TagID, mp::GetPluginSpecificDataTypeWord(block.m_DataType));
    if (block.m_MenuItemString != block.m_TagName)
        std::printf(", menu item %s", Quoted(block.m_MenuItemString.view()).c_str());
    if (block.m_Flags & mp::sPluginSpecific::eLoadWithParams)
        std::printf(", loads with the parameters");
    if (block.m_StorageFlags & mp::sPluginSpecific::eHasDataFile)
        std::printf(", data file %s", Quoted(block.m_DataFileName.view()).c_str());
    if (block.m_StorageFlags & mp::sPluginSpecific::eHasCacheFile)
        std::printf(", cache file %s", Quoted(block.m_CacheFileName.view()).c_str());
    std::printf("\n");
    for (const auto &[name, value] : block.m_Descriptors)
        std::printf("      descriptor %s = %s\n", Quoted(name.view()).c_str(),
                    Quoted(value.view()).c_str());
    std::string text;
    if (block.GetDataAsText(text) == ml::eNoErr && !text.empty()) {
        std::printf("      data\n");
        PrintLines("        ", text);
    }
}

void PrintSetup(const mp::sPresetData &data) {
    const char *setup = data.m_Setup == ml::eSetupA   ? "SETUP_A"
                        : data.m_Setup == ml::eSetupB ? "SETUP_B"
                                                      : "CURRENT";
    std::printf("  setup %s", setup);
    if (data.m_SetupName.size() != 0)
        std::printf(" %s", Quoted(data.m_SetupName.view()).c_str());
    std::printf("\n");
    switch (data.m_DataType) {
    case mp::ePresetDataStates:
    case mp::ePresetDataRealWorld: PrintValues(data); break;
    case mp::ePresetDataReset: std::printf("    parameters  reset to their defaults\n"); break;
    case mp::ePresetDataNone: std::printf("    parameters  none\n"); break;
    default: std::printf("    parameters  not stored\n"); break;
    }
    for (const auto &control : data.m_ControlData)
        PrintControl(control);
    if (!data.m_PluginSpecificXML.GetSubElements().empty()) {
        std::printf("    plug-in XML\n");
        std::string text;
        for (const ml::XML::CXMLElement *child : data.m_PluginSpecificXML.GetSubElements())
            ml::XML::WriteXMLToString(text, child, false, true, 0);
        PrintLines("      ", text);
    }
    for (const auto &block : data.m_PluginSpecific)
        PrintBlock(*block);
}

void PrintField(const char *label, const ml::WCFixedStringBase &value) {
    if (value.size() != 0)
        std::printf("  %-14s%s\n", label, Quoted(value.view()).c_str());
}

void PrintPreset(std::size_t index, const mp::CPresetInfo &preset) {
    std::printf("preset %zu %s\n", index, Quoted(preset.m_PresetName.view()).c_str());
    if (preset.m_GenericType != ml::WCFourCC::Unreadable())
        std::printf("  %-14s%s\n", "generic type",
                    Quoted(preset.m_GenericType.GetString().view()).c_str());
    PrintField("group", preset.m_GroupName);
    PrintField("plug-in", preset.m_PluginName);
    PrintField("sub-component", preset.m_PluginSubComp);
    PrintField("version", preset.m_PluginVersion);
    PrintField("info", preset.m_InfoString);
    PrintField("active setup", preset.m_ActiveSetup);
    std::printf("  %-14s%s\n", "read-only", preset.IsReadOnly() ? "yes" : "no");
    PrintField("message", preset.m_ShellMessage);
    if (preset.m_SideChainActive != mp::CPresetInfo::kSideChainNotStored)
        std::printf("  %-14s%s\n", "side-chain", preset.m_SideChainActive != 0 ? "on" : "off");
    for (const auto &data : preset.m_Data)
        PrintSetup(*data);
}

int Print(const std::string &path) {
    const EFileKind kind = KindOf(path);
    if (kind == EFileKind::eUnknown) {
        std::fprintf(stderr, "mirel-host: %s is neither an .xps nor a .yps file\n", path.c_str());
        return kExitBadArguments;
    }
    WSPresetFile file;
    if (const ml::WTErr error = ReadPresetFile(path, kind, file); error != ml::eNoErr) {
        ReportCode("cannot read", path, error);
        return kExitBadInput;
    }
    const std::size_t count = file.Presets().size();
    std::printf("%s: %s file, %zu preset(s)\n", path.c_str(),
                kind == EFileKind::eXPS ? ".xps" : ".yps", count);
    if (kind == EFileKind::eYPS) {
        const auto &header = file.m_YAMLHeader;
        std::printf("yaml keys\n");
        std::printf("  %-14s%s\n", "GenericType",
                    Quoted(header.m_GenericType.GetString().view()).c_str());
        std::printf("  %-14s%s\n", "PluginName", Quoted(header.m_PluginName.view()).c_str());
        std::printf("  %-14s%s\n", "PluginSubComp", Quoted(header.m_PluginSubComp.view()).c_str());
        std::printf("  %-14s%s\n", "PluginVersion",
                    Quoted(header.m_PluginVersion.GetString(4).view()).c_str());
        std::printf("  %-14s%s\n", "VendorName", Quoted(header.m_VendorName.view()).c_str());
        for (const auto &[key, value] : header.m_PluginKeys)
            std::printf("  %s: %s\n", Quoted(key).c_str(), Quoted(value).c_str());
    }
    std::size_t index = 0;
    for (const auto &entry : file.m_Entries) {
        if (entry->IsDummyTitle())
            std::printf("title %s\n", Quoted(entry->m_PresetName.view()).c_str());
        else if (entry->IsSeperator())
            std::printf("separator\n");
        else
            PrintPreset(index++, *entry);
    }
    return kExitDone;
}

// A .yps has no side files: a block kept in one travels inline in the chunk.
void CarrySideFilesInline(mp::CPresetInfo &preset) {
    for (const auto &data : preset.m_Data) {
        for (const auto &block : data->m_PluginSpecific)
            block->m_StorageFlags = 0;
    }
}

mp::WSYAMLPresetHeader YAMLHeaderOf(const WSPresetFile &file, const mp::CPresetInfo &preset) {
    if (file.m_Kind == EFileKind::eYPS)
        return file.m_YAMLHeader;
    mp::WSYAMLPresetHeader header;
    header.m_GenericType = preset.m_GenericType;
    header.m_PluginName = preset.m_PluginName;
    header.m_PluginSubComp = preset.m_PluginSubComp;
    header.m_PluginVersion.ReadFromString(preset.m_PluginVersion.c_str());
    return header;
}

ml::WTErr WriteYPS(const std::string &path, const WSPresetFile &file,
                   const mp::CPresetInfo &preset) {
    mp::CPresetInfo copy(preset);
    CarrySideFilesInline(copy);
    ml::Utils::WCStMemObj chunk;
    if (const ml::WTErr error = mp::WritePresetChunk(copy, chunk); error != ml::eNoErr)
        return error;
    std::string text;
    const std::string chunkText(static_cast<const char *>(chunk.GetPtr()), chunk.GetSize());
    if (const ml::WTErr error =
            mp::PrepareYAMLPresetString(YAMLHeaderOf(file, preset), chunkText, text);
        error != ml::eNoErr)
        return error;
    return mp::WriteYAMLPresetFile(PathOf(path), text);
}

struct WSConvertArguments {
    std::string m_Input;
    std::string m_Output;
    bool m_HasIndex = false;
    std::size_t m_Index = 0;
};

bool ParseConvertArguments(int argc, char **argv, WSConvertArguments &arguments) {
    std::vector<std::string> paths;
    for (int i = 0; i < argc; ++i) {
        const std::string_view arg = argv[i];
        if (arg == "--index" && i + 1 < argc && !arguments.m_HasIndex) {
            const std::string_view number = argv[++i];
            const auto [end, ec] =
                std::from_chars(number.data(), number.data() + number.size(), arguments.m_Index);
            if (ec != std::errc() || end != number.data() + number.size())
                return false;
            arguments.m_HasIndex = true;
        } else if (!arg.empty() && arg[0] != '-') {
            paths.emplace_back(arg);
        } else {
            return false;
        }
    }
    if (paths.size() != 2)
        return false;
    arguments.m_Input = paths[0];
    arguments.m_Output = paths[1];
    return true;
}

int Convert(int argc, char **argv) {
    WSConvertArguments arguments;
    if (!ParseConvertArguments(argc, argv, arguments)) {
        PrintPresetUsage(stderr, true);
        return kExitBadArguments;
    }
    const EFileKind inKind = KindOf(arguments.m_Input);
    const EFileKind outKind = KindOf(arguments.m_Output);
    if (inKind == EFileKind::eUnknown || outKind == EFileKind::eUnknown) {
        std::fprintf(stderr, "mirel-host: preset files end in .xps or .yps\n");
        return kExitBadArguments;
    }
    WSPresetFile file;
    if (const ml::WTErr error = ReadPresetFile(arguments.m_Input, inKind, file);
        error != ml::eNoErr) {
        ReportCode("cannot read", arguments.m_Input, error);
        return kExitBadInput;
    }
    const std::vector<const mp::CPresetInfo *> presets = file.Presets();
    if (arguments.m_HasIndex && arguments.m_Index >= presets.size()) {
        std::fprintf(stderr, "mirel-host: %s holds %zu preset(s); --index %zu is past them\n",
                     arguments.m_Input.c_str(), presets.size(), arguments.m_Index);
        return kExitBadArguments;
    }
    ml::WTErr error = ml::eNoErr;
    if (outKind == EFileKind::eYPS) {
        if (presets.empty()) {
            std::fprintf(stderr, "mirel-host: %s holds no preset to write\n",
                         arguments.m_Input.c_str());
            return kExitBadInput;
        }
        const mp::CPresetInfo &preset = *presets[arguments.m_Index];
        if (presets.size() > 1 && !arguments.m_HasIndex)
            std::printf("%s holds %zu presets; a .yps holds one: preset 0 %s is written "
                        "(--index N chooses another)\n",
                        arguments.m_Input.c_str(), presets.size(),
                        Quoted(preset.m_PresetName.view()).c_str());
        error = WriteYPS(arguments.m_Output, file, preset);
    } else {
        std::vector<const mp::CPresetInfo *> list;
        if (arguments.m_HasIndex) {
            list.push_back(presets[arguments.m_Index]);
        } else {
            for (const auto &entry : file.m_Entries)
                list.push_back(entry.get());
        }
        if (inKind == EFileKind::eYPS && !file.m_YAMLHeader.m_PluginKeys.empty())
            std::printf("the plug-in's own keys of %s have no place in an .xps and are left out\n",
                        arguments.m_Input.c_str());
        error = mp::WritePresetsFile(PathOf(arguments.m_Output), list);
    }
    if (error != ml::eNoErr) {
        ReportCode("cannot write", arguments.m_Output, error);
        return kExitNotWritten;
    }
    std::printf("%s written\n", arguments.m_Output.c_str());
    return kExitDone;
}

} // namespace

void PrintPresetUsage(std::FILE *out, bool alone) {
    std::fprintf(out, "%s", alone ? "usage: " : "       ");
    std::fprintf(out,
                 "mirel-host preset print FILE\n"
                 "       mirel-host preset convert [--index N] IN OUT\n"
                 "  print    shows the presets of an .xps or .yps file: names, setups, parameter\n"
                 "           values, controls and plug-in specific blocks\n"
                 "  convert  writes IN (.xps or .yps) as OUT, the form chosen by OUT's extension;\n"
                 "           a .yps holds one preset: preset N of IN (--index, default 0); into\n"
                 "           an .xps --index N takes that preset alone, else every entry\n"
                 "  exit codes: 0 done, 1 bad arguments, 2 unreadable or broken input,\n"
                 "              4 output not written (an existing OUT is left whole)\n");
}

int RunPresetCommand(int argc, char **argv) {
    try {
        if (argc == 2 && std::strcmp(argv[0], "print") == 0)
            return Print(argv[1]);
        if (argc >= 1 && std::strcmp(argv[0], "convert") == 0)
            return Convert(argc - 1, argv + 1);
    } catch (const std::bad_alloc &) {
        std::fprintf(stderr, "mirel-host: out of memory\n");
        return kExitBadInput;
    }
    PrintPresetUsage(stderr, true);
    return kExitBadArguments;
}

} // namespace mirel_host
