#include "Code/Process/CProcCodeDesc.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include <pugixml.hpp>

#include "Code/Process/WUProcessorSpec.h"
#include "Utilities/XML/Code/WCXMLSerializer.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace ProcessMemory {

namespace {

// Memory sizes and counts above this are a broken description, not a real build.
constexpr long long kMaxCount = 1LL << 26;
// A family has at most this many models; longer cycle lists are broken.
constexpr std::size_t kMaxSpecifics = 64;

// A whole number, or false for text that is not one (leading and trailing space allowed).
bool ParseInt(char const *text, long long &out) {
    if (text == nullptr)
        return false;
    errno = 0;
    char *end = nullptr;
    const long long value = std::strtoll(text, &end, 10);
    if (end == text || errno != 0)
        return false;
    while (*end == ' ' || *end == '\t' || *end == '\n' || *end == '\r')
        ++end;
    if (*end != '\0')
        return false;
    out = value;
    return true;
}

// Reads an optional child count into `out`; an absent child keeps it.
void ReadCount(pugi::xml_node const &node, char const *name, long long low, long long high,
               long long &out) {
    const pugi::xml_node child = node.child(name);
    if (!child)
        return;
    long long value = 0;
    if (!ParseInt(child.child_value(), value) || value < low || value > high)
        throw static_cast<int>(eXMLTreeNotValid);
    out = value;
}

bool IsTrue(char const *text) {
    return std::strcmp(text, "true") == 0 || std::strcmp(text, "True") == 0 ||
           std::strcmp(text, "1") == 0 || std::strcmp(text, "yes") == 0;
}

// A list of whole numbers separated by spaces or commas; a piece that is not one throws.
std::vector<long long> ParseList(char const *text) {
    std::vector<long long> values;
    std::string piece;
    for (char const *c = text;; ++c) {
        if (*c == '\0' || *c == ',' || *c == ' ' || *c == '\t' || *c == '\n' || *c == '\r') {
            if (!piece.empty()) {
                long long value = 0;
                if (!ParseInt(piece.c_str(), value) || values.size() >= kMaxSpecifics)
                    throw static_cast<int>(eXMLTreeNotValid);
                values.push_back(value);
                piece.clear();
            }
            if (*c == '\0')
                break;
        } else {
            piece.push_back(*c);
        }
    }
    return values;
}

std::int32_t ReadFamily(char const *text) {
    for (std::int32_t family = eProcessorFamily56k; family <= eProcessorFamilyX86; ++family)
        if (std::strcmp(text, ProcessorFamilyName(family)) == 0)
            return family;
    long long value = 0;
    if (!ParseInt(text, value) || value < 0 || value > 255)
        throw static_cast<int>(eXMLTreeNotValid);
    return static_cast<std::int32_t>(value);
}

} // namespace

WTErr CProcCodeDesc::SExternBuffDesc::ReadFromXML(const pugi::xml_node &node) {
    try {
        SExternBuffDesc read = *this;
        const pugi::xml_node space = node.child("memSpace");
        if (space) {
            const WCFourCC code = WCFourCC::FromText(space.child_value());
            if (code.IsUnreadable() || std::strlen(space.child_value()) != 4)
                throw static_cast<int>(eXMLTreeNotValid);
            read.m_MemSpace = code;
        }
        long long size = read.m_Size, access = read.m_AccessCount, align = read.m_Alignment;
        ReadCount(node, "theSize", 0, kMaxCount, size);
        ReadCount(node, "accessCount", 0, kMaxCount, access);
        ReadCount(node, "memAlign", 0, kMaxCount, align);
        read.m_Size = static_cast<std::uint32_t>(size);
        read.m_AccessCount = static_cast<std::uint32_t>(access);
        read.m_Alignment = static_cast<std::uint32_t>(align);
        read.m_Cyclic = IsTrue(node.child("cyclic").child_value());
        read.m_DRAM = IsTrue(node.child("DRAM").child_value());
        *this = read;
        return eNoErr;
    } catch (int err) {
        return err;
    }
}

