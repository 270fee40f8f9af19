#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "core/MirelNamespace.h"

namespace pugi {
class xml_node;
}

MIREL_NAMESPACE_BEGIN

// What a plug-in attaches to a parameter beyond its value: one block of data per setup, which
// follows the active setup when it changes. Created by a factory named in the parameter XML and
// owned by the parameter. [main-thread]
class WCParamExtension {
public:
    virtual ~WCParamExtension() = default;
    // Called when the active setup changes, so the extension shows the new setup's data.
    virtual void TakeSetupData(int setup) { m_ActiveSetup = setup == 1 ? 1 : 0; }
    int GetActiveSetup() const { return m_ActiveSetup; }
    // Copies one setup's block over the other's (setup copy, active to passive). The base holds
    // no block, so it has nothing to copy.
    virtual void CopySetupData(int /*from*/, int /*to*/) {}
    // Reads what the parameter XML says inside the extension element, after the factory made
    // the extension. A value it cannot take keeps its default and gives a code; the base reads
    // nothing.
    virtual int ReadFromXML(pugi::xml_node const & /*element*/) { return 0; }

private:
    int m_ActiveSetup = 0;
};

// Data a parameter keeps for drawing its graph, one per setup. [main-thread]
class WCGraphDataBase {
public:
    virtual ~WCGraphDataBase() = default;
    // Takes over another setup's data of the same kind (setup copy). The base holds none.
    virtual void CopyFrom(WCGraphDataBase const & /*other*/) {}
};

MIREL_NAMESPACE_END
