// Helpers shared by the sync tests: a mapping table in a scratch folder,
// readers for the meta entries the containers leave in it, and the code the
// documents show.
#pragma once

#include <gtest/gtest.h>

#include "mapping/MappingTestSupport.h"
#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/sync/BaseContainer.h"

namespace phonepim::testing_support {

/// The first ```cpp block after `marker` in a file of the repository.
inline std::string CodeAfter(const std::string& file, const std::string& marker) {
  const std::string text = ReadFile(PHONEPIM_SOURCE_DIR "/" + file);
  const std::size_t at = text.find(marker);
  const std::size_t from = at == std::string::npos ? at : text.find("```cpp\n", at);
  if (from == std::string::npos) return {};
  return text.substr(from + 7, text.find("```", from + 7) - from - 7);
}

/// The code between "// BEGIN EXAMPLE" and "// END EXAMPLE" of a test source.
inline std::string ExampleIn(const std::string& source) {
  const std::string text = ReadFile(PHONEPIM_SOURCE_DIR "/" + source);
  const std::size_t begin = text.find("// BEGIN EXAMPLE\n");
  if (begin == std::string::npos) return {};
  return text.substr(begin + 17, text.find("// END EXAMPLE") - begin - 17);
}

/// A record container whose records the test writes itself.
class TestContainer : public BaseContainer {
 public:
  using BaseContainer::BaseContainer;
  void add(Dictionary record) { addRecord(std::move(record)); }
  std::vector<String> createMetaData() override {
    return createMetaDataWithKey(u"phone numbers", u"value");
  }
};

/// A table in its own scratch folder.
class TableFixture : public ::testing::Test {
 protected:
  std::shared_ptr<ContactIDMappingTable> NewTable() {
    return std::make_shared<ContactIDMappingTable>(u"Model", u"IMEI", folder_.path());
  }

  /// The meta list under `key` of the contact `id`; fails the test when
  /// there is none.
  static const Array& Entries(const ContactIDMappingTable& table, const String& id,
                              const String& key) {
    static const Array kNone;
    const Dictionary* meta = table.meta(id);
    const Array* entries = meta ? FindAs<Array>(*meta, key) : nullptr;
    EXPECT_NE(entries, nullptr) << "no list " << ToDisplayUTF8(key);
    return entries ? *entries : kNone;
  }

  /// "State/Link" of each entry, for example "New/Linked".
  static std::vector<std::string> StatesOf(const Array& entries) {
    std::vector<std::string> states;
    for (const Value& entry : entries) {
      const Dictionary& fields = entry.get<Dictionary>();
      states.push_back(ToDisplayUTF8(fields.at(u"State").get<String>()) + "/" +
                       ToDisplayUTF8(fields.at(u"Link").get<String>()));
    }
    return states;
  }

  static std::vector<String> IdentifiersOf(const Array& entries) {
    std::vector<String> identifiers;
    for (const Value& entry : entries) {
      identifiers.push_back(entry.get<Dictionary>().at(u"identifier").get<String>());
    }
    return identifiers;
  }

  static const Dictionary& DataOf(const Value& entry) {
    return entry.get<Dictionary>().at(u"Data").get<Dictionary>();
  }

  /// The strings of an Array value.
  static std::vector<String> Strings(const Value* value) {
    std::vector<String> strings;
    if (value == nullptr || !value->is<Array>()) return strings;
    for (const Value& item : value->get<Array>()) strings.push_back(item.get<String>());
    return strings;
  }

  ScratchFolder folder_;
};

}  // namespace phonepim::testing_support
