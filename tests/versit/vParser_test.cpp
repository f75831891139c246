// Input -> callback transcript tables for the tokenizer. Every case is run
// whole, cut at every offset, cut into random pieces, fed byte by byte and
// through the per-byte reference driver; all must give the same transcript.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "versit/Transcript.h"

namespace phonepim::testing_versit {
namespace {

using namespace std::string_literals;

struct Case {
  const char* name;
  std::string input;
  Transcript expected;
  Handlers handlers = Handlers::kBoth;
};

void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }

class TokenizerTable : public ::testing::TestWithParam<Case> {};

TEST_P(TokenizerTable, whole_input) {
  const Case& c = GetParam();
  EXPECT_EQ(Tokenize(c.input, {}, c.handlers), c.expected);
}

TEST_P(TokenizerTable, every_split_point) {
  const Case& c = GetParam();
  for (std::size_t cut = 0; cut <= c.input.size(); ++cut) {
    EXPECT_EQ(Tokenize(c.input, {cut}, c.handlers), c.expected) << "cut at " << cut;
  }
}

TEST_P(TokenizerTable, random_pieces) {
  const Case& c = GetParam();
  std::mt19937 random(20240601u);
  for (int round = 0; round < 25; ++round) {
    std::vector<std::size_t> cuts;
    std::uniform_int_distribution<std::size_t> offset(0, c.input.size());
    for (int i = 0; i < 4; ++i) cuts.push_back(offset(random));
    std::sort(cuts.begin(), cuts.end());  // repeated cuts give empty pieces
    EXPECT_EQ(Tokenize(c.input, cuts, c.handlers), c.expected)
        << "cuts " << ::testing::PrintToString(cuts);
  }
}

TEST_P(TokenizerTable, byte_by_byte) {
  const Case& c = GetParam();
  EXPECT_EQ(TokenizeByteByByte(c.input, c.handlers), c.expected);
}

TEST_P(TokenizerTable, per_byte_reference) {
  const Case& c = GetParam();
  EXPECT_EQ(TokenizeReference(c.input, c.handlers), c.expected);
}

// --- property lines, names and line ends --------------------------------

const Case kLines[] = {
    {"crlf_property", "TEL;TYPE=CELL:123\r\n", {"P:TEL;TYPE=CELL", "D:123", "E", "R:1"}},
    {"lf_property", "TEL;TYPE=CELL:123\n", {"P:TEL;TYPE=CELL", "D:123", "E", "R:1"}},
    {"final_ends_unterminated_line", "TEL:123", {"P:TEL", "D:123", "E", "R:1"}},
    {"whole_card",
     "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Doe;John\r\nEND:VCARD\r\n",
     {"P:BEGIN", "D:VCARD", "E", "P:VERSION", "D:2.1", "E", "P:N", "D:Doe;John", "E",
      "P:END", "D:VCARD", "E", "R:1"}},
    {"empty_value_gets_only_end", "X-NO:\r\nX-B:1\r\n",
     {"P:X-NO", "E", "P:X-B", "D:1", "E", "R:1"}},
    {"empty_name", ":abc\r\n", {"P:", "D:abc", "E", "R:1"}},
    {"white_space_in_name_ignored", "T E\tL :1\r\n", {"P:TEL", "D:1", "E", "R:1"}},
    {"case_kept", "tel;type=cell:1\n", {"P:tel;type=cell", "D:1", "E", "R:1"}},
    {"line_without_colon_dropped", "BEGIN\r\nTEL:1\r\n", {"P:TEL", "D:1", "E", "R:1"}},
    {"last_line_without_colon_dropped", "TEL:1\r\nGARBAGE", {"P:TEL", "D:1", "E", "R:1"}},
    {"empty_input", "", {"R:1"}},
    {"only_line_ends", "\r\n\r\n\n", {"R:1"}},
    {"colon_inside_value", "URL:http://a.example/x:y\r\n",
     {"P:URL", "D:http://a.example/x:y", "E", "R:1"}},
    {"lone_cr_inside_value_ignored", "N:a\rb\r\n", {"P:N", "D:ab", "E", "R:1"}},
    {"nul_byte_in_value", "N:a\0b\r\n"s, {"P:N", "D:a\\x00b", "E", "R:1"}},
    {"high_bytes_in_value", "N:\xC3\xA9\xFF\r\n", {"P:N", "D:\\xC3\\xA9\\xFF", "E", "R:1"}},
    {"leading_space_of_first_line_folds_nothing", " TEL:1\r\n", {"P:TEL", "D:1", "E", "R:1"}},
    {"value_leading_spaces_dropped", "N:  Smith  x \r\n", {"P:N", "D:Smith  x ", "E", "R:1"}},
    {"value_leading_tabs_dropped", "N:\t \vSmith\r\n", {"P:N", "D:Smith", "E", "R:1"}},
    {"value_of_spaces_is_empty", "N:   \r\nX:1\r\n", {"P:N", "E", "P:X", "D:1", "E", "R:1"}},
};
INSTANTIATE_TEST_SUITE_P(lines, TokenizerTable, ::testing::ValuesIn(kLines),
                         [](const auto& info) { return std::string(info.param.name); });

// --- folding and empty lines --------------------------------------------

const Case kFolding[] = {
    {"folded_value", "NOTE:abc\r\n def\r\n", {"P:NOTE", "D:abcdef", "E", "R:1"}},
    {"folded_value_lf", "NOTE:abc\n def\n", {"P:NOTE", "D:abcdef", "E", "R:1"}},
    {"folded_with_tab", "NOTE:abc\r\n\tdef\r\n", {"P:NOTE", "D:abcdef", "E", "R:1"}},
    {"two_leading_spaces_keep_one", "NOTE:abc\r\n  def\r\n", {"P:NOTE", "D:abc def", "E", "R:1"}},
    {"folded_name", "NO\r\n TE:x\r\n", {"P:NOTE", "D:x", "E", "R:1"}},
    {"fold_after_empty_first_line_skips_leading_space", "N:\r\n  Smith\r\n",
     {"P:N", "D:Smith", "E", "R:1"}},
    {"several_folds", "NOTE:a\r\n b\r\n c\r\n d\r\nX:1\r\n",
     {"P:NOTE", "D:abcd", "E", "P:X", "D:1", "E", "R:1"}},
    // A CR at the start of a line is the folding white space, so an empty
    // CRLF line joins the next line to the current property.
    {"empty_crlf_line_makes_continuation", "NOTE:abc\r\n\r\nX:1\r\n",
     {"P:NOTE", "D:abcX:1", "E", "R:1"}},
    {"empty_crlf_line_then_space_keeps_space", "NOTE:abc\r\n\r\n x\r\n",
     {"P:NOTE", "D:abc x", "E", "R:1"}},
    {"empty_lf_lines_ignored", "NOTE:abc\n\n\nX:1\n",
     {"P:NOTE", "D:abc", "E", "P:X", "D:1", "E", "R:1"}},
    {"empty_lf_lines_before_fold", "NOTE:abc\n\n def\n", {"P:NOTE", "D:abcdef", "E", "R:1"}},
    {"final_after_line_end", "A:1\r\nB:2\r\n", {"P:A", "D:1", "E", "P:B", "D:2", "E", "R:1"}},
};
INSTANTIATE_TEST_SUITE_P(folding, TokenizerTable, ::testing::ValuesIn(kFolding),
                         [](const auto& info) { return std::string(info.param.name); });

// --- parameters -----------------------------------------------------------

const Case kParameters[] = {
    {"bare_parameters", "TEL;CELL;PREF:1\r\n", {"P:TEL;CELL;PREF", "D:1", "E", "R:1"}},
    {"mixed_parameters", "ADR;HOME;CHARSET=UTF-8;X:;;St\r\n",
     {"P:ADR;HOME;CHARSET=UTF-8;X", "D:;;St", "E", "R:1"}},
    {"white_space_around_parameters", "TEL; TYPE = CELL ;PREF :1\r\n",
     {"P:TEL;TYPE=CELL;PREF", "D:1", "E", "R:1"}},
    {"equals_inside_value", "X;A=b=c:v\r\n", {"P:X;A=b\\x3Dc", "D:v", "E", "R:1"}},
    {"semicolon_starts_a_parameter_name", "TEL;;X:1\r\n", {"P:TEL;\\x3BX", "D:1", "E", "R:1"}},
    {"equals_starts_a_parameter_name", "TEL;=X:1\r\n", {"P:TEL;\\x3DX", "D:1", "E", "R:1"}},
    {"backslash_in_parameter_name", "X;P\\Q=1:v\r\n", {"P:X;P\\x5CQ=1", "D:v", "E", "R:1"}},
    {"escaped_semicolon", "X-A;P=a\\;b:v\r\n", {"P:X-A;P=a\\x3Bb", "D:v", "E", "R:1"}},
    // The escape waits for the next ';' or '\', whatever comes between.
    {"escape_survives_other_bytes", "X-A;P=a\\b;c:v\r\n", {"P:X-A;P=ab\\x3Bc", "D:v", "E", "R:1"}},
    {"escaped_backslash_then_separator", "X-A;P=a\\\\;b:v\r\n",
     {"P:X-A;P=a\\x5C;b", "D:v", "E", "R:1"}},
    {"escape_across_white_space", "X-A;P=a\\ ;b:v\r\n", {"P:X-A;P=a\\x3Bb", "D:v", "E", "R:1"}},
    {"escape_split_by_line_end", "X-A;P=a\\\r\n;b:v\r\n", {"P:X-A;P=a\\x3Bb", "D:v", "E", "R:1"}},
    {"pending_escape_dropped_at_colon", "X-A;P=a\\:v\r\nB;Q=x;y:1\r\n",
     {"P:X-A;P=a", "D:v", "E", "P:B;Q=x;y", "D:1", "E", "R:1"}},
    // White space, LF included, is skipped inside the parameter list, so
    // the next line carries on with it.
    {"line_break_in_parameter_name", "TEL;CELL\r\nX:1\r\n", {"P:TEL;CELLX", "D:1", "E", "R:1"}},
    {"line_break_after_equals", "TEL;TYPE=\r\nCELL:1\r\n", {"P:TEL;TYPE=CELL", "D:1", "E", "R:1"}},
    {"line_break_in_parameter_value", "ATTENDEE;STATUS=NEEDS\r\nACTION:x\r\n",
     {"P:ATTENDEE;STATUS=NEEDSACTION", "D:x", "E", "R:1"}},
    {"line_break_before_parameter_drops_line", "TEL;\r\nX:1\r\n", {"P:X", "D:1", "E", "R:1"}},
    {"empty_parameter", "TEL;:1\r\n", {"R:0"}},
    {"empty_parameter_after_space", "TEL; :1\r\n", {"R:0"}},
    {"empty_parameter_value_colon", "TEL;TYPE=:1\r\n", {"R:0"}},
    {"empty_parameter_value_semicolon", "TEL;TYPE=;X:1\r\n", {"R:0"}},
    {"empty_parameter_value_after_space", "TEL;TYPE= :1\r\n", {"R:0"}},
    {"many_parameters_last_names_the_encoding",
     "X;A;B;C;D;E;F;G;H;I=1;J=2;QUOTED-PRINTABLE:a=\r\nb\r\n",
     {"P:X;A;B;C;D;E;F;G;H;I=1;J=2;QUOTED-PRINTABLE", "D:ab", "E", "R:1"}},
    {"high_bytes_in_names", "N\xC3\xA4ME;P\xFF=v\xFE:x\r\n",
     {"P:N\\xC3\\xA4ME;P\\xFF=v\\xFE", "D:x", "E", "R:1"}},
    {"error_keeps_earlier_properties_and_stops", "A:1\r\nTEL;:1\r\nB:2\r\n",
     {"P:A", "D:1", "E", "R:0"}},
};
INSTANTIATE_TEST_SUITE_P(parameters, TokenizerTable, ::testing::ValuesIn(kParameters),
                         [](const auto& info) { return std::string(info.param.name); });

// --- value encodings ------------------------------------------------------

const Case kEncodings[] = {
    {"qp_escape_kept_soft_break_removed", "NOTE;ENCODING=QUOTED-PRINTABLE:a=3D=\r\nb\r\n",
     {"P:NOTE;ENCODING=QUOTED-PRINTABLE", "D:a=3Db", "E", "R:1"}},
    {"qp_bare_parameter", "NOTE;QUOTED-PRINTABLE:a=\r\nb\r\n",
     {"P:NOTE;QUOTED-PRINTABLE", "D:ab", "E", "R:1"}},
    {"qp_soft_break_lf", "NOTE;QUOTED-PRINTABLE:a=\nb\n",
     {"P:NOTE;QUOTED-PRINTABLE", "D:ab", "E", "R:1"}},
    {"qp_soft_break_then_folded_line", "NOTE;QUOTED-PRINTABLE:a=\r\n b\r\n",
     {"P:NOTE;QUOTED-PRINTABLE", "D:ab", "E", "R:1"}},
    {"qp_soft_break_line_looks_like_property", "N;QUOTED-PRINTABLE:a=\r\nTEL:1\r\n",
     {"P:N;QUOTED-PRINTABLE", "D:aTEL:1", "E", "R:1"}},
    {"qp_several_soft_breaks", "NOTE;QUOTED-PRINTABLE:=C3=\r\n=A9=\r\n=\r\nx\r\n",
     {"P:NOTE;QUOTED-PRINTABLE", "D:=C3=A9x", "E", "R:1"}},
    // An escape cut by a line end loses the digit already read.
    {"qp_escape_split_by_line_end", "NOTE;QUOTED-PRINTABLE:x=4\r\n1\r\n",
     {"P:NOTE;QUOTED-PRINTABLE", "D:x1", "E", "R:1"}},
    {"qp_escape_split_by_fold", "NOTE;QUOTED-PRINTABLE:x=4\r\n 1\r\n",
     {"P:NOTE;QUOTED-PRINTABLE", "D:x1", "E", "R:1"}},
    {"qp_double_equals_before_break", "N;QUOTED-PRINTABLE:==\r\nD0=A1\r\n",
     {"P:N;QUOTED-PRINTABLE", "D:D0=A1", "E", "R:1"}},
    // A NUL digit leaves the first slot empty, so it is overwritten.
    {"qp_nul_digit_overwritten", "X;QUOTED-PRINTABLE:=\0AB\r\n"s,
     {"P:X;QUOTED-PRINTABLE", "D:=AB", "E", "R:1"}},
    {"qp_space_digits_kept", "X;QUOTED-PRINTABLE:a= b\r\n",
     {"P:X;QUOTED-PRINTABLE", "D:a= b", "E", "R:1"}},
    {"qp_cr_inside_escape_ignored", "X;QUOTED-PRINTABLE:=4\r1\r\n",
     {"P:X;QUOTED-PRINTABLE", "D:=41", "E", "R:1"}},
    // The value is still open: the final line end is a soft break.
    {"qp_trailing_equals_at_end_of_input", "NOTE;QUOTED-PRINTABLE:abc=",
     {"P:NOTE;QUOTED-PRINTABLE", "R:1"}},
    {"qp_name_is_case_sensitive", "N;quoted-printable:a=\r\nb\r\n",
     {"P:N;quoted-printable", "D:a=", "E", "R:1"}},
    {"encoding_parameter_name_is_case_sensitive", "N;Encoding=QUOTED-PRINTABLE:a=\r\nb\r\n",
     {"P:N;Encoding=QUOTED-PRINTABLE", "D:a=", "E", "R:1"}},
    {"other_parameter_value_not_an_encoding", "N;TYPE=QUOTED-PRINTABLE:a=\r\nb\r\n",
     {"P:N;TYPE=QUOTED-PRINTABLE", "D:a=", "E", "R:1"}},
    {"bare_encoding_without_value", "N;ENCODING:a=\r\nb\r\n", {"P:N;ENCODING", "D:a=", "E", "R:1"}},
    {"last_encoding_wins_8bit", "N;QUOTED-PRINTABLE;ENCODING=8BIT:a=\r\nb\r\n",
     {"P:N;QUOTED-PRINTABLE;ENCODING=8BIT", "D:a=", "E", "R:1"}},
    {"last_encoding_wins_qp", "N;8BIT;QUOTED-PRINTABLE:a=\r\nb\r\n",
     {"P:N;8BIT;QUOTED-PRINTABLE", "D:ab", "E", "R:1"}},
    {"unknown_parameter_keeps_encoding", "N;QUOTED-PRINTABLE;CHARSET=UTF-8:a=\r\nb\r\n",
     {"P:N;QUOTED-PRINTABLE;CHARSET=UTF-8", "D:ab", "E", "R:1"}},
    {"unknown_encoding_keeps_encoding", "N;QUOTED-PRINTABLE;ENCODING=b:a=\r\nb\r\n",
     {"P:N;QUOTED-PRINTABLE;ENCODING=b", "D:ab", "E", "R:1"}},
    {"8bit_passes_bytes", "N;ENCODING=8BIT:\xC3\xA9=\r\nX:1\r\n",
     {"P:N;ENCODING=8BIT", "D:\\xC3\\xA9=", "E", "P:X", "D:1", "E", "R:1"}},
    {"next_property_starts_unencoded", "N;QUOTED-PRINTABLE:a\r\nM:b=\r\nc\r\n",
     {"P:N;QUOTED-PRINTABLE", "D:a", "E", "P:M", "D:b=", "E", "R:1"}},

    {"base64_three_bytes", "PHOTO;ENCODING=BASE64:QUJD", {"P:PHOTO;ENCODING=BASE64", "D:ABC", "E", "R:1"}},
    {"base64_one_pad", "PHOTO;ENCODING=BASE64:QUI=\r\n", {"P:PHOTO;ENCODING=BASE64", "D:AB", "E", "R:1"}},
    {"base64_two_pads", "PHOTO;ENCODING=BASE64:QQ==\r\n", {"P:PHOTO;ENCODING=BASE64", "D:A", "E", "R:1"}},
    {"base64_bare_parameter", "PHOTO;BASE64:QUJDRA==\r\n", {"P:PHOTO;BASE64", "D:ABCD", "E", "R:1"}},
    {"base64_binary", "P;BASE64:/+8A\r\n", {"P:P;BASE64", "D:\\xFF\\xEF\\x00", "E", "R:1"}},
    {"base64_white_space_inside_group", "P;BASE64:  QU\tJ D\r\n", {"P:P;BASE64", "D:ABC", "E", "R:1"}},
    {"base64_groups_after_padding", "P;BASE64:QUI=QUJD\r\n", {"P:P;BASE64", "D:ABABC", "E", "R:1"}},
    {"base64_fourth_not_checked_after_third_pad", "P;BASE64:QQ=*\r\n", {"P:P;BASE64", "D:A", "E", "R:1"}},
    // Only the first physical line is decoded; the folded rest is text.
    {"base64_folded_lines_are_text", "PHOTO;ENCODING=BASE64:QUJD\r\n QUJD\r\n QUI=\r\nX:1\r\n",
     {"P:PHOTO;ENCODING=BASE64", "D:ABCQUJDQUI=", "E", "P:X", "D:1", "E", "R:1"}},
    {"base64_partial_group_before_fold_is_lost", "P;BASE64:QUJDQU\r\n xy\r\n",
     {"P:P;BASE64", "D:ABCxy", "E", "R:1"}},
    {"base64_value_on_next_line_is_text", "PHOTO;ENCODING=BASE64:\r\n QUJD\r\n",
     {"P:PHOTO;ENCODING=BASE64", "D:QUJD", "E", "R:1"}},
    // A line end is seen at the next line, after the encoding has been
    // reset, so a partial group there is dropped without padding ...
    {"base64_partial_group_at_line_end_dropped", "P;BASE64:QUJDQUI\r\nX:1\r\n",
     {"P:P;BASE64", "D:ABC", "E", "P:X", "D:1", "E", "R:1"}},
    {"base64_one_char_at_line_end_dropped", "P;BASE64:QUJDQ\r\nX:1\r\n",
     {"P:P;BASE64", "D:ABC", "E", "P:X", "D:1", "E", "R:1"}},
    // ... while the final line end pads it.
    {"base64_final_pads_three", "P;BASE64:QUI", {"P:P;BASE64", "D:AB", "E", "R:1"}},
    {"base64_final_pads_two", "P;BASE64:QUJDQQ", {"P:P;BASE64", "D:ABCA", "E", "R:1"}},
    {"base64_final_after_crlf_pads", "P;BASE64:QUI\r\n", {"P:P;BASE64", "D:AB", "E", "R:1"}},
    {"base64_one_char_remainder_fails", "P;BASE64:QUJDQ", {"P:P;BASE64", "R:0"}},
    {"base64_one_char_remainder_fails_after_crlf", "P;BASE64:Q\r\n", {"P:P;BASE64", "R:0"}},
    {"base64_invalid_first", "P;BASE64:*UJD\r\nX:1\r\n", {"P:P;BASE64", "R:0"}},
    {"base64_invalid_second", "P;BASE64:Q=JD\r\n", {"P:P;BASE64", "R:0"}},
    {"base64_invalid_third", "P;BASE64:QU*D\r\n", {"P:P;BASE64", "R:0"}},
    {"base64_invalid_fourth", "P;BASE64:QUJ-\r\n", {"P:P;BASE64", "R:0"}},
    {"base64_url_alphabet_rejected", "P;BASE64:QUJ_\r\n", {"P:P;BASE64", "R:0"}},
};
INSTANTIATE_TEST_SUITE_P(encodings, TokenizerTable, ::testing::ValuesIn(kEncodings),
                         [](const auto& info) { return std::string(info.param.name); });

// --- missing callbacks ----------------------------------------------------

const Case kHandlers[] = {
    // Without a property callback nobody looks at the parameters, so the
    // value stays unencoded.
    {"no_prop_handler_qp_not_decoded", "NOTE;ENCODING=QUOTED-PRINTABLE:a=3D=\r\nb\r\n",
     {"D:a=3D=", "E", "R:1"}, Handlers::kDataOnly},
    {"no_prop_handler_base64_is_text", "P;ENCODING=BASE64:QUJD\r\n",
     {"D:QUJD", "E", "R:1"}, Handlers::kDataOnly},
    {"no_prop_handler_one_char_base64_fine", "P;ENCODING=BASE64:Q", {"D:Q", "E", "R:1"},
     Handlers::kDataOnly},
    {"no_data_handler", "TEL;TYPE=CELL:123\r\nN:x\r\n", {"P:TEL;TYPE=CELL", "P:N", "R:1"},
     Handlers::kPropOnly},
    // The '=' is never looked at, so there is no soft break either.
    {"no_data_handler_no_soft_break", "N;QUOTED-PRINTABLE:a=\r\nB:1\r\n",
     {"P:N;QUOTED-PRINTABLE", "P:B", "R:1"}, Handlers::kPropOnly},
    {"no_data_handler_bad_base64_ignored", "P;BASE64:****\r\nQ;BASE64:Q", {"P:P;BASE64", "P:Q;BASE64", "R:1"},
     Handlers::kPropOnly},
    {"no_handlers_still_reject_empty_parameter", "A:1\r\nTEL;:1\r\n", {"R:0"}, Handlers::kNone},
    {"no_handlers", "A:1\r\nB;X=y:2\r\n", {"R:1"}, Handlers::kNone},
};
INSTANTIATE_TEST_SUITE_P(handlers, TokenizerTable, ::testing::ValuesIn(kHandlers),
                         [](const auto& info) { return std::string(info.param.name); });

// --- long values: the buffer grows and is given back ---------------------

const Case kLongValues[] = {
    {"value_of_2000_bytes", "NOTE:" + std::string(2000, 'x') + "\r\nA:1\r\n",
     {"P:NOTE", "D:" + std::string(2000, 'x'), "E", "P:A", "D:1", "E", "R:1"}},
    {"long_name_and_parameters",
     "X-" + std::string(300, 'N') + ";P=" + std::string(300, 'v') + ":1\r\n",
     {"P:X-" + std::string(300, 'N') + ";P=" + std::string(300, 'v'), "D:1", "E", "R:1"}},
    {"long_qp_value", "N;QUOTED-PRINTABLE:" + std::string(700, 'a') + "=\r\n" + std::string(700, 'b') + "=41",
     {"P:N;QUOTED-PRINTABLE", "D:" + std::string(700, 'a') + std::string(700, 'b') + "=41", "E", "R:1"}},
};
INSTANTIATE_TEST_SUITE_P(long_values, TokenizerTable, ::testing::ValuesIn(kLongValues),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace phonepim::testing_versit
