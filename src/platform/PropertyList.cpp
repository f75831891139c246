#include "phonepim/platform/PropertyList.h"

#include <fcntl.h>
#include <plist/plist.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace phonepim {
namespace {

// Property-list dates count seconds from 2001-01-01 00:00:00 UTC.
constexpr double kSecondsFrom1970To2001 = 978307200.0;

// 0001-01-01T00:00:00Z and 9999-12-31T23:59:59Z in seconds since 1970.
// libplist prints other years in a form it cannot read back.
constexpr double kEarliestDate = -62135596800.0;
constexpr double kLatestDate = 253402300799.0;

struct NodeDeleter {
  void operator()(void* node) const { plist_free(node); }
};
using NodePtr = std::unique_ptr<void, NodeDeleter>;

struct MallocDeleter {
  void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using MallocPtr = std::unique_ptr<T, MallocDeleter>;

struct BinaryBufferDeleter {
  void operator()(char* buffer) const { plist_to_bin_free(buffer); }
};
struct XMLBufferDeleter {
  void operator()(char* buffer) const { plist_to_xml_free(buffer); }
};

std::uint64_t ReadBigEndian(const std::uint8_t* bytes, unsigned size) {
  std::uint64_t value = 0;
  for (unsigned i = 0; i < size; ++i) value = (value << 8) | bytes[i];
  return value;
}

// ---------------------------------------------------------------------------
// The binary format, as far as the checks and the date bridge need it.

struct BinaryTrailer {
  unsigned offsetSize = 0;
  unsigned refSize = 0;
  std::uint64_t objectCount = 0;
  std::uint64_t topObject = 0;
  std::uint64_t offsetTableOffset = 0;
};

constexpr std::size_t kBinaryHeaderSize = 8;   // "bplist00"
constexpr std::size_t kBinaryTrailerSize = 32;

std::optional<BinaryTrailer> ReadTrailer(const std::uint8_t* data, std::size_t size) {
  if (size < kBinaryHeaderSize + kBinaryTrailerSize) return std::nullopt;
  const std::uint8_t* t = data + size - kBinaryTrailerSize;
  BinaryTrailer trailer;
  trailer.offsetSize = t[6];
  trailer.refSize = t[7];
  trailer.objectCount = ReadBigEndian(t + 8, 8);
  trailer.topObject = ReadBigEndian(t + 16, 8);
  trailer.offsetTableOffset = ReadBigEndian(t + 24, 8);
  const std::uint64_t tableEnd = size - kBinaryTrailerSize;
  if (trailer.offsetSize < 1 || trailer.offsetSize > 8) return std::nullopt;
  if (trailer.refSize < 1 || trailer.refSize > 8) return std::nullopt;
  if (trailer.objectCount == 0 || trailer.topObject >= trailer.objectCount) return std::nullopt;
  if (trailer.offsetTableOffset < kBinaryHeaderSize || trailer.offsetTableOffset > tableEnd) {
    return std::nullopt;
  }
  if (trailer.objectCount > (tableEnd - trailer.offsetTableOffset) / trailer.offsetSize) {
    return std::nullopt;
  }
  return trailer;
}

// The byte offset of an object; nothing when it lies outside the object area.
std::optional<std::uint64_t> ObjectOffset(const std::uint8_t* data,
                                          const BinaryTrailer& trailer,
                                          std::uint64_t object) {
  const std::uint64_t offset =
      ReadBigEndian(data + trailer.offsetTableOffset + object * trailer.offsetSize,
                    trailer.offsetSize);
  if (offset < kBinaryHeaderSize || offset >= trailer.offsetTableOffset) return std::nullopt;
  return offset;
}

bool IsContainer(unsigned type) { return type == 0xA || type == 0xC || type == 0xD; }

// The element count of the object at `offset` (its marker's low nibble, or a
// following integer object when that is 0xF) and where its contents start.
struct ObjectLength {
  std::uint64_t count;
  std::uint64_t contents;
};

std::optional<ObjectLength> ReadObjectLength(const std::uint8_t* data,
                                             const BinaryTrailer& trailer,
                                             std::uint64_t offset) {
  const std::uint64_t end = trailer.offsetTableOffset;
  std::uint64_t position = offset + 1;
  std::uint64_t count = data[offset] & 0x0F;
  if (count == 0x0F) {
    // A long count follows as an integer object of 1, 2, 4 or 8 bytes.
    if (position >= end || (data[position] >> 4) != 0x1) return std::nullopt;
    const unsigned width = 1u << (data[position] & 0x0F);
    if (width > 8 || end - position - 1 < width) return std::nullopt;
    count = ReadBigEndian(data + position + 1, width);
    position += 1 + width;
  }
  return ObjectLength{count, position};
}

struct ObjectRefs {
  const std::uint8_t* refs = nullptr;
  std::uint64_t count = 0;
};

// The references held by the container at `offset` (array, set or
// dictionary: a dictionary holds its key references, then its values').
std::optional<ObjectRefs> ContainerRefs(const std::uint8_t* data,
                                        const BinaryTrailer& trailer,
                                        std::uint64_t offset) {
  std::optional<ObjectLength> length = ReadObjectLength(data, trailer, offset);
  if (!length) return std::nullopt;
  if ((data[offset] >> 4) == 0xD) {
    if (length->count > std::numeric_limits<std::uint64_t>::max() / 2) return std::nullopt;
    length->count *= 2;
  }
  if (length->count > (trailer.offsetTableOffset - length->contents) / trailer.refSize) {
    return std::nullopt;
  }
  return ObjectRefs{data + length->contents, length->count};
}

// libplist asserts (and so aborts) when a dictionary key holds U+0000, and
// what it makes of a broken UTF-16 string is not specified. Strings must lie
// inside the object area, hold no U+0000 and, in UTF-16, pair their
// surrogates.
bool StringObjectIsSafe(const std::uint8_t* data, const BinaryTrailer& trailer,
                        std::uint64_t offset) {
  const unsigned type = data[offset] >> 4;
  const std::optional<ObjectLength> length = ReadObjectLength(data, trailer, offset);
  if (!length) return false;
  const std::uint64_t available = trailer.offsetTableOffset - length->contents;
  const std::uint8_t* text = data + length->contents;
  if (type == 0x5) {
    if (length->count > available) return false;
    return std::memchr(text, 0, length->count) == nullptr;
  }
  if (length->count > available / 2) return false;
  bool expectLow = false;
  for (std::uint64_t i = 0; i < length->count; ++i) {
    const auto unit = static_cast<std::uint16_t>(ReadBigEndian(text + 2 * i, 2));
    const bool high = unit >= 0xD800 && unit <= 0xDBFF;
    const bool low = unit >= 0xDC00 && unit <= 0xDFFF;
    if (unit == 0 || low != expectLow) return false;
    expectLow = high;
  }
  return !expectLow;
}

// libplist turns every reference of a binary list into a node of its own and
// walks nesting recursively. A few hundred bytes of arrays that share their
// children would expand into billions of nodes, a cycle never ends, and a
// long chain of nested arrays overflows the stack in the parser and again in
// plist_free. Walk the object graph first and refuse all three: the expanded
// tree of a list written by a normal writer (shared strings, never shared
// containers) has at most one node per reference, so at most one per byte.
bool BinaryShapeIsSafe(const std::uint8_t* data, std::size_t size) {
  const std::optional<BinaryTrailer> trailer = ReadTrailer(data, size);
  if (!trailer) return false;
  const std::uint64_t objectCount = trailer->objectCount;
  const std::uint64_t nodeBudget = static_cast<std::uint64_t>(size) + 1;

  enum : std::uint8_t { kUnvisited, kOnPath, kDone };
  std::vector<std::uint8_t> state(objectCount, kUnvisited);
  std::vector<std::uint64_t> nodes(objectCount, 0);  // size of the expanded subtree
  std::vector<std::uint16_t> depth(objectCount, 0);  // containers on the longest path

  struct Frame {
    std::uint64_t object;
    ObjectRefs refs;
    std::uint64_t next;
    std::uint64_t nodes;
    int depth;
  };
  std::vector<Frame> path;

  // Starts the visit of `object`; leaves are finished at once.
  auto enter = [&](std::uint64_t object) -> bool {
    const std::optional<std::uint64_t> offset = ObjectOffset(data, *trailer, object);
    if (!offset) return false;
    const unsigned type = data[*offset] >> 4;
    if (!IsContainer(type)) {
      if ((type == 0x5 || type == 0x6) && !StringObjectIsSafe(data, *trailer, *offset)) {
        return false;
      }
      state[object] = kDone;
      nodes[object] = 1;
      depth[object] = 0;
      return true;
    }
    const std::optional<ObjectRefs> refs = ContainerRefs(data, *trailer, *offset);
    if (!refs) return false;
    if (path.size() >= static_cast<std::size_t>(kPropertyListMaxDepth)) return false;
    state[object] = kOnPath;
    path.push_back(Frame{object, *refs, 0, 1, 1});
    return true;
  };

  if (!enter(trailer->topObject)) return false;
  while (!path.empty()) {
    Frame& frame = path.back();
    if (frame.next < frame.refs.count) {
      const std::uint64_t child =
          ReadBigEndian(frame.refs.refs + frame.next * trailer->refSize, trailer->refSize);
      ++frame.next;
      if (child >= objectCount || state[child] == kOnPath) return false;
      if (state[child] == kUnvisited) {
        if (!enter(child)) return false;
        if (state[child] != kDone) continue;  // a container: descend first
      }
      // A container met again (shared) adds its whole subtree once more.
      Frame& parent = path.back();
      parent.nodes += nodes[child];
      parent.depth = std::max(parent.depth, depth[child] + 1);
      if (parent.nodes > nodeBudget || parent.depth > kPropertyListMaxDepth) return false;
      continue;
    }
    const Frame finished = frame;
    path.pop_back();
    state[finished.object] = kDone;
    nodes[finished.object] = finished.nodes;
    depth[finished.object] = static_cast<std::uint16_t>(finished.depth);
    if (!path.empty()) {
      Frame& parent = path.back();
      parent.nodes += finished.nodes;
      parent.depth = std::max(parent.depth, finished.depth + 1);
      if (parent.nodes > nodeBudget || parent.depth > kPropertyListMaxDepth) return false;
    }
  }
  return true;
}

// ---------------------------------------------------------------------------
// XML nesting.

bool StartsWith(const char* data, std::size_t size, std::size_t at, std::string_view text) {
  return size - at >= text.size() && std::memcmp(data + at, text.data(), text.size()) == 0;
}

bool IsXMLSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Whether `data[at..]` (just behind a '<') opens an array or a dictionary.
// Only "<array/>" and "<dict />" count as empty: anything unusual inside the
// tag counts as an opening, so the estimate errs on the deep side.
bool OpensContainer(const char* data, std::size_t size, std::size_t at) {
  std::size_t end;
  if (StartsWith(data, size, at, "array")) {
    end = at + 5;
  } else if (StartsWith(data, size, at, "dict")) {
    end = at + 4;
  } else {
    return false;
  }
  if (end == size) return true;
  if (data[end] == '>') return true;
  if (!IsXMLSpace(data[end]) && data[end] != '/') return false;
  while (end < size && IsXMLSpace(data[end])) ++end;
  return !StartsWith(data, size, end, "/>");
}

bool ClosesContainer(const char* data, std::size_t size, std::size_t at) {
  for (std::string_view name : {std::string_view("/array"), std::string_view("/dict")}) {
    if (StartsWith(data, size, at, name)) {
      const std::size_t end = at + name.size();
      return end < size && (data[end] == '>' || IsXMLSpace(data[end]));
    }
  }
  return false;
}

// libplist's XML reader builds any depth, but freeing the tree recurses once
// per level; a deep enough file would overflow the stack there. This scan
// over-estimates the nesting whatever libplist makes of comments and CDATA:
// openings count everywhere, closings only in plain markup. A NUL byte, which
// no XML document holds, would silently cut a key short.
bool XMLShapeIsSafe(const char* data, std::size_t size) {
  if (std::memchr(data, 0, size) != nullptr) return false;
  enum class Mode { Markup, Comment, CData } mode = Mode::Markup;
  int depth = 0;
  for (std::size_t i = 0; i < size; ++i) {
    if (mode == Mode::Comment && StartsWith(data, size, i, "-->")) {
      mode = Mode::Markup;
      i += 2;
      continue;
    }
    if (mode == Mode::CData && StartsWith(data, size, i, "]]>")) {
      mode = Mode::Markup;
      i += 2;
      continue;
    }
    if (data[i] != '<') continue;
    if (mode == Mode::Markup) {
      if (StartsWith(data, size, i, "<!--")) {
        mode = Mode::Comment;
        i += 3;
        continue;
      }
      if (StartsWith(data, size, i, "<![CDATA[")) {
        mode = Mode::CData;
        i += 8;
        continue;
      }
      if (ClosesContainer(data, size, i + 1)) {
        if (depth > 0) --depth;
        continue;
      }
    }
    if (OpensContainer(data, size, i + 1) && ++depth > kPropertyListMaxDepth) return false;
  }
  return true;
}

// ---------------------------------------------------------------------------
// Dates and large integers.
//
// libplist 2.2 hands dates in and out as 32-bit seconds since 2001, which
// stops in 1933 and 2069 (a birthday in 1930 is ordinary) and loses the sign
// of fractions in the last second before 2001. Its binary format holds the
// date as a float64, so dates cross the library boundary as one-object
// binary lists.

plist_t NewDateNode(double secondsSince2001) {
  std::uint8_t list[kBinaryHeaderSize + 9 + 1 + kBinaryTrailerSize] = {};
  std::memcpy(list, "bplist00", kBinaryHeaderSize);
  list[8] = 0x33;  // date, 8 bytes
  const auto bits = std::bit_cast<std::uint64_t>(secondsSince2001);
  for (int i = 0; i < 8; ++i) list[9 + i] = static_cast<std::uint8_t>(bits >> (56 - 8 * i));
  list[17] = 8;  // offset table: the one object starts at byte 8
  std::uint8_t* trailer = list + 18;
  trailer[6] = 1;    // offset size
  trailer[7] = 1;    // reference size
  trailer[15] = 1;   // one object, number 0 is the top
  trailer[31] = 17;  // the offset table starts at byte 17
  plist_t node = nullptr;
  plist_from_bin(reinterpret_cast<const char*>(list), sizeof list, &node);
  if (node != nullptr && plist_get_node_type(node) != PLIST_DATE) {
    plist_free(node);
    return nullptr;
  }
  return node;
}

// The top object of `node` serialised alone: marker byte first.
std::optional<std::vector<std::uint8_t>> SerialisedObject(plist_t node) {
  char* raw = nullptr;
  std::uint32_t length = 0;
  plist_to_bin(node, &raw, &length);
  std::unique_ptr<char, BinaryBufferDeleter> buffer(raw);
  if (raw == nullptr) return std::nullopt;
  const auto* data = reinterpret_cast<const std::uint8_t*>(raw);
  const std::optional<BinaryTrailer> trailer = ReadTrailer(data, length);
  if (!trailer) return std::nullopt;
  const std::optional<std::uint64_t> offset = ObjectOffset(data, *trailer, trailer->topObject);
  if (!offset) return std::nullopt;
  return std::vector<std::uint8_t>(data + *offset, data + trailer->offsetTableOffset);
}

std::optional<double> DateNodeSecondsSince2001(plist_t node) {
  const auto object = SerialisedObject(node);
  if (!object || object->size() < 9 || (*object)[0] != 0x33) return std::nullopt;
  return std::bit_cast<double>(ReadBigEndian(object->data() + 1, 8));
}

// plist_get_uint_val gives the same bits for -1 and for 2^64-1; only the
// node's width (16 bytes in binary form) tells the unsigned value apart.
bool IsUnsignedAboveInt64(plist_t node) {
  const auto object = SerialisedObject(node);
  return object && !object->empty() && (*object)[0] == 0x14;
}

// ---------------------------------------------------------------------------
// Value -> node.

std::optional<std::string> StorableUTF8(const String& text) {
  std::optional<std::string> utf8 = UTF8FromString(text);
  // libplist keeps strings and keys as C strings.
  if (!utf8 || utf8->find('\0') != std::string::npos) return std::nullopt;
  return utf8;
}

NodePtr Encode(const Value& value, int level, bool wholeSecondDates) {
  switch (value.type()) {
    case Value::Type::String: {
      const std::optional<std::string> utf8 = StorableUTF8(value.get<String>());
      if (!utf8) return nullptr;
      return NodePtr(plist_new_string(utf8->c_str()));
    }
    case Value::Type::Integer:
      // Written back signed: libplist prints 64-bit nodes as signed integers.
      return NodePtr(plist_new_uint(static_cast<std::uint64_t>(value.get<std::int64_t>())));
    case Value::Type::Real:
      return NodePtr(plist_new_real(value.get<double>()));
    case Value::Type::Boolean:
      return NodePtr(plist_new_bool(value.get<bool>() ? 1 : 0));
    case Value::Type::Date: {
      double seconds = value.get<Date>().secondsSince1970;
      if (!(seconds >= kEarliestDate && seconds < kLatestDate + 1.0)) return nullptr;
      // libplist cuts XML dates towards 2001, which moves instants before
      // 2001 a second later; cut towards the past here instead.
      if (wholeSecondDates) seconds = std::floor(seconds);
      return NodePtr(NewDateNode(seconds - kSecondsFrom1970To2001));
    }
    case Value::Type::Data: {
      const Bytes& bytes = value.get<Bytes>();
      static const char kEmpty = 0;
      const char* start = bytes.empty() ? &kEmpty : reinterpret_cast<const char*>(bytes.data());
      return NodePtr(plist_new_data(start, bytes.size()));
    }
    case Value::Type::Array: {
      if (level >= kPropertyListMaxDepth) return nullptr;
      NodePtr array(plist_new_array());
      for (const Value& item : value.get<Array>()) {
        NodePtr child = Encode(item, level + 1, wholeSecondDates);
        if (!child) return nullptr;
        plist_array_append_item(array.get(), child.release());
      }
      return array;
    }
    case Value::Type::Dictionary: {
      if (level >= kPropertyListMaxDepth) return nullptr;
      NodePtr dictionary(plist_new_dict());
      for (const auto& [key, item] : value.get<Dictionary>()) {
        const std::optional<std::string> utf8Key = StorableUTF8(key);
        if (!utf8Key) return nullptr;
        NodePtr child = Encode(item, level + 1, wholeSecondDates);
        if (!child) return nullptr;
        plist_dict_set_item(dictionary.get(), utf8Key->c_str(), child.release());
      }
      return dictionary;
    }
  }
  return nullptr;
}

// ---------------------------------------------------------------------------
// Node -> value.

std::optional<Value> Decode(plist_t node, int level) {
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      std::uint8_t flag = 0;
      plist_get_bool_val(node, &flag);
      return Value(flag != 0);
    }
    case PLIST_UINT: {
      std::uint64_t bits = 0;
      plist_get_uint_val(node, &bits);
      if (bits > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) &&
          IsUnsignedAboveInt64(node)) {
        return Value(static_cast<double>(bits));
      }
      return Value(static_cast<std::int64_t>(bits));
    }
    case PLIST_REAL: {
      double real = 0;
      plist_get_real_val(node, &real);
      return Value(real);
    }
    case PLIST_STRING: {
      std::uint64_t length = 0;
      const char* text = plist_get_string_ptr(node, &length);
      if (text == nullptr) return Value(String());
      std::optional<String> string = StringFromUTF8(std::string_view(text, length));
      if (!string) return std::nullopt;
      return Value(std::move(*string));
    }
    case PLIST_DATE: {
      const std::optional<double> seconds = DateNodeSecondsSince2001(node);
      if (!seconds) return std::nullopt;
      return Value(Date{*seconds + kSecondsFrom1970To2001});
    }
    case PLIST_DATA: {
      std::uint64_t length = 0;
      const char* bytes = plist_get_data_ptr(node, &length);
      if (bytes == nullptr || length == 0) return Value(Bytes());
      const auto* start = reinterpret_cast<const std::uint8_t*>(bytes);
      return Value(Bytes(start, start + length));
    }
    case PLIST_ARRAY: {
      if (level >= kPropertyListMaxDepth) return std::nullopt;
      Array array;
      array.reserve(plist_array_get_size(node));
      plist_array_iter raw = nullptr;
      plist_array_new_iter(node, &raw);
      MallocPtr<void> iterator(raw);
      for (;;) {
        plist_t item = nullptr;
        plist_array_next_item(node, raw, &item);
        if (item == nullptr) break;
        std::optional<Value> child = Decode(item, level + 1);
        if (!child) return std::nullopt;
        array.push_back(std::move(*child));
      }
      return Value(std::move(array));
    }
    case PLIST_DICT: {
      if (level >= kPropertyListMaxDepth) return std::nullopt;
      Dictionary dictionary;
      plist_dict_iter raw = nullptr;
      plist_dict_new_iter(node, &raw);
      MallocPtr<void> iterator(raw);
      for (;;) {
        char* rawKey = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, raw, &rawKey, &item);
        MallocPtr<char> key(rawKey);
        if (item == nullptr) break;
        std::optional<String> keyText =
            StringFromUTF8(rawKey == nullptr ? std::string_view() : std::string_view(rawKey));
        if (!keyText) return std::nullopt;
        std::optional<Value> child = Decode(item, level + 1);
        if (!child) return std::nullopt;
        // Lists written from a Dictionary come in key order, so the end is
        // the right place almost always. A repeated key keeps the last value.
        const std::size_t before = dictionary.size();
        auto placed = dictionary.try_emplace(dictionary.end(), std::move(*keyText), std::move(*child));
        if (dictionary.size() == before) placed->second = std::move(*child);
      }
      return Value(std::move(dictionary));
    }
    case PLIST_KEY:
    case PLIST_UID:
    case PLIST_NONE:
      break;
  }
  return std::nullopt;
}

