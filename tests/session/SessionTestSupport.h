// A store and its phone's tables in a scratch folder, and small exports.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "mapping/MappingTestSupport.h"
#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/platform/PropertyList.h"
#include "phonepim/session/ContactsFromStore.h"
#include "phonepim/session/SyncSession.h"
#include "phonepim/store/SyncStore.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"

namespace phonepim::testing_support {

inline const PhoneIdentity kPhone{u"N900", u"356938035643809"};

/// One card with a name and the given TEL lines (each "TYPE:NUMBER").
inline std::string Card(const std::string& name, const std::vector<std::string>& tels) {
  std::string card = "BEGIN:VCARD\r\nVERSION:2.1\r\nN:" + name + "\r\n";
  for (const std::string& tel : tels) card += "TEL;" + tel + "\r\n";
  return card + "EMAIL;INTERNET:" + name.substr(0, name.find(';')) + "@example.org\r\nEND:VCARD\r\n";
}

/// The phone's contacts as the store gives them back, as vCard text.
inline std::string ExportText(const SyncStore& store) {
  std::string text;
  for (const auto& contact : ContactsFromStore(store, kPhone.imei)) {
    vObject object;
    vCard::Generate(contact.get(), &object);
    text.append(reinterpret_cast<const char*>(object.object()->GetData()),
                object.object()->GetSize());
  }
  return text;
}

/// Whether the table file holds the table the store holds.
inline bool FileAgreesWithStore(const SyncStore& store, const std::filesystem::path& file) {
  const std::optional<Dictionary> table =
      store.table(StringFromUTF8(file.filename().string()).value_or(u""));
  const std::optional<Value> read = ReadPropertyListFile(file);
  return table && read && *read == Value(*table);
}

class StoreFolder {
 public:
  std::filesystem::path store() const { return folder_.path() / "store.sqlite"; }
  std::filesystem::path tables() const { return SyncSession::TableFolderOf(store()); }
  std::filesystem::path tableFile() const {
    return ContactIDMappingTable::metaFilePath(kPhone.imei, kPhone.model, tables());
  }
  const std::filesystem::path& path() const { return folder_.path(); }

  SyncReport Sync(const std::string& text, bool dryRun = false) const {
    SyncStore store(this->store(), SyncStore::OpenMode::kCreate);
    SyncSession session(store, kPhone, tables());
    return session.syncContacts(text, dryRun);
  }

 private:
  ScratchFolder folder_;
};

}  // namespace phonepim::testing_support
