// The vCard writer: each line writer on the texts, types and options that
// take its branches, and whole cards from Generate.
#include <gtest/gtest.h>

#include <functional>

#include "model/AssertionPattern.h"
#include "phonepim/encoding/Encoding.h"
#include "vcard/vCardTestSupport.h"
#include "vcard/vCardWriterText.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;
using testing_support::BytesOf;
using testing_support::ScopedWriterDefaults;
using testing_support::Written;
using testing_vcard::Day;
using testing_vcard::Generated;
using testing_vcard::Label;

class vcard_write : public ::testing::Test {
 protected:
  ScopedWriterDefaults defaults_;
};

// The writers encode without QPEncode's intermediate copies; the text must
// be what QPEncode gives.
TEST_F(vcard_write, values_are_encoded_as_QPEncode_does) {
  const String samples[] = {
      u"", String(68, u'x'), String(69, u'x'), String(200, u'\u00E9'),
      u"tab\tin the middle" + String(70, u'\t') + u"and late", u"=_=.\r\n.line",
      u"\U0001F600 \u5C71\u7530 " + String(40, u'a'), String(u"\0nul", 4)};
  for (const String& sample : samples) {
    EXPECT_EQ(vcard_writer::EncodeText(sample, false), QPEncode(sample).value())
        << ToDisplayUTF8(sample);
  }
  EXPECT_EQ(vcard_writer::EncodeText(String(u"a") + char16_t(0xDC00), false), u"a=EF=BF=BD");
}

TEST(vcard_write_date_death, a_type_beyond_the_table_stops_the_writer) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  String out;
  EXPECT_DEATH(vCard::AddBirtyDate(out, Day(2001, 2, 1), 4),
               AssertionPattern("(int)birthDateType <= _countof(chTypes)"));
  EXPECT_DEATH(vCard::AddAnnivesaryDate(out, Day(2001, 2, 1), 0x7FFFFFFF),
               AssertionPattern("(int)AnniversaryDateType <= _countof(chTypes)"));
}

