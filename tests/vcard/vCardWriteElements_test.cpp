// The element writers: telephone numbers in both dialects, e-mail, web and
// postal addresses, organizations, messenger IDs, and custom labels.
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>

#include "phonepim/model/CCustomType.h"
#include "phonepim/model/CEmail.h"
#include "phonepim/model/CMessengerID.h"
#include "phonepim/model/COrganization.h"
#include "phonepim/model/CPostalAddress.h"
#include "phonepim/model/CTelephoneNumber.h"
#include "phonepim/model/CURL.h"
#include "phonepim/model/TypeMasks.h"
#include "phonepim/vcard/vCard.h"
#include "vcard/vCardWriteTestSupport.h"

namespace phonepim {
namespace {

using testing_support::ScopedWriterDefaults;
using testing_support::Written;

std::shared_ptr<const String> Label(const char16_t* text) {
  return std::make_shared<const String>(text);
}

// --- Telephone numbers ---------------------------------------------------

constexpr std::uint32_t kEveryTelephoneWord =
    kTelephoneTypePref | kTelephoneTypeWork | kTelephoneTypeHome | kTelephoneTypeVoice |
    kTelephoneTypeFax | kTelephoneTypeMsg | kTelephoneTypeCell | kTelephoneTypePager |
    kTelephoneTypeBBS | kTelephoneTypeModem | kTelephoneTypeCar | kTelephoneTypeISDN |
    kTelephoneTypeEtc | kTelephoneTypeInternet | kTelephoneTypeVideo | kTelephoneTypeDTMF |
    kTelephoneTypePTT;

TEST(vcard_write_tel, writes_the_type_words_of_each_dialect) {
  const ScopedWriterDefaults defaults;
  const struct {
    const char* name;
    std::uint32_t type;
    const char16_t* label;  // the number's own label, null for none
    const char16_t* plain;  // AddTelephone's parameters
    const char16_t* zandor; // AddTelephoneAtZandor's parameters
  } rows[] = {
      {"none", 0, nullptr, u"", u""},
      {"cell", kTelephoneTypeCell, nullptr, u";CELL", u";HOME;CELL"},
      {"home_cell", kTelephoneTypeCell | kTelephoneTypeHome, nullptr, u";HOME;CELL", u";HOME;HOME;CELL"},
      {"work_voice", kTelephoneTypeWork | kTelephoneTypeVoice, nullptr, u";WORK;VOICE", u";WORK"},
      {"pref_fax", kTelephoneTypePref | kTelephoneTypeFax, nullptr, u";PREF;FAX", u";PREF;FAX"},
      {"every_word", kEveryTelephoneWord, nullptr, u";PREF;WORK;HOME;VOICE;FAX;MSG;CELL;PAGER;BBS;MODEM;CAR;ISDN;X-ETC;" u"INTERNET;VIDEO;DTMF;PTT", u";PREF;WORK;HOME;FAX;MSG;HOME;CELL;PAGER;BBS;MODEM;CAR;ISDN;X-ETC;" u"INTERNET;VIDEO;DTMF;PTT"},
      {"callback", kTelephoneTypeCallback | kTelephoneTypePTT, nullptr, u";PTT", u";PTT;X-CALLBACK"},
      {"main", kTelephoneTypeMain, nullptr, u"", u";X-CUSTOM(Main)"},
      {"main_with_more_is_not_main", kTelephoneTypeMain | kTelephoneTypeHome, nullptr, u";HOME", u";HOME"},
      {"own_label", kTelephoneTypeCustom, u"Office", u"", u";X-CUSTOM(Office)"},
      {"own_label_without_charset_prefix", kTelephoneTypeCustom | kTelephoneTypeWork, u"My office;2", u";WORK", u";WORK;X-CUSTOM(My=20office\\;2)"},
      {"own_label_as_read", kTelephoneTypeCustom, u"PREF=X-CUSTOM(Main)", u"", u";X-CUSTOM(Main)"},
      {"custom_bit_without_label", kTelephoneTypeCustom, nullptr, u"", u";X-ETC"},
      {"custom_bit_with_empty_label", kTelephoneTypeCustom, u"", u"", u";X-ETC"},
      {"label_without_custom_bit", kTelephoneTypeHome, u"Office", u";HOME", u";HOME"},
  };
  for (const auto& c : rows) {
    const CTelephoneNumber tel("+81 3-1234", c.type, 0, c.label ? Label(c.label) : nullptr);
    EXPECT_EQ(Written([&](String& out) { vCard::AddTelephone(out, tel); }),
              u"TEL" + String(c.plain) + u":+81 3-1234\r\n")
        << c.name;
    EXPECT_EQ(Written([&](String& out) { vCard::AddTelephoneAtZandor(out, tel); }),
              u"TEL" + String(c.zandor) + u":+81 3-1234\r\n")
        << c.name;
  }
}

class vcard_write_element : public ::testing::Test {
 protected:
  ScopedWriterDefaults defaults_;
};

TEST_F(vcard_write_element, a_number_is_written_as_it_is) {
  vCard::NonstandardEscChar(true);
  const CTelephoneNumber tel("\xEF\xBC\x91 2;3=4::5", 0, 0);
  const String expected = u"TEL:\uFF11 2;3=4:5\r\n";
  EXPECT_EQ(Written([&](String& out) { vCard::AddTelephone(out, tel); }), expected);
  EXPECT_EQ(Written([&](String& out) { vCard::AddTelephoneAtZandor(out, tel); }), expected);
  const CTelephoneNumber empty("", kTelephoneTypeCell, 0);
  EXPECT_EQ(Written([&](String& out) { vCard::AddTelephone(out, empty); }), u"");
  EXPECT_EQ(Written([&](String& out) { vCard::AddTelephoneAtZandor(out, empty); }), u"");
}

// --- Custom labels from the table ----------------------------------------

// Every writer that looks its type up in the table prints the label alone,
// in place of all type words.
TEST_F(vcard_write_element, a_table_label_replaces_the_type_words) {
  const struct {
    const char* name;
    const char16_t* registered;  // what the reader hands the table
    bool escape;                 // sm_fNonstandardEscChar
    const char16_t* parameter;
  } rows[] = {
      {"plain", u"X-CUSTOM(Main)", false, u";X-CUSTOM(Main)"},
      {"behind_other_parameters", u"PREF=x-custom(Main)", false, u";X-CUSTOM(Main)"},
      {"quoted_printable", u"X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,=41=20=C3=A9)", false,
       u";X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,A=20=C3=A9)"},
      {"not_escaped_by_default", u"X-CUSTOM(a;b)", false, u";X-CUSTOM(a;b)"},
      {"escaped_with_the_option", u"X-CUSTOM(a;b)", true, u";X-CUSTOM(a\\;b)"},
  };
  for (const auto& c : rows) {
    SCOPED_TRACE(c.name);
    CCustomType::Inst().DeleteAllItem();
    vCard::NonstandardEscChar(c.escape);
    CCustomType::Inst().ConvertCustomTypeFromString(u"X-CUSTOM(first)");
    const std::uint32_t code = CCustomType::Inst().ConvertCustomTypeFromString(c.registered);
    ASSERT_EQ(code, kFirstCustomType + 1);
    const String p = c.parameter;
    const CTelephoneNumber tel("1", code, 0, Label(u"own"));
    EXPECT_EQ(Written([&](String& out) { vCard::AddTelephone(out, tel); }), u"TEL" + p + u":1\r\n");
    EXPECT_EQ(Written([&](String& out) { vCard::AddTelephoneAtZandor(out, tel); }),
              u"TEL" + p + u":1\r\n");
    const CEmail email("a@b", code, 0, Label(u"own"));
    EXPECT_EQ(Written([&](String& out) { vCard::AddEmail(out, email); }),
              u"EMAIL" + p + u":a@b\r\n");
    COrganization org("Acme", nullptr, nullptr, nullptr, code);
    EXPECT_EQ(Written([&](String& out) { vCard::AddOrganization(out, org); }),
              u"ORG" + p + u":Acme;;\r\n");
    const CMessengerID im("jd", code, 0);
    EXPECT_EQ(Written([&](String& out) { vCard::AddMessengerID(out, im); }),
              u"X-IM" + p + u":jd\r\n");
  }
}

TEST_F(vcard_write_element, a_custom_label_needs_a_registered_code) {
  // 0x10000010 is a custom-label code only once sixteen labels are in the
  // table: PREF and the custom bit of an e-mail look like one.
  const CEmail email("a@b", kEmailTypePref | kEmailTypeCustom, 0, Label(u"own"));
  EXPECT_EQ(Written([&](String& out) { vCard::AddEmail(out, email); }),
            u"EMAIL;PREF;X-CUSTOM(own):a@b\r\n");
  for (int i = 0; i < 16; ++i) CCustomType::Inst().ConvertCustomTypeFromString(u"X-CUSTOM(T)");
  EXPECT_EQ(Written([&](String& out) { vCard::AddEmail(out, email); }),
            u"EMAIL;X-CUSTOM(T):a@b\r\n");
}

// --- E-mail and messenger IDs --------------------------------------------

TEST_F(vcard_write_element, AddEmail_type_words_in_order) {
  const std::pair<std::uint32_t, const char16_t*> cases[] = {
      {0, u""},
      {kEmailTypeHome | kEmailTypeWork | kEmailTypeCell | kEmailTypeEtc | kEmailTypePref,
       u";PREF;WORK;HOME;CELL;X-ETC"},
      {kEmailTypeCustom, u";X-ETC"},
      {kEmailTypeCustom | kEmailTypeEtc, u";X-ETC;X-ETC"},
  };
  for (const auto& [bits, params] : cases) {
    const std::uint32_t type = bits;
    const CEmail email("a@b", type, 0);
    EXPECT_EQ(Written([&](String& out) { vCard::AddEmail(out, email); }),
              u"EMAIL" + String(params) + u":a@b\r\n")
        << type;
  }
}

TEST_F(vcard_write_element, AddEmail_own_label_is_escaped_without_charset_prefix) {
  const CEmail email("a@b", kEmailTypeCustom, 0, Label(u"Priv\u00E9;x"));
  EXPECT_EQ(Written([&](String& out) { vCard::AddEmail(out, email); }),
            u"EMAIL;X-CUSTOM(Priv=C3=A9\\;x):a@b\r\n");
}

TEST_F(vcard_write_element, AddEmail_escapes_always_and_puts_charset_after_the_types) {
  const CEmail plain("a;b\\c::d@x", kEmailTypeHome, 0);
  EXPECT_EQ(Written([&](String& out) { vCard::AddEmail(out, plain); }),
            u"EMAIL;HOME:a\\;b\\\\c:d@x\r\n");
  // The quoted-printable line is built without the "::" rule.
  const CEmail qp("j\xC3\xB6::rg;@x", kEmailTypeWork, 0);
  EXPECT_EQ(Written([&](String& out) { vCard::AddEmail(out, qp); }),
            u"EMAIL;WORK;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:j=C3=B6::rg\\;@x\r\n");
  EXPECT_EQ(Written([](String& out) { vCard::AddEmail(out, CEmail("", kEmailTypeHome, 0)); }),
            u"");
}

TEST_F(vcard_write_element, AddMessengerID_writes_the_first_service_only) {
  const std::pair<std::uint32_t, const char16_t*> cases[] = {
      {0, u""},
      {kMessengerTypeAIM | kMessengerTypeYahoo, u";AIM"},
      {kMessengerTypeGoogleTalk | kMessengerTypeQQ | kMessengerTypeJabber, u";GOOGLETALK"},
      {kMessengerTypeICQ | kMessengerTypeJabber, u";ICQ"},
      {kMessengerTypeJabber | kMessengerTypeQQ, u";JABBER"},
      {kMessengerTypeQQ | kMessengerTypeSkype, u";QQ"},
      {kMessengerTypeSkype | kMessengerTypeWindowsLive, u";SKYPE"},
      {kMessengerTypeWindowsLive | kMessengerTypeYahoo, u";WINDOWSLIVE"},
      {kMessengerTypeYahoo, u";YAHOO"},
  };
  for (const auto& [bits, params] : cases) {
    const std::uint32_t type = bits;
    const CMessengerID im("me", type, 0);
    EXPECT_EQ(Written([&](String& out) { vCard::AddMessengerID(out, im); }),
              u"X-IM" + String(params) + u":me\r\n")
        << type;
  }
}

TEST_F(vcard_write_element, AddMessengerID_encodes_as_an_email_does) {
  EXPECT_EQ(Written([](String& out) {
              vCard::AddMessengerID(out, CMessengerID("a b;c", kMessengerTypeICQ, 0));
            }),
            u"X-IM;ICQ;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:a=20b\\;c\r\n");
  EXPECT_EQ(Written([](String& out) {
              vCard::AddMessengerID(out, CMessengerID("", kMessengerTypeICQ, 0));
            }),
            u"");
}

// --- Web addresses -------------------------------------------------------

TEST_F(vcard_write_element, AddURL_is_quoted_printable_by_default) {
  const CURL url("http://x.org/?a=b", kURLTypeHome | kURLTypeWork | kURLTypePref, 0);
  EXPECT_EQ(Written([&](String& out) { vCard::AddURL(out, url); }),
            u"URL;PREF;WORK;HOME;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:http://x.org/?a=3Db\r\n");
  EXPECT_EQ(Written([](String& out) { vCard::AddURL(out, CURL("http://x.org/a;b", 0, 0)); }),
            u"URL:http://x.org/a;b\r\n");
  EXPECT_EQ(Written([](String& out) { vCard::AddURL(out, CURL("", kURLTypeHome, 0)); }), u"");
}

TEST_F(vcard_write_element, AddURL_as_it_is_still_flags_an_equals_sign) {
  vCard::URLNotQPEncode(true);
  vCard::NonstandardEscChar(true);
  EXPECT_EQ(Written([](String& out) { vCard::AddURL(out, CURL("http://x.org/?a=b c", 0, 0)); }),
            u"URL;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:http://x.org/?a=b c\r\n");
  EXPECT_EQ(Written([](String& out) { vCard::AddURL(out, CURL("h\\t t\xC3\xA9", 0, 0)); }),
            u"URL:h\\t t\u00E9\r\n");
}

// --- Postal addresses ----------------------------------------------------

TEST_F(vcard_write_element, AddAddress_writes_eight_parts_and_types_in_order) {
  const CPostalAddress address("1", "2", "3", "4", "5", "6", "7", "8",
                               kAddressTypeHome | kAddressTypeWork | kAddressTypeEtc |
                                   kAddressTypeCell | kAddressTypePref,
                               0);
  EXPECT_EQ(Written([&](String& out) { vCard::AddAddress(out, address); }),
            u"ADR;PREF;CELL;HOME;WORK;X-ETC:1;2;3;4;5;6;7;8\r\n");
  EXPECT_EQ(Written([](String& out) {
              vCard::AddAddress(out, CPostalAddress(nullptr, kAddressTypeHome, 0));
            }),
            u"");
}

TEST_F(vcard_write_element, AddAddress_uses_its_own_label_with_the_custom_bit) {
  const auto write = [](std::uint32_t type, std::shared_ptr<const String> label) {
    const CPostalAddress address("Main St", type, 0, std::move(label));
    return Written([&](String& out) { vCard::AddAddress(out, address); });
  };
  EXPECT_EQ(write(kAddressTypeCustom | kAddressTypeHome, Label(u"Cottage")),
            u"ADR;X-CUSTOM(Cottage);CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;;Main=20St;;;;;\r\n");
  EXPECT_EQ(write(kAddressTypeCustom, Label(u"Summer house")),
            u"ADR;X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,Summer=20house);"
            u"CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;;Main=20St;;;;;\r\n");
  EXPECT_EQ(write(kAddressTypeCustom | kAddressTypeHome, nullptr),
            u"ADR;HOME;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;;Main=20St;;;;;\r\n");
  EXPECT_EQ(write(kAddressTypeWork, Label(u"Cottage")),
            u"ADR;WORK;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;;Main=20St;;;;;\r\n");
}

TEST_F(vcard_write_element, AddAddress_escapes_parts_with_the_option) {
  const CPostalAddress address("a;b", kAddressTypeHome, 0);
  EXPECT_EQ(Written([&](String& out) { vCard::AddAddress(out, address); }),
            u"ADR;HOME:;;a;b;;;;;\r\n");
  vCard::NonstandardEscChar(true);
  EXPECT_EQ(Written([&](String& out) { vCard::AddAddress(out, address); }),
            u"ADR;HOME:;;a\\;b;;;;;\r\n");
}

// --- Organizations -------------------------------------------------------

TEST_F(vcard_write_element, AddOrganization_writes_parts_lines_and_types) {
  COrganization org("Acme", "Lab", "Chief", "Floor 2", kOrganizationTypeHome |
                                                           kOrganizationTypeWork |
                                                           kOrganizationTypeEtc);
  org.Additional().push_back(u"Desk::4");
  EXPECT_EQ(Written([&](String& out) { vCard::AddOrganization(out, org); }),
            u"ORG;HOME;WORK;X-ETC;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:"
            u"Acme;Lab;Chief;Floor=202;Desk:4\r\n");
  EXPECT_EQ(Written([](String& out) { vCard::AddOrganization(out, COrganization("", "", "x")); }),
            u"ORG:;;x\r\n");
  EXPECT_EQ(Written([](String& out) {
              vCard::AddOrganization(out,
                                     COrganization("", "", "", nullptr, kOrganizationTypeWork));
            }),
            u"");
}

}  // namespace
}  // namespace phonepim
