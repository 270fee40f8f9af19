#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCBaseImageVector.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/WUControlNames.h"
#include "Code/GUI/X_CToolbarButton.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "files/WCStPath.h"
#include "files/WUFileSystemObjects.h"
#include "graphic_stream/WCGSGraphExtractor.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCGraphicStreamToSVG.h"
#include "graphic_stream/WCGraphicStreamToYAML.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"
#include "resources/ResourceManager.h"

MIREL_NAMESPACE_BEGIN

namespace {

using miGS::WCGraphicStreamBinaryWriter;
using miGS::WCStGSFrameStructWriter;

WURect<int> ToInt(const WURect<short> &rect) {
    return WURect<int>(rect.top, rect.left, rect.bottom, rect.right);
}

// A rectangle moved so that (dx, dy) becomes its origin.
WURect<short> Relative(const WURect<short> &rect, short dx, short dy) {
    WURect<short> moved = rect;
    moved.Offset(static_cast<short>(-dx), static_cast<short>(-dy));
    return moved;
}

// Remarks name what a frame holds: kind, name in quotes, class in brackets, and a suffix.
void WriteRemark(WCGraphicStreamBinaryWriter &writer, const char *kind, const WCGUIControl &control,
                 const char *suffix = "") {
    if (!writer.RemarksActive())
        return;
    std::string text(kind);
    text.append(" \"").append(control.GetName().c_str()).append("\" [");
    text.append(control.GetClassType().c_str()).append("]").append(suffix);
    writer.Remark(text.c_str());
}

bool Intersects(const WURect<short> &a, const WURect<short> &b) {
    return a.IsIntersecting(b);
}

// The overlap of two rectangles; all zero when they do not overlap.
WURect<short> Common(const WURect<short> &a, const WURect<short> &b) {
    WURect<short> common;
    a.GetIntersection(b, common);
    return common;
}

// The union, where an empty rectangle adds nothing.
WURect<short> Cover(WURect<short> a, const WURect<short> &b) {
    if (b.IsEmpty())
        return a;
    if (a.IsEmpty())
        return b;
    return a.Union(b);
}

} // namespace

bool CStandardGUI_X::NeedToRedrawGUI() {
    return !GetGUIFlag(eNoAlwaysDraw) || m_RedrawCounter != 0;
}

bool CStandardGUI_X::HasSomethingToPaint() {
    if (GetGUIFlag(eNoImages))
        return false;
    if (NeedToRedrawGUI() || !(m_SelectionRect == m_DrawnSelectionRect))
        return true;
    // Hidden ones are never painted, so they would ask for frames forever.
    auto dirty = [](WCGUIControl *control) {
        return control->NeedToRedrawControl() && control->ToDraw();
    };
    return std::any_of(m_Toolbar.begin(), m_Toolbar.end(), dirty) ||
           std::any_of(m_Watched.begin(), m_Watched.end(), dirty);
}

void CStandardGUI_X::WatchControl(WCGUIControl *control) {
    if (control != nullptr)
        m_Watched.push_back(control);
}

void CStandardGUI_X::OrderWatched() {
    // Past a few controls one walk of the list is cheaper than finding each one's place.
    constexpr std::size_t kFew = 8;
    if (m_Watched.size() > kFew) {
        for (WCGUIControl *control : m_Watched)
            control->ClearWatched();
        m_Watched.clear();
        for (WCGUIControl *control : m_Controls)
            if (control->GetRedrawCounter() > 0 || control->HasAnimations() ||
                control->GetHoverState() != WCMouseHover::eHoverOff ||
                control->GetPreviousHoverState() != WCMouseHover::eHoverOff)
                control->Watch();
        return;
    }
    // Toolbar buttons and templates watch themselves through the same owner; they are not drawn
    // with the controls.
    std::array<std::pair<std::ptrdiff_t, WCGUIControl *>, kFew> placed;
    std::size_t count = 0;
    for (WCGUIControl *control : m_Watched) {
        const auto place = std::find(m_Controls.begin(), m_Controls.end(), control);
        if (place == m_Controls.end())
            control->ClearWatched();
        else
            placed[count++] = {place - m_Controls.begin(), control};
    }
    // An insertion sort of at most a few.
    for (std::size_t i = 1; i < count; ++i)
        for (std::size_t j = i; j > 0 && placed[j].first < placed[j - 1].first; --j)
            std::swap(placed[j], placed[j - 1]);
    m_Watched.clear();
    for (std::size_t i = 0; i < count; ++i)
        m_Watched.push_back(placed[i].second);
}

