#pragma once

#include <cstdint>
#include <vector>

#include "Code/Process/KPAPIProcessMemory.h"
#include "Utilities/XML/Code/CXMLable.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"

namespace pugi {
class xml_node;
}

MIREL_NAMESPACE_BEGIN

namespace ProcessMemory {

// What one build of a plug-in's audio code needs: its counts of coefficients and states, its
// ports, the external memories it asks for, and its cost on each model of its processor family.
// Read from a "ProcessCodeDescription" element of the "ProcessXML" resource. [main-thread]
class CProcCodeDesc : public CXMLable {
public:
    // One external memory the build asks for.
    class SExternBuffDesc : public CXMLable {
    public:
        WTErr ReadFromXML(const pugi::xml_node &node) override;
        using CXMLable::ReadFromXML;
        void SerializeXML(XML::WCXMLSerializer &s) override;
        bool operator==(SExternBuffDesc const &other) const noexcept;

        WCFourCC m_MemSpace = WCFourCC("XMEM");
        std::uint32_t m_Size = 0;
        std::uint32_t m_AccessCount = 0;
        std::uint32_t m_Alignment = 0;
        bool m_Cyclic = false;
        bool m_DRAM = false;
    };

    // Reads the element; a count that is not a number, or absurd, gives eXMLTreeNotValid and
    // leaves the description as it was.
    WTErr ReadFromXML(const pugi::xml_node &node) override;
    using CXMLable::ReadFromXML;
    // The same fields through the two-way serializer, for the component record that carries
    // a description ("compProcCodeDesc"); the element names are those of the description.
    void SerializeXML(XML::WCXMLSerializer &s) override;
    bool operator==(CProcCodeDesc const &other) const noexcept;

    // The cycles of the build on `spec`, falling back to the weakest model of the family (the
    // list's entry 0), never to a stronger one. `out` is the model that answered; false (and
    // cycles -1) for another family or a build that cannot run.
    bool CyclesForSpecificProcessor(SProcessorSpec const &spec, SProcessorSpec &out,
                                    int &cycles) const;
    // The first model of the list the build runs on; false when none.
    bool FindWeakestProcessor(SProcessorSpec &out) const;
    // The needs of the build on `spec`, externals with an empty memory reference for the
    // process side to fill.
    bool DSPReqResForSpecificProcessor(SProcessorSpec const &spec, SDSPReqRes &out) const;
    // The total of the externals' access counts.
    std::uint32_t ExtAccessCount() const;

    WCFourCC m_ResType = WCFourCC("????");
    WCFixedString<63> m_ProcessFunctionName;
    short m_ResID = 0;
    short m_IdleResID = 0;
    std::uint32_t m_Coefs = 0;
    std::uint32_t m_States = 0;
    std::uint32_t m_InternalP = 0;
    std::uint32_t m_InternalX = 0;
    std::uint32_t m_InternalY = 0;
    std::uint32_t m_IdleInternalP = 0;
    std::int32_t m_TotalInputs = 0;
    std::int32_t m_SideChainInputs = 0;
    std::int32_t m_Outputs = 0;
    std::int32_t m_MaxSampleRate = 0;
    bool m_HasMIDIInput = false;
    std::int32_t m_ProcessorFamily = 0;
    // One entry per model of the family, by specific; -1: the build cannot run there.
    std::vector<std::int32_t> m_CyclesList;
    std::vector<SExternBuffDesc> m_ExternBuffs;
};

} // namespace ProcessMemory

MIREL_NAMESPACE_END
