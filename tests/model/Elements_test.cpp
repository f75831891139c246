// The elements of a record: CItem's text and value object and each
// subclass's equality and emptiness, the eight-part name and address, the
// organization, the extension items and the list storage behind them, and
// the custom-label look-up.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

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

TEST(item, reads_utf8_and_puts_in_a_new_value_object_each_time) {
  const struct {
    const char* utf8;
    String expected;
  } rows[] = {{"Caf\xC3\xA9 \xE8\x87\xAA \xF0\x9F\x93\x9E", u"Caf\u00E9 \u81EA \U0001F4DE"},
              {nullptr, u""},
              {"ab\xC3", u""},
              {"Caf\xE9", u""}};
  for (const auto& r : rows) {
    CItem item(r.utf8, 0x12345678u, 42);
    EXPECT_EQ(std::tuple(item.Data(), item.Param(), item.thisID()), std::tuple(r.expected, 0x12345678u, 42));
    item.setDataWithString(u"old");
    item.SetValue(r.utf8);
    EXPECT_EQ(item.GetValue(), r.expected);
    item.setDataWithString(u"old");
    item.setData(r.utf8);
    EXPECT_EQ(item.Data(), r.expected);
  }
  // A copy shares the value object until either side is given a new value.
  CItem item("555", 0, 0);
  const CItem copy = item;
  EXPECT_EQ(copy.DataObject(), item.DataObject());
  for (const auto& set : std::initializer_list<std::function<void()>>{[&] { item.SetValue("555"); },
                                                                      [&] { item.setData("555"); },
                                                                      [&] { item.setDataWithString(u"555"); }}) {
    const std::shared_ptr<const String> before = item.DataObject();
    set();
    EXPECT_NE(item.DataObject(), before);
  }
  EXPECT_EQ(*copy.DataObject(), u"555");
}

std::shared_ptr<const String> Label(const char16_t* text) { return std::make_shared<const String>(text); }

// Each row: two elements and whether each finds the other equal.
struct EqualityRow {
  const char* name;
  std::function<std::unique_ptr<CItem>()> a, b;
  bool aEqualsB, bEqualsA;
};

template <class T, class... Args>
std::function<std::unique_ptr<CItem>()> Make(Args... args) {
  return [=] { return std::unique_ptr<CItem>(std::make_unique<T>(args...)); };
}

TEST(item, equality_rules_of_each_element) {
  const auto text = Make<CItem>("Text", 5u, 7);
  const auto email = Make<CEmail>("user@example.org", kEmailTypeHome, 1);
  const auto messenger = Make<CMessengerID>("someone", kMessengerTypeSkype, 1);
  const auto url = Make<CURL>("http://a.example/", kURLTypeWork, 1);
  const auto ann = Make<CAttendee>(u"ann@example.com", ATTENDEE_ROLE_ATTENDEE, ATTENDEE_STATUS_ACCEPTED, 1);
  const EqualityRow rows[] = {
      // CItem: text, ID and type, all exactly.
      {"item_same", text, Make<CItem>("Text", 5u, 7), true, true},
      {"item_case", text, Make<CItem>("text", 5u, 7), false, false},
      {"item_id", text, Make<CItem>("Text", 5u, 8), false, false},
      {"item_pref", text, Make<CItem>("Text", 5u | 0x10000000u, 7), false, false},
      // E-mail: PREF cleared, ID ignored, labels not compared; a custom-label
      // code keeps only its low bits once PREF is cleared.
      {"email_pref_and_id", email, Make<CEmail>("user@example.org", 0x10000001u, 77), true, true},
      {"email_custom_code", email, Make<CEmail>("user@example.org", 0x10000002u, 1), false, false},
      {"email_type_added", email, Make<CEmail>("user@example.org", 0x3u, 1), false, false},
      {"email_case", email, Make<CEmail>("User@example.org", kEmailTypeHome, 1), false, false},
      {"email_labels", Make<CEmail>("a@b", kEmailTypeCustom, 1, Label(u"One")),
       Make<CEmail>("a@b", kEmailTypeCustom, 1, Label(u"Two")), true, true},
      // Messenger: exactly equal types, ID ignored.
      {"messenger_id", messenger, Make<CMessengerID>("someone", kMessengerTypeSkype, 2), true, true},
      {"messenger_pref", messenger, Make<CMessengerID>("someone", 0x10000008u, 1), false, false},
      {"messenger_case", messenger, Make<CMessengerID>("Someone", kMessengerTypeSkype, 1), false, false},
      // URL: PREF cleared, ID ignored.
      {"url_pref_and_id", url, Make<CURL>("http://a.example/", 0x10000002u, 3), true, true},
      {"url_no_type", url, Make<CURL>("http://a.example/", 0u, 1), false, false},
      {"url_text", url, Make<CURL>("http://a.example", kURLTypeWork, 1), false, false},
      // Attendee: text, role and status; a plain item of the same text is no
      // attendee, while the item's own rule (text, ID, mask) finds it equal.
      {"attendee_id", ann, Make<CAttendee>(u"ann@example.com", ATTENDEE_ROLE_ATTENDEE, ATTENDEE_STATUS_ACCEPTED, 9),
       true, true},
      {"attendee_case", ann,
       Make<CAttendee>(u"Ann@example.com", ATTENDEE_ROLE_ATTENDEE, ATTENDEE_STATUS_ACCEPTED, 1), false, false},
      {"attendee_role", ann, Make<CAttendee>(u"ann@example.com", ATTENDEE_ROLE_NONE, ATTENDEE_STATUS_ACCEPTED, 1),
       false, false},
      {"attendee_status", ann, Make<CAttendee>(u"ann@example.com", 1, ATTENDEE_STATUS_DECLIENED, 1), false, false},
      {"attendee_against_item", Make<CAttendee>(u"ann", 0, 0, -1), Make<CItem>("ann", 0u, -1), false, true},
  };
  for (const auto& r : rows) {
    const auto a = r.a(), b = r.b();
    EXPECT_EQ(std::pair(a->isEqual(b.get()), b->isEqual(a.get())), std::pair(r.aEqualsB, r.bEqualsA)) << r.name;
  }
  for (const auto& make : {text, messenger, url, ann}) EXPECT_FALSE(make()->isEqual(nullptr));
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const CEmail email2("a@b", 0, 1);
  EXPECT_DEATH(email2.isEqual(nullptr), AssertionPattern("email != nil"));
}

