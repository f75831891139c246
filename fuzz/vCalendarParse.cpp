// vCalendar::Parse on arbitrary bytes, with assertions that throw. Allowed
// outcomes: a calendar record, the tokenizer's rejection (65529) or the
// reader's VERSION assertion. Anything else (a recurrence setter's
// assertion means the rule reader let a value through that the model
// refuses), and any sanitizer report, is a bug.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "phonepim/model/CCalendar.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/platform/Errors.h"
#include "phonepim/platform/Log.h"
#include "phonepim/vcalendar/vCalendar.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"

namespace {

void DiscardLog(std::string_view /*message*/) {}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  phonepim::SetAssertionHandler(&phonepim::ThrowingAssertionHandler);
  phonepim::SetLogSink(&DiscardLog);
  phonepim::gVCARD_DEBUGMODE = true;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace phonepim;
  // The last byte's bits choose the reading options.
  const unsigned options = size != 0 ? data[size - 1] : 0u;
  vCard::LenientReading((options & 1u) != 0);
  vCard::NonstandardEscChar((options & 2u) != 0);
  vCalendar::UseCarrageReturn((options & 4u) != 0);
  vCalendar::UseTimezone((options & 8u) != 0);
  vCalendar::AnniversaryConvertToSpecialOccasion((options & 16u) != 0);
  vCalendar::UseLocalTime((options & 32u) != 0);
  vObject object;
  object.object()->SetData(data, size);
  CCalendar calendar;
  try {
    vCalendar::Parse(&calendar, &object);
  } catch (std::uint16_t code) {
    if (code != kVersitParseError) std::abort();
  } catch (const AssertionFailure& failure) {
    if (failure.text() != "_strnicmp(data, \"1.0\", len) == 0") std::abort();
  }
  return 0;
}
