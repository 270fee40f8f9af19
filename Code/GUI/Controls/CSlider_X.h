#pragma once

#include <cstdint>

#include "Code/GUI/WCBaseImageVector.h"
#include "Code/GUI/WCGUIControl.h"
#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// A slider: a thumb that travels along the thumb movement area, drawn over an optional
// background picture, with an optional slit (a meter strip along the travel) and a shadow.
// The lead registration decides the axis: "MouseVertical" and "MouseDrawHorizontal" make it
// vertical (state 1000 at the top), every other one horizontal (state 1000 at the right).
// The thumb picture is the control's foreground image (an "ImageList" of "Type" "ForeGround" or an
// "Image" of that type); its size is the thumb size and its "PositionRect", when given, the
// thumb's place before the first update. All rects of the XML are in GUI coordinates, except
// "TextWindowRelativeToThumb" and the shadow's "PositionRect", which are relative to the thumb's
// top-left corner, so they travel with it.
// Life: read, FinishCreate places the thumb for the current value, every parameter change moves
// it (UpdatePointerSelf); a mouse-down keeps where on the thumb it landed (the hold point) until
// the mouse-up, so that absolute drags move the thumb without a jump. [main-thread]
class CSlider_X : public WCGUIControl {
public:
    // The power of the thumb travel under "SliderLogResolution": position = state^0.5, so the
    // lower quarter of the states takes half the travel.
    static constexpr double kLogResolutionExponent = 0.5;

    explicit CSlider_X(WIControlOwner *owner = nullptr);
    ~CSlider_X() override;

    WCGUIControl *Clone() const override;

    // Moves the thumb so that its centre lies at `position` along the axis (GUI pixels); nothing
    // without a thumb. Carries the value window (flag 15) and the bitmap windows (flag 18) along.
    virtual void SetThumbRect(int position);
    // The lead registration's state, clamped to 0..1000.
    virtual double GetSliderPosition() const;
    // Registration `index` shows `value`: the slit follows a display-only registration, the
    // thumb follows the lead one (clamped to 0..1000).
    virtual void UpdateSliderGUI(std::uint64_t index, const double &value);
    // The state whose thumb centre lies at `point`; `point` and `origin` (the movement area's
    // top-left corner) relative to the control. The ends of the travel give 0 and 1000.
    double ThumbPositionToState(const WCPoint2D<short> &point,
                                const WCPoint2D<short> &origin) const;
    // Thumb size from the thumb picture, when it was not known yet.
    void CalcThumbSize();
    const WURect<short> &GetThumbRect() const noexcept { return m_ThumbRect; }
    // Forgets where the last mouse-down landed on the thumb.
    void ResetHoldPoint() noexcept { m_HoldPoint = WCPoint2D<short>(0, 0); }
    // The point relative to the control, less the hold point: where the thumb centre would be
    // for a mouse at `point`.
    WCPoint2D<short> CalcRelativeClickPoint(const WCPoint2D<short> &point) const override;
    // With "SliderMouseTrackKnob" only the thumb takes the mouse.
    bool IsInside(const WCPoint2D<short> &point) const override;
    void Move(int dx, int dy) override;
    // The slit, the background picture (unless "SliderNoBackground"), the control's own drawing,
    // the thumb, then the shadow.
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;

    bool IsVertical() const;
    const WCPoint2D<short> &GetHoldPoint() const noexcept { return m_HoldPoint; }
    const WCPoint2D<short> &GetThumbCentre() const noexcept { return m_ThumbCentre; }
    int GetMovementStart() const noexcept { return m_MovementStart; }
    int GetMovementLength() const noexcept { return m_MovementLength; }
    const WURect<short> &GetThumbMovementArea() const noexcept { return m_ThumbMovementArea; }
    const WURect<short> &GetBackGroundPictRect() const noexcept { return m_BackGroundPictRect; }
    const WURect<short> &GetTextRelativeToThumb() const noexcept { return m_TextRelativeToThumb; }
    bool HasSlit() const noexcept { return m_HasSlit; }
    bool GetResetFromRect() const noexcept { return m_ResetFromRect; }
    // The slit's lit fraction, 0..1.
    double GetVUValue() const noexcept { return m_VUValue; }
    WCBaseImageVector &GetShadow() noexcept { return m_Shadow; }
    WCBaseImageVector &GetSlitForeground() noexcept { return m_SlitForeground; }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *element, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *element) const override;
    WTErr UpdateFromXMLWithAlgSelf(const XML::CXMLElement *element, cALGORITHM *alg) override;
    int FinishCreateSelf() override;
    void UpdatePointerSelf(std::size_t index) override;
    BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                 bool &keepGoing) override;
    BUFFER_HEADER *MouseDragSelf(WCEventData &event, double dx, double dy,
                                 bool &keepGoing) override;
    BUFFER_HEADER *MouseUpSelf(WCEventData &event) override;

    WTErr ReadFromXMLSliderSlit(const XML::CXMLElement &slit);
    void WriteToXMLSliderSlit(XML::CXMLElement &element) const;
    // Copies the slider's own fields; Clone of a derived slider calls it after CopyTo.
    void CopySliderTo(CSlider_X &other) const;

private:
    // Travel start and length from the movement area and the thumb size.
    void UpdateMovement();
    int DrawImage(miGS::WCGraphicStreamBinaryWriter &writer, const WCBaseImage *image,
                  const WCPoint2D<short> &guiPosition) const;

    WCPoint2D<short> m_HoldPoint;
    WCPoint2D<short> m_ThumbCentre;
    int m_MovementStart = 0;
    int m_MovementLength = 0;
    WURect<short> m_BackGroundPictRect;
    WURect<short> m_ThumbMovementArea;
    WURect<short> m_TextRelativeToThumb;
    WURect<short> m_ThumbRect;
    WCBaseImageVector m_Shadow;
    short m_ThumbSizeX = 0;
    short m_ThumbSizeY = 0;
    bool m_HasSlit = false;
    WCBaseImageVector m_SlitBackground;
    WCBaseImageVector m_SlitForeground;
    WCBaseImageVector m_SlitSelection;
    double m_VUValue = 0.0;
    bool m_ResetFromRect = false;
};

MIREL_NAMESPACE_END
