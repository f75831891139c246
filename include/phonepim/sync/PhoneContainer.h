// PhoneContainer: the store's phone-number sub-records of one contact.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "phonepim/sync/BaseContainer.h"

namespace phonepim {

/// Builds "com.apple.contacts.Phone Number" records: "type", "value" (only
/// for a number that is there), "label" (only when the kind has one) and
/// "contact". Reconciled under "phone numbers", matching on "value".
///
/// The telephone type bits (kTelephoneType...) give "type" and "label" by
/// the first row that matches, in this order:
///
///   VOICE+HOME "home"; VOICE+WORK "work"; VOICE "main";
///   CELL+HOME "mobile" for Zandor phones, else "other"/"Mobile (Home)";
///   CELL+WORK "other"/"Mobile (Work)"; CELL "mobile";
///   FAX+HOME "home fax"; FAX+WORK "work fax"; FAX "other"/"Fax";
///   VIDEO "other"/"Video call(Home)", "Video call(Work)", "Video call(Other)"
///   and INTERNET "other"/"Internet telephone(Home)", "(Work)", "(Other)" by
///   HOME, WORK or neither;
///   HOME "home"; WORK "work"; PAGER "pager"; CAR "other"/"Car telephone";
///   PREF "other"/"Prefered"; MODEM "other"/"Modem"; BBS "other"/"BBS";
///   ISDN "other"/"ISDN"; X-ETC "other"; MSG "other"/"Message";
///   DTMF "other"/"DTMF"; PTT "other"/"PushToTalk";
///   assistant "other"/"Assistant"; callback "other"/"Callback";
///   anything else "other"/"CUSTOM".
///
/// Then two whole-type overrides: exactly CELL is "mobile" without a label,
/// and exactly the custom bit (0x100000) is "main" when the label text is
/// "Main", "other" with the label text when there is another one, and
/// "other" without a label when there is none. The label words are the
/// store's as it shows them, "Prefered" and the missing blanks included.
class PhoneContainer : public BaseContainer {
 public:
  /// The rows above, one counter each.
  enum Kind {
    HomeVoice, WorkVoice, Voice, HomeCellZandor, HomeCell, WorkCell, Cell,
    HomeFax, WorkFax, Fax, HomeVideo, WorkVideo, Video,
    HomeInternet, WorkInternet, Internet, Home, Work, Pager, Car, Prefered,
    Modem, BBS, ISDN, Etc, Message, DTMF, PushToTalk, Assistant, Callback,
    X_CUSTOM, kKindCount
  };

  using BaseContainer::BaseContainer;

  /// The record for one number (nothing: no "value") of `phoneType` with
  /// the number's own label text, if any. `Zandor` is the phone style of
  /// vCard::Generate. Counts the row that matched.
  Dictionary createPhoneDataForDB(const std::optional<String>& number,
                                  std::uint32_t phoneType, const std::optional<String>& label,
                                  bool Zandor);
  /// Builds the record and appends it.
  void addPhone(const std::optional<String>& number, std::uint32_t phoneType,
                const std::optional<String>& label, bool Zandor);

  /// How many records of the row `kind` were built.
  int TypeCount(Kind kind) const { return mTypeCounts[kind]; }

  /// Reconciles under "phone numbers" on "value".
  std::vector<String> createMetaData() override;

 private:
  std::array<int, kKindCount> mTypeCounts{};
};

}  // namespace phonepim
