#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "Code/GUI/CDrawable.h"
#include "Code/GUI/CSelectable.h"
#include "Code/GUI/WCBaseControl.h"
#include "Code/GUI/WCBaseImageVector.h"
#include "Code/GUI/WCMouseHover.h"
#include "Code/GUI/WCNeedToDrawListener.h"
#include "Code/GUI/WIControlOwner.h"
#include "Code/GUI/WUControlNames.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCPoint2D.h"
#include "core/WCRGBAColor.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

class WIControlOwner;
class WCAnimation;
class CControlPopupMenuHandler;

namespace miGS {
class WCGraphicStreamBinaryWriter;
}
namespace PluginViewManager {
class WCEventData;
}

// Options a control factory may be handed besides the XML.
class WCControlCreationOptionsBase {
public:
    virtual ~WCControlCreationOptionsBase() = default;
    int m_Priority = 99;
};

class WCControlCreationOptions : public WCControlCreationOptionsBase {
public:
    WCFixedString<63> m_ClassName;
    WCFixedString<255> m_Options;
};

// A control with a picture: geometry (drawable, original, value, image and combined rects),
// images (background, foreground, selection by level, alpha selection, scale marks, additional),
// selection level, hover, disabling, dependents that redraw with it, and the GUI XML it is read
// from and written back to. A parameter change reaches it through UpdatePointer, which marks it
// for redraw for two frames; the document then asks it for its drawing with
// GetDrawInstructions, inside a frame of its drawable rect (so positions are frame-local).
// Owned by its document (WIControlOwner), which outlives it. [main-thread]
class WCGUIControl : public WCBaseControl,
                     public CSelectable,
                     public CDrawable,
                     public WCMouseHover,
                     public WCNeedToDrawListener {
public:
    static constexpr const char *kDefaultAcceptableCharacters = "0123456789.+-";
    static constexpr int kDefaultMaxSelection = eSelectActive;

    explicit WCGUIControl(WIControlOwner *owner = nullptr);
    ~WCGUIControl() override;

    WCGUIControl *Clone() const override;

    // ---- XML ---------------------------------------------------------------------------------
    // "Name", "Page" and the children of the GUI XML, in document order, then a second pass for
    // "ControlRectOffset". A child that does not read (a rectangle that is no rectangle, a colour
    // out of range, an image without a number) is skipped and its code returned at the end, the
    // first one; everything else is read.
    WTErr ReadFromXMLWithAlg(const XML::CXMLElement *element, cALGORITHM *alg) override;
    // Re-reads the XML on a skin change: the same as reading, over what the control holds.
    virtual WTErr UpdateFromXMLWithAlg(const XML::CXMLElement *element, cALGORITHM *alg);
    XML::CXMLElement *WriteToXMLWithAlg(XML::CXMLElement *element) const override;
    WTErr ReadFromXMLParameterList_Registration(const XML::CXMLElement &param,
                                                WCParamRegistrationData &data) override;
    WTErr ReadFromXMLImageList(const XML::CXMLElement &list);
    WTErr ReadFromXMLBitmapList(const XML::CXMLElement &list);
    WTErr ReadFromXMLSelectionImageList(const XML::CXMLElement &selection);
    // Extra children of "AdditionalImages" for concrete classes.
    virtual WTErr ReadFromXMLCustom(const XML::CXMLElement &) { return eNoErr; }

    // ---- life --------------------------------------------------------------------------------
    // Resolves dependents and father, the direction factor, the dynamic GUI freeze, selection 0,
    // FinishCreateSelf, animations, and a first redraw.
    int FinishCreate() override;
    // Ends the hover and releases every registration that is not display-only.
    int Release();
    // `other` is going: it stops being this control's father or one of its dependents.
    void ForgetControl(const WCGUIControl *other);

    // ---- flags, disabling, showing -----------------------------------------------------------
    // "NoMultipleSelection" and "AllowShiftMod" go to the selectable flags; "Hidden" hides and
    // disables.
    void SetControlFlag(const char *name, bool on) override;
    void SetControlFlag(unsigned int bit, bool on) override;
    void UpdateDisabledMode(std::size_t index) override;
    virtual bool ShouldDisableGUIControl(std::size_t index) const;
    virtual bool IsDisabled() const { return m_Disabled; }
    virtual void SetDisabled();
    virtual void ClearDisabled();
    void Hide() override;
    void Show() override;

    // ---- parameter changes and redraw --------------------------------------------------------
    void UpdatePointer(std::size_t index) override;
    // This control and its draw dependents need two frames of redraw.
    void SetNeedToRedrawControl() override;
    // An override calls this one: it tells the owner to look at the control in coming frames.
    virtual void SetNeedToRedrawControlOnly() {
        m_RedrawCounter = 2;
        Watch();
    }
    virtual void UpdateRedrawControl() {
        if (m_RedrawCounter > 0)
            --m_RedrawCounter;
    }
    virtual bool NeedToRedrawControl();
    int GetRedrawCounter() const noexcept { return m_RedrawCounter; }
    // Whether the owner looks at this control in coming frames; it clears the mark when there is
    // nothing more to see (no redraw due, no hover under way, no animation).
    bool IsWatched() const noexcept { return m_Watched; }
    void ClearWatched() noexcept { m_Watched = false; }
    void Watch() {
        if (m_pOwner != nullptr && !m_Watched) {
            m_Watched = true;
            m_pOwner->WatchControl(this);
        }
    }
    bool HasAnimations() const noexcept { return !m_Animations.empty(); }

    // ---- geometry ----------------------------------------------------------------------------
    virtual void Move(int dx, int dy);
    virtual void Resize(int width, int height);
    virtual WURect<short> GetBounds() const { return m_DrawableRect; }
    // The union of the registrations' bitmap windows; the drawable rect without any.
    virtual WURect<short> GetImageRect() const;
    // The union of the value, units and label windows, in GUI coordinates; empty without any.
    virtual WURect<short> GetValueRect() const;
    const WURect<short> &GetMovementRect() const noexcept { return m_MovementRect; }
    // Every rect the control paints in.
    WURect<short> GetCombinedRect() const;
    // Inside the drawable rect (right and bottom excluded), on a non-transparent pixel of the
    // alpha selection and, with "JumpToScaleMarks", of the scale marks mask; else, unless
    // "IgnoreMouseOnTextWin", inside a text or bitmap window.
    virtual bool IsInside(const WCPoint2D<short> &point) const;
    virtual WCPoint2D<short> CalcRelativeClickPoint(const WCPoint2D<short> &point) const;
    virtual bool IsCyclicControl() const;

    // ---- typed values ------------------------------------------------------------------------
    // The first registration with a value window, or -1; only with "ReciveTextEntery".
    virtual int WhichParamIndexCanEnterText() const;
    // Typing is open: the flag, a value window, and the control not disabled.
    virtual bool CanEnterText() const;
    // The text of registration `index`'s value window; eOutOfRangeNumber without one.
    virtual int GetValueWinText(std::size_t index, WCFixedStringBase &out) const;

    // ---- input -------------------------------------------------------------------------------
    // Every handler answers the chain of buffers its parameter changes built (null for none),
    // which the document joins and sends; the *Self hooks are where a concrete control adds its
    // own reaction, last. A control with no registrations changes nothing.
    using WCEventData = PluginViewManager::WCEventData;
    using BUFFER_HEADER = WCParamRegistrationData::BUFFER_HEADER;

    // Touches the registrations, resets those the modifiers ask to reset, keeps the lead value,
    // then MouseDownSelf, which widens `limits` (the range of states the moving controls span).
    // `keepGoing` false stops the document's walk over the selected controls.
    virtual BUFFER_HEADER *MouseDown(WCEventData &event, WURect<double> &limits, bool &keepGoing);
    // `dx` and `dy` are state deltas (y up); every registration gets its offsets and absolute
    // positions in a fixed order, then a value drag may start.
    virtual BUFFER_HEADER *MouseDrag(WCEventData &event, double dx, double dy, bool &keepGoing);
    virtual BUFFER_HEADER *MouseUp(WCEventData &event);
    // Wheel deltas in states; a step too small to change the value moves to the next one that
    // does.
    virtual BUFFER_HEADER *MouseWheel(WCEventData &event, double dx, double dy);
    // Hover on (inside) or off.
    virtual void MouseOver(WCEventData &event, bool inside, bool &keepGoing);
    // Arrow keys step the registrations by the sensitivity times the parameter's state step.
    virtual BUFFER_HEADER *HandleKeyEvent(WCEventData &event, bool &handled);
    // Typed text for the registration that can take it, as the algorithm translates it.
    virtual BUFFER_HEADER *EnterText(const char *text);
    virtual BUFFER_HEADER *TouchPinchGesture(double dx, double dy);
    // Whether a file drag over this control would be taken; the drop itself.
    virtual bool FileDragOver(WCEventData &event);
    virtual BUFFER_HEADER *FileDrop(WCEventData &event);
    // Value drag and drop: a drag of a value started, passes over this control, ended. Move and
    // stop answer whether the point is over the control.
    virtual void DragDropStart(const sDragDropValues &values);
    virtual bool DragDropMove(const sDragDropValues &values, const WCPoint2D<short> &point);
    virtual BUFFER_HEADER *DragDropStop(const sDragDropValues &values,
                                        const WCPoint2D<short> &point);
    // The menu of a click on a "PopUp" registration, through GetControlPopupMenuHandler; a
    // control without a handler answers eNotImplemented.
    virtual int DoControlPopupMenuSelf(WCEventData &event);
    // The handler that makes this control's menu, owned by the control; none by default.
    virtual CControlPopupMenuHandler *GetControlPopupMenuHandler() const { return nullptr; }
    // Pixels of a mouse movement on the registration at `paramIndex` to states: discrete
    // parameters move by whole steps of 96 pixels, remembering the rest in `accumulator`;
    // continuous ones by `range` pixels for the whole scale, or by state steps when slow.
    virtual double ConvertMouseDeltaFromPixelsToState(double delta, double &accumulator,
                                                      std::size_t paramIndex, double range) const;
    // Fine adjustment applies: no discrete registration on an axis, not both axes without the
    // primary modifier, and some registration on a mouse axis.
    virtual bool DoesControlSupportHighPrecision(const bool *modifiers) const;
    // Registered to both mouse axes.
    virtual bool IsControllerOnTwoAxes() const;
    // A shift-click goes to the control itself instead of changing the selection.
    virtual bool ControlHandlesShiftMod() const { return false; }
    virtual bool ShouldIgnoreMouseRightClick(const WCEventData &) const { return false; }
    virtual bool ShouldAcceptMouseWheelEvent() const { return true; }
    // Whether the cursor hides while this control is dragged.
    virtual bool ShouldHideCursorOnDrag() const;
    // Where the cursor goes back to when the drag ends (GUI units).
    virtual WCPoint2D<short> GetCursorPosOnRelease() const { return m_LastMousePosition; }
    // The rect whose size turns pixels into states: the movement rect, else the drawable rect.
    virtual WURect<short> GetMouseDragRect() const;
    // The option-reset rule: "OptionReset" with Alt alone, or the registration's own test.
    static bool NeedToResetParam(const bool *modifiers, const WCParamRegistrationData &data);
    const sDragDropValues &GetDragDropValues() const noexcept { return m_DragValues; }
    bool IsDragInProgress() const noexcept { return m_DragInProgress; }
    void SetMouseSensitivity(double sensitivity) noexcept { m_MouseSensitivity = sensitivity; }

    // ---- drawing -----------------------------------------------------------------------------
    // Whether the document draws this control again after all others, so that it stands above
    // them (an open menu, a dragged handle); none does here.
    virtual bool ShouldDrawTopmost() const { return false; }
    // Background colour, then selection image and parameter data (in the order bit 33 picks).
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;
    virtual int GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer);
    virtual int GetDrawInstructionsParamsData(miGS::WCGraphicStreamBinaryWriter &writer);
    virtual int GetDrawInstructionsSelectionBitmap(miGS::WCGraphicStreamBinaryWriter &writer);
    virtual int GetDrawInstructionsDefaultSelectionLevel(miGS::WCGraphicStreamBinaryWriter &writer);
    virtual int GetDrawInstructionsDragDropImage(miGS::WCGraphicStreamBinaryWriter &writer);
    virtual int GetDrawInstructionsParamBitmapWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                                     std::size_t index);
    virtual int GetDrawInstructionsParamValueWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                                    std::size_t index);
    virtual int GetDrawInstructionsParamUnitsWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                                    std::size_t index);
    virtual int GetDrawInstructionsParamLabelWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                                    std::size_t index);
    virtual int GetDrawInstructionsParamGraphWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                                    std::size_t index);
    virtual int
    GetDrawInstructionsForStaticTextBackground(miGS::WCGraphicStreamBinaryWriter &writer,
                                               const WURect<short> &rect);
    virtual void SetBkgColor(const WCRGBAColor &color);
    // The image of the current selection level (level 4 when disabled).
    WCBaseImage *GetSelectionBitmap() const;
    virtual void SetControlHighlightInfo(bool highlight) { m_Highlight = highlight; }

    // ---- fields ------------------------------------------------------------------------------
    WIControlOwner *GetOwner() const noexcept { return m_pOwner; }
    int GetPage() const noexcept { return m_Page; }
    int GetDirection() const noexcept { return m_Direction; }
    int GetDisableMode() const noexcept { return m_DisableMode; }
    int GetMaxSelection() const noexcept { return m_MaxSelection; }
    double GetMouseDirectionFactor() const noexcept { return m_MouseDirectionFactor; }
    double GetMouseSensitivity() const noexcept { return m_MouseSensitivity; }
    const WCFixedString<31> &GetClassType() const noexcept { return m_ClassType; }
    void SetClassType(const char *type) { m_ClassType = type; }
    const WCFixedString<127> &GetAcceptableCharacters() const noexcept { return m_AcceptableChars; }
    WCGUIControl *GetFatherControl() const noexcept { return m_pFather; }
    const std::vector<WCGUIControl *> &GetDependents() const noexcept { return m_Dependents; }
    const std::vector<WCGUIControl *> &GetDrawDependents() const noexcept {
        return m_DrawDependents;
    }
    const WURect<short> &GetGeneralRect1() const noexcept { return m_GeneralRect1; }
    const WURect<short> &GetGeneralRect2() const noexcept { return m_GeneralRect2; }
    bool HasColor() const noexcept { return m_HasColor; }
    const WCRGBAColor &GetColor() const noexcept { return m_Color; }
    const std::vector<WURect<short>> &GetColorRects() const noexcept { return m_ColorRects; }
    const std::vector<WCFixedString<63>> &GetGroups() const noexcept { return m_Groups; }
    WCBaseImageVector &GetBackground() noexcept { return m_Background; }
    WCBaseImageVector &GetForeground() noexcept { return m_Foreground; }
    WCBaseImageVector &GetSelectionImages() noexcept { return m_SelectionImages; }
    WCBaseImageVector &GetAdditionalImages() noexcept { return m_Additional; }
    WCBaseImage &GetAlphaSelection() noexcept { return m_AlphaSelection; }
    WCBaseImage &GetScaleMarksMask() noexcept { return m_ScaleMarksMask; }
    void SetHoverImage(bool on) noexcept { m_HoverImage = on; }

