#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unordered_map>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CDummyControl.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCBaseImageVector.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/WCHtmlManager.h"
#include "Code/GUI/WUControlFactories.h"
#include "Code/GUI/WUGUIXML.h"
#include "Code/GUI/X_CToolbarButton.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "files/WCStPath.h"
#include "files/WUFileSystemObjects.h"

MIREL_NAMESPACE_BEGIN

namespace {

// Names of the document's flag word, by bit.
constexpr struct {
    const char *name;
    unsigned int bit;
} kGUIFlagNames[] = {
    {"NoSelectRect", CStandardGUI_X::eNoSelectRect},
    {"NoAlwaysDraw", CStandardGUI_X::eNoAlwaysDraw},
    {"DropBaseImage", CStandardGUI_X::eDropBaseImage},
    {"NoImages", CStandardGUI_X::eNoImages},
    {"NoAutomatableImages", CStandardGUI_X::eNoAutomatableImages},
    {"NoClipping", CStandardGUI_X::eNoClipping},
    {"FollowChainerScaling", CStandardGUI_X::eFollowChainerScaling},
};

constexpr struct {
    const char *name;
    unsigned int bit;
} kOrderFlagNames[] = {
    {"IgnoreControlOrder", CStandardGUI_X::eIgnoreControlOrder},
    {"NonIdenticalTabOrderSizes", CStandardGUI_X::eNonIdenticalTabOrderSizes},
};

// An order list may stand for many controls through "Num"; a document asking for more names than
// this is refused past the limit rather than allowed to exhaust memory.
constexpr std::size_t kMaxOrderEntries = 1 << 16;

// "Value" "off", in any case, clears a flag; anything else sets it.
bool FlagValueOn(const XML::CXMLElement &flag) {
    WCFixedString<15> value;
    if (!flag.GetAttrib("Value", value))
        return true;
    return strcasecmp(value.c_str(), "off") != 0;
}

// The name of entry `index` of a numbered order entry: "ReplaceByIndex" inside the name becomes
// the number, otherwise the number is appended.
WCFixedString<63> IndexedName(const WCFixedStringBase &name, long long index) {
    std::string text(name.c_str());
    const std::string number = std::to_string(index);
    if (const auto at = text.find("ReplaceByIndex"); at != std::string::npos)
        text.replace(at, std::strlen("ReplaceByIndex"), number);
    else
        text += number;
    return WCFixedString<63>(text.c_str());
}

XML::CXMLElement *Element(const char *name) {
    return new XML::CXMLElement(name);
}

} // namespace

// ---- reading --------------------------------------------------------------------------------

WTErr CStandardGUI_X::ReadFromXML(XML::CXMLElement const *const root, GUIXML::WCReader &reader) {
    if (root == nullptr)
        return eMemNullPointer;
    WCFixedString<15> version;
    root->GetAttrib("version", version);
    if (version != "4" && version != "5")
        return eNoErr;
    if (m_pHtmlManager == nullptr)
        m_pHtmlManager = std::make_unique<WCHtmlManager>(m_pAlg, this);
    WTErr first = eNoErr;
    for (const XML::CXMLElement *child : root->GetSubElements())
        if (const WTErr err = ReadOneRootChild(*child, reader); err != eNoErr && first == eNoErr)
            first = err;
    if (!GetGUIFlag(eNoImages) && GetContainer() != nullptr)
        for (const auto &picts : m_BasePicts)
            if (const int err = picts->LoadAll(GetContainer()); err != eNoErr && first == eNoErr)
                first = err;
    return first;
}