void CStandardGUI_X::PruneWatched() {
    std::erase_if(m_Watched, [](WCGUIControl *control) {
        const bool quiet = control->GetRedrawCounter() == 0 && !control->HasAnimations() &&
                           control->GetHoverState() == WCMouseHover::eHoverOff &&
                           control->GetPreviousHoverState() == WCMouseHover::eHoverOff;
        if (quiet)
            control->ClearWatched();
        return quiet;
    });
}

void CStandardGUI_X::ClearMinimumDrawInstructionsCache() {
    m_LastDirtyRects.clear();
    m_NotedControls.clear();
}

int CStandardGUI_X::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    if (GetGUIFlag(eNoImages))
        return eNoErr;
    writer.SetDataPtrThreshold(m_GraphicStreamDataPtrThreshold);
    miGS::SGSStream stream;
    stream.frame.rect.size = {m_DrawableRect.Width(), m_DrawableRect.Height()};
    std::strncpy(stream.stream_name, m_PluginName.c_str(), sizeof stream.stream_name - 1);
    std::string resources;
    if (WTResContainerType *container = GetContainer()) {
        FM::WCStPath folder;
        if (RM::GetResourcesFolderPath(container, folder) == eNoErr)
            resources = folder.GetNativePathString().c_str();
    }
    miGS::WCStGSStreamStructWriter guard(writer, stream, resources.c_str());
    m_pTopmost = nullptr;
    int err = GetDrawInstructionsSelf(writer);
    if (m_pTopmost != nullptr)
        if (const int topmost = GetDrawIntructionsControl(writer, m_pTopmost); err == eNoErr)
            err = topmost;
    return err;
}

int CStandardGUI_X::GetDrawInstructionsSelf(miGS::WCGraphicStreamBinaryWriter &writer) {
    const WURect<short> view(0, 0, m_DrawableRect.Height(), m_DrawableRect.Width());
    if (!GetGUIFlag(eNoClipping))
        writer.ClipRect(view);
    if (const bool fullScreen = IsViewInFullScreen(); fullScreen != m_WasFullScreen) {
        m_WasFullScreen = fullScreen;
        SetNeedToRedrawGUI();
    }
    int err = eNoErr;
    auto keep = [&err](int code) {
        if (err == eNoErr)
            err = code;
    };
    const bool full = NeedToRedrawGUI();
    if (full) {
        if (m_HasBackgroundColor)
            writer.DrawSolidRect(m_BackgroundColor, view);
        if (!GetGUIFlag(eDropBaseImage))
            keep(GetDrawInstructionsBasePict(writer, view));
    }
    for (X_CToolbarButton *button : m_Toolbar) {
        if (!button->ToDraw() || (!full && !button->NeedToRedrawControl()))
            continue;
        WriteRemark(writer, "ToolbarButton", *button);
        WCStGSFrameStructWriter frame(writer, ToInt(button->GetDrawableRect()), 0);
        keep(button->GetDrawInstructions(writer));
        button->UpdateRedrawControl();
    }
    if (full) {
        for (WCGUIControl *control : m_Controls) {
            if (control->ShouldDrawTopmost() && !control->IsHidden(true) &&
                !control->GetControlFlag(eCF_ChildControl))
                m_pTopmost = control;
            keep(GetDrawIntructionsControl(writer, control));
        }
        ClearMinimumDrawInstructionsCache();
    } else {
        keep(GetMinimumDrawInstructions(writer));
    }
    keep(GetDrawInstructionsSelectedRect(writer));
    PruneWatched();
    if (m_RedrawCounter != 0)
        --m_RedrawCounter;
    return err;
}

int CStandardGUI_X::GetDrawIntructionsControl(miGS::WCGraphicStreamBinaryWriter &writer,
                                              WCGUIControl *control) {
    if (control == nullptr || !control->ToDraw() || control->GetControlFlag(eCF_ChildControl))
        return eNoErr;
    int err = eNoErr;
    {
        WriteRemark(writer, "Control", *control);
        WCStGSFrameStructWriter frame(writer, ToInt(control->GetDrawableRect()), 0);
        if (m_DrawControlBackgrounds)
            GetDrawInstructionsControlBackground(writer, *control);
        err = control->GetDrawInstructions(writer);
        control->UpdateRedrawControl();
    }
    if (control->IsHoverToBeCleaned() || control->GetHoverVisibility())
        control->SetNeedToRedrawControl();
    return err;
}