protected:
    virtual BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                         bool &keepGoing);
    virtual BUFFER_HEADER *MouseDragSelf(WCEventData &, double, double, bool &) { return nullptr; }
    virtual BUFFER_HEADER *MouseUpSelf(WCEventData &) { return nullptr; }
    virtual BUFFER_HEADER *MouseWheelSelf(WCEventData &, double, double) { return nullptr; }
    virtual BUFFER_HEADER *KeySelf(WCEventData &, bool &) { return nullptr; }
    virtual void MouseOverSelf(WCEventData &, bool, bool &) {}
    virtual BUFFER_HEADER *EnterTextSelf(const char *text);
    // Joins two chains through the algorithm's process side.
    BUFFER_HEADER *Chain(BUFFER_HEADER *head, BUFFER_HEADER *next) const;
    // The event's modifiers as registration `data` hears them: primary (fine adjustment) and
    // shift (axis lock) are taken out unless `data` asks for them.
    void ModifiersFor(const WCParamRegistrationData &data, const bool *event, bool *out) const;
    // Whether a click is `data`'s to act on: it is registered to "MouseDown" under the event's
    // modifiers (left in `modifiers`), and the click is no option-reset, which MouseDown already
    // answered.
    bool TakesClick(const WCParamRegistrationData &data, const WCEventData &event,
                    bool *modifiers) const;

    void HoverStateChanged() override { Watch(); }

    // Called for registration `index` when its parameter changed and the control shows.
    virtual void UpdatePointerSelf(std::size_t) {}
    // Copies everything of this control into `other` (registrations registered anew).
    void CopyTo(WCGUIControl &other) const;
    // Animations of the bitmap windows and selection images report to this control.
    void RegisterWithAnimations();
    // A text window drawn in its place relative to the control, with its hover rules.
    int DrawTextWindow(miGS::WCGraphicStreamBinaryWriter &writer, WCStaticText *win,
                       const char *remark);
    WTErr ReadOneChild(const XML::CXMLElement &child, cALGORITHM *alg);
    void WriteImageLists(XML::CXMLElement &element) const;

    WIControlOwner *m_pOwner = nullptr;
    bool m_Disabled = false;
    bool m_HoverImage = false;
    bool m_Highlight = false;
    bool m_DoubleClickPending = false;
    bool m_InMouseDown = false;
    bool m_MouseTrackInside = false;
    double m_MouseDirectionFactor = 1.0;
    double m_MouseSensitivity = 1.0;
    int m_Page = 0;
    int m_RedrawCounter = 0;
    bool m_Watched = false;
    int m_MaxSelection = kDefaultMaxSelection;
    WCFixedString<31> m_ClassType;
    WCFixedString<63> m_FatherName;
    WCGUIControl *m_pFather = nullptr;
    std::vector<WCFixedString<63>> m_DependentNames;
    std::vector<WCGUIControl *> m_Dependents;
    std::vector<WCFixedString<63>> m_DrawDependentNames;
    std::vector<WCGUIControl *> m_DrawDependents;
    WCBaseImageVector m_Background;
    WCBaseImageVector m_Foreground;
    WCBaseImageVector m_SelectionImages;
    WCBaseImage m_AlphaSelection;
    WCBaseImage m_ScaleMarksMask;
    WCBaseImageVector m_Additional;
    int m_Direction = eDirectionNone;
    WCPoint2D<short> m_LastMousePosition;
    WCFixedString<127> m_AcceptableChars{kDefaultAcceptableCharacters};
    WURect<short> m_GeneralRect1;
    WURect<short> m_GeneralRect2;
    WURect<short> m_MovementRect;
    bool m_DragInProgress = false;
    short m_DragDropImageResID = -1;
    int m_DisableMode = eDisableWhenRequested;
    double m_ValueAtMouseDown = 0.0;
    bool m_InMouseDownGuard = false;
    sDragDropValues m_DragValues = kNoDragDropValues;
    bool m_ValueChangedDuringDrag = false;
    bool m_HasColor = false;
    WCRGBAColor m_Color;
    std::vector<WURect<short>> m_ColorRects;
    std::vector<std::pair<WCAnimation *, std::size_t>> m_Animations;
    std::vector<WCFixedString<63>> m_Groups;
};

MIREL_NAMESPACE_END
