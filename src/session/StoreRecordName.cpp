#include "phonepim/session/StoreRecordName.h"

#include "phonepim/sync/CalendarRecord.h"
#include "phonepim/sync/ContactRecord.h"

namespace phonepim {
const String& TextOf(const Dictionary& record, const String& key) {
  static const String kEmpty;
  const String* text = FindAs<String>(record, key);
  return text ? *text : kEmpty;
}

String StoreRecordName(const Dictionary& record) {
  using namespace contact_record;
  String name = TextOf(record, kFirstName);
  const String& last = TextOf(record, kLastName);
  if (!name.empty() && !last.empty()) name += u' ';
  name += last;
  if (name.empty()) name = TextOf(record, kCompanyName);
  if (name.empty()) name = TextOf(record, kGroupName);
  if (name.empty()) name = TextOf(record, calendar_record::kSummary);
  if (name.empty()) name = TextOf(record, calendar_record::kTitle);
  return name;
}

}  // namespace phonepim
