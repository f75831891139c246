// Every property the reader stores, with its decoding: one card per row and
// the complete description of the contact it yields.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/model/CCustomType.h"
#include "vcard/vCardTestSupport.h"
#include "vcard/vCardReaderInternal.h"

namespace phonepim {
namespace {

using testing_vcard::Card;
using testing_vcard::Describe;
using testing_vcard::Read;

TEST(read_property, stores_exactly) {
  const testing_support::ScopedWriterDefaults defaults;
  const struct {
    const char* lines;     // the card's properties, CRLF-terminated
    const char* expected;  // Describe() of the contact
    bool escapes = false;  // vCard::sm_fNonstandardEscChar
  } rows[] = {
      // text
      {"FN;QUOTED-PRINTABLE:a=3Db\r\nTITLE;ENCODING=8BIT:a=3D\r\n", "FN=a=b; TITLE=a=3D"},
      // An unknown charset reads as UTF-8: Latin-1 bytes decode to nothing.
      {"FN;CHARSET=ISO-8859-1:caf\xE9\r\nNOTE;CHARSET=ISO-8859-1:caf\xE9\r\n", "NOTE="},
      {"EMAIL:a\\;b@example.com\r\n", "EMAIL(0)=a\\;b@example.com", true},

      {"TITLE:Dr\r\nROLE:Lead\r\nX-HOBBY:Go\r\nX-ACCOUNT:a\r\nX-ACCOUNT-N:b\r\nX-ACCOUNT-TYPE:c\r\n"
       "X-SPOUSE:Eve\r\nX-CHILDREN:Cain, Abel\r\n",
       "TITLE=Dr; ROLE=Lead; HOBBY=Go; ACCOUNT=a; ACCOUNT-N=b; ACCOUNT-TYPE=c; SPOUSE=Eve; CHILDREN=Cain, Abel"},
      {"NICKNAME:Bob\r\nNICKNAME:Rob\r\nGN:Family\r\nGT:Sm\r\nX-GDISPN:My family\r\n",
       "NICK=Bob; NICK=Rob; GN=Family; GT=2; GDISPN=My family"},
      // An element keeps its text up to a U+0000, wherever it stands.
      {"NOTE;ENCODING=QUOTED-PRINTABLE:ab=00cd\r\n"
       "NOTE;ENCODING=QUOTED-PRINTABLE:0123456789=00x\r\n"
       "NOTE;ENCODING=QUOTED-PRINTABLE:0123456=00x\r\n"
       "EMAIL;ENCODING=QUOTED-PRINTABLE:a@b.example=00.org\r\n",
       "EMAIL(0)=a@b.example; NOTE=ab; NOTE=0123456789; NOTE=0123456"},
      {"URL;WORK;PREF:http://a.example/\r\nX-IM;SKYPE;QQ:me\r\n", "URL(10000002)=http://a.example/; IM(18)=me"},
      // Recognised and dropped, unknown, empty, names that are not exact and
      // whole, dates and blood types not in a phone's form: nothing stored.
      {"X-GENDER:Male\r\nX-UNKNOWN:x\r\nfn:lower\r\nTITLE:\r\nREV:0\r\nX-ACCOUNT-:a\r\nTel:b\r\n"
       "NAME:c\r\nX-IRMC-LUID:d\r\nAGENT:e\r\nBDAY:1999/01/01\r\nX-ANNIVERSARY:1999-01-01T00:00:00\r\n"
       "X-BLOOD:O\r\nX-BLOOD:A+\r\n", ""},
      // structured
      {"N:Doe\\;Jr;\\\\;x\r\nREV:20200101T000000Z\r\n", "N=Doe\\Jr|\\;x||||||; REV=set"},
      {"SOUND;X-IRMC-N:;Taro\r\nSOUND:Yamada;Taro\r\n", "RF=Taro; RL=Yamada"},
      {"ADR;HOME:;;Main St 1;Town;;12345;Land;Hood;extra\r\n", "ADR(1)=||Main St 1|Town||12345|Land|Hood"},
      {"ORG;WORK:Acme;R&D;Lead;;Extra 1;Extra 2\r\nORG:Solo\r\n",
       "ORG(2)=Acme|R&D|Lead|+Extra 1|+Extra 2; ORG(0)=Solo||"},
      {"X-ASSISTANT:Jane;+49 1;more\r\n", "ASSISTANT=Jane; ASSISTANT#=+49 1"},
      {"X-ASSISTANT:Jane\r\n", "ASSISTANT=Jane"},
      // type words, in any order, PREF and X-ETC included; DTMF and PTT
      // wipe the words before them; TYPE= and other properties' words count
      // for nothing
      {"TEL;CELL;PREF:1\r\nTEL;HOME;DTMF:2\r\nTEL;DTMF;HOME:3\r\n"
       "TEL;WORK;PTT;X-CALLBACK;X-ETC:4\r\nTEL;VOICE;FAX;MSG;PAGER;BBS;MODEM;CAR;ISDN;VIDEO;INTERNET:5\r\n"
       "TEL;TYPE=HOME;home;Pref;X-IRMC-N:6\r\n",
       "TEL(10000020)=1; TEL(2000)=2; TEL(2001)=3; TEL(4c000)=4; TEL(1fdc)=5; TEL(0)=6"},
      {"EMAIL;PREF;HOME;WORK;CELL;X-ETC;INTERNET:a\r\nADR;CELL:b\r\nADR;X-ETC;PREF;WORK:c\r\n"
       "URL;PREF;HOME;WORK;CELL;X-ETC:d\r\nORG;HOME;WORK;X-ETC;PREF;CELL:e\r\n"
       "X-IM;AIM;WINDOWSLIVE;YAHOO;SKYPE;QQ;GOOGLETALK;ICQ;JABBER;HOME:f\r\n"
       "SOUND;X-IRMC-N;HOME:g;h\r\nNOTE;HOME;X-IRMC-N;X-CUSTOM(A):i\r\ntel;HOME:j\r\n",
       "RF=h; RL=g; EMAIL(1000000f)=a; URL(10000003)=d; ADR(8)=b|||||||; ADR(10000006)=c|||||||; "
       "NOTE=i; ORG(b)=e||; IM(ff)=f"},
      // charset and encoding words: exact case only
      {"FN;CHARSET=SHIFT_JIS;BASE64:gqA=\r\nTITLE;CHARSET=utf-8;ENCODING=quoted-printable:a=3D\r\n"
       "ROLE;CHARSET=UTF8;ENCODING=8BIT:b=3D\r\nNOTE;QUOTED-PRINTABLE;ENCODING=b:c=3D\r\n"
       "X-HOBBY;ENCODING=BASE64;QUOTED-PRINTABLE:d=3D\r\nX-SPOUSE;TYPE=QUOTED-PRINTABLE;8BIT:e=3D\r\n"
       "X-CHILDREN;CHARSET:f=3D\r\nX-FOO;CHARSET=UTF-8:g\r\n",
       "FN=あ; NOTE=c=3D; TITLE=a=3D; ROLE=b=3D; HOBBY=d=; SPOUSE=e=3D; CHILDREN=f=3D"},
      // telephone; charset and encoding do not apply to numbers
      {"TEL;CELL;PREF:010\\,123\r\nTEL:a\\;b\\\\,c\r\nTEL;ENCODING=QUOTED-PRINTABLE:=31=32\r\n"
       "TEL;CHARSET=SHIFT_JIS:\x8E\x52\r\n", "TEL(10000020)=010,123; TEL(0)=a;b\\,c; TEL(0)==31=32; TEL(0)="},
      // codes
      {"BDAY:19990101L\r\n", "BDAY=1999-1-1/1"},
      {"BDAY:1999-12-31Y\r\nX-ANNIVERSARY:20100615L\r\n", "BDAY=1999-12-31/2; ANNIV=2010-6-15/1"},
      {"BDAY:19991399\r\n", "BDAY=1999-13-99/0"},
      {"BDAY:19990101\r\nBDAY:1999-1-01L\r\n", "BDAY=1999-1-1/0"},
      {"X-BLOOD:AB\r\nX-GROUP:9\r\nX-GROUP:1,,22, 3x,\r\n", "BLOOD=3; GROUPS=1,0,22,3,0"},
      {"X-SPEEDDIAL:3, ,5\r\n", "SPEED=3,-1,5,-1,-1,-1,-1,-1,-1,-1"},
      // The tokenizer drops a value's leading blanks, so the empty first
      // slot reaches ParseSpeedDial as ",5" and survives (see below).
      {"X-SPEEDDIAL: ,5\r\n", "SPEED=-1,5,-1,-1,-1,-1,-1,-1,-1,-1"},
      {"X-SPEEDDIAL:1,2,3,4,5,6,7,8,9,10,11\r\n", "SPEED=1,2,3,4,5,6,7,8,9,10"},
      // Data on the next line passes through as text and decodes whole;
      // data on the property line is already bytes, which the photo's own
      // BASE64 pass then reads as characters.
      {"PHOTO;ENCODING=BASE64;TYPE=JPEG:\r\n QUJD\r\n REVG\r\n", "PHOTO=6:414243444546"},
      {"PHOTO;ENCODING=BASE64:QUJD\r\n REVG\r\n", "PHOTO=5:0010911151"},
      {"PHOTO;ENCODING=BASE64:\r\n QUI=\r\n", "PHOTO=2:4142"},
  };
  for (const auto& row : rows) {
    vCard::NonstandardEscChar(row.escapes);
    EXPECT_EQ(Describe(*Read(Card(row.lines))), row.expected) << row.lines;
  }
}

// The value parsers alone: a blood type compares as phones do (up to a NUL,
// empty reads as A), a group type matches a prefix of its word, speed dials
// split like strtok after a leading comma and space.
TEST(read_value, blood_group_and_speed_dial_parsers) {
  using Parser = void (*)(const char*, int, std::uint32_t*);
  const std::pair<Parser, std::vector<std::pair<std::string, std::uint32_t>>> codes[] = {
      {vCard::ParseBloodType, {{"A", 1}, {"B", 2}, {"O", 4}, {"AB", 3}, {"A+", 0}, {"Bx", 0}, {"ABO", 0},
                               {"a", 0}, {std::string("A\0x", 3), 1}, {"", 1}}},
      {vCard::ParseGroupType, {{"Normal", 1}, {"N", 1}, {"Smart", 2}, {"S", 2}, {"SYSTEM", 3}, {"SY", 3},
                               {"READ_ONLY", 0}, {"Normals", 0}, {"normal", 0}}}};
  for (const auto& [parse, values] : codes) {
    for (const auto& [value, expected] : values) {
      std::uint32_t type = 99;
      parse(value.data(), static_cast<int>(value.size()), &type);
      EXPECT_EQ(type, expected) << value;
    }
  }
  const std::pair<std::string, std::array<std::int32_t, 4>> dials[] = {
      {" ,5", {0, 5, 99, 99}}, {",5", {-1, 5, 99, 99}}, {"3,", {3, 99, 99, 99}},
      {"3, , 4x,-2", {3, -1, 4, -2}}, {"", {-1, 99, 99, 99}}, {",,,", {-1, 99, 99, 99}},
      // atoi's overflow: strtol saturates, the int keeps the low bits.
      {"99999999999,-99999999999999999999", {1215752191, 0, 99, 99}}};
  for (const auto& [value, expected] : dials) {
    std::array<std::int32_t, 10> slots;
    slots.fill(99);
    vCard::ParseSpeedDial(value.c_str(), static_cast<int>(value.size()), slots.data());
    EXPECT_EQ((std::array<std::int32_t, 6>{slots[0], slots[1], slots[2], slots[3], slots[4], slots[9]}),
              (std::array<std::int32_t, 6>{expected[0], expected[1], expected[2], expected[3], 99, 99}))
        << value;
  }
  // No terminator after the four characters: the reader must not look on.
  const char photo[4] = {'Q', 'U', 'J', 'D'};
  EXPECT_EQ(vCard::ParsePhoto(photo, 4, 0, kEncodingBase64), (Bytes{'A', 'B', 'C'}));
  // A separator is escaped by the one character before it.
  EXPECT_EQ((std::vector<bool>{IsSemicolon(";", 0), IsSemicolon("a;", 1), IsSemicolon("a\\;", 2),
                               IsSemicolon("a,", 1)}),
            (std::vector<bool>{true, true, false, false}));
}

// --- Custom labels from X-CUSTOM parameters ----------------------------

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
    const CCustomType& table = CCustomType::Inst();
    EXPECT_EQ(table.ConvertStringValFromCustomType(kFirstCustomType + registered - 1), String(u"X-CUSTOM(0)"));
    EXPECT_EQ(table.ConvertStringValFromCustomType(kFirstCustomType + registered), String(u"X-CUSTOM(B)"));
  }
}

TEST(read_custom_label, that_the_table_cannot_register_stops_the_reading) {
  // The quoted-printable prefix with no label after it leaves nothing to
  // register: std::out_of_range, passed on once the tokenizer is done.
  CContact contact(u"Contact");
  const vObject object = testing_vcard::MakeObject(
      Card("TEL:0\r\nTEL;X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,:1\r\nTEL:2\r\n"));
  EXPECT_THROW(vCard::Parse(&contact, &object), std::out_of_range);
  EXPECT_EQ(Describe(contact), "TEL(0)=0");
}

}  // namespace
}  // namespace phonepim
