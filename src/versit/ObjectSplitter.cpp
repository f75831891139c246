#include "phonepim/versit/ObjectSplitter.h"

#include <memory>

namespace phonepim {
namespace {

// ASCII-only, case-blind: "begin:vcard" from older desktop exports and
// "BEGIN:vCard" from phones are the same line.
bool StartsWithNoCase(std::string_view line, std::string_view prefix) {
  if (line.size() < prefix.size()) return false;
  for (std::size_t i = 0; i < prefix.size(); ++i) {
    char c = line[i];
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    if (c != prefix[i]) return false;
  }
  return true;
}

// Windows address-book tools put a UTF-8 byte order mark before the first
// object; it belongs to no object.
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

std::vector<VersitObjectSpan> FindVersitObjects(std::string_view buffer) {
  std::vector<VersitObjectSpan> spans;
  VersitObjectSpan current;
  std::size_t depth = 0;
  std::size_t lineNumber = 1;
  std::size_t pos = 0;
  if (buffer.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    pos = kByteOrderMark.size();
  }
  while (pos < buffer.size()) {
    const std::size_t lf = buffer.find('\n', pos);
    const std::size_t next = lf == std::string_view::npos ? buffer.size() : lf + 1;
    const std::string_view line = buffer.substr(pos, next - pos);
    if (StartsWithNoCase(line, "BEGIN:")) {
      if (depth == 0) current = VersitObjectSpan{pos, 0, lineNumber, true};
      ++depth;
    } else if (depth > 0 && StartsWithNoCase(line, "END:")) {
      if (--depth == 0) {
        current.length = next - current.offset;
        spans.push_back(current);
      }
    }
    pos = next;
    ++lineNumber;
  }
  if (depth > 0) {
    current.length = buffer.size() - current.offset;
    current.terminated = false;
    spans.push_back(current);
  }
  return spans;
}

vObjectPtrArray SplitVersitObjects(std::string_view buffer) {
  vObjectPtrArray objects;
  for (const VersitObjectSpan& span : FindVersitObjects(buffer)) {
    auto object = std::make_shared<vObject>();
    object->object()->SetData(
        reinterpret_cast<const unsigned char*>(buffer.data() + span.offset), span.length);
    objects.push_back(std::move(object));
  }
  return objects;
}

}  // namespace phonepim
