// Base64decode on arbitrary NUL-terminated text into a buffer of exactly
// Base64decode_len bytes; what it decodes must survive a trip through
// Base64encode.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "phonepim/encoding/base64.h"
#include "phonepim/platform/Assert.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  phonepim::SetAssertionHandler(&phonepim::ThrowingAssertionHandler);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<char> text(data, data + size);
  text.push_back('\0');
  const int bound = phonepim::Base64decode_len(text.data());
  if (bound < 1) std::abort();
  std::vector<char> out(static_cast<std::size_t>(bound));
  const int n = phonepim::Base64decode(out.data(), text.data());
  if (n < 0 || n > bound - 1) std::abort();
  if (out[static_cast<std::size_t>(n)] != '\0') std::abort();

  std::vector<char> again(static_cast<std::size_t>(phonepim::Base64encode_len(n)));
  if (phonepim::Base64encode(again.data(), out.data(), n) !=
      phonepim::Base64encode_len(n)) {
    std::abort();
  }
  const int backLen = phonepim::Base64decode_len(again.data());
  std::vector<char> back(static_cast<std::size_t>(backLen));
  if (phonepim::Base64decode(back.data(), again.data()) != n ||
      std::memcmp(back.data(), out.data(), static_cast<std::size_t>(n)) != 0) {
    std::abort();
  }
  return 0;
}
