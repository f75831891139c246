// New identifiers for store records and meta entries.
#pragma once

#include "phonepim/platform/String.h"

namespace phonepim {

/// A new random UUID in its 36-character upper-case text form, for example
/// "3F2504E0-4F89-11D3-9A0C-0305E82C3301".
String NewUUIDString();

}  // namespace phonepim
