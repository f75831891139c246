// The synchronisation store's record schema as this library emits it: the
// entity names, the keys it sets and the words of the meta entries.
//
// Every store record is a Dictionary tagged with its entity name under
// ISyncRecordEntityNameKey. Sub-records name their owning contact under
// "contact" (a one-element array holding the contact's record ID); calendar
// sub-records name theirs under "owner".
#pragma once

#include "phonepim/platform/String.h"

namespace phonepim {

/// The key under which every store record carries its entity name.
inline const String ISyncRecordEntityNameKey = u"com.apple.syncservices.RecordEntityName";

// --- Entity names ---

inline const String kContactEntityName = u"com.apple.contacts.Contact";
inline const String kGroupEntityName = u"com.apple.contacts.Group";
inline const String kPhoneNumberEntityName = u"com.apple.contacts.Phone Number";
inline const String kEmailAddressEntityName = u"com.apple.contacts.Email Address";
inline const String kStreetAddressEntityName = u"com.apple.contacts.Street Address";
inline const String kURLEntityName = u"com.apple.contacts.URL";
inline const String kDateEntityName = u"com.apple.contacts.Date";
inline const String kRelatedNameEntityName = u"com.apple.contacts.Related Name";
inline const String kIMEntityName = u"com.apple.contacts.IM";

// --- Sub-record keys ---

inline const String kSyncKeyType = u"type";
inline const String kSyncKeyValue = u"value";
inline const String kSyncKeyLabel = u"label";
inline const String kSyncKeyContact = u"contact";
inline const String kSyncKeyStreet = u"street";
inline const String kSyncKeyCity = u"city";
inline const String kSyncKeyState = u"state";
inline const String kSyncKeyPostalCode = u"postal code";
inline const String kSyncKeyCountry = u"country";
inline const String kSyncKeyService = u"service";
inline const String kSyncKeyUser = u"user";

// --- The contact's lists of sub-records: the relationship keys of the
// contact record, the keys of the meta lists and of "Contact Data" ---

inline const String kPhoneNumbersKey = u"phone numbers";
inline const String kEmailAddressesKey = u"email addresses";
inline const String kURLsKey = u"URLs";
inline const String kStreetAddressesKey = u"street addresses";
inline const String kDatesKey = u"dates";
inline const String kRelatedNamesKey = u"related names";
inline const String kIMsKey = u"IMs";

// --- Meta entries ---

inline const String kMetaKeyData = u"Data";
inline const String kMetaKeyState = u"State";
inline const String kMetaKeyLink = u"Link";
inline const String kMetaKeyIdentifier = u"identifier";
inline const String kMetaKeyContactData = u"Contact Data";
inline const String kMetaKeyTaskData = u"Task Data";
inline const String kMetaStateNew = u"New";
inline const String kMetaStateNoChange = u"NoChange";
inline const String kMetaStateDelete = u"Delete";
inline const String kMetaLinked = u"Linked";
inline const String kMetaUnlinked = u"Unlinked";

}  // namespace phonepim
