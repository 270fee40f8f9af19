// WCGUIControl: reading and writing the GUI XML.
#include "Code/GUI/WCAnimation.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/WIControlOwner.h"
#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WUAtoi.h"

MIREL_NAMESPACE_BEGIN

namespace {

// The attribute of a background or foreground "ImageList" whose value "off" says the list
// holds an "off" state.
constexpr const char *kOffStateAttrib = "State";

} // namespace

WTErr WCGUIControl::ReadFromXMLWithAlg(const XML::CXMLElement *element, cALGORITHM *alg) {
    if (element == nullptr)
        return eMemNullPointer;
    m_pAlg = alg;
    WTErr first = eNoErr;
    auto keep = [&first](WTErr err) {
        if (first == eNoErr)
            first = err;
    };
    element->GetAttrib("Name", m_Name);
    if (element->AttribExists("Page")) {
        int page = 0;
        const WTErr err = WUAtoi(element->GetAttribString("Page").c_str(), page);
        if (err == eNoErr)
            m_Page = page;
        keep(err);
    }
    for (const XML::CXMLElement *child : element->GetSubElements())
        keep(ReadOneChild(*child, alg));
    // A second pass, so that the offset applies whether it stands before or after the rect.
    for (const XML::CXMLElement *child : element->GetSubElements()) {
        if (child->GetName() != "ControlRectOffset")
            continue;
        WURect<short> offset;
        const WTErr err = GUIXML::ReadRect(*child, offset);
        keep(err);
        if (err != eNoErr)
            continue;
        Move(offset.left, offset.top);
        m_OriginalRect.Offset(offset.left, offset.top);
    }
    return first;
}

WTErr WCGUIControl::ReadOneChild(const XML::CXMLElement &child, cALGORITHM *alg) {
    const auto &name = child.GetName();
    if (name == "Class") {
        child.GetAttrib("Type", m_ClassType);
        return ReadFromXMLWithAlgSelf(&child, alg);
    }
    if (name == "Flags")
        return ReadFromXMLFlags(&child);
    if (name == "DependentsList") {
        for (const XML::CXMLElement *dependent : child.GetSubElements()) {
            if (dependent->GetName() == "Dependent")
                m_DependentNames.emplace_back(dependent->GetText().c_str());
            else if (dependent->GetName() == "DrawDependent")
                m_DrawDependentNames.emplace_back(dependent->GetText().c_str());
        }
        return eNoErr;
    }
    if (name == "FatherControl") {
        m_FatherName = child.GetText().c_str();
        return eNoErr;
    }
    if (name == "MaxSelection") {
        int max = 0;
        if (!GUIXML::ReadIntText(child, max) || max < 0 || max >= eNumSelectLevels)
            return eOutOfRangeNumber;
        m_MaxSelection = max;
        SetMinMax(0, max);
        return eNoErr;
    }
    if (name == "AcceptableCharactersForTextEntry") {
        m_AcceptableChars = child.GetText().c_str();
        return eNoErr;
    }
    if (name == "Direction") {
        GUINames::DirectionFromString(child.GetText().c_str(), m_Direction);
        return eNoErr;
    }
    if (name == "DisableMode") {
        GUINames::DisableModeFromString(child.GetText().c_str(), m_DisableMode);
        return eNoErr;
    }
    if (name == "ControlRect") {
        WURect<short> rect;
        if (const WTErr err = GUIXML::ReadRect(child, rect); err != eNoErr)
            return err;
        SetDrawableRect(rect);
        SetOriginalRect(rect);
        return eNoErr;
    }
    if (name == "ControlColor") {
        WCRGBAColor color;
        if (const WTErr err = GUIXML::ReadColor(child, color); err != eNoErr)
            return err;
        m_Color = color;
        m_HasColor = true;
        return eNoErr;
    }
    if (name == "ControlColorRect" || name == "GeneralRect1" || name == "GeneralRect2") {
        WURect<short> rect;
        if (const WTErr err = GUIXML::ReadRect(child, rect); err != eNoErr)
            return err;
        if (name == "ControlColorRect")
            m_ColorRects.push_back(rect);
        else
            (name == "GeneralRect1" ? m_GeneralRect1 : m_GeneralRect2) = rect;
        return eNoErr;
    }
    if (name == "ImageList")
        return ReadFromXMLImageList(child);
    if (name == "ParameterList")
        return ReadFromXMLParameterList(&child, alg);
    if (name == "Group") {
        WCFixedString<63> group;
        if (!child.GetAttrib("Name", group) || group.empty())
            return eNoErr;
        if (m_pOwner != nullptr) {
            if (!m_pOwner->GroupExists(group.c_str()))
                m_pOwner->GroupAdd(group.c_str());
            m_pOwner->GroupAddControl(group.c_str(), this);
        }
        m_Groups.push_back(group);
        return eNoErr;
    }
    return eNoErr;
}

