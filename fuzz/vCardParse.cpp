// vCard::Parse on arbitrary bytes, with assertions that throw. Allowed
// outcomes: a contact, the tokenizer's rejection (65529), one of the
// reader's own assertions, or std::out_of_range from a custom label the
// table cannot register. Anything else, and any sanitizer report, is a bug.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include "phonepim/model/CContact.h"
#include "phonepim/model/CCustomType.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/platform/Errors.h"
#include "phonepim/platform/Log.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"

namespace {

void DiscardLog(std::string_view /*message*/) {}

bool IsReaderAssertion(const std::string& text) {
  return text == "_strnicmp(data, \"2.1\", len) == 0" || text == "len < 256";
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  phonepim::SetAssertionHandler(&phonepim::ThrowingAssertionHandler);
  phonepim::SetLogSink(&DiscardLog);
  phonepim::gVCARD_DEBUGMODE = true;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace phonepim;
  // The last byte's low bit chooses whether text values are unescaped.
  vCard::NonstandardEscChar(size != 0 && (data[size - 1] & 1u) != 0);
  vObject object;
  object.object()->SetData(data, size);
  CContact contact(u"Contact");
  try {
    vCard::Parse(&contact, &object);
  } catch (std::uint16_t code) {
    if (code != kVersitParseError) std::abort();
  } catch (const AssertionFailure& failure) {
    if (!IsReaderAssertion(failure.text())) std::abort();
  } catch (const std::out_of_range&) {
    // A quoted-printable custom label with nothing after its prefix.
  }
  // Every registration adds an entry for the life of the process; start
  // each input afresh so that memory stays flat.
  CCustomType::Inst().DeleteAllItem();
  return 0;
}
