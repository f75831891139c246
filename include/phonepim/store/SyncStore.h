// The desktop synchronisation store: the records the sync bridge builds,
// kept in one SQLite file by record ID, with their entity names. docs/store.md
// describes the file.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"

namespace phonepim {

/// A store that cannot be opened, locked or written. what() is one sentence
/// that names the file, fit for a user.
class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One record as the store holds it.
struct StoreRecord {
  String id;
  Dictionary data;  ///< with its entity name under ISyncRecordEntityNameKey
};

/// An open store. Not thread-safe; several processes may open one file, and
/// transactions serialise them (a writer waits for another writer up to the
/// busy timeout, then fails with StoreError).
///
/// Every change must happen inside begin() ... commit(): one synchronisation
/// is one transaction, so a failure or a crash before commit() leaves the
/// store as it was.
class SyncStore {
 public:
  /// The version this library writes and reads (PRAGMA user_version).
  static constexpr int kSchemaVersion = 1;
  /// "PPIM": PRAGMA application_id of every phonepim store.
  static constexpr int kApplicationID = 0x5050494D;

  enum class OpenMode {
    kCreate,    ///< make the file (and its folders) when it is missing
    kExisting,  ///< a missing file is an error
    kReadOnly,  ///< a missing file is an error; no change is possible
  };

  /// `phonepim/store.sqlite` under the application-data folder. Throws
  /// std::runtime_error when there is no such folder.
  static std::filesystem::path DefaultPath();

  /// Opens the store at `path`. Throws StoreError, leaving any existing file
  /// untouched, when the file is missing (except with kCreate), is not an
  /// SQLite database, is a database of another application, or holds a
  /// schema version other than kSchemaVersion.
  SyncStore(const std::filesystem::path& path, OpenMode mode,
            std::chrono::milliseconds busyTimeout = std::chrono::seconds(10));
  /// An empty store that lives in memory only: what a dry run against a
  /// store that does not exist yet works on.
  static SyncStore InMemory();

  SyncStore(SyncStore&&) noexcept;
  SyncStore& operator=(SyncStore&&) noexcept;
  ~SyncStore();  ///< rolls back an open transaction

  const std::filesystem::path& path() const;

  /// Starts the transaction and takes the store's write lock at once, so
  /// that two synchronisations never interleave: the second waits up to the
  /// busy timeout, then throws StoreError.
  void begin();
  void commit();
  void rollback();
  bool inTransaction() const;

  /// Adds `record` under `id`. Throws StoreError when `id` is taken, when
  /// the record has no entity name, or when it holds a value the store
  /// cannot keep (see PropertyListFromValue).
  void add(const String& id, const Dictionary& record);
  /// Replaces the record `id`; throws StoreError when there is none.
  void modify(const String& id, const Dictionary& record);
  /// Removes the record `id`; false when there was none.
  bool remove(const String& id);

  std::optional<Dictionary> fetch(const String& id) const;
  /// The records of one entity, ordered by ID.
  std::vector<StoreRecord> list(const String& entity) const;
  /// Every entity name with its number of records, ordered by name.
  std::vector<std::pair<String, std::size_t>> entities() const;
  std::size_t count() const;

  /// The phones' identity tables, kept with the records they describe and
  /// changed in the same transaction, under a name the caller chooses (its
  /// file name). `fileStamp` says which table file on disk holds the same
  /// table (see SyncSession). `table` must hold a Dictionary.
  void setTable(const String& name, const Value& table, const std::string& fileStamp);
  std::optional<Dictionary> table(const String& name) const;
  std::optional<std::string> tableFileStamp(const String& name) const;
  /// The names of every table, in order.
  std::vector<String> tableNames() const;

 private:
  struct Impl;
  explicit SyncStore(std::unique_ptr<Impl> impl);
  std::unique_ptr<Impl> impl_;
};

}  // namespace phonepim