// Inside the control's frame, the base picture cut to the control's rect is the base picture
// drawn relative to that rect.
int CStandardGUI_X::GetDrawInstructionsControlBackground(miGS::WCGraphicStreamBinaryWriter &writer,
                                                         const WCGUIControl &control) {
    if (GetGUIFlag(eDropBaseImage))
        return eNoErr;
    return GetDrawInstructionsBasePict(writer, control.GetDrawableRect());
}

int CStandardGUI_X::GetDrawInstructionsForControl(std::size_t index,
                                                  miGS::WCGraphicStreamBinaryWriter &writer) {
    WCGUIControl *control = GetControlPtrByIndex(static_cast<std::int64_t>(index));
    if (control == nullptr)
        return eControlOutOfRange;
    // A control painted alone has nothing beneath it: it brings its piece of the background.
    m_DrawControlBackgrounds = true;
    const int err = GetDrawIntructionsControl(writer, control);
    m_DrawControlBackgrounds = false;
    return err;
}

int CStandardGUI_X::GetDrawInstructionsBasePict(miGS::WCGraphicStreamBinaryWriter &writer,
                                                const WURect<short> &rect) {
    const WCBaseImageVector *picts = GetCurrentBasePictVec();
    if (picts == nullptr)
        return eNoErr;
    for (std::size_t i = 0; i < picts->GetImagesVectorSize(); ++i) {
        const WCBaseImage *image = picts->GetImagePtr(i);
        if (image == nullptr || image->GetResID() < 0 || !Intersects(image->GetBoundRect(), rect))
            continue;
        writer.Remark("BasePict");
        const WURect<short> placed = Relative(image->GetBoundRect(), rect.left, rect.top);
        writer.DrawPNGAtPositionClipped(
            image->GetResID(), WCPoint2D<short>(placed.left, placed.top),
            Relative(Common(rect, image->GetBoundRect()), rect.left, rect.top));
    }
    return eNoErr;
}

int CStandardGUI_X::GetDrawInstructionsMultipleClipsBasePict(
    miGS::WCGraphicStreamBinaryWriter &writer, const std::vector<WURect<short>> &rects) {
    const WCBaseImageVector *picts = GetCurrentBasePictVec();
    if (rects.empty() || picts == nullptr)
        return eNoErr;
    const WURect<short> view(0, 0, m_DrawableRect.Height(), m_DrawableRect.Width());
    WCStGSFrameStructWriter frame(writer, ToInt(view), 0);
    writer.ClipMultipleRects(rects, view);
    for (std::size_t i = 0; i < picts->GetImagesVectorSize(); ++i) {
        const WCBaseImage *image = picts->GetImagePtr(i);
        if (image == nullptr || image->GetResID() < 0)
            continue;
        writer.Remark("MultipleBasePict");
        writer.DrawPNGAtPosition(image->GetResID(), WCPoint2D<short>(image->GetBoundRect().left,
                                                                     image->GetBoundRect().top));
    }
    return eNoErr;
}

int CStandardGUI_X::GetDrawInstructionsSelectedRect(miGS::WCGraphicStreamBinaryWriter &writer) {
    m_DrawnSelectionRect = m_SelectionRect;
    if (m_SelectionRect.IsEmpty())
        return eNoErr;
    writer.DrawWireRect(WCRGBAColor(0xFF, 0xFF, 0xFF, 0xFF), m_SelectionRect, 1.0f, 0xFFFF);
    return eNoErr;
}

