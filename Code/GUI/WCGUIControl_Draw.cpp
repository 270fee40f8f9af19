// WCGUIControl: what a control writes into a graphic stream, inside the frame of its drawable
// rect (positions are frame-local).
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/WCStaticText.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"

MIREL_NAMESPACE_BEGIN

namespace {

// Colours of the selection levels when a control draws the standard box instead of images.
WCRGBAColor LevelColor(int level) {
    switch (level) {
    case eSelectIdle: return WCRGBAColor(220, 220, 220, 255);
    case eSelectAutomated: return WCRGBAColor(255, 0, 180, 255);
    case eSelectSelected: return WCRGBAColor(0, 255, 246, 255);
    case eSelectActive: return WCRGBAColor(255, 222, 0, 255);
    default: return WCRGBAColor(255, 255, 255, 255);
    }
}

} // namespace

int WCGUIControl::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    int first = GetDrawInstructionsBkgColor(writer);
    auto keep = [&first](int err) {
        if (first == eNoErr)
            first = err;
    };
    if (!GetControlFlag(eCF_DrawSelectionAboveControl)) {
        keep(GetDrawInstructionsSelectionBitmap(writer));
        keep(GetDrawInstructionsDragDropImage(writer));
        keep(GetDrawInstructionsParamsData(writer));
    } else {
        keep(GetDrawInstructionsParamsData(writer));
        keep(GetDrawInstructionsSelectionBitmap(writer));
        keep(GetDrawInstructionsDragDropImage(writer));
    }
    return first;
}

int WCGUIControl::GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) {
    if (!m_HasColor)
        return eNoErr;
    if (m_ColorRects.empty())
        writer.DrawSolidRect(m_Color,
                             WURect<short>(0, 0, m_DrawableRect.Height(), m_DrawableRect.Width()));
    for (const auto &rect : m_ColorRects)
        writer.DrawSolidRect(m_Color, rect);
    return eNoErr;
}

int WCGUIControl::GetDrawInstructionsSelectionBitmap(miGS::WCGraphicStreamBinaryWriter &writer) {
    if (GetControlFlag(eCF_DefaultDraw))
        return GetDrawInstructionsDefaultSelectionLevel(writer);
    auto draw = [this, &writer](const WCBaseImage *image) {
        if (image == nullptr || image->GetResID() == WCBaseImage::kNoResID)
            return;
        const WURect<short> &bound = image->GetBoundRect();
        if (image->GetResID() == WCBaseImage::kPathResID) {
            writer.DrawPNGScaled(
                image->GetPath().c_str(),
                WURect<short>(0, 0, m_DrawableRect.Height(), m_DrawableRect.Width()));
            return;
        }
        const WCPoint2D<short> position(
            static_cast<short>(bound.IsReset() ? 0 : bound.left - m_DrawableRect.left),
            static_cast<short>(bound.IsReset() ? 0 : bound.top - m_DrawableRect.top));
        writer.DrawPNGAtPosition(image->GetResID(), position);
    };
    if (m_HoverImage)
        draw(m_SelectionImages.GetImagePtr(eSelectHover));
    draw(GetSelectionBitmap());
    return eNoErr;
}

int WCGUIControl::GetDrawInstructionsDefaultSelectionLevel(
    miGS::WCGraphicStreamBinaryWriter &writer) {
    const int level = m_Disabled ? eSelectDisabled : GetSelection();
    const WURect<short> frame(0, 0, m_DrawableRect.Height(), m_DrawableRect.Width());
    writer.DrawSolidRect(LevelColor(level), frame);
    writer.DrawWireRect(WCRGBAColor(0, 0, 0, 255), frame, 1.0f);
    return eNoErr;
}

// A drag image belongs to a drag in progress, which input handling starts; until one is, there
// is nothing to draw.
int WCGUIControl::GetDrawInstructionsDragDropImage(miGS::WCGraphicStreamBinaryWriter &writer) {
    if (!m_DragInProgress || m_DragDropImageResID == WCBaseImage::kNoResID)
        return eNoErr;
    writer.DrawPNGAtPosition(m_DragDropImageResID, m_LastMousePosition);
    return eNoErr;
}