WTErr CStandardGUI_X::ReadOneRootChild(XML::CXMLElement const &child, GUIXML::WCReader &reader) {
    const auto &name = child.GetName();
    if (name == "Background_Color") {
        const WTErr err = GUIXML::ReadColor(child, m_BackgroundColor);
        m_HasBackgroundColor = m_HasBackgroundColor || err == eNoErr;
        return err;
    }
    if (name == "Pict_List")
        return ReadXML_PictList(child);
    if (name == "ViewRect_List")
        return ReadXML_ViewRectList(child);
    if (name == "ControlOrder_List")
        return ReadXML_ControlOrderList(child, m_RequestedOrder);
    if (name == "AutomationControlOrder_List") {
        m_ControlOrderFlags |= 1u << eHasAutomationControlOrder;
        return ReadXML_ControlOrderList(child, m_AutomationOrder);
    }
    if (name == "HTMLView_List")
        return ReadXML_HTMLViewList(child);
    if (name == "ToolBarControl_List")
        return ReadXML_ToolBarControlList(child);
    if (name == "TabOrder_List")
        return ReadXML_TabOrderList(child);
    if (name == "Control_List" || name == "cCONTROLLER") {
        // The reading-order list owns the controls from the moment they are read.
        std::vector<WCGUIControl *> read;
        if (name == "cCONTROLLER") {
            if (WCGUIControl *control = ReadXML_Control(child))
                read.push_back(control);
        } else {
            ReadXML_Controls_List(child, read);
        }
        m_Controls.insert(m_Controls.end(), read.begin(), read.end());
        m_ReadingOrder.insert(m_ReadingOrder.end(), read.begin(), read.end());
        return eNoErr;
    }
    if (name == "Control_Groups")
        return ReadXML_ControlGroups(child);
    if (name == "Control_Template_List")
        return ReadXML_Controls_List(child, m_Templates);
    if (name == "Flag_List")
        return ReadXML_Flag_List(child);
    reader.Read(child);
    return eNoErr;
}

bool CStandardGUI_X::IsXMLElementValidButUnhandled(const char *name) noexcept {
    static constexpr const char *kNames[] = {"PluginSpecificData", "SubViewRect_List",
                                             "Control_Template_Batch_List", "ref"};
    return name != nullptr && std::any_of(std::begin(kNames), std::end(kNames),
                                          [name](auto n) { return std::strcmp(n, name) == 0; });
}

WCGUIControl *CStandardGUI_X::ReadXML_Control(XML::CXMLElement const &element) {
    const XML::CXMLElement *cls = element.SubElement("Class");
    if (cls == nullptr)
        return nullptr;
    WCFixedString<63> type;
    WCGUIControl *control = nullptr;
    if (cls->GetAttrib("Type", type)) {
        control = CreateSpecificControls(type);
        if (control == nullptr)
            control = CreateDefaultControls(type, this);
        if (control == nullptr)
            return nullptr;
        control->SetContainerRef(*m_pContainerRef);
        // What of the control does not read is left at its defaults: the control stays.
        control->ReadFromXMLWithAlg(&element, m_pAlg);
        // The kind is the one that made the control, whatever further "Class" elements say.
        control->SetClassType(type.c_str());
        return control;
    }
    if (cls->AttribExists("AutomationType")) {
        auto *dummy = new CDummyControl(this);
        dummy->SetContainerRef(*m_pContainerRef);
        WCFixedString<127> name;
        element.GetAttrib("Name", name);
        dummy->SetName(name.c_str());
        dummy->SetAutomationType(cls->GetAttribString("AutomationType").c_str());
        control = dummy;
    }
    return control;
}

WTErr CStandardGUI_X::ReadXML_Controls_List(XML::CXMLElement const &element,
                                            std::vector<WCGUIControl *> &into) {
    for (const XML::CXMLElement *child : element.GetSubElements())
        if (child->GetName() == "cCONTROLLER")
            if (WCGUIControl *control = ReadXML_Control(*child))
                into.push_back(control);
    return eNoErr;
}

WTErr CStandardGUI_X::ReadXML_PictList(XML::CXMLElement const &element) {
    ClearBasePicts();
    m_BasePicts.push_back(std::make_unique<WCBaseImageVector>());
    WTErr first = eNoErr;
    auto keep = [&first](WTErr err) {
        if (first == eNoErr)
            first = err;
    };
    auto readBase = [this, &keep](const XML::CXMLElement &image, WCBaseImageVector &into) {
        auto base = std::make_unique<WCBaseImage>();
        base->SetBoundRect(WURect<short>(0, 0, m_DrawableRect.Height(), m_DrawableRect.Width()));
        const WTErr err = base->ReadFromXML(&image);
        keep(err);
        if (err == eNoErr)
            into.AddImage(std::move(base));
    };
    for (const XML::CXMLElement *child : element.GetSubElements()) {
        if (child->GetName() == "Image") {
            const auto type = child->GetAttribString("Type");
            short resID = -1;
            if (type == "About" || type == "Icon") {
                if (child->GetAttrib("ResID", resID))
                    (type == "About" ? m_AboutResID : m_IconResID) = resID;
                else
                    keep(eNotANumber);
            } else if (type == "Base") {
                readBase(*child, *m_BasePicts.front());
            }
        } else if (child->GetName() == "AdditionalImageList") {
            auto picts = std::make_unique<WCBaseImageVector>();
            for (const XML::CXMLElement *image : child->GetSubElements())
                if (image->GetName() == "Image" && image->GetAttribString("Type") == "Base")
                    readBase(*image, *picts);
            m_BasePicts.push_back(std::move(picts));
        }
    }
    return first;
}