// The writers of what real phones seldom send, each row with the text its
// calls append (the corpus digests pin the rest).
TEST_F(vcard_write, line_writers) {
  using A = CPostalAddress;
  const Bytes man = {'M', 'a', 'n', 'M'};
  const Bytes none;
  const String qpMain = u"CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;;Main=20St;;;;;\r\n";
  const struct {
    const char* what;
    std::function<void(String&)> write;
    String expected;
  } rows[] = {
      // The "::" rule counts the colon AddItem adds, left to right without
      // overlaps, and leaves the text before alone.
      {"items", [](String& o) {
         o = u"NOTE:x::y\r\n";
         vCard::AddItem(o, u"TEL", u";HOME", u"123");
         vCard::AddItem(o, u"", u"", u"");
         vCard::AddItem(o, u"FN", u"", u":x");
         vCard::AddItem(o, u"FN", u"", u"a:::b::::c");
         vCard::AddItemEncoding(o, u"EMAIL", u";HOME", u";CHARSET=UTF-8:a::b");
         vCard::AddSpeedDial(o, u",", u"7");
       }, u"NOTE:x::y\r\nTEL;HOME:123\r\n:\r\nFN:x\r\nFN:a::b::c\r\nEMAIL;HOME;CHARSET=UTF-8:a::b\r\n,7"},
      {"codes", [](String& o) {
         for (std::uint32_t type : {0u, 1u, 2u, 3u, 4u, 5u, 0xFFFFFFFFu}) vCard::AddBloodType(o, type);
         for (std::uint32_t type : {0u, 1u, 2u, 3u, 4u}) vCard::AddGroupType(o, type);
         vCard::AddGroups(o, {});
         vCard::AddGroups(o, {3});
         vCard::AddGroups(o, {1, -2, 30});
         vCard::AddLastRevision(o, MakeDateComponents(2020, 1, 2, 3, 4, 5));
         // Types past 2 have no suffix, an int's negative ones neither.
         vCard::AddBirtyDate(o, std::nullopt, 0);
         vCard::AddBirtyDate(o, Day(5, 3, 4), 3);
         vCard::AddBirtyDate(o, Day(2001, kUndefinedComponent, 9), 0xFFFFFFFFu);
         vCard::AddAnnivesaryDate(o, Day(1999, 12, 31), 1);
       }, u"X-BLOOD:A\r\nX-BLOOD:B\r\nX-BLOOD:AB\r\nX-BLOOD:O\r\nGT:Normal\r\nGT:Smart\r\n"
       u"GT:READ_ONLY\r\nX-GROUP:3\r\nX-GROUP:1,-2,30\r\nBDAY:00050304\r\nBDAY:2001-109\r\n"
       u"X-ANNIVERSARY:19991231L\r\n"},
      // Escaped always, whatever the option.
      {"assistant", [](String& o) {
         vCard::AddAssistant(o, std::nullopt, u"");
         vCard::AddAssistant(o, u"Jane", u"123");
         vCard::AddAssistant(o, u"a;b", std::nullopt);
         vCard::AddAssistant(o, std::nullopt, u"+1 2");
       }, u"X-ASSISTANT:Jane;123\r\nX-ASSISTANT:a\\;b;\r\n"
       u"X-ASSISTANT;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;+1=202\r\n"},
      {"photo", [&](String& o) {
         vCard::AddPhoto(o, &man);
         vCard::AddPhoto(o, &none);
         vCard::AddPhoto(o, nullptr);
       }, u"PHOTO;TYPE=JPEG;ENCODING=BASE64:\r\n TWFuTQ==\r\n \r\n"},
      // E-mail and messenger IDs are escaped always; the quoted-printable
      // line is built without the "::" rule.
      {"e-mail", [](String& o) {
         for (std::uint32_t type :
              {0u, kEmailTypeHome | kEmailTypeWork | kEmailTypeCell | kEmailTypeEtc | kEmailTypePref,
               kEmailTypeCustom, kEmailTypeCustom | kEmailTypeEtc}) {
           vCard::AddEmail(o, CEmail("a@b", type, 0));
         }
         vCard::AddEmail(o, CEmail("a@b", kEmailTypeCustom, 0, Label(u"Priv\u00E9;x")));
         vCard::AddEmail(o, CEmail("a;b\\c::d@x", kEmailTypeHome, 0));
         vCard::AddEmail(o, CEmail("j\xC3\xB6::rg;@x", kEmailTypeWork, 0));
         vCard::AddEmail(o, CEmail("", kEmailTypeHome, 0));
         vCard::AddURL(o, CURL("", kURLTypeHome, 0));
       }, u"EMAIL:a@b\r\nEMAIL;PREF;WORK;HOME;CELL;X-ETC:a@b\r\nEMAIL;X-ETC:a@b\r\nEMAIL;X-ETC;X-ETC:a@b\r\n"
       u"EMAIL;X-CUSTOM(Priv=C3=A9\\;x):a@b\r\nEMAIL;HOME:a\\;b\\\\c:d@x\r\n"
       u"EMAIL;WORK;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:j=C3=B6::rg\\;@x\r\n"},
      // Only the first service is written.
      {"messenger IDs", [](String& o) {
         for (std::uint32_t type :
              {0u, kMessengerTypeAIM | kMessengerTypeYahoo,
               kMessengerTypeGoogleTalk | kMessengerTypeQQ | kMessengerTypeJabber,
               kMessengerTypeICQ | kMessengerTypeJabber, kMessengerTypeJabber | kMessengerTypeQQ,
               kMessengerTypeQQ | kMessengerTypeSkype, kMessengerTypeSkype | kMessengerTypeWindowsLive,
               kMessengerTypeWindowsLive | kMessengerTypeYahoo, kMessengerTypeYahoo}) {
           vCard::AddMessengerID(o, CMessengerID("me", type, 0));
         }
         vCard::AddMessengerID(o, CMessengerID("a b;c", kMessengerTypeICQ, 0));
         vCard::AddMessengerID(o, CMessengerID("", kMessengerTypeICQ, 0));
       }, u"X-IM:me\r\nX-IM;AIM:me\r\nX-IM;GOOGLETALK:me\r\nX-IM;ICQ:me\r\nX-IM;JABBER:me\r\nX-IM;QQ:me\r\n"
       u"X-IM;SKYPE:me\r\nX-IM;WINDOWSLIVE:me\r\nX-IM;YAHOO:me\r\n"
       u"X-IM;ICQ;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:a=20b\\;c\r\n"},
      // An own label needs the custom bit, and is quoted-printable in the
      // parameter when it has to be.
      {"address labels", [](String& o) {
         vCard::AddAddress(o, A("Main St", kAddressTypeCustom | kAddressTypeHome, 0, Label(u"Cottage")));
         vCard::AddAddress(o, A("Main St", kAddressTypeCustom, 0, Label(u"Summer house")));
         vCard::AddAddress(o, A("Main St", kAddressTypeCustom | kAddressTypeHome, 0, nullptr));
         vCard::AddAddress(o, A("Main St", kAddressTypeWork, 0, Label(u"Cottage")));
       }, u"ADR;X-CUSTOM(Cottage);" + qpMain +
           u"ADR;X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,Summer=20house);" + qpMain +
           u"ADR;HOME;" + qpMain + u"ADR;WORK;" + qpMain},
      // Last name plain, first name quoted-printable: the line is; both
      // plain, it is not.
      {"reading name", [](String& o) {
         vCard::UseReadingLastName(true);
         vCard::AddRName(o, u"\u30BF", u"y");
         vCard::AddRName(o, u"taro", u"yamada");
       }, u"SOUND;X-IRMC-N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:y;=E3=82=BF;;;\r\n"
       u"SOUND;X-IRMC-N:yamada;taro;;;\r\n"},
  };
  for (const auto& row : rows) EXPECT_EQ(Written(row.write), row.expected) << row.what;
}

