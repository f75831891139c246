#include "phonepim/text/NSStringCustom.h"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <array>
#include <algorithm>
#include <climits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace phonepim {
namespace {

// ---------------------------------------------------------------------------
// The UTF-8 view of the byte-based helpers (TrimLeft, Tokenize).

bool IsLead(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsTrail(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// The code point that starts at s[i]; advances i past it. An unpaired
// surrogate is returned as itself.
char32_t NextCodePoint(const String& s, std::size_t& i) {
  const char16_t unit = s[i++];
  if (IsLead(unit) && i < s.size() && IsTrail(s[i])) {
    const char16_t trail = s[i++];
    return 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) +
           (static_cast<char32_t>(trail) - 0xDC00);
  }
  return unit;
}

std::size_t Utf8Size(char32_t c) {
  if (c < 0x80) return 1;
  if (c < 0x800) return 2;
  if (c < 0x10000) return 3;
  return 4;
}

// The receiver's UTF-8 bytes. An unpaired surrogate has no UTF-8 form; it
// takes the three-byte pattern of its code point so that it reads back as
// the same unit instead of making the whole string unusable.
std::string Utf8Bytes(const String& s) {
  std::size_t size = 0;
  for (std::size_t i = 0; i < s.size();) size += Utf8Size(NextCodePoint(s, i));
  std::string out(size, '\0');
  std::size_t o = 0;
  auto put = [&out, &o](char32_t byte) { out[o++] = static_cast<char>(byte); };
  for (std::size_t i = 0; i < s.size();) {
    const char32_t c = NextCodePoint(s, i);
    switch (Utf8Size(c)) {
      case 1:
        put(c);
        break;
      case 2:
        put(0xC0 | (c >> 6));
        put(0x80 | (c & 0x3F));
        break;
      case 3:
        put(0xE0 | (c >> 12));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
        break;
      default:
        put(0xF0 | (c >> 18));
        put(0x80 | ((c >> 12) & 0x3F));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
        break;
    }
  }
  return out;
}

// A string made from a piece of those bytes the way a C string is read: up
// to the first NUL. A piece that is not UTF-8 (cut inside a character, which
// only a delimiter set holding a non-ASCII byte can do) gives the empty
// string, as the platform gives no string for it. The three-byte surrogate
// patterns written by Utf8Bytes are read back.
String StringFromCBytes(std::string_view bytes) {
  bytes = bytes.substr(0, bytes.find('\0'));
  String out;
  out.reserve(bytes.size());
  std::size_t i = 0;
  while (i < bytes.size()) {
    const auto lead = static_cast<unsigned char>(bytes[i]);
    if (lead < 0x80) {
      out.push_back(lead);
      ++i;
      continue;
    }
    // Sequence length, payload bits of the lead byte and the smallest code
    // point the length may carry (anything below is an overlong form).
    struct Form {
      std::size_t length;
      char32_t payload;
      char32_t smallest;
    };
    Form form;
    if ((lead & 0xE0) == 0xC0) {
      form = {2, lead & 0x1Fu, 0x80};
    } else if ((lead & 0xF0) == 0xE0) {
      form = {3, lead & 0x0Fu, 0x800};
    } else if ((lead & 0xF8) == 0xF0) {
      form = {4, lead & 0x07u, 0x10000};
    } else {
      return String();
    }
    const std::size_t length = form.length;
    char32_t c = form.payload;
    const char32_t smallest = form.smallest;
    if (bytes.size() - i < length) return String();
    for (std::size_t k = 1; k < length; ++k) {
      const auto trail = static_cast<unsigned char>(bytes[i + k]);
      if ((trail & 0xC0) != 0x80) return String();
      c = (c << 6) | (trail & 0x3Fu);
    }
    if (c < smallest || c > 0x10FFFF) return String();
    if (c >= 0x10000) {
      out.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(c));
    }
    i += length;
  }
  return out;
}

// The bytes of a C string, as a set. A null pointer is the empty set.
class ByteSet {
 public:
  explicit ByteSet(const char* chars) {
    if (chars == nullptr) return;
    for (; *chars != '\0'; ++chars) member_[static_cast<unsigned char>(*chars)] = true;
  }
  bool contains(char byte) const { return member_[static_cast<unsigned char>(byte)]; }