WTErr CStandardGUI_X::ReadXML_ViewRectList(XML::CXMLElement const &element) {
    WTErr first = eNoErr;
    for (const XML::CXMLElement *child : element.GetSubElements()) {
        if (child->GetName() != "Rect")
            continue;
        WURect<short> rect;
        if (const WTErr err = GUIXML::ReadRect(*child, rect); err != eNoErr) {
            if (first == eNoErr)
                first = err;
            continue;
        }
        m_ViewRects.push_back(rect);
        SetViewRect(rect);
    }
    return first;
}

WTErr CStandardGUI_X::ReadXML_ControlOrderList(XML::CXMLElement const &element,
                                               std::vector<WCFixedString<63>> &order) {
    WTErr first = eNoErr;
    for (const XML::CXMLElement *list : element.GetSubElements()) {
        if (list->GetName() != "ControlOrder")
            continue;
        for (const XML::CXMLElement *child : list->GetSubElements()) {
            const auto &name = child->GetName();
            if (name == "Flags") {
                for (const XML::CXMLElement *flag : child->GetSubElements())
                    SetControlOrderTabOrderFlag(flag->GetName().c_str(), FlagValueOn(*flag));
                continue;
            }
            if (name != "Control" && name != "Dummy")
                continue;
            if (order.size() >= kMaxOrderEntries) {
                first = eOutOfRangeNumber;
                continue;
            }
            if (name == "Dummy") {
                order.emplace_back("Dummy");
                continue;
            }
            WCFixedString<63> controlName;
            child->GetAttrib("Name", controlName);
            int num = 1;
            int initIndex = 0;
            const bool numbered =
                child->GetAttrib("Num", num) && num > 1 && child->GetAttrib("InitIndex", initIndex);
            if (!numbered) {
                order.push_back(controlName);
                continue;
            }
            for (int i = 0; i < num && order.size() < kMaxOrderEntries; ++i)
                order.push_back(IndexedName(controlName, static_cast<long long>(initIndex) + i));
            if (order.size() >= kMaxOrderEntries)
                first = eOutOfRangeNumber;
        }
    }
    return first;
}

void CStandardGUI_X::SetControlOrderTabOrderFlag(const char *name, bool on) {
    if (name == nullptr)
        return;
    for (const auto &flag : kOrderFlagNames)
        if (std::strcmp(flag.name, name) == 0) {
            if (on)
                m_ControlOrderFlags |= 1u << flag.bit;
            else
                m_ControlOrderFlags &= ~(1u << flag.bit);
        }
}

WTErr CStandardGUI_X::ReadXML_TabOrderList(XML::CXMLElement const &element) {
    for (const XML::CXMLElement *child : element.GetSubElements()) {
        const auto &name = child->GetName();
        if (name == "TabHORIZ") {
            m_HasTabHoriz = true;
            ReadXML_TabList(*child, m_TabHoriz);
        } else if (name == "TabVERT") {
            ReadXML_TabList(*child, m_TabVert);
        } else if (name == "Flags") {
            for (const XML::CXMLElement *flag : child->GetSubElements())
                SetControlOrderTabOrderFlag(flag->GetName().c_str(), FlagValueOn(*flag));
        }
    }
    return eNoErr;
}

void CStandardGUI_X::ReadXML_TabList(XML::CXMLElement const &element,
                                     std::vector<WSTabEntry> &list) {
    list.clear();
    for (const XML::CXMLElement *child : element.GetSubElements()) {
        if (child->GetName() != "Control" || list.size() >= kMaxOrderEntries)
            continue;
        WSTabEntry entry;
        child->GetAttrib("Name", entry.m_Name);
        list.push_back(entry);
    }
}

