#pragma once

#include <cstdint>
#include <memory>

#include "Code/GUI/WCBaseImage.h"
#include "Code/GUI/WCBaseImageVector.h"
#include "Code/GUI/WCNeedToDrawListener.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A timed sequence of images: "Time" is the whole period in ms, "ImageList" the frames. Each
// UpdateTimer moves to the frame the elapsed time points at and tells the listener (the control
// that shows it) when the frame changed. [main-thread]
class WCAnimation : public WCBaseImage {
public:
    WCAnimation() = default;
    ~WCAnimation() override;

    std::unique_ptr<WCBaseImage> Clone() const override;
    void Clear() override;
    // The current frame's number.
    short GetResID() const override;
    int LoadFromResource(WTResContainerType *container) override;

    WTErr ReadFromXML(const XML::CXMLElement *const element) override;
    XML::CXMLElement *WriteToXML(XML::CXMLElement *element) const override;
    using WCBaseImage::ReadFromXML;
    using WCBaseImage::WriteToXML;

    // -1 with no frames; otherwise running, and timed when a period is set.
    int StartAnimation();
    void StopAnimation() noexcept { m_Running = false; }
    // Milliseconds per frame: period / number of frames.
    void SetRelativeTimeOut();
    // -1 unless timed; else moves to the frame of the elapsed time.
    int UpdateTimer();
    void SetListener(WCNeedToDrawListener *listener) noexcept { m_pListener = listener; }
    WCNeedToDrawListener *GetListener() const noexcept { return m_pListener; }

    bool IsRunning() const noexcept { return m_Running; }
    bool IsTimed() const noexcept { return m_Timed; }
    std::uint32_t GetPeriod() const noexcept { return m_Period; }
    WCBaseImageVector &GetImages() noexcept { return m_Images; }
    const WCBaseImageVector &GetImages() const noexcept { return m_Images; }

protected:
    // The clock in ms; a hook so tests can step time.
    virtual double GetMillisecondsNow() const;

    bool m_Running = false;
    bool m_Timed = false;
    double m_RelativeTimeOut = 0.0;
    double m_LastTimeMs = -1.0;
    double m_ElapsedMs = 0.0;
    std::uint32_t m_Period = 0;
    WCBaseImageVector m_Images;
    WCNeedToDrawListener *m_pListener = nullptr;
};

MIREL_NAMESPACE_END
