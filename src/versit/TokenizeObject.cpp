#include "versit/TokenizeObject.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include "versit/vParserInternal.h"

namespace phonepim {
namespace {

// The calling thread's spare parser, lent to one TokenizeObject at a time:
// an address book is tokenized card by card, and a parser of its own for
// each would allocate its record, grow its line and parameter buffers, and
// free them all again, card after card. A call made while the spare is out
// (a callback that tokenizes) gets a parser of its own.
struct ThreadParser {
  VP* parser = nullptr;
  ThreadParser() = default;
  ThreadParser(const ThreadParser&) = delete;
  ThreadParser& operator=(const ThreadParser&) = delete;
  ~ThreadParser() { CARD_ParserFree(parser); }
};

thread_local ThreadParser tSpareParser;

struct ParserReturn {
  void operator()(VP* parser) const {
    if (tSpareParser.parser == nullptr) {
      vcard_reset_parser(parser);
      tSpareParser.parser = parser;
    } else {
      CARD_ParserFree(parser);
    }
  }
};

VP* BorrowParser() {
  VP* const spare = std::exchange(tSpareParser.parser, nullptr);
  return spare != nullptr ? spare : CARD_ParserCreate();
}

bool FeedAll(VP* parser, const unsigned char* bytes, std::size_t size) {
  const char* text = reinterpret_cast<const char*>(bytes);
  do {
    const std::size_t piece = std::min<std::size_t>(size, INT_MAX);
    size -= piece;
    if (CARD_Parse(parser, text, static_cast<int>(piece), size == 0 ? 1 : 0) == 0) return false;
    text += piece;
  } while (size != 0);
  return true;
}

}  // namespace

bool TokenizeObject(const vObject* object, void* userData, CARD_PropHandler propHandler,
                    CARD_DataHandler dataHandler, bool lenient) {
  const std::unique_ptr<VP, ParserReturn> parser(BorrowParser());
  if (!parser) throw std::bad_alloc();
  CARD_SetUserData(parser.get(), userData);
  CARD_SetPropHandler(parser.get(), propHandler);
  CARD_SetDataHandler(parser.get(), dataHandler);
  CARD_SetLenient(parser.get(), lenient ? 1 : 0);
  if (object == nullptr) return CARD_Parse(parser.get(), nullptr, 0, 1) != 0;
  return FeedAll(parser.get(), object->object()->GetData(), object->object()->GetSize());
}

}  // namespace phonepim
