#include "versit/TokenizeObject.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <memory>
#include <new>

namespace phonepim {
namespace {

struct ParserFree {
  void operator()(VP* parser) const { CARD_ParserFree(parser); }
};

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
  const std::unique_ptr<VP, ParserFree> parser(CARD_ParserCreate());
  if (!parser) throw std::bad_alloc();
  CARD_SetUserData(parser.get(), userData);
  CARD_SetPropHandler(parser.get(), propHandler);
  CARD_SetDataHandler(parser.get(), dataHandler);
  CARD_SetLenient(parser.get(), lenient ? 1 : 0);
  if (object == nullptr) return CARD_Parse(parser.get(), nullptr, 0, 1) != 0;
  return FeedAll(parser.get(), object->object()->GetData(), object->object()->GetSize());
}

}  // namespace phonepim
