// The vCard writer: the line builders, the writers of the contact's own
// fields, the speed-dial line and whole cards from Generate. The element
// writers are in vCardWriteElements_test.cpp.
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "model/AssertionPattern.h"
#include "phonepim/datetime/DateComponents.h"
#include "phonepim/encoding/Encoding.h"
#include "phonepim/model/CContact.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"
#include "vcard/vCardTestSupport.h"
#include "vcard/vCardWriterText.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;
using testing_support::BytesOf;
using testing_support::ScopedWriterDefaults;
using testing_support::Written;
using testing_vcard::Day;

class vcard_write : public ::testing::Test {
 protected:
  ScopedWriterDefaults defaults_;
};

// --- Ordinary text properties --------------------------------------------

// Each writer of a text property, on the same texts.
TEST_F(vcard_write, text_properties_are_plain_quoted_printable_or_escaped) {
  const struct {
    const char16_t* property;
    void (*writer)(String&, const std::optional<String>&);
  } writers[] = {{u"FN", vCard::AddFName},          {u"NICKNAME", vCard::AddNName},
                 {u"TITLE", vCard::AddTitle},       {u"ROLE", vCard::AddRole},
                 {u"NOTE", vCard::AddNote},         {u"X-HOBBY", vCard::AddHobby},
                 {u"X-ACCOUNT", vCard::AddAccount}, {u"X-SPOUSE", vCard::AddSpouse},
                 {u"X-CHILDREN", vCard::AddChildren}, {u"GN", vCard::AddGroupName},
                 {u"X-GDISPN", vCard::AddGroupDisplayName}};
  for (const auto& w : writers) {
    SCOPED_TRACE(ToDisplayUTF8(w.property));
    vCard::NonstandardEscChar(false);
    const auto Write = [&](const std::optional<String>& text) {
      String out;
      w.writer(out, text);
      return out;
    };
    const auto Line = [&](const String& rest) { return w.property + rest + u"\r\n"; };
    EXPECT_EQ(Write(std::nullopt), u"");
    EXPECT_EQ(Write(u""), u"");
    EXPECT_EQ(Write(u"a::b"), Line(u":a:b"));
    EXPECT_EQ(Write(u"a;b\\c"), Line(u":a;b\\c"));
    EXPECT_EQ(Write(u"J\u00F6rg Doe"),
              Line(u";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:J=C3=B6rg=20Doe"));
    EXPECT_EQ(Write(u"1+1=2"), Line(u";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:1+1=3D2"));
    EXPECT_EQ(Write(u"line\r\nnext"),
              Line(u";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:line=0D=0Anext"));
    vCard::NonstandardEscChar(true);
    EXPECT_EQ(Write(u"a;b\\c"), Line(u":a\\;b\\\\c"));
    EXPECT_EQ(Write(u"a b;c"), Line(u";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:a=20b\\;c"));
  }
}

// The writers encode without QPEncode's intermediate copies; the text must
// be what QPEncode gives.
TEST_F(vcard_write, values_are_encoded_as_QPEncode_does) {
  const String samples[] = {
      u"",
      u"plain",
      String(68, u'x'),
      String(69, u'x'),
      String(200, u'\u00E9'),
      u"tab\tin the middle" + String(70, u'\t') + u"and late",
      u"=_=.\r\n.line",
      u"\U0001F600 \u5C71\u7530 " + String(40, u'a'),
      String(u"\0nul", 4),
  };
  for (const String& sample : samples) {
    EXPECT_EQ(vcard_writer::EncodeText(sample, false), QPEncode(sample).value())
        << ToDisplayUTF8(sample);
  }
  const String lone = String(u"a") + char16_t(0xDC00);
  EXPECT_EQ(vcard_writer::EncodeText(lone, false), u"a=EF=BF=BD");
}

// --- N and SOUND ---------------------------------------------------------

CName TwoPartName(const String& family, const String& given) {
  CName name;
  name.SetName(family, 0);
  name.SetName(given, 1);
  return name;
}

