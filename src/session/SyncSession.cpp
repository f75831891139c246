#include "phonepim/session/SyncSession.h"

#include <sys/stat.h>

#include <set>
#include <stdexcept>
#include <utility>

#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/model/CContact.h"
#include "phonepim/platform/PropertyList.h"
#include "phonepim/platform/Uuid.h"
#include "phonepim/session/ReadContact.h"
#include "phonepim/session/StoreRecordName.h"
#include "phonepim/store/SyncStore.h"
#include "phonepim/sync/SyncRecordSchema.h"
#include "phonepim/versit/ObjectSplitter.h"
#include "session/SyncRun.h"

namespace phonepim {
namespace {

const String* const kSubRecordLists[] = {&kPhoneNumbersKey, &kEmailAddressesKey, &kURLsKey,
                                         &kStreetAddressesKey, &kDatesKey, &kRelatedNamesKey,
                                         &kIMsKey};

// Which file stands at `path`: its size, modification time and inode. A
// rewrite always makes a new inode (the rename), so two stamps are equal only
// for the same write. Empty when there is no file.
std::string FileStamp(const std::filesystem::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::string();
  return std::to_string(status.st_size) + ":" + std::to_string(status.st_mtim.tv_sec) + "." +
         std::to_string(status.st_mtim.tv_nsec) + ":" + std::to_string(status.st_ino);
}

String GroupRecordID(const String& contactRecordID) {
  String id = contactRecordID;
  const std::size_t at = id.find(u"-Contact-");
  if (at != String::npos) id.replace(at, 9, u"-Croup-");
  return id;
}

bool IsSubRecordList(const String& key) {
  for (const String* list : kSubRecordLists) {
    if (*list == key) return true;
  }
  return false;
}

// Whether `record` equals `known` with its sub-record lists replaced by
// `lists`.
bool SameRecord(const Dictionary& record, const Dictionary& known, const Dictionary& lists) {
  std::size_t listsInRecord = 0;
  for (const auto& [key, value] : record) {
    const Value* other = IsSubRecordList(key) ? (++listsInRecord, Find(lists, key)) : Find(known, key);
    if (other == nullptr || *other != value) return false;
  }
  std::size_t otherFields = 0;
  for (const auto& [key, value] : known) otherFields += IsSubRecordList(key) ? 0 : 1;
  return listsInRecord == lists.size() && record.size() - listsInRecord == otherFields;
}

// Entry by entry, so that the table keeps its index: a table whose whole
// dictionary was handed out walks every entry on each look-up, and a sync
// looks up every contact. Flat pairs go back as pairs.
void Fill(ContactIDMappingTable& table, Dictionary&& stored) {
  for (auto& [key, value] : stored) {
    if (Dictionary* entry = value.getIf<Dictionary>()) {
      table.addMeta(std::move(*entry), key);
    } else if (const String* other = value.getIf<String>()) {
      table.addDBID(key == *other ? std::nullopt : std::optional<String>(*other), key);
    }
  }
}

// A phone's calendar is small, and its table keeps a flat text (the calendar
// record's ID) that only the whole dictionary can take.
void Fill(CalendarIDMappingTable& table, Dictionary&& stored) {
  table.mTable() = std::move(stored);
}

}  // namespace

std::string FirstLine(std::string_view object) {
  const std::size_t end = object.find_first_of("\r\n");
  return std::string(object.substr(0, std::min<std::size_t>(end, 60)));
}

std::string_view RecordChangeName(RecordChange change) {
  switch (change) {
    case RecordChange::kNew: return "new";
    case RecordChange::kChanged: return "changed";
    case RecordChange::kUnchanged: return "unchanged";
    case RecordChange::kDeleted: return "deleted";
  }
  return "?";
}

SubRecordCounts& SubRecordCounts::operator+=(const SubRecordCounts& other) {
  added += other.added;
  removed += other.removed;
  kept += other.kept;
  return *this;
}

std::size_t SyncReport::count(RecordChange change, bool calendar) const {
  std::size_t n = 0;
  for (const RecordOutcome& record : records) {
    n += record.change == change && record.calendar == calendar ? 1 : 0;
  }
  return n;
}

SubRecordCounts SyncReport::subRecords(bool calendar) const {
  SubRecordCounts total;
  for (const RecordOutcome& record : records) {
    if (record.calendar == calendar) total += record.subRecords;
  }
  return total;
}

// One synchronisation: the state that lives from the lock to the commit.
SyncReport SyncSession::Run::run(const SyncInput& input) {
  SyncStore& store = session_.store_;
  store.begin();
  try {
    if (input.contacts) contacts(*input.contacts);
    if (input.calendar) calendar(*input.calendar);
    finish();
  } catch (...) {
    store.rollback();
    throw;
  }
  return std::move(report_);
}

void SyncSession::Run::write(const char* step) {
  if (session_.writeHook_) session_.writeHook_(step);
  changed_ = true;
}

// The table as the store holds it.
template <class T>
std::shared_ptr<T> SyncSession::Run::loadTable() {
  const PhoneIdentity& phone = session_.phone_;
  // The table object never reads a file: the store holds the table, and
  // parsing its property list would cost many times decoding the store's
  // copy. It is made in a scratch folder that holds none.
  const std::filesystem::path scratch = std::filesystem::temp_directory_path() /
                                        ("phonepim-sync-" + ToDisplayUTF8(NewUUIDString()));
  Table slot;
  slot.name = StringFromUTF8(T::metaFilePath(phone.imei, phone.model, scratch).filename().string())
                  .value_or(u"table");
  auto table = std::make_shared<T>(phone.model, phone.imei, scratch);
  std::filesystem::remove_all(scratch);
  slot.table = table;

  SyncStore& store = session_.store_;
  if (std::optional<Dictionary> stored = store.table(slot.name)) Fill(*table, std::move(*stored));
  if (!dryRun_) {  // a dry run leaves the folder alone
    slot.filePath = T::metaFilePath(phone.imei, phone.model, session_.tableFolder_);
    // A table file that is not the one the store last recorded (a stop
    // between writing it and the commit, a file changed by hand) is written
    // again at the end, even if nothing else changes.
    if (store.tableFileStamp(slot.name).value_or(std::string()) != FileStamp(slot.filePath)) {
      changed_ = true;
    }
  }
  tables_.push_back(std::move(slot));
  return table;
}

// The calendar phase (SyncCalendar.cpp) loads its table the same way.
template std::shared_ptr<CalendarIDMappingTable> SyncSession::Run::loadTable();

void SyncSession::Run::applyLists(Dictionary& meta, std::initializer_list<const String*> lists,
                                  SubRecordCounts* counts) {
  SyncStore& store = session_.store_;
  for (const String* key : lists) {
    Array* entries = FindAs<Array>(meta, *key);
    if (entries == nullptr) continue;
    for (auto entry = entries->begin(); entry != entries->end();) {
      Dictionary& fields = entry->get<Dictionary>();
      const String& state = TextOf(fields, kMetaKeyState);
      const String& identifier = TextOf(fields, kMetaKeyIdentifier);
      if (state == kMetaStateDelete) {
        // Dropped at once: a stale entry left behind could be claimed by
        // a later number of the same value that the store never got.
        write("remove sub-record");
        store.remove(identifier);
        ++counts->removed;
        entry = entries->erase(entry);
        continue;
      }
      if (state == kMetaStateNew) {
        write("add sub-record");
        store.add(identifier, fields.at(kMetaKeyData).get<Dictionary>());
        ++counts->added;
      } else {
        ++counts->kept;
      }
      ++entry;
    }
  }
}

void SyncSession::Run::removeLists(const Dictionary& meta,
                                   std::initializer_list<const String*> lists,
                                   SubRecordCounts* counts) {
  for (const String* key : lists) {
    const Array* entries = FindAs<Array>(meta, *key);
    if (entries == nullptr) continue;
    for (const Value& item : *entries) {
      write("remove sub-record");
      session_.store_.remove(TextOf(item.get<Dictionary>(), kMetaKeyIdentifier));
      ++counts->removed;
    }
  }
}

void SyncSession::Run::contacts(std::string_view text) {
  table_ = loadTable<ContactIDMappingTable>();
  const std::vector<VersitObjectSpan> spans = FindVersitObjects(text);
  for (std::size_t index = 0; index < spans.size(); ++index) {
    const VersitObjectSpan& span = spans[index];
    const std::string_view object = text.substr(span.offset, span.length);
    const auto vCardID = static_cast<std::uint32_t>(index + 1);
    std::string error;
    std::unique_ptr<CContact> contact;
    if (IsVCardObject(object)) {
      contact = TryReadContact(object, vCardID, session_.phone_.imei, table_, &error);
    } else {
      error = "not a vCard, skipped";
    }
    if (!contact) {
      report_.failures.push_back({false, index + 1, span.firstLine, FirstLine(object), error});
      keepRecordOf(vCardID);
      continue;
    }
    if ((contact->state() & CContact::kStateDBRecordIDKnown) == 0) {
      // A contact the table has never seen gets a store ID of its own, and
      // is read again so that it resolves to it.
      const String storeID = NewUUIDString();
      Dictionary entry;
      entry.insert_or_assign(u"vCardID", *contact->vCardRecordID());
      table_->addMeta(std::move(entry), storeID);
      contact = ReadContact(object, vCardID, session_.phone_.imei, table_);
      report_.records.push_back(apply(*contact, true));
    } else {
      report_.records.push_back(apply(*contact, false));
    }
    report_.records.back().object = index + 1;
    report_.records.back().line = span.firstLine;
  }
  dropDeletedContacts();
}

// A card that could not be read keeps its record: its absence from the
// contacts read is no deletion.
void SyncSession::Run::keepRecordOf(std::uint32_t vCardID) {
  const String recordID = CContact::generateNewVCardID(static_cast<std::int32_t>(vCardID),
                                                       session_.phone_.imei);
  for (const String& id : {recordID, GroupRecordID(recordID)}) {
    if (std::optional<String> storeID = table_->dbIDForVCardID(id)) seen_.insert(*storeID);
  }
}

RecordOutcome SyncSession::Run::apply(CContact& contact, bool isNew) {
  SyncStore& store = session_.store_;
  RecordOutcome outcome;
  outcome.storeID = *contact.dbRecordID();
  outcome.vCardRecordID = contact.vCardRecordID().value_or(String());
  outcome.name = DisplayName(contact);
  seen_.insert(outcome.storeID);

  // Reconciling rewrites the identifier lists of "Contact Data" in place:
  // what the store holds has the lists as they were before. Only those are
  // kept aside; copying the whole record (photo and all) would cost more.
  std::optional<Dictionary> knownLists;
  if (const Dictionary* data = FindAs<Dictionary>(*std::as_const(*table_).meta(outcome.storeID),
                                                  kMetaKeyContactData)) {
    knownLists.emplace();
    for (const String* key : kSubRecordLists) {
      if (const Value* list = Find(*data, *key)) knownLists->emplace(*key, *list);
    }
  }
  contact.createMetaData();
  // Changed through a handle that closes, so that the table need not
  // re-read the entry on every later look-up.
  applyLists(*table_->editMeta(outcome.storeID),
             {&kPhoneNumbersKey, &kEmailAddressesKey, &kURLsKey, &kStreetAddressesKey,
              &kDatesKey, &kRelatedNamesKey, &kIMsKey},
             &outcome.subRecords);

  const Dictionary& record = contact.metaDictionary();
  if (isNew) {
    write("add record");
    store.add(outcome.storeID, record);
    table_->addContact(outcome.storeID, record);
    outcome.change = RecordChange::kNew;
    return outcome;
  }
  const Dictionary* known =
      FindAs<Dictionary>(*std::as_const(*table_).meta(outcome.storeID), kMetaKeyContactData);
  if (!knownLists || known == nullptr || !SameRecord(record, *known, *knownLists)) {
    write("change record");
    if (!store.fetch(outcome.storeID)) {
      store.add(outcome.storeID, record);
    } else {
      store.modify(outcome.storeID, record);
    }
    table_->modifyContact(outcome.storeID, record);
    outcome.change = RecordChange::kChanged;
  } else {
    outcome.change = RecordChange::kUnchanged;
  }
  return outcome;
}

// Contacts the table knows that the export no longer holds.
void SyncSession::Run::dropDeletedContacts() {
  std::vector<String> gone;
  for (const auto& [key, value] : std::as_const(*table_).mTable()) {
    const Dictionary* entry = value.getIf<Dictionary>();
    if (entry != nullptr && FindAs<String>(*entry, u"vCardID") != nullptr &&
        seen_.count(key) == 0) {
      gone.push_back(key);
    }
  }
  for (const String& storeID : gone) {
    const Dictionary& entry = *std::as_const(*table_).meta(storeID);
    RecordOutcome outcome;
    outcome.change = RecordChange::kDeleted;
    outcome.storeID = storeID;
    outcome.vCardRecordID = TextOf(entry, u"vCardID");
    if (const Dictionary* data = FindAs<Dictionary>(entry, kMetaKeyContactData)) {
      outcome.name = StoreRecordName(*data);
    }
    removeLists(entry,
                {&kPhoneNumbersKey, &kEmailAddressesKey, &kURLsKey, &kStreetAddressesKey,
                 &kDatesKey, &kRelatedNamesKey, &kIMsKey},
                &outcome.subRecords);
    write("remove record");
    session_.store_.remove(storeID);
    table_->removeContact(storeID);
    report_.records.push_back(std::move(outcome));
  }
}

void SyncSession::Run::finish() {
  SyncStore& store = session_.store_;
  if (dryRun_ || !changed_) {
    store.rollback();
    return;
  }
  for (Table& slot : tables_) {
    // The table is done with: moved, not copied, into the encoders.
    const Value table(std::move(slot.table->mTable()));
    const std::optional<Bytes> bytes = PropertyListFromValue(table, PropertyListFormat::XML);
    if (!bytes) throw std::runtime_error("a table of this phone cannot be encoded");
    write("write table file");
    if (!WriteFileAtomically(slot.filePath, *bytes)) {
      throw std::runtime_error("cannot write the table file " + slot.filePath.string());
    }
    write("keep table");
    store.setTable(slot.name, table, FileStamp(slot.filePath));
  }
  write("commit");
  store.commit();
  report_.written = true;
}
SyncSession::SyncSession(SyncStore& store, PhoneIdentity phone, std::filesystem::path tableFolder)
    : store_(store), phone_(std::move(phone)), tableFolder_(std::move(tableFolder)) {}

SyncSession::~SyncSession() = default;

std::filesystem::path SyncSession::TableFolderOf(const std::filesystem::path& storePath) {
  std::filesystem::path folder = storePath;
  folder += "-tables";
  return folder;
}

SyncReport SyncSession::sync(const SyncInput& input, bool dryRun) {
  return Run(*this, dryRun).run(input);
}

SyncReport SyncSession::syncContacts(std::string_view text, bool dryRun) {
  return sync({text, std::nullopt}, dryRun);
}

void SyncSession::setWriteHook(std::function<void(const char* step)> hook) {
  writeHook_ = std::move(hook);
}

}  // namespace phonepim
