#include "store/ValueBytes.h"

#include <cstring>

namespace phonepim::store_detail {
namespace {

constexpr int kMaxDepth = 64;

template <class T>
void Put(Bytes& out, const T& value) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(&value);
  out.insert(out.end(), bytes, bytes + sizeof(T));
}

void PutText(Bytes& out, const String& text) {
  Put<std::uint64_t>(out, text.size());
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  out.insert(out.end(), bytes, bytes + text.size() * sizeof(char16_t));
}

void Encode(Bytes& out, const Value& value) {
  out.push_back(static_cast<std::uint8_t>(value.type()));
  switch (value.type()) {
    case Value::Type::String: PutText(out, value.get<String>()); break;
    case Value::Type::Integer: Put(out, value.get<std::int64_t>()); break;
    case Value::Type::Real: Put(out, value.get<double>()); break;
    case Value::Type::Boolean: out.push_back(value.get<bool>() ? 1 : 0); break;
    case Value::Type::Date: Put(out, value.get<Date>().secondsSince1970); break;
    case Value::Type::Data: {
      const Bytes& data = value.get<Bytes>();
      Put<std::uint64_t>(out, data.size());
      out.insert(out.end(), data.begin(), data.end());
      break;
    }
    case Value::Type::Array:
      Put<std::uint64_t>(out, value.get<Array>().size());
      for (const Value& item : value.get<Array>()) Encode(out, item);
      break;
    case Value::Type::Dictionary:
      Put<std::uint64_t>(out, value.get<Dictionary>().size());
      for (const auto& [key, item] : value.get<Dictionary>()) {
        PutText(out, key);
        Encode(out, item);
      }
      break;
  }
}

class Reader {
 public:
  explicit Reader(const Bytes& bytes) : at_(bytes.data()), end_(bytes.data() + bytes.size()) {}
  bool done() const { return at_ == end_; }

  template <class T>
  bool get(T* value) {
    if (static_cast<std::size_t>(end_ - at_) < sizeof(T)) return false;
    std::memcpy(value, at_, sizeof(T));
    at_ += sizeof(T);
    return true;
  }

  bool text(String* text) {
    std::uint64_t size = 0;
    if (!get(&size) || size > static_cast<std::size_t>(end_ - at_) / sizeof(char16_t)) {
      return false;
    }
    text->resize(size);
    std::memcpy(text->data(), at_, size * sizeof(char16_t));
    at_ += size * sizeof(char16_t);
    return true;
  }

  bool value(Value* out, int depth) {
    std::uint8_t type = 0;
    std::uint64_t count = 0;
    if (depth > kMaxDepth || !get(&type)) return false;
    switch (static_cast<Value::Type>(type)) {
      case Value::Type::String: {
        String text;
        if (!this->text(&text)) return false;
        *out = std::move(text);
        return true;
      }
      case Value::Type::Integer: return scalar<std::int64_t>(out);
      case Value::Type::Real: return scalar<double>(out);
      case Value::Type::Boolean: {
        std::uint8_t flag = 0;
        if (!get(&flag)) return false;
        *out = flag != 0;
        return true;
      }
      case Value::Type::Date: {
        double seconds = 0;
        if (!get(&seconds)) return false;
        *out = Date{seconds};
        return true;
      }
      case Value::Type::Data: {
        if (!get(&count) || count > static_cast<std::size_t>(end_ - at_)) return false;
        *out = Bytes(at_, at_ + count);
        at_ += count;
        return true;
      }
      case Value::Type::Array: {
        // Every item takes a byte at least: a count beyond that is a lie.
        if (!get(&count) || count > static_cast<std::size_t>(end_ - at_)) return false;
        Array items(count);
        for (Value& item : items) {
          if (!value(&item, depth + 1)) return false;
        }
        *out = std::move(items);
        return true;
      }
      case Value::Type::Dictionary: {
        if (!get(&count) || count > static_cast<std::size_t>(end_ - at_)) return false;
        Dictionary fields;
        for (std::uint64_t i = 0; i < count; ++i) {
          String key;
          Value item;
          if (!text(&key) || !value(&item, depth + 1)) return false;
          fields.emplace_hint(fields.end(), std::move(key), std::move(item));
        }
        *out = std::move(fields);
        return true;
      }
    }
    return false;
  }

 private:
  template <class T>
  bool scalar(Value* out) {
    T number{};
    if (!get(&number)) return false;
    *out = number;
    return true;
  }

  const std::uint8_t* at_;
  const std::uint8_t* end_;
};

}  // namespace

Bytes EncodeValue(const Value& value) {
  Bytes out;
  Encode(out, value);
  return out;
}

std::optional<Value> DecodeValue(const Bytes& bytes) {
  Reader reader(bytes);
  Value value;
  if (!reader.value(&value, 0) || !reader.done()) return std::nullopt;
  return value;
}

}  // namespace phonepim::store_detail
