// Time zones by name. A zone is its ICU identifier ("Asia/Tokyo", "GMT",
// the custom form "GMT+09:00"); the library never hands out zone objects.
#pragma once

#include <optional>

#include "phonepim/platform/String.h"

namespace phonepim {

/// The zone that values in local time (time-zone type 0) use: the process
/// default zone, which is the TZ environment unless the host replaced it
/// through ICU (icu::TimeZone::setDefault).
String DefaultTimeZoneName();

/// The zone of the host system itself, read from TZ or /etc/localtime each
/// time; replacing the ICU default zone does not change it.
String SystemTimeZoneName();

/// "GMT": the zone of values in GMT (time-zone type 1).
String GMTTimeZoneName();

/// The canonical name of the zone called `name`, or nothing for a name no
/// zone has. Custom offsets are accepted in the forms "GMT+9", "GMT+09",
/// "GMT+0900" and "GMT+09:00" and come back as "GMT+09:00".
std::optional<String> TimeZoneWithName(const String& name);

/// Seconds east of GMT in `zone` at the instant `date` (seconds since 1970),
/// daylight saving included. An unknown zone counts as GMT, a non-finite
/// instant gives 0.
int SecondsFromGMT(const String& zone, double date);

}  // namespace phonepim