int CStandardGUI_X::GetMinimumDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    auto visible = [](const WCGUIControl *control) {
        return control->ToDraw() && !control->GetControlFlag(eCF_ChildControl);
    };
    // One pass over every control: the dirty ones give their rects, and a hover that is still
    // showing or has to be wiped keeps its control dirty for the next frame.
    m_DirtyRects.clear();
    m_Hovering.clear();
    // Only the watched controls can be dirty or hovering: a large GUI costs what changed.
    OrderWatched();
    for (WCGUIControl *control : m_Watched) {
        if (control->NeedToRedrawControl() && visible(control))
            m_DirtyRects.push_back(control->GetCombinedRect());
        if (control->IsHoverToBeCleaned() || control->GetHoverVisibility())
            m_Hovering.push_back(control);
    }
    // The same dirty rects as last frame note the same controls: the notes are kept.
    if (m_DirtyRects != m_LastDirtyRects) {
        m_LastDirtyRects = m_DirtyRects;
        m_NotedControls.clear();
        for (WCGUIControl *control : m_Controls) {
            if (!visible(control))
                continue;
            WSNotedControl noted{control, {}};
            for (const WURect<short> &dirty : m_DirtyRects)
                if (const WURect<short> common = Common(dirty, control->GetDrawableRect());
                    !common.IsEmpty())
                    noted.m_Clips.push_back(common);
            if (!noted.m_Clips.empty())
                m_NotedControls.push_back(std::move(noted));
        }
    }
    int err = eNoErr;
    if (!GetGUIFlag(eDropBaseImage))
        err = GetDrawInstructionsMultipleClipsBasePict(writer, m_DirtyRects);
    for (WSNotedControl &noted : m_NotedControls) {
        WCGUIControl *control = noted.m_pControl;
        // Notes kept from the last frame may name a control hidden since.
        if (!visible(control))
            continue;
        const WURect<short> &rect = control->GetDrawableRect();
        WriteRemark(writer, "Control", *control, control->NeedToRedrawControl() ? " (R)" : " (NR)");
        {
            WCStGSFrameStructWriter frame(writer, ToInt(rect), 0);
            if (noted.m_Clips.size() == 1) {
                WURect<short> clip = Cover(noted.m_Clips.front(), control->GetValueRect());
                clip = Common(Cover(clip, control->GetImageRect()), rect);
                if (!(clip == rect))
                    writer.ClipRect(Relative(clip, rect.left, rect.top));
            } else {
                writer.ClipMultipleRects(noted.m_Clips, rect);
            }
            if (const int code = control->GetDrawInstructions(writer); err == eNoErr)
                err = code;
            control->UpdateRedrawControl();
        }
    }
    for (WCGUIControl *control : m_Hovering)
        control->SetNeedToRedrawControl();
    return err;
}

// ---- dumps ----------------------------------------------------------------------------------

FM::WCStPath CStandardGUI_X::GetGraphicStreamDumpFolder() {
    FM::WCStPath folder(FM::eUserDomain, FM::eMirelCacheFolder);
    folder.Append("GraphicStreams");
    return folder;
}

int CStandardGUI_X::WriteGraphicStreamToFile(miGS::WCGraphicStreamBinaryWriter &writer,
                                             const char *format, const char *name) {
    if (format == nullptr || name == nullptr || *name == '\0')
        return eMemNullPointer;
    const std::string kind(format);
    if (kind != "gs" && kind != "yaml" && kind != "graph_data" && kind != "svg")
        return eNoErr;
    const FM::WCStPath folder =
        m_DumpFolder.empty() ? GetGraphicStreamDumpFolder() : FM::WCStPath(m_DumpFolder.c_str());
    if (const WTErr err = FM::CreateFolder(folder); err != eNoErr)
        return err;
    const FM::WCStPath path(folder, (std::string(name) + "." + kind).c_str());
    auto *stream = static_cast<char *>(writer.GetStreamPtr());
    const std::uint64_t size = writer.GetStreamSize();
    std::string text;
    if (kind == "gs")
        return FM::ReplaceFileContents(path, stream, size);
    if (kind == "yaml") {
        miGS::WCGraphicStreamToYAML yaml;
        yaml.FollowDataPointers(true);
        if (const int err = yaml.ExecStream(stream, size); err != eNoErr)
            return err;
        text = yaml.GetYamlStr() + "\n";
    } else if (kind == "graph_data") {
        std::vector<miGS::GraphInfo> graphs;
        miGS::WCGSGraphExtractor extractor(graphs);
        extractor.FollowDataPointers(true);
        if (const int err = extractor.ExecStream(stream, size); err != eNoErr)
            return err;
        for (const miGS::GraphInfo &graph : graphs) {
            text += "ParamID:" + std::to_string(graph.m_ParamID) + "\n";
            for (const WCPoint2D<float> &point : graph.m_Points)
                text += std::to_string(point.x) + " " + std::to_string(point.y) + "\n";
        }
    } else {
        XML::CXMLElement root("svg");
        miGS::WCGraphicStreamToSVG svg(&root);
        svg.FollowDataPointers(true);
        if (const int err = svg.ExecStream(stream, size); err != eNoErr)
            return err;
        text = svg.GetSVGStr();
    }
    return FM::ReplaceFileContents(path, text.data(), text.size());
}

MIREL_NAMESPACE_END