WTErr WCGUIControl::UpdateFromXMLWithAlg(const XML::CXMLElement *element, cALGORITHM *alg) {
    if (element == nullptr)
        return eMemNullPointer;
    // What the XML lists is read afresh rather than appended to what the last skin gave.
    UnregisterAll();
    m_Registrations.clear();
    m_LeadParamIndex = 0;
    for (WCBaseImageVector *images :
         {&m_Background, &m_Foreground, &m_SelectionImages, &m_Additional})
        images->Clear();
    m_ColorRects.clear();
    m_DependentNames.clear();
    m_DrawDependentNames.clear();
    m_Groups.clear();
    m_Animations.clear();
    const WTErr err = ReadFromXMLWithAlg(element, alg);
    const WTErr selfErr = UpdateFromXMLWithAlgSelf(element, alg);
    RegisterWithAnimations();
    SetNeedToRedrawControl();
    return err != eNoErr ? err : selfErr;
}

WTErr WCGUIControl::ReadFromXMLParameterList_Registration(const XML::CXMLElement &param,
                                                          WCParamRegistrationData &data) {
    return data.ReadFromXMLForGUI(param, GetContainer(), m_DrawableRect);
}

WTErr WCGUIControl::ReadFromXMLImageList(const XML::CXMLElement &list) {
    const auto type = list.GetAttribString("Type");
    if (type == "BackGround" || type == "ForeGround") {
        WCBaseImageVector &images = type == "BackGround" ? m_Background : m_Foreground;
        const WTErr err = images.ReadFromXML(&list);
        images.SetHasOffState(list.GetAttribString(kOffStateAttrib) == "off");
        return err;
    }
    return ReadFromXMLBitmapList(list);
}

WTErr WCGUIControl::ReadFromXMLBitmapList(const XML::CXMLElement &list) {
    WTErr first = eNoErr;
    auto keep = [&first](WTErr err) {
        if (first == eNoErr)
            first = err;
    };
    for (const XML::CXMLElement *child : list.GetSubElements()) {
        const auto &name = child->GetName();
        if (name == "Selection") {
            keep(ReadFromXMLSelectionImageList(*child));
        } else if (name == "AdditionalImages") {
            for (const XML::CXMLElement *image : child->GetSubElements()) {
                if (image->GetName() != "Image")
                    continue;
                int steps = 0;
                if (image->AttribExists("SequenceSteps") &&
                    WUAtoi(image->GetAttribString("SequenceSteps").c_str(), steps) != eNoErr) {
                    keep(eNotANumber);
                    continue;
                }
                if (steps > 1000) {
                    keep(eOutOfRangeNumber);
                    continue;
                }
                if (steps <= 0) {
                    keep(m_Additional.AddFromXML_OneImage(image));
                    continue;
                }
                // A sequence: as many entries as steps, each the same picture, numbered.
                auto frame = std::make_unique<WCBaseImage>();
                if (const WTErr err = frame->ReadFromXML(image); err != eNoErr) {
                    keep(err);
                    continue;
                }
                m_Additional.Clear();
                for (int i = 0; i < steps; ++i) {
                    auto copy = frame->Clone();
                    copy->SetSequenceNumber(i);
                    m_Additional.AddImage(std::move(copy));
                }
            }
            keep(ReadFromXMLCustom(*child));
        } else if (name == "Image") {
            const auto type = child->GetAttribString("Type");
            if (type == "ForeGround")
                keep(m_Foreground.AddFromXML_OneImage(child));
            else if (type == "AlphaSelection")
                keep(m_AlphaSelection.ReadFromXML(child));
            else if (type == "ScaleMarksMask")
                keep(m_ScaleMarksMask.ReadFromXML(child));
        }
    }
    if (WTResContainerType *container = GetContainer()) {
        // What cannot be decoded stays undrawn and unhit; the control itself is usable.
        if (m_AlphaSelection.GetResID() >= 0)
            m_AlphaSelection.LoadFromResource(container);
        if (m_ScaleMarksMask.GetResID() >= 0)
            m_ScaleMarksMask.LoadFromResource(container);
    }
    return first;
}

