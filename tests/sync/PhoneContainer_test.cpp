// PhoneContainer: the phone-number label table row by row, the two
// overrides, and the shape of the record.
#include "phonepim/sync/PhoneContainer.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "phonepim/model/TypeMasks.h"

namespace phonepim {
namespace {

using Kind = PhoneContainer::Kind;

struct PhoneRow {
  const char* name;
  std::uint32_t type;
  bool Zandor;
  const char16_t* label;  // the number's own label text; null for none
  const char16_t* expectedType;
  const char16_t* expectedLabel;  // null: no "label" key
  Kind kind;
};

constexpr std::uint32_t HOME = kTelephoneTypeHome, WORK = kTelephoneTypeWork,
                        VOICE = kTelephoneTypeVoice, FAX = kTelephoneTypeFax,
                        MSG = kTelephoneTypeMsg, CELL = kTelephoneTypeCell,
                        PAGER = kTelephoneTypePager, MODEM = kTelephoneTypeModem,
                        CAR = kTelephoneTypeCar, VIDEO = kTelephoneTypeVideo,
                        INTERNET = kTelephoneTypeInternet, ETC = kTelephoneTypeEtc,
                        CALLBACK = kTelephoneTypeCallback, CUSTOM = kTelephoneTypeCustom,
                        PREF = kTelephoneTypePref;

// Every branch in order, each with the bits that must not reach a later
// one; of the single-bit rows, which a loop walks, the first, the last and
// those whose labels are odd. Then the fall-through cases and the overrides.
const PhoneRow kPhoneRows[] = {
    {"voice_home", VOICE | HOME | CELL | FAX, false, nullptr, u"home", nullptr, Kind::HomeVoice},
    {"voice_work", VOICE | WORK | CELL, false, nullptr, u"work", nullptr, Kind::WorkVoice},
    {"voice_home_work", VOICE | HOME | WORK, false, nullptr, u"home", nullptr, Kind::HomeVoice},
    {"voice", VOICE | FAX | PREF, false, nullptr, u"main", nullptr, Kind::Voice},
    {"cell_home_zandor", CELL | HOME, true, nullptr, u"mobile", nullptr, Kind::HomeCellZandor},
    {"cell_home", CELL | HOME | WORK, false, nullptr, u"other", u"Mobile (Home)", Kind::HomeCell},
    {"cell_work", CELL | WORK | FAX, false, nullptr, u"other", u"Mobile (Work)", Kind::WorkCell},
    {"cell_work_zandor", CELL | WORK, true, nullptr, u"other", u"Mobile (Work)", Kind::WorkCell},
    {"cell", CELL | PREF, false, nullptr, u"mobile", nullptr, Kind::Cell},
    {"fax_home", FAX | HOME | VIDEO, false, nullptr, u"home fax", nullptr, Kind::HomeFax},
    {"fax_work", FAX | WORK, false, nullptr, u"work fax", nullptr, Kind::WorkFax},
    {"fax", FAX | PAGER, false, nullptr, u"other", u"Fax", Kind::Fax},
    {"video_home", VIDEO | HOME | INTERNET, false, nullptr, u"other", u"Video call(Home)",
     Kind::HomeVideo},
    {"video_work", VIDEO | WORK, false, nullptr, u"other", u"Video call(Work)", Kind::WorkVideo},
    {"video", VIDEO | CAR, false, nullptr, u"other", u"Video call(Other)", Kind::Video},
    {"internet_home", INTERNET | HOME | WORK, false, nullptr, u"other",
     u"Internet telephone(Home)", Kind::HomeInternet},
    {"internet_work", INTERNET | WORK, false, nullptr, u"other", u"Internet telephone(Work)",
     Kind::WorkInternet},
    {"internet", INTERNET | MSG, false, nullptr, u"other", u"Internet telephone(Other)",
     Kind::Internet},
    {"home", HOME | PAGER | WORK | CAR, false, nullptr, u"home", nullptr, Kind::Home},
    {"car", CAR | PREF | MODEM, false, nullptr, u"other", u"Car telephone", Kind::Car},
    {"preferred", PREF | MODEM | ETC, false, nullptr, u"other", u"Prefered", Kind::Prefered},
    {"etc", ETC | MSG | CALLBACK, false, nullptr, u"other", nullptr, Kind::Etc},
    {"callback", CALLBACK | CUSTOM, false, nullptr, u"other", u"Callback", Kind::Callback},
    {"nothing", 0, false, nullptr, u"other", u"CUSTOM", Kind::X_CUSTOM},
    {"main_bit", kTelephoneTypeMain, false, nullptr, u"other", u"CUSTOM", Kind::X_CUSTOM},
    {"custom_with_more_bits", CUSTOM | 0x20000, false, u"Main", u"other", u"CUSTOM",
     Kind::X_CUSTOM},
    // A custom-label code carries the PREF bit and the low bits of its
    // number, so it lands on the row of those bits.
    {"custom_code", 0x10000001, false, nullptr, u"home", nullptr, Kind::Home},
    {"custom_code_2", 0x10000004, false, nullptr, u"main", nullptr, Kind::Voice},
    // The overrides.
    {"exactly_cell", CELL, false, nullptr, u"mobile", nullptr, Kind::Cell},
    {"exactly_cell_zandor", CELL, true, u"Handy", u"mobile", nullptr, Kind::Cell},
    {"custom_without_label", CUSTOM, false, nullptr, u"other", nullptr, Kind::X_CUSTOM},
    {"custom_main", CUSTOM, false, u"Main", u"main", nullptr, Kind::X_CUSTOM},
    {"custom_main_case", CUSTOM, false, u"main", u"other", u"main", Kind::X_CUSTOM},
    {"custom_label", CUSTOM, true, u"Zentrale", u"other", u"Zentrale", Kind::X_CUSTOM},
    {"custom_empty_label", CUSTOM, false, u"", u"other", u"", Kind::X_CUSTOM},
    // Only the custom override reads the number's own label.
    {"home_with_label", HOME, false, u"Zentrale", u"home", nullptr, Kind::Home},
};

TEST(phone_container, type_and_label_follow_the_first_matching_row) {
  for (const PhoneRow& row : kPhoneRows) {
    SCOPED_TRACE(row.name);
    PhoneContainer container(u"CONTACT-1", nullptr);
    const std::optional<String> label = row.label ? std::optional<String>(row.label) : std::nullopt;
    Dictionary expected{{ISyncRecordEntityNameKey, u"com.apple.contacts.Phone Number"},
                        {u"type", row.expectedType},
                        {u"value", u"+81 3"},
                        {u"contact", Array{Value(u"CONTACT-1")}}};
    if (row.expectedLabel != nullptr) expected.emplace(u"label", row.expectedLabel);
    EXPECT_EQ(container.createPhoneDataForDB(String(u"+81 3"), row.type, label, row.Zandor), expected);
    for (int kind = 0; kind < Kind::kKindCount; ++kind) {
      EXPECT_EQ(container.TypeCount(static_cast<Kind>(kind)), kind == row.kind ? 1 : 0) << "kind " << kind;
    }
    EXPECT_EQ(container.count(), 0);  // building is not adding
  }
  // A missing number has no value; adding keeps the order.
  PhoneContainer container(u"P", nullptr);
  const Dictionary noNumber = container.createPhoneDataForDB(std::nullopt, HOME, std::nullopt, false);
  EXPECT_EQ(Find(noNumber, u"value"), nullptr);
  EXPECT_EQ(noNumber.size(), 3u);
  container.addPhone(String(u"1"), HOME, std::nullopt, false);
  container.addPhone(String(u"2"), HOME, std::nullopt, false);
  EXPECT_EQ(container.recordAtIndex(1).at(u"value"), Value(u"2"));
  EXPECT_EQ(container.TypeCount(Kind::Home), 3);
}

}  // namespace
}  // namespace phonepim