TEST(item, note_compares_text_and_exact_type_but_not_the_id) {
  const CNote base("Note", 1);
  EXPECT_EQ(base.GetType(), 0u);
  const struct {
    const char* text;
    std::uint32_t type;
    bool expected;
  } rows[] = {{"Note", 0, true}, {"Note", 0x10000000u, false}, {"Note ", 0, false}};
  for (const auto& r : rows) {
    CNote other(r.text, 2);
    other.SetType(r.type);
    EXPECT_EQ(std::pair(base.IsEqual(&other), other.IsEqual(&base)), std::pair(r.expected, r.expected)) << r.text;
  }
  // The inherited rule still compares the ID.
  const CNote renumbered("Note", 2);
  EXPECT_FALSE(base.isEqual(&renumbered));
  EXPECT_FALSE(base.IsEqual(nullptr));
}

// A number is equal only through a shared value object; then the types must
// match exactly or be CELL against CELL|HOME. ID and label are ignored.
TEST(item, telephone_equality_needs_the_same_value_object) {
  const struct {
    std::uint32_t mine, theirs;
    bool expected;
  } rows[] = {{0x20, 0x21, true}, {0x21, 0x20, true}, {0x10000001, 0x10000001, true}, {0x20, 0x22, false},
              {0x22, 0x20, false}, {0x20, 0x10000020, false}, {0x1, 0x21, false}, {0x21, 0x1, false},
              {0x4, 0x5, false}};
  for (const auto& r : rows) {
    const CTelephoneNumber mine("+1 555 0100", r.mine, 1, Label(u"A"));
    CTelephoneNumber theirs = mine;
    theirs.SetType(r.theirs);
    theirs.setThisID(99);
    EXPECT_EQ(mine.isEqual(&theirs), r.expected) << std::hex << r.mine << " " << r.theirs;
  }
  const CTelephoneNumber a("0", kTelephoneTypeCell, 1);
  EXPECT_TRUE(a.isEqual(&a));
  EXPECT_FALSE(a.isEqual(nullptr));
  const CTelephoneNumber sameDigits("0", kTelephoneTypeCell, 1);
  EXPECT_FALSE(a.isEqual(&sameDigits));
  CTelephoneNumber b = a;
  b.SetNumber(u"0");
  EXPECT_FALSE(b.isEqual(&a));
  // The number's rule applies even when called through CItem, while the
  // base rule, text-based, finds the two equal.
  const CItem item("0", kTelephoneTypeCell, 1);
  EXPECT_FALSE(static_cast<const CItem&>(a).isEqual(&item));
  EXPECT_TRUE(item.isEqual(&a));
}

