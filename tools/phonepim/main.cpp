// The phonepim command-line tool.
#include <CLI/CLI.hpp>

#include <phonepim/platform/Assert.h>
#include <phonepim/vcard/vCard.h>

#include <functional>
#include <iostream>
#include <string>

#include "CalendarCheck.h"
#include "CalendarConvert.h"
#include "CalendarShow.h"
#include "CardWriter.h"
#include "ContactReader.h"
#include "ContactsCheck.h"
#include "ContactsConvert.h"
#include "ContactsShow.h"
#include "Input.h"
#include "VersitDump.h"

namespace {

using phonepim::tool::ContactReadOptions;
using phonepim::tool::WriterOptions;

// Reads FILE and runs `command` on its text. An unreadable file gives 2,
// anything the command did not expect 3; both are one line on stderr.
int RunOnFile(
    const std::string& file,
    const std::function<int(const std::string& text, const std::string& source)>& command) {
  std::string text;
  std::string error;
  if (!phonepim::tool::ReadInput(file, &text, &error)) {
    std::cerr << "phonepim: " << error << '\n';
    return 2;
  }
  try {
    return command(text, phonepim::tool::SourceName(file));
  } catch (const std::exception& e) {
    std::cerr << "phonepim: " << file << ": internal error: " << e.what() << '\n';
  } catch (...) {
    std::cerr << "phonepim: " << file << ": internal error\n";
  }
  return 3;
}

void AddFileArgument(CLI::App* command, std::string* file,
                     const std::string& what = "vCard file (a phone's address book)") {
  command->add_option("FILE", *file, what + ", or - for standard input")->required();
}

void AddReadOptions(CLI::App* command, ContactReadOptions* options, std::string* imei) {
  command->add_flag("-q,--quiet", options->quiet, "No progress line and no per-card output");
  command->add_flag("-v,--verbose", options->verbose, "How long each card took to read");
  command->add_option("--imei", *imei, "The phone's IMEI, the end of every record ID");
}

void AddWriterOptions(CLI::App* command, WriterOptions* writer) {
  command->add_flag("--phone-style", writer->phoneStyle,
                    "Numbers for the phones that send mobiles as HOME;CELL (X-CALLBACK, "
                    "the number's own label, no VOICE)");
  command->add_flag("--no-qp-urls", writer->noQpURLs,
                    "Web addresses as they are, not quoted-printable");
  command->add_flag("--escape", writer->escape, "Backslash escapes for \\ and ; in text values");
  command->add_flag("--reading-last-name", writer->readingLastName,
                    "Both reading names on SOUND;X-IRMC-N (else only the last, on SOUND)");
}

// Real phone exports need the lenient reading; --strict keeps to the
// letter of the format, dropping what it does not name.
void AddStrictOption(CLI::App* command, bool* strict) {
  command->add_flag("--strict", *strict,
                    "Read by the letter: drop what the format does not name, match names "
                    "exactly");
}

using phonepim::tool::CalendarOptions;

void AddCalendarReaderOptions(CLI::App* command, CalendarOptions* codec) {
  command->add_flag("--local-time", codec->localTime,
                    "Times without Z kept as they stand (else converted to GMT)");
  command->add_flag("--carriage-return", codec->carriageReturn,
                    "Quoted-printable line ends as the phones that send CR write them");
  command->add_flag("--weekday-correction", codec->weekdayCorrection,
                    "Move recurrence weekdays across the TZ offset when it is this machine's");
  command->add_flag("--special-occasion", codec->specialOccasion,
                    "SPECIAL OCCASION is an anniversary; empty CATEGORIES none");
  command->add_flag("--escape", codec->escape, "Backslash escapes in text values");
}

void AddCalendarWriterOptions(CLI::App* command, CalendarOptions* codec) {
  command->add_flag("--holiday", codec->holiday, "Write X-TYPE:HOLIDAY for holidays");
  command->add_flag("--task-local-time", codec->taskLocalTime, "To-dos in local time");
  command->add_flag("--alarm-local-time", codec->alarmLocalTime, "Alarms in local time");
  command->add_flag("--holiday-local-time", codec->holidayLocalTime, "Holidays in local time");
  command->add_flag("--anniversary-local-time", codec->anniversaryLocalTime,
                    "Anniversaries in local time");
  command->add_option("--timezone-bias", codec->timezoneBias,
                      "The phone's offset from GMT in minutes, written as TZ (0: none)");
  command->add_flag("--no-w0", codec->noW0,
                    "Rules without an end written without #0, for the phones that refuse it");
  command->add_flag("--category-words", codec->categoryWords,
                    "Categories written by their words (else only APPOINTMENT, for none)");
  command->add_flag("--reduced", codec->reduced, "No CLASS, CATEGORIES, STATUS or PRIORITY");
}

}  // namespace

