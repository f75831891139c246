#include "CalendarConvert.h"

#include <ostream>

#include "AtomicFile.h"
#include "CalendarJson.h"
#include "CalendarShow.h"

namespace phonepim::tool {

int ConvertCalendar(const std::string& text, const std::string& sourceName,
                    const ReadOptions& readOptions, const CalendarConvertOptions& options,
                    std::ostream& out, std::ostream& err) {
  const bool json = options.format == "json";
  std::string written;
  nlohmann::ordered_json entries = nlohmann::ordered_json::array();
  CalendarTally tally;
  const int status = ForEachCalendar(
      text, sourceName, readOptions, err,
      [&](const EntryInFile& entry, const CCalendar& calendar) {
        if (json) {
          entries.push_back(CalendarToJson(calendar, entry.kind, entry.object.index + 1,
                                           entry.entry.span.firstLine, readOptions.imei));
        } else {
          // The writer ends its text at END:VCALENDAR; the file's objects
          // are on lines of their own.
          written += GenerateCalendar(calendar, entry.kind, options.codec.reduced) + "\r\n";
        }
      },
      &tally);
  if (status == 2) return status;
  if (json) written = CalendarFileJson(sourceName, std::move(entries), tally).dump(2) + "\n";
  if (options.output.empty()) {
    out << written << std::flush;
  } else if (std::string error; !WriteFileAtomically(options.output, written, &error)) {
    err << error << '\n';
    return 2;
  }
  if (!readOptions.quiet) err << CalendarTallyLine(tally) << '\n';
  return status;
}

}  // namespace phonepim::tool