WTErr CStandardGUI_X::ReadXML_ToolBarControlList(XML::CXMLElement const &element) {
    for (const XML::CXMLElement *child : element.GetSubElements()) {
        WCFixedString<63> type;
        if (child->GetName() != "ToolButton" || !child->GetAttrib("type", type))
            continue;
        X_CToolbarButton *button = CreateCustomToolbarControls(type);
        if (button == nullptr)
            button = CreateDefaultToolbarButtons(type, this);
        if (button == nullptr)
            continue;
        button->SetContainerRef(*m_pContainerRef);
        button->ReadFromXMLWithAlg(child, m_pAlg);
        button->FinishCreate();
        m_Toolbar.push_back(button);
    }
    return eNoErr;
}

WTErr CStandardGUI_X::ReadXML_HTMLViewList(XML::CXMLElement const &element) {
    if (m_pHtmlManager == nullptr)
        m_pHtmlManager = std::make_unique<WCHtmlManager>(m_pAlg, this);
    WTErr first = eNoErr;
    for (const XML::CXMLElement *child : element.GetSubElements()) {
        if (child->GetName() != "HTMLView")
            continue;
        auto page = std::make_unique<WCHTMLBase>(this);
        if (const WTErr err = page->ReadFromXML(*child); err != eNoErr && first == eNoErr)
            first = err;
        m_pHtmlManager->AddHTMLWindow(std::move(page));
    }
    return first;
}

WTErr CStandardGUI_X::ReadFromXMLFlags(XML::CXMLElement const &flags, unsigned int &word) const {
    for (const XML::CXMLElement *flag : flags.GetSubElements())
        for (const auto &known : kGUIFlagNames)
            if (flag->GetName() == known.name) {
                if (FlagValueOn(*flag))
                    word |= 1u << known.bit;
                else
                    word &= ~(1u << known.bit);
            }
    return eNoErr;
}

WTErr CStandardGUI_X::ReadXML_Flag_List(XML::CXMLElement const &element) {
    ReadFromXMLFlags(element, m_GUIFlags);
    const XML::CXMLElement *threshold = element.SubElement("GraphicStreamDataPtrThreshold");
    if (threshold == nullptr)
        return eNoErr;
    const char *text = threshold->GetText().c_str();
    char *end = nullptr;
    errno = 0;
    const unsigned long long value = std::strtoull(text, &end, 10);
    if (end == text || *end != '\0' || errno == ERANGE || std::strchr(text, '-') != nullptr)
        return eNotANumber;
    m_GraphicStreamDataPtrThreshold = value;
    return eNoErr;
}

WTErr CStandardGUI_X::ReadXML_ControlGroups(XML::CXMLElement const &element, ControlGroup *parent,
                                            int depth) {
    if (depth >= kMaxGroupDepth)
        return eOutOfRangeNumber;
    WTErr first = eNoErr;
    for (const XML::CXMLElement *child : element.GetSubElements()) {
        WCFixedString<63> name;
        if (child->GetName() != "Group" || !child->GetAttrib("Name", name) || name.empty())
            continue;
        GroupAdd(name.c_str());
        ControlGroup *group = GetGroup(name.c_str());
        if (parent != nullptr)
            group->addParent(parent);
        if (const WTErr err = ReadXML_ControlGroups(*child, group, depth + 1);
            err != eNoErr && first == eNoErr)
            first = err;
    }
    return first;
}

// ---- order and tabs -------------------------------------------------------------------------

std::vector<WCGUIControl *> CStandardGUI_X::CheckGetOrderedControlList(bool automation) const {
    // Without an automation order of its own, a GUI's hosts see its controls in its control
    // order, as a user does.
    const auto &requested = automation && GetControlOrderFlag(eHasAutomationControlOrder)
                                ? m_AutomationOrder
                                : m_RequestedOrder;
    std::unordered_map<std::string_view, WCGUIControl *> byName;
    byName.reserve(m_ReadingOrder.size());
    for (WCGUIControl *control : m_ReadingOrder)
        byName[std::string_view(control->GetName().c_str())] = control;
    std::vector<WCGUIControl *> ordered;
    ordered.reserve(m_ReadingOrder.size());
    for (const auto &name : requested) {
        const auto found = byName.find(std::string_view(name.c_str()));
        if (found == byName.end())
            continue;
        ordered.push_back(found->second);
        byName.erase(found);
    }
    // What the order does not place (including a control whose name another one shadows) keeps
    // its reading order at the end.
    for (WCGUIControl *control : m_ReadingOrder)
        if (std::find(ordered.begin(), ordered.end(), control) == ordered.end())
            ordered.push_back(control);
    return ordered;
}

