#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Code/GUI/WCBaseImageVector.h"
#include "Code/GUI/WCRegisterInfo.h"
#include "Code/GUI/WCStaticText.h"
#include "Code/Process/KPAPIProcessMemory.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;
class WCParamExtension;
struct sCONTROL_PARAM;

namespace XML {
class CXMLElement;
}

// Where a control meets a parameter: which parameter (or, for a param array template, which
// array name until the plug-in binds it), for which gestures and modifiers, and what the control
// shows of it: value, units and label windows, a bitmap window, a graph window, drag-and-drop and
// link-group data. A registration never changes a parameter by itself: every change goes through
// cALGORITHM's update pipeline, and what comes back is the chain of buffers to send.
// [main-thread]
class WCParamRegistrationData {
public:
    using BUFFER_HEADER = KPAPI_PROCESS_MEMORY::BUFFER_HEADER;
    static constexpr std::uint64_t kNoParam = ~std::uint64_t(0);

    WCParamRegistrationData(cALGORITHM *alg, std::uint64_t id, bool updateGraphics,
                            const WCRegisterInfo &info);
    // A param array template: unbound until SetRegisteredParam.
    WCParamRegistrationData(cALGORITHM *alg, const char *arrayName, bool updateGraphics,
                            const WCRegisterInfo &info);
    WCParamRegistrationData(WCParamRegistrationData &&) noexcept = default;
    WCParamRegistrationData &operator=(WCParamRegistrationData &&) noexcept = default;
    ~WCParamRegistrationData();

    // A copy with its own windows and images (sharing decoded pixels), for controls batches.
    WCParamRegistrationData Clone() const;

    // ---- XML ---------------------------------------------------------------------------------
    // The children of a "Param" element: "RegisterType", "Register", "Modifiers", "Role",
    // "TextWin", "ParamDependantGraphWin", "BitmapWin", "LinkGroups". Unknown register type and
    // modifier names are ignored. A window or rectangle that does not read gives its code; the
    // registration keeps what it read before it.
    WTErr ReadFromXMLForGUI(const XML::CXMLElement &param, WTResContainerType *container,
                            const WURect<short> &controlRect);
    // The same children, in a fixed order, one "RegisterType" per bit or mark pair.
    void WriteToXML(XML::CXMLElement &param) const;

    // ---- registration ------------------------------------------------------------------------
    void SetRegisteredParam(std::uint64_t id);
    std::uint64_t GetRegisteredParam() const noexcept { return m_ParamID; }
    bool IsRegistered() const noexcept { return m_IsRegistered; }
    // The parameter's name; the array name for an unbound template.
    const char *GetRegisteredParamName() const;
    bool IsParamArrayRegData() const noexcept { return m_IsParamArray; }
    const WCFixedString<127> &GetParamArrayName() const noexcept { return m_ParamArrayName; }
    // Forgets the template: the registration becomes a plain one of its parameter.
    void RemoveParamArrayRegData() noexcept;
    // With null modifiers only the type counts; else all four modifiers must match too.
    bool IsRegisteredToType(unsigned int type, const bool *modifiers) const noexcept;
    bool IsRegisteredToTypes(std::uint64_t bits) const noexcept;
    bool GetRegisterFlag(unsigned int type) const noexcept { return m_Info.m_Types.IsBitSet(type); }
    void SetRegisterFlag(unsigned int type, bool on) noexcept { m_Info.m_Types.SetBit(type, on); }
    bool GetRegisterModifier(int modifier) const noexcept;
    void SetRegisterModifier(int modifier, bool on) noexcept;
    // The parameter is an "Unused" slot (or there is none).
    bool IsUnused() const;
    bool ShouldUpdateGraphics() const noexcept { return m_UpdateGraphics; }
    void SetUpdateGraphics(bool update) noexcept { m_UpdateGraphics = update; }
    const WCRegisterInfo &GetRegisterInfo() const noexcept { return m_Info; }
    WCRegisterInfo &GetRegisterInfo() noexcept { return m_Info; }
    // Attributes of the "Param" element kept for writing back.
    bool m_IgnoreLRB = false;
    bool m_ToUpperCase = false;
    WCFixedString<127> m_ParamName;

