// NGDecodeQuotedPrintableX on arbitrary bytes. The first byte picks the
// underscore rule and how much smaller (or, rarely, larger) the destination
// is than the source; the destination is an exact-size heap block, so any
// write past dstLen is an ASan report.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/platform/Assert.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  phonepim::SetAssertionHandler(&phonepim::ThrowingAssertionHandler);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t control = data[0];
  const signed char underscoreIsSpace = (control & 1) != 0 ? 1 : 0;
  const unsigned int shrink = control >> 2;
  // The decoder may read src[srcLen]: hand it a terminated copy.
  std::vector<char> src(data + 1, data + size);
  const auto srcLen = static_cast<unsigned int>(src.size());
  src.push_back('\0');

  unsigned int dstLen = shrink < srcLen ? srcLen - shrink : 0;
  if ((control & 2) != 0 && shrink == 0) dstLen = srcLen + 1;  // must give -1
  std::vector<char> dst(dstLen);
  const int result =
      phonepim::NGDecodeQuotedPrintableX(src.data(), srcLen, dst.data(), dstLen,
                                         underscoreIsSpace);
  if (result < -1) std::abort();
  if (result > static_cast<long long>(dstLen)) std::abort();
  if (dstLen > srcLen && result != -1) std::abort();
  return 0;
}
