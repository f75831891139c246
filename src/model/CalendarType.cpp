#include "phonepim/model/CalendarType.h"

namespace phonepim {

std::array<std::int32_t, 32> ds_arrCalendar{};

namespace {

struct KindBit {
  std::int32_t bit;
  std::int32_t kind;
};

// Tested in this order: when several are set, the lowest one decides.
constexpr KindBit kKindBits[] = {
    {0x2, 2}, {0x4, 3}, {0x8, 4}, {0x10, 5}, {0x20, 6}, {0x40, 7}, {0x80, 8}, {0x20000, 9},
};

bool Supported(std::int32_t kind) {
  for (std::int32_t entry : ds_arrCalendar) {
    if (entry == 0) {
      return false;
    }
    if (entry == kind) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::int32_t CalendarType(std::int32_t mask) {
  std::int32_t kind = 1;
  for (const KindBit& row : kKindBits) {
    if ((mask & row.bit) != 0) {
      kind = row.kind;
      break;
    }
  }
  if (ds_arrCalendar[0] != 0 && !Supported(kind)) {
    return 1;
  }
  return kind;
}

}  // namespace phonepim
