#pragma once

#include <string>
#include <string_view>

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

// Text of a stream as valid UTF-8 into `out` (replaced), at most `maxBytes` of it: a stream may
// hold any bytes, and painters and documents take only valid text. A tab becomes a blank; other
// control bytes, stray, overlong and surrogate sequences become '?'.
void CleanStreamText(std::string_view text, std::string &out,
                     std::size_t maxBytes = std::string::npos);
// The folder of a stream's images, from its resources text: a bundle's resources folder as
// written by a GUI, or a bundle (which older writers named), with a slash at the end.
std::string StreamImagesFolder(std::string_view resourcesURL);

} // namespace miGS
MIREL_NAMESPACE_END
