// Value encoding shared by the vCard writers: quoted-printable text, the
// backslash escapes of structured values and custom-label parameters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "phonepim/platform/String.h"
#include "phonepim/versit/vObject.h"

namespace phonepim::vcard_writer {

/// Asks for every cache line of `object` at once. A record written long
/// after it was read is out of the caches, and its fields, met one after
/// another as the lines are written, each waited for memory in turn;
/// asked for together, they arrive together. Inlined by force: a call to a
/// function that only prefetches looks free of effects, and is dropped.
template <class Object>
[[gnu::always_inline]] inline void FetchObject(const Object& object) {
  const char* const bytes = reinterpret_cast<const char*>(&object);
  for (std::size_t offset = 0; offset < sizeof(Object); offset += 64) {
    __builtin_prefetch(bytes + offset);
  }
}

/// The text of an optional field; missing reads as empty.
inline const String& TextOf(const std::optional<String>& text) {
  static const String kEmpty;
  return text ? *text : kEmpty;
}

/// QPEncode of `text`, then EncodeEscapedCharString when `escape` is set.
/// An unpaired surrogate, which has no UTF-8 form, is encoded as U+FFFD.
String EncodeText(const String& text, bool escape);
/// EncodeText(text, escape) appended to `out`.
void AppendEncodedText(String& out, const String& text, bool escape);
/// The same, as bytes (the encoded text is ASCII).
void AppendEncodedText(std::string& out, const String& text, bool escape);

/// True when an encoded value holds a '=': QPEncode changed it, so the line
/// needs the quoted-printable parameters.
bool IsQuotedPrintable(std::u16string_view encoded);

/// The label as a writer prints it. Plain labels stay in the custom-label
/// table as the reader handed them in ("X-CUSTOM(Main)",
/// "PREF=X-CUSTOM(Main)"): everything up to "X-CUSTOM(" (any case) and a
/// closing ')' are dropped. A label without "X-CUSTOM(" is kept whole.
String PrintedLabel(const String& label);

/// The custom-label table's label for `type` when it has a non-empty one.
std::optional<String> TableLabel(std::uint32_t type);

/// ";X-CUSTOM(" label ")", the label quoted-printable, escaped when the
/// reader undoes escapes (sm_fNonstandardEscChar), and preceded inside the
/// brackets by the charset prefix when it came out quoted-printable.
String CustomLabelParameter(const String& label);

/// `text` with every unpaired surrogate replaced by U+FFFD.
String WithoutLoneSurrogates(const String& text);

/// The UTF-8 form of `text` appended to `out`, an unpaired surrogate
/// written as U+FFFD.
void AppendUtf8(std::string& out, std::u16string_view text);

/// Stores a card as the contents of `bytes` (which keeps its storage when
/// large enough): the UTF-8 form of `text` (an unpaired surrogate written as
/// U+FFFD), the PHOTO line of `photo` as vCard::AddPhoto writes it (none for
/// null or no bytes), and "END:VCARD".
void StoreCard(std::u16string_view text, const Bytes* photo, vobj::_byte_array* bytes);

}  // namespace phonepim::vcard_writer
