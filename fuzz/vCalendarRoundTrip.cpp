// Round trip of the vCalendar codec, read leniently as the tool reads: what
// the reader accepts, the writer must turn into text that the reader takes
// back, and reading and writing again must settle on one text within a few
// passes.
//
// Why it may take more than one pass (by design of the codec): a local
// DTSTART or DTEND is written in GMT; categories the writer has no line for
// are dropped; a quoted-printable '_' reads back as a space; a rule is
// written in its canonical spelling; repeated single-value properties move
// from their field into extension items. None of these changes the text a
// second time, so two passes settle it; the bound leaves room for one more.
//
// The input's length picks the writer's options and the kind, so that the
// fuzzer explores them all as it grows and shrinks inputs. Inputs the
// reader rejects are skipped.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "phonepim/model/CCalendar.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/vcalendar/vCalendar.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"

namespace {

using namespace phonepim;

constexpr int kMaxPasses = 3;

[[noreturn]] void Fail(const char* what, const std::string& text) {
  std::fprintf(stderr, "vCalendarRoundTrip: %s\n%s\n", what, text.c_str());
  std::abort();
}

std::string Generate(const CCalendar& calendar, unsigned int kind) {
  vObject object;
  vCalendar::Generate(&calendar, &object, kind);
  const auto* bytes = object.object()->GetData();
  return bytes == nullptr ? std::string()
                          : std::string(reinterpret_cast<const char*>(bytes),
                                        object.object()->GetSize());
}

std::unique_ptr<CCalendar> Parse(const std::string& text) {
  vObject object;
  object.object()->SetData(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  auto calendar = std::make_unique<CCalendar>();
  vCalendar::Parse(calendar.get(), &object);
  return calendar;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ScopedAssertionHandler handler(ThrowingAssertionHandler);
  vCard::LenientReading(true);
  vCard::NonstandardEscChar((size & 1u) != 0);
  vCalendar::UseW0((size & 2u) != 0 ? 1 : 0);
  vCalendar::ScheduleUseCategoryType((size & 4u) != 0);
  vCalendar::SupportSetHoliday((size & 8u) != 0);
  const unsigned int kind = (size & 16u) != 0 ? vCalendar::kKindToDo : 1;

  std::unique_ptr<CCalendar> calendar;
  try {
    calendar = Parse(std::string(reinterpret_cast<const char*>(data), size));
  } catch (const std::uint16_t&) {
    return 0;
  } catch (const AssertionFailure&) {
    return 0;
  }
  std::string text = Generate(*calendar, kind);
  for (int pass = 0; pass < kMaxPasses; ++pass) {
    std::unique_ptr<CCalendar> again;
    try {
      again = Parse(text);
    } catch (...) {
      Fail("the reader rejects what the writer wrote", text);
    }
    std::string next = Generate(*again, kind);
    if (next == text) return 0;
    text = std::move(next);
  }
  Fail("no fixed point", text);
}
