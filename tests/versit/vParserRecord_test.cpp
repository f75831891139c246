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

int Feed(VP* vp, std::string_view text, int final = 0) {
  return CARD_Parse(vp, text.data(), static_cast<int>(text.size()), final);
}

std::intptr_t Word(const VP* vp, int index) { return reinterpret_cast<std::intptr_t>(vp->params[index]); }

TEST(tokenizer_record, parameters_are_offsets_until_the_name_ends) {
  ParserPtr vp(CARD_ParserCreate());
  EXPECT_EQ((std::vector<int>{vp->atLineStart, vp->skipLeadingSpace, vp->lineCapacity, vp->state}),
            (std::vector<int>{1, 1, 0, 0}));
  EXPECT_EQ(vp->line, nullptr);
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

struct Seen {
  VP* vp = nullptr;
  bool checked = false;
  std::vector<int> capacities, lengths;
};

TEST(tokenizer_record, parameters_point_into_the_line_during_the_callback) {
  ParserPtr vp(CARD_ParserCreate());
  Seen seen;
  seen.vp = vp.get();
  CARD_SetUserData(vp.get(), &seen);
  EXPECT_EQ(CARD_GetUserData(vp.get()), &seen);
  CARD_SetPropHandler(vp.get(), [](void* userData, const char* name, char** params) {
    auto* seen = static_cast<Seen*>(userData);
    const VP* vp = seen->vp;
    EXPECT_EQ(name, vp->line);
    for (char** pair = params; pair[0] != nullptr; pair += 2) {
      EXPECT_TRUE(pair[0] > vp->line && pair[0] < vp->line + vp->lineLength);
      if (pair[1] != nullptr) {
        EXPECT_TRUE(pair[1] > vp->line && pair[1] < vp->line + vp->lineLength);
      }
    }
    EXPECT_EQ(params, vp->params);
    EXPECT_EQ(vp->paramCount, 3);  // the null pair is counted
    EXPECT_EQ(params[4], nullptr);
    EXPECT_EQ(params[5], nullptr);
    seen->checked = true;
  });
  // A long name makes the line move while the parameters are collected.
  ASSERT_EQ(Feed(vp.get(), "X-" + std::string(500, 'N') + ";A=" + std::string(300, 'v') + ";B:1", 1), 1);
  EXPECT_TRUE(seen.checked);
}

// The name "NOTE\0" already took one 128-byte step. The value grows the line
// in 128-byte steps; above 1024 bytes it is freed after the property. Plain
// text is copied in runs, QP escapes go byte by byte: both must end with the
// same capacity.
TEST(tokenizer_record, line_grows_in_128_byte_steps_and_is_freed_above_1024) {
  const std::pair<int, int> rows[] = {{127, 128}, {128, 128}, {129, 256}, {1024, 1024}, {1025, 1152}, {5000, 5120}};
  for (const auto& [valueLength, capacity] : rows) {
    const auto n = static_cast<std::size_t>(valueLength);
    std::string escapes;
    while (escapes.size() < n) escapes += "=41";
    const std::string texts[] = {"NOTE:" + std::string(n, 'x'),
                                 "NOTE:" + std::string(n / 2, 'x') + "\r\n " + std::string(n - n / 2, 'y'),
                                 "NOTE;QUOTED-PRINTABLE:" + escapes};
    for (const std::string& text : texts) {
      for (const bool byteByByte : {false, true}) {
        SCOPED_TRACE(text.substr(0, 30) + (byteByByte ? " byte by byte" : " whole"));
        ParserPtr vp(CARD_ParserCreate());
        Seen seen;
  seen.vp = vp.get();
        CARD_SetUserData(vp.get(), &seen);
        CARD_SetPropHandler(vp.get(), [](void*, const char*, char**) {});
        CARD_SetDataHandler(vp.get(), [](void* userData, const char* data, int length) {
          auto* seen = static_cast<Seen*>(userData);
          if (data == nullptr) return;
          EXPECT_EQ(data, seen->vp->line);
          seen->capacities.push_back(seen->vp->lineCapacity);
          seen->lengths.push_back(length);
        });
        if (byteByByte) {
          for (const char ch : text) ASSERT_EQ(CARD_Parse(vp.get(), &ch, 1, 0), 1);
          ASSERT_EQ(CARD_Parse(vp.get(), nullptr, 0, 1), 1);
        } else {
          ASSERT_EQ(Feed(vp.get(), text, 1), 1);
        }
        ASSERT_EQ(seen.lengths.size(), 1u);
        const int expected = std::max(128, (seen.lengths[0] + 127) / 128 * 128);
        EXPECT_EQ(seen.capacities[0], expected);
        if (&text != &texts[2]) {
          EXPECT_EQ((std::pair{seen.lengths[0], expected}), (std::pair{valueLength, capacity}));
        }
        EXPECT_EQ(vp->lineLength, 0);
        EXPECT_EQ(vp->lineCapacity, expected <= 1024 ? expected : 0);
        EXPECT_EQ(vp->line == nullptr, expected > 1024);
      }
    }
  }
  // A freed line is grown again for the next property.
  ParserPtr vp(CARD_ParserCreate());
  ASSERT_EQ(Feed(vp.get(), "NOTE:" + std::string(2000, 'x') + "\r\nTEL:12\r\n", 1), 1);
  EXPECT_EQ(vp->lineCapacity, 128);
  EXPECT_NE(vp->line, nullptr);
}

// An unknown state ignores bytes; a rejected parameter clears the line.
TEST(tokenizer_record, unknown_states_ignore_bytes_and_rejection_clears_the_line) {
  ParserPtr vp(CARD_ParserCreate());
  ASSERT_EQ(Feed(vp.get(), "N"), 1);
  vp->state = 6;
  for (const char ch : std::string("x:;=\\\n\r ")) EXPECT_EQ(vcard_process_char(vp.get(), ch), 1);
  EXPECT_EQ(vp->lineLength, 1);
  EXPECT_EQ(vp->state, 6);
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
  EXPECT_EQ(fresh->lineLength, 0);
  EXPECT_EQ(fresh->atLineStart, 1);
  EXPECT_EQ(CARD_Parse(nullptr, "AB", 2, 1), 0);
  CARD_ParserFree(nullptr);
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (int c = 0; c < 256; ++c) {
    const auto position = alphabet.find(static_cast<char>(c));
    EXPECT_EQ(Base64ToOrd(static_cast<char>(c)), position == std::string::npos ? 255u : position) << c;
  }
  EXPECT_EQ(versit_c_interface_check(), 0);
}

}  // namespace
}  // namespace phonepim::testing_versit
