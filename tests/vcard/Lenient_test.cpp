// The reader in both modes on the real-world cases lenient reading exists
// for: what the standard rules make of each card, and what lenient reading
// keeps, for the cases the corpus digests do not pin (or not all of). One
// row per case.
#include <gtest/gtest.h>

#include "phonepim/versit/ReadAccount.h"
#include "vcard/vCardTestSupport.h"

namespace phonepim {
namespace {

using testing_vcard::Card;
using testing_vcard::Describe;
using testing_vcard::MakeObject;
using testing_vcard::Read;

TEST(read_both_ways, gives_each_mode_its_fields) {
  const struct {
    const char* name;
    std::string text, strict, lenient;
  } rows[] = {
      {"soft_break_before_blank_line", Card("NOTE;ENCODING=QUOTED-PRINTABLE:a=\r\n\r\nTEL:1\r\n"),
       "NOTE=aTEL:1", "TEL(0)=1; NOTE=a"},
      {"names_in_any_case",
       Card("tel;cell:1\r\nEmail;Internet:a@b\r\nTEL;TYPE=cell,home:2\r\nnote;encoding=quotedprintable:a=3D\r\n"),
       "TEL(0)=2", "TEL(20)=1; TEL(21)=2; EMAIL(0)=a@b; NOTE=a="},
      {"escapes_in_structured_values", Card("N:Sales Dept.\\Manager;a\\;b;c\\\\;d\\,e\r\n"),
       "N=Sales Dept.\\anager|a\\b|c\\;d\\e|||||", "N=Sales Dept.\\Manager|a\\;b|c\\\\|d\\,e||||"},
      {"card_words_any_case_blanks", "BEGIN:vcard \t\r\nVERSION:2.1\r\nFN:a\r\nEND:Vcard\t \r\n", "FN=a", "FN=a"},
      {"name_parts_past_eight", Card("N:a;b;c;d;e;f;g;h;i\r\n"), "N=a|b|c|d|e|f|g|h", "N=a|b|c|d|e|f|g|h"},
      {"underscore_in_quoted_printable_single_value_property_repeated",
       Card("FN;QUOTED-PRINTABLE:(nessa_flame)\r\nTITLE:Chief\r\nTITLE:Boss\r\nBDAY:19990101\r\nBDAY:20000202\r\n"),
       "FN=(nessa flame); BDAY=2000-2-2/0; TITLE=Boss",
       "FN=(nessa_flame); BDAY=2000-2-2/0; TITLE=Boss; X:TITLE=Chief; X:BDAY=19990101"},
      // The splitter keeps a nested card inside: the standard rules mix it
      // into the outer one, lenient reading skips it.
      {"nested_card", Card("N:Parent\r\nBEGIN:VCARD\r\nVERSION:2.1\r\nN:Agent\r\nTEL:9\r\nEND:VCARD\r\nTEL:1\r\n"),
       "N=Agent|||||||; TEL(0)=9; TEL(0)=1", "N=Parent|||||||; TEL(0)=1"},
      {"unplaced", Card("X-FOO:bar\r\nBDAY:1999/01/01\r\nPHOTO;VALUE=URL:http://x\r\nFN;ENCODING=BASE64:QUJD\r\n"),
       "FN=ABC; PHOTO=3:86db69", "FN=ABC; X:X-FOO=bar; X:BDAY=1999/01/01; X:PHOTO=http://x"}};
  const testing_support::ScopedWriterDefaults defaults;
  for (const auto& row : rows) {
    vCard::LenientReading(false);
    EXPECT_EQ(Describe(*Read(row.text)), row.strict) << row.name << " strict";
    vCard::LenientReading(true);
    EXPECT_EQ(Describe(*Read(row.text)), row.lenient) << row.name << " lenient";
  }
}

// The account of each kind of property the tool's check goldens do not
// show: an earlier value a later one replaced, an empty one, a nested card.
TEST(read_lenient, accounts_for_every_property) {
  const testing_support::ScopedWriterDefaults defaults;
  vCard::LenientReading(true);
  CContact contact(u"Contact");
  ReadAccount account;
  const vObject object =
      MakeObject(Card("TITLE:a\r\nTITLE:b\r\nNOTE:\r\nX-A:1\r\nX-GENDER:f\r\n"
                      "BEGIN:VCARD\r\nTEL:9\r\nEND:VCARD\r\n"));
  vCard::Parse(&contact, &object, &account);
  std::string lines;
  for (const PropertyAccount& p : account.properties) {
    lines += p.name + " " + FateWord(p.fate) + " " + p.where + "\n";
  }
  EXPECT_EQ(lines,
            "BEGIN dropped by design recognised, nothing to keep\n"
            "VERSION dropped by design the version, checked\n"
            "TITLE extension extension item TITLE (a later one took the field)\n"
            "TITLE read title\n"
            "NOTE empty no value\n"
            "X-A extension extension item X-A\n"
            "X-GENDER dropped by design recognised, nothing to keep\n"
            "BEGIN dropped by design a nested card, read as a contact of its own\n"
            "END dropped by design recognised, nothing to keep\n");
}

}  // namespace
}  // namespace phonepim
