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
// One thing never settles, by design, and is taken out after the first
// read: with sm_fNonstandardEscChar the reader undoes escapes in text
// values (keeping the backslash, dropping the character after it) while
// the writer never escapes them, so a backslash eats a character on every
// pass. Backslashes in those values become '/'. And an event has no DUE
// line: a second DUE of an event, kept as an item, moves into the field on
// the next read and vanishes, one per pass. Such items are dropped.
//
// The input's length picks the writer's options and the kind, so that the
// fuzzer explores them all as it grows and shrinks inputs. Inputs the
// reader rejects are skipped.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
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

void Slash(std::optional<String>& text) {
  if (!text) return;
  for (char16_t& unit : *text) {
    if (unit == u'\\') unit = u'/';
  }
}

void TakeOutWhatNeverSettles(CCalendar& c, unsigned int kind) {
  if (kind != vCalendar::kKindToDo) {
    for (int i = c.GetXItemCount() - 1; i >= 0; --i) {
      if (c.GetXItem(i)->Name() == u"DUE") c.DeleteXItemAtIndex(i);
    }
  }
  if (!vCard::sm_fNonstandardEscChar) return;
  for (std::optional<String>* text : {&c.strSummary, &c.strDescription, &c.strLocation,
                                      &c.Account, &c.AccountName, &c.AccountType}) {
    Slash(*text);
  }
  // An extension item can be a text property read again (a repeated
  // SUMMARY, say): the same asymmetry holds for its value.
  for (int i = 0; i < c.GetXItemCount(); ++i) {
    std::optional<String> data = c.GetXItem(i)->Data();
    Slash(data);
    c.GetXItem(i)->setDataWithString(std::move(*data));
  }
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
  TakeOutWhatNeverSettles(*calendar, kind);
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
