#pragma once

#include "core/MirelNamespace.h"
#include "core/WCRGBAColor.h"
#include "core/WCSize2D.h"
#include "core/WURect.h"
#include "graphic_stream/GraphicStreamDefs.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

// Plain conversions between the stream's records and the GUI's value types. [any-thread]

WCSize2D<short> SGSSizeToWCSize2Ds(const SGSSize &size) noexcept;
SGSSize WCSize2DsToSGSSize(const WCSize2D<short> &size) noexcept;

// x = left, y = top, w = right - left, h = bottom - top, the differences taken in 16 bits and
// sign-extended, so a rectangle wider than a short can hold wraps as it does in the GUI.
SGSRect WTRectsToSGSRect(const WURect<short> &rect) noexcept;
// The reverse; coordinates beyond 16 bits wrap.
WURect<short> SGSRectToWTRects(const SGSRect &rect) noexcept;

WCRGBAColor SGSRGBAColorToWCRGBAColor(const SGSRGBAColor &color) noexcept;
WCRGBColor SGSRGBAColorToWCRGBColor(const SGSRGBAColor &color) noexcept;
// Alpha becomes 255.
SGSRGBAColor WCRGBColorToSGSRGBAColor(const WCRGBColor &color) noexcept;
SGSRGBAColor WCRGBAColorToSGSRGBAColor(const WCRGBAColor &color) noexcept;

} // namespace miGS
MIREL_NAMESPACE_END
