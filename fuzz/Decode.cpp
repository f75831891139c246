// Decode with every charset and encoding code the property handlers can
// hand it, chosen by the first byte, then the escape helpers on the result.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <vector>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/platform/Assert.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  phonepim::SetAssertionHandler(&phonepim::ThrowingAssertionHandler);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  static const int kCharsets[] = {0, phonepim::kCharsetUTF8, phonepim::kCharsetShiftJIS, 7};
  static const int kEncodings[] = {phonepim::kEncodingNone,
                                   phonepim::kEncodingQuotedPrintable,
                                   phonepim::kEncodingBase64,
                                   phonepim::kEncodingQuotedPrintableCR,
                                   phonepim::kEncodingUnknown,
                                   9};
  const int charset = kCharsets[data[0] & 3];
  const int encoding = kEncodings[(data[0] >> 2) % 6];
  // An exact-size copy: Decode must read no more than `len` bytes.
  const std::vector<char> bytes(data + 1, data + size);
  const std::optional<phonepim::String> text =
      phonepim::Decode(bytes.data(), static_cast<int>(bytes.size()), charset, encoding);
  if (text) {
    const phonepim::String escaped = phonepim::EncodeEscapedCharString(*text);
    if (escaped.size() < text->size()) std::abort();
    if (phonepim::DecodeEscapedCharString(escaped).size() > escaped.size()) std::abort();
    (void)phonepim::QPEncode(*text);
    (void)phonepim::stringByDecodingQuotedPrintable(*text);
  }
  const phonepim::Bytes unescaped =
      phonepim::DecodeEscapedCharString(bytes.data(), bytes.size());
  if (unescaped.size() > bytes.size()) std::abort();
  return 0;
}
