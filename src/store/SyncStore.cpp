#include "phonepim/store/SyncStore.h"

#include <sqlite3.h>

#include <system_error>

#include "phonepim/platform/AppDataFolder.h"
#include "phonepim/platform/PropertyList.h"
#include "phonepim/sync/SyncRecordSchema.h"
#include "store/ValueBytes.h"

namespace phonepim {
namespace {

// The whole schema. Records keep their dictionary as a binary property
// list: every value type of the record schema (texts, dates, numbers, arrays
// of record IDs, photo bytes) survives it exactly, dates with their
// fractions of a second. Rows with a photo run to kilobytes, which is why
// the tables keep their row IDs.
constexpr const char* kSchema = R"sql(
CREATE TABLE records (
  id TEXT UNIQUE NOT NULL,
  entity TEXT NOT NULL,
  data BLOB NOT NULL
);
CREATE INDEX records_by_entity ON records (entity, id);
CREATE TABLE phone_tables (
  name TEXT UNIQUE NOT NULL,
  file_stamp TEXT NOT NULL,
  content BLOB NOT NULL
);
)sql";

std::string UTF8(const String& text) { return ToDisplayUTF8(text); }

String FromColumn(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  const int size = sqlite3_column_bytes(statement, column);
  return StringFromUTF8(text ? std::string_view(text, static_cast<std::size_t>(size))
                             : std::string_view())
      .value_or(String());
}

Bytes BlobFromColumn(sqlite3_stmt* statement, int column) {
  const auto* data = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement, column));
  return Bytes(data, data + sqlite3_column_bytes(statement, column));
}

}  // namespace

struct SyncStore::Impl {
  sqlite3* db = nullptr;
  std::filesystem::path path;
  bool inTransaction = false;

  ~Impl() {
    if (inTransaction) sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close_v2(db);
  }

  [[noreturn]] void fail(const std::string& doing) const {
    throw StoreError("store " + path.string() + ": " + doing + ": " + sqlite3_errmsg(db));
  }

  void exec(const char* sql, const std::string& doing) {
    if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail(doing);
  }

  // One prepared statement, finalised on every path.
  struct Statement {
    const Impl& impl;
    sqlite3_stmt* statement = nullptr;
    Statement(const Impl& owner, const char* sql) : impl(owner) {
      if (sqlite3_prepare_v2(owner.db, sql, -1, &statement, nullptr) != SQLITE_OK) {
        owner.fail("cannot prepare a query");
      }
    }
    ~Statement() { sqlite3_finalize(statement); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    void text(int index, const std::string& value) {
      sqlite3_bind_text(statement, index, value.data(), static_cast<int>(value.size()),
                        SQLITE_TRANSIENT);
    }
    void blob(int index, const Bytes& value) {
      sqlite3_bind_blob(statement, index, value.data(), static_cast<int>(value.size()),
                        SQLITE_STATIC);
    }
    // True while there is a row.
    bool step(const std::string& doing) {
      const int rc = sqlite3_step(statement);
      if (rc == SQLITE_ROW) return true;
      if (rc != SQLITE_DONE) impl.fail(doing);
      return false;
    }
  };

  int pragma(const char* sql) {
    Statement statement(*this, sql);
    return statement.step("cannot read its header") ? sqlite3_column_int(statement.statement, 0)
                                                    : 0;
  }

  bool hasTables() {
    Statement statement(*this, "SELECT count(*) FROM sqlite_schema");
    statement.step("cannot read its schema");
    return sqlite3_column_int(statement.statement, 0) != 0;
  }

  // Checks what the file is, creating the schema in an empty one.
  void prepareSchema(bool mayCreate) {
    int applicationID = 0;
    try {
      applicationID = pragma("PRAGMA application_id");
    } catch (const StoreError&) {
      throw StoreError(path.string() + " is not a phonepim store (not an SQLite database)");
    }
    if (applicationID == 0 && !hasTables()) {
      if (!mayCreate) throw StoreError(path.string() + " is an empty file, not a phonepim store");
      exec("BEGIN IMMEDIATE", "cannot lock it");
      inTransaction = true;
      // Another process may have made the schema while this one waited.
      if (pragma("PRAGMA application_id") == 0 && !hasTables()) {
        exec(kSchema, "cannot create its tables");
        exec(("PRAGMA application_id = " + std::to_string(kApplicationID)).c_str(),
             "cannot mark it");
        exec(("PRAGMA user_version = " + std::to_string(kSchemaVersion)).c_str(),
             "cannot mark it");
      }
      exec("COMMIT", "cannot create it");
      inTransaction = false;
      applicationID = pragma("PRAGMA application_id");
    }
    if (applicationID != kApplicationID) {
      throw StoreError(path.string() + " is not a phonepim store (an SQLite database of " +
                       "another application)");
    }
    const int version = pragma("PRAGMA user_version");
    if (version != kSchemaVersion) {
      throw StoreError(path.string() + " is a phonepim store of version " +
                       std::to_string(version) + "; this phonepim reads version " +
                       std::to_string(kSchemaVersion));
    }
  }

