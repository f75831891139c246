// One versit object through a fresh tokenizer: what both readers do around
// their callbacks. Private to the library.
#pragma once

#include "phonepim/versit/vObject.h"
#include "phonepim/versit/vParser.h"

namespace phonepim {

/// Creates a tokenizer with `userData` and the two callbacks, feeds it the
/// whole of `object` (null: no text) in pieces its int length can carry,
/// frees it, and answers whether the text was tokenized; `lenient` sets
/// the tokenizer's lenient mode (CARD_SetLenient). Throws std::bad_alloc
/// when no tokenizer can be made.
bool TokenizeObject(const vObject* object, void* userData, CARD_PropHandler propHandler,
                    CARD_DataHandler dataHandler, bool lenient = false);

}  // namespace phonepim
