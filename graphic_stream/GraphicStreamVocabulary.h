#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "graphic_stream/GraphicStreamDefs.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

// The texts of the stream's vocabulary and the small rules that tie codes together. The master
// table has one row per code: column 0 is the primary text, column 1 an alternative text used as
// YAML key, falling back to column 0 where a row has none. [any-thread] for all of them.

// The text of a code; a code not in the table gives "Unknown GraphicStreamCommand " and the code
// as four characters, in a buffer of the calling thread that the next such call overwrites.
const char *GraphicStreamCommandToText(std::int32_t code, int column = 0) noexcept;
// The code of a text of the given column, or eGSIllegalCommand when no row has it.
std::int32_t GraphicStreamTextToCommand(const char *text, int column = 0) noexcept;

// The name of the flag of SGSDrawVertices at a bit index; "" for a bit without a name.
const char *GraphicStreamDrawLineFlagsToText(int bitIndex) noexcept;
// The flag bit of a name, or all-ones for a name that is not a flag.
std::uint32_t GraphicStreamTextToDrawLineFlags(const char *text) noexcept;

// "ESTM" for "BSTM", "EFRM" for "BFRM", eGSIllegalCommand for anything else.
std::int32_t CloseCommandFromOpenCommand(std::int32_t openCommand) noexcept;
// Whether a data type may carry data of a purpose.
bool DataTypeToPurposeMatch(std::int32_t type, std::int32_t purpose) noexcept;
// Bytes of one element of a data type; 0 for a type that is not in the vocabulary.
int GraphicStreamDataTypeElementSize(std::int32_t type) noexcept;

// A one-line description of a data record: form, type, purpose and element count.
void SGSDataToText(const SGSData &data, WCFixedStringBase &out) noexcept;
// "#rrggbb"; alpha is not part of an HTML colour.
void SGSRGBAColorToHTMLColor(const SGSRGBAColor &color, WCFixedStringBase &out) noexcept;

} // namespace miGS
MIREL_NAMESPACE_END
