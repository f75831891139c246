#include "phonepim/sync/AttendeeContainer.h"

#include <array>

#include "phonepim/sync/CalendarRecord.h"

namespace phonepim {

using namespace calendar_record;

const String& AttendeeContainer::statusWord(std::uint32_t status) {
  static const std::array<String, 8> kWords = {u"needsaction", u"complete",  u"accepted",
                                               u"sent",        u"tentative", u"confirmed",
                                               u"declined",    u"delegated"};
  return status < kWords.size() ? kWords[status] : kWords[0];
}

Dictionary AttendeeContainer::createAttendeeDataForDB(const String& commonName,
                                                      std::uint32_t status) const {
  Dictionary record = newSubRecord(kAttendeeEntityName);
  record.insert_or_assign(kCommonName, commonName);
  record.insert_or_assign(kAttendeeStatus, statusWord(status));
  return record;
}

void AttendeeContainer::addAttendee(const String& commonName, std::uint32_t status) {
  addRecord(createAttendeeDataForDB(commonName, status));
}

std::vector<String> AttendeeContainer::createMetaData() {
  return createMetaDataInCalendarWithKey(kAttendees, kCommonName);
}

}  // namespace phonepim
