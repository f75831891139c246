// Text to bytes and back in every encoding the library speaks, the kinds of
// dynamic values, and property lists of them in memory and on disk, XML and
// binary, including the hostile shapes a damaged meta file may hold.
#include "phonepim/platform/PropertyList.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unicode/ustring.h>

#include <chrono>
#include <climits>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>

namespace phonepim {
namespace {

using namespace std::string_literals;
using E = StringEncoding;

// The library decodes UTF-8 itself; ICU is the reference. Random strings
// over the bytes where the rules have their edges.
TEST(string_from_utf8, agrees_with_icu_on_random_bytes) {
  static constexpr unsigned char kBytes[] = {
      'a',  '~',  0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1, 0xC2,
      0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF};
  std::mt19937 random(20261121);
  std::uniform_int_distribution<std::size_t> pick(0, std::size(kBytes) - 1);
  std::uniform_int_distribution<int> length(0, 20);
  int valid = 0;
  for (int round = 0; round < 200000; ++round) {
    std::string bytes(static_cast<std::size_t>(length(random)), '\0');
    for (char& byte : bytes) byte = static_cast<char>(kBytes[pick(random)]);
    std::u16string expected(bytes.size(), u'\0');
    int32_t expectedLength = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(expected.data(), static_cast<int32_t>(expected.size()), &expectedLength,
                  bytes.data(), static_cast<int32_t>(bytes.size()), &status);
    expected.resize(U_FAILURE(status) ? 0 : static_cast<std::size_t>(expectedLength));
    const std::optional<String> actual = StringFromUTF8(bytes);
    ASSERT_EQ(actual, U_FAILURE(status) ? std::nullopt : std::optional(expected)) << round;
    valid += actual.has_value();
  }
  // The alphabet must give both outcomes, or the test proves little.
  EXPECT_GT(valid, 10000);
}

TEST(bytes_from_string, encodes_or_gives_nothing_for_what_the_encoding_lacks) {
  const struct { StringEncoding encoding; String text; std::optional<std::string> expected; } rows[] = {
      {E::UTF8, u"a\0\u00E9\u65E5\U0001F600"s, "a\0\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80"s},
      // Unpaired surrogates have no form in any encoding.
      {E::UTF8, u"ok\xD83D", std::nullopt},
      {E::ASCII, u"END:VCARD\r\n\x7F", "END:VCARD\r\n\x7F"},
      {E::ASCII, u"\x80", std::nullopt},
      {E::Latin1, u"caf\u00E9\u00FF", "caf\xE9\xFF"},
      {E::Latin1, u"\u0100", std::nullopt},
      {E::ShiftJIS, u"", ""},
      {E::ShiftJIS, u"a\u65E5\u3042\uFF71", "a\x93\xFA\x82\xA0\xB1"},
      {E::ShiftJIS, u"\u20AC", std::nullopt},
      {E::UTF16LE, u"a\U0001F600", "a\0\x3D\xD8\x00\xDE"s},
      {E::UTF16BE, u"a\u65E5", "\0a\x65\xE5"s},
      {E::UTF16BE, u"a\xDC00", std::nullopt},
  };
  for (const auto& r : rows) EXPECT_EQ(BytesFromString(r.text, r.encoding), r.expected) << &r - rows;
}

// A narrow C string would otherwise turn into a boolean.
static_assert(!std::is_constructible_v<Value, const char*>);

TEST(value, names_its_kind_and_holds_every_integer_width_as_one) {
  const std::pair<Value, std::string_view> rows[] = {
      {Value(), "string"},       {Value(std::uint8_t{7}), "integer"}, {Value(0.5), "real"},  {Value(true), "boolean"},
      {Value(Date{1.5}), "date"}, {Value(Bytes{1}), "data"},           {Value(Array{}), "array"},
      {Value(Dictionary{}), "dictionary"}};
  for (const auto& [value, name] : rows) EXPECT_EQ(TypeName(value.type()), name);
  EXPECT_EQ(Value(UINT_MAX).get<std::int64_t>(), 4294967295LL);
  EXPECT_EQ(Value(char16_t{0xFFFF}), Value(0xFFFF));
}

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

TEST(property_list, keeps_every_type_and_nesting_up_to_the_limit_in_both_formats) {
  Value deepest = Array{};
  for (int i = 1; i < kPropertyListMaxDepth; ++i) deepest = Array{deepest};
  for (Format format : {Format::XML, Format::Binary}) {
    EXPECT_EQ(RoundTrip(EveryType(), format), EveryType());
    EXPECT_EQ(RoundTrip(Value(u"alone"), format), Value(u"alone"));
    EXPECT_EQ(RoundTrip(deepest, format), deepest);
  }
  EXPECT_TRUE(ValueFromPropertyList(NestedBinaryList(kPropertyListMaxDepth, 1)));
  EXPECT_TRUE(ValueFromPropertyList(XML(NestedXML(kPropertyListMaxDepth))));
  // Empty containers count as no level.
  std::string flat = "<array>";
  for (int i = 0; i < 1000; ++i) flat += i % 2 ? "<array/>" : "<dict />";
  const std::optional<Value> value = ValueFromPropertyList(XML(flat + "</array>"));
  EXPECT_EQ(value ? value->get<Array>().size() : 0u, 1000u);
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
  EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
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
