// The vCard 2.1 codec: reading a phone's vCard text into a CContact and
// writing a CContact back as the text phones expect.
//
// All members are static. The class-wide options are process-wide and
// unguarded: set them before use and call the codec from one thread.
#pragma once

#include <cstdint>

#include "phonepim/platform/String.h"

namespace phonepim {

class CContact;
class vObject;

class vCard {
 public:
  vCard() = delete;

  // --- Class-wide options (all off by default) ---

  /// The reader undoes backslash escapes in text values, and the writer
  /// escapes `\` and `;` in them, only when this is set.
  static bool sm_fNonstandardEscChar;
  /// The writer puts the reading (phonetic) name on "SOUND;X-IRMC-N" with
  /// both parts when set; only the reading last name, plainly, when clear.
  static bool sm_fUseReadingLastName;
  /// The writer leaves URLs as they are instead of quoted-printable.
  static bool sm_fURLNotQPEncode;

  static void NonstandardEscChar(bool on);
  static void UseReadingLastName(bool on);
  static void URLNotQPEncode(bool on);

  // --- Reading ---
  // (reader declarations)

  // --- Writing ---
  // (writer declarations)
};

}  // namespace phonepim
