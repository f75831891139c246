// The element writers: telephone numbers in both dialects, e-mail, web and
// postal addresses, organizations, messenger IDs, and custom labels.
#include <gtest/gtest.h>

#include <functional>
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
#include "vcard/vCardTestSupport.h"

namespace phonepim {
namespace {

using testing_support::ScopedWriterDefaults;
using testing_support::Written;
using testing_vcard::Label;

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

// One element writer call and the exact line it writes, with the escape
// option and the URL option set or not.
TEST_F(vcard_write_element, writes_each_element_line) {
  using A = CPostalAddress;
  const auto addr = [](std::uint32_t type, std::shared_ptr<const String> label) {
    return A("Main St", type, 0, std::move(label));
  };
  const auto qpMain = u"CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;;Main=20St;;;;;\r\n";
  COrganization org("Acme", "Lab", "Chief", "Floor 2",
                    kOrganizationTypeHome | kOrganizationTypeWork | kOrganizationTypeEtc);
  org.Additional().push_back(u"Desk::4");
  const struct {
    const char* what;
    std::function<void(String&)> write;
    String expected;
    bool escape = false;
    bool urlAsIs = false;
  } rows[] = {
      {"own e-mail label, escaped without charset prefix",
       [](String& o) { vCard::AddEmail(o, CEmail("a@b", kEmailTypeCustom, 0, Label(u"Priv\u00E9;x"))); },
       u"EMAIL;X-CUSTOM(Priv=C3=A9\\;x):a@b\r\n"},
      {"e-mail escaped always",
       [](String& o) { vCard::AddEmail(o, CEmail("a;b\\c::d@x", kEmailTypeHome, 0)); },
       u"EMAIL;HOME:a\\;b\\\\c:d@x\r\n"},
      // The quoted-printable line is built without the "::" rule.
      {"e-mail charset after the types",
       [](String& o) { vCard::AddEmail(o, CEmail("j\xC3\xB6::rg;@x", kEmailTypeWork, 0)); },
       u"EMAIL;WORK;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:j=C3=B6::rg\\;@x\r\n"},
      {"empty e-mail", [](String& o) { vCard::AddEmail(o, CEmail("", kEmailTypeHome, 0)); }, u""},
      {"messenger ID as an e-mail",
       [](String& o) { vCard::AddMessengerID(o, CMessengerID("a b;c", kMessengerTypeICQ, 0)); },
       u"X-IM;ICQ;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:a=20b\\;c\r\n"},
      {"empty messenger ID",
       [](String& o) { vCard::AddMessengerID(o, CMessengerID("", kMessengerTypeICQ, 0)); }, u""},
      {"URL quoted-printable by default",
       [](String& o) {
         vCard::AddURL(o, CURL("http://x.org/?a=b", kURLTypeHome | kURLTypeWork | kURLTypePref, 0));
       },
       u"URL;PREF;WORK;HOME;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:http://x.org/?a=3Db\r\n"},
      {"URL not escaped", [](String& o) { vCard::AddURL(o, CURL("http://x.org/a;b", 0, 0)); },
       u"URL:http://x.org/a;b\r\n"},
      {"empty URL", [](String& o) { vCard::AddURL(o, CURL("", kURLTypeHome, 0)); }, u""},
      {"URL as it is still flags '='",
       [](String& o) { vCard::AddURL(o, CURL("http://x.org/?a=b c", 0, 0)); },
       u"URL;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:http://x.org/?a=b c\r\n", true, true},
      {"URL as it is", [](String& o) { vCard::AddURL(o, CURL("h\\t t\xC3\xA9", 0, 0)); },
       u"URL:h\\t t\u00E9\r\n", true, true},
      {"address: eight parts, types in order",
       [](String& o) {
         vCard::AddAddress(o, A("1", "2", "3", "4", "5", "6", "7", "8",
                                kAddressTypeHome | kAddressTypeWork | kAddressTypeEtc |
                                    kAddressTypeCell | kAddressTypePref,
                                0));
       },
       u"ADR;PREF;CELL;HOME;WORK;X-ETC:1;2;3;4;5;6;7;8\r\n"},
      {"empty address", [](String& o) { vCard::AddAddress(o, A(nullptr, kAddressTypeHome, 0)); },
       u""},
      {"own address label",
       [&](String& o) { vCard::AddAddress(o, addr(kAddressTypeCustom | kAddressTypeHome, Label(u"Cottage"))); },
       String(u"ADR;X-CUSTOM(Cottage);") + qpMain},
      {"own address label quoted-printable",
       [&](String& o) { vCard::AddAddress(o, addr(kAddressTypeCustom, Label(u"Summer house"))); },
       String(u"ADR;X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,Summer=20house);") + qpMain},
      {"custom bit without label",
       [&](String& o) { vCard::AddAddress(o, addr(kAddressTypeCustom | kAddressTypeHome, nullptr)); },
       String(u"ADR;HOME;") + qpMain},
      {"label without custom bit",
       [&](String& o) { vCard::AddAddress(o, addr(kAddressTypeWork, Label(u"Cottage"))); },
       String(u"ADR;WORK;") + qpMain},
      {"address unescaped", [](String& o) { vCard::AddAddress(o, A("a;b", kAddressTypeHome, 0)); },
       u"ADR;HOME:;;a;b;;;;;\r\n"},
      {"address escaped", [](String& o) { vCard::AddAddress(o, A("a;b", kAddressTypeHome, 0)); },
       u"ADR;HOME:;;a\\;b;;;;;\r\n", true},
      {"organization: parts, lines and types", [&](String& o) { vCard::AddOrganization(o, org); },
       u"ORG;HOME;WORK;X-ETC;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:"
       u"Acme;Lab;Chief;Floor=202;Desk:4\r\n"},
      {"organization: position only",
       [](String& o) { vCard::AddOrganization(o, COrganization("", "", "x")); }, u"ORG:;;x\r\n"},
      {"empty organization",
       [](String& o) {
         vCard::AddOrganization(o, COrganization("", "", "", nullptr, kOrganizationTypeWork));
       },
       u""},
  };
  for (const auto& row : rows) {
    vCard::NonstandardEscChar(row.escape);
    vCard::URLNotQPEncode(row.urlAsIs);
    EXPECT_EQ(Written(row.write), row.expected) << row.what;
  }
}

}  // namespace
}  // namespace phonepim
