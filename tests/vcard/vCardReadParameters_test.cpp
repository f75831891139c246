// Custom labels from X-CUSTOM parameters: what the table registers.
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