// --- Telephone numbers and custom labels ---------------------------------

TEST_F(vcard_write, telephone_type_words_of_each_dialect) {
  const struct {
    std::uint32_t type;
    const char16_t* label;  // the number's own label, null for none
    const char16_t* plain;  // AddTelephone's parameters
    const char16_t* zandor; // AddTelephoneAtZandor's parameters
  } rows[] = {
      {0, nullptr, u"", u""},
      {kTelephoneTypeCell, nullptr, u";CELL", u";HOME;CELL"},
      {kTelephoneTypeCell | kTelephoneTypeHome, nullptr, u";HOME;CELL", u";HOME;HOME;CELL"},
      {kTelephoneTypeWork | kTelephoneTypeVoice, nullptr, u";WORK;VOICE", u";WORK"},
      // The sixteen low bits are the words.
      {kTelephoneTypePref | 0xFFFF, nullptr, u";PREF;WORK;HOME;VOICE;FAX;MSG;CELL;PAGER;BBS;MODEM;CAR;ISDN;X-ETC;" u"INTERNET;VIDEO;DTMF;PTT", u";PREF;WORK;HOME;FAX;MSG;HOME;CELL;PAGER;BBS;MODEM;CAR;ISDN;X-ETC;" u"INTERNET;VIDEO;DTMF;PTT"},
      {kTelephoneTypeCallback | kTelephoneTypePTT, nullptr, u";PTT", u";PTT;X-CALLBACK"},
      {kTelephoneTypeMain, nullptr, u"", u";X-CUSTOM(Main)"},
      {kTelephoneTypeMain | kTelephoneTypeHome, nullptr, u";HOME", u";HOME"},
      {kTelephoneTypeCustom, u"Office", u"", u";X-CUSTOM(Office)"},
      {kTelephoneTypeCustom | kTelephoneTypeWork, u"My office;2", u";WORK", u";WORK;X-CUSTOM(My=20office\\;2)"},
      {kTelephoneTypeCustom, u"PREF=X-CUSTOM(Main)", u"", u";X-CUSTOM(Main)"},
      {kTelephoneTypeCustom, nullptr, u"", u";X-ETC"},
      {kTelephoneTypeCustom, u"", u"", u";X-ETC"},
      {kTelephoneTypeHome, u"Office", u";HOME", u";HOME"},
  };
  for (const auto& c : rows) {
    const CTelephoneNumber tel("+81 3-1234", c.type, 0, c.label ? Label(c.label) : nullptr);
    EXPECT_EQ(Written([&](String& out) { vCard::AddTelephone(out, tel); }),
              u"TEL" + String(c.plain) + u":+81 3-1234\r\n") << &c - rows;
    EXPECT_EQ(Written([&](String& out) { vCard::AddTelephoneAtZandor(out, tel); }),
              u"TEL" + String(c.zandor) + u":+81 3-1234\r\n") << &c - rows;
  }
  vCard::NonstandardEscChar(true);  // a number is written as it is
  const CTelephoneNumber tel("\xEF\xBC\x91 2;3=4::5", 0, 0);
  const CTelephoneNumber empty("", kTelephoneTypeCell, 0);
  for (auto* writer : {&vCard::AddTelephone, &vCard::AddTelephoneAtZandor}) {
    EXPECT_EQ(Written([&](String& out) { writer(out, tel); }), u"TEL:\uFF11 2;3=4:5\r\n");
    EXPECT_EQ(Written([&](String& out) { writer(out, empty); }), u"");
  }
}

