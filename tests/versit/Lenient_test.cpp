// The tokenizer's lenient decisions, each input whole, cut at every offset
// and fed byte by byte: the state they carry (a soft break pending, a BASE64
// value going on) must survive any cut.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "versit/Transcript.h"

namespace phonepim::testing_versit {
namespace {

void OnProperty(void* out, const char* name, char** params) {
  std::string entry = "P:" + RenderBytes(name, true);
  for (char** pair = params; pair[0] != nullptr; pair += 2) {
    entry += ";" + RenderBytes(pair[0], true);
    if (pair[1] != nullptr) entry += "=" + RenderBytes(pair[1], true);
  }
  static_cast<Transcript*>(out)->push_back(entry);
}

void OnData(void* out, const char* data, int length) {
  static_cast<Transcript*>(out)->push_back(
      data == nullptr ? "E" : "D:" + RenderBytes(std::string_view(data, length), false));
}

// Lenient tokenizing of `input` in pieces ending at each of `cuts`.
Transcript TokenizeLenient(const std::string& input, std::vector<std::size_t> cuts) {
  Transcript out;
  const std::unique_ptr<VP, void (*)(VP*)> parser(CARD_ParserCreate(), CARD_ParserFree);
  CARD_SetUserData(parser.get(), &out);
  CARD_SetPropHandler(parser.get(), OnProperty);
  CARD_SetDataHandler(parser.get(), OnData);
  CARD_SetLenient(parser.get(), 1);
  cuts.push_back(input.size());
  std::size_t from = 0;
  for (std::size_t i = 0; i < cuts.size(); ++i) {
    const bool last = i + 1 == cuts.size();
    if (CARD_Parse(parser.get(), input.data() + from, static_cast<int>(cuts[i] - from),
                   last ? 1 : 0) == 0) {
      out.push_back("R:0");
      return out;
    }
    from = cuts[i];
  }
  return out;
}

struct Case {
  const char* name;
  std::string input;
  Transcript expected;
};

class tokenize_lenient : public ::testing::TestWithParam<Case> {};

TEST_P(tokenize_lenient, whole_cut_anywhere_and_byte_by_byte) {
  const Case& c = GetParam();
  EXPECT_EQ(TokenizeLenient(c.input, {}), c.expected);
  std::vector<std::size_t> bytes;
  for (std::size_t cut = 0; cut <= c.input.size(); ++cut) {
    EXPECT_EQ(TokenizeLenient(c.input, {cut}), c.expected) << "cut at " << cut;
    if (cut != 0 && cut != c.input.size()) bytes.push_back(cut);
  }
  EXPECT_EQ(TokenizeLenient(c.input, bytes), c.expected) << "byte by byte";
}

INSTANTIATE_TEST_SUITE_P(
    cases, tokenize_lenient,
    ::testing::Values(
        Case{"blank_crlf_line_separates", "NOTE:hello\r\n\r\nTEL;CELL:1\r\n",
             {"P:NOTE", "D:hello", "E", "P:TEL;CELL", "D:1", "E"}},
        Case{"soft_break_then_blank_line_ends_the_value",
             "NOTE;ENCODING=QUOTED-PRINTABLE:a=\r\n\r\nTEL:1\r\n",
             {"P:NOTE;ENCODING=QUOTED-PRINTABLE", "D:a", "E", "P:TEL", "D:1", "E"}},
        Case{"soft_break_then_text_goes_on", "NOTE;QUOTED-PRINTABLE:a=\r\nb=3D\r\n",
             {"P:NOTE;QUOTED-PRINTABLE", "D:ab=3D", "E"}},
        Case{"base64_from_the_property_line_arrives_whole",
             "PHOTO;ENCODING=BASE64:/9j/\r\n 4A AQ\r\n\r\nTEL:1\r\n",
             {"P:PHOTO;ENCODING=BASE64", "D:/9j/4A AQ", "E", "P:TEL", "D:1", "E"}},
        Case{"names_upper_labels_and_values_as_written",
             "tel;x-custom(Night);type=cell:1\r\n",
             {"P:TEL;X-CUSTOM(Night);TYPE=cell", "D:1", "E"}},
        Case{"encoding_words_in_any_case_and_spelling",
             "note;encoding=quotedprintable:a=\r\nb\r\nKEY;ENCODING=b:QU\r\n JD\r\n",
             {"P:NOTE;ENCODING=quotedprintable", "D:ab", "E", "P:KEY;ENCODING=b", "D:QUJD",
              "E"}}),
    [](const ::testing::TestParamInfo<Case>& info) { return info.param.name; });

}  // namespace
}  // namespace phonepim::testing_versit