WTErr CProcCodeDesc::ReadFromXML(const pugi::xml_node &node) {
    if (!node)
        return eXMLElementMissing;
    try {
        CProcCodeDesc read = *this;
        if (pugi::xml_attribute type = node.attribute("resType")) {
            read.m_ResType = WCFourCC::FromText(type.value());
            if (read.m_ResType.IsUnreadable())
                throw static_cast<int>(eXMLTreeNotValid);
        }
        if (pugi::xml_attribute id = node.attribute("resID")) {
            long long value = 0;
            if (!ParseInt(id.value(), value) || value < -32768 || value > 32767)
                throw static_cast<int>(eXMLTreeNotValid);
            read.m_ResID = static_cast<short>(value);
        }
        struct {
            char const *name;
            std::uint32_t *field;
        } const memories[] = {{"Coefs", &read.m_Coefs},           {"States", &read.m_States},
                              {"InternalP", &read.m_InternalP},   {"InternalX", &read.m_InternalX},
                              {"InternalY", &read.m_InternalY},   {"IdleInternalP", &read.m_IdleInternalP}};
        for (auto const &memory : memories) {
            long long value = *memory.field;
            ReadCount(node, memory.name, 0, kMaxCount, value);
            *memory.field = static_cast<std::uint32_t>(value);
        }
        struct {
            char const *name;
            std::int32_t *field;
            long long high;
        } const numbers[] = {{"NumInputs", &read.m_TotalInputs, 1024},
                             {"NumSideChainInputs", &read.m_SideChainInputs, 1024},
                             {"NumOutputs", &read.m_Outputs, 1024},
                             {"MaxSampleRate", &read.m_MaxSampleRate, 100000000}};
        for (auto const &number : numbers) {
            long long value = *number.field;
            ReadCount(node, number.name, 0, number.high, value);
            *number.field = static_cast<std::int32_t>(value);
        }
        long long idle = read.m_IdleResID;
        ReadCount(node, "IdleCodeResID", -32768, 32767, idle);
        read.m_IdleResID = static_cast<short>(idle);
        if (pugi::xml_node name = node.child("ProcessFunctionName"))
            read.m_ProcessFunctionName = name.child_value();
        if (pugi::xml_node midi = node.child("MIDIInput"))
            read.m_HasMIDIInput = IsTrue(midi.child_value());
        if (pugi::xml_node family = node.child("ProcessorFamily"))
            read.m_ProcessorFamily = ReadFamily(family.child_value());

        // The cost: a list with one entry per model, or one count for the models named by
        // "CanRunOn" (or the single "ProcessorSpecific").
        const std::vector<long long> cycles = ParseList(node.child("CycleCount").child_value());
        std::vector<long long> models = ParseList(node.child("CanRunOn").child_value());
        if (pugi::xml_node one = node.child("ProcessorSpecific"))
            for (long long model : ParseList(one.child_value()))
                models.push_back(model);
        if (!models.empty()) {
            if (cycles.size() != 1)
                throw static_cast<int>(eXMLTreeNotValid);
            read.m_CyclesList.clear();
            for (long long model : models) {
                if (model < 0 || static_cast<std::size_t>(model) >= kMaxSpecifics)
                    throw static_cast<int>(eXMLTreeNotValid);
                if (read.m_CyclesList.size() <= static_cast<std::size_t>(model))
                    read.m_CyclesList.resize(static_cast<std::size_t>(model) + 1, -1);
                read.m_CyclesList[static_cast<std::size_t>(model)] =
                    static_cast<std::int32_t>(cycles.front());
            }
        } else if (node.child("CycleCount")) {
            read.m_CyclesList.assign(cycles.begin(), cycles.end());
        }
        for (std::int32_t entry : read.m_CyclesList)
            if (entry < -1)
                throw static_cast<int>(eXMLTreeNotValid);

        read.m_ExternBuffs.clear();
        for (pugi::xml_node external : node.children("ExternalReq")) {
            SExternBuffDesc buffer;
            const WTErr err = buffer.ReadFromXML(external);
            if (err != eNoErr)
                throw static_cast<int>(err);
            read.m_ExternBuffs.push_back(buffer);
        }
        *this = std::move(read);
        return eNoErr;
    } catch (int err) {
        return err;
    }
}

void CProcCodeDesc::SExternBuffDesc::SerializeXML(XML::WCXMLSerializer &s) {
    s.element_name("memSpace").element_content(m_MemSpace).element_end();
    s.element_name("theSize").element_content(m_Size).element_end();
    s.element_name("accessCount").element_content(m_AccessCount).element_end();
    s.element_name("memAlign").element_content(m_Alignment).element_end();
    s.element_name("cyclic").element_content(m_Cyclic).element_end();
    s.element_name("DRAM").element_content(m_DRAM).element_end();
}

bool CProcCodeDesc::SExternBuffDesc::operator==(SExternBuffDesc const &other) const noexcept {
    return m_MemSpace == other.m_MemSpace && m_Size == other.m_Size &&
           m_AccessCount == other.m_AccessCount && m_Alignment == other.m_Alignment &&
           m_Cyclic == other.m_Cyclic && m_DRAM == other.m_DRAM;
}