 private:
  std::array<bool, 256> member_{};
};

// Both TrimLeft variants. The skip counter is a size_t: an 8-bit counter
// would wrap after 127 leading bytes and hand back text from the wrong
// place.
String TrimLeftBytes(const String& s, const ByteSet& set) {
  const std::string bytes = Utf8Bytes(s);
  std::size_t skipped = 0;
  while (skipped < bytes.size() && set.contains(bytes[skipped])) ++skipped;
  if (skipped < bytes.size()) {
    return StringFromCBytes(std::string_view(bytes).substr(skipped));
  }
  return String();
}

// ---------------------------------------------------------------------------
// Character sets for Find and ReverseFind.

// The code points of `chars`; a surrogate pair is one member, an unpaired
// surrogate is a member of its own.
class CodePointSet {
 public:
  explicit CodePointSet(const String& chars) {
    members_.reserve(chars.size());
    for (std::size_t i = 0; i < chars.size();) members_.push_back(NextCodePoint(chars, i));
    std::sort(members_.begin(), members_.end());
  }
  bool contains(char32_t c) const {
    return std::binary_search(members_.begin(), members_.end(), c);
  }
  bool empty() const { return members_.empty(); }

 private:
  std::vector<char32_t> members_;
};

int FindFrom(const String& s, const String& chars, std::size_t from) {
  const CodePointSet set(chars);
  if (set.empty()) return kNotFound;
  for (std::size_t i = from; i < s.size();) {
    const std::size_t start = i;
    if (set.contains(NextCodePoint(s, i))) return static_cast<int>(start);
  }
  return kNotFound;
}

// ---------------------------------------------------------------------------

int Sign(int value) { return (value > 0) - (value < 0); }

int32_t IcuLength(const String& s) {
  if (s.size() > static_cast<std::size_t>(INT32_MAX)) {
    throw std::length_error("string too long for a text operation");
  }
  return static_cast<int32_t>(s.size());
}

// The platform's range check: [start, start + length) must lie inside the
// string; a range ending exactly at the end is fine.
void CheckRange(const String& s, int start, int length, const char* operation) {
  if (start < 0 || length < 0 || static_cast<std::size_t>(start) > s.size() ||
      static_cast<std::size_t>(length) > s.size() - static_cast<std::size_t>(start)) {
    throw std::out_of_range(std::string(operation) + ": range {" + std::to_string(start) +
                            ", " + std::to_string(length) + "} out of bounds; string length " +
                            std::to_string(s.size()));
  }
}

}  // namespace

String TrimLeft(const String& s) { return TrimLeftBytes(s, ByteSet("\t \r\n")); }

String TrimLeft(const String& s, const char* chars) {
  return TrimLeftBytes(s, ByteSet(chars));
}

String Trim(const String& s) {
  // Surrogates are never space separators, so testing units is enough.
  auto is_space = [](char16_t unit) {
    return unit == u'\t' || u_charType(unit) == U_SPACE_SEPARATOR;
  };
  std::size_t begin = 0;
  std::size_t end = s.size();
  while (begin < end && is_space(s[begin])) ++begin;
  while (end > begin && is_space(s[end - 1])) --end;
  return s.substr(begin, end - begin);
}

bool IsEmpty(const String& s) { return s.empty(); }

String MakeUpper(const String& s) {
  if (s.empty()) return String();
  const int32_t length = IcuLength(s);
  // Full mappings can grow the text ("ß" becomes "SS"); retry once with the
  // size ICU reports.
  String out(s.size(), u'\0');
  UErrorCode status = U_ZERO_ERROR;
  int32_t needed = u_strToUpper(out.data(), static_cast<int32_t>(out.size()), s.data(),
                                length, "", &status);
  if (status == U_BUFFER_OVERFLOW_ERROR) {
    out.assign(static_cast<std::size_t>(needed), u'\0');
    status = U_ZERO_ERROR;
    needed = u_strToUpper(out.data(), static_cast<int32_t>(out.size()), s.data(), length,
                          "", &status);
  }
  if (U_FAILURE(status)) throw std::runtime_error("upper-casing failed");
  out.resize(static_cast<std::size_t>(needed));
  return out;
}