TEST(item, emptiness_looks_at_the_text_only) {
  const struct {
    std::function<std::unique_ptr<CItem>()> make;
    bool expected;
  } rows[] = {
      {Make<CItem>(nullptr, 0xFFu, 9), true},
      {Make<CItem>(" ", 0u, -1), false},
      {Make<CItem>("\xFF", 0u, -1), true},
      {Make<CTelephoneNumber>("", kTelephoneTypeCustom, 1, Label(u"Main")), true},
      {Make<CTelephoneNumber>("0"), false},
      {Make<CEmail>(nullptr, kEmailTypeCustom, 1, Label(u"Private")), true},
      {Make<CURL>(nullptr, kURLTypeWork, 2), true},
      {Make<CMessengerID>("", kMessengerTypeSkype, 2), true},
      {Make<CNote>("\n"), false},
      {Make<CXItem>(u"X-EXPIRY", nullptr, 0u, -1), true},
      {Make<CXItem>(u"X-EXPIRY", "5", 0u, -1), false},
      // The default and one-text initialisers of each kind.
      {Make<CEmail>(), true},         {Make<CEmail>("a@b"), false},  {Make<CMessengerID>(), true},
      {Make<CMessengerID>("me"), false}, {Make<CNote>(), true},      {Make<CTelephoneNumber>(), true},
      {Make<CURL>(), true},           {Make<CURL>("http://x"), false},
  };
  for (const auto& r : rows) EXPECT_EQ(r.make()->IsEmpty(), r.expected) << &r - rows;
}

std::vector<String> Parts(const CName& n) {
  return {n.Family(), n.Given(), n.Middle(), n.Prefix(), n.Suffix(), n.Phonetic_Family(), n.Phonetic_Given(),
          n.Phonetic_Middle()};
}
std::vector<String> Parts(const CPostalAddress& a) {
  return {a.POBox(), a.ExtAddr(), a.Street(), a.Locality(), a.Region(), a.PostalCode(), a.Country(), a.Neighbor()};
}

TEST(eight_parts, each_index_sets_its_part_only_and_decides_equality_and_emptiness) {
  for (unsigned index = 0; index < 8; ++index) {
    std::vector<String> expected(8);
    expected[index] = u"value";
    CName name;
    name.SetName(u"value", index);
    CPostalAddress address;
    address.SetAddress(u"value", index);
    EXPECT_EQ(std::pair(Parts(name), Parts(address)), std::pair(expected, expected)) << index;
    EXPECT_EQ(std::pair(name.IsEmpty(), address.IsEmpty()), std::pair(false, false)) << index;
    CName a("F", "G", "M", "P", "S", "pf", "pg", "pm");
    CName b = a;
    b.SetName(u"x", index);
    EXPECT_EQ(std::pair(a.IsEqual(&b), b.IsEqual(&a)), std::pair(false, false)) << index;
    const CPostalAddress c("a", "b", "c", "d", "e", "f", "g", "h", 1, 1);
    CPostalAddress d = c;
    ASSERT_TRUE(c.isEqual(&d));
    d.SetAddress(u"z", index);
    EXPECT_EQ(std::pair(c.isEqual(&d), d.isEqual(&c)), std::pair(false, false)) << index;
  }
}

TEST(eight_parts, equality_is_case_sensitive_and_an_address_takes_id_and_type_without_pref_not_the_label) {
  const CName smith("Smith"), lower("smith"), same("Smith");
  EXPECT_EQ(std::pair(smith.IsEqual(&lower), smith.IsEqual(&same)), std::pair(false, true));
  EXPECT_FALSE(smith.IsEqual(nullptr));
  const CPostalAddress base("Street", kAddressTypeHome, 3);
  const struct {
    std::uint32_t type;
    std::int32_t id;
    bool labelled, expected;
  } rows[] = {{0x10000001, 3, true, true}, {0x1, 4, false, false}, {0x9, 3, false, false}};
  for (const auto& r : rows) {
    const CPostalAddress other("Street", r.type, r.id,
                               r.labelled ? std::make_shared<const String>(u"Cottage") : nullptr);
    EXPECT_EQ(std::pair(base.isEqual(&other), other.isEqual(&base)), std::pair(r.expected, r.expected)) << &r - rows;
  }
  EXPECT_FALSE(base.isEqual(nullptr));
  EXPECT_TRUE(CPostalAddress(nullptr, kAddressTypeCustom, 12, std::make_shared<const String>(u"x")).IsEmpty());
}

TEST(eight_parts, an_index_past_seven_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CName name;
  CPostalAddress address;
  for (unsigned index : {8u, UINT_MAX}) {
    EXPECT_DEATH(name.SetName(u"x", index), AssertionPattern("nIndex < 8"));
    EXPECT_DEATH(address.SetAddress(u"x", index), AssertionPattern("nIndex < kPostalAddressMax"));
  }
}