TEST_F(vcard_write, AddRName_writes_the_reading_name) {
  const struct {
    const char* name;
    bool useReadingLastName;
    std::optional<String> first;
    std::optional<String> last;
    const char16_t* expected;
  } rows[] = {
      {"both_missing", true, std::nullopt, std::nullopt, u""},
      {"both_empty", true, u"", u"", u""},
      {"irmc_last_then_first", true, u"taro", u"yamada",
                        u"SOUND;X-IRMC-N:yamada;taro;;;\r\n"},
      {"irmc_first_only", true, u"taro", std::nullopt,
                        u"SOUND;X-IRMC-N:;taro;;;\r\n"},
      {"irmc_escapes_always", true, u"a;b", u"c\\d",
                        u"SOUND;X-IRMC-N:c\\\\d;a\\;b;;;\r\n"},
      {"irmc_quoted_printable", true, u"\u30BF\u30ED\u30A6", u"yamada",
                        u"SOUND;X-IRMC-N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:"
                        u"yamada;=E3=82=BF=E3=83=AD=E3=82=A6;;;\r\n"},
      {"plain_last_name_only", false, u"taro", u"yamada", u"SOUND:yamada\r\n"},
      {"plain_nothing_without_last_name", false, u"taro", u"", u""},
      {"plain_does_not_escape", false, u"", u"a;b", u"SOUND:a;b\r\n"},
      {"plain_quoted_printable", false, u"", u"y d",
                        u"SOUND;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:y=20d\r\n"},
  };
  for (const auto& c : rows) {
    vCard::UseReadingLastName(c.useReadingLastName);
    EXPECT_EQ(Written([&](String& out) { vCard::AddRName(out, c.first, c.last); }), c.expected)
        << c.name;
  }
}

// --- Dates ---------------------------------------------------------------

TEST_F(vcard_write, birthday_and_anniversary_write_the_same_value) {
  const struct {
    const char* name;
    std::optional<DateComponents> date;
    std::uint32_t type;
    const char16_t* value;  // null: nothing written
  } rows[] = {
      {"no_date", std::nullopt, 0, nullptr},
      {"plain", Day(2001, 2, 1), 0, u"20010201"},
      {"lunar", Day(1999, 12, 31), 1, u"19991231L"},
      {"type_2", Day(1999, 1, 1), 2, u"19990101Y"},
      {"type_3_has_no_suffix", Day(1999, 1, 1), 3, u"19990101"},
      {"negative_int_type_has_no_suffix", Day(1999, 1, 1), 0xFFFFFFFFu,
                               u"19990101"},
      {"padded", Day(5, 3, 4), 0, u"00050304"},
      {"undefined_month_prints_as_minus_one",
                               Day(2001, kUndefinedComponent, 9), 0, u"2001-109"},
  };
  for (const auto& c : rows) {
    const String birthday = Written([&](String& out) { vCard::AddBirtyDate(out, c.date, c.type); });
    const String anniversary =
        Written([&](String& out) { vCard::AddAnnivesaryDate(out, c.date, c.type); });
    EXPECT_EQ(birthday, c.value ? u"BDAY:" + String(c.value) + u"\r\n" : String()) << c.name;
    EXPECT_EQ(anniversary, c.value ? u"X-ANNIVERSARY:" + String(c.value) + u"\r\n" : String())
        << c.name;
  }
}

TEST(vcard_write_date_death, a_type_beyond_the_table_stops_the_writer) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  String out;
  EXPECT_DEATH(vCard::AddBirtyDate(out, Day(2001, 2, 1), 4),
               AssertionPattern("(int)birthDateType <= _countof(chTypes)"));
  EXPECT_DEATH(vCard::AddAnnivesaryDate(out, Day(2001, 2, 1), 0x7FFFFFFF),
               AssertionPattern("(int)AnniversaryDateType <= _countof(chTypes)"));
}

// --- Line builders and one-line writers ---------------------------------

// One writer call on an empty text (or on the text `before`), with the
// escape option set or not, and the exact text it appends.
struct LineRow {
  const char* what;
  std::function<void(String&)> write;
  String expected;
  bool escape = false;
};

