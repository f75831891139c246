// The tokenizer's record between and during calls: offsets, buffer sizes,
// what carries over from one CARD_Parse call to the next.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "versit/Transcript.h"
#include "versit/vParserInternal.h"

extern "C" int versit_c_interface_check(void);

namespace phonepim::testing_versit {
namespace {

struct ParserDeleter {
  void operator()(VP* parser) const { CARD_ParserFree(parser); }
};
using ParserPtr = std::unique_ptr<VP, ParserDeleter>;

int Feed(VP* vp, std::string_view text, int final = 0) {
  return CARD_Parse(vp, text.data(), static_cast<int>(text.size()), final);
}

std::intptr_t Word(const VP* vp, int index) {
  return reinterpret_cast<std::intptr_t>(vp->params[index]);
}

TEST(tokenizer_record, starts_at_a_line_start_with_an_empty_line) {
  ParserPtr vp(CARD_ParserCreate());
  ASSERT_NE(vp, nullptr);
  EXPECT_EQ(vp->atLineStart, 1);
  EXPECT_EQ(vp->isContinuation, 0);
  EXPECT_EQ(vp->line, nullptr);
  EXPECT_EQ(vp->lineCapacity, 0);
  EXPECT_EQ(vp->lineLength, 0);
  EXPECT_EQ(vp->state, 0);
  EXPECT_EQ(vp->skipLeadingSpace, 1);
  EXPECT_EQ(vp->params, nullptr);
  EXPECT_EQ(vp->paramCount, 0);
  EXPECT_EQ(vp->encoding, 0);
  EXPECT_EQ(vp->quadCount, 0);
  EXPECT_EQ(vp->propHandler, nullptr);
  EXPECT_EQ(vp->dataHandler, nullptr);
  EXPECT_EQ(CARD_GetUserData(vp.get()), nullptr);
  int marker = 0;
  CARD_SetUserData(vp.get(), &marker);
  EXPECT_EQ(CARD_GetUserData(vp.get()), &marker);
}

TEST(tokenizer_record, parameters_are_offsets_until_the_name_ends) {
  ParserPtr vp(CARD_ParserCreate());
  // "X-A\0P\0v\0Q": P at 4, v at 6, Q at 8.
  ASSERT_EQ(Feed(vp.get(), "X-A;P=v;Q"), 1);
  EXPECT_EQ(vp->state, 2);
  EXPECT_EQ(vp->lineLength, 9);
  EXPECT_EQ(std::string(vp->line, 9), std::string("X-A\0P\0v\0Q", 9));
  ASSERT_EQ(vp->paramCount, 2);
  EXPECT_EQ(Word(vp.get(), 0), 4);
  EXPECT_EQ(Word(vp.get(), 1), 6);
  EXPECT_EQ(Word(vp.get(), 2), 8);
  EXPECT_EQ(Word(vp.get(), 3), 0);  // bare so far
}

struct Seen {
  VP* vp = nullptr;
  bool checked = false;
  std::vector<int> capacities;
  std::vector<int> lengths;
};

void CheckPointersInLine(void* userData, const char* name, char** params) {
  auto* seen = static_cast<Seen*>(userData);
  VP* vp = seen->vp;
  EXPECT_EQ(name, vp->line);
  const char* end = vp->line + vp->lineLength;
  int pairs = 0;
  for (char** pair = params; pair[0] != nullptr; pair += 2, ++pairs) {
    EXPECT_GE(pair[0], vp->line);
    EXPECT_LT(pair[0], end);
    if (pair[1] != nullptr) {
      EXPECT_GT(pair[1], vp->line);  // offset 0 is the name, never a value
      EXPECT_LT(pair[1], end);
    }
  }
  EXPECT_EQ(pairs, 2);
  EXPECT_EQ(params, vp->params);
  EXPECT_EQ(vp->paramCount, 3);  // the null pair is counted
  EXPECT_EQ(params[4], nullptr);
  EXPECT_EQ(params[5], nullptr);
  seen->checked = true;
}

TEST(tokenizer_record, parameters_point_into_the_line_during_the_callback) {
  ParserPtr vp(CARD_ParserCreate());
  Seen seen;
  seen.vp = vp.get();
  CARD_SetUserData(vp.get(), &seen);
  CARD_SetPropHandler(vp.get(), &CheckPointersInLine);
  // A long name makes the line move while the parameters are collected.
  const std::string text = "X-" + std::string(500, 'N') + ";A=" + std::string(300, 'v') + ";B:1";
  ASSERT_EQ(Feed(vp.get(), text, 1), 1);
  EXPECT_TRUE(seen.checked);
}

void RecordCapacity(void* userData, const char* data, int length) {
  auto* seen = static_cast<Seen*>(userData);
  if (data != nullptr) {
    EXPECT_EQ(data, seen->vp->line);
    seen->capacities.push_back(seen->vp->lineCapacity);
    seen->lengths.push_back(length);
  }
}

struct CapacityCase {
  int valueLength;
  int capacityDuringValue;
};

class LineBuffer : public ::testing::TestWithParam<CapacityCase> {};

int ExpectedCapacity(int length) { return std::max(128, (length + 127) / 128 * 128); }

Seen ParseAndWatch(const std::string& text, bool byteByByte, ParserPtr& vp) {
  vp.reset(CARD_ParserCreate());
  Seen seen;
  seen.vp = vp.get();
  CARD_SetUserData(vp.get(), &seen);
  CARD_SetDataHandler(vp.get(), &RecordCapacity);
  CARD_SetPropHandler(vp.get(), [](void*, const char*, char**) {});
  if (byteByByte) {
    for (const char ch : text) EXPECT_EQ(CARD_Parse(vp.get(), &ch, 1, 0), 1);
    EXPECT_EQ(CARD_Parse(vp.get(), nullptr, 0, 1), 1);
  } else {
    EXPECT_EQ(Feed(vp.get(), text, 1), 1);
  }
  return seen;
}

// The name "NOTE\0" already took one 128-byte step. The value grows the
// line in 128-byte steps; above 1024 bytes it is freed after the property.
// Plain text is copied in runs, QP escapes go byte by byte: both must end
// with the same capacity.
TEST_P(LineBuffer, grows_in_128_byte_steps_and_is_freed_above_1024) {
  const CapacityCase& c = GetParam();
  const auto n = static_cast<std::size_t>(c.valueLength);
  std::string escapes;
  while (escapes.size() < n) escapes += "=41";
  const std::string texts[] = {"NOTE:" + std::string(n, 'x'),
                               "NOTE:" + std::string(n / 2, 'x') + "\r\n " +
                                   std::string(n - n / 2, 'y'),
                               "NOTE;QUOTED-PRINTABLE:" + escapes};
  for (const std::string& text : texts) {
    for (const bool byteByByte : {false, true}) {
      SCOPED_TRACE(text.substr(0, 30) + (byteByByte ? " byte by byte" : " whole"));
      ParserPtr vp;
      const Seen seen = ParseAndWatch(text, byteByByte, vp);
      ASSERT_EQ(seen.capacities.size(), 1u);
      const int length = seen.lengths[0];
      const int capacity = ExpectedCapacity(length);
      EXPECT_EQ(seen.capacities[0], capacity);
      if (&text != &texts[2]) {
        EXPECT_EQ(length, c.valueLength);
        EXPECT_EQ(capacity, c.capacityDuringValue);
      }
      EXPECT_EQ(vp->lineLength, 0);
      if (capacity <= 1024) {
        EXPECT_NE(vp->line, nullptr);
        EXPECT_EQ(vp->lineCapacity, capacity);
      } else {
        EXPECT_EQ(vp->line, nullptr);
        EXPECT_EQ(vp->lineCapacity, 0);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(tokenizer_record, LineBuffer,
                         ::testing::Values(CapacityCase{2, 128}, CapacityCase{127, 128},
                                           CapacityCase{128, 128}, CapacityCase{129, 256},
                                           CapacityCase{1023, 1024}, CapacityCase{1024, 1024},
                                           CapacityCase{1025, 1152},
                                           CapacityCase{5000, 5120}));

TEST(tokenizer_record, freed_line_is_grown_again_for_the_next_property) {
  const std::string text = "NOTE:" + std::string(2000, 'x') + "\r\nTEL:12\r\n";
  EXPECT_EQ(Tokenize(text),
            (Transcript{"P:NOTE", "D:" + std::string(2000, 'x'), "E", "P:TEL", "D:12", "E", "R:1"}));
  ParserPtr vp(CARD_ParserCreate());
  CARD_SetDataHandler(vp.get(), [](void*, const char*, int) {});
  ASSERT_EQ(Feed(vp.get(), text, 1), 1);
  EXPECT_EQ(vp->lineCapacity, 128);
  EXPECT_NE(vp->line, nullptr);
}

TEST(tokenizer_record, line_end_waits_for_the_next_line) {
  Transcript transcript;
  ParserPtr vp(CARD_ParserCreate());
  CARD_SetUserData(vp.get(), &transcript);
  CARD_SetPropHandler(vp.get(), [](void* user, const char* name, char**) {
    static_cast<Transcript*>(user)->push_back(std::string("P:") + name);
  });
  CARD_SetDataHandler(vp.get(), [](void* user, const char* data, int length) {
    static_cast<Transcript*>(user)->push_back(data ? "D:" + std::string(data, length) : "E");
  });
  ASSERT_EQ(Feed(vp.get(), "N:a\r\n"), 1);
  EXPECT_EQ(transcript, Transcript{"P:N"});
  EXPECT_EQ(vp->atLineStart, 1);
  EXPECT_EQ(vp->isContinuation, 0);
  EXPECT_EQ(vp->state, 5);
  // An empty CRLF line: its CR is the folding white space.
  ASSERT_EQ(Feed(vp.get(), "\r\n"), 1);
  EXPECT_EQ(vp->atLineStart, 1);
  EXPECT_EQ(vp->isContinuation, 1);
  ASSERT_EQ(Feed(vp.get(), "b\n"), 1);
  EXPECT_EQ(transcript, Transcript{"P:N"});
  ASSERT_EQ(Feed(vp.get(), "M"), 1);
  EXPECT_EQ(transcript, (Transcript{"P:N", "D:ab", "E"}));
  EXPECT_EQ(vp->state, 0);
}

TEST(tokenizer_record, unknown_state_ignores_bytes) {
  ParserPtr vp(CARD_ParserCreate());
  ASSERT_EQ(Feed(vp.get(), "AB"), 1);
  vp->state = 6;
  for (const char ch : std::string("x:;=\\\n\r ")) EXPECT_EQ(vcard_process_char(vp.get(), ch), 1);
  EXPECT_EQ(vp->lineLength, 2);
  EXPECT_EQ(vp->state, 6);
}

TEST(tokenizer_record, clear_line_resets_the_property_but_keeps_the_pairs) {
  ParserPtr vp(CARD_ParserCreate());
  ASSERT_EQ(Feed(vp.get(), "X;A=1;B;C=\\"), 1);
  char** pairs = vp->params;
  ASSERT_NE(pairs, nullptr);
  vp->skipLeadingSpace = 0;
  vp->encoding = 2;
  vp->qpPending = 1;
  vp->quad[0] = 'Q';
  vp->quad[3] = 'Z';
  vp->quadCount = 4;
  vp->atLineStart = 1;
  vp->isContinuation = 1;
  vcard_clear_line(vp.get());
  EXPECT_EQ(vp->state, 0);
  EXPECT_EQ(vp->lineLength, 0);
  EXPECT_EQ(vp->lineCapacity, 128);
  EXPECT_EQ(vp->skipLeadingSpace, 1);
  EXPECT_EQ(vp->paramCount, 0);
  EXPECT_EQ(vp->params, pairs);
  EXPECT_EQ(vp->escapeNext, 0);
  EXPECT_EQ(vp->encoding, 0);
  EXPECT_EQ(vp->qpPending, 0);
  EXPECT_EQ(std::string(vp->quad, 4), std::string(4, '\0'));
  EXPECT_EQ(vp->quadCount, 0);
  // The physical-line state is not the property's.
  EXPECT_EQ(vp->atLineStart, 1);
  EXPECT_EQ(vp->isContinuation, 1);
}

TEST(tokenizer_record, rejected_parameter_clears_the_line) {
  for (const char* text : {"TEL;X=1;:", "TEL;X=1;Y=;"}) {
    ParserPtr vp(CARD_ParserCreate());
    EXPECT_EQ(Feed(vp.get(), text), 0) << text;
    EXPECT_EQ(vp->state, 0) << text;
    EXPECT_EQ(vp->lineLength, 0) << text;
    EXPECT_EQ(vp->paramCount, 0) << text;
  }
}

TEST(tokenizer_record, failed_base64_stays_failed_without_looping) {
  ParserPtr vp(CARD_ParserCreate());
  CARD_SetPropHandler(vp.get(), [](void*, const char*, char**) {});
  CARD_SetDataHandler(vp.get(), [](void*, const char*, int) {});
  EXPECT_EQ(Feed(vp.get(), "P;BASE64:QUJDQ", 1), 0);
  EXPECT_EQ(vp->quadCount, 4);
  EXPECT_EQ(std::string(vp->quad, 4), "Q===");
  // Fed again against the rules, it fails again rather than hanging.
  EXPECT_EQ(CARD_Parse(vp.get(), nullptr, 0, 1), 0);
  EXPECT_EQ(Feed(vp.get(), "QUJD"), 0);
}

TEST(tokenizer_record, set_parameter_value_needs_a_pair) {
  ParserPtr vp(CARD_ParserCreate());
  EXPECT_EQ(card_set_paramvalue(vp.get(), 3), 0);
  ASSERT_EQ(card_add_param(vp.get(), 7), 1);
  EXPECT_EQ(card_set_paramvalue(vp.get(), 9), 1);
  EXPECT_EQ(vp->paramCount, 1);
  EXPECT_EQ(Word(vp.get(), 0), 7);
  EXPECT_EQ(Word(vp.get(), 1), 9);
}

TEST(tokenizer_record, base64_alphabet) {
  const std::string alphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (int c = 0; c < 256; ++c) {
    const auto position = alphabet.find(static_cast<char>(c));
    const unsigned expected = position == std::string::npos ? 255u : static_cast<unsigned>(position);
    EXPECT_EQ(Base64ToOrd(static_cast<char>(c)), expected) << "byte " << c;
  }
}

TEST(tokenizer_record, bad_arguments_read_nothing) {
  ParserPtr vp(CARD_ParserCreate());
  EXPECT_EQ(CARD_Parse(vp.get(), nullptr, 5, 0), 1);
  EXPECT_EQ(CARD_Parse(vp.get(), "AB", -1, 0), 1);
  EXPECT_EQ(vp->lineLength, 0);
  EXPECT_EQ(vp->atLineStart, 1);
  EXPECT_EQ(CARD_Parse(nullptr, "AB", 2, 1), 0);
  CARD_ParserFree(nullptr);
}

TEST(tokenizer_record, usable_from_c) { EXPECT_EQ(versit_c_interface_check(), 0); }

}  // namespace
}  // namespace phonepim::testing_versit
