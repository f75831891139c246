// STL_QPDecode and QPDecode2 on arbitrary bytes (they must agree), and the
// same bytes through STL_QPEncode and back, which must give them unchanged.
// The first byte picks the encoding code and the flags.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/platform/Assert.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  // An encoder assertion is a finding: the throw ends the run with a report.
  phonepim::SetAssertionHandler(&phonepim::ThrowingAssertionHandler);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t control = data[0];
  const int nEncoding = (control & 1) != 0 ? phonepim::kEncodingQuotedPrintableCR
                                           : phonepim::kEncodingQuotedPrintable;
  const unsigned int flags = (control >> 1) & 3;
  const std::size_t length = size - 1;
  // The decoders read and write the byte at src[nSrcLen].
  std::vector<char> src(data + 1, data + size);
  src.push_back('\0');

  std::vector<char> dst(length + 1);
  unsigned long written = 0;
  const int rc = phonepim::STL_QPDecode(src.data(), length, dst.data(), &written,
                                        nEncoding, flags & phonepim::kQPDotStuffing);
  if (rc != 0 && rc != 1) std::abort();
  if (rc == 1 && written > length) std::abort();

  std::vector<char> dst2(length + 1);
  int written2 = 0;
  const int rc2 = phonepim::QPDecode2(reinterpret_cast<const unsigned char*>(src.data()),
                                      static_cast<int>(length), dst2.data(), &written2,
                                      nEncoding, flags & phonepim::kQPDotStuffing);
  if (rc2 != rc) std::abort();
  if (rc == 1 && (static_cast<unsigned long>(written2) != written ||
                  std::memcmp(dst.data(), dst2.data(), written) != 0)) {
    std::abort();
  }

  // Round trip: encode the source, decode it with the transfer decoder.
  unsigned long capacity = static_cast<unsigned long>(
      phonepim::QPEncodeGetRequiredLength(static_cast<int>(length)));
  std::vector<char> encoded(capacity + 1);
  if (phonepim::STL_QPEncode(src.data(), length, encoded.data(), &capacity, flags) != 1) {
    std::abort();
  }
  encoded[capacity] = '\0';
  std::vector<char> decoded(capacity + 1);
  unsigned long decodedLength = 0;
  if (phonepim::STL_QPDecode(encoded.data(), capacity, decoded.data(), &decodedLength,
                             phonepim::kEncodingQuotedPrintable,
                             flags & phonepim::kQPDotStuffing) != 1 ||
      decodedLength != length || std::memcmp(decoded.data(), src.data(), length) != 0) {
    std::abort();
  }
  return 0;
}
