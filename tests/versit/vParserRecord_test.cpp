// The tokenizer's record between and during calls: offsets, pointers into
// the line, what carries over from one CARD_Parse call to the next.
#include <gtest/gtest.h>

#include <cstdint>

#include "versit/Transcript.h"
#include "versit/vParserInternal.h"

namespace phonepim::testing_versit {
namespace {

int Feed(VP* vp, std::string_view text, int final = 0) {
  return CARD_Parse(vp, text.data(), static_cast<int>(text.size()), final);
}

std::intptr_t Word(const VP* vp, int index) { return reinterpret_cast<std::intptr_t>(vp->params[index]); }

TEST(tokenizer_record, parameters_are_offsets_until_the_name_ends) {
  ParserPtr vp(CARD_ParserCreate());
  EXPECT_EQ((std::vector<int>{vp->atLineStart, vp->skipLeadingSpace, vp->lineCapacity, vp->state, vp->line == nullptr}),
            (std::vector<int>{1, 1, 0, 0, 1}));
  // "X-A\0P\0v\0Q": P at 4, v at 6, Q at 8, bare so far.
  ASSERT_EQ(Feed(vp.get(), "X-A;P=v;Q"), 1);
  EXPECT_EQ(vp->state, 2);
  EXPECT_EQ(std::string(vp->line, static_cast<std::size_t>(vp->lineLength)), std::string("X-A\0P\0v\0Q", 9));
  ASSERT_EQ(vp->paramCount, 2);
  EXPECT_EQ((std::vector<std::intptr_t>{Word(vp.get(), 0), Word(vp.get(), 1), Word(vp.get(), 2), Word(vp.get(), 3)}),
            (std::vector<std::intptr_t>{4, 6, 8, 0}));
  EXPECT_EQ(card_set_paramvalue(vp.get(), 3), 1);
  ParserPtr empty(CARD_ParserCreate());
  EXPECT_EQ(card_set_paramvalue(empty.get(), 3), 0);
}

TEST(tokenizer_record, parameters_point_into_the_line_during_the_callback) {
  ParserPtr parser(CARD_ParserCreate());
  static int calls = 0;
  CARD_SetUserData(parser.get(), parser.get());
  EXPECT_EQ(CARD_GetUserData(parser.get()), parser.get());
  CARD_SetPropHandler(parser.get(), [](void* userData, const char* name, char** params) {
    const VP* vp = static_cast<const VP*>(userData);
    EXPECT_EQ(name, vp->line);
    for (char** pair = params; pair[0] != nullptr; pair += 2) {
      for (const char* word : {pair[0], pair[1]}) {
        EXPECT_TRUE(word == nullptr || (word > vp->line && word < vp->line + vp->lineLength));
      }
    }
    EXPECT_EQ(params, vp->params);
    EXPECT_EQ(vp->paramCount, 3);  // the null pair is counted
    EXPECT_EQ((std::pair{params[4], params[5]}), (std::pair<char*, char*>{}));
    ++calls;
  });
  // A long name makes the line move while the parameters are collected.
  ASSERT_EQ(Feed(parser.get(), "X-" + std::string(500, 'N') + ";A=" + std::string(300, 'v') + ";B:1", 1), 1);
  EXPECT_EQ(calls, 1);
}

// An unknown state ignores bytes; a rejected parameter clears the line.
TEST(tokenizer_record, unknown_states_ignore_bytes_and_rejection_clears_the_line) {
  ParserPtr vp(CARD_ParserCreate());
  ASSERT_EQ(Feed(vp.get(), "N"), 1);
  vp->state = 6;
  for (const char ch : std::string("x:;=\\\n\r ")) EXPECT_EQ(vcard_process_char(vp.get(), ch), 1);
  EXPECT_EQ((std::pair{vp->lineLength, vp->state}), (std::pair{1, 6}));
  for (const char* text : {"TEL;X=1;:", "TEL;X=1;Y=;"}) {
    ParserPtr rejected(CARD_ParserCreate());
    EXPECT_EQ(Feed(rejected.get(), text), 0) << text;
    EXPECT_EQ((std::vector<int>{rejected->state, rejected->lineLength, rejected->paramCount}), std::vector<int>(3, 0));
  }
}

TEST(tokenizer_record, failed_base64_stays_failed_and_bad_arguments_read_nothing) {
  ParserPtr vp(CARD_ParserCreate());
  CARD_SetPropHandler(vp.get(), [](void*, const char*, char**) {});
  CARD_SetDataHandler(vp.get(), [](void*, const char*, int) {});
  EXPECT_EQ(Feed(vp.get(), "P;BASE64:QUJDQ", 1), 0);
  EXPECT_EQ(std::string(vp->quad, static_cast<std::size_t>(vp->quadCount)), "Q===");
  // Fed again against the rules, it fails again rather than hanging.
  EXPECT_EQ(CARD_Parse(vp.get(), nullptr, 0, 1), 0);
  EXPECT_EQ(Feed(vp.get(), "QUJD"), 0);
  ParserPtr fresh(CARD_ParserCreate());
  EXPECT_EQ(CARD_Parse(fresh.get(), nullptr, 5, 0), 1);
  EXPECT_EQ(CARD_Parse(fresh.get(), "AB", -1, 0), 1);
  EXPECT_EQ((std::pair{fresh->lineLength, fresh->atLineStart}), (std::pair{0, 1}));
  EXPECT_EQ(CARD_Parse(nullptr, "AB", 2, 1), 0);
  CARD_ParserFree(nullptr);
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (int c = 0; c < 256; ++c) {
    const auto position = alphabet.find(static_cast<char>(c));
    EXPECT_EQ(Base64ToOrd(static_cast<char>(c)), position == std::string::npos ? 255u : position) << c;
  }
}

}  // namespace
}  // namespace phonepim::testing_versit
