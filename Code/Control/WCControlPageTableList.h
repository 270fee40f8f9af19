#pragma once

#include <vector>

#include "Utilities/XML/Code/WCXMLable.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

// One slot of a control surface's page: the automation control shown there.
struct WSPageTableControl {
    WCFixedString<63> m_Name;
    int m_SubComp = 0;

    friend bool operator==(const WSPageTableControl &, const WSPageTableControl &) = default;
};

struct WSPageTablePage {
    std::vector<WSPageTableControl> m_Controls;

    friend bool operator==(const WSPageTablePage &, const WSPageTablePage &) = default;
};

// How one kind of control surface pages through a plug-in's controls: `m_PageSize` slots a page.
struct WSPageTable {
    WCFixedString<31> m_Type;
    int m_SubComp = 0;
    int m_PageSize = 0;
    std::vector<WSPageTablePage> m_Pages;

    friend bool operator==(const WSPageTable &, const WSPageTable &) = default;
};

// The page tables of a plug-in, in their XML form:
//
//   <ControlVisibilityPageTableList version="1">
//     <PageTable type="Main" SubComp="0" pageSize="8">
//       <Page><Control Name="Gain" SubComp="0"/>...</Page>
//     </PageTable>
//   </ControlVisibilityPageTableList>
//
// The visibility list says which controls a surface shows on a page, the mapping list (the same
// form) which of its encoders drives which control. [any-thread] one object per thread.
class WCControlPageTableList : public XML::WCXMLable {
public:
    static constexpr int kVersion = 1;
    // Larger than any surface's bank of encoders.
    static constexpr int kMaxPageSize = 128;

    void SerializeXML(XML::WCXMLSerializer &serializer) override;

    // The names of the table of `type` in page order, or empty when no table has that type.
    void GetControNamesListByPageTableType(const char *type,
                                           std::vector<WCFixedString<63>> &names) const;
    // A table of `type` holding `names` in order, `pageSize` to a page; a later table of the
    // same type replaces an earlier one.
    void SetPageTable(const char *type, int subComp, int pageSize,
                      const std::vector<WCFixedString<63>> &names);

    const std::vector<WSPageTable> &GetTables() const noexcept { return m_Tables; }
    int GetVersion() const noexcept { return m_Version; }
    // The root element's name, which tells the two lists apart in a resource.
    virtual const char *GetRootName() const noexcept = 0;

    // A page table resource whose root is this list's: the tables read whole, or an error and
    // the list as it was (eXMLParserFailed for text that is no whole XML, eXMLElementMissing for
    // another root, eOutOfRangeNumber for a page size outside 1..kMaxPageSize or a page holding
    // more than its size).
    int ReadFromText(const char *text, std::size_t size);

protected:
    int m_Version = kVersion;
    std::vector<WSPageTable> m_Tables;
};

class WCControlVisibilityPageTableList final : public WCControlPageTableList {
public:
    const char *GetRootName() const noexcept override { return "ControlVisibilityPageTableList"; }
};

class WCControlMappingPageTableList final : public WCControlPageTableList {
public:
    const char *GetRootName() const noexcept override { return "ControlMappingPageTableList"; }
};

MIREL_NAMESPACE_END
