#include "phonepim/vcard/vCard.h"

namespace phonepim {

bool vCard::sm_fNonstandardEscChar = false;
bool vCard::sm_fUseReadingLastName = false;
bool vCard::sm_fURLNotQPEncode = false;
bool vCard::sm_fLenientReading = false;

void vCard::NonstandardEscChar(bool on) { sm_fNonstandardEscChar = on; }
void vCard::UseReadingLastName(bool on) { sm_fUseReadingLastName = on; }
void vCard::URLNotQPEncode(bool on) { sm_fURLNotQPEncode = on; }
void vCard::LenientReading(bool on) { sm_fLenientReading = on; }

}  // namespace phonepim
