// Reading a phone's address-book export card by card into contacts, with
// the failures of single cards reported and counted rather than fatal.
#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <phonepim/model/CContact.h>
#include <phonepim/platform/String.h>
#include <phonepim/versit/ObjectSplitter.h>
#include <phonepim/versit/ReadAccount.h>

#include "ObjectLoop.h"

namespace phonepim::tool {

/// What the contacts commands share: the reading commands' options and the
/// reading rules.
struct ContactReadOptions : ReadOptions {
  /// The reading rules as they stand (--strict); by default the tool reads
  /// leniently (vCard::sm_fLenientReading), so that real exports lose
  /// nothing, and a nested card is a contact of its own.
  bool strict = false;
};

/// One card of the file and where it stands.
struct CardInFile {
  std::size_t index = 0;  ///< from 0; messages count from 1
  const VersitObjectSpan* span = nullptr;
  std::string_view text;
  /// What reading did with each property of the card.
  const ReadAccount* account = nullptr;
};

/// Reads `card` into a new contact whose vCard ID is `vCardID` (so its
/// record ID is "%016d-Contact-IMEI"). A card that names a group (GN, GT or
/// X-GDISPN) is read again as a group: the kind must be known when the
/// contact is made, and only the reader knows which properties it took.
///
/// Throws what vCard::Parse throws. `account`, when given, receives the
/// account of the reading that made the contact.
std::unique_ptr<CContact> ParseContact(std::string_view card, std::uint32_t vCardID,
                                       const String& imei, ReadAccount* account = nullptr);

/// ParseContact, with the failures that belong to the card (the tokenizer's
/// rejection, a refused value, a label the table cannot register) turned
/// into a message; anything else (memory exhausted) still propagates.
std::unique_ptr<CContact> TryParseContact(std::string_view card, std::uint32_t vCardID,
                                          const String& imei, std::string* error,
                                          ReadAccount* account = nullptr);

/// The counts a command closes with.
struct ContactTally {
  std::size_t persons = 0;
  std::size_t groups = 0;
  std::size_t withPhotos = 0;
  std::size_t failed = 0;  ///< cards not read, and objects that are no vCard
};

/// Splits `text` into objects and reads every vCard among them, calling
/// `visit` with each contact in file order. A card that cannot be read, and
/// an object that is no vCard, is reported on `err` in one line that names
/// `sourceName`, the object's number and its first line, and counted as
/// failed; the others go on. Returns the exit status: 0 all read, 1 some
/// failed, 2 no object or no vCard at all (reported on `err`). Long files
/// show a progress line on standard error when it is a terminal, unless
/// quiet.
int ForEachContact(const std::string& text, const std::string& sourceName,
                   const ContactReadOptions& options, std::ostream& err,
                   const std::function<void(const CardInFile&, const CContact&)>& visit,
                   ContactTally* tally);

}  // namespace phonepim::tool
