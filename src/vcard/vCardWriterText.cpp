#include "vcard/vCardWriterText.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/encoding/base64.h"
#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/model/CCustomType.h"
#include "phonepim/vcard/vCard.h"
#include "encoding/QuotedPrintableUTF8.h"
#include "platform/UTF8Encoding.h"

namespace phonepim::vcard_writer {
namespace {

// The longest run of bytes that STL_QPEncode copies without a soft line
// break: the break follows the byte that takes a line past 67 columns.
constexpr std::size_t kLongestUnbrokenLine = 68;

// Values up to this many UTF-8 bytes are encoded here directly; QPEncode
// takes the rest (and refuses what its int capacity cannot describe).
constexpr std::size_t kLongestDirectValue = 100'000'000;

// A character that STL_QPEncode copies as it stands (TAB is left out: it is
// literal only early in a line).
bool IsLiteral(char16_t unit) { return unit >= u'!' && unit <= u'~' && unit != u'='; }

// A value that STL_QPEncode gives back unchanged: printable characters
// only, too few for a soft line break.
bool IsLiteralValue(const String& text) {
  return text.size() <= kLongestUnbrokenLine && std::all_of(text.begin(), text.end(), IsLiteral);
}

using utf8::IsHighSurrogate;
using utf8::IsLowSurrogate;

char16_t AsciiUpper(char16_t unit) {
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - (u'a' - u'A')) : unit;
}

}  // namespace

String WithoutLoneSurrogates(const String& text) {
  String out(text);
  for (std::size_t i = 0; i < out.size(); ++i) {
    if (IsHighSurrogate(out[i]) && i + 1 < out.size() && IsLowSurrogate(out[i + 1])) {
      ++i;
    } else if (IsHighSurrogate(out[i]) || IsLowSurrogate(out[i])) {
      out[i] = u'\uFFFD';
    }
  }
  return out;
}

void AppendUtf8(std::string& out, std::u16string_view text) {
  const char16_t* const units = text.data();
  const std::size_t count = text.size();
  char16_t any = 0;
  for (std::size_t i = 0; i < count; ++i) any |= units[i];
  if (any < 0x80) {
    out.append(text.begin(), text.end());
    return;
  }
  // One pass into room for the worst case, three bytes a unit (a pair's
  // four bytes stand for two).
  const std::size_t old = out.size();
  out.resize(old + count * 3);
  char* const first = out.data() + old;
  char* d = first;
  for (std::size_t i = 0; i < count; ++i) {
    d += utf8::EncodeCharacter(units, count, &i, reinterpret_cast<unsigned char*>(d));
  }
  out.resize(old + static_cast<std::size_t>(d - first));
}

void StoreCard(std::u16string_view text, const Bytes* photo, vobj::_byte_array* bytes) {
  // The line vCard::AddPhoto makes: the data on a line of its own, a blank
  // folded line after it. It has no "::" for AddItem to collapse.
  static constexpr std::string_view kPhotoHead = "PHOTO;TYPE=JPEG;ENCODING=BASE64:\r\n ";
  static constexpr std::string_view kPhotoTail = "\r\n \r\n";
  static constexpr std::string_view kEnd = "END:VCARD\r\n";
  const char16_t* const units = text.data();
  const std::size_t count = text.size();
  // Cards are ASCII but for the odd telephone number: test that first with
  // a loop the compiler can vectorise, and narrow the units straight into
  // the object's storage, without a UTF-8 copy between.
  char16_t any = 0;
  for (std::size_t i = 0; i < count; ++i) any |= units[i];
  std::size_t textSize = count;
  if (any >= 0x80) {
    textSize = 0;
    for (std::size_t i = 0; i < count; ++i) {
      unsigned char encoded[4];
      textSize += static_cast<std::size_t>(utf8::EncodeCharacter(units, count, &i, encoded));
    }
  }
  const bool withPhoto = photo != nullptr && !photo->empty();
  const std::size_t photoSize =
      withPhoto ? kPhotoHead.size() + (photo->size() + 2) / 3 * 4 + kPhotoTail.size() : 0;
  const std::size_t size = textSize + photoSize + kEnd.size();
  // One more for the NUL the Base64 encoder ends with.
  if (bytes->m_cbAlloc < size + 1) bytes->Alloc(size + 1);
  unsigned char* out = bytes->m_pData;
  if (any < 0x80) {
    for (std::size_t i = 0; i < count; ++i) *out++ = static_cast<unsigned char>(units[i]);
  } else {
    for (std::size_t i = 0; i < count; ++i) {
      out += utf8::EncodeCharacter(units, count, &i, out);
    }
  }
  const auto put = [&out](std::string_view piece) {
    out = std::copy(piece.begin(), piece.end(), out);
  };
  if (withPhoto) {
    put(kPhotoHead);
    // In pieces of whole groups of three bytes (they join into one Base64
    // text), each within the encoder's int count; each piece's NUL is
    // overwritten by the next.
    constexpr std::size_t kPiece = std::size_t{3} << 20;
    const char* data = reinterpret_cast<const char*>(photo->data());
    for (std::size_t done = 0; done < photo->size(); done += kPiece) {
      const int length = static_cast<int>(std::min(kPiece, photo->size() - done));
      out += Base64encode(reinterpret_cast<char*>(out), data + done, length) - 1;
    }
    put(kPhotoTail);
  }
  put(kEnd);
  bytes->m_cbData = static_cast<std::uint32_t>(size);
}

