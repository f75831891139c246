#include "phonepim/model/CNote.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace phonepim {
namespace {

TEST(CNote, initialisers) {
  const CNote plain;
  EXPECT_EQ(plain.GetNote(), u"");
  EXPECT_EQ(plain.GetType(), 0u);
  EXPECT_EQ(plain.thisID(), -1);

  const CNote textOnly("call back\r\nafter 6");
  EXPECT_EQ(textOnly.GetNote(), u"call back\r\nafter 6");
  EXPECT_EQ(textOnly.GetType(), 0u);
  EXPECT_EQ(textOnly.thisID(), -1);

  const CNote withID("n", 17);
  EXPECT_EQ(withID.GetNote(), u"n");
  EXPECT_EQ(withID.GetType(), 0u);
  EXPECT_EQ(withID.thisID(), 17);
}

struct NoteEqualityCase {
  const char* name;
  const char* text;
  std::uint32_t type;
  std::int32_t id;
  bool expected;
};

// Compared with a note "Note" of type 0 and ID 1, in both directions.
const NoteEqualityCase kNoteEquality[] = {
    {"same", "Note", 0, 1, true},
    {"other_id", "Note", 0, 2, true},
    {"typed", "Note", 1, 1, false},
    {"pref", "Note", 0x10000000, 1, false},
    {"other_case", "note", 0, 1, false},
    {"trailing_space", "Note ", 0, 1, false},
};

class note_equality : public ::testing::TestWithParam<NoteEqualityCase> {};

TEST_P(note_equality, compares_text_and_exact_type) {
  const CNote base("Note", 1);
  CNote other(GetParam().text, GetParam().id);
  other.SetType(GetParam().type);
  EXPECT_EQ(base.IsEqual(&other), GetParam().expected);
  EXPECT_EQ(other.IsEqual(&base), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(all, note_equality, ::testing::ValuesIn(kNoteEquality),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(CNote, inherited_isEqual_still_compares_the_id) {
  const CNote a("Note", 1);
  const CNote b("Note", 2);
  EXPECT_TRUE(a.IsEqual(&b));
  EXPECT_FALSE(a.isEqual(&b));
}

TEST(CNote, is_unequal_to_null) {
  const CNote note("x");
  EXPECT_FALSE(note.IsEqual(nullptr));
}

}  // namespace
}  // namespace phonepim