    // ---- values ------------------------------------------------------------------------------
    // The state of the active setup; 0 when unbound.
    double GetValue() const;
    // Sets the state when registered to `type` with equal modifiers (null: any); the chain.
    BUFFER_HEADER *SetParamValue(double state, unsigned int type, const bool *modifiers);
    // The state plus `delta`, kept in 0..1000 (wrapping for cyclic parameters); `drag` goes
    // through DragParam. Null when not registered to `type` with those modifiers, or for a
    // delta of 0, which changes nothing and so sends nothing.
    BUFFER_HEADER *OffsetParamValue(double delta, unsigned int type, const bool *modifiers,
                                    bool drag = false);
    BUFFER_HEADER *OffsetToNextDifferentState(int direction, unsigned int type,
                                              const bool *modifiers);
    // Whether the state plus `delta` shows another real-world value than the state now.
    bool DoesNewStateChangeRealWorld(double delta) const;
    // Offsets by `delta`, grown in steps of itself until the real-world value changes (at most
    // to the end of the scale), so that a small wheel step on a coarse parameter still moves.
    BUFFER_HEADER *OffsetParamValueToNextDifferentValue(double delta, unsigned int type,
                                                        const bool *modifiers);
    double UpdateMouseDeltaStep(double delta) const;
    double RealWorldToState(double value) const;
    double StateToRealWorld(double state) const;
    int GetNumStates() const;
    double GetActiveControllerParameterStateStep() const;
    bool IsActiveControllerParameterDiscrete() const;
    // The reset value when registered to "Reset" (or "OptionReset" with those modifiers).
    BUFFER_HEADER *Reset(const bool *modifiers);
    bool IsOptionReset(const bool *modifiers) const noexcept;
    // Some gesture bit matches those modifiers.
    bool ShouldSendTouch(const bool *modifiers) const noexcept;
    int FinishDragParam();
    int ResetDragParam();
    int SetParamToUpdateFlag(std::uint32_t value);
    // The start and end of a user's gesture on the parameter, which the host hears through the
    // automation controls the parameter leads; -19 when unbound.
    int Touch();
    int Release();

    // ---- display -----------------------------------------------------------------------------
    // The parameter's value, label and units texts into their windows.
    void UpdateValue();
    void UpdateLabel();
    void UpdateUnits();
    WCStaticText *GetValueWin() const noexcept { return m_ValueWin.get(); }
    WCStaticText *GetLabelWin() const noexcept { return m_LabelWin.get(); }
    WCStaticText *GetUnitsWin() const noexcept { return m_UnitsWin.get(); }
    void SetValueWin(std::unique_ptr<WCStaticText> win) noexcept { m_ValueWin = std::move(win); }
    void SetLabelWin(std::unique_ptr<WCStaticText> win) noexcept { m_LabelWin = std::move(win); }
    void SetUnitsWin(std::unique_ptr<WCStaticText> win) noexcept { m_UnitsWin = std::move(win); }
    // The bitmap window's image for the current state: frame = state * (frames - 1) / 1000.
    WCBaseImage *GetParamCurrentImage() const;
    short GetParamCurrentImageResID() const;
    // The animations among the bitmap window's images.
    std::vector<WCBaseImage *> GetAnimatedImageList() const;
    const WURect<short> &GetBitmapWinRect() const noexcept { return m_BitmapWinRect; }
    const WCBaseImageVector &GetBitmapWin() const noexcept { return *m_BitmapWin; }
    bool HasBitmapWin() const noexcept {
        return !m_BitmapWinRect.IsEmpty() || !m_BitmapWin->Empty();
    }
    const WURect<short> &GetGraphWinRect() const noexcept { return m_GraphWinRect; }
    // Moves the bitmap window and its images with the control.
    void OffsetBitmapWin(short dx, short dy);
    void SetSpecificData(WCParamExtension *extension) noexcept { m_pExtension = extension; }
    WCParamExtension *GetSpecificData() const noexcept { return m_pExtension; }
    // Drops the windows and the bitmap window.
    void RemoveDrawAttributes();
    const std::vector<int> &GetParamLinkGroups() const noexcept { return m_LinkGroups; }
    const WCFixedString<63> &GetRole() const noexcept { return m_Role; }

private:
    WCParamRegistrationData() = default;
    sCONTROL_PARAM *Param() const;

    cALGORITHM *m_pAlg = nullptr;
    double m_LastValue = 0.0;
    double m_DragStart = 0.0;
    std::uint64_t m_ParamID = kNoParam;
    bool m_IsRegistered = false;
    bool m_UpdateGraphics = false;
    WCRegisterInfo m_Info;
    bool m_IsParamArray = false;
    WCFixedString<127> m_ParamArrayName;
    WCFixedString<63> m_Role;
    WURect<short> m_BitmapWinRect;
    WCFixedString<31> m_BitmapWinType;
    int m_ParamArraySkip = 0;
    std::unique_ptr<WCBaseImageVector> m_BitmapWin = std::make_unique<WCBaseImageVector>();
    std::unique_ptr<WCStaticText> m_ValueWin;
    std::unique_ptr<WCStaticText> m_UnitsWin;
    std::unique_ptr<WCStaticText> m_LabelWin;
    WCParamExtension *m_pExtension = nullptr;
    std::vector<int> m_LinkGroups;
    WURect<short> m_GraphWinRect;
    bool m_HasGraphWin = false;
    // Drag, drop and link-group elements are kept whole, so that what this layer does not
    // interpret yet is written back as it was read.
    std::vector<std::unique_ptr<XML::CXMLElement>> m_RegisterElements;
    std::unique_ptr<XML::CXMLElement> m_LinkGroupsElement;
};

MIREL_NAMESPACE_END
