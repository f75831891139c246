// Keys and state words of the mapping tables' entries, shared by the
// contact and calendar tables.
#pragma once

#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"
#include "phonepim/sync/SyncRecordSchema.h"

namespace phonepim {

inline const String& kState = kMetaKeyState;
inline const String& kData = kMetaKeyData;
inline const String& kLink = kMetaKeyLink;
inline const String& kIdentifier = kMetaKeyIdentifier;

// State words.
inline const String kAddedBySyncDB = u"AddedBySyncDB";
inline const String kModified = u"Modified";
inline const String kModifiedBySyncDB = u"ModifiedBySyncDB";
inline const String kRemoved = u"Removed";
inline const String kRemovedByPellarin = u"RemovedByPellarin";
inline const String kAddedByPellarin = u"AddedByPellarin";
inline const String kAdded = u"Added";
inline const String& kDelete = kMetaStateDelete;
inline const String& kLinked = kMetaLinked;

inline bool HasState(const Dictionary& entry, const String& state) {
  const String* value = FindAs<String>(entry, kState);
  return value != nullptr && *value == state;
}

}  // namespace phonepim
