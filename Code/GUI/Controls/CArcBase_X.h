#pragma once

#include <optional>
#include <vector>

#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "core/WCRGBAColor.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// A value shown on a circular arc drawn with stream shapes, in the largest square centred in the
// control. Angles are degrees from twelve o'clock growing clockwise; the arc spans "ArcStartDeg"
// (state 0) to "ArcEndDeg" (state 1000), -135 to 135 unless the XML says otherwise.
//
// "Swapped": an arc given an "ArcSwappedColor" is bipolar. It grows from the middle of its span
// towards the value, and while the value lies below the middle (state under 500) it is drawn in
// the swapped colours. "Highlight": while the control is selected (clicked, or in the
// document's selection), hovered, or highlighted by the document, the highlight colours are used.
//
// It takes the mouse as every value control does: its registrations turn a drag into a value.
// The "Class" children it does not know are kept whole and written back after its own.
// Owned by its document like every control. [main-thread]
class CArcBase_X : public WCGUIControl {
public:
    // What the "Class" children give; a member without a value was not in the XML.
    struct WSLook {
        std::optional<WCRGBAColor> m_ArcColor, m_ArcSwappedColor, m_ArcHighlightColor,
            m_ArcSwappedHighlightColor;
        std::optional<double> m_ArcThickness, m_ArcStartDeg, m_ArcEndDeg;
        std::optional<WCRGBAColor> m_MarkColor, m_MarkHighlightColor;
        std::optional<double> m_MarkThickness, m_MarkLength;
        std::vector<XML::CXMLElement> m_Others;
    };
    static constexpr double kDefaultStartDeg = -135.0;
    static constexpr double kDefaultEndDeg = 135.0;
    static constexpr double kDefaultThickness = 4.0;

    explicit CArcBase_X(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    const WSLook &GetLook() const noexcept { return m_Look; }
    // The angle of `state` (0..1000, held there) on the arc's span.
    double AngleOfState(double state) const;
    // The lead registration's state; 0 without one.
    double GetState() const;
    bool IsBipolar() const noexcept { return m_Look.m_ArcSwappedColor.has_value(); }
    bool IsSwapped() const { return IsBipolar() && GetState() < 500.0; }
    bool IsHighlighted() const;

    // A stroke of `thickness` along the circle of `rect` from `fromDeg` to `toDeg`; nothing
    // when they are equal.
    static void DrawArcLine(miGS::WCGraphicStreamBinaryWriter &writer, const WURect<short> &rect,
                            double fromDeg, double toDeg, double thickness,
                            const WCRGBAColor &color);

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    // The arc is the control's face, under the selection picture and the value windows.
    int GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) override;
    // The value part of the arc, from the start (from the middle when bipolar) to the value.
    virtual int GetDrawInstructionsArcLine(miGS::WCGraphicStreamBinaryWriter &writer);

    // The square the stroke's centre line runs on, inset by half the thickness so that the
    // stroke stays inside the control; frame-local.
    WURect<short> ArcRect() const;
    double Thickness() const { return m_Look.m_ArcThickness.value_or(kDefaultThickness); }
    WCRGBAColor ArcColor() const;
    WCRGBAColor MarkColor() const;
    // A radial line at `angle` from `inner` to `outer` pixels off the centre.
    void DrawRadialLine(miGS::WCGraphicStreamBinaryWriter &writer, double angle, double inner,
                        double outer, float width, const WCRGBAColor &color) const;
    void CopyArcTo(CArcBase_X &other) const { other.m_Look = m_Look; }

    WSLook m_Look;
};

// An arc lit from its start to the value (from the middle when bipolar), with a tick across the
// arc at the value when "MarkLength" is given. [main-thread]
class CArc_X : public CArcBase_X {
public:
    explicit CArc_X(WIControlOwner *owner = nullptr) : CArcBase_X(owner) {}
    CArc_X *Clone() const override;

protected:
    int GetDrawInstructionsArcLine(miGS::WCGraphicStreamBinaryWriter &writer) override;
};

// A whole arc as a scale, with a marker line pointing at the value from the rim inwards
// ("MarkLength" long, to the centre when not given). [main-thread]
class CArcMarker_X : public CArcBase_X {
public:
    static constexpr double kDefaultMarkThickness = 2.0;

    explicit CArcMarker_X(WIControlOwner *owner = nullptr) : CArcBase_X(owner) {}
    CArcMarker_X *Clone() const override;

protected:
    int GetDrawInstructionsArcLine(miGS::WCGraphicStreamBinaryWriter &writer) override;
    virtual int GetDrawInstructionsMarkerLine(miGS::WCGraphicStreamBinaryWriter &writer);
};

MIREL_NAMESPACE_END
