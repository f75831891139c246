// The elements of a record: CItem's text and value object and each
// subclass's equality and emptiness, the eight-part name and address, the
// organization, the extension items and the list storage behind them, and
// the custom-label look-up.
#include <gtest/gtest.h>

#include <climits>
#include <functional>

#include "model/AssertionPattern.h"
#include "phonepim/model/CAttendee.h"
#include "phonepim/model/CCustomType.h"
#include "phonepim/model/CEmail.h"
#include "phonepim/model/CItem.h"
#include "phonepim/model/CMessengerID.h"
#include "phonepim/model/CName.h"
#include "phonepim/model/CNote.h"
#include "phonepim/model/COrganization.h"
#include "phonepim/model/CPostalAddress.h"
#include "phonepim/model/CTelephoneNumber.h"
#include "phonepim/model/CURL.h"
#include "phonepim/model/CVObject.h"
#include "phonepim/model/CXItem.h"
#include "phonepim/model/ElementVector.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;

TEST(item, reads_utf8_and_takes_null_as_empty) {
  const std::pair<const char*, String> rows[] = {
      {"Caf\xC3\xA9 \xE8\x87\xAA \xF0\x9F\x93\x9E", u"Caf\u00E9 \u81EA \U0001F4DE"}, {nullptr, u""}};
  for (const auto& [utf8, expected] : rows) {
    CItem item(utf8, 0x12345678u, 42);
    EXPECT_EQ(std::tuple(item.Data(), item.Param(), item.thisID()), std::tuple(expected, 0x12345678u, 42));
    item.setDataWithString(u"old");
    item.SetValue(utf8);
    EXPECT_EQ(item.GetValue(), expected);
    item.setDataWithString(u"old");
    item.setData(utf8);
    EXPECT_EQ(item.Data(), expected);
  }
}

std::shared_ptr<const String> Label(const char16_t* text) { return std::make_shared<const String>(text); }

template <class T, class... Args>
std::function<std::unique_ptr<CItem>()> Make(Args... args) {
  return [=] { return std::unique_ptr<CItem>(std::make_unique<T>(args...)); };
}

TEST(item, equality_rules_of_each_element) {
  constexpr std::int32_t kRole = ATTENDEE_ROLE_ATTENDEE, kAccepted = ATTENDEE_STATUS_ACCEPTED;
  const auto text = Make<CItem>("Text", 5u, 7), email = Make<CEmail>("u@x.org", kEmailTypeHome, 1),
             messenger = Make<CMessengerID>("someone", kMessengerTypeSkype, 1),
             url = Make<CURL>("http://a.example/", kURLTypeWork, 1), ann = Make<CAttendee>(u"ann", kRole, kAccepted, 1);
  // Each row: two elements and whether each finds the other equal.
  using Maker = std::function<std::unique_ptr<CItem>()>;
  const std::tuple<Maker, Maker, bool, bool> rows[] = {
      // CItem: text, ID and type, all exactly.
      {text, Make<CItem>("Text", 5u, 7), true, true},   {text, Make<CItem>("text", 5u, 7), false, false},
      {text, Make<CItem>("Text", 5u, 8), false, false}, {text, Make<CItem>("Text", 5u | 0x10000000u, 7), false, false},
      // E-mail: PREF cleared, ID ignored, labels not compared; a custom-label
      // code keeps only its low bits once PREF is cleared.
      {email, Make<CEmail>("u@x.org", 0x10000001u, 77), true, true},
      {email, Make<CEmail>("u@x.org", 0x10000002u, 1), false, false},
      {email, Make<CEmail>("u@x.org", 0x3u, 1), false, false},
      {email, Make<CEmail>("U@x.org", kEmailTypeHome, 1), false, false},
      {email, Make<CEmail>("u@x.org", kEmailTypeHome, 1, Label(u"Private")), true, true},
      // Messenger: exactly equal types, ID ignored.
      {messenger, Make<CMessengerID>("someone", kMessengerTypeSkype, 2), true, true},
      {messenger, Make<CMessengerID>("someone", 0x10000008u, 1), false, false},
      {messenger, Make<CMessengerID>("Someone", kMessengerTypeSkype, 1), false, false},
      // URL: PREF cleared, ID ignored.
      {url, Make<CURL>("http://a.example/", 0x10000002u, 3), true, true},
      {url, Make<CURL>("http://a.example/", 0u, 1), false, false},
      {url, Make<CURL>("http://a.example", kURLTypeWork, 1), false, false},
      // Attendee: text, role and status; a plain item of the same text is no
      // attendee, while the item's own rule (text, ID, mask) finds it equal.
      {ann, Make<CAttendee>(u"ann", kRole, kAccepted, 9), true, true},
      {ann, Make<CAttendee>(u"Ann", kRole, kAccepted, 1), false, false},
      {ann, Make<CAttendee>(u"ann", ATTENDEE_ROLE_NONE, kAccepted, 1), false, false},
      {ann, Make<CAttendee>(u"ann", kRole, ATTENDEE_STATUS_DECLIENED, 1), false, false},
      {Make<CAttendee>(u"ann", 0, 0, -1), Make<CItem>("ann", 0u, -1), false, true},
  };
  for (const auto& row : rows) {
    const auto& [makeA, makeB, aEqualsB, bEqualsA] = row;
    const auto a = makeA(), b = makeB();
    EXPECT_EQ(std::pair(a->isEqual(b.get()), b->isEqual(a.get())), std::pair(aEqualsB, bEqualsA)) << &row - rows;
  }
  for (const auto& make : {text, messenger, url, ann}) EXPECT_FALSE(make()->isEqual(nullptr));
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const CEmail email2("a@b", 0, 1);
  EXPECT_DEATH(email2.isEqual(nullptr), AssertionPattern("email != nil"));
}

