#include "phonepim/platform/PropertyList.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace phonepim {
namespace {

namespace fs = std::filesystem;

Bytes ToBytes(std::string_view text) { return Bytes(text.begin(), text.end()); }
std::string ToText(const Bytes& bytes) { return std::string(bytes.begin(), bytes.end()); }

// 1970-based instant of a UTC calendar time.
double Instant(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  // Days from civil (proleptic Gregorian), valid for any year.
  const int y = year - (month <= 2 ? 1 : 0);
  const int era = (y >= 0 ? y : y - 399) / 400;
  const int yoe = y - era * 400;
  const int doy = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const int doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  const double days = static_cast<double>(era) * 146097 + doe - 719468;
  return days * 86400 + hour * 3600 + minute * 60 + second;
}

Value Parse(std::string_view text) {
  std::optional<Value> value = ValueFromPropertyList(text.data(), text.size());
  EXPECT_TRUE(value.has_value()) << text;
  return value.value_or(Value());
}

Value RoundTrip(const Value& value, PropertyListFormat format) {
  std::optional<Bytes> bytes = PropertyListFromValue(value, format);
  EXPECT_TRUE(bytes.has_value());
  if (!bytes) return Value();
  std::optional<Value> back = ValueFromPropertyList(*bytes);
  EXPECT_TRUE(back.has_value());
  return back.value_or(Value());
}

constexpr std::string_view kXMLHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

// A value with every type, nested the way meta files nest.
Value EveryType() {
  Dictionary subRecord{{u"Data", Dictionary{{u"value", u"+81 90 1234 5678"},
                                            {u"type", u"mobile"},
                                            {u"contact", Array{Value(u"C-1")}}}},
                       {u"Link", u"Linked"},
                       {u"State", u"Added"},
                       {u"identifier", u"5E1C0A42-8D2B-4B8E-9C53-0B6A8C1F3D20"}};
  return Dictionary{
      {u"string", u"Gr\u00fc\u00dfe \u65e5\u672c \U0001F600 <&>\"'"},
      {u"empty string", u""},
      {u"", u"empty key"},
      {u"integer", std::int64_t{-42}},
      {u"int64 min", std::numeric_limits<std::int64_t>::min()},
      {u"int64 max", std::numeric_limits<std::int64_t>::max()},
      {u"real", 0.1},
      {u"tiny real", 5e-324},
      {u"true", true},
      {u"false", false},
      {u"date", Date{Instant(1930, 5, 17)}},
      {u"data", Bytes{0x00, 0xFF, 0x10, 0x0D, 0x0A}},
      {u"empty data", Bytes{}},
      {u"empty array", Array{}},
      {u"empty dictionary", Dictionary{}},
      {u"phone numbers", Array{subRecord, subRecord}},
      {u"mixed", Array{Value(1), Value(u"two"), Value(3.5), Value(Array{Value(false)})}},
  };
}

class PropertyListRoundTrip : public testing::TestWithParam<PropertyListFormat> {};

TEST_P(PropertyListRoundTrip, keeps_every_type_and_nesting) {
  const Value value = EveryType();
  EXPECT_EQ(RoundTrip(value, GetParam()), value);
}

TEST_P(PropertyListRoundTrip, keeps_a_scalar_root) {
  EXPECT_EQ(RoundTrip(Value(u"alone"), GetParam()), Value(u"alone"));
  EXPECT_EQ(RoundTrip(Value(std::int64_t{-7}), GetParam()), Value(-7));
}

TEST_P(PropertyListRoundTrip, keeps_whole_second_dates_across_the_32_bit_range) {
  // libplist's own date calls stop in 1933 and 2069.
  for (double instant : {Instant(1, 1, 1), Instant(1900, 1, 1), Instant(1930, 5, 17, 12, 30, 1),
                         Instant(1969, 12, 31, 23, 59, 59), Instant(2001, 1, 1),
                         Instant(2000, 12, 31, 23, 59, 59), Instant(2070, 1, 1),
                         Instant(9999, 12, 31, 23, 59, 59)}) {
    EXPECT_EQ(RoundTrip(Date{instant}, GetParam()), Value(Date{instant})) << instant;
  }
}

INSTANTIATE_TEST_SUITE_P(formats, PropertyListRoundTrip,
                         testing::Values(PropertyListFormat::XML, PropertyListFormat::Binary),
                         [](const auto& info) {
                           return info.param == PropertyListFormat::XML ? "xml" : "binary";
                         });

TEST(property_list_dates, binary_keeps_microseconds_on_both_sides_of_2001) {
  // Just before 2001 libplist's getter would lose the sign of the fraction.
  for (double instant : {Instant(2000, 12, 31, 23, 59, 59) + 0.25,
                         Instant(2001, 1, 1) - 0.000001, Instant(2001, 1, 1) + 0.5,
                         Instant(1930, 5, 17) + 0.123456, Instant(2024, 2, 29, 8, 0, 0) + 0.999999,
                         Instant(2100, 1, 1) + 0.000123}) {
    EXPECT_EQ(RoundTrip(Date{instant}, PropertyListFormat::Binary), Value(Date{instant}))
        << std::to_string(instant);
  }
}

TEST(property_list_dates, xml_cuts_to_the_second_that_holds_the_instant) {
  struct Case {
    double instant;
    double expected;
    std::string_view text;
  };
  for (const Case& c : {
           Case{Instant(2004, 11, 29, 21, 33, 9) + 0.75, Instant(2004, 11, 29, 21, 33, 9),
                "<date>2004-11-29T21:33:09Z</date>"},
           Case{Instant(1900, 1, 1) + 0.000001, Instant(1900, 1, 1),
                "<date>1900-01-01T00:00:00Z</date>"},
           Case{Instant(1969, 12, 31, 23, 59, 59) + 0.5, Instant(1969, 12, 31, 23, 59, 59),
                "<date>1969-12-31T23:59:59Z</date>"},
       }) {
    const std::optional<Bytes> xml = PropertyListFromValue(Date{c.instant}, PropertyListFormat::XML);
    ASSERT_TRUE(xml);
    EXPECT_NE(ToText(*xml).find(c.text), std::string::npos) << ToText(*xml);
    EXPECT_EQ(ValueFromPropertyList(*xml), Value(Date{c.expected}));
  }
}

TEST(property_list_dates, reads_xml_dates_outside_the_32_bit_range) {
  const std::string xml = std::string(kXMLHead) +
                          "<array><date>1888-02-29T12:00:00Z</date>"
                          "<date>2200-07-04T00:00:01Z</date></array></plist>";
  EXPECT_EQ(Parse(xml), Value(Array{Value(Date{Instant(1888, 2, 29, 12)}),
                                    Value(Date{Instant(2200, 7, 4, 0, 0, 1)})}));
}

TEST(property_list_writing, produces_exact_xml) {
  const Value value = Dictionary{{u"b", Array{Value(-5), Value(true)}},
                                 {u"a", u"x<&>y"},
                                 {u"c", Bytes{'h', 'i'}}};
  const std::optional<Bytes> xml = PropertyListFromValue(value, PropertyListFormat::XML);
  ASSERT_TRUE(xml);
  EXPECT_EQ(ToText(*xml), std::string(kXMLHead) +
                              "<dict>\n"
                              "\t<key>a</key>\n"
                              "\t<string>x&lt;&amp;&gt;y</string>\n"
                              "\t<key>b</key>\n"
                              "\t<array>\n"
                              "\t\t<integer>-5</integer>\n"
                              "\t\t<true/>\n"
                              "\t</array>\n"
                              "\t<key>c</key>\n"
                              "\t<data>\n"
                              "\taGk=\n"
                              "\t</data>\n"
                              "</dict>\n"
                              "</plist>\n");
}

TEST(property_list_writing, refuses_values_it_cannot_store_faithfully) {
  const String withNul(u"a\0b", 3);
  const String loneSurrogate(1, char16_t{0xD800});
  Value deep = Array{};
  for (int i = 1; i < kPropertyListMaxDepth + 1; ++i) deep = Array{deep};
  const struct {
    const char* what;
    Value value;
  } cases[] = {
      {"NUL in a string", withNul},
      {"NUL in a key", Dictionary{{withNul, 1}}},
      {"lone surrogate in a string", Array{Value(loneSurrogate)}},
      {"lone surrogate in a key", Dictionary{{loneSurrogate, 1}}},
      {"date not a number", Date{std::nan("")}},
      {"infinite date", Date{std::numeric_limits<double>::infinity()}},
      {"date in year 10000", Date{Instant(10000, 1, 1)}},
      {"date before year 1", Date{Instant(1, 1, 1) - 1}},
      {"nesting too deep", deep},
  };
  for (const auto& c : cases) {
    for (PropertyListFormat format : {PropertyListFormat::XML, PropertyListFormat::Binary}) {
      EXPECT_FALSE(PropertyListFromValue(c.value, format)) << c.what;
    }
  }
}

TEST(property_list_writing, accepts_the_deepest_allowed_nesting) {
  Value deep = Array{};
  for (int i = 1; i < kPropertyListMaxDepth; ++i) deep = Array{deep};
  for (PropertyListFormat format : {PropertyListFormat::XML, PropertyListFormat::Binary}) {
    EXPECT_EQ(RoundTrip(deep, format), deep);
  }
}

TEST(property_list_reading, maps_integers_to_64_bit_signed) {
  const std::string xml = std::string(kXMLHead) +
                          "<array><integer>-1</integer>"
                          "<integer>9223372036854775807</integer>"
                          "<integer>-9223372036854775808</integer>"
                          "<integer>18446744073709551615</integer>"
                          "<integer>9223372036854775808</integer></array></plist>";
  EXPECT_EQ(Parse(xml), Value(Array{Value(-1), Value(std::numeric_limits<std::int64_t>::max()),
                                    Value(std::numeric_limits<std::int64_t>::min()),
                                    Value(18446744073709551615.0), Value(9223372036854775808.0)}));
}

TEST(property_list_reading, reads_a_hand_made_binary_list) {
  // {"a": 1, "b": ["c", "c"]}: "c" is stored once and referenced twice, as
  // writers share equal strings.
  const std::uint8_t bytes[] = {
      'b', 'p', 'l', 'i', 's', 't', '0', '0',
      0xD2, 1, 2, 3, 4,        // 8: dict, keys 1 2, values 3 4
      0x51, 'a',               // 13
      0x51, 'b',               // 15
      0x10, 0x01,              // 17: integer 1
      0xA2, 5, 5,              // 19: array [5, 5]
      0x51, 'c',               // 22
      8, 13, 15, 17, 19, 22,   // 24: offset table
      0, 0, 0, 0, 0, 0, 1, 1,  // trailer: offset size 1, reference size 1
      0, 0, 0, 0, 0, 0, 0, 6,  // six objects
      0, 0, 0, 0, 0, 0, 0, 0,  // top object 0
      0, 0, 0, 0, 0, 0, 0, 24, // offset table at 24
  };
  EXPECT_EQ(ValueFromPropertyList(bytes, sizeof bytes),
            Value(Dictionary{{u"a", 1}, {u"b", Array{Value(u"c"), Value(u"c")}}}));
}

// A binary list of the given objects (marker and contents each, references
// one byte wide); object 0 is the top.
Bytes BinaryList(const std::vector<Bytes>& objects) {
  Bytes out = ToBytes("bplist00");
  Bytes offsets;
  for (const Bytes& object : objects) {
    offsets.push_back(static_cast<std::uint8_t>(out.size()));
    out.insert(out.end(), object.begin(), object.end());
  }
  const auto table = static_cast<std::uint8_t>(out.size());
  out.insert(out.end(), offsets.begin(), offsets.end());
  const Bytes trailer = {0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0,
                         static_cast<std::uint8_t>(objects.size()),
                         0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, table};
  out.insert(out.end(), trailer.begin(), trailer.end());
  return out;
}

TEST(property_list_reading, reads_utf16_strings_of_a_binary_list) {
  // {"k": "a😀"}: the value in UTF-16 with a surrogate pair.
  const Bytes list = BinaryList({{0xD1, 1, 2}, {0x51, 'k'}, {0x63, 0, 'a', 0xD8, 0x3D, 0xDE, 0x00}});
  EXPECT_EQ(ValueFromPropertyList(list), Value(Dictionary{{u"k", u"a\U0001F600"}}));
}

TEST(property_list_reading, refuses_strings_holding_nul_or_broken_utf16) {
  // libplist itself aborts on a key holding NUL: found by fuzzing.
  const struct {
    const char* what;
    Bytes bytes;
  } cases[] = {
      {"NUL in an ASCII key", BinaryList({{0xD1, 1, 2}, {0x53, 'a', 0, 'b'}, {0x09}})},
      {"NUL in a UTF-16 key", BinaryList({{0xD1, 1, 2}, {0x61, 0, 0}, {0x09}})},
      {"NUL in a value", BinaryList({{0xA1, 1}, {0x52, 'a', 0}})},
      {"a lone high surrogate", BinaryList({{0xA1, 1}, {0x62, 0xD8, 0x3D, 0, 'a'}})},
      {"a lone low surrogate", BinaryList({{0xA1, 1}, {0x61, 0xDE, 0x00}})},
      {"a high surrogate at the end", BinaryList({{0xA1, 1}, {0x61, 0xD8, 0x3D}})},
      {"a string running into the offset table", BinaryList({{0xA1, 1}, {0x5E, 'a'}})},
      {"a NUL byte in XML",
       ToBytes(std::string(kXMLHead) + std::string("<dict><key>a\0b</key><true/></dict></plist>", 42))},
  };
  for (const auto& c : cases) EXPECT_FALSE(ValueFromPropertyList(c.bytes)) << c.what;
}

// A binary list of `levels` arrays, object i holding object i+1 `fanOut`
// times; the last array is empty. Two-byte references and offsets.
Bytes NestedBinaryList(int levels, int fanOut, bool cycle = false) {
  Bytes out = ToBytes("bplist00");
  std::vector<std::uint16_t> offsets;
  for (int i = 0; i < levels; ++i) {
    offsets.push_back(static_cast<std::uint16_t>(out.size()));
    const bool last = i + 1 == levels;
    const int count = last && !cycle ? 0 : fanOut;
    const int child = last ? 0 : i + 1;
    out.push_back(static_cast<std::uint8_t>(0xA0 | count));
    for (int j = 0; j < count; ++j) {
      out.push_back(static_cast<std::uint8_t>(child >> 8));
      out.push_back(static_cast<std::uint8_t>(child));
    }
  }
  const std::size_t table = out.size();
  for (std::uint16_t offset : offsets) {
    out.push_back(static_cast<std::uint8_t>(offset >> 8));
    out.push_back(static_cast<std::uint8_t>(offset));
  }
  const std::uint8_t trailer[32] = {0, 0, 0, 0, 0, 0, 2, 2,
                                    0, 0, 0, 0, 0, 0, static_cast<std::uint8_t>(levels >> 8),
                                    static_cast<std::uint8_t>(levels),
                                    0, 0, 0, 0, 0, 0, 0, 0,
                                    0, 0, 0, 0, 0, 0, static_cast<std::uint8_t>(table >> 8),
                                    static_cast<std::uint8_t>(table)};
  out.insert(out.end(), std::begin(trailer), std::end(trailer));
  return out;
}

TEST(property_list_reading, takes_nested_binary_arrays_up_to_the_limit) {
  const std::optional<Value> value = ValueFromPropertyList(NestedBinaryList(kPropertyListMaxDepth, 1));
  ASSERT_TRUE(value);
  int depth = 0;
  for (const Value* v = &*value; v->is<Array>(); ++depth) {
    if (v->get<Array>().empty()) {
      ++depth;
      break;
    }
    v = &v->get<Array>()[0];
  }
  EXPECT_EQ(depth, kPropertyListMaxDepth);
}

TEST(property_list_reading, refuses_hostile_binary_shapes_quickly) {
  const struct {
    const char* what;
    Bytes bytes;
  } cases[] = {
      {"nesting one level too deep", NestedBinaryList(kPropertyListMaxDepth + 1, 1)},
      {"a chain of 40 shared pairs (2^40 nodes)", NestedBinaryList(40, 2)},
      {"an array holding itself", NestedBinaryList(1, 1, true)},
      {"a cycle of three arrays", NestedBinaryList(3, 1, true)},
  };
  for (const auto& c : cases) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(ValueFromPropertyList(c.bytes)) << c.what;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << c.what;
  }
}

