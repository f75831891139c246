#include "phonepim/datetime/TimeZones.h"

#include <unicode/timezone.h>
#include <unicode/ucal.h>
#include <unicode/unistr.h>

#include <memory>

#include "datetime/Gregorian.h"

namespace phonepim {

String DefaultTimeZoneName() { return gregorian::DefaultZone(); }

String SystemTimeZoneName() { return gregorian::HostZone(); }

String GMTTimeZoneName() { return u"GMT"; }

std::optional<String> TimeZoneWithName(const String& name) {
  if (name.size() > 256) return std::nullopt;
  const icu::UnicodeString wanted(name.data(), static_cast<std::int32_t>(name.size()));
  const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(wanted));
  icu::UnicodeString id;
  zone->getID(id);
  // ICU answers an unknown name with the "unknown" zone instead of failing.
  if (id == icu::UnicodeString(UCAL_UNKNOWN_ZONE_ID) && id != wanted) return std::nullopt;
  return String(id.getBuffer(), static_cast<std::size_t>(id.length()));
}

int SecondsFromGMT(const String& zone, double date) {
  return gregorian::OffsetFromGMT(zone, date);
}

}  // namespace phonepim
