// The phonepim command-line tool.
#include <CLI/CLI.hpp>

#include <phonepim/platform/Assert.h>

#include <functional>
#include <iostream>
#include <string>

#include "CardWriter.h"
#include "ContactReader.h"
#include "ContactsCheck.h"
#include "ContactsConvert.h"
#include "ContactsShow.h"
#include "Input.h"
#include "StoreCommands.h"
#include "SyncCommand.h"
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

void AddFileArgument(CLI::App* command, std::string* file) {
  command->add_option("FILE", *file, "vCard file (a phone's address book), or - for standard input")
      ->required();
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

  CLI11_PARSE(app, argc, argv);

  if (sync->parsed()) return phonepim::tool::RunSync(syncOptions, std::cout, std::cerr);
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
  readOptions.imei = phonepim::StringFromASCII(imei);
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
