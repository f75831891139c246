// The store's own encoding of a Value: the phones' tables are kept in it,
// since reading a table of 20,000 contacts back must cost far less than
// parsing its property list.
#pragma once

#include <optional>

#include "phonepim/platform/Value.h"

namespace phonepim::store_detail {

/// Type byte, then the content: texts as their UTF-16 units, numbers as
/// their 8 bytes, arrays and dictionaries as a count and their items
/// (dictionaries in key order). Lengths and counts are 8 bytes, all in host
/// byte order: the bytes never leave the store file they were made for.
Bytes EncodeValue(const Value& value);

/// Nothing for bytes that EncodeValue did not make (cut short, a bad type,
/// a count beyond the bytes, nesting deeper than 64).
std::optional<Value> DecodeValue(const Bytes& bytes);

}  // namespace phonepim::store_detail