// Every writer that looks its type up in the table prints the label alone,
// in place of all type words.
TEST_F(vcard_write, a_table_label_replaces_the_type_words) {
  const struct {
    const char16_t* registered;  // what the reader hands the table
    bool escape;                 // sm_fNonstandardEscChar
    const char16_t* parameter;
  } rows[] = {
      {u"X-CUSTOM(Main)", false, u";X-CUSTOM(Main)"},
      {u"PREF=x-custom(Main)", false, u";X-CUSTOM(Main)"},
      {u"X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,=41=20=C3=A9)", false,
       u";X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,A=20=C3=A9)"},
      {u"X-CUSTOM(a;b)", false, u";X-CUSTOM(a;b)"},
      {u"X-CUSTOM(a;b)", true, u";X-CUSTOM(a\\;b)"},
      // What the reader registers for a quoted-printable label: the text up
      // to the first '=', no closing parenthesis.
      {u"X-CUSTOM(CHARSET", false, u";X-CUSTOM(CHARSET)"},
  };
  for (const auto& c : rows) {
    CCustomType::Inst().DeleteAllItem();
    vCard::NonstandardEscChar(c.escape);
    CCustomType::Inst().ConvertCustomTypeFromString(u"X-CUSTOM(first)");
    const std::uint32_t code = CCustomType::Inst().ConvertCustomTypeFromString(c.registered);
    ASSERT_EQ(code, kFirstCustomType + 1);
    const String p = c.parameter;
    EXPECT_EQ(Written([&](String& o) {
                const CTelephoneNumber tel("1", code, 0, Label(u"own"));
                vCard::AddTelephone(o, tel);
                vCard::AddTelephoneAtZandor(o, tel);
                vCard::AddEmail(o, CEmail("a@b", code, 0, Label(u"own")));
                vCard::AddOrganization(o, COrganization("Acme", nullptr, nullptr, nullptr, code));
                vCard::AddMessengerID(o, CMessengerID("jd", code, 0));
              }),
              u"TEL" + p + u":1\r\nTEL" + p + u":1\r\nEMAIL" + p + u":a@b\r\nORG" + p +
                  u":Acme;;\r\nX-IM" + p + u":jd\r\n") << &c - rows;
  }
  // 0x10000010 is a custom-label code only once sixteen labels are in the
  // table: PREF and the custom bit of an e-mail look like one.
  CCustomType::Inst().DeleteAllItem();
  const CEmail email("a@b", kEmailTypePref | kEmailTypeCustom, 0, Label(u"own"));
  EXPECT_EQ(Written([&](String& out) { vCard::AddEmail(out, email); }),
            u"EMAIL;PREF;X-CUSTOM(own):a@b\r\n");
  for (int i = 0; i < 16; ++i) CCustomType::Inst().ConvertCustomTypeFromString(u"X-CUSTOM(T)");
  EXPECT_EQ(Written([&](String& out) { vCard::AddEmail(out, email); }),
            u"EMAIL;X-CUSTOM(T):a@b\r\n");
}

// --- Generate ------------------------------------------------------------

// A group writes its names, type and photo only; one number with a speed
// dial still gets the separator that marks the list; the photo comes last.
TEST_F(vcard_write, Generate_replaces_the_object_bytes_and_ignores_null) {
  CContact group(u"Group");
  testing_vcard::FillPerson(group);
  group.SetGroupName(u"Friends");
  group.SetGroupType(2);
  group.SetGroupDisplayName(u"My friends");
  vObject object;
  object.object()->SetData(reinterpret_cast<const unsigned char*>("old bytes, longer than"), 22);
  vCard::Generate(&group, &object);
  vCard::Generate(&group, &object);  // into the storage it has
  vCard::Generate(nullptr, &object);
  vCard::Generate(&group, nullptr);
  EXPECT_EQ(BytesOf(object),
            "BEGIN:VCARD\r\nVERSION:2.1\r\nGN:Friends\r\nGT:Smart\r\n"
            "X-GDISPN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:My=20friends\r\n"
            "PHOTO;TYPE=JPEG;ENCODING=BASE64:\r\n /9j/4AAQSkZJRgA=\r\n \r\nEND:VCARD\r\n");
  CContact person(u"Contact");
  person.NewTelephone()->SetNumber(String(u"1") + char16_t(0xDC00) + u"\u00E9");
  person.SetSpeedDial(3, 0);
  // A photo goes into the card in pieces of 3 MiB, which must join into the
  // one text AddPhoto writes, padding included.
  Bytes photo((std::size_t{3} << 20) + 1);
  for (std::size_t i = 0; i < photo.size(); ++i) photo[i] = static_cast<std::uint8_t>(i * 7 + i / 251);
  person.SetPhotoData(photo);
  String line;
  vCard::AddPhoto(line, &photo);
  EXPECT_TRUE(Generated(person) == "BEGIN:VCARD\r\nVERSION:2.1\r\nTEL:1\xEF\xBF\xBD\xC3\xA9\r\nX-SPEEDDIAL:3,\r\n" +
                                       std::string(line.begin(), line.end()) + "END:VCARD\r\n");
}

}  // namespace
}  // namespace phonepim
