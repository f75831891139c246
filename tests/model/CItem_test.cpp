// The single-value elements: CItem's text and value object, and each
// subclass's own equality and emptiness rule.
#include "phonepim/model/CItem.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <tuple>

#include "model/AssertionPattern.h"
#include "phonepim/model/CAttendee.h"
#include "phonepim/model/CEmail.h"
#include "phonepim/model/CMessengerID.h"
#include "phonepim/model/CNote.h"
#include "phonepim/model/CTelephoneNumber.h"
#include "phonepim/model/CURL.h"
#include "phonepim/model/CXItem.h"

namespace phonepim {
namespace {

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
  EXPECT_DEATH(email2.isEqual(nullptr), testing_support::AssertionPattern("email != nil"));
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
              {0x22, 0x20, false}, {0x20, 0x10000020, false}, {0x1, 0x21, false}, {0x4, 0x5, false}};
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

}  // namespace
}  // namespace phonepim