  void requireTransaction() const {
    if (!inTransaction) {
      throw StoreError("store " + path.string() + ": a change outside a transaction");
    }
  }

  Bytes encode(const String& id, const Dictionary& record) const {
    std::optional<Bytes> bytes = PropertyListFromValue(Value(record), PropertyListFormat::Binary);
    if (!bytes) {
      throw StoreError("store " + path.string() + ": record " + UTF8(id) +
                       " holds a value the store cannot keep");
    }
    return std::move(*bytes);
  }

  Dictionary decode(const String& id, const Bytes& bytes) const {
    std::optional<Value> value = ValueFromPropertyList(bytes);
    if (!value || !value->is<Dictionary>()) {
      throw StoreError("store " + path.string() + ": record " + UTF8(id) + " is damaged");
    }
    return std::move(value->get<Dictionary>());
  }
};

std::filesystem::path SyncStore::DefaultPath() {
  return ApplicationDataFolder() / "phonepim" / "store.sqlite";
}

SyncStore::SyncStore(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

SyncStore::SyncStore(const std::filesystem::path& path, OpenMode mode,
                     std::chrono::milliseconds busyTimeout)
    : impl_(std::make_unique<Impl>()) {
  impl_->path = path;
  std::error_code error;
  const bool exists = std::filesystem::exists(path, error);
  if (!exists && mode != OpenMode::kCreate) throw StoreError("no store at " + path.string());
  if (std::filesystem::is_directory(path, error)) {
    throw StoreError(path.string() + " is a folder, not a store");
  }
  if (!exists && path.has_parent_path() && !CreateFolderChain(path.parent_path())) {
    throw StoreError("cannot make the folder of the store " + path.string());
  }
  int flags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  flags |= mode == OpenMode::kReadOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  if (mode == OpenMode::kCreate) flags |= SQLITE_OPEN_CREATE;
  if (sqlite3_open_v2(path.c_str(), &impl_->db, flags, nullptr) != SQLITE_OK) {
    impl_->fail("cannot open it");
  }
  sqlite3_busy_timeout(impl_->db, static_cast<int>(busyTimeout.count()));
  // A first sync of a large phone touches every page: keep them in memory
  // rather than spill and read them back (32 MB).
  sqlite3_exec(impl_->db, "PRAGMA cache_size = -32768", nullptr, nullptr, nullptr);
  impl_->prepareSchema(mode == OpenMode::kCreate);
}

SyncStore SyncStore::InMemory() {
  auto impl = std::make_unique<Impl>();
  impl->path = ":memory:";
  if (sqlite3_open_v2(":memory:", &impl->db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                      nullptr) != SQLITE_OK) {
    impl->fail("cannot open it");
  }
  impl->prepareSchema(true);
  return SyncStore(std::move(impl));
}

SyncStore::SyncStore(SyncStore&&) noexcept = default;
SyncStore& SyncStore::operator=(SyncStore&&) noexcept = default;
SyncStore::~SyncStore() = default;

const std::filesystem::path& SyncStore::path() const { return impl_->path; }

void SyncStore::begin() {
  if (impl_->inTransaction) throw StoreError("store " + path().string() + ": already in a sync");
  const int rc = sqlite3_exec(impl_->db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
  if ((rc & 0xFF) == SQLITE_BUSY) {
    throw StoreError("the store " + path().string() +
                     " is in use by another process (a sync still running?); try again");
  }
  if (rc != SQLITE_OK) impl_->fail("cannot start a transaction");
  impl_->inTransaction = true;
}

void SyncStore::commit() {
  impl_->requireTransaction();
  impl_->exec("COMMIT", "cannot commit");
  impl_->inTransaction = false;
}

void SyncStore::rollback() {
  if (!impl_->inTransaction) return;
  impl_->inTransaction = false;
  impl_->exec("ROLLBACK", "cannot roll back");
}

bool SyncStore::inTransaction() const { return impl_->inTransaction; }

void SyncStore::add(const String& id, const Dictionary& record) {
  impl_->requireTransaction();
  const String* entity = FindAs<String>(record, ISyncRecordEntityNameKey);
  if (entity == nullptr) {
    throw StoreError("store " + path().string() + ": record " + UTF8(id) +
                     " has no entity name");
  }
  const Bytes data = impl_->encode(id, record);
  Impl::Statement statement(*impl_, "INSERT INTO records (id, entity, data) VALUES (?, ?, ?)");
  statement.text(1, UTF8(id));
  statement.text(2, UTF8(*entity));
  statement.blob(3, data);
  statement.step("cannot add record " + UTF8(id));
}

void SyncStore::modify(const String& id, const Dictionary& record) {
  impl_->requireTransaction();
  const String* entity = FindAs<String>(record, ISyncRecordEntityNameKey);
  const Bytes data = impl_->encode(id, record);
  Impl::Statement statement(*impl_, "UPDATE records SET entity = ?, data = ? WHERE id = ?");
  statement.text(1, entity ? UTF8(*entity) : std::string());
  statement.blob(2, data);
  statement.text(3, UTF8(id));
  statement.step("cannot change record " + UTF8(id));
  if (entity == nullptr || sqlite3_changes(impl_->db) == 0) {
    throw StoreError("store " + path().string() + ": no record " + UTF8(id) +
                     " to change, or the change has no entity name");
  }
}

bool SyncStore::remove(const String& id) {
  impl_->requireTransaction();
  Impl::Statement statement(*impl_, "DELETE FROM records WHERE id = ?");
  statement.text(1, UTF8(id));
  statement.step("cannot remove record " + UTF8(id));
  return sqlite3_changes(impl_->db) != 0;
}

std::optional<Dictionary> SyncStore::fetch(const String& id) const {
  Impl::Statement statement(*impl_, "SELECT data FROM records WHERE id = ?");
  statement.text(1, UTF8(id));
  if (!statement.step("cannot read record " + UTF8(id))) return std::nullopt;
  return impl_->decode(id, BlobFromColumn(statement.statement, 0));
}

std::vector<StoreRecord> SyncStore::list(const String& entity) const {
  Impl::Statement statement(*impl_,
                            "SELECT id, data FROM records WHERE entity = ? ORDER BY id");
  statement.text(1, UTF8(entity));
  std::vector<StoreRecord> records;
  while (statement.step("cannot list " + UTF8(entity))) {
    String id = FromColumn(statement.statement, 0);
    Dictionary data = impl_->decode(id, BlobFromColumn(statement.statement, 1));
    records.push_back({std::move(id), std::move(data)});
  }
  return records;
}

std::vector<std::pair<String, std::size_t>> SyncStore::entities() const {
  Impl::Statement statement(
      *impl_, "SELECT entity, count(*) FROM records GROUP BY entity ORDER BY entity");
  std::vector<std::pair<String, std::size_t>> result;
  while (statement.step("cannot list its entities")) {
    result.emplace_back(FromColumn(statement.statement, 0),
                        static_cast<std::size_t>(sqlite3_column_int64(statement.statement, 1)));
  }
  return result;
}

std::size_t SyncStore::count() const {
  Impl::Statement statement(*impl_, "SELECT count(*) FROM records");
  statement.step("cannot count its records");
  return static_cast<std::size_t>(sqlite3_column_int64(statement.statement, 0));
}

std::optional<Dictionary> SyncStore::table(const String& name) const {
  Impl::Statement statement(*impl_, "SELECT content FROM phone_tables WHERE name = ?");
  statement.text(1, UTF8(name));
  if (!statement.step("cannot read the table " + UTF8(name))) return std::nullopt;
  std::optional<Value> value = store_detail::DecodeValue(BlobFromColumn(statement.statement, 0));
  if (!value || !value->is<Dictionary>()) {
    throw StoreError("store " + path().string() + ": the table " + UTF8(name) + " is damaged");
  }
  return std::move(value->get<Dictionary>());
}

std::optional<std::string> SyncStore::tableFileStamp(const String& name) const {
  Impl::Statement statement(*impl_, "SELECT file_stamp FROM phone_tables WHERE name = ?");
  statement.text(1, UTF8(name));
  if (!statement.step("cannot read the table " + UTF8(name))) return std::nullopt;
  return ToDisplayUTF8(FromColumn(statement.statement, 0));
}

std::vector<String> SyncStore::tableNames() const {
  Impl::Statement statement(*impl_, "SELECT name FROM phone_tables ORDER BY name");
  std::vector<String> names;
  while (statement.step("cannot list its tables")) {
    names.push_back(FromColumn(statement.statement, 0));
  }
  return names;
}

void SyncStore::setTable(const String& name, const Value& table, const std::string& fileStamp) {
  impl_->requireTransaction();
  const Bytes content = store_detail::EncodeValue(table);
  Impl::Statement statement(
      *impl_,
      "INSERT OR REPLACE INTO phone_tables (name, file_stamp, content) VALUES (?, ?, ?)");
  statement.text(1, UTF8(name));
  statement.text(2, fileStamp);
  statement.blob(3, content);
  statement.step("cannot keep the table " + UTF8(name));
}

}  // namespace phonepim
