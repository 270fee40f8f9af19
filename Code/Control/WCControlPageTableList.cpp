#include "Code/Control/WCControlPageTableList.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "Utilities/XML/Code/WCXMLSerializer.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace {

// Counts read from a document are bounded before anything is sized from them.
constexpr std::uint64_t kMaxElements = 4096;

template <typename T>
void ResizeFromCount(XML::WCXMLSerializer &s, const char *name, std::vector<T> &items) {
    const std::uint64_t count = s.get_num_array_elements(name, items.size());
    if (s.IsReading())
        items.resize(static_cast<std::size_t>(std::min(count, kMaxElements)));
}

} // namespace

void WCControlPageTableList::SerializeXML(XML::WCXMLSerializer &s) {
    s.attrib_int("version", m_Version);
    ResizeFromCount(s, "PageTable", m_Tables);
    for (std::size_t t = 0; t < m_Tables.size(); ++t) {
        WSPageTable &table = m_Tables[t];
        s.element_name("PageTable", t)
            .attrib_content("type", table.m_Type)
            .attrib_int("SubComp", table.m_SubComp)
            .attrib_int("pageSize", table.m_PageSize)
            .level_down();
        ResizeFromCount(s, "Page", table.m_Pages);
        for (std::size_t p = 0; p < table.m_Pages.size(); ++p) {
            std::vector<WSPageTableControl> &controls = table.m_Pages[p].m_Controls;
            s.element_name("Page", p).level_down();
            ResizeFromCount(s, "Control", controls);
            for (std::size_t c = 0; c < controls.size(); ++c)
                s.element_name("Control", c)
                    .attrib_content("Name", controls[c].m_Name)
                    .attrib_int("SubComp", controls[c].m_SubComp)
                    .element_end();
            s.level_up().element_end();
        }
        s.level_up().element_end();
    }
}

void WCControlPageTableList::GetControNamesListByPageTableType(
    const char *type, std::vector<WCFixedString<63>> &names) const {
    names.clear();
    const auto table = std::find_if(m_Tables.begin(), m_Tables.end(), [type](const auto &t) {
        return type != nullptr && t.m_Type == type;
    });
    if (table == m_Tables.end())
        return;
    for (const WSPageTablePage &page : table->m_Pages)
        for (const WSPageTableControl &control : page.m_Controls)
            names.push_back(control.m_Name);
}

void WCControlPageTableList::SetPageTable(const char *type, int subComp, int pageSize,
                                          const std::vector<WCFixedString<63>> &names) {
    WSPageTable table;
    table.m_Type = type;
    table.m_SubComp = subComp;
    table.m_PageSize = std::clamp(pageSize, 1, kMaxPageSize);
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i % static_cast<std::size_t>(table.m_PageSize) == 0)
            table.m_Pages.emplace_back();
        table.m_Pages.back().m_Controls.push_back({names[i], subComp});
    }
    const auto same = std::find_if(m_Tables.begin(), m_Tables.end(),
                                   [type](const auto &t) { return t.m_Type == type; });
    if (same != m_Tables.end())
        *same = std::move(table);
    else
        m_Tables.push_back(std::move(table));
}

int WCControlPageTableList::ReadFromText(const char *text, std::size_t size) {
    if (text == nullptr)
        return eMemNullPointer;
    auto root = std::make_unique<XML::CXMLElement>();
    if (XML::CXMLTreeBuilder(root.get()).BuildFromSingleBuffer(text, size) != eNoErr ||
        !root->IsValid())
        return eXMLParserFailed;
    if (root->GetName() != GetRootName())
        return eXMLElementMissing;
    // Read into a copy so that a refused document leaves this list as it was.
    struct WSReader final : WCControlPageTableList {
        const char *GetRootName() const noexcept override { return ""; }
    } read;
    read.m_Version = 0;
    read.ReadFromXML(root.get());
    for (const WSPageTable &table : read.m_Tables) {
        if (table.m_PageSize < 1 || table.m_PageSize > kMaxPageSize)
            return eOutOfRangeNumber;
        for (const WSPageTablePage &page : table.m_Pages)
            if (page.m_Controls.size() > static_cast<std::size_t>(table.m_PageSize))
                return eOutOfRangeNumber;
    }
    m_Version = read.m_Version;
    m_Tables = std::move(read.m_Tables);
    return eNoErr;
}

MIREL_NAMESPACE_END
