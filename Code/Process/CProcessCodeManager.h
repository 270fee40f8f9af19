#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "Code/Process/CProcCodeDesc.h"
#include "Utilities/XML/Code/CXMLable.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"
#include "resources/ResourceManager.h"

MIREL_NAMESPACE_BEGIN

struct MirelComponentInfo;

// The builds of a component's audio code, from the bundle's "ProcessXML" resource, and the
// choice among them for a processor. The document names sub-components, their types, the
// descriptions of the builds and, per match name, which descriptions (by position in the
// description list) a type may use:
//
//   <ProcessXML resBase="0">
//     <SubComponentTypeList><SubComponentType><Name>Native</Name>
//       <ProcessCodeMatch>x64</ProcessCodeMatch></SubComponentType></SubComponentTypeList>
//     <SubComponentList><SubComponent><Type>GnFl</Type>
//       <ProcessCodeMatch>Native</ProcessCodeMatch></SubComponent></SubComponentList>
//     <ProcessCodeDescriptionList><ProcessCodeDescription resType="Nati" resID="1000">
//       ...</ProcessCodeDescription></ProcessCodeDescriptionList>
//     <ProcessCodeMatchList><ProcessCodeMatch><Name>x64</Name>
//       <ProcessCodeDescriptionID>0</ProcessCodeDescriptionID></ProcessCodeMatch>
//     </ProcessCodeMatchList>
//   </ProcessXML>
//
// [main-thread]
class CProcessCodeManager : public CXMLable {
public:
    // Reads the resource of `container` for the component's sub-type. A missing resource is its
    // code and leaves no description; a broken one eXMLTreeNotValid.
    WTErr ReadProcCodeDescForComponent(MirelComponentInfo const &info,
                                       WTResContainerType *container);
    // The same over documents already parsed, merged in order: their description lists are
    // concatenated (each with its own resource base) and so are their matches, so a later
    // document adds builds to what an earlier one declared. `match` names the builds when the
    // documents do not list the sub-type.
    WTErr ReadProcCodeDescForComponentFromXMLTrees(std::vector<pugi::xml_node> const &roots,
                                                   WCFourCC subType, char const *match);

    // The needs of the build chosen for `spec` (exact model first, else the fallback found
    // last); false and cycles -1 in `out` when no build can run.
    bool GetDSPReqResForSpecificProcessor(SProcessorSpec const &spec,
                                          ProcessMemory::SDSPReqRes &out) const;
    bool CanRunOnSpecificProcessor(SProcessorSpec const &spec, SProcessorSpec &out) const;
    // The weakest model of the first build that runs anywhere.
    bool FindWeakestProcessor(SProcessorSpec &out) const;
    // The description chosen for `spec`, or null.
    ProcessMemory::CProcCodeDesc const *DescriptionFor(SProcessorSpec const &spec) const;

    std::vector<ProcessMemory::CProcCodeDesc> const &GetDescriptions() const {
        return m_Descriptions;
    }
    // Names of the external memories by index (shown in dumps); -19 beyond the table.
    WTErr GetExternalMemoryName(std::size_t index, WCFixedStringBase &out) const;
    WTErr SetExternalMemoryName(std::size_t index, char const *name);
    // A resource number relative to the base: `sign` +1 adds it, -1 takes it away, 0 leaves
    // the number as it is.
    short FixCodeNum(short id, int sign) const;
    short FixIdleCodeNum(short id, int sign) const { return FixCodeNum(id, sign); }
    short GetResBase() const { return m_ResBase; }
    void SetResBase(short base) { m_ResBase = base; }

private:
    short m_ResBase = 0;
    std::vector<ProcessMemory::CProcCodeDesc> m_Descriptions;
    std::array<WCFixedString<31>, 8> m_ExternalMemoryNames{};
};

MIREL_NAMESPACE_END
