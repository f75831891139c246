// Loads a contact table from a meta file holding arbitrary bytes, runs the
// table's operations over whatever it found, and checks that what it would
// save reads back to the same bytes.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/platform/PropertyList.h"

namespace {

using namespace phonepim;

// The harness's own folder, removed when the run ends. Memory-backed when
// possible: rewriting a file on a disk that discards freed blocks waits for
// the device on every input.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::error_code error;
    const std::filesystem::path parent = std::filesystem::is_directory("/dev/shm", error)
                                             ? std::filesystem::path("/dev/shm")
                                             : std::filesystem::temp_directory_path();
    std::string pattern = (parent / "phonepim-fuzz-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    path_ = pattern;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

const ScratchFolder gScratch;

// Equality that counts NaN equal to NaN, so that a table holding one can
// still be compared.
bool Same(const Value& a, const Value& b) {
  if (a.type() != b.type()) return false;
  switch (a.type()) {
    case Value::Type::Real: {
      const double x = a.get<double>(), y = b.get<double>();
      return x == y || (std::isnan(x) && std::isnan(y));
    }
    case Value::Type::Date: {
      const double x = a.get<Date>().secondsSince1970, y = b.get<Date>().secondsSince1970;
      return x == y || (std::isnan(x) && std::isnan(y));
    }
    case Value::Type::Array: {
      const Array& x = a.get<Array>();
      const Array& y = b.get<Array>();
      return x.size() == y.size() && std::equal(x.begin(), x.end(), y.begin(), Same);
    }
    case Value::Type::Dictionary: {
      const Dictionary& x = a.get<Dictionary>();
      const Dictionary& y = b.get<Dictionary>();
      return x.size() == y.size() &&
             std::equal(x.begin(), x.end(), y.begin(), [](const auto& p, const auto& q) {
               return p.first == q.first && Same(p.second, q.second);
             });
    }
    default:
      return a == b;
  }
}

// What save() would write must read back. A binary list keeps every value
// exactly; XML cuts dates to whole seconds, so it must give the same bytes
// the second time. (libplist shares equal data objects of a binary list
// depending on where they sit in memory, so binary bytes may differ.)
void CheckRoundTrip(const Dictionary& table, PropertyListFormat format) {
  const Value value(table);
  const std::optional<Bytes> bytes = PropertyListFromValue(value, format);
  if (!bytes) return;  // a value that cannot be stored: save() reports it
  const std::optional<Value> back = ValueFromPropertyList(*bytes);
  if (!back) __builtin_trap();
  if (format == PropertyListFormat::Binary) {
    if (!Same(*back, value)) __builtin_trap();
    return;
  }
  const std::optional<Bytes> again = PropertyListFromValue(*back, format);
  if (!again || *again != *bytes) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  // Bad data in a meta file must not stop the host.
  SetAssertionHandler(&ThrowingAssertionHandler);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path path =
      ContactIDMappingTable::metaFilePath(u"1", u"Fuzz", gScratch.path());
  {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  ContactIDMappingTable table(u"Fuzz", u"1", gScratch.path());

  // The table holds exactly what the parser makes of the bytes.
  const std::optional<Value> direct = ValueFromPropertyList(data, size);
  const std::size_t expected =
      direct && direct->is<Dictionary>() ? direct->get<Dictionary>().size() : 0;
  if (table.count() != expected) __builtin_trap();

  int budget = 64;
  for (const String& key : table.allKeys()) {
    if (--budget < 0) break;
    if (const std::optional<String> vCardID = table.vCardIDForDBID(key)) {
      const std::optional<String> found = table.dbIDForVCardID(*vCardID);
      if (!found || *found > key) __builtin_trap();
    }
    try {
      table.modifyDataForPhoneID(u"P", Dictionary{{u"value", u"1"}}, key);
      table.modifyDataForRelationID(u"R", Dictionary{}, key, u"IMs");
    } catch (const AssertionFailure&) {
      // An entry without "identifier": the documented stop.
    }
    table.addEmailForEmailID(u"E", Dictionary{{u"value", u"e"}}, key);
    table.addPhoneRecordID(u"P", key);
    table.checkDBIDForVCardRecordID(key);
  }
  table.setRemovedTagToAllMeta();
  table.countRemovedTagRecords();
  if (const std::vector<String> keys = table.allKeys(); !keys.empty()) {
    if (const Dictionary* first = table.meta(keys.front())) {
      const Dictionary replacement = *first;
      table.replaceContactContentsWithIdentifer(keys.back(), replacement);
    }
    table.changeRecordIDOfMeta(keys.front());
    table.removeIndentifier(u"E");
  }
  CheckRoundTrip(table.mTable(), PropertyListFormat::XML);
  CheckRoundTrip(table.mTable(), PropertyListFormat::Binary);
  table.removeAllRemovedTagRecords();
  return 0;
}
