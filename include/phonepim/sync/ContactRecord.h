// The keys of the store's contact and group records that CContact builds
// (CContact::createMetaData). The relationship keys to the sub-records are
// those of SyncRecordSchema.h ("phone numbers", "email addresses", ...).
#pragma once

#include "phonepim/platform/String.h"

namespace phonepim::contact_record {

inline const String kFirstName = u"first name";
inline const String kLastName = u"last name";
inline const String kMiddleName = u"middle name";
/// The name prefix ("Dr.").
inline const String kTitle = u"title";
inline const String kSuffix = u"suffix";
inline const String kFirstPhoneticName = u"first phonetic name";
inline const String kLastPhoneticName = u"last phonetic name";
inline const String kMiddlePhoneticName = u"middle phonetic name";
inline const String kNickname = u"nickname";
inline const String kCompanyName = u"company name";
inline const String kDepartment = u"department";
inline const String kJobTitle = u"job title";
inline const String kBirthday = u"birthday";
inline const String kNotes = u"notes";
inline const String kImage = u"image";
/// The group record's name.
inline const String kGroupName = u"name";

}  // namespace phonepim::contact_record