TEST_F(vcard_write, line_builders_and_one_line_writers) {
  const CName full("Doe", "John", "Q", "Dr.", "Jr.", "do", "jo", "q");
  const CName escaped = TwoPartName(u"O;Brien", u"A\\B");
  const Bytes man = {'M', 'a', 'n', 'M'};
  const Bytes none;
  const String fits(68, u'a');
  const LineRow rows[] = {
      {"item", [](String& o) { vCard::AddItem(o, u"TEL", u";HOME", u"123"); }, u"TEL;HOME:123\r\n"},
      {"empty item", [](String& o) { vCard::AddItem(o, u"", u"", u""); }, u":\r\n"},
      {"'::' becomes ':'", [](String& o) { vCard::AddItem(o, u"FN", u"", u"a::b"); }, u"FN:a:b\r\n"},
      // The colon AddItem adds counts too; left to right without overlaps.
      {"its own colon", [](String& o) { vCard::AddItem(o, u"FN", u"", u":x"); }, u"FN:x\r\n"},
      {"runs of colons", [](String& o) { vCard::AddItem(o, u"FN", u"", u"a:::b::::c"); },
       u"FN:a::b::c\r\n"},
      {"text before stays",
       [](String& o) {
         o = u"NOTE:x::y\r\n";
         vCard::AddItem(o, u"FN", u"", u"a::b");
       },
       u"NOTE:x::y\r\nFN:a:b\r\n"},
      {"encoding item keeps '::'",
       [](String& o) { vCard::AddItemEncoding(o, u"EMAIL", u";HOME", u";CHARSET=UTF-8:a::b"); },
       u"EMAIL;HOME;CHARSET=UTF-8:a::b\r\n"},
      {"speed dial piece", [](String& o) { vCard::AddSpeedDial(o, u",", u"7"); }, u",7"},
      // 68 characters fit a quoted-printable line; the 69th is carried over.
      {"68 columns", [&](String& o) { vCard::AddNote(o, fits); }, u"NOTE:" + fits + u"\r\n"},
      {"soft break", [&](String& o) { vCard::AddNote(o, fits + u"b"); },
       u"NOTE;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:" + fits + u"=\r\nb\r\n"},
      {"unpaired surrogate", [](String& o) { vCard::AddFName(o, String(u"a") + char16_t(0xD800)); },
       u"FN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:a=EF=BF=BD\r\n"},
      {"empty name", [](String& o) { vCard::AddName(o, CName()); }, u""},
      {"family name", [](String& o) { vCard::AddName(o, CName("Doe")); }, u"N:Doe;;;;;;;\r\n"},
      {"eight parts", [&](String& o) { vCard::AddName(o, full); }, u"N:Doe;John;Q;Dr.;Jr.;do;jo;q\r\n"},
      {"quoted-printable part", [](String& o) { vCard::AddName(o, TwoPartName(u"", u"Mar\u00EDa")); },
       u"N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;Mar=C3=ADa;;;;;;\r\n"},
      {"name unescaped", [&](String& o) { vCard::AddName(o, escaped); }, u"N:O;Brien;A\\B;;;;;;\r\n"},
      {"name escaped", [&](String& o) { vCard::AddName(o, escaped); }, u"N:O\\;Brien;A\\\\B;;;;;;\r\n",
       true},
      {"blood 0", [](String& o) { vCard::AddBloodType(o, 0); }, u""},
      {"blood A", [](String& o) { vCard::AddBloodType(o, 1); }, u"X-BLOOD:A\r\n"},
      {"blood B", [](String& o) { vCard::AddBloodType(o, 2); }, u"X-BLOOD:B\r\n"},
      {"blood AB", [](String& o) { vCard::AddBloodType(o, 3); }, u"X-BLOOD:AB\r\n"},
      {"blood O", [](String& o) { vCard::AddBloodType(o, 4); }, u"X-BLOOD:O\r\n"},
      {"blood 5", [](String& o) { vCard::AddBloodType(o, 5); }, u""},
      {"blood unknown", [](String& o) { vCard::AddBloodType(o, 0xFFFFFFFFu); }, u""},
      {"group type 0", [](String& o) { vCard::AddGroupType(o, 0); }, u""},
      {"Normal", [](String& o) { vCard::AddGroupType(o, 1); }, u"GT:Normal\r\n"},
      {"Smart", [](String& o) { vCard::AddGroupType(o, 2); }, u"GT:Smart\r\n"},
      {"READ_ONLY", [](String& o) { vCard::AddGroupType(o, 3); }, u"GT:READ_ONLY\r\n"},
      {"group type 4", [](String& o) { vCard::AddGroupType(o, 4); }, u""},
      {"no groups", [](String& o) { vCard::AddGroups(o, {}); }, u""},
      {"one group", [](String& o) { vCard::AddGroups(o, {3}); }, u"X-GROUP:3\r\n"},
      {"groups", [](String& o) { vCard::AddGroups(o, {1, -2, 30}); }, u"X-GROUP:1,-2,30\r\n"},
      {"no assistant", [](String& o) { vCard::AddAssistant(o, std::nullopt, u""); }, u""},
      {"assistant", [](String& o) { vCard::AddAssistant(o, u"Jane", u"123"); },
       u"X-ASSISTANT:Jane;123\r\n"},
      // Escaped always, whatever the option.
      {"assistant escaped", [](String& o) { vCard::AddAssistant(o, u"a;b", std::nullopt); },
       u"X-ASSISTANT:a\\;b;\r\n"},
      {"assistant number", [](String& o) { vCard::AddAssistant(o, std::nullopt, u"+1 2"); },
       u"X-ASSISTANT;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;+1=202\r\n"},
      {"photo", [&](String& o) { vCard::AddPhoto(o, &man); },
       u"PHOTO;TYPE=JPEG;ENCODING=BASE64:\r\n TWFuTQ==\r\n \r\n"},
      {"empty photo", [&](String& o) { vCard::AddPhoto(o, &none); }, u""},
      {"no photo", [](String& o) { vCard::AddPhoto(o, nullptr); }, u""},
      {"revision", [](String& o) { vCard::AddLastRevision(o, MakeDateComponents(2020, 1, 2, 3, 4, 5)); },
       u""},
  };
  for (const LineRow& row : rows) {
    vCard::NonstandardEscChar(row.escape);
    EXPECT_EQ(Written(row.write), row.expected) << row.what;
  }
}