void CStandardGUI_X::PrepareControlOrder() {
    if (GetControlOrderFlag(eIgnoreControlOrder)) {
        DumpControlOrder({});
        return;
    }
    std::vector<WCGUIControl *> ordered = CheckGetOrderedControlList(false);
    DumpControlOrder(ordered);
    m_Controls.swap(ordered);
}

// A developer's check that the order the XML asks is the order the controls got, written only
// where the diagnostics switch "ControlDump" is on.
void CStandardGUI_X::DumpControlOrder(const std::vector<WCGUIControl *> &ordered) const {
    if (!FM::IsExistSpecificDiagnosticsFolder("ControlDump"))
        return;
    std::string fileName = std::string(m_PluginName.c_str()) + "_ControlDump.txt";
    std::replace_if(
        fileName.begin(), fileName.end(),
        [](char c) { return std::strchr("/\\:*?\"<>|", c) != nullptr || c < ' '; }, '_');
    std::string text;
    if (GetControlOrderFlag(eIgnoreControlOrder)) {
        text = "Control Order is ignored.\n";
    } else {
        std::string requested;
        for (const auto &name : m_RequestedOrder)
            requested.append(name.c_str()).append("\n");
        std::string actual;
        for (const WCGUIControl *control : ordered)
            actual.append(control->GetName().c_str()).append("\n");
        if (requested == actual)
            return;
        text = "Inconsistency Observed:\nRequested Control Order is different from Actual Control "
               "Order\nMust be fixed in GUI.xml\nRequested Control Order:\n" +
               requested + "Actual Control Order:\n" + actual;
    }
    FM::WCStPath path(FM::eUserDomain, FM::eMirelPreferencesFolder, "Diagnostics");
    path.Append("ControlDump");
    path.Append(fileName);
    FM::ReplaceFileContents(path, text.data(), text.size());
}

void CStandardGUI_X::LinkTabRing(std::vector<WSTabEntry> &list, bool vertical, bool linkControls) {
    const ENeighbors forward = vertical ? eNeighborDown : eNeighborRight;
    const ENeighbors backward = vertical ? eNeighborUp : eNeighborLeft;
    const std::size_t n = list.size();
    for (std::size_t i = 0; i < n; ++i) {
        WSTabEntry &entry = list[i];
        WSTabEntry &next = list[(i + 1) % n];
        WSTabEntry &prev = list[(i + n - 1) % n];
        entry.SetNeighbor(forward, &next);
        entry.SetNeighbor(backward, &prev);
        if (linkControls && entry.m_pControl != nullptr) {
            entry.m_pControl->SetNeighbor(forward, next.m_pControl);
            entry.m_pControl->SetNeighbor(backward, prev.m_pControl);
        }
    }
}

void CStandardGUI_X::PrepareTabOrder() {
    auto resolve = [this](std::vector<WSTabEntry> &list) {
        for (WSTabEntry &entry : list)
            entry.m_pControl = GetControlPtrByName(entry.m_Name.c_str());
        list.erase(
            std::remove_if(list.begin(), list.end(),
                           [](const WSTabEntry &entry) { return entry.m_pControl == nullptr; }),
            list.end());
    };
    resolve(m_TabHoriz);
    resolve(m_TabVert);
    LinkTabRing(m_TabHoriz, false, true);
    LinkTabRing(m_TabVert, true, true);
    // A control in both rings keeps both pairs of neighbours in each of its entries.
    for (WSTabEntry &horizontal : m_TabHoriz)
        for (WSTabEntry &vertical : m_TabVert)
            if (horizontal.m_pControl == vertical.m_pControl) {
                horizontal.SetNeighbor(eNeighborUp, vertical.GetNeighbor(eNeighborUp));
                horizontal.SetNeighbor(eNeighborDown, vertical.GetNeighbor(eNeighborDown));
                vertical.SetNeighbor(eNeighborLeft, horizontal.GetNeighbor(eNeighborLeft));
                vertical.SetNeighbor(eNeighborRight, horizontal.GetNeighbor(eNeighborRight));
            }
}