std::string NestedXML(int levels, std::string_view open = "<array>",
                      std::string_view close = "</array>") {
  std::string xml(kXMLHead);
  for (int i = 0; i < levels; ++i) xml += open;
  for (int i = 0; i < levels; ++i) xml += close;
  return xml + "</plist>";
}

TEST(property_list_reading, limits_xml_nesting) {
  EXPECT_TRUE(ValueFromPropertyList(ToBytes(NestedXML(kPropertyListMaxDepth))));
  EXPECT_FALSE(ValueFromPropertyList(ToBytes(NestedXML(kPropertyListMaxDepth + 1))));
  EXPECT_FALSE(ValueFromPropertyList(ToBytes(NestedXML(200000))));
  // Closings hidden in a comment do not make room for more openings.
  std::string hidden(kXMLHead);
  hidden += "<array><!--";
  for (int i = 0; i < 300; ++i) hidden += "</array>";
  hidden += "-->";
  for (int i = 0; i < 300; ++i) hidden += "<array>";
  EXPECT_FALSE(ValueFromPropertyList(ToBytes(hidden)));
}

TEST(property_list_reading, does_not_count_empty_containers_as_nesting) {
  std::string xml(kXMLHead);
  xml += "<array>";
  for (int i = 0; i < 1000; ++i) xml += i % 2 ? "<array/>" : "<dict />";
  xml += "</array></plist>";
  const std::optional<Value> value = ValueFromPropertyList(ToBytes(xml));
  ASSERT_TRUE(value);
  EXPECT_EQ(value->get<Array>().size(), 1000u);
}

