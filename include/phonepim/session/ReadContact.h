// Reading one card of a phone's address-book export into a contact, with the
// failures that belong to the card turned into words.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "phonepim/model/CContact.h"

namespace phonepim {

class ContactIDMappingTable;
struct ReadAccount;

/// True when the first line of `object` is "BEGIN:" and `name` ("VCARD",
/// "VCALENDAR"), in any case, as a phone decides.
bool IsVersitObject(std::string_view object, std::string_view name);
/// IsVersitObject(object, "VCARD").
inline bool IsVCardObject(std::string_view object) { return IsVersitObject(object, "VCARD"); }

/// Reads `card` into a new contact with the vCard ID `vCardID` (record ID
/// "%016d-Contact-IMEI"), resolving its identity through `table` (may be
/// null). A card that names a group (GN, GT or X-GDISPN) is read again as a
/// group: the kind must be known when the contact is made, and only the
/// reader knows which properties it took. `account` (may be null) gets what
/// reading did with each property. Throws what vCard::Parse throws.
std::unique_ptr<CContact> ReadContact(std::string_view card, std::uint32_t vCardID,
                                      const String& imei,
                                      const std::shared_ptr<ContactIDMappingTable>& table,
                                      ReadAccount* account = nullptr);

/// ReadContact, with the failures that belong to the card (the tokenizer's
/// rejection, a card cut short before its END, a refused value, a label the table cannot register) turned
/// into `error` and a null result; anything else (memory exhausted) still
/// propagates.
std::unique_ptr<CContact> TryReadContact(std::string_view card, std::uint32_t vCardID,
                                         const String& imei,
                                         const std::shared_ptr<ContactIDMappingTable>& table,
                                         std::string* error, ReadAccount* account = nullptr);

/// The name a person knows the contact by: its formatted name, else its
/// given and family names, else its group's display name or name; empty
/// when it has none.
String DisplayName(const CContact& contact);

}  // namespace phonepim