int Compare(const String& s, const String& other) {
  // Case folding first, then canonical decomposition: "é" precomposed and
  // "e" + combining acute are the same text, as they are to the platform.
  UErrorCode status = U_ZERO_ERROR;
  const int32_t result = unorm_compare(s.data(), IcuLength(s), other.data(),
                                       IcuLength(other),
                                       U_COMPARE_IGNORE_CASE | U_FOLD_CASE_DEFAULT, &status);
  if (U_FAILURE(status)) return CompareNoCase(s, other);
  return Sign(result);
}

int CompareNoCase(const String& s, const String& other) { return Sign(s.compare(other)); }

String Tokenize(const String& s, const char* delimiters, String* next) {
  const ByteSet set(delimiters);
  const std::string bytes = Utf8Bytes(s);
  const auto delimiter = std::find_if(bytes.begin(), bytes.end(),
                                      [&set](char byte) { return set.contains(byte); });
  if (delimiter == bytes.end()) {
    // The last field is handed back as the remainder, never as the token.
    if (next != nullptr) *next = s;
    return String();
  }
  const std::string_view view(bytes);
  const auto at = static_cast<std::size_t>(delimiter - bytes.begin());
  String token = StringFromCBytes(view.substr(0, at));
  String remainder = StringFromCBytes(view.substr(at + 1));
  // `next` may be the receiver itself: it is written only now.
  if (next != nullptr) *next = std::move(remainder);
  return token;
}

String Mid(const String& s, int start, int length) {
  CheckRange(s, start, length, "Mid");
  return s.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length));
}

String Mid(const String& s, int start) {
  CheckRange(s, start, 0, "Mid");
  return s.substr(static_cast<std::size_t>(start));
}

int Find(const String& s, const String& chars) { return FindFrom(s, chars, 0); }

int Find(const String& s, const String& chars, int index) {
  CheckRange(s, index, 0, "Find");
  return FindFrom(s, chars, static_cast<std::size_t>(index));
}

int ReverseFind(const String& s, const String& chars) {
  const CodePointSet set(chars);
  if (set.empty()) return kNotFound;
  for (std::size_t end = s.size(); end > 0;) {
    // Step back over one code point: a trail unit takes its lead with it.
    std::size_t start = end - 1;
    if (IsTrail(s[start]) && start > 0 && IsLead(s[start - 1])) --start;
    std::size_t i = start;
    if (set.contains(NextCodePoint(s, i))) return static_cast<int>(start);
    end = start;
  }
  return kNotFound;
}

int GetLength(const String& s) { return static_cast<int>(s.size()); }

std::optional<String> stringWithBytes(const void* bytes, std::size_t length) {
  if (length == 0) return String();
  if (bytes == nullptr) return std::nullopt;
  return StringFromBytes(bytes, length, StringEncoding::UTF8);
}

void Empty(String& s) { s.clear(); }

void Replace(String& s, const String& target, const String& replacement) {
  if (target.empty()) return;
  std::size_t found = s.find(target);
  if (found == String::npos) return;
  // Built into a new string: `target` or `replacement` may be `s` itself.
  String out;
  out.reserve(s.size());
  std::size_t from = 0;
  while (found != String::npos) {
    out.append(s, from, found - from);
    out.append(replacement);
    from = found + target.size();
    found = s.find(target, from);
  }
  out.append(s, from, String::npos);
  s = std::move(out);
}

void set(String& s, char c, int index) {
  CheckRange(s, index, 1, "set");
  const std::optional<String> piece = stringWithBytes(&c, 1);
  s.replace(static_cast<std::size_t>(index), 1, piece.value_or(String()));
}

void deleteAtIndex(String& s, int index, int length) {
  CheckRange(s, index, length, "deleteAtIndex");
  s.erase(static_cast<std::size_t>(index), static_cast<std::size_t>(length));
}

void deleteAtIndex(String& s, int index) { deleteAtIndex(s, index, 1); }

}  // namespace phonepim