void CStandardGUI_X::BuildTabGroups() {
    m_TabGroups.clear();
    for (const auto &[name, group] : m_Groups) {
        std::vector<WSTabEntry> ring;
        for (const WSTabEntry &entry : m_TabHoriz)
            if (group->HasControl(entry.m_pControl)) {
                WSTabEntry copy;
                copy.m_Name = entry.m_Name;
                copy.m_pControl = entry.m_pControl;
                ring.push_back(copy);
            }
        if (ring.empty())
            continue;
        auto &stored = m_TabGroups[name] = std::move(ring);
        LinkTabRing(stored, false, false);
    }
}

const std::vector<CStandardGUI_X::WSTabEntry> *
CStandardGUI_X::GetTabGroup(const char *group) const {
    if (group == nullptr)
        return nullptr;
    const auto found = m_TabGroups.find(WCFixedString<63>(group));
    return found == m_TabGroups.end() ? nullptr : &found->second;
}

// ---- writing --------------------------------------------------------------------------------

XML::CXMLElement *CStandardGUI_X::WriteToXML(XML::CXMLElement *element) const {
    if (element == nullptr)
        return nullptr;
    element->SetAttrib("version", "4");
    auto *ref = Element("ref");
    ref->AddAttrib("name", "Default_Plugin");
    element->push_back(ref);
    if (m_HasBackgroundColor)
        element->push_back(GUIXML::WriteColor("Background_Color", m_BackgroundColor));
    element->push_back(WriteToXML_PictList());
    if (!m_ViewRects.empty())
        element->push_back(WriteToXML_ViewRect_List());

    auto *flags = Element("Flag_List");
    for (const auto &flag : kGUIFlagNames)
        if (GetGUIFlag(flag.bit))
            flags->push_back(Element(flag.name));
    flags->push_back(
        new XML::CXMLElement("GraphicStreamDataPtrThreshold",
                             static_cast<std::int64_t>(m_GraphicStreamDataPtrThreshold)));
    element->push_back(flags);

    element->push_back(WriteToXML_ControlsList());
    if (!m_Templates.empty()) {
        auto *templates = Element("Control_Template_List");
        for (const WCGUIControl *control : m_Templates)
            templates->push_back(control->WriteToXMLWithAlg(Element("cCONTROLLER")));
        element->push_back(templates);
    }

    if (!m_Groups.empty()) {
        // Groups nest under their first parent; a group with none stands at the top.
        auto *groups = Element("Control_Groups");
        std::map<const CDrawable *, XML::CXMLElement *> written;
        std::vector<const ControlGroup *> pending;
        for (const auto &[name, group] : m_Groups)
            pending.push_back(group.get());
        for (std::size_t pass = 0; !pending.empty() && pass <= m_Groups.size(); ++pass) {
            std::vector<const ControlGroup *> later;
            for (const ControlGroup *group : pending) {
                const CDrawable *parent =
                    group->GetParents().empty() ? nullptr : group->GetParents().front();
                XML::CXMLElement *into = groups;
                if (parent != nullptr) {
                    const auto found = written.find(parent);
                    if (found == written.end()) {
                        later.push_back(group);
                        continue;
                    }
                    into = found->second;
                }
                auto *node = Element("Group");
                node->AddAttrib("Name", group->GetName().c_str());
                into->push_back(node);
                written[group] = node;
            }
            pending.swap(later);
        }
        // Groups whose parents form a ring are written at the top, without their nesting.
        for (const ControlGroup *group : pending) {
            auto *node = Element("Group");
            node->AddAttrib("Name", group->GetName().c_str());
            groups->push_back(node);
        }
        element->push_back(groups);
    }

    element->push_back(WriteToXML_ControlOrderList());
    if (GetControlOrderFlag(eHasAutomationControlOrder)) {
        auto *list = Element("AutomationControlOrder_List");
        auto *order = Element("ControlOrder");
        for (const auto &name : m_AutomationOrder) {
            auto *control = Element(name == "Dummy" ? "Dummy" : "Control");
            if (!(name == "Dummy"))
                control->AddAttrib("Name", name.c_str());
            order->push_back(control);
        }
        list->push_back(order);
        element->push_back(list);
    }

    if (m_HasTabHoriz || !m_TabVert.empty()) {
        auto *tabs = Element("TabOrder_List");
        const std::pair<const char *, const std::vector<WSTabEntry> *> lists[] = {
            {"TabHORIZ", &m_TabHoriz}, {"TabVERT", &m_TabVert}};
        for (const auto &[tag, list] : lists) {
            if (list->empty() && std::strcmp(tag, "TabVERT") == 0)
                continue;
            auto *node = Element(tag);
            for (const WSTabEntry &entry : *list) {
                auto *control = Element("Control");
                control->AddAttrib("Name", entry.m_Name.c_str());
                node->push_back(control);
            }
            tabs->push_back(node);
        }
        if (GetControlOrderFlag(eNonIdenticalTabOrderSizes)) {
            auto *tabFlags = Element("Flags");
            tabFlags->push_back(Element("NonIdenticalTabOrderSizes"));
            tabs->push_back(tabFlags);
        }
        element->push_back(tabs);
    }

    if (!m_Toolbar.empty())
        element->push_back(WriteToXML_ToolbarList());
    if (m_pHtmlManager != nullptr && m_pHtmlManager->GetNumPages() > 0) {
        auto *pages = Element("HTMLView_List");
        for (std::size_t i = 0; i < m_pHtmlManager->GetNumPages(); ++i)
            pages->push_back(m_pHtmlManager->GetHTMLPageByIndex(static_cast<int>(i))->WriteToXML());
        element->push_back(pages);
    }
    return element;
}

