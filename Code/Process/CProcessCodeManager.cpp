#include "Code/Process/CProcessCodeManager.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include <pugixml.hpp>

#include "Utilities/XML/Code/PugiXML.h"
#include "resources/MirelComponentInfo.h"
#include "resources/SubCompTypeScanner.h"

MIREL_NAMESPACE_BEGIN

namespace {

std::string Trimmed(char const *text) {
    std::string value(text == nullptr ? "" : text);
    const auto first = value.find_first_not_of(" \t\r\n");
    const auto last = value.find_last_not_of(" \t\r\n");
    return first == std::string::npos ? std::string() : value.substr(first, last - first + 1);
}

// The match name of a sub-type: its "SubComponent" names a "SubComponentType", whose
// "ProcessCodeMatch" is the name. Empty when the documents do not list the sub-type.
std::string MatchOfSubType(std::vector<pugi::xml_node> const &roots, WCFourCC subType) {
    const std::string code = subType.GetString().c_str();
    for (pugi::xml_node const &root : roots) {
        for (pugi::xml_node entry : root.child("SubComponentList").children("SubComponent")) {
            if (Trimmed(entry.child_value("Type")) != code)
                continue;
            const std::string typeName = Trimmed(entry.child_value("ProcessCodeMatch"));
            for (pugi::xml_node const &types : roots)
                for (pugi::xml_node type :
                     types.child("SubComponentTypeList").children("SubComponentType"))
                    if (Trimmed(type.child_value("Name")) == typeName)
                        return Trimmed(type.child_value("ProcessCodeMatch"));
            return std::string();
        }
    }
    return std::string();
}

} // namespace

WTErr CProcessCodeManager::ReadProcCodeDescForComponent(MirelComponentInfo const &info,
                                                        WTResContainerType *container) {
    if (container == nullptr)
        return eMemNullPointer;
    Utils::WCStMemObj bytes;
    const int err = RM::GetRawResourceData(
        container, WCResKey(kProcessXMLResType, kProcessXMLResID), bytes);
    if (err != eNoErr)
        return err;
    pugi::xml_document doc;
    if (PugiXML::read_xml_from_mem_obj(bytes, doc) != 0)
        return eXMLTreeNotValid;
    return ReadProcCodeDescForComponentFromXMLTrees({doc.document_element()},
                                                    info.m_ComponentSubType,
                                                    "");
}

WTErr CProcessCodeManager::ReadProcCodeDescForComponentFromXMLTrees(
    std::vector<pugi::xml_node> const &roots, WCFourCC subType, char const *match) {
    // The merged list of every document's descriptions, each with its document's base.
    std::vector<ProcessMemory::CProcCodeDesc> merged;
    short base = m_ResBase;
    for (pugi::xml_node const &root : roots) {
        if (!root)
            return eXMLTreeNotValid;
        const int rootBase = root.attribute("resBase").as_int(0);
        if (rootBase < -32768 || rootBase > 32767)
            return eXMLTreeNotValid;
        base = static_cast<short>(rootBase);
        for (pugi::xml_node element :
             root.child("ProcessCodeDescriptionList").children("ProcessCodeDescription")) {
            ProcessMemory::CProcCodeDesc desc;
            const WTErr err = desc.ReadFromXML(element);
            if (err != eNoErr)
                return err;
            desc.m_ResID = static_cast<short>(desc.m_ResID + base);
            if (desc.m_IdleResID != 0)
                desc.m_IdleResID = static_cast<short>(desc.m_IdleResID + base);
            merged.push_back(std::move(desc));
        }
    }
    std::string name = MatchOfSubType(roots, subType);
    if (name.empty())
        name = Trimmed(match);
    // The builds the match names, in the order it names them; an id past the list or not a
    // number makes the document broken.
    std::vector<ProcessMemory::CProcCodeDesc> chosen;
    for (pugi::xml_node const &root : roots) {
        for (pugi::xml_node entry : root.child("ProcessCodeMatchList").children("ProcessCodeMatch")) {
            if (Trimmed(entry.child_value("Name")) != name)
                continue;
            for (pugi::xml_node id : entry.children("ProcessCodeDescriptionID")) {
                char *end = nullptr;
                const std::string text = Trimmed(id.child_value());
                const long index = std::strtol(text.c_str(), &end, 10);
                if (text.empty() || *end != '\0' || index < 0 ||
                    static_cast<std::size_t>(index) >= merged.size())
                    return eXMLTreeNotValid;
                chosen.push_back(merged[static_cast<std::size_t>(index)]);
            }
        }
    }
    m_ResBase = base;
    m_Descriptions = std::move(chosen);
    return eNoErr;
}

ProcessMemory::CProcCodeDesc const *
CProcessCodeManager::DescriptionFor(SProcessorSpec const &spec) const {
    ProcessMemory::CProcCodeDesc const *found = nullptr;
    for (auto const &desc : m_Descriptions) {
        SProcessorSpec out;
        int cycles = -1;
        if (!desc.CyclesForSpecificProcessor(spec, out, cycles))
            continue;
        found = &desc;
        // An exact build ends the walk; a fallback may still be beaten by a later exact one.
        if (out.specific == spec.specific)
            break;
    }
    return found;
}

bool CProcessCodeManager::CanRunOnSpecificProcessor(SProcessorSpec const &spec,
                                                    SProcessorSpec &out) const {
    ProcessMemory::CProcCodeDesc const *desc = DescriptionFor(spec);
    int cycles = -1;
    return desc != nullptr && desc->CyclesForSpecificProcessor(spec, out, cycles);
}

bool CProcessCodeManager::GetDSPReqResForSpecificProcessor(SProcessorSpec const &spec,
                                                           ProcessMemory::SDSPReqRes &out) const {
    ProcessMemory::CProcCodeDesc const *desc = DescriptionFor(spec);
    if (desc == nullptr) {
        out.cycles = -1;
        return false;
    }
    return desc->DSPReqResForSpecificProcessor(spec, out);
}

bool CProcessCodeManager::FindWeakestProcessor(SProcessorSpec &out) const {
    for (auto const &desc : m_Descriptions)
        if (desc.FindWeakestProcessor(out))
            return true;
    return false;
}

WTErr CProcessCodeManager::GetExternalMemoryName(std::size_t index, WCFixedStringBase &out) const {
    if (index >= m_ExternalMemoryNames.size())
        return eOutOfRangeNumber;
    out = m_ExternalMemoryNames[index];
    return eNoErr;
}

WTErr CProcessCodeManager::SetExternalMemoryName(std::size_t index, char const *name) {
    if (index >= m_ExternalMemoryNames.size())
        return eOutOfRangeNumber;
    if (name == nullptr)
        return eMemNullPointer;
    m_ExternalMemoryNames[index] = name;
    return eNoErr;
}

short CProcessCodeManager::FixCodeNum(short id, int sign) const {
    return static_cast<short>(id + (sign > 0 ? m_ResBase : sign < 0 ? -m_ResBase : 0));
}

MIREL_NAMESPACE_END
