// The splitter's spans must lie in the buffer, in order, without overlap,
// each starting at a BEGIN: line whose number is right; SplitVersitObjects
// must copy exactly those bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "phonepim/versit/ObjectSplitter.h"

namespace {

bool StartsWithBegin(std::string_view text) {
  static constexpr std::string_view kBegin = "BEGIN:";
  if (text.size() < kBegin.size()) return false;
  for (std::size_t i = 0; i < kBegin.size(); ++i) {
    char c = text[i];
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    if (c != kBegin[i]) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view buffer(reinterpret_cast<const char*>(data), size);
  const auto spans = phonepim::FindVersitObjects(buffer);
  std::size_t previousEnd = 0;
  std::size_t lines = 1;
  std::size_t counted = 0;
  for (std::size_t i = 0; i < spans.size(); ++i) {
    const auto& span = spans[i];
    if (span.offset < previousEnd || span.length == 0 || span.offset > size ||
        span.length > size - span.offset) {
      std::abort();
    }
    if (span.offset != 0 && buffer[span.offset - 1] != '\n' &&
        !(span.offset == 3 && buffer.substr(0, 3) == "\xEF\xBB\xBF")) {
      std::abort();  // not at a line start
    }
    if (!StartsWithBegin(buffer.substr(span.offset))) std::abort();
    for (; counted < span.offset; ++counted) lines += buffer[counted] == '\n';
    if (span.firstLine != lines) std::abort();
    const std::size_t end = span.offset + span.length;
    if (span.terminated ? (end != size && buffer[end - 1] != '\n')
                        : (end != size || i + 1 != spans.size())) {
      std::abort();
    }
    previousEnd = end;
  }
  const auto objects = phonepim::SplitVersitObjects(buffer);
  if (objects.size() != spans.size()) std::abort();
  for (std::size_t i = 0; i < spans.size(); ++i) {
    const auto* bytes = objects[i]->object();
    if (bytes->GetSize() != spans[i].length) std::abort();
    if (bytes->GetSize() != 0 &&
        std::string_view(reinterpret_cast<const char*>(bytes->GetData()), bytes->GetSize()) !=
            buffer.substr(spans[i].offset, spans[i].length)) {
      std::abort();
    }
  }
  return 0;
}
