#include "phonepim/text/NSArrayCustom.h"

#include <unicode/uchar.h>

#include <climits>
#include <cmath>
#include <stdexcept>
#include <string>

namespace phonepim {
namespace {

// `index` must name an element, or with `allowEnd` the place after the last.
std::size_t CheckedIndex(const Array& array, int index, bool allowEnd,
                         const char* operation) {
  const std::size_t limit = allowEnd ? array.size() + 1 : array.size();
  if (index < 0 || static_cast<std::size_t>(index) >= limit) {
    throw std::out_of_range(std::string(operation) + ": index " + std::to_string(index) +
                            " beyond bounds of an array of " +
                            std::to_string(array.size()));
  }
  return static_cast<std::size_t>(index);
}

int Saturate(long long value) {
  if (value > INT_MAX) return INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return static_cast<int>(value);
}

// A string's int value: leading white space, an optional sign and decimal
// digits; the first other character ends the number. Overflow gives INT_MAX
// or INT_MIN, no digits give 0.
int IntFromString(const String& text) {
  std::size_t i = 0;
  while (i < text.size() && u_isUWhiteSpace(text[i])) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == u'+' || text[i] == u'-')) {
    negative = text[i] == u'-';
    ++i;
  }
  long long magnitude = 0;
  for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
    // Past INT_MAX + 1 the exact value no longer matters; stop growing so
    // that a long run of digits cannot overflow.
    if (magnitude <= static_cast<long long>(INT_MAX) + 1) {
      magnitude = magnitude * 10 + (text[i] - u'0');
    }
  }
  return Saturate(negative ? -magnitude : magnitude);
}

}  // namespace

void addIntValue(Array& array, int value) { array.emplace_back(value); }

void insertIntValue(Array& array, int value, int index) {
  const std::size_t at = CheckedIndex(array, index, true, "insertIntValue");
  array.emplace(array.begin() + static_cast<std::ptrdiff_t>(at), static_cast<std::int64_t>(value));
}

void setIntValue(Array& array, int value, int index) {
  array[CheckedIndex(array, index, false, "setIntValue")] = Value(value);
}

int intValueAtIndex(const Array& array, int index) {
  const Value& value = array[CheckedIndex(array, index, false, "intValueAtIndex")];
  switch (value.type()) {
    case Value::Type::Integer:
      // A number object's int value keeps the low 32 bits of a wider one.
      return static_cast<int>(static_cast<unsigned int>(value.get<std::int64_t>()));
    case Value::Type::Real: {
      const double real = value.get<double>();
      if (std::isnan(real)) return 0;
      if (real >= static_cast<double>(INT_MAX)) return INT_MAX;
      if (real <= static_cast<double>(INT_MIN)) return INT_MIN;
      return static_cast<int>(real);
    }
    case Value::Type::Boolean:
      return value.get<bool>() ? 1 : 0;
    case Value::Type::String:
      return IntFromString(value.get<String>());
    default:
      return 0;
  }
}

}  // namespace phonepim