void AppendEncodedText(String& out, const String& text, bool escape) {
  // Most values of a phone book (numbers, e-mail addresses, single words)
  // come out of the encoder unchanged; skipping the UTF-8 round trip for
  // them gives the very same text.
  const bool literal = IsLiteralValue(text);
  if (literal && !escape) {
    out += text;
    return;
  }
  // Keeps its room from value to value: a card's values cost no string each.
  thread_local String encoded;
  if (literal) {
    encoded = text;
  } else if (text.size() <= kLongestDirectValue / 3) {
    // QPEncode's own steps, STL_QPEncode of the UTF-8 bytes, in one pass.
    EncodeQuotedPrintableUTF8(text, &encoded);
  } else {
    encoded = QPEncode(WithoutLoneSurrogates(text)).value_or(String());
  }
  out += escape ? EncodeEscapedCharString(encoded) : encoded;
  // A long note must not pin its size for the rest of the address book.
  if (encoded.capacity() > 64 * 1024) String().swap(encoded);
}

void AppendEncodedText(std::string& out, const String& text, bool escape) {
  if (escape || text.size() > kLongestDirectValue / 3) {
    AppendUtf8(out, EncodeText(text, escape));
  } else if (IsLiteralValue(text)) {
    out.append(text.begin(), text.end());
  } else {
    AppendQuotedPrintableUTF8(text, out);
  }
}

String EncodeText(const String& text, bool escape) {
  String encoded;
  AppendEncodedText(encoded, text, escape);
  return encoded;
}

bool IsQuotedPrintable(std::u16string_view encoded) {
  return encoded.find(u'=') != std::u16string_view::npos;
}

String PrintedLabel(const String& label) {
  static constexpr std::u16string_view kOpen = u"X-CUSTOM(";
  const auto match = std::search(label.begin(), label.end(), kOpen.begin(), kOpen.end(),
                                 [](char16_t a, char16_t b) { return AsciiUpper(a) == b; });
  if (match == label.end()) return label;
  String inner(match + static_cast<std::ptrdiff_t>(kOpen.size()), label.end());
  if (!inner.empty() && inner.back() == u')') inner.pop_back();
  return inner;
}

std::optional<String> TableLabel(std::uint32_t type) {
  std::optional<String> label = CCustomType::Inst().ConvertStringValFromCustomType(type);
  if (!label || label->empty()) return std::nullopt;
  return label;
}

String CustomLabelParameter(const String& label) {
  const String encoded = EncodeText(PrintedLabel(label), vCard::sm_fNonstandardEscChar);
  String parameter = u";X-CUSTOM(";
  if (IsQuotedPrintable(encoded)) parameter += vCard::szParams_QPEncodedUTF8_CUSTOM;
  parameter += encoded;
  parameter += u')';
  return parameter;
}

}  // namespace phonepim::vcard_writer
