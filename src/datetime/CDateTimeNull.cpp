#include "phonepim/datetime/CDateTimeNull.h"

namespace phonepim {

CDateTimeNull::CDateTimeNull() { SetStatus(kStatusNull); }

}  // namespace phonepim
