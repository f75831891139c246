// The vCalendar codec's conversion of a date into GMT, declared with the
// codec (vCalendar::SystemTime) and defined beside the date values.
#pragma once

#include "phonepim/vcalendar/vCalendar.h"