int main(int argc, char** argv) {
  // Bad phone data must never kill the tool: assertions become exceptions.
  phonepim::SetAssertionHandler(&phonepim::ThrowingAssertionHandler);

  CLI::App app{"phonepim: phone address books and calendars (vCard 2.1, vCalendar 1.0)"};
  app.require_subcommand(1);

  std::string file;
  phonepim::tool::DumpOptions dumpOptions;
  CLI::App* dump = app.add_subcommand(
      "dump", "Print every property of every object in a versit file, values decoded");
  dump->add_option("FILE", file, "vCard or vCalendar file, or - for standard input")->required();
  dump->add_flag("-q,--quiet", dumpOptions.quiet, "Print only errors and the tally");

  CLI::App* contacts = app.add_subcommand("contacts", "A phone's address book (vCard 2.1)");
  contacts->require_subcommand(1);
  ContactReadOptions readOptions;
  std::string imei;
  WriterOptions writer;

  bool json = false;
  CLI::App* show =
      contacts->add_subcommand("show", "Summarise every contact, or print them as JSON");
  AddFileArgument(show, &file);
  show->add_flag("--json", json, "The contacts as one JSON document");
  AddReadOptions(show, &readOptions, &imei);

  phonepim::tool::ConvertOptions convertOptions;
  CLI::App* convert =
      contacts->add_subcommand("convert", "Write the contacts back as vCard 2.1, or as JSON");
  AddFileArgument(convert, &file);
  convert->add_option("--to", convertOptions.format, "Output format")
      ->required()
      ->check(CLI::IsMember({"vcf", "json"}));
  convert->add_option("-o,--output", convertOptions.output,
                      "Write to this file (whole or not at all) instead of standard output");
  convert->add_option("--photos", convertOptions.photoFolder,
                      "Also write each photo into this folder, named after the record ID");
  AddWriterOptions(convert, &writer);
  AddReadOptions(convert, &readOptions, &imei);

  CLI::App* check = contacts->add_subcommand(
      "check", "Report what writing each card and reading it again would change");
  AddFileArgument(check, &file);
  AddWriterOptions(check, &writer);
  AddReadOptions(check, &readOptions, &imei);

  CLI::App* calendar = app.add_subcommand("calendar", "A phone's calendar (vCalendar 1.0)");
  calendar->require_subcommand(1);
  const std::string calendarFile = "vCalendar file (a phone's events and to-dos)";
  phonepim::tool::CalendarConvertOptions calendarOptions;
  bool strict = false;
  CLI::App* calendarShow =
      calendar->add_subcommand("show", "Summarise every entry, or print them as JSON");
  CLI::App* calendarConvert =
      calendar->add_subcommand("convert", "Write the entries back as vCalendar 1.0, or as JSON");
  CLI::App* calendarCheck = calendar->add_subcommand(
      "check", "Report what writing each entry and reading it again would change");
  for (CLI::App* command : {calendarShow, calendarConvert, calendarCheck}) {
    AddFileArgument(command, &file, calendarFile);
    AddCalendarReaderOptions(command, &calendarOptions.codec);
    AddStrictOption(command, &strict);
    AddReadOptions(command, &readOptions, &imei);
  }
  calendarShow->add_flag("--json", json, "The entries as one JSON document");
  calendarConvert->add_option("--to", calendarOptions.format, "Output format")
      ->required()
      ->check(CLI::IsMember({"vcs", "json"}));
  calendarConvert->add_option("-o,--output", calendarOptions.output,
                              "Write to this file (whole or not at all) instead of standard output");
  AddCalendarWriterOptions(calendarConvert, &calendarOptions.codec);
  AddCalendarWriterOptions(calendarCheck, &calendarOptions.codec);

  CLI11_PARSE(app, argc, argv);

  if (dump->parsed()) {
    return RunOnFile(file, [&](const std::string& text, const std::string& source) {
      return phonepim::tool::DumpVersitText(text, source, dumpOptions, std::cout, std::cerr);
    });
  }
  readOptions.imei = phonepim::StringFromASCII(imei);
  if (calendar->parsed()) {
    phonepim::vCard::LenientReading(!strict);
    phonepim::tool::ApplyCalendarOptions(calendarOptions.codec);
    return RunOnFile(file, [&](const std::string& text, const std::string& source) {
      if (calendarShow->parsed()) {
        return phonepim::tool::ShowCalendar(text, source, readOptions, json, std::cout, std::cerr);
      }
      if (calendarConvert->parsed()) {
        return phonepim::tool::ConvertCalendar(text, source, readOptions, calendarOptions,
                                               std::cout, std::cerr);
      }
      return phonepim::tool::CheckCalendar(text, source, readOptions, calendarOptions.codec,
                                           std::cout, std::cerr);
    });
  }
  // The escape option changes the reader too, so it is set before any card.
  phonepim::tool::ApplyWriterOptions(writer);
  if (show->parsed()) {
    return RunOnFile(file, [&](const std::string& text, const std::string& source) {
      return phonepim::tool::ShowContacts(text, source, readOptions, json, std::cout, std::cerr);
    });
  }
  if (convert->parsed()) {
    convertOptions.writer = writer;
    return RunOnFile(file, [&](const std::string& text, const std::string& source) {
      return phonepim::tool::ConvertContacts(text, source, readOptions, convertOptions, std::cout,
                                             std::cerr);
    });
  }
  if (check->parsed()) {
    return RunOnFile(file, [&](const std::string& text, const std::string& source) {
      return phonepim::tool::CheckContacts(text, source, readOptions, writer, std::cout, std::cerr);
    });
  }
  return 0;
}