// --- Speed dial ----------------------------------------------------------

TEST_F(vcard_write, speed_dial_has_one_entry_per_number) {
  const struct {
    const char* name;
    int numbers;
    std::vector<std::pair<int, std::int32_t>> slots;  // index, slot
    const char* line;                                 // null: no line
  } rows[] = {
      {"no_slot_no_line", 3, {}, nullptr},
      {"one_number_gets_a_trailing_comma", 1, {{0, 3}}, "X-SPEEDDIAL:3,"},
      {"empty_slots_are_spaces", 3, {{1, 7}}, "X-SPEEDDIAL: ,7, "},
      {"slot_zero_counts", 2, {{0, 0}}, "X-SPEEDDIAL:0, "},
      {"slots_without_numbers_do_not_count", 2, {{5, 9}}, nullptr},
      {"numbers_past_ten_are_empty", 12, {{0, 1}, {9, 2}}, "X-SPEEDDIAL:1, , , , , , , , ,2, , "},
  };
  for (const auto& c : rows) {
    CContact contact(u"Contact");
    for (int i = 0; i < c.numbers; ++i) contact.NewTelephone(std::to_string(i).c_str(), 0, i);
    for (const auto& [index, slot] : c.slots) contact.SetSpeedDial(slot, index);
    vObject object;
    vCard::Generate(&contact, &object);
    std::string expected = "BEGIN:VCARD\r\nVERSION:2.1\r\n";
    for (int i = 0; i < c.numbers; ++i) expected += "TEL:" + std::to_string(i) + "\r\n";
    if (c.line != nullptr) expected += std::string(c.line) + "\r\n";
    EXPECT_EQ(BytesOf(object), expected + "END:VCARD\r\n") << c.name;
  }
}

// --- Generate ------------------------------------------------------------

TEST_F(vcard_write, Generate_replaces_the_object_bytes_and_ignores_null) {
  CContact contact(u"Group");
  vObject object;
  object.object()->SetData(reinterpret_cast<const unsigned char*>("old bytes, longer than"), 22);
  vCard::Generate(&contact, &object);
  EXPECT_EQ(BytesOf(object), "BEGIN:VCARD\r\nVERSION:2.1\r\nEND:VCARD\r\n");
  vCard::Generate(nullptr, &object);
  vCard::Generate(&contact, nullptr);
  EXPECT_EQ(BytesOf(object), "BEGIN:VCARD\r\nVERSION:2.1\r\nEND:VCARD\r\n");
}

// A person with every field the writer knows, written in the property order
// phones expect.
void FillPerson(CContact& c) {
  c.SetName(TwoPartName(u"Doe", u"John"));
  c.SetFName(u"John Doe");
  c.SetNickNames({u"JD", u"Johnny"});
  c.SetRFName(u"jon");
  c.SetRLName(u"do");
  c.SetBirthDate(Day(1970, 1, 2));
  c.SetBirthDateType(1);
  c.SetAnniversary_Date(Day(1999, 6, 30));
  c.NewTelephone("+1-555-0100", kTelephoneTypeCell | kTelephoneTypePref, 0);
  c.NewTelephone("+1-555-0101", kTelephoneTypeWork | kTelephoneTypeVoice, 1);
  c.NewEmail("john@example.com", kEmailTypeHome, 0);
  c.NewURL("http://example.com/", kURLTypeWork, 0);
  c.NewAddress(nullptr, nullptr, "1 Main St", "Springfield", nullptr, "12345", nullptr, nullptr,
               kAddressTypeHome, 0);
  c.NewNotes("Likes tea", 0);
  c.SetTitle(u"Boss");
  c.SetRole(u"Owner");
  c.NewOrg("Acme", "R&D", "Head", "Lab 2", kOrganizationTypeWork);
  c.SetBloodType(3);
  c.SetHobby(u"Chess");
  c.SetGroups({1, 4});
  c.SetAccount(u"Phone");
  c.setSpouse(u"Jane");
  c.setChildren(u"Tim");
  c.setAssistant(u"Ann");
  c.setAssistantNumber(u"555-0199");
  c.NewMessengerID("jd", kMessengerTypeSkype, 0);
  c.SetSpeedDial(2, 0);
  c.SetPhotoData(Bytes{'M', 'a', 'n'});
  // Fields vCard 2.1 output has no place for are left out.
  c.SetGroupName(u"ignored for a person");
  c.SetLastRevision(MakeDateComponents(2020, 1, 1, 0, 0, 0));
}

