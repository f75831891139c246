// Feeds the tokenizer the input whole, in pieces, and byte by byte through
// the state machine alone; all three must report the same callbacks. Bits
// of the first bytes choose the callbacks installed and the cut points, so
// the fuzzer explores both.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "versit/vParserInternal.h"

namespace {

void Fail(const char* what) {
  (void)what;
  std::abort();
}

void OnProperty(void* userData, const char* name, char** params) {
  auto* out = static_cast<std::string*>(userData);
  if (name == nullptr || params == nullptr) Fail("null name or parameters");
  out->append("P:").append(name);
  for (char** pair = params; pair[0] != nullptr || pair[1] != nullptr; pair += 2) {
    if (pair[0] == nullptr) Fail("value without a name");
    out->append(1, '\x1f').append(pair[0]);
    if (pair[1] != nullptr) out->append(1, '\x1e').append(pair[1]);
  }
  out->append(1, '\n');
}

void OnData(void* userData, const char* data, int length) {
  auto* out = static_cast<std::string*>(userData);
  if (data == nullptr) {
    if (length != 0) Fail("end with a length");
    out->append("E\n");
    return;
  }
  if (length <= 0) Fail("empty data");
  out->append("D:").append(std::to_string(length)).append(1, ':').append(data,
                                                                        static_cast<std::size_t>(length));
  out->append(1, '\n');
}

VP* NewParser(std::string* out, unsigned handlers) {
  VP* vp = CARD_ParserCreate();
  if (vp == nullptr) Fail("create");
  CARD_SetUserData(vp, out);
  if (handlers & 1u) CARD_SetPropHandler(vp, &OnProperty);
  if (handlers & 2u) CARD_SetDataHandler(vp, &OnData);
  return vp;
}

// Line-buffer invariants that every step must keep.
void CheckRecord(const VP* vp) {
  if (vp->lineCapacity % VP_LINE_GROWTH != 0 || vp->lineLength > vp->lineCapacity ||
      vp->lineLength < 0 || (vp->line == nullptr) != (vp->lineCapacity == 0) ||
      vp->quadCount < 0 || vp->quadCount > 4 || vp->paramCount > vp->paramCapacity) {
    Fail("record invariant");
  }
}

std::string Whole(const std::uint8_t* data, std::size_t size, unsigned handlers) {
  std::string out;
  VP* vp = NewParser(&out, handlers);
  out += CARD_Parse(vp, reinterpret_cast<const char*>(data), static_cast<int>(size), 1) ? "R1"
                                                                                        : "R0";
  CheckRecord(vp);
  CARD_ParserFree(vp);
  return out;
}

std::string Pieces(const std::uint8_t* data, std::size_t size, unsigned handlers,
                   std::uint64_t seed) {
  std::string out;
  VP* vp = NewParser(&out, handlers);
  std::size_t at = 0;
  int ok = 1;
  while (ok && at < size) {
    seed ^= seed << 13;
    seed ^= seed >> 7;
    seed ^= seed << 17;
    // Mostly tiny pieces, now and then a long one or an empty one.
    const std::size_t piece = (seed & 7u) == 0 ? (seed >> 8) % 512 : (seed >> 8) % 4;
    const std::size_t n = piece < size - at ? piece : size - at;
    ok = CARD_Parse(vp, reinterpret_cast<const char*>(data + at), static_cast<int>(n), 0);
    CheckRecord(vp);
    at += n;
  }
  if (ok) ok = CARD_Parse(vp, nullptr, 0, 1);
  out += ok ? "R1" : "R0";
  CARD_ParserFree(vp);
  return out;
}

// The per-byte reference: the line handling written out, every byte through
// vcard_process_char, no runs.
std::string Reference(const std::uint8_t* data, std::size_t size, unsigned handlers) {
  std::string out;
  VP* vp = NewParser(&out, handlers);
  auto isSpace = [](std::uint8_t c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
  };
  int ok = 1;
  for (std::size_t i = 0; ok && i < size; ++i) {
    const std::uint8_t c = data[i];
    if (vp->atLineStart) {
      if (c == '\n') continue;
      if (!vp->isContinuation && isSpace(c)) {
        vp->isContinuation = 1;
        continue;
      }
      if (vp->encoding == VP_ENCODING_BASE64) vp->encoding = VP_ENCODING_NONE;
      vp->atLineStart = 0;
      if (!vp->isContinuation) {
        ok = vcard_process_char(vp, '\n');
        if (!ok) break;
      } else if (vp->encoding == VP_ENCODING_QUOTED_PRINTABLE) {
        vp->qpPending = 0;
      }
    }
    if (c == '\n') {
      vp->atLineStart = 1;
      vp->isContinuation = 0;
    } else {
      ok = vcard_process_char(vp, static_cast<char>(c));
    }
  }
  if (ok) ok = vcard_process_char(vp, '\n');
  out += ok ? "R1" : "R0";
  CARD_ParserFree(vp);
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > (1u << 20)) return 0;
  std::uint64_t seed = 0x9e3779b97f4a7c15ull;
  for (std::size_t i = 0; i < size && i < 8; ++i) seed = seed * 131 + data[i];
  // Both callbacks most of the time; each one alone, or none, now and then.
  const unsigned handlers = (seed % 8) < 5 ? 3u : static_cast<unsigned>(seed % 4);
  const std::string whole = Whole(data, size, handlers);
  if (Pieces(data, size, handlers, seed | 1) != whole) Fail("pieces differ from whole");
  if (Reference(data, size, handlers) != whole) Fail("runs differ from the per-byte rules");
  return 0;
}
