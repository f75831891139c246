// A generated phone calendar export for the benchmarks: one vCalendar 1.0
// object per entry, as phones send them. Deterministic, so runs compare.
//
// Three events to one task. Every object has TZ and DAYLIGHT, a
// quoted-printable UTF-8 summary and description (the description long
// enough to be soft-broken), start and end (a task: due), categories,
// class and status; half have an AALARM, a third an RRULE of one of the
// six kinds, a quarter one or two attendees.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "PhoneExportCorpus.h"
#include "phonepim/versit/vObject.h"
#include "phonepim/versit/vParser.h"

namespace phonepim::bench {

struct PhoneCalendarCorpus {
  std::string text;                                           // all objects, CRLF
  std::vector<std::pair<std::size_t, std::size_t>> entries;  // offset, length
  std::vector<bool> todo;
};

namespace calendar_detail {

inline const char* const kRules[] = {"D1 #0",           "W1 MO TU WE TH FR #0",
                                     "MP1 2+ TU #0",    "MD1 13+ #0",
                                     "YM1 1 #0",        "YD1 #0",
                                     "W2 TU TH #27",    "D2 20101230T000000Z",
                                     "MP3 2- FR #17"};
inline const char* const kCategories[] = {"MEETING", "BUSINESS", "PERSONAL;TRAVEL",
                                          "SPECIAL OCCASION", "PHONE CALL", "HOLIDAY"};
inline const char* const kTitles[] = {"Besprechung", "Zahnarzt", "Réunion équipe",
                                      "Geburtstag von Jürgen", "打ち合わせ", "Übergabe",
                                      "Conference call", "Flug nach Zürich"};

inline std::string Stamp(Random& random, int hour) {
  char text[64];
  std::snprintf(text, sizeof text, "2009%02d%02dT%02d%02d00Z", 1 + static_cast<int>(random.Below(12)),
                1 + static_cast<int>(random.Below(28)), hour, static_cast<int>(random.Below(4)) * 15);
  return text;
}

}  // namespace calendar_detail

/// `count` objects; object n is a task when n % 4 == 3.
inline PhoneCalendarCorpus MakePhoneCalendar(std::size_t count,
                                             std::uint64_t seed = 0xca1e4da75eedull) {
  using namespace corpus_detail;
  using namespace calendar_detail;
  PhoneCalendarCorpus c;
  Random random(seed);
  c.text.reserve(count * 900);
  for (std::size_t n = 0; n < count; ++n) {
    const std::size_t start = c.text.size();
    const bool task = n % 4 == 3;
    std::string& out = c.text;
    out += "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nTZ:+01\r\n"
           "DAYLIGHT:TRUE;+02;20090329T020000;20091025T030000;;\r\n";
    out += task ? "BEGIN:VTODO\r\n" : "BEGIN:VEVENT\r\n";
    AppendQpProperty(out, "SUMMARY", Pick(random, kTitles));
    std::string description;
    const std::size_t words = 6 + random.Below(30);
    for (std::size_t i = 0; i < words; ++i) {
      if (i != 0) description += ' ';
      description += Pick(random, kNoteWords);
    }
    AppendQpProperty(out, "DESCRIPTION", description);
    const int hour = 8 + static_cast<int>(random.Below(10));
    const std::string day = Stamp(random, hour);
    out += (task ? "DUE:" : "DTSTART:") + day + "\r\n";
    if (!task) out += "DTEND:" + day.substr(0, 9) + std::to_string(hour + 1) + day.substr(11) + "\r\n";
    out += "CATEGORIES:" + std::string(Pick(random, kCategories)) + "\r\n";
    out += "CLASS:PUBLIC\r\nSTATUS:NEEDS ACTION\r\nPRIORITY:" + std::to_string(random.Below(3)) +
           "\r\n";
    if (n % 2 == 0) out += "AALARM:" + day.substr(0, 11) + "0000Z;;;\r\n";
    if (n % 3 == 0) out += "RRULE:" + std::string(Pick(random, kRules)) + "\r\n";
    if (n % 4 == 1) {
      out += "ATTENDEE;ROLE=ATTENDEE;STATUS=ACCEPTED:guest" + std::to_string(n) +
             "@example.com\r\n";
      if (random.Below(2) == 0) out += "ATTENDEE;STATUS=NEEDSACTION:Ana Núñez\r\n";
    }
    out += "X-IRMC-LUID:" + std::to_string(200000 + n) + "\r\n";
    out += task ? "END:VTODO\r\nEND:VCALENDAR\r\n" : "END:VEVENT\r\nEND:VCALENDAR\r\n";
    c.entries.emplace_back(start, c.text.size() - start);
    c.todo.push_back(task);
  }
  return c;
}

/// The shared export of 20,000 entries, made on first use.
inline const PhoneCalendarCorpus& PhoneCalendar() {
  static const PhoneCalendarCorpus corpus = MakePhoneCalendar(20000);
  return corpus;
}

/// One vObject per entry, as the host hands them over.
inline const std::vector<vObject>& CalendarObjects() {
  static const std::vector<vObject> objects = [] {
    const PhoneCalendarCorpus& corpus = PhoneCalendar();
    std::vector<vObject> all(corpus.entries.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
      const auto& [offset, length] = corpus.entries[i];
      all[i].object()->SetData(
          reinterpret_cast<const unsigned char*>(corpus.text.data() + offset), length);
    }
    return all;
  }();
  return objects;
}

/// Every object through the tokenizer with callbacks that do nothing, one
/// parser each, fed in one call as the readers do; false when one is
/// rejected.
inline bool TokenizeAll(const std::vector<vObject>& objects) {
  struct Ignore {
    static void Property(void*, const char*, char**) {}
    static void Data(void*, const char*, int) {}
  };
  bool all = true;
  for (const vObject& object : objects) {
    VP* parser = CARD_ParserCreate();
    CARD_SetPropHandler(parser, &Ignore::Property);
    CARD_SetDataHandler(parser, &Ignore::Data);
    const auto* bytes = object.object();
    all &= CARD_Parse(parser, reinterpret_cast<const char*>(bytes->GetData()),
                      static_cast<int>(bytes->GetSize()), 1) == 1;
    CARD_ParserFree(parser);
  }
  return all;
}

}  // namespace phonepim::bench
