// One synchronisation, from the store's lock to its commit: what the
// contact and calendar phases of SyncSession share.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "phonepim/mapping/CalendarIDMappingTable.h"
#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/model/CContact.h"
#include "phonepim/session/StoreRecordName.h"
#include "phonepim/session/SyncSession.h"
#include "phonepim/store/SyncStore.h"

namespace phonepim {

/// `text` without its line end, cut to 60 bytes.
std::string FirstLine(std::string_view object);

class SyncSession::Run {
 public:
  Run(SyncSession& session, bool dryRun) : session_(session), dryRun_(dryRun) {}
  SyncReport run(const SyncInput& input);

 private:
  // One phone table: the object, and where its file goes.
  struct Table {
    std::shared_ptr<IDMappingTable> table;
    std::filesystem::path filePath;
    String name;
  };
  template <class T>
  std::shared_ptr<T> loadTable();

  void write(const char* step);
  // Acts on the reconciled sub-record entries of `meta` under `lists`: adds
  // the new ones to the store, removes and drops the deleted ones.
  void applyLists(Dictionary& meta, std::initializer_list<const String*> lists,
                  SubRecordCounts* counts);
  // Removes every sub-record of `meta` under `lists` from the store.
  void removeLists(const Dictionary& meta, std::initializer_list<const String*> lists,
                   SubRecordCounts* counts);
  void finish();

  // The address book (SyncSession.cpp).
  void contacts(std::string_view text);
  void keepRecordOf(std::uint32_t vCardID);
  RecordOutcome apply(CContact& contact, bool isNew);
  void dropDeletedContacts();

  // The calendar (SyncCalendar.cpp).
  void calendar(std::string_view text);
  void calendarEntry(std::string_view text, std::uint16_t number, std::size_t object,
                     std::size_t line);
  void dropDeletedEntries();

  SyncSession& session_;
  const bool dryRun_;
  std::vector<Table> tables_;
  std::shared_ptr<ContactIDMappingTable> table_;
  std::shared_ptr<CalendarIDMappingTable> calendarTable_;
  String calendarID_;
  std::set<String> seen_;
  std::set<String> keptPrefixes_;  // calendar entries not read: kept as they are
  bool changed_ = false;
  SyncReport report_;
};

}  // namespace phonepim
