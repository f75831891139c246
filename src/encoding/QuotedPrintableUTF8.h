// Quoted-printable UTF-8 text straight from and to UTF-16: the common case
// of the readers and the writers, in one pass. Private to the library.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "phonepim/platform/String.h"

namespace phonepim {

/// The text of NGDecodeQuotedPrintableX(text, len, ..., 1) read as strict
/// UTF-8, in one pass and without the intermediate bytes, when every '='
/// of `text` starts a valid escape that lies within it. Returns false, with
/// `out` unspecified, for anything else (a soft break, an escape cut short
/// or not hexadecimal, bytes that are not UTF-8): the caller then takes the
/// two steps, whose rules decide those cases. Without `underscoreIsSpace`
/// an '_' stays itself (the lenient reading's DecodeCharset).
bool DecodeQuotedPrintableUTF8(const char* text, std::size_t len, String* out,
                               bool underscoreIsSpace = true);

/// The text of STL_QPEncode (no flags) of the UTF-8 form of `text`, an
/// unpaired surrogate written as U+FFFD, in one pass and without the
/// intermediate bytes.
void EncodeQuotedPrintableUTF8(std::u16string_view text, String* out);
/// The same text as bytes, appended to `out`.
void AppendQuotedPrintableUTF8(std::u16string_view text, std::string& out);

}  // namespace phonepim
