// Builds against the installed package and uses a few entry points.
#include <phonepim/encoding/Encoding.h>
#include <phonepim/encoding/base64.h>
#include <phonepim/platform/String.h>
#include <phonepim/platform/Uuid.h>

#include <cstdio>
#include <cstring>

int main() {
  const auto text = phonepim::StringFromUTF8("caf\xC3\xA9");
  if (!text || text->size() != 4) return 1;
  if (phonepim::NewUUIDString().size() != 36) return 2;
  const char* qp = "M=C3=BCller";
  const auto name = phonepim::Decode(qp, static_cast<int>(std::strlen(qp)),
                                     phonepim::kCharsetUTF8,
                                     phonepim::kEncodingQuotedPrintable);
  if (!name || *name != u"M\u00fcller") return 3;
  char bytes[8];
  if (phonepim::Base64decode(bytes, "TWFu") != 3 || std::memcmp(bytes, "Man", 3) != 0) {
    return 4;
  }
  std::puts("consumer ok");
  return 0;
}