WTErr WCGUIControl::ReadFromXMLSelectionImageList(const XML::CXMLElement &selection) {
    WTErr first = eNoErr;
    for (const XML::CXMLElement *child : selection.GetSubElements()) {
        const bool animation = child->GetName() == "Animation";
        if (!animation && child->GetName() != "Image")
            continue;
        int level = GUINames::SelectLevelFromString(child->GetAttribString("Type").c_str());
        if (animation && level < 0) {
            // An animation without a level takes the next free slot.
            level = 0;
            while (level < eNumSelectLevels && m_SelectionImages.GetImagePtr(level) != nullptr)
                ++level;
        }
        if (level < 0 || level >= eNumSelectLevels)
            continue;
        std::unique_ptr<WCBaseImage> image;
        if (animation)
            image = std::make_unique<WCAnimation>();
        else
            image = std::make_unique<WCBaseImage>();
        if (const WTErr err = image->ReadFromXML(child); err != eNoErr) {
            if (first == eNoErr)
                first = err;
            continue;
        }
        if (animation)
            static_cast<WCAnimation *>(image.get())->StartAnimation();
        m_SelectionImages.InsertImage(std::move(image), static_cast<std::size_t>(level));
    }
    return first;
}

void WCGUIControl::WriteImageLists(XML::CXMLElement &element) const {
    const WCBaseImageVector *lists[] = {&m_Background, &m_Foreground};
    const char *types[] = {"BackGround", "ForeGround"};
    for (int i = 0; i < 2; ++i) {
        if (lists[i]->Empty())
            continue;
        auto *list = new XML::CXMLElement("ImageList");
        list->AddAttrib("Type", types[i]);
        if (lists[i]->HasOffState())
            list->AddAttrib(kOffStateAttrib, "off");
        element.push_back(lists[i]->WriteToXML(list));
    }
    auto *bitmaps = new XML::CXMLElement("ImageList");
    if (!m_SelectionImages.Empty()) {
        auto *selection = new XML::CXMLElement("Selection");
        for (std::size_t level = 0; level < m_SelectionImages.GetImagesVectorSize(); ++level) {
            const WCBaseImage *image = m_SelectionImages.GetImagePtr(level);
            if (image == nullptr)
                continue;
            const bool animation = dynamic_cast<const WCAnimation *>(image) != nullptr;
            auto *child = new XML::CXMLElement(animation ? "Animation" : "Image");
            child->AddAttrib("Type", GUINames::SelectLevel2String(static_cast<int>(level)));
            selection->push_back(image->WriteToXML(child));
        }
        bitmaps->push_back(selection);
    }
    if (!m_Additional.Empty()) {
        auto *additional = new XML::CXMLElement("AdditionalImages");
        const WCBaseImage *first = m_Additional.GetImagePtr(0);
        if (first != nullptr && first->GetSequenceNumber() == 0) {
            auto *image = first->WriteToXML(new XML::CXMLElement("Image"));
            image->AddAttrib("SequenceSteps", static_cast<int>(m_Additional.GetImagesVectorSize()));
            additional->push_back(image);
        } else {
            m_Additional.WriteToXML(additional);
        }
        bitmaps->push_back(additional);
    }
    const WCBaseImage *singles[] = {&m_AlphaSelection, &m_ScaleMarksMask};
    const char *singleTypes[] = {"AlphaSelection", "ScaleMarksMask"};
    for (int i = 0; i < 2; ++i) {
        if (singles[i]->GetResID() == WCBaseImage::kNoResID && singles[i]->GetBoundRect().IsReset())
            continue;
        auto *image = new XML::CXMLElement("Image");
        image->AddAttrib("Type", singleTypes[i]);
        bitmaps->push_back(singles[i]->WriteToXML(image));
    }
    if (bitmaps->GetSubElements().empty())
        delete bitmaps;
    else
        element.push_back(bitmaps);
}