TEST(organization, equality_compares_lines_then_texts_then_type) {
  const struct {
    std::function<void(COrganization&)> change;
    bool expected;
  } rows[] = {
      {[](COrganization&) {}, true},
      {[](COrganization& o) { o.Additional().push_back(u""); }, false},
      {[](COrganization& o) { std::swap(o.Additional()[0], o.Additional()[1]); }, false},
      {[](COrganization& o) { o.SetName(u"acme"); }, false},
      {[](COrganization& o) { o.SetUnit(u"Sales "); }, false},
      {[](COrganization& o) { o.SetPosition(u""); }, false},
      {[](COrganization& o) { o.SetType(kOrganizationTypeWork | kTypePref); }, false},
  };
  for (const auto& r : rows) {
    COrganization a("ACME", "Sales", "Clerk", "A", kOrganizationTypeWork);
    a.Additional().push_back(u"B");
    COrganization b = a;
    r.change(b);
    EXPECT_EQ(std::pair(a.IsEqual(&b), b.IsEqual(&a)), std::pair(r.expected, r.expected)) << &r - rows;
  }
  EXPECT_FALSE(COrganization().IsEqual(nullptr));
}

TEST(organization, is_empty_without_texts_and_lines) {
  COrganization emptyLine;
  emptyLine.Additional().push_back(u"");
  const struct {
    COrganization org;
    bool expected;
  } rows[] = {{COrganization("", "", "", "", kOrganizationTypeWork), true},
              {COrganization(nullptr, "U", nullptr), false},
              {COrganization(nullptr, nullptr, "P"), false},
              {COrganization("N", nullptr, nullptr), false},
              {emptyLine, false}};
  for (const auto& r : rows) EXPECT_EQ(r.org.IsEmpty(), r.expected) << &r - rows;
}

TEST(vobject, appends_finds_the_first_of_a_name_and_deletes_items) {
  CVObject record;
  CXItem* group = record.NewXItem("X-GROUP", "\xE5\xAE\xB6", 7, 2);
  CXItem* second = record.NewXItem(u"X-GROUP", u"ext;1", 0x10000000u, 9);
  CXItem* unnamed = record.NewXItem(nullptr, nullptr, 0, -1);
  EXPECT_EQ((std::vector<String>{group->Name(), group->Data(), second->GetValue(), unnamed->Name()}),
            (std::vector<String>{u"X-GROUP", u"\u5BB6", u"ext;1", u""}));
  EXPECT_EQ((std::vector<std::int64_t>{group->Param(), group->thisID(), second->Param(), second->thisID()}),
            (std::vector<std::int64_t>{7, 2, 0x10000000, 9}));
  EXPECT_EQ(std::as_const(record).FindXItem(u"X-GROUP"), group);
  EXPECT_EQ(record.FindXItem(u""), unnamed);
  for (const char* other : {"x-group", "X-GROUP ", "X-GROU"}) EXPECT_EQ(record.FindXItem(other), nullptr) << other;
  record.DeleteXItemAtIndex(0);
  EXPECT_EQ(record.FindXItem("X-GROUP"), second);
  EXPECT_THROW(record.DeleteXItemAtIndex(2), std::out_of_range);
  EXPECT_THROW(record.DeleteXItemAtIndex(-1), std::out_of_range);
  record.DeleteAllXItem();
  EXPECT_EQ(record.GetXItemCount(), 0);
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const std::string pattern = AssertionPattern("index >= 0 && index < [m_arrXItem count]");
  record.NewXItem("X-A", "1", 0, -1);
  for (int index : {-1, 1}) {
    EXPECT_DEATH(record.GetXItem(index), pattern);
    EXPECT_DEATH(std::as_const(record).GetXItem(index), pattern);
  }
}

struct Counted {
  Counted(int v, int* alive) : value(v), alive(alive) { ++*alive; }
  ~Counted() { --*alive; }
  int value;
  int* alive;
};

// Erasing keeps the order across the seam and destroys exactly one element:
// inline only, at the seam (four and five elements), and beyond it.
TEST(element_vector, erase_keeps_order_and_destroys_one) {
  const std::pair<int, std::size_t> rows[] = {{4, 3}, {5, 3}, {5, 4}, {5, 0}, {7, 2}, {7, 6}};
  for (const auto& [count, erased] : rows) {
    int alive = 0;
    {
      model_detail::ElementVector<Counted> list;
      std::vector<int> expected, values;
      for (int i = 0; i < count; ++i) {
        list.push_back(std::make_unique<Counted>(i, &alive));
        expected.push_back(i);
      }
      list.erase(erased);
      expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(erased));
      list.push_back(std::make_unique<Counted>(99, &alive));
      expected.push_back(99);
      for (std::size_t i = 0; i < list.size(); ++i) values.push_back(list[i]->value);
      EXPECT_EQ(std::pair(values, alive), std::pair(expected, count)) << count << " " << erased;
      if (count == 7) {
        list.clear();
        EXPECT_EQ(std::pair(list.size(), alive), std::pair(std::size_t{0}, 0));
      }
    }
    EXPECT_EQ(alive, 0);
  }
}

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
