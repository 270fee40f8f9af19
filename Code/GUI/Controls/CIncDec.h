#pragma once

#include <cstdint>
#include <vector>

#include "Code/GUI/Controls/CToggle_X.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A step button that repeats while held: a press moves each registration of the "MouseDown"
// gesture by "Resolution" steps of its parameter (down with "SetOppositeNextState"), kept inside
// the scale, and then again every "Rates" period for as long as the press lasts; each time in
// "WhenToChangeRates" (milliseconds from the press) moves on to the next, quicker rate. The
// repeats run on a timer of the document's view, so nothing waits; the timer ends with the
// press, with the control, or when the document no longer holds the mouse (a release outside
// the button never reaches it). Without a view the press steps once. [main-thread]
class CIncDec : public CToggle_X {
public:
    explicit CIncDec(WIControlOwner *owner = nullptr) : CToggle_X(owner) {}
    ~CIncDec() override;

    CIncDec *Clone() const override;

    const std::vector<std::uint64_t> &GetRates() const noexcept { return m_Fields.m_Rates; }
    bool IsRepeating() const noexcept { return m_TimerId != 0; }
    // The rate the repeats run at now, an index into the rates.
    std::size_t GetRateIndex() const noexcept { return m_RateIndex; }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                 bool &keepGoing) override;
    BUFFER_HEADER *MouseUpSelf(WCEventData &event) override;
    // One step of every stepping registration (those of the "MouseDown" gesture here).
    virtual BUFFER_HEADER *Step();
    // One step of each registration of the gesture `type`.
    BUFFER_HEADER *StepType(unsigned int type);
    void CopyIncDecTo(CIncDec &other) const;

private:
    struct WSFields {
        std::vector<std::uint64_t> m_Rates;
        double m_Resolution = 1.0;
        bool m_HasResolution = false;
        std::vector<std::uint64_t> m_WhenToChange;
    };
    void StartRepeat(std::size_t rateIndex);
    void StopRepeat();
    void Tick();

    WSFields m_Fields;
    int m_TimerId = 0;
    std::size_t m_RateIndex = 0;
    // Milliseconds the press has lasted, by the repeats' periods.
    std::uint64_t m_Held = 0;
};

MIREL_NAMESPACE_END