XML::CXMLElement *CStandardGUI_X::WriteToXML_ControlOrderList() const {
    auto *list = Element("ControlOrder_List");
    auto *order = Element("ControlOrder");
    for (const auto &name : m_RequestedOrder) {
        if (name == "Dummy") {
            order->push_back(Element("Dummy"));
            continue;
        }
        auto *control = Element("Control");
        control->AddAttrib("Name", name.c_str());
        order->push_back(control);
    }
    if (GetControlOrderFlag(eIgnoreControlOrder)) {
        auto *flags = Element("Flags");
        flags->push_back(Element("IgnoreControlOrder"));
        order->push_back(flags);
    }
    list->push_back(order);
    return list;
}

XML::CXMLElement *CStandardGUI_X::WriteToXML_ControlsList() const {
    auto *list = Element("Control_List");
    for (const WCGUIControl *control : m_ReadingOrder)
        list->push_back(control->WriteToXMLWithAlg(Element("cCONTROLLER")));
    return list;
}

XML::CXMLElement *CStandardGUI_X::WriteToXML_PictList() const {
    auto *list = Element("Pict_List");
    const std::pair<const char *, short> numbers[] = {{"About", m_AboutResID},
                                                      {"Icon", m_IconResID}};
    for (const auto &[type, resID] : numbers) {
        if (resID < 0)
            continue;
        auto *image = Element("Image");
        image->AddAttrib("Type", type);
        image->AddAttrib("ResID", resID);
        list->push_back(image);
    }
    auto writeBases = [](const WCBaseImageVector &picts, XML::CXMLElement &into) {
        for (std::size_t i = 0; i < picts.GetImagesVectorSize(); ++i)
            if (const WCBaseImage *base = picts.GetImagePtr(i)) {
                auto *image = Element("Image");
                image->AddAttrib("Type", "Base");
                into.push_back(base->WriteToXML(image));
            }
    };
    for (std::size_t i = 0; i < m_BasePicts.size(); ++i) {
        if (i == 0) {
            writeBases(*m_BasePicts[i], *list);
            continue;
        }
        auto *additional = Element("AdditionalImageList");
        writeBases(*m_BasePicts[i], *additional);
        list->push_back(additional);
    }
    return list;
}

XML::CXMLElement *CStandardGUI_X::WriteToXML_ToolbarList() const {
    auto *list = Element("ToolBarControl_List");
    for (const X_CToolbarButton *button : m_Toolbar)
        list->push_back(button->WriteToXMLWithAlg(Element("ToolButton")));
    return list;
}

XML::CXMLElement *CStandardGUI_X::WriteToXML_ViewRect_List() const {
    auto *list = Element("ViewRect_List");
    for (const WURect<short> &rect : m_ViewRects)
        list->push_back(GUIXML::WriteRect("Rect", rect));
    return list;
}

MIREL_NAMESPACE_END