constexpr const char* kPersonLines =
    "BEGIN:VCARD\r\n"
    "VERSION:2.1\r\n"
    "N:Doe;John;;;;;;\r\n"
    "FN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:John=20Doe\r\n"
    "NICKNAME:JD\r\n"
    "NICKNAME:Johnny\r\n"
    "SOUND:do\r\n"
    "BDAY:19700102L\r\n"
    "X-ANNIVERSARY:19990630\r\n"
    "%TEL%"
    "EMAIL;HOME:john@example.com\r\n"
    "URL;WORK:http://example.com/\r\n"
    "ADR;HOME;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;;1=20Main=20St;Springfield;;12345;;\r\n"
    "NOTE;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:Likes=20tea\r\n"
    "TITLE:Boss\r\n"
    "ROLE:Owner\r\n"
    "ORG;WORK;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:Acme;R&D;Head;Lab=202\r\n"
    "X-BLOOD:AB\r\n"
    "X-HOBBY:Chess\r\n"
    "X-GROUP:1,4\r\n"
    "X-ACCOUNT:Phone\r\n"
    "X-SPOUSE:Jane\r\n"
    "X-CHILDREN:Tim\r\n"
    "X-ASSISTANT:Ann;555-0199\r\n"
    "X-IM;SKYPE:jd\r\n"
    "X-SPEEDDIAL:2, \r\n"
    "PHOTO;TYPE=JPEG;ENCODING=BASE64:\r\n TWFu\r\n \r\n"
    "END:VCARD\r\n";

std::string PersonLines(const std::string& tel) {
  std::string lines = kPersonLines;
  lines.replace(lines.find("%TEL%"), 5, tel);
  return lines;
}

TEST_F(vcard_write, a_full_person_in_property_order_in_each_phone_style) {
  CContact contact(u"Contact");
  FillPerson(contact);
  vObject object;
  vCard::Generate(&contact, &object);
  EXPECT_EQ(BytesOf(object), PersonLines("TEL;PREF;CELL:+1-555-0100\r\n"
                                         "TEL;WORK;VOICE:+1-555-0101\r\n"));
  vCard::Generate(&contact, &object, 0);
  EXPECT_EQ(BytesOf(object), PersonLines("TEL;PREF;CELL:+1-555-0100\r\n"
                                         "TEL;WORK;VOICE:+1-555-0101\r\n"));
  // The zandor style.
  vCard::Generate(&contact, &object, 1);
  EXPECT_EQ(BytesOf(object), PersonLines("TEL;PREF;HOME;CELL:+1-555-0100\r\n"
                                         "TEL;WORK:+1-555-0101\r\n"));
}

TEST_F(vcard_write, a_group_writes_its_names_type_and_photo_only) {
  CContact group(u"Group");
  FillPerson(group);
  group.SetGroupName(u"Friends");
  group.SetGroupType(2);
  group.SetGroupDisplayName(u"My friends");
  vObject object;
  vCard::Generate(&group, &object);
  EXPECT_EQ(BytesOf(object),
            "BEGIN:VCARD\r\nVERSION:2.1\r\n"
            "GN:Friends\r\n"
            "GT:Smart\r\n"
            "X-GDISPN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:My=20friends\r\n"
            "PHOTO;TYPE=JPEG;ENCODING=BASE64:\r\n TWFu\r\n \r\n"
            "END:VCARD\r\n");
}

TEST_F(vcard_write, a_number_with_an_unpaired_surrogate_is_stored_as_utf8) {
  CContact contact(u"Contact");
  contact.NewTelephone()->SetNumber(String(u"1") + char16_t(0xDC00) + u"\u00E9");
  vObject object;
  vCard::Generate(&contact, &object);
  EXPECT_EQ(BytesOf(object),
            "BEGIN:VCARD\r\nVERSION:2.1\r\nTEL:1\xEF\xBF\xBD\xC3\xA9\r\nEND:VCARD\r\n");
}

}  // namespace
}  // namespace phonepim