int WCGUIControl::GetDrawInstructionsParamsData(miGS::WCGraphicStreamBinaryWriter &writer) {
    int first = eNoErr;
    for (std::size_t i = 0; i < m_Registrations.size(); ++i) {
        for (int err : {GetDrawInstructionsParamBitmapWindow(writer, i),
                        GetDrawInstructionsParamValueWindow(writer, i),
                        GetDrawInstructionsParamUnitsWindow(writer, i),
                        GetDrawInstructionsParamLabelWindow(writer, i),
                        GetDrawInstructionsParamGraphWindow(writer, i)})
            if (first == eNoErr)
                first = err;
    }
    return first;
}

int WCGUIControl::GetDrawInstructionsParamBitmapWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                                       std::size_t index) {
    if (index >= m_Registrations.size())
        return eOutOfRangeNumber;
    const auto &data = m_Registrations[index];
    const WCBaseImage *image = data.GetParamCurrentImage();
    if (image == nullptr || image->GetResID() == WCBaseImage::kNoResID)
        return eNoErr;
    WURect<short> rect =
        image->GetBoundRect().IsReset() ? data.GetBitmapWinRect() : image->GetBoundRect();
    if (rect.IsReset())
        rect = m_DrawableRect;
    writer.Remark("ParamBitmapWindow");
    writer.DrawPNGAtPosition(image->GetResID(),
                             WCPoint2D<short>(static_cast<short>(rect.left - m_DrawableRect.left),
                                              static_cast<short>(rect.top - m_DrawableRect.top)));
    return eNoErr;
}

int WCGUIControl::DrawTextWindow(miGS::WCGraphicStreamBinaryWriter &writer, WCStaticText *win,
                                 const char *remark) {
    if (win == nullptr)
        return eNoErr;
    if (win->ShowOnHover() && !(GetHoverVisibility() && ToDraw()))
        return eNoErr;
    if (win->DontShowOnHover() && GetHoverVisibility())
        return eNoErr;
    writer.Remark(remark);
    if (GetControlFlag(eCF_EraseWithBackground))
        GetDrawInstructionsForStaticTextBackground(writer, win->GetDrawableRect());
    return win->GetDrawInstructions(writer);
}

int WCGUIControl::GetDrawInstructionsParamValueWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                                      std::size_t index) {
    return index < m_Registrations.size()
               ? DrawTextWindow(writer, m_Registrations[index].GetValueWin(), "ParamValueWindow")
               : eOutOfRangeNumber;
}

int WCGUIControl::GetDrawInstructionsParamUnitsWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                                      std::size_t index) {
    return index < m_Registrations.size()
               ? DrawTextWindow(writer, m_Registrations[index].GetUnitsWin(), "ParamUnitsWindow")
               : eOutOfRangeNumber;
}

int WCGUIControl::GetDrawInstructionsParamLabelWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                                      std::size_t index) {
    return index < m_Registrations.size()
               ? DrawTextWindow(writer, m_Registrations[index].GetLabelWin(), "ParamLabelWindow")
               : eOutOfRangeNumber;
}

// Graphs draw themselves through their graph classes; a plain control shows none.
int WCGUIControl::GetDrawInstructionsParamGraphWindow(miGS::WCGraphicStreamBinaryWriter &,
                                                      std::size_t index) {
    return index < m_Registrations.size() ? eNoErr : eOutOfRangeNumber;
}

int WCGUIControl::GetDrawInstructionsForStaticTextBackground(
    miGS::WCGraphicStreamBinaryWriter &writer, const WURect<short> &rect) {
    const WCBaseImage *image = m_Background.GetCurrentImage();
    if (image == nullptr || image->GetResID() < 0 || rect.IsEmpty())
        return eNoErr;
    const WURect<short> &bound = image->GetBoundRect();
    writer.DrawPNGAtPositionClipped(
        image->GetResID(),
        WCPoint2D<short>(static_cast<short>(bound.left - m_DrawableRect.left),
                         static_cast<short>(bound.top - m_DrawableRect.top)),
        rect);
    return eNoErr;
}

void WCGUIControl::SetBkgColor(const WCRGBAColor &color) {
    m_Color = color;
    m_HasColor = true;
    SetNeedToRedrawControl();
}

MIREL_NAMESPACE_END
