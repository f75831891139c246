// Writing contacts back as vCard 2.1 with the writer's choices a person can
// make on the command line.
#pragma once

#include <string>

#include <phonepim/model/CContact.h>

namespace phonepim::tool {

struct WriterOptions {
  bool phoneStyle = false;       ///< numbers for the phones that send mobiles as HOME;CELL
  bool noQpURLs = false;         ///< web addresses as they are
  bool escape = false;           ///< backslash escapes in text values (read and write)
  bool readingLastName = false;  ///< both reading names on SOUND;X-IRMC-N
};

/// Sets the codec's class-wide options from `options`. They hold for the
/// reader too (escapes), so call it before the first card is read.
void ApplyWriterOptions(const WriterOptions& options);

/// The vCard 2.1 text vCard::Generate writes for `contact`.
std::string GenerateCard(const CContact& contact, const WriterOptions& options);

}  // namespace phonepim::tool