void CProcCodeDesc::SerializeXML(XML::WCXMLSerializer &s) {
    s.element_name("resType").element_content(m_ResType).element_end();
    s.element_name("resID").element_content(m_ResID).element_end();
    s.element_name("ProcessFunctionName").element_content(m_ProcessFunctionName).element_end();
    s.element_name("Coefs").element_content(m_Coefs).element_end();
    s.element_name("States").element_content(m_States).element_end();
    s.element_name("InternalP").element_content(m_InternalP).element_end();
    s.element_name("InternalX").element_content(m_InternalX).element_end();
    s.element_name("InternalY").element_content(m_InternalY).element_end();
    s.element_name("IdleCodeResID").element_content(m_IdleResID).element_end();
    s.element_name("IdleInternalP").element_content(m_IdleInternalP).element_end();
    s.element_name("NumInputs").element_content(m_TotalInputs).element_end();
    s.element_name("NumSideChainInputs").element_content(m_SideChainInputs).element_end();
    s.element_name("NumOutputs").element_content(m_Outputs).element_end();
    s.element_name("MaxSampleRate").element_content(m_MaxSampleRate).element_end();
    s.element_name("MIDIInput").element_content(m_HasMIDIInput).element_end();
    s.element_name("ProcessorFamily").element_content(m_ProcessorFamily).element_end();
    // The cycles list as one text, so a reader gets the whole list or keeps its own.
    std::string cycles;
    for (std::int32_t entry : m_CyclesList)
        cycles += (cycles.empty() ? "" : " ") + std::to_string(entry);
    s.element_name("CycleCount").element_content(cycles).element_end();
    std::vector<long long> read;
    try {
        read = ParseList(cycles.c_str());
    } catch (int) {
        read.clear();
    }
    m_CyclesList.clear();
    for (long long entry : read)
        if (entry >= -1 && entry <= 0x7fffffff)
            m_CyclesList.push_back(static_cast<std::int32_t>(entry));
    const std::uint64_t count = s.get_num_array_elements("ExternalReq", m_ExternBuffs.size());
    if (count <= kMaxSpecifics)
        m_ExternBuffs.resize(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < m_ExternBuffs.size(); ++i)
    {
        s.element_name("ExternalReq", i).level_down();
        m_ExternBuffs[i].SerializeXML(s);
        s.level_up().element_end();
    }
}

bool CProcCodeDesc::operator==(CProcCodeDesc const &other) const noexcept {
    return m_ResType == other.m_ResType && m_ProcessFunctionName == other.m_ProcessFunctionName &&
           m_ResID == other.m_ResID && m_IdleResID == other.m_IdleResID &&
           m_Coefs == other.m_Coefs && m_States == other.m_States &&
           m_InternalP == other.m_InternalP && m_InternalX == other.m_InternalX &&
           m_InternalY == other.m_InternalY && m_IdleInternalP == other.m_IdleInternalP &&
           m_TotalInputs == other.m_TotalInputs && m_SideChainInputs == other.m_SideChainInputs &&
           m_Outputs == other.m_Outputs && m_MaxSampleRate == other.m_MaxSampleRate &&
           m_HasMIDIInput == other.m_HasMIDIInput && m_ProcessorFamily == other.m_ProcessorFamily &&
           m_CyclesList == other.m_CyclesList && m_ExternBuffs == other.m_ExternBuffs;
}

bool CProcCodeDesc::CyclesForSpecificProcessor(SProcessorSpec const &spec, SProcessorSpec &out,
                                               int &cycles) const {
    cycles = -1;
    if (spec.family != m_ProcessorFamily)
        return false;
    if (spec.specific >= 0 && static_cast<std::size_t>(spec.specific) < m_CyclesList.size() &&
        m_CyclesList[static_cast<std::size_t>(spec.specific)] != -1) {
        out = spec;
        cycles = m_CyclesList[static_cast<std::size_t>(spec.specific)];
        return true;
    }
    if (!m_CyclesList.empty() && m_CyclesList.front() != -1) {
        out = SProcessorSpec{spec.family, 0};
        cycles = m_CyclesList.front();
        return true;
    }
    return false;
}

bool CProcCodeDesc::FindWeakestProcessor(SProcessorSpec &out) const {
    for (std::size_t i = 0; i < m_CyclesList.size(); ++i) {
        if (m_CyclesList[i] != -1) {
            out = SProcessorSpec{m_ProcessorFamily, static_cast<std::int32_t>(i)};
            return true;
        }
    }
    return false;
}

bool CProcCodeDesc::DSPReqResForSpecificProcessor(SProcessorSpec const &spec,
                                                  SDSPReqRes &out) const {
    SProcessorSpec chosen;
    int cycles = -1;
    if (!CyclesForSpecificProcessor(spec, chosen, cycles))
        return false;
    out.programWords = m_InternalP;
    out.statesWords = m_States;
    out.coefsWords = m_Coefs;
    out.maxSampleRate = m_MaxSampleRate;
    out.inputs = m_TotalInputs;
    out.sideChainInputs = m_SideChainInputs;
    out.outputs = m_Outputs;
    out.cycles = cycles;
    out.codeResID = m_ResID;
    out.idleCodeResID = m_IdleResID;
    out.processor = chosen;
    out.extBuffs.clear();
    for (SExternBuffDesc const &external : m_ExternBuffs) {
        sEXT_BUFF buffer;
        buffer.memSpace = external.m_MemSpace;
        buffer.size = external.m_Size;
        buffer.cyclic = external.m_Cyclic;
        buffer.accessCount = external.m_AccessCount;
        buffer.alignment = external.m_Alignment;
        out.extBuffs.push_back(buffer);
    }
    return true;
}

std::uint32_t CProcCodeDesc::ExtAccessCount() const {
    std::uint32_t total = 0;
    for (SExternBuffDesc const &external : m_ExternBuffs)
        total += external.m_AccessCount;
    return total;
}

} // namespace ProcessMemory

MIREL_NAMESPACE_END
