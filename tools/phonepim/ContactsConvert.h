// `phonepim contacts convert`: a phone's address book written back as
// vCard 2.1 by the library's writer, or as JSON, and its photos as files.
#pragma once

#include <iosfwd>
#include <string>

#include "CardWriter.h"
#include "ContactReader.h"

namespace phonepim::tool {

struct ConvertOptions {
  std::string format = "vcf";  ///< "vcf" or "json"
  std::string output;          ///< the file to write; empty for standard output
  std::string photoFolder;     ///< where photos go; empty for nowhere
  WriterOptions writer;
};

/// "0000000000000003-Contact-.jpg": the contact's record ID (or "object-3"
/// when it has none) and the extension its bytes call for.
std::string PhotoFileName(const std::string& recordID, std::size_t objectNumber,
                          const Bytes& photo);

/// Reads every card of `text` and writes them in the chosen format to the
/// output file (atomically) or `out`, the photos to the photo folder. Cards
/// that cannot be read are reported on `err` and left out. Returns 0, 1
/// when some cards failed, 2 when the input holds no vCard or an output
/// file cannot be written (then no output file is left behind or changed).
int ConvertContacts(const std::string& text, const std::string& sourceName,
                    const ContactReadOptions& readOptions, const ConvertOptions& options,
                    std::ostream& out, std::ostream& err);

}  // namespace phonepim::tool
