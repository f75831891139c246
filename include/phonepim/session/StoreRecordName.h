// How the session and the tool name a store record to a person.
#pragma once

#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"

namespace phonepim {

/// The text under `key` of a record or meta entry; an empty text when there
/// is none (or the value is no text).
const String& TextOf(const Dictionary& record, const String& key);

/// A contact record's "first name" and "last name", else its "company
/// name"; a group record's "name"; an event's "summary"; a calendar's
/// "title"; empty for a record with none of them.
String StoreRecordName(const Dictionary& record);

}  // namespace phonepim
