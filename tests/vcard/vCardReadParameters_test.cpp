// The property callback's classification, seen through the real tokenizer,
// and custom labels from X-CUSTOM parameters.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/model/CCustomType.h"
#include "phonepim/versit/vParser.h"
#include "vcard/vCardTestSupport.h"
#include "vcard/vCardReaderInternal.h"

namespace phonepim {
namespace {

using testing_vcard::Card;
using testing_vcard::Describe;
using testing_vcard::Read;

struct Classification {
  int propertyID = 0;
  int charset = 0;
  int encoding = 0;
  std::uint32_t typeFlags = 0;
  friend bool operator==(const Classification&, const Classification&) = default;
};

void PrintTo(const Classification& c, std::ostream* os) {
  *os << "{" << c.propertyID << ", " << c.charset << ", " << c.encoding << ", 0x" << std::hex
      << c.typeFlags << std::dec << "}";
}

struct Probe {
  vCard::vCardParseData parseData{nullptr};
  Classification seen;
};

void CaptureProperty(void* data, const char* name, char** params) {
  auto* probe = static_cast<Probe*>(data);
  vCard::vCardPropHandler(&probe->parseData, name, params);
  const vCard::vCardParseData& d = probe->parseData;
  probe->seen = {d.propertyID, d.charset, d.encoding, d.typeFlags};
}

// What the reader makes of the head of one property line ("TEL;CELL").
Classification Classify(std::string_view head) {
  Probe probe;
  VP* parser = CARD_ParserCreate();
  CARD_SetUserData(parser, &probe);
  CARD_SetPropHandler(parser, &CaptureProperty);
  const std::string line = std::string(head) + ":x\r\n";
  EXPECT_EQ(CARD_Parse(parser, line.data(), static_cast<int>(line.size()), 1), 1);
  CARD_ParserFree(parser);
  return probe.seen;
}

TEST(classify_property, sets_code_charset_encoding_and_types) {
  const struct {
    const char* head;
    Classification expected;
  } rows[] = {
      // types
      {"TEL;CELL;PREF", {9, 0, 0, 0x10000020}},
      {"TEL;HOME;DTMF", {9, 0, 0, 0x2000}},
      {"TEL;DTMF;HOME", {9, 0, 0, 0x2001}},
      {"TEL;WORK;PTT;X-CALLBACK;X-ETC", {9, 0, 0, 0x4c000}},
      {"TEL;VOICE;FAX;MSG;PAGER;BBS;MODEM;CAR;ISDN;VIDEO;INTERNET",
       {9, 0, 0, 0x1fdc}},
      {"TEL;TYPE=HOME;home;Pref;X-IRMC-N", {9, 0, 0, 0}},
      {"EMAIL;PREF;HOME;WORK;CELL;X-ETC;INTERNET", {10, 0, 0, 0x1000000f}},
      {"ADR;CELL", {12, 0, 0, 0x8}},
      {"ADR;X-ETC;PREF;WORK", {12, 0, 0, 0x10000006}},
      {"URL;PREF;HOME;WORK;CELL;X-ETC", {11, 0, 0, 0x10000003}},
      {"ORG;HOME;WORK;X-ETC;PREF;CELL", {16, 0, 0, 0xb}},
      {"X-IM;AIM;WINDOWSLIVE;YAHOO;SKYPE;QQ;GOOGLETALK;ICQ;JABBER;HOME",
       {23, 0, 0, 0xff}},
      {"SOUND;X-IRMC-N;HOME", {6, 0, 0, 0x1}},
      {"NOTE;HOME;X-IRMC-N;X-CUSTOM(A)", {13, 0, 0, 0}},
      {"tel;HOME", {-1, 0, 0, 0}},
      // charset and encoding
      {"FN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE", {3, 1, 1, 0}},
      {"FN;CHARSET=SHIFT_JIS;BASE64", {3, 2, 2, 0}},
      {"FN;CHARSET=utf-8;ENCODING=quoted-printable", {3, -1, -1, 0}},
      {"FN;CHARSET=UTF8;ENCODING=8BIT", {3, -1, -1, 0}},
      {"FN;QUOTED-PRINTABLE;ENCODING=b", {3, 0, -1, 0}},
      {"FN;ENCODING=BASE64;QUOTED-PRINTABLE", {3, 0, 1, 0}},
      {"FN;TYPE=QUOTED-PRINTABLE;8BIT", {3, 0, 0, 0}},
      {"FN;CHARSET", {3, -1, 0, 0}},
      {"X-FOO;CHARSET=UTF-8", {-1, 1, 0, 0}},
  };
  for (const auto& row : rows) EXPECT_EQ(Classify(row.head), row.expected) << row.head;
}

TEST(classify_property_name, gives_each_known_name_its_code) {
  const char* const names[] = {
      "BEGIN",       "VERSION",   "FN",          "N",              "NICKNAME", "SOUND",
      "BDAY",        "X-BLOOD",   "TEL",         "EMAIL",          "URL",      "ADR",
      "NOTE",        "TITLE",     "ROLE",        "ORG",            "X-HOBBY",  "PHOTO",
      "X-GENDER",    "GN",        "GT",          "X-GROUP",        "X-IM",     "X-SPEEDDIAL",
      "X-ACCOUNT",   "X-ACCOUNT-N", "X-ACCOUNT-TYPE", "REV",       "X-ANNIVERSARY",
      "X-GDISPN",    "X-SPOUSE",  "X-CHILDREN",  "X-ASSISTANT",    "END"};
  for (int i = 0; i < static_cast<int>(std::size(names)); ++i) {
    EXPECT_EQ(Classify(names[i]).propertyID, i + 1) << names[i];
  }
  for (const char* unknown : {"X-ACCOUNT-", "Tel", "NAME", "X-IRMC-LUID", "AGENT"}) {
    EXPECT_EQ(Classify(unknown).propertyID, -1) << unknown;
  }
}

std::string LabelOf(std::uint32_t code) {
  const std::optional<String> label = CCustomType::Inst().ConvertStringValFromCustomType(code);
  return label ? ToDisplayUTF8(*label) : "(none)";
}

TEST(read_custom_label, registers_the_joined_parameter_text) {
  CCustomType::Inst().DeleteAllItem();
  const auto contact = Read(Card(
      "TEL;X-CUSTOM(Main):1\r\n"
      "TEL;PREF;X-CUSTOM(Main):2\r\n"
      "TEL;TYPE=X-CUSTOM(Main):3\r\n"
      "EMAIL;X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,=E5=AE=B6):a@b\r\n"
      "ADR;X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,Office):;;x\r\n"
      "ADR;HOME:;;y\r\n"
      "ORG;X-CUSTOM(Club):A\r\n"
      "X-IM;AIM;X-CUSTOM(Line):id\r\n"
      "URL;X-CUSTOM(Web):u\r\n"
      "EMAIL;X-CUSTOM(Private):user\r\n"));
  EXPECT_EQ(Describe(*contact),
            "TEL(100000)=1; TEL(10100000)=2; TEL(0)=3; EMAIL(10,label=家)=a@b; EMAIL(10)=user; "
            "URL(0)=u; ADR(10,label=Office)=||x|||||; ADR(1)=||y|||||; ORG(10000005)=A||; "
            "IM(10000007)=id");
  // A plain label stays in the table whole, parameters before it included.
  const char* const labels[] = {"X-CUSTOM(Main)", "PREF=X-CUSTOM(Main)", "家",
                                "Office",         "X-CUSTOM(Club)",      "X-CUSTOM(Line)",
                                "X-CUSTOM(Private)", "(none)"};
  for (std::uint32_t i = 0; i < std::size(labels); ++i) {
    EXPECT_EQ(LabelOf(kFirstCustomType + i), labels[i]) << i;
  }
}

TEST(read_custom_label, every_parameter_registers_up_to_the_cap) {
  // Each X-CUSTOM parameter registers the same joined text; past the cap the
  // rest register nothing, and the next property's label takes the next code.
  for (const int parameters : {2, 64, 2000}) {
    CCustomType::Inst().DeleteAllItem();
    std::string head = "TEL";
    for (int i = 0; i < parameters; ++i) head += ";X-CUSTOM(" + std::to_string(i) + ")";
    const auto contact = Read(Card(head + ":1\r\nTEL;X-CUSTOM(B):2\r\n"));
    const auto registered = static_cast<std::uint32_t>(std::min(parameters, 64));
    EXPECT_EQ(Describe(*contact), "TEL(100000)=1; TEL(100000)=2");
    EXPECT_EQ(LabelOf(kFirstCustomType + registered - 1), "X-CUSTOM(0)");
    EXPECT_EQ(LabelOf(kFirstCustomType + registered), "X-CUSTOM(B)");
  }
}

TEST(read_custom_label, without_closing_parenthesis_runs_to_the_last_parameter) {
  CCustomType::Inst().DeleteAllItem();
  const auto contact = Read(Card("TEL;X-CUSTOM(Main;HOME:1\r\n"));
  EXPECT_EQ(Describe(*contact), "TEL(100001)=1");
  EXPECT_EQ(LabelOf(kFirstCustomType), "X-CUSTOM(Main=HOME");
}

TEST(read_custom_label, that_the_table_cannot_register_stops_the_reading) {
  // The quoted-printable prefix with no label after it leaves nothing to
  // register: std::out_of_range, passed on once the tokenizer is done.
  auto contact = std::make_unique<CContact>(u"Contact");
  const vObject object = testing_vcard::MakeObject(
      Card("TEL:0\r\nTEL;X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,:1\r\nTEL:2\r\n"));
  EXPECT_THROW(vCard::Parse(contact.get(), &object), std::out_of_range);
  EXPECT_EQ(Describe(*contact), "TEL(0)=0");
}

}  // namespace
}  // namespace phonepim
