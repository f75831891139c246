// IMContainer: the store's instant-messaging sub-records of one contact.
#pragma once

#include <array>
#include <cstdint>

#include "phonepim/sync/BaseContainer.h"

namespace phonepim {

/// Builds "com.apple.contacts.IM" records: "service", "type" (always
/// "other"), "user" (the account name), "label" (only for an unknown
/// service) and "contact". Reconciled under "IMs", matching on "user".
///
/// The whole messenger type (kMessengerType...) gives the service: AIM (1)
/// "aim", YAHOO (4) "yahoo", SKYPE (8) "Skype", QQ (16) "QQ", GOOGLETALK
/// (32) "GoogleTalk", ICQ (64) "icq", JABBER (128) "jabber", and
/// WINDOWSLIVE (2) "msn": Windows Live Messenger is the store's MSN
/// service, so it is a known service and has no label. Every other type --
/// 0 (the phone named no service), combinations and custom-label codes --
/// is the default service "msn" with the label "Etc", the mark of a service
/// the phone did not name.
class IMContainer : public BaseContainer {
 public:
  enum Kind { AIM, MSN, Yahoo, Skype, QQ, GoogleTalk, ICQ, Jabber, Unknown, kKindCount };

  using BaseContainer::BaseContainer;

  Dictionary createIMDataForDB(const String& user, std::uint32_t imType);
  void addIM(const String& user, std::uint32_t imType);

  int TypeCount(Kind kind) const { return mTypeCounts[kind]; }

  /// Reconciles under "IMs" on "user".
  std::vector<String> createMetaData() override;

 private:
  std::array<int, kKindCount> mTypeCounts{};
};

}  // namespace phonepim
