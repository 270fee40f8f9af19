#pragma once

#include <cstdint>
#include <vector>

#include "Code/GUI/WCParamRegistrationData.h"
#include "Code/GUI/WUControlNames.h"
#include "core/MirelNamespace.h"
#include "core/TBitVector.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;

namespace XML {
class CXMLElement;
}

// What every control shares, with or without a picture: a name, the 64-bit flag word and the
// parameter registrations. Registrations that ask for graphics updates are entered in their
// parameter's controller list (cALGORITHM::AddParamController) with their index as the tag, so
// that a parameter change reaches UpdatePointer(index) from the next idle; the control takes
// itself out of those lists when it goes. Life: construction, ReadFromXMLWithAlg, FinishCreate,
// use, destruction. [main-thread]
class WCBaseControl {
public:
    using WTFlags = TBitVector<std::uint64_t>;

    WCBaseControl() = default;
    virtual ~WCBaseControl();
    WCBaseControl(const WCBaseControl &) = delete;
    WCBaseControl &operator=(const WCBaseControl &) = delete;

    // A new control like this one, registered on the same parameters; the caller owns it.
    virtual WCBaseControl *Clone() const;
    // Writes "Name", "Flags" and "ParameterList" into `element`, then WriteToXMLWithAlgSelf.
    virtual XML::CXMLElement *WriteToXMLWithAlg(XML::CXMLElement *element) const;
    // "Name", "Flags" and "ParameterList", then ReadFromXMLWithAlgSelf. The first error code of
    // a part that did not read; the other parts are read all the same.
    virtual WTErr ReadFromXMLWithAlg(const XML::CXMLElement *element, cALGORITHM *alg);
    // Each child names a flag; "Value" "off" (any case) clears it, anything else sets it.
    virtual WTErr ReadFromXMLFlags(const XML::CXMLElement *flags);
    // Each "Param" child becomes a registration; names unknown to the algorithm are skipped.
    virtual WTErr ReadFromXMLParameterList(const XML::CXMLElement *list, cALGORITHM *alg,
                                           bool updateGraphics = true);
    // The attributes of one "Param": its name (upper case with "ToUpperCase"), whether it is a
    // param array template, whether it leads, whether it asks for graphics updates.
    virtual WTErr ReadFromXMLParameterList_Attributes(const XML::CXMLElement &param,
                                                      cALGORITHM *alg, bool updateGraphics);
    // The children of one "Param" into `data`; the base reads register types and modifiers.
    virtual WTErr ReadFromXMLParameterList_Registration(const XML::CXMLElement &param,
                                                        WCParamRegistrationData &data);
    virtual int FinishCreate();
    virtual void SetNeedToResetParams() {}
    virtual bool GetControlFlag(unsigned int bit) const { return m_Flags.IsBitSet(bit); }
    // By name: unknown names are ignored.
    virtual void SetControlFlag(const char *name, bool on);
    virtual void SetControlFlag(unsigned int bit, bool on);
    virtual void UpdateDisabledMode(std::size_t index);
    // A parameter of registration `index` changed: its texts follow.
    virtual void UpdatePointer(std::size_t index);
    // The parameter of the lead registration; ~0 without registrations.
    virtual std::uint64_t GetLeadParamID() const;
    virtual void OnLRBChange() {}
    virtual void DebugControl() const;

    // Enters `data` (bound to a parameter, or a param array template): with `updateGraphics` in
    // the parameter's controller list; texts filled. -1 for a bound registration whose
    // parameter does not exist, which is then not kept.
    int Register(WCParamRegistrationData data, bool updateGraphics);
    // Binds every param array template of that name to `id`.
    int RegisterFromParamArrayRegData(const char *arrayName, std::uint64_t id);

    const WCFixedString<127> &GetName() const noexcept { return m_Name; }
    void SetName(const char *name) { m_Name = name; }
    WTFlags GetControlFlags() const noexcept { return m_Flags; }
    std::size_t GetNumRegistrations() const noexcept { return m_Registrations.size(); }
    WCParamRegistrationData &GetRegistration(std::size_t index) { return m_Registrations[index]; }
    const WCParamRegistrationData &GetRegistration(std::size_t index) const {
        return m_Registrations[index];
    }
    std::uint64_t GetLeadParamIndex() const noexcept { return m_LeadParamIndex; }
    // The lead registration, the last one when the lead index lies beyond the list; null
    // without registrations.
    const WCParamRegistrationData *GetLeadRegistration() const noexcept {
        if (m_Registrations.empty())
            return nullptr;
        return &m_Registrations[m_LeadParamIndex < m_Registrations.size()
                                    ? static_cast<std::size_t>(m_LeadParamIndex)
                                    : m_Registrations.size() - 1];
    }
    cALGORITHM *GetAlgorithm() const noexcept { return m_pAlg; }

protected:
    virtual int FinishCreateSelf() { return eNoErr; }
    virtual WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *, cALGORITHM *) { return eNoErr; }
    virtual WTErr UpdateFromXMLWithAlgSelf(const XML::CXMLElement *, cALGORITHM *) {
        return eNoErr;
    }
    virtual void WriteToXMLWithAlgSelf(XML::CXMLElement *) const {}
    virtual void DebugControlSelf() const {}
    // The "ParameterList" element as this control would read it back.
    XML::CXMLElement *WriteParameterList() const;
    // Copies name, flags and registrations (registered anew) into `other`.
    void CopyBaseTo(WCBaseControl &other) const;
    // Takes every registration out of its parameter's controller list.
    void UnregisterAll();

    WTFlags m_Flags;
    WCFixedString<127> m_Name;
    std::uint64_t m_LeadParamIndex = 0;
    std::vector<WCParamRegistrationData> m_Registrations;
    cALGORITHM *m_pAlg = nullptr;
};

MIREL_NAMESPACE_END
