// The calendar phase of a synchronisation: each entry of the phone's
// calendar export into the store through the phone's calendar table.

#include <stdexcept>
#include <utility>

#include "phonepim/model/CCalendar.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/platform/Errors.h"
#include "phonepim/platform/Uuid.h"
#include "phonepim/session/ReadContact.h"
#include "phonepim/sync/CalendarRecord.h"
#include "phonepim/sync/SyncRecordSchema.h"
#include "phonepim/vcalendar/CalendarEntries.h"
#include "phonepim/vcalendar/vCalendar.h"
#include "phonepim/versit/ObjectSplitter.h"
#include "phonepim/versit/vObject.h"
#include "session/SyncRun.h"

namespace phonepim {
namespace {

using namespace calendar_record;

const std::initializer_list<const String*> kEntryLists = {&kAttendees, &kAudioAlarms,
                                                          &kRecurrences};

// The phone record IDs of the entry numbered `number` start so, whatever its
// kind.
String EntryPrefix(std::uint16_t number, const String& imei) {
  String id = CCalendar::generateNewVCalIDWithNewLUID(number, imei, 1);
  return id.substr(0, id.rfind(u'_') + 1);
}

// Reads one entry; on a failure that belongs to the text, says why.
std::unique_ptr<CCalendar> ReadEntry(std::string_view text, std::string* error) {
  auto entry = std::make_unique<CCalendar>();
  vObject object;
  object.object()->SetData(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  try {
    vCalendar::Parse(entry.get(), &object);
    // The reader marks the kind in the categories (a to-do by BEGIN:VTODO,
    // an anniversary by its category word); the record ID and the store
    // record take it from the type mask.
    if (entry->vCalendarType == 0) {
      entry->vCalendarType = (entry->categories & 0x40) != 0 ? 0x40
                             : (entry->categories & 0x2) != 0 ? 0x2
                                                               : 0x1;
    }
    return entry;
  } catch (std::uint16_t code) {
    *error = code == kVersitParseError ? "the tokenizer rejected it"
                                       : "the reader failed with code " + std::to_string(code);
  } catch (const AssertionFailure& failure) {
    *error = "the reader refused it (assertion \"" + failure.text() + "\")";
  }
  return nullptr;
}

}  // namespace

void SyncSession::Run::calendar(std::string_view text) {
  calendarTable_ = loadTable<CalendarIDMappingTable>();
  calendarID_ = calendarTable_->calendarRecordID();
  if (!session_.store_.fetch(calendarID_)) {
    write("add calendar");
    session_.store_.add(calendarID_, NewCalendarRecord(session_.phone_.model));
  }
  const std::vector<VersitObjectSpan> spans = FindVersitObjects(text);
  std::uint32_t number = 0;
  for (std::size_t index = 0; index < spans.size(); ++index) {
    const VersitObjectSpan& span = spans[index];
    const std::string_view object = text.substr(span.offset, span.length);
    if (!IsVersitObject(object, "VCALENDAR")) {
      report_.failures.push_back(
          {true, index + 1, span.firstLine, FirstLine(object), "not a vCalendar, skipped"});
      continue;
    }
    for (const CalendarEntry& entry : SplitCalendarEntries(object)) {
      const std::size_t line = span.firstLine + entry.firstLine - 1;
      if (++number > 0xFFFF) {
        // The phone numbers its entries in 16 bits.
        report_.failures.push_back(
            {true, index + 1, line, FirstLine(entry.text), "more than 65535 entries"});
        continue;
      }
      calendarEntry(entry.text, static_cast<std::uint16_t>(number), index + 1, line);
    }
  }
  dropDeletedEntries();
}

void SyncSession::Run::calendarEntry(std::string_view text, std::uint16_t number,
                                     std::size_t object, std::size_t line) {
  SyncStore& store = session_.store_;
  const String& imei = session_.phone_.imei;
  std::string error;
  std::unique_ptr<CCalendar> entry = ReadEntry(text, &error);
  if (!entry) {
    report_.failures.push_back({true, object, line, FirstLine(text), error});
    keptPrefixes_.insert(EntryPrefix(number, imei));
    return;
  }
  entry->resolveIdentity(number, imei, std::nullopt, calendarTable_);
  const String vCalID = *entry->vCalRecordID();
  const bool isNew = (entry->mState & CCalendar::kStateDBRecordIDKnown) == 0;
  if (isNew) {
    // An entry the table has never seen gets a store ID of its own first,
    // so that its sub-records name it as their owner.
    calendarTable_->addCalendar(vCalID, NewUUIDString(), Dictionary());
    entry->resolveIdentity(number, imei, std::nullopt, calendarTable_);
  }
  RecordOutcome outcome;
  outcome.calendar = true;
  outcome.object = number;
  outcome.line = line;
  outcome.vCardRecordID = vCalID;
  outcome.storeID = entry->mDBRecordID;
  outcome.name = entry->strSummary.value_or(String());
  seen_.insert(vCalID);

  entry->createMetaData(calendarID_);
  applyLists(*calendarTable_->editMeta(vCalID), kEntryLists, &outcome.subRecords);
  const Dictionary& record = entry->eventRecord();
  if (isNew) {
    write("add record");
    store.add(outcome.storeID, record);
    calendarTable_->addCalendar(vCalID, outcome.storeID, record);
    outcome.change = RecordChange::kNew;
  } else if (entry->eventChanged() || outcome.subRecords.added + outcome.subRecords.removed != 0) {
    write("change record");
    if (!store.fetch(outcome.storeID)) {
      store.add(outcome.storeID, record);
    } else {
      store.modify(outcome.storeID, record);
    }
    calendarTable_->modifyCalendar(vCalID, record);
    outcome.change = RecordChange::kChanged;
  }
  report_.records.push_back(std::move(outcome));
}

// Entries the table knows that the export no longer holds.
void SyncSession::Run::dropDeletedEntries() {
  std::vector<String> gone;
  for (const auto& [key, value] : std::as_const(*calendarTable_).mTable()) {
    const Dictionary* entry = value.getIf<Dictionary>();
    if (entry == nullptr || seen_.count(key) != 0) continue;
    bool kept = false;
    for (const String& prefix : keptPrefixes_) kept = kept || key.starts_with(prefix);
    if (!kept) gone.push_back(key);
  }
  for (const String& vCalID : gone) {
    const Dictionary& entry = *std::as_const(*calendarTable_).meta(vCalID);
    RecordOutcome outcome;
    outcome.calendar = true;
    outcome.change = RecordChange::kDeleted;
    outcome.vCardRecordID = vCalID;
    outcome.storeID = TextOf(entry, u"dbRecordID");
    if (const Dictionary* data = FindAs<Dictionary>(entry, CalendarIDMappingTable::dataKey(vCalID))) {
      outcome.name = StoreRecordName(*data);
    }
    removeLists(entry, kEntryLists, &outcome.subRecords);
    if (!outcome.storeID.empty()) {
      write("remove record");
      session_.store_.remove(outcome.storeID);
    }
    calendarTable_->removeCalendar(vCalID);
    report_.records.push_back(std::move(outcome));
  }
}

}  // namespace phonepim
