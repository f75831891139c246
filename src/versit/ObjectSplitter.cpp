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

std::vector<VersitObjectSpan> FindVersitObjects(std::string_view buffer, NestedCards nested) {
  constexpr std::size_t kInsideOnly = static_cast<std::size_t>(-1);
  std::vector<VersitObjectSpan> spans;
  // Per open BEGIN: the span it started, or kInsideOnly for one that only
  // nests inside the object around it.
  std::vector<std::size_t> open;
  bool outerIsCard = false;
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
      const bool card = StartsWithNoCase(line, "BEGIN:VCARD");
      if (open.empty()) outerIsCard = card;
      if (open.empty() || (nested == NestedCards::kApart && outerIsCard && card)) {
        open.push_back(spans.size());
        spans.push_back(VersitObjectSpan{pos, 0, lineNumber, false});
      } else {
        open.push_back(kInsideOnly);
      }
    } else if (!open.empty() && StartsWithNoCase(line, "END:")) {
      if (open.back() != kInsideOnly) {
        VersitObjectSpan& span = spans[open.back()];
        span.length = next - span.offset;
        span.terminated = true;
      }
      open.pop_back();
    }
    pos = next;
    ++lineNumber;
  }
  // Objects still open when the buffer ends run to its end.
  for (const std::size_t index : open) {
    if (index != kInsideOnly) spans[index].length = buffer.size() - spans[index].offset;
  }
  return spans;
}

vObjectPtrArray SplitVersitObjects(std::string_view buffer, NestedCards nested) {
  vObjectPtrArray objects;
  for (const VersitObjectSpan& span : FindVersitObjects(buffer, nested)) {
    auto object = std::make_shared<vObject>();
    object->object()->SetData(
        reinterpret_cast<const unsigned char*>(buffer.data() + span.offset), span.length);
    objects.push_back(std::move(object));
  }
  return objects;
}

}  // namespace phonepim
