// Builds against the installed package and uses a few entry points.
#include <phonepim/platform/String.h>
#include <phonepim/platform/Uuid.h>

#include <cstdio>

int main() {
  const auto text = phonepim::StringFromUTF8("caf\xC3\xA9");
  if (!text || text->size() != 4) return 1;
  if (phonepim::NewUUIDString().size() != 36) return 2;
  std::puts("consumer ok");
  return 0;
}
