#include "phonepim/sync/IMContainer.h"

#include "phonepim/model/TypeMasks.h"

namespace phonepim {

Dictionary IMContainer::createIMDataForDB(const String& user, std::uint32_t imType) {
  Kind kind = Unknown;
  String service = u"msn";
  switch (imType) {
    case kMessengerTypeAIM: kind = AIM; service = u"aim"; break;
    case kMessengerTypeWindowsLive: kind = MSN; break;
    case kMessengerTypeYahoo: kind = Yahoo; service = u"yahoo"; break;
    case kMessengerTypeSkype: kind = Skype; service = u"Skype"; break;
    case kMessengerTypeQQ: kind = QQ; service = u"QQ"; break;
    case kMessengerTypeGoogleTalk: kind = GoogleTalk; service = u"GoogleTalk"; break;
    case kMessengerTypeICQ: kind = ICQ; service = u"icq"; break;
    case kMessengerTypeJabber: kind = Jabber; service = u"jabber"; break;
    default: break;
  }
  ++mTypeCounts[kind];

  Dictionary record = newContactSubRecord(kIMEntityName);
  record.insert_or_assign(kSyncKeyService, service);
  setTypeAndLabel(record, u"other",
                  kind == Unknown ? std::optional<String>(u"Etc") : std::nullopt);
  record.insert_or_assign(kSyncKeyUser, user);
  return record;
}

void IMContainer::addIM(const String& user, std::uint32_t imType) {
  addRecord(createIMDataForDB(user, imType));
}

std::vector<String> IMContainer::createMetaData() {
  return createMetaDataWithKey(kIMsKey, kSyncKeyUser);
}

}  // namespace phonepim
