#pragma once

#include "core/MirelNamespace.h"
#include "resources/WCResConvertObj.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

// The form of a decoded image in a resource's data block.
inline constexpr const char *kResFormDecodedImage = "WSDecodedImage";

// Turns PNG or WebP bytes into a WSDecodedImage, so that every control and every instance that
// asks for the same image shares one decoding for as long as one of them holds it. Users get the
// image (size 1); the raw bytes are let go. Images are read-only: writing one back is refused.
class WCResConvertImage : public WCResConvertObj {
public:
    // The decoder's code; the block stays raw on failure.
    int ConvertAfterLoad(WSResDataBlock &data) override;
    // eNotImplemented: decoded images are not encoded again.
    int ConvertBeforeWrite(WSResDataBlock &data) override;
    int Release(WSResDataBlock &data) override;
};

} // namespace RM

MIREL_NAMESPACE_END
