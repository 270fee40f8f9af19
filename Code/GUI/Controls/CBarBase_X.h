#pragma once

#include <optional>
#include <vector>

#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "core/WCRGBAColor.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// A value shown as a flat bar of solid rectangles inside the control, inset by "BarMargin": from
// the bottom up when the control is taller than wide, else from the left.
//
// "Swapped" and "highlight" mean what they mean for arcs: a bar given a "BarSwappedColor" is
// bipolar (it grows from the middle, in the swapped colours while the value lies below it), and
// the highlight colours show while the control is selected, hovered or highlighted by the
// document.
//
// It takes the mouse as every value control does, through its registrations. The "Class"
// children it does not know are kept whole and written back after its own.
// Owned by its document like every control. [main-thread]
class CBarBase_X : public WCGUIControl {
public:
    struct WSLook {
        std::optional<WCRGBAColor> m_BarColor, m_BarSwappedColor, m_BarHighlightColor,
            m_BarSwappedHighlightColor;
        std::optional<double> m_BarMargin, m_MarkThickness;
        std::optional<WCRGBAColor> m_MarkColor, m_MarkHighlightColor;
        std::vector<XML::CXMLElement> m_Others;
    };

    explicit CBarBase_X(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    const WSLook &GetLook() const noexcept { return m_Look; }
    // The lead registration's state held to 0..1000; 0 without one.
    double GetState() const;
    bool IsVertical() const { return m_DrawableRect.Height() > m_DrawableRect.Width(); }
    bool IsBipolar() const noexcept { return m_Look.m_BarSwappedColor.has_value(); }
    bool IsSwapped() const { return IsBipolar() && GetState() < 500.0; }
    bool IsHighlighted() const;
    // The bar's area, frame-local: the control inset by the margin.
    WURect<short> BarRect() const;
    // The pixel along the bar's axis where `state` lies in `bar` (a y for a vertical bar).
    static int PositionOfState(const WURect<short> &bar, bool vertical, double state);
    // The part of `bar` between the places of two states.
    static WURect<short> Span(const WURect<short> &bar, bool vertical, double fromState,
                              double toState);

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    // The bar is the control's face, under the selection picture and the value windows.
    int GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) override;
    virtual int GetDrawInstructionsBar(miGS::WCGraphicStreamBinaryWriter &writer) = 0;
    // A line across the bar at the value, "MarkThickness" thick (`fallback` when not given).
    void DrawMark(miGS::WCGraphicStreamBinaryWriter &writer, double fallback) const;
    WCRGBAColor BarColor() const;
    void CopyBarTo(CBarBase_X &other) const { other.m_Look = m_Look; }

    WSLook m_Look;
};

// A bar lit from its origin (from the middle when bipolar) to the value, with a mark line at the
// value when "MarkThickness" is given. [main-thread]
class CBar_X : public CBarBase_X {
public:
    explicit CBar_X(WIControlOwner *owner = nullptr) : CBarBase_X(owner) {}
    CBar_X *Clone() const override;

protected:
    int GetDrawInstructionsBar(miGS::WCGraphicStreamBinaryWriter &writer) override;
};

// A whole bar as a track with a mark line at the value (2 pixels unless "MarkThickness" says).
// [main-thread]
class CBarMarker_X : public CBarBase_X {
public:
    static constexpr double kDefaultMarkThickness = 2.0;

    explicit CBarMarker_X(WIControlOwner *owner = nullptr) : CBarBase_X(owner) {}
    CBarMarker_X *Clone() const override;

protected:
    int GetDrawInstructionsBar(miGS::WCGraphicStreamBinaryWriter &writer) override;
};

MIREL_NAMESPACE_END