TEST(property_list_reading, refuses_what_is_not_a_property_list) {
  const std::string full = ToText(*PropertyListFromValue(EveryType(), PropertyListFormat::XML));
  const Bytes binary = *PropertyListFromValue(EveryType(), PropertyListFormat::Binary);
  const struct {
    const char* what;
    Bytes bytes;
  } cases[] = {
      {"nothing", Bytes{}},
      {"text", ToBytes("Hello, world")},
      {"half an XML list", ToBytes(full.substr(0, full.size() / 2))},
      {"XML cut before its last closing dict", ToBytes(full.substr(0, full.rfind("</dict>")))},
      {"half a binary list", Bytes(binary.begin(), binary.begin() + binary.size() / 2)},
      {"a binary list without its trailer", Bytes(binary.begin(), binary.end() - 32)},
      {"a bare binary header", ToBytes("bplist00")},
      {"a later binary version", ToBytes("bplist15" + std::string(40, '\0'))},
      {"invalid UTF-8 in a string",
       ToBytes(std::string(kXMLHead) + "<string>\xC3\x28</string></plist>")},
      {"invalid UTF-8 in a key",
       ToBytes(std::string(kXMLHead) + "<dict><key>\xFF</key><true/></dict></plist>")},
  };
  for (const auto& c : cases) EXPECT_FALSE(ValueFromPropertyList(c.bytes)) << c.what;
  EXPECT_FALSE(ValueFromPropertyList(nullptr, 10));
}