XML::CXMLElement *WCGUIControl::WriteToXMLWithAlg(XML::CXMLElement *element) const {
    if (element == nullptr)
        return nullptr;
    element->AddAttrib("Name", m_Name.c_str());
    element->AddAttrib("Page", m_Page);
    auto *cls = new XML::CXMLElement("Class");
    cls->AddAttrib("Type", m_ClassType.c_str());
    WriteToXMLWithAlgSelf(cls);
    element->push_back(cls);

    auto *flags = new XML::CXMLElement("Flags");
    for (unsigned int bit = 0; bit < WTFlags::kNumBits; ++bit)
        if (WCBaseControl::m_Flags.IsBitSet(bit))
            if (const char *name = GUINames::ControlFlag2String(bit))
                flags->push_back(new XML::CXMLElement(name));
    if (GetSelectableFlag(eNoMultipleSelection))
        flags->push_back(new XML::CXMLElement("NoMultipleSelection"));
    if (GetSelectableFlag(eAllowShiftMod))
        flags->push_back(new XML::CXMLElement("AllowShiftMod"));
    element->push_back(flags);

    // Names survive FinishCreate only as the resolved controls' names.
    auto *dependents = new XML::CXMLElement("DependentsList");
    auto addNames = [dependents](const char *tag, const std::vector<WCFixedString<63>> &names,
                                 const std::vector<WCGUIControl *> &resolved) {
        if (!names.empty()) {
            for (const auto &name : names)
                dependents->push_back(new XML::CXMLElement(tag, name.c_str()));
            return;
        }
        for (const WCGUIControl *control : resolved)
            dependents->push_back(new XML::CXMLElement(tag, control->GetName().c_str()));
    };
    addNames("Dependent", m_DependentNames, m_Dependents);
    addNames("DrawDependent", m_DrawDependentNames, m_DrawDependents);
    if (dependents->GetSubElements().empty())
        delete dependents;
    else
        element->push_back(dependents);
    if (!m_FatherName.empty())
        element->push_back(new XML::CXMLElement("FatherControl", m_FatherName.c_str()));
    element->push_back(new XML::CXMLElement("MaxSelection", m_MaxSelection));
    if (m_AcceptableChars != kDefaultAcceptableCharacters)
        element->push_back(
            new XML::CXMLElement("AcceptableCharactersForTextEntry", m_AcceptableChars.c_str()));
    element->push_back(new XML::CXMLElement("Direction", GUINames::Direction2String(m_Direction)));
    element->push_back(
        new XML::CXMLElement("DisableMode", GUINames::DisableMode2String(m_DisableMode)));
    element->push_back(GUIXML::WriteRect("ControlRect", m_OriginalRect));
    if (m_HasColor)
        element->push_back(GUIXML::WriteColor("ControlColor", m_Color));
    for (const auto &rect : m_ColorRects)
        element->push_back(GUIXML::WriteRect("ControlColorRect", rect));
    if (!m_GeneralRect1.IsReset())
        element->push_back(GUIXML::WriteRect("GeneralRect1", m_GeneralRect1));
    if (!m_GeneralRect2.IsReset())
        element->push_back(GUIXML::WriteRect("GeneralRect2", m_GeneralRect2));
    WriteImageLists(*element);
    element->push_back(WriteParameterList());
    for (const auto &group : m_Groups) {
        auto *child = new XML::CXMLElement("Group");
        child->AddAttrib("Name", group.c_str());
        element->push_back(child);
    }
    return element;
}

MIREL_NAMESPACE_END