// ---------------------------------------------------------------------------
// Files.

bool WriteAll(int fd, const Bytes& bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    written += static_cast<std::size_t>(n);
  }
  return true;
}

}  // namespace

std::optional<Value> ValueFromPropertyList(const void* bytes, std::size_t size) {
  if (bytes == nullptr || size == 0 || size > std::numeric_limits<std::uint32_t>::max()) {
    return std::nullopt;
  }
  const char* data = static_cast<const char*>(bytes);
  const auto length = static_cast<std::uint32_t>(size);
  plist_t root = nullptr;
  if (StartsWith(data, size, 0, "bplist")) {
    if (!BinaryShapeIsSafe(reinterpret_cast<const std::uint8_t*>(data), size)) {
      return std::nullopt;
    }
    plist_from_bin(data, length, &root);
  } else {
    if (!XMLShapeIsSafe(data, size)) return std::nullopt;
    plist_from_xml(data, length, &root);
  }
  NodePtr tree(root);
  if (!tree) return std::nullopt;
  return Decode(tree.get(), 0);
}

std::optional<Value> ValueFromPropertyList(const Bytes& bytes) {
  return ValueFromPropertyList(bytes.data(), bytes.size());
}

std::optional<Bytes> PropertyListFromValue(const Value& value, PropertyListFormat format) {
  NodePtr root = Encode(value, 0, format == PropertyListFormat::XML);
  if (!root) return std::nullopt;
  char* raw = nullptr;
  std::uint32_t length = 0;
  Bytes out;
  if (format == PropertyListFormat::XML) {
    plist_to_xml(root.get(), &raw, &length);
    std::unique_ptr<char, XMLBufferDeleter> buffer(raw);
    if (raw == nullptr) return std::nullopt;
    out.assign(raw, raw + length);
  } else {
    plist_to_bin(root.get(), &raw, &length);
    std::unique_ptr<char, BinaryBufferDeleter> buffer(raw);
    if (raw == nullptr) return std::nullopt;
    out.assign(raw, raw + length);
  }
  return out;
}