TEST(item, note_compares_text_and_exact_type_but_not_the_id) {
  const CNote base("Note", 1);
  const std::tuple<const char*, std::uint32_t, bool> rows[] = {{"Note", 0, true}, {"Note", 0x10000000u, false},
                                                               {"Note ", 0, false}};
  for (const auto& [text, type, expected] : rows) {
    CNote other(text, 2);
    other.SetType(type);
    EXPECT_EQ(std::pair(base.IsEqual(&other), other.IsEqual(&base)), std::pair(expected, expected)) << text;
  }
  // The inherited rule still compares the ID.
  const CNote renumbered("Note", 2);
  EXPECT_EQ(std::pair(base.isEqual(&renumbered), base.IsEqual(nullptr)), std::pair(false, false));
}

// A number is equal only through a shared value object; then the types must
// match exactly or be CELL against CELL|HOME. ID and label are ignored.
TEST(item, telephone_equality_needs_the_same_value_object) {
  const std::tuple<std::uint32_t, std::uint32_t, bool> rows[] = {
      {0x20, 0x21, true}, {0x21, 0x20, true}, {0x10000001, 0x10000001, true}, {0x20, 0x22, false}, {0x22, 0x20, false},
      {0x20, 0x10000020, false}, {0x1, 0x21, false}, {0x21, 0x1, false}, {0x4, 0x5, false}};
  for (const auto& [mineType, theirType, expected] : rows) {
    const CTelephoneNumber mine("+1 555 0100", mineType, 1, Label(u"A"));
    CTelephoneNumber theirs = mine;
    theirs.SetType(theirType);
    theirs.setThisID(99);
    EXPECT_EQ(mine.isEqual(&theirs), expected) << std::hex << mineType << " " << theirType;
  }
  // The same digits in another value object, or set anew, are another number.
  const CTelephoneNumber a("0", kTelephoneTypeCell, 1), sameDigits("0", kTelephoneTypeCell, 1);
  CTelephoneNumber b = a;
  b.SetNumber(u"0");
  EXPECT_EQ((std::vector<bool>{a.isEqual(&a), a.isEqual(nullptr), a.isEqual(&sameDigits), b.isEqual(&a)}),
            (std::vector<bool>{true, false, false, false}));
  // The number's rule applies even when called through CItem, while the
  // base rule, text-based, finds the two equal.
  const CItem item("0", kTelephoneTypeCell, 1);
  EXPECT_EQ(std::pair(static_cast<const CItem&>(a).isEqual(&item), item.isEqual(&a)), std::pair(false, true));
}

TEST(item, emptiness_looks_at_the_text_only) {
  const std::pair<std::function<std::unique_ptr<CItem>()>, bool> rows[] = {
      {Make<CTelephoneNumber>("", kTelephoneTypeCustom, 1, Label(u"Main")), true},
      {Make<CEmail>(nullptr, kEmailTypeCustom, 1, Label(u"Private")), true}, {Make<CNote>("\n"), false},
      {Make<CXItem>(u"X-EXPIRY", nullptr, 0u, -1), true},
      // The default and one-text initialisers of each kind.
      {Make<CEmail>(), true}, {Make<CEmail>("a@b"), false}, {Make<CMessengerID>(), true},
      {Make<CMessengerID>("me"), false}, {Make<CNote>(), true}, {Make<CURL>(), true}, {Make<CURL>("http://x"), false},
      {Make<CTelephoneNumber>(), true}, {Make<CTelephoneNumber>("0"), false}};
  for (const auto& row : rows) EXPECT_EQ(row.first()->IsEmpty(), row.second) << &row - rows;
}

TEST(eight_parts, equality_is_case_sensitive_and_an_address_takes_id_and_type_without_pref_not_the_label) {
  const CName smith("Smith"), lower("smith"), same("Smith");
  EXPECT_EQ(std::tuple(smith.IsEqual(&lower), smith.IsEqual(&same), smith.IsEqual(nullptr)),
            std::tuple(false, true, false));
  const CPostalAddress base("Street", kAddressTypeHome, 3);
  const std::tuple<const char*, std::uint32_t, std::int32_t, bool, bool> rows[] = {
      {"Street", 0x10000001, 3, true, true}, {"Street", 0x1, 4, false, false}, {"Street", 0x9, 3, false, false},
      {"street", 0x1, 3, false, false}};
  for (const auto& [street, type, id, labelled, expected] : rows) {
    const CPostalAddress other(street, type, id, labelled ? Label(u"Cottage") : nullptr);
    EXPECT_EQ(std::pair(base.isEqual(&other), other.isEqual(&base)), std::pair(expected, expected)) << type << street;
  }
  EXPECT_FALSE(base.isEqual(nullptr));
  EXPECT_TRUE(CPostalAddress(nullptr, kAddressTypeCustom, 12, Label(u"x")).IsEmpty());
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CName name;
  CPostalAddress address;
  for (unsigned index : {8u, UINT_MAX}) {
    EXPECT_DEATH(name.SetName(u"x", index), AssertionPattern("nIndex < 8"));
    EXPECT_DEATH(address.SetAddress(u"x", index), AssertionPattern("nIndex < kPostalAddressMax"));
  }
}

