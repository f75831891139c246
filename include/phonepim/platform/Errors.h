// Codes the library throws.
#pragma once

#include <cstdint>

namespace phonepim {

/// Thrown (as a std::uint16_t) by vCard::Parse and vCalendar::Parse when the
/// versit text cannot be tokenized.
inline constexpr std::uint16_t kVersitParseError = 65529;

}  // namespace phonepim