std::optional<Value> ReadPropertyListFile(const std::filesystem::path& path) {
  // Non-blocking, so that a FIFO in the file's place cannot stall the open.
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return std::nullopt;
  struct stat status {};
  Bytes bytes;
  bool ok = ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode) &&
            static_cast<std::uint64_t>(status.st_size) <= std::numeric_limits<std::uint32_t>::max();
  if (ok) {
    bytes.resize(static_cast<std::size_t>(status.st_size));
    std::size_t done = 0;
    while (ok && done < bytes.size()) {
      const ssize_t n = ::read(fd, bytes.data() + done, bytes.size() - done);
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) {
        ok = false;
      } else {
        done += static_cast<std::size_t>(n);
      }
    }
  }
  ::close(fd);
  if (!ok) return std::nullopt;
  return ValueFromPropertyList(bytes);
}

bool WritePropertyListFile(const std::filesystem::path& path, const Value& value) {
  const std::optional<Bytes> bytes = PropertyListFromValue(value, PropertyListFormat::XML);
  return bytes && WriteFileAtomically(path, *bytes);
}

bool WriteFileAtomically(const std::filesystem::path& path, const Bytes& bytes) {
  if (path.empty()) return false;
  std::string temporary = path.string() + ".XXXXXX";
  const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
  if (fd < 0) return false;
  bool ok = WriteAll(fd, bytes) && ::fsync(fd) == 0;
  ok = ::close(fd) == 0 && ok;
  ok = ok && ::rename(temporary.c_str(), path.c_str()) == 0;
  if (!ok) {
    ::unlink(temporary.c_str());
    return false;
  }
  // Make the rename itself durable; a failure here loses nothing already
  // written, so it does not fail the call.
  const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
  const int folderFd = ::open(folder.c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY);
  if (folderFd >= 0) {
    ::fsync(folderFd);
    ::close(folderFd);
  }
  return true;
}

}  // namespace phonepim
