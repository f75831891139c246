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
#include "ExitStatus.h"
#include "Input.h"
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

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    // CLI11 has a status per kind of mistake (105 for a value out of its
    // set, 106 for a missing option, ...); the tool answers one for all.
    return app.exit(e) == 0 ? phonepim::tool::kExitOk : phonepim::tool::kExitUsage;
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
