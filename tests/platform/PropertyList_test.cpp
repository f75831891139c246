// Property lists in memory and on disk, XML and binary, including the
// hostile shapes a damaged meta file may hold.
#include "phonepim/platform/PropertyList.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>

namespace phonepim {
namespace {

namespace fs = std::filesystem;
using Format = PropertyListFormat;

Bytes ToBytes(std::string_view text) { return Bytes(text.begin(), text.end()); }
std::string ToText(const Bytes& bytes) { return std::string(bytes.begin(), bytes.end()); }

// 1970-based instant of a UTC calendar time (proleptic Gregorian).
double Instant(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0) {
  const std::chrono::sys_days days{std::chrono::year{year} / month / day};
  return static_cast<double>(days.time_since_epoch().count()) * 86400 + hour * 3600 + minute * 60 + second;
}

std::optional<Value> RoundTrip(const Value& value, Format format) {
  const std::optional<Bytes> bytes = PropertyListFromValue(value, format);
  return bytes ? ValueFromPropertyList(*bytes) : std::nullopt;
}

constexpr std::string_view kXMLHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

Bytes XML(std::string_view body) { return ToBytes(std::string(kXMLHead) + std::string(body) + "</plist>"); }

// A value with every type, nested the way meta files nest. Whole-second
// dates across the range: libplist's own date calls stop in 1933 and 2069.
Value EveryType() {
  const Value subRecord = Dictionary{{u"Data", Dictionary{{u"value", u"+81 90"}, {u"contact", Array{Value(u"C-1")}}}},
                                     {u"State", u"Added"}};
  return Dictionary{
      {u"string", u"Gr\u00fc\u00dfe \u65e5\u672c \U0001F600 <&>\"'"},
      {u"", u""},
      {u"int64", Array{Value(std::numeric_limits<std::int64_t>::min()), Value(-42),
                       Value(std::numeric_limits<std::int64_t>::max())}},
      {u"real", Array{Value(0.1), Value(5e-324)}},
      {u"bool", Array{Value(true), Value(false)}},
      {u"dates", Array{Value(Date{Instant(1, 1, 1)}), Value(Date{Instant(1930, 5, 17, 12, 30, 1)}),
                       Value(Date{Instant(1969, 12, 31, 23, 59, 59)}), Value(Date{Instant(2070, 1, 1)}),
                       Value(Date{Instant(9999, 12, 31, 23, 59, 59)})}},
      {u"data", Array{Value(Bytes{0x00, 0xFF, 0x0D, 0x0A}), Value(Bytes{})}},
      {u"empty", Array{Value(Array{}), Value(Dictionary{})}},
      {u"records", Array{subRecord, subRecord}},
  };
}

TEST(property_list, keeps_every_type_and_nesting_in_both_formats) {
  Value deepest = Array{};
  for (int i = 1; i < kPropertyListMaxDepth; ++i) deepest = Array{deepest};
  for (Format format : {Format::XML, Format::Binary}) {
    EXPECT_EQ(RoundTrip(EveryType(), format), EveryType());
    EXPECT_EQ(RoundTrip(Value(u"alone"), format), Value(u"alone"));
    EXPECT_EQ(RoundTrip(deepest, format), deepest);
  }
}

TEST(property_list, binary_keeps_fractions_of_seconds_and_xml_cuts_to_the_second) {
  // Just before 2001 libplist's getter would lose the sign of the fraction.
  for (double instant : {Instant(2001, 1, 1) - 0.000001, Instant(1930, 5, 17) + 0.123456}) {
    EXPECT_EQ(RoundTrip(Date{instant}, Format::Binary), Value(Date{instant})) << instant;
  }
  const double instant = Instant(1969, 12, 31, 23, 59, 59) + 0.5;
  const std::optional<Bytes> xml = PropertyListFromValue(Date{instant}, Format::XML);
  EXPECT_NE(ToText(*xml).find("<date>1969-12-31T23:59:59Z</date>"), std::string::npos) << ToText(*xml);
  EXPECT_EQ(ValueFromPropertyList(*xml), Value(Date{std::floor(instant)}));
  EXPECT_EQ(ValueFromPropertyList(XML("<array><date>1888-02-29T12:00:00Z</date>"
                                      "<integer>18446744073709551615</integer></array>")),
            Value(Array{Value(Date{Instant(1888, 2, 29, 12)}), Value(18446744073709551615.0)}));
}

TEST(property_list, refuses_to_write_what_it_cannot_store_faithfully) {
  const String withNul(u"a\0b", 3);
  const String loneSurrogate(1, char16_t{0xD800});
  Value deep = Array{};
  for (int i = 0; i < kPropertyListMaxDepth; ++i) deep = Array{deep};
  const Value rows[] = {withNul, Dictionary{{withNul, 1}}, Array{Value(loneSurrogate)},
                        Dictionary{{loneSurrogate, 1}}, Date{std::nan("")},
                        Date{std::numeric_limits<double>::infinity()}, Date{Instant(10000, 1, 1)},
                        Date{Instant(1, 1, 1) - 1}, deep};
  for (const Value& v : rows) {
    EXPECT_FALSE(PropertyListFromValue(v, Format::XML) || PropertyListFromValue(v, Format::Binary)) << &v - rows;
  }
}

void Put(Bytes& out, std::uint64_t value, unsigned width) {
  for (unsigned i = width; i-- > 0;) out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

// A binary list of the given objects (marker and contents each, references
// and offsets `width` bytes wide); object 0 is the top.
Bytes BinaryList(const std::vector<Bytes>& objects, unsigned width = 1) {
  Bytes out = ToBytes("bplist00"), offsets;
  for (const Bytes& object : objects) {
    Put(offsets, out.size(), width);
    out.insert(out.end(), object.begin(), object.end());
  }
  const std::size_t table = out.size();
  out.insert(out.end(), offsets.begin(), offsets.end());
  Put(out, 0, 6);
  Put(out, width * 0x101u, 2);
  Put(out, objects.size(), 8);
  Put(out, 0, 8);
  Put(out, table, 8);
  return out;
}

// A binary list of `levels` arrays, object i holding object i+1 `fanOut`
// times; the last array is empty (or holds the first: a cycle).
Bytes NestedBinaryList(int levels, int fanOut, bool cycle = false) {
  std::vector<Bytes> objects;
  for (int i = 0; i < levels; ++i) {
    const bool last = i + 1 == levels;
    const int count = last && !cycle ? 0 : fanOut;
    Bytes array{static_cast<std::uint8_t>(0xA0 | count)};
    for (int j = 0; j < count; ++j) Put(array, last ? 0 : static_cast<unsigned>(i + 1), 2);
    objects.push_back(array);
  }
  return BinaryList(objects, 2);
}

std::string NestedXML(int levels) {
  std::string xml;
  for (int i = 0; i < levels; ++i) xml += "<array>";
  for (int i = 0; i < levels; ++i) xml += "</array>";
  return xml;
}

TEST(property_list, limits_nesting_and_counts_empty_containers_as_none) {
  EXPECT_TRUE(ValueFromPropertyList(NestedBinaryList(kPropertyListMaxDepth, 1)));
  EXPECT_TRUE(ValueFromPropertyList(XML(NestedXML(kPropertyListMaxDepth))));
  std::string flat = "<array>";
  for (int i = 0; i < 1000; ++i) flat += i % 2 ? "<array/>" : "<dict />";
  const std::optional<Value> value = ValueFromPropertyList(XML(flat + "</array>"));
  ASSERT_TRUE(value);
  EXPECT_EQ(value->get<Array>().size(), 1000u);
}

TEST(property_list, refuses_what_is_not_a_faithful_property_list) {
  const std::string full = ToText(*PropertyListFromValue(EveryType(), Format::XML));
  const Bytes binary = *PropertyListFromValue(EveryType(), Format::Binary);
  // Closings hidden in a comment do not make room for more openings.
  std::string hidden = "<array><!--";
  for (int i = 0; i < 300; ++i) hidden += "</array>";
  hidden += "-->" + NestedXML(300);
  const Bytes rows[] = {
      Bytes{},
      ToBytes("Hello, world"),
      ToBytes(full.substr(0, full.rfind("</dict>"))),
      Bytes(binary.begin(), binary.begin() + static_cast<std::ptrdiff_t>(binary.size() / 2)),
      Bytes(binary.begin(), binary.end() - 32),
      ToBytes("bplist00"),
      ToBytes("bplist15" + std::string(40, '\0')),
      XML("<string>\xC3\x28</string>"),
      XML("<dict><key>\xFF</key><true/></dict>"),
      XML(std::string("<dict><key>a\0b</key><true/></dict>", 34)),
      XML(NestedXML(kPropertyListMaxDepth + 1)),
      XML(NestedXML(200000)),
      XML(hidden),
      // libplist itself aborts on a key holding NUL: found by fuzzing.
      BinaryList({{0xD1, 1, 2}, {0x53, 'a', 0, 'b'}, {0x09}}),
      BinaryList({{0xD1, 1, 2}, {0x61, 0, 0}, {0x09}}),
      BinaryList({{0xA1, 1}, {0x62, 0xD8, 0x3D, 0, 'a'}}),
      BinaryList({{0xA1, 1}, {0x61, 0xDE, 0x00}}),
      BinaryList({{0xA1, 1}, {0x61, 0xD8, 0x3D}}),
      BinaryList({{0xA1, 1}, {0x5E, 'a'}}),
      // Too deep, 2^40 nodes through shared pairs, cycles.
      NestedBinaryList(kPropertyListMaxDepth + 1, 1),
      NestedBinaryList(40, 2),
      NestedBinaryList(1, 1, true),
      NestedBinaryList(3, 1, true),
  };
  for (const Bytes& bytes : rows) EXPECT_FALSE(ValueFromPropertyList(bytes)) << &bytes - rows;
  // Offsets and references of one to eight bytes only.
  for (const std::size_t field : {6, 7}) {
    Bytes list = BinaryList({{0x08}});
    list[list.size() - 32 + field] = 9;
    EXPECT_FALSE(ValueFromPropertyList(list)) << field;
  }
  EXPECT_FALSE(ValueFromPropertyList(nullptr, 10));
}

TEST(property_list_file, is_replaced_whole_or_not_at_all) {
  std::string pattern = (fs::temp_directory_path() / "phonepim-plist-XXXXXX").string();
  ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
  const fs::path folder = pattern, path = folder / "table.plist";
  ASSERT_TRUE(WritePropertyListFile(path, Dictionary{{u"old", 1}}));
  ASSERT_TRUE(WritePropertyListFile(path, EveryType()));
  EXPECT_EQ(ReadPropertyListFile(path), EveryType());
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
  // A failed write keeps the old file and leaves nothing behind.
  EXPECT_FALSE(WritePropertyListFile(path, Dictionary{{u"bad", String(u"\0", 1)}}));
  EXPECT_FALSE(WritePropertyListFile(folder / "missing" / "table.plist", Dictionary{}));
  fs::create_directory(folder / "a folder");
  EXPECT_FALSE(WritePropertyListFile(folder / "a folder", Dictionary{}));
  EXPECT_EQ(ReadPropertyListFile(path), EveryType());
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 2);
  EXPECT_FALSE(ReadPropertyListFile(folder));
  std::ofstream(folder / "empty.plist").close();
  EXPECT_FALSE(ReadPropertyListFile(folder / "empty.plist"));
  // A FIFO must not block the reader waiting for a writer.
  ASSERT_EQ(::mkfifo((folder / "fifo.plist").c_str(), 0600), 0);
  EXPECT_FALSE(ReadPropertyListFile(folder / "fifo.plist"));
  fs::remove_all(folder);
}

}  // namespace
}  // namespace phonepim
