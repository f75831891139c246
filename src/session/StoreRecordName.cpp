#include "phonepim/session/StoreRecordName.h"

#include "phonepim/sync/ContactRecord.h"

namespace phonepim {
namespace {

const String& Text(const Dictionary& record, const String& key) {
  static const String kEmpty;
  const String* text = FindAs<String>(record, key);
  return text ? *text : kEmpty;
}

}  // namespace

String StoreRecordName(const Dictionary& record) {
  using namespace contact_record;
  String name = Text(record, kFirstName);
  const String& last = Text(record, kLastName);
  if (!name.empty() && !last.empty()) name += u' ';
  name += last;
  if (name.empty()) name = Text(record, kCompanyName);
  if (name.empty()) name = Text(record, kGroupName);
  return name;
}

}  // namespace phonepim
