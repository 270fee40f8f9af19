#include "Code/GUI/Controls/CIncDec.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "view/PluginViewManager.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace PVM = PluginViewManager;

namespace {

// Whole milliseconds, separated by blanks or commas; every one above 0.
WTErr ReadTimes(const std::string &text, std::vector<std::uint64_t> &out) {
    std::vector<std::uint64_t> times;
    const char *at = text.c_str();
    for (;;) {
        while (*at == ' ' || *at == ',' || *at == '\t' || *at == '\n')
            ++at;
        if (*at == '\0')
            break;
        char *end = nullptr;
        const long long value = std::strtoll(at, &end, 10);
        if (end == at)
            return eNotANumber;
        if (value <= 0)
            return eOutOfRangeNumber;
        times.push_back(static_cast<std::uint64_t>(value));
        at = end;
    }
    out = std::move(times);
    return eNoErr;
}

std::string WriteTimes(const std::vector<std::uint64_t> &times) {
    std::string text;
    for (const std::uint64_t time : times)
        text += (text.empty() ? "" : " ") + std::to_string(time);
    return text;
}

} // namespace

CIncDec::~CIncDec() {
    StopRepeat();
}

CIncDec *CIncDec::Clone() const {
    auto *copy = new CIncDec(m_pOwner);
    CopyIncDecTo(*copy);
    return copy;
}

void CIncDec::CopyIncDecTo(CIncDec &other) const {
    CopyTo(other);
    other.m_Pushed.Assign(m_Pushed);
    other.m_Released.Assign(m_Released);
    other.m_Fields = m_Fields;
}

WTErr CIncDec::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) {
    if (cls == nullptr)
        return eMemNullPointer;
    WSFields fields;
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        const auto &name = child->GetName();
        if (name == "Rates") {
            if (const WTErr err = ReadTimes(child->GetText(), fields.m_Rates); err != eNoErr)
                return err;
        } else if (name == "WhenToChangeRates") {
            if (const WTErr err = ReadTimes(child->GetText(), fields.m_WhenToChange); err != eNoErr)
                return err;
        } else if (name == "Resolution") {
            const char *text = child->GetText().c_str();
            char *end = nullptr;
            const double value = std::strtod(text, &end);
            if (end == text || *end != '\0' || !std::isfinite(value))
                return eNotANumber;
            if (value <= 0.0)
                return eOutOfRangeNumber;
            fields.m_Resolution = value;
            fields.m_HasResolution = true;
        }
    }
    if (const WTErr err = CToggle_X::ReadFromXMLWithAlgSelf(cls, alg); err != eNoErr)
        return err;
    m_Fields = std::move(fields);
    return eNoErr;
}

void CIncDec::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    if (!m_Fields.m_Rates.empty())
        cls->push_sub_element(new XML::CXMLElement("Rates", WriteTimes(m_Fields.m_Rates).c_str()));
    if (m_Fields.m_HasResolution)
        cls->push_sub_element(new XML::CXMLElement("Resolution", m_Fields.m_Resolution));
    if (!m_Fields.m_WhenToChange.empty())
        cls->push_sub_element(
            new XML::CXMLElement("WhenToChangeRates", WriteTimes(m_Fields.m_WhenToChange).c_str()));
    CToggle_X::WriteToXMLWithAlgSelf(cls);
}

WCGUIControl::BUFFER_HEADER *CIncDec::Step() {
    return StepType(eRegMouseDown);
}

WCGUIControl::BUFFER_HEADER *CIncDec::StepType(unsigned int type) {
    const double direction = GetControlFlag(eCF_SetOppositeNextState) ? -1.0 : 1.0;
    BUFFER_HEADER *chain = nullptr;
    for (auto &data : m_Registrations) {
        // A continuous parameter has no step of its own: a repeat moves it by whole states.
        const double step = data.GetActiveControllerParameterStateStep();
        chain = Chain(chain, data.OffsetParamValue(direction * m_Fields.m_Resolution *
                                                       (step > 0.0 ? step : 1.0),
                                                   type, nullptr));
    }
    return chain;
}

WCGUIControl::BUFFER_HEADER *CIncDec::MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                                    bool &keepGoing) {
    BUFFER_HEADER *chain = WCGUIControl::MouseDownSelf(event, limits, keepGoing);
    for (const auto &data : m_Registrations)
        if (NeedToResetParam(event.GetAllKeyModifiers(), data))
            return chain;
    chain = Chain(chain, Step());
    StopRepeat();
    m_Held = 0;
    StartRepeat(0);
    return chain;
}

WCGUIControl::BUFFER_HEADER *CIncDec::MouseUpSelf(WCEventData &) {
    StopRepeat();
    return nullptr;
}

void CIncDec::StartRepeat(std::size_t rateIndex) {
    auto *gui = dynamic_cast<CStandardGUI_X *>(m_pOwner);
    if (gui == nullptr || gui->GetPluginView() == nullptr || rateIndex >= m_Fields.m_Rates.size())
        return;
    int id = 0;
    if (PVM::StartViewTimer(
            gui->GetPluginView(), m_Fields.m_Rates[rateIndex], [this] { Tick(); }, id) != eNoErr)
        return;
    m_TimerId = id;
    m_RateIndex = rateIndex;
}

void CIncDec::StopRepeat() {
    if (m_TimerId != 0)
        PVM::StopViewTimer(m_TimerId);
    m_TimerId = 0;
}

void CIncDec::Tick() {
    auto *gui = dynamic_cast<CStandardGUI_X *>(m_pOwner);
    if (gui == nullptr || !gui->IsInMouseDown() || IsDisabled()) {
        StopRepeat();
        return;
    }
    BUFFER_HEADER *chain = Step();
    if (chain != nullptr && m_pAlg != nullptr)
        m_pAlg->SendAndFreeBuffers(chain, eExecSendBuffers, true);
    // The press has lasted as long as the ticks so far: the timer's time, not a clock's, so a
    // repeat counts the same however late the view's loop runs it.
    m_Held += m_Fields.m_Rates[m_RateIndex];
    const std::size_t next = m_RateIndex + 1;
    if (next < m_Fields.m_Rates.size() && m_RateIndex < m_Fields.m_WhenToChange.size() &&
        m_Held >= m_Fields.m_WhenToChange[m_RateIndex]) {
        StopRepeat();
        StartRepeat(next);
    }
}

MIREL_NAMESPACE_END
