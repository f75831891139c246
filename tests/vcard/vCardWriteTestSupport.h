// Shared by the writer, round-trip and reading-mode tests: the codec's options and the
// custom-label table are process-wide, so every test starts from the
// defaults and an empty table and leaves them so.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "phonepim/model/CCustomType.h"
#include "phonepim/platform/String.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"

namespace phonepim::testing_support {

class ScopedWriterDefaults {
 public:
  ScopedWriterDefaults()
      : escape_(vCard::sm_fNonstandardEscChar),
        reading_(vCard::sm_fUseReadingLastName),
        url_(vCard::sm_fURLNotQPEncode),
        lenient_(vCard::sm_fLenientReading) {
    Reset();
  }
  ~ScopedWriterDefaults() {
    vCard::NonstandardEscChar(escape_);
    vCard::UseReadingLastName(reading_);
    vCard::URLNotQPEncode(url_);
    vCard::LenientReading(lenient_);
    CCustomType::Inst().DeleteAllItem();
  }
  ScopedWriterDefaults(const ScopedWriterDefaults&) = delete;
  ScopedWriterDefaults& operator=(const ScopedWriterDefaults&) = delete;

  static void Reset() {
    vCard::NonstandardEscChar(false);
    vCard::UseReadingLastName(false);
    vCard::URLNotQPEncode(false);
    vCard::LenientReading(false);
    CCustomType::Inst().DeleteAllItem();
  }

 private:
  bool escape_;
  bool reading_;
  bool url_;
  bool lenient_;
};

/// The text a writer appends to an empty string.
template <class Writer>
String Written(Writer writer) {
  String out;
  writer(out);
  return out;
}

/// The bytes of a vObject as text (the writer stores UTF-8).
inline std::string BytesOf(const vObject& object) {
  const auto* data = object.object()->GetData();
  return data == nullptr ? std::string()
                         : std::string(reinterpret_cast<const char*>(data),
                                       object.object()->GetSize());
}

}  // namespace phonepim::testing_support
