#include "StoreCommands.h"

#include <phonepim/session/CalendarFromStore.h>
#include <phonepim/session/ContactsFromStore.h>
#include <phonepim/session/StoreRecordName.h>
#include <phonepim/store/SyncStore.h>
#include <phonepim/vcalendar/vCalendar.h>
#include <phonepim/versit/vObject.h>

#include <cmath>
#include <ctime>
#include <nlohmann/json.hpp>
#include <ostream>

#include "AtomicFile.h"
#include "CardWriter.h"
#include "SyncCommand.h"

namespace phonepim::tool {
namespace {

std::string DateText(const Date& date) {
  const auto seconds = static_cast<std::time_t>(std::floor(date.secondsSince1970));
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
  return text;
}

// One value on one line: texts as they are, dates in UTC, bytes counted.
nlohmann::ordered_json ValueJson(const Value& value) {
  switch (value.type()) {
    case Value::Type::String: return ToDisplayUTF8(value.get<String>());
    case Value::Type::Integer: return value.get<std::int64_t>();
    case Value::Type::Real: return value.get<double>();
    case Value::Type::Boolean: return value.get<bool>();
    case Value::Type::Date: return DateText(value.get<Date>());
    case Value::Type::Data: return std::to_string(value.get<Bytes>().size()) + " bytes";
    case Value::Type::Array: {
      nlohmann::ordered_json items = nlohmann::ordered_json::array();
      for (const Value& item : value.get<Array>()) items.push_back(ValueJson(item));
      return items;
    }
    case Value::Type::Dictionary: {
      nlohmann::ordered_json fields = nlohmann::ordered_json::object();
      for (const auto& [key, item] : value.get<Dictionary>()) {
        fields[ToDisplayUTF8(key)] = ValueJson(item);
      }
      return fields;
    }
  }
  return nullptr;
}

std::string ValueText(const Value& value) {
  const nlohmann::ordered_json json = ValueJson(value);
  return json.is_string() ? json.get<std::string>() : json.dump();
}

}  // namespace

int RunStoreShow(const StoreShowOptions& options, std::ostream& out, std::ostream& err) {
  try {
    const SyncStore store(StorePathOption(options.store), SyncStore::OpenMode::kReadOnly);
    if (options.entity.empty()) {
      nlohmann::ordered_json entities = nlohmann::ordered_json::object();
      for (const auto& [entity, count] : store.entities()) {
        entities[ToDisplayUTF8(entity)] = count;
        if (!options.json) out << ToDisplayUTF8(entity) << ": " << count << '\n';
      }
      if (options.json) {
        out << nlohmann::ordered_json{{"store", store.path().string()}, {"entities", entities}}
                   .dump(2)
            << '\n';
      } else {
        out << store.count() << " records\n";
      }
      return 0;
    }
    const std::vector<StoreRecord> records =
        store.list(StringFromUTF8(options.entity).value_or(String()));
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const StoreRecord& record : records) {
      if (options.json) {
        list.push_back({{"id", ToDisplayUTF8(record.id)}, {"data", ValueJson(record.data)}});
        continue;
      }
      const String name = StoreRecordName(record.data);
      out << ToDisplayUTF8(record.id) << (name.empty() ? "" : ": " + ToDisplayUTF8(name)) << '\n';
      for (const auto& [key, value] : record.data) {
        out << "  " << ToDisplayUTF8(key) << ": " << ValueText(value) << '\n';
      }
    }
    if (options.json) {
      out << nlohmann::ordered_json{{"store", store.path().string()},
                                    {"entity", options.entity},
                                    {"records", list}}
                 .dump(2)
          << '\n';
    } else {
      out << records.size() << " records of " << options.entity << '\n';
    }
    return 0;
  } catch (const StoreError& e) {
    err << "phonepim: " << e.what() << '\n';
  }
  return 2;
}

int RunStoreExport(const StoreExportOptions& options, std::ostream& out, std::ostream& err) {
  try {
    const SyncStore store(StorePathOption(options.store), SyncStore::OpenMode::kReadOnly);
    const String imei = StringFromUTF8(options.imei).value_or(String());
    std::string text;
    if (options.format == "vcs") {
      for (const auto& entry : CalendarFromStore(store, imei)) {
        vObject object;
        vCalendar::Generate(entry.get(), &object, static_cast<unsigned int>(entry->GetType()));
        text.append(reinterpret_cast<const char*>(object.object()->GetData()),
                    object.object()->GetSize());
        // The writer leaves the last line open: files of several calendars
        // need it closed.
        text += "\r\n";
      }
    }
    for (const auto& contact : options.format == "vcf" ? ContactsFromStore(store, imei)
                                                       : std::vector<std::unique_ptr<CContact>>()) {
      text += GenerateCard(*contact, WriterOptions());
    }
    if (options.output.empty()) {
      out << text;
      return 0;
    }
    std::string error;
    if (!WriteFileAtomically(options.output, text, &error)) {
      err << "phonepim: " << error << '\n';
      return 2;
    }
    return 0;
  } catch (const StoreError& e) {
    err << "phonepim: " << e.what() << '\n';
  }
  return 2;
}

}  // namespace phonepim::tool
