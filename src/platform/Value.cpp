#include "phonepim/platform/Value.h"

namespace phonepim {

std::string_view TypeName(Value::Type type) {
  switch (type) {
    case Value::Type::String: return "string";
    case Value::Type::Integer: return "integer";
    case Value::Type::Real: return "real";
    case Value::Type::Boolean: return "boolean";
    case Value::Type::Date: return "date";
    case Value::Type::Data: return "data";
    case Value::Type::Array: return "array";
    case Value::Type::Dictionary: return "dictionary";
  }
  return "unknown";
}

const Value* Find(const Dictionary& dictionary, const String& key) {
  auto it = dictionary.find(key);
  return it == dictionary.end() ? nullptr : &it->second;
}

Value* Find(Dictionary& dictionary, const String& key) {
  auto it = dictionary.find(key);
  return it == dictionary.end() ? nullptr : &it->second;
}

}  // namespace phonepim