// ---------------------------------------------------------------------------
// Files.

class PropertyListFile : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "phonepim-plist-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::vector<std::string> FolderContents() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  fs::path folder_;
};

TEST_F(PropertyListFile, writes_xml_that_reads_back) {
  const fs::path path = folder_ / "table.plist";
  ASSERT_TRUE(WritePropertyListFile(path, EveryType()));
  std::ifstream in(path, std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  EXPECT_EQ(text.substr(0, kXMLHead.size()), kXMLHead);
  EXPECT_EQ(ReadPropertyListFile(path), EveryType());
  EXPECT_EQ(FolderContents(), std::vector<std::string>{"table.plist"});
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(PropertyListFile, replaces_an_existing_file) {
  const fs::path path = folder_ / "table.plist";
  ASSERT_TRUE(WritePropertyListFile(path, Dictionary{{u"old", 1}}));
  ASSERT_TRUE(WritePropertyListFile(path, Dictionary{{u"new", 2}}));
  EXPECT_EQ(ReadPropertyListFile(path), Value(Dictionary{{u"new", 2}}));
  EXPECT_EQ(FolderContents(), std::vector<std::string>{"table.plist"});
}

TEST_F(PropertyListFile, failed_write_keeps_the_old_file_and_leaves_nothing_behind) {
  const fs::path path = folder_ / "table.plist";
  ASSERT_TRUE(WritePropertyListFile(path, Dictionary{{u"old", 1}}));
  EXPECT_FALSE(WritePropertyListFile(path, Dictionary{{u"bad", String(u"\0", 1)}}));
  EXPECT_EQ(ReadPropertyListFile(path), Value(Dictionary{{u"old", 1}}));
  EXPECT_FALSE(WritePropertyListFile(folder_ / "missing" / "table.plist", Dictionary{}));
  fs::create_directory(folder_ / "a folder");
  EXPECT_FALSE(WritePropertyListFile(folder_ / "a folder", Dictionary{}));
  EXPECT_EQ(FolderContents(), (std::vector<std::string>{"a folder", "table.plist"}));
}

TEST_F(PropertyListFile, reading_gives_nothing_for_what_is_not_a_readable_list) {
  EXPECT_FALSE(ReadPropertyListFile(folder_ / "missing.plist"));
  EXPECT_FALSE(ReadPropertyListFile(folder_));
  std::ofstream(folder_ / "empty.plist").close();
  EXPECT_FALSE(ReadPropertyListFile(folder_ / "empty.plist"));
  // A FIFO must not block the reader waiting for a writer.
  const fs::path fifo = folder_ / "fifo.plist";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  EXPECT_FALSE(ReadPropertyListFile(fifo));
}

}  // namespace
}  // namespace phonepim
