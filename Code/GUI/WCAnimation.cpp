#include "Code/GUI/WCAnimation.h"

#include <chrono>
#include <cmath>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WUAtoi.h"

MIREL_NAMESPACE_BEGIN

WCAnimation::~WCAnimation() = default;

std::unique_ptr<WCBaseImage> WCAnimation::Clone() const {
    auto copy = std::make_unique<WCAnimation>();
    CopyFieldsTo(*copy);
    copy->m_Images.CopyImages(m_Images);
    copy->m_Period = m_Period;
    copy->m_RelativeTimeOut = m_RelativeTimeOut;
    return copy;
}

void WCAnimation::Clear() {
    WCBaseImage::Clear();
    m_Images.Clear();
    m_Running = m_Timed = false;
    m_Period = 0;
    m_ElapsedMs = 0.0;
    m_LastTimeMs = -1.0;
}

short WCAnimation::GetResID() const {
    return m_Images.GetCurrentImageResID();
}

int WCAnimation::LoadFromResource(WTResContainerType *container) {
    return m_Images.LoadAll(container);
}

WTErr WCAnimation::ReadFromXML(const XML::CXMLElement *const element) {
    if (element == nullptr)
        return eMemNullPointer;
    unsigned int period = m_Period;
    if (const XML::CXMLElement *time = element->SubElement("Time"))
        if (const WTErr err = WUAtoi(time->GetText().c_str(), period); err != eNoErr)
            return err;
    if (const XML::CXMLElement *list = element->SubElement("ImageList"))
        if (const WTErr err = m_Images.ReadFromXML(list); err != eNoErr)
            return err;
    m_Period = period;
    return eNoErr;
}

XML::CXMLElement *WCAnimation::WriteToXML(XML::CXMLElement *element) const {
    if (element == nullptr)
        return nullptr;
    element->push_back(new XML::CXMLElement("Time", m_Period));
    element->push_back(m_Images.WriteToXML(new XML::CXMLElement("ImageList")));
    return element;
}

void WCAnimation::SetRelativeTimeOut() {
    const std::size_t frames = m_Images.GetImagesVectorSize();
    m_RelativeTimeOut =
        frames != 0 ? static_cast<double>(m_Period) / static_cast<double>(frames) : 0.0;
}

int WCAnimation::StartAnimation() {
    if (m_Images.Empty())
        return -1;
    if (m_Period != 0) {
        SetRelativeTimeOut();
        m_Timed = true;
    }
    m_Running = true;
    m_LastTimeMs = GetMillisecondsNow();
    m_ElapsedMs = 0.0;
    return eNoErr;
}

int WCAnimation::UpdateTimer() {
    if (!m_Timed || m_RelativeTimeOut <= 0.0)
        return -1;
    const double now = GetMillisecondsNow();
    if (m_LastTimeMs >= 0.0)
        m_ElapsedMs += now - m_LastTimeMs;
    m_LastTimeMs = now;
    if (m_ElapsedMs > m_Period)
        m_ElapsedMs = std::fmod(m_ElapsedMs, static_cast<double>(m_Period));
    auto index = static_cast<std::size_t>(m_ElapsedMs / m_RelativeTimeOut);
    if (index >= m_Images.GetImagesVectorSize())
        index = m_Images.GetImagesVectorSize() - 1;
    if (index != m_Images.GetCurrentImageIndex()) {
        m_Images.SetCurrentImage(index);
        if (m_pListener != nullptr)
            m_pListener->SetNeedToRedrawControl();
    }
    return eNoErr;
}

double WCAnimation::GetMillisecondsNow() const {
    using namespace std::chrono;
    return static_cast<double>(
               duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count()) /
           1000.0;
}

MIREL_NAMESPACE_END
