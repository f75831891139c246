#include "phonepim/platform/Uuid.h"

#include <uuid/uuid.h>

namespace phonepim {

String NewUUIDString() {
  uuid_t uuid;
  uuid_generate_random(uuid);
  char text[37];
  uuid_unparse_upper(uuid, text);
  return StringFromASCII(text);
}

}  // namespace phonepim
