#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "phonepim/model/CCustomType.h"

namespace phonepim {
namespace {

// The look-up by position must answer what a scan for the first entry with
// the code would, across failed registrations, for codes on both sides of
// the range handed out, and after a reset.
TEST(custom_type_lookup, answers_as_a_scan_of_the_entries_would) {
  CCustomType& table = CCustomType::Inst();
  table.DeleteAllItem();
  std::vector<std::optional<String>> byCode;  // code kFirstCustomType + i
  for (const auto& [text, label] : std::vector<std::pair<String, std::optional<String>>>{
           {u"X-CUSTOM(A)", u"X-CUSTOM(A)"},
           {u"", std::nullopt},
           {u"X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,=42)", u"B"},
           {u"cu\u017Ftom(", std::nullopt},  // the long s folds onto "custom("
           {u"X-CUSTOM(A)", u"X-CUSTOM(A)"}}) {
    if (label) {
      EXPECT_EQ(table.ConvertCustomTypeFromString(text), kFirstCustomType + byCode.size());
    } else {
      EXPECT_THROW(table.ConvertCustomTypeFromString(text), std::out_of_range);
    }
    byCode.push_back(label);
  }
  for (std::uint32_t code = kCustomTypeBase - 2; code != kFirstCustomType + 7; ++code) {
    const std::uint32_t i = code - kFirstCustomType;
    EXPECT_EQ(table.ConvertStringValFromCustomType(code),
              i < byCode.size() ? byCode[i] : std::nullopt)
        << std::hex << code;
  }
  EXPECT_EQ(table.ConvertStringValFromCustomType(0xFFFFFFFF), std::nullopt);
  table.DeleteAllItem();
  EXPECT_EQ(table.ConvertStringValFromCustomType(kFirstCustomType), std::nullopt);
}

}  // namespace
}  // namespace phonepim
