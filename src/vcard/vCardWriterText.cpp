#include "vcard/vCardWriterText.h"

#include <algorithm>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/model/CCustomType.h"
#include "phonepim/vcard/vCard.h"

namespace phonepim::vcard_writer {
namespace {

// The longest run of bytes that STL_QPEncode copies without a soft line
// break: the break follows the byte that takes a line past 67 columns.
constexpr std::size_t kLongestUnbrokenLine = 68;

// A character that STL_QPEncode copies as it stands (TAB is left out: it is
// literal only early in a line).
bool IsLiteral(char16_t unit) { return unit >= u'!' && unit <= u'~' && unit != u'='; }

bool IsHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

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

String EncodeText(const String& text, bool escape) {
  String encoded;
  // Most values of a phone book (numbers, e-mail addresses, single words)
  // come out of the encoder unchanged; skipping the UTF-8 round trip for
  // them gives the very same text.
  if (text.size() <= kLongestUnbrokenLine && std::all_of(text.begin(), text.end(), IsLiteral)) {
    encoded = text;
  } else {
    std::optional<String> qp = QPEncode(text);
    if (!qp) qp = QPEncode(WithoutLoneSurrogates(text));
    encoded = qp ? std::move(*qp) : String();
  }
  return escape ? EncodeEscapedCharString(encoded) : encoded;
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