TEST(organization, equality_compares_lines_then_texts_then_type_and_emptiness_needs_every_part_empty) {
  const std::pair<void (*)(COrganization&), bool> rows[] = {
      {[](COrganization&) {}, true},
      {[](COrganization& o) { o.Additional().push_back(u""); }, false},
      {[](COrganization& o) { std::swap(o.Additional()[0], o.Additional()[1]); }, false},
      {[](COrganization& o) { o.SetName(u"acme"); }, false},
      {[](COrganization& o) { o.SetUnit(u"Sales "); }, false},
      {[](COrganization& o) { o.SetPosition(u""); }, false},
      {[](COrganization& o) { o.SetType(kOrganizationTypeWork | kTypePref); }, false},
  };
  for (const auto& row : rows) {
    COrganization a("ACME", "Sales", "Clerk", "A", kOrganizationTypeWork);
    a.Additional().push_back(u"B");
    COrganization b = a;
    row.first(b);
    EXPECT_EQ(std::pair(a.IsEqual(&b), b.IsEqual(&a)), std::pair(row.second, row.second)) << &row - rows;
  }
  EXPECT_FALSE(COrganization().IsEqual(nullptr));
  COrganization emptyLine;
  emptyLine.Additional().push_back(u"");
  const std::pair<COrganization, bool> empty[] = {
      {COrganization("", "", "", "", kOrganizationTypeWork), true}, {COrganization(nullptr, "U", nullptr), false},
      {COrganization(nullptr, nullptr, "P"), false}, {COrganization("N", nullptr, nullptr), false}, {emptyLine, false}};
  for (const auto& row : empty) EXPECT_EQ(row.first.IsEmpty(), row.second) << &row - empty;
}

TEST(vobject, appends_finds_the_first_of_a_name_and_deletes_items) {
  CVObject record;
  CXItem* group = record.NewXItem("X-GROUP", "\xE5\xAE\xB6", 7, 2);
  CXItem* second = record.NewXItem(u"X-GROUP", u"ext;1", 0x10000000u, 9);
  CXItem* unnamed = record.NewXItem(nullptr, nullptr, 0, -1);
  EXPECT_EQ(std::tuple(group->Name(), group->Data(), group->Param(), group->thisID(), second->GetValue(),
                       second->Param(), second->thisID(), unnamed->Name()),
            std::tuple(u"X-GROUP", u"\u5BB6", 7u, 2, u"ext;1", 0x10000000u, 9, u""));
  EXPECT_EQ(std::tuple(std::as_const(record).FindXItem(u"X-GROUP"), record.FindXItem(u"")), std::tuple(group, unnamed));
  for (const char* other : {"x-group", "X-GROUP ", "X-GROU"}) EXPECT_EQ(record.FindXItem(other), nullptr) << other;
  record.DeleteXItemAtIndex(0);
  EXPECT_EQ(record.FindXItem("X-GROUP"), second);
  for (int index : {2, -1}) EXPECT_THROW(record.DeleteXItemAtIndex(index), std::out_of_range);
  record.DeleteAllXItem();
  EXPECT_EQ(record.GetXItemCount(), 0);
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  record.NewXItem("X-A", "1", 0, -1);
  EXPECT_DEATH(std::as_const(record).GetXItem(1), AssertionPattern("index >= 0 && index < [m_arrXItem count]"));
}

// The look-up by position must answer what a scan for the first entry with
// the code would, across failed registrations, for codes on both sides of
// the range handed out, and after a reset.
TEST(custom_type_lookup, answers_as_a_scan_of_the_entries_would) {
  CCustomType& table = CCustomType::Inst();
  table.DeleteAllItem();
  std::vector<std::optional<String>> byCode;  // code kFirstCustomType + i
  for (const auto& [text, label] : std::vector<std::pair<String, std::optional<String>>>{
           {u"X-CUSTOM(A)", u"X-CUSTOM(A)"}, {u"", std::nullopt},
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
    EXPECT_EQ(table.ConvertStringValFromCustomType(code), i < byCode.size() ? byCode[i] : std::nullopt)
        << std::hex << code;
  }
  EXPECT_EQ(table.ConvertStringValFromCustomType(0xFFFFFFFF), std::nullopt);
  table.DeleteAllItem();
  EXPECT_EQ(table.ConvertStringValFromCustomType(kFirstCustomType), std::nullopt);
}

}  // namespace
}  // namespace phonepim
