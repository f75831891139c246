// The phonepim command-line tool.
#include <CLI/CLI.hpp>

#include <phonepim/platform/Assert.h>
#include <phonepim/vcard/vCard.h>

#include <functional>
#include <iostream>
#include <optional>
#include <string>

#include "CalendarCheck.h"
#include "CalendarConvert.h"
#include "CalendarShow.h"
#include "CardWriter.h"
#include "ContactReader.h"
#include "ContactsCheck.h"
#include "ContactsConvert.h"
#include "ContactsShow.h"
#include "ExitStatus.h"
#include "Input.h"
#include "StoreCommands.h"
#include "SyncCommand.h"
#include "VersitDump.h"

namespace {

using phonepim::tool::ContactReadOptions;
using phonepim::tool::WriterOptions;

using phonepim::tool::RunOnFile;

void AddFileArgument(CLI::App* command, std::string* file) {
  command->add_option("FILE", *file, "vCard file (a phone's address book), or - for standard input")
      ->required();
}

void AddReadOptions(CLI::App* command, ContactReadOptions* options, std::string* imei) {
  command->add_flag("-q,--quiet", options->quiet, "No progress line and no per-card output");
  command->add_flag("-v,--verbose", options->verbose, "How long each card took to read");
  command->add_option("--imei", *imei, "The phone's IMEI, the end of every record ID");
  command->add_flag("--strict", options->strict,
                    "The reading rules as they stand, without the lenient reading that keeps "
                    "what real phone exports send");
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

// The calendar commands: their subcommands and what the command line sets.
struct CalendarCommands {
  CLI::App* show = nullptr;
  CLI::App* convert = nullptr;
  CLI::App* check = nullptr;
  phonepim::tool::ReadOptions read;
  std::string imei;
  bool json = false;
  phonepim::tool::CalendarConvertOptions convertOptions;
};

void AddCalendarReadOptions(CLI::App* command, CalendarCommands* c) {
  phonepim::tool::CalendarOptions& codec = c->convertOptions.codec;
  command->add_flag("-q,--quiet", c->read.quiet, "No progress line and no per-entry output");
  command->add_flag("-v,--verbose", c->read.verbose, "How long each entry took to read");
  command->add_option("--imei", c->imei, "The phone's IMEI, part of every record ID");
  command->add_flag("--strict", codec.strict,
                    "The reading rules as they stand, without the lenient reading that keeps "
                    "what real phone exports send");
  command->add_flag("--local-time", codec.localTime,
                    "Times without Z kept as they stand (else converted to GMT)");
  command->add_flag("--carriage-return", codec.carriageReturn,
                    "Quoted-printable line ends as the phones that send CR write them");
  command->add_flag("--weekday-correction", codec.weekdayCorrection,
                    "Move recurrence weekdays across the TZ offset when it is this machine's");
  command->add_flag("--special-occasion", codec.specialOccasion,
                    "SPECIAL OCCASION is an anniversary; empty CATEGORIES none");
  command->add_flag("--escape", codec.escape, "Backslash escapes in text values");
}

void AddCalendarWriterOptions(CLI::App* command, phonepim::tool::CalendarOptions* codec) {
  command->add_flag("--holiday", codec->holiday, "Write X-TYPE:HOLIDAY for holidays");
  // The local-time rules are the codec's answer to hosts that ask
  // (IsLocalTime, IsAlarmLocalTime); the written text does not change.
  command->add_flag("--task-local-time", codec->taskLocalTime,
                    "The local-time rule for to-dos (IsLocalTime)");
  command->add_flag("--alarm-local-time", codec->alarmLocalTime,
                    "The local-time rule for alarms (IsAlarmLocalTime)");
  command->add_flag("--holiday-local-time", codec->holidayLocalTime,
                    "The local-time rule for holidays (IsLocalTime)");
  command->add_flag("--anniversary-local-time", codec->anniversaryLocalTime,
                    "The local-time rule for anniversaries (IsLocalTime)");
  command->add_option("--timezone-bias", codec->timezoneBias,
                      "The phone's offset from GMT in minutes, written as TZ (0: none)");
  command->add_flag("--no-w0", codec->noW0,
                    "Rules without an end written without #0, for the phones that refuse it");
  command->add_flag("--category-words", codec->categoryWords,
                    "Categories written by their words (else only APPOINTMENT, for none)");
  command->add_flag("--reduced", codec->reduced, "No CLASS, CATEGORIES, STATUS or PRIORITY");
}

void AddCalendarCommands(CLI::App& app, std::string* file, CalendarCommands* c) {
  CLI::App* calendar = app.add_subcommand("calendar", "A phone's calendar (vCalendar 1.0)");
  calendar->require_subcommand(1);
  c->show = calendar->add_subcommand("show", "Summarise every entry, or print them as JSON");
  c->convert =
      calendar->add_subcommand("convert", "Write the entries back as vCalendar 1.0, or as JSON");
  c->check = calendar->add_subcommand(
      "check", "Report what writing each entry and reading it again would change");
  for (CLI::App* command : {c->show, c->convert, c->check}) {
    command
        ->add_option("FILE", *file,
                     "vCalendar file (a phone's events and to-dos), or - for standard input")
        ->required();
    AddCalendarReadOptions(command, c);
  }
  c->show->add_flag("--json", c->json, "The entries as one JSON document");
  c->convert->add_option("--to", c->convertOptions.format, "Output format")
      ->required()
      ->check(CLI::IsMember({"vcs", "json"}));
  c->convert->add_option("-o,--output", c->convertOptions.output,
                         "Write to this file (whole or not at all) instead of standard output");
  AddCalendarWriterOptions(c->convert, &c->convertOptions.codec);
  AddCalendarWriterOptions(c->check, &c->convertOptions.codec);
}

// Runs the calendar command given, if one was; nothing otherwise.
std::optional<int> RunCalendarCommand(const std::string& file, CalendarCommands& c) {
  using namespace phonepim::tool;
  if (!c.show->parsed() && !c.convert->parsed() && !c.check->parsed()) return std::nullopt;
  c.read.imei = phonepim::StringFromASCII(c.imei);
  // The options hold for the reader too, so they are set before any entry.
  ApplyCalendarOptions(c.convertOptions.codec);
  return RunOnFile(file, [&](const std::string& text, const std::string& source) {
    if (c.show->parsed()) return ShowCalendar(text, source, c.read, c.json, std::cout, std::cerr);
    if (c.convert->parsed()) {
      return ConvertCalendar(text, source, c.read, c.convertOptions, std::cout, std::cerr);
    }
    return CheckCalendar(text, source, c.read, c.convertOptions.codec, std::cout, std::cerr);
  });
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
  CalendarCommands calendar;
  AddCalendarCommands(app, &file, &calendar);

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

  phonepim::tool::SyncOptions syncOptions;
  CLI::App* sync = app.add_subcommand(
      "sync", "Synchronise phone exports with the desktop store (records, identities, tables)");
  sync->add_option("FILE", syncOptions.files,
                   "The phone's address-book export (vCard), - for standard input")
      ->required();
  sync->add_option("--store", syncOptions.store,
                   "The store file (default: phonepim/store.sqlite in the data folder)");
  sync->add_option("--imei", syncOptions.imei, "The phone's IMEI, the end of every record ID");
  sync->add_option("--model", syncOptions.model, "The phone's model name (names its tables)");
  sync->add_flag("--dry-run", syncOptions.dryRun, "Report what would change; write nothing");
  sync->add_flag("--json", syncOptions.json, "The report as one JSON document");
  sync->add_flag("-q,--quiet", syncOptions.quiet, "Only the totals");
  sync->add_flag("-v,--verbose", syncOptions.verbose, "How long the sync took");
  sync->add_flag("--strict", syncOptions.strict,
                 "Read with the standard rules only (lenient reading is the default)");

  CLI::App* storeCommand = app.add_subcommand("store", "What the desktop store holds");
  storeCommand->require_subcommand(1);
  phonepim::tool::StoreShowOptions storeShow;
  CLI::App* storeShowCommand =
      storeCommand->add_subcommand("show", "The entities and their counts, or one entity's records");
  storeShowCommand->add_option("--store", storeShow.store, "The store file");
  storeShowCommand->add_option("--entity", storeShow.entity, "List the records of this entity");
  storeShowCommand->add_flag("--json", storeShow.json, "As one JSON document");
  phonepim::tool::StoreExportOptions storeExport;
  CLI::App* storeExportCommand = storeCommand->add_subcommand(
      "export", "Write one phone's contacts back as phone text");
  storeExportCommand->add_option("--store", storeExport.store, "The store file");
  storeExportCommand->add_option("--imei", storeExport.imei, "The phone")->required();
  storeExportCommand->add_option("--to", storeExport.format, "Output format")
      ->required()
      ->check(CLI::IsMember({"vcf", "vcs"}));
  storeExportCommand->add_option("-o,--output", storeExport.output,
                                 "Write to this file (whole or not at all)");


  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    // CLI11 has a status per kind of mistake (105 for a value out of its
    // set, 106 for a missing option, ...); the tool answers one for all.
    return app.exit(e) == 0 ? phonepim::tool::kExitOk : phonepim::tool::kExitUsage;
  }

  if (sync->parsed()) {
    phonepim::vCard::LenientReading(!syncOptions.strict);
    return phonepim::tool::RunSync(syncOptions, std::cout, std::cerr);
  }
  if (storeShowCommand->parsed()) {
    return phonepim::tool::RunStoreShow(storeShow, std::cout, std::cerr);
  }
  if (storeExportCommand->parsed()) {
    return phonepim::tool::RunStoreExport(storeExport, std::cout, std::cerr);
  }

  if (dump->parsed()) {
    return RunOnFile(file, [&](const std::string& text, const std::string& source) {
      return phonepim::tool::DumpVersitText(text, source, dumpOptions, std::cout, std::cerr);
    });
  }
  if (const std::optional<int> status = RunCalendarCommand(file, calendar)) return *status;
  readOptions.imei = phonepim::StringFromASCII(imei);
  phonepim::vCard::LenientReading(!readOptions.strict);
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
