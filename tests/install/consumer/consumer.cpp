// Builds against the installed package and uses a few entry points.
#include <phonepim/encoding/Encoding.h>
#include <phonepim/encoding/base64.h>
#include <phonepim/platform/String.h>
#include <phonepim/platform/Uuid.h>

#include <cstdio>
#include <cstring>

using namespace phonepim;

int main() {
  const auto text = StringFromUTF8("caf\xC3\xA9");
  if (!text || *text != u"caf\u00e9") return 1;
  if (NewUUIDString().size() != 36) return 2;
  const char* qp = "M=C3=BCller";
  const auto name = Decode(qp, static_cast<int>(std::strlen(qp)), kCharsetUTF8, kEncodingQuotedPrintable);
  if (!name || *name != u"M\u00fcller") return 3;
  char bytes[8];
  if (Base64decode(bytes, "TWFu") != 3 || std::memcmp(bytes, "Man", 3) != 0) return 4;
  std::puts("consumer ok");
  return 0;
}
