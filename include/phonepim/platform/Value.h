// Dynamic values: the records of the synchronisation store, meta entries of
// the identity tables and the contents of property-list files.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "phonepim/platform/String.h"

namespace phonepim {

class Value;

/// An ordered list of values.
using Array = std::vector<Value>;

/// A dictionary keyed by strings. Keys iterate in sorted order; that order is
/// the "all keys" order every caller relies on.
using Dictionary = std::map<String, Value>;

/// An instant: seconds since 1970-01-01 00:00:00 UTC.
struct Date {
  double secondsSince1970 = 0.0;
  friend bool operator==(const Date&, const Date&) = default;
};

/// A value with value semantics: a string, an integer, a real, a boolean, a
/// date, bytes, an array or a dictionary. A default-constructed value is an
/// empty string.
class Value {
 public:
  enum class Type { String, Integer, Real, Boolean, Date, Data, Array, Dictionary };

  Value() = default;
  Value(String v) : storage_(std::move(v)) {}
  Value(const char16_t* v) : storage_(String(v)) {}
  /// Every integer type is held as a 64-bit signed integer.
  template <class I>
    requires(std::is_integral_v<I> && !std::is_same_v<I, bool>)
  Value(I v) : storage_(static_cast<std::int64_t>(v)) {}
  Value(double v) : storage_(v) {}
  Value(bool v) : storage_(v) {}
  /// A narrow C string would silently become a bool: spell the text as
  /// u"..." or convert it first.
  Value(const char*) = delete;
  Value(phonepim::Date v) : storage_(v) {}
  Value(Bytes v) : storage_(std::move(v)) {}
  Value(phonepim::Array v) : storage_(std::move(v)) {}
  Value(phonepim::Dictionary v) : storage_(std::move(v)) {}

  Type type() const { return static_cast<Type>(storage_.index()); }

  /// True when the value holds a `T` (one of String, std::int64_t, double,
  /// bool, Date, Bytes, Array, Dictionary).
  template <class T>
  bool is() const { return std::holds_alternative<T>(storage_); }

  /// The held `T`, or nullptr when the value holds another type: the
  /// platform's nil for a lookup of the wrong kind.
  template <class T>
  const T* getIf() const { return std::get_if<T>(&storage_); }
  template <class T>
  T* getIf() { return std::get_if<T>(&storage_); }

  /// The held `T`; throws std::bad_variant_access for another type.
  template <class T>
  const T& get() const { return std::get<T>(storage_); }
  template <class T>
  T& get() { return std::get<T>(storage_); }

  friend bool operator==(const Value&, const Value&) = default;

 private:
  std::variant<String, std::int64_t, double, bool, phonepim::Date, Bytes,
               phonepim::Array, phonepim::Dictionary>
      storage_;
};

/// The name of a value type ("string", "integer", ...), for messages.
std::string_view TypeName(Value::Type type);

/// The dictionary entry under `key`, or nullptr when there is none.
const Value* Find(const Dictionary& dictionary, const String& key);
Value* Find(Dictionary& dictionary, const String& key);

/// The entry under `key` when it holds a `T`, else nullptr.
template <class T>
const T* FindAs(const Dictionary& dictionary, const String& key) {
  const Value* value = Find(dictionary, key);
  return value ? value->getIf<T>() : nullptr;
}
template <class T>
T* FindAs(Dictionary& dictionary, const String& key) {
  Value* value = Find(dictionary, key);
  return value ? value->getIf<T>() : nullptr;
}

}  // namespace phonepim
