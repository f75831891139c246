// Records the tokenizer's callbacks as text, one entry per call (shared by
// the tokenizer tests and the tokenizer's fuzz harness):
//   "P:TEL;TYPE=CELL"  property callback (";NAME" for a bare parameter)
//   "D:123"            data callback with bytes
//   "E"                data callback (NULL, 0): end of the property
//   "R:1" / "R:0"      what CARD_Parse returned (last entry)
//   "!..."             a callback broke its contract (null name, ...)
// Bytes that would make an entry ambiguous or unreadable are written \xNN:
// control bytes, bytes >= 0x7F and '\' everywhere, and also ';' and '=' in
// parameter names and values.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "phonepim/versit/vParser.h"

namespace phonepim::testing_versit {

using Transcript = std::vector<std::string>;

struct ParserDeleter {
  void operator()(VP* parser) const { CARD_ParserFree(parser); }
};
using ParserPtr = std::unique_ptr<VP, ParserDeleter>;

enum class Handlers { kBoth, kPropOnly, kDataOnly, kNone };

// Renders one name, value or data run.
std::string RenderBytes(std::string_view bytes, bool inParameter);

// Tokenizes `input` cut at the given offsets (ascending, each in
// [0, input.size()]); the last piece is fed with final = 1. Stops at the
// first call that returns 0. `afterEachCall`, when given, sees the record
// after every CARD_Parse call. `lenient` turns on CARD_SetLenient.
Transcript Tokenize(std::string_view input, const std::vector<std::size_t>& cuts = {},
                    Handlers handlers = Handlers::kBoth,
                    void (*afterEachCall)(const VP*) = nullptr, bool lenient = false);

// Byte by byte, final only after the last byte.
Transcript TokenizeByteByByte(std::string_view input, Handlers handlers = Handlers::kBoth,
                              bool lenient = false);

// Drives the state machine (vcard_process_char) directly, with the line
// handling written out once more, one byte at a time: the reference for the
// bulk copies that CARD_Parse takes on plain value runs.
Transcript TokenizeReference(std::string_view input, Handlers handlers = Handlers::kBoth);

}  // namespace phonepim::testing_versit
