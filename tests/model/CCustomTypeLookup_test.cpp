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
// the code answers, across failed registrations and a reset, and for codes
// on both sides of the handed-out range.
TEST(custom_type_lookup, answers_as_a_scan_of_the_entries_would) {
  CCustomType& table = CCustomType::Inst();
  table.DeleteAllItem();
  std::vector<std::pair<std::uint32_t, std::optional<String>>> entries;  // the scan's view
  const auto registerLabel = [&](const String& text, std::optional<String> label) {
    if (label) {
      entries.emplace_back(table.ConvertCustomTypeFromString(text), std::move(label));
    } else {
      EXPECT_THROW(table.ConvertCustomTypeFromString(text), std::out_of_range);
    }
  };
  const auto expectScanAnswers = [&](std::uint32_t last) {
    for (std::uint32_t code = kCustomTypeBase - 2; code != last + 3; ++code) {
      std::optional<String> scanned;
      for (const auto& [entryCode, label] : entries) {
        if (entryCode == code) {
          scanned = label;
          break;
        }
      }
      EXPECT_EQ(table.ConvertStringValFromCustomType(code), scanned) << std::hex << code;
    }
    EXPECT_EQ(table.ConvertStringValFromCustomType(0), std::nullopt);
    EXPECT_EQ(table.ConvertStringValFromCustomType(0xFFFFFFFF), std::nullopt);
  };

  registerLabel(u"X-CUSTOM(A)", u"X-CUSTOM(A)");
  registerLabel(u"", std::nullopt);
  registerLabel(u"X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,=42)", u"B");
  registerLabel(u"==", std::nullopt);
  registerLabel(u"cu\u017Ftom(", std::nullopt);  // the long s folds onto "custom("
  registerLabel(u"X-CUSTOM(A)", u"X-CUSTOM(A)");
  EXPECT_EQ(entries.back().first, kFirstCustomType + 5);
  expectScanAnswers(kFirstCustomType + 5);

  table.DeleteAllItem();
  entries.clear();
  registerLabel(u"X-CUSTOM(C)", u"X-CUSTOM(C)");
  expectScanAnswers(kFirstCustomType);
  table.DeleteAllItem();
}

}  // namespace
}  // namespace phonepim
