// Splitting a file that holds many versit objects (a phone's whole address
// book export) into one vObject per BEGIN...END.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "phonepim/versit/vObject.h"

namespace phonepim {

/// Where one object stands in a buffer.
struct VersitObjectSpan {
  std::size_t offset = 0;     ///< first byte of its BEGIN line
  std::size_t length = 0;     ///< through the line end after its END line
  std::size_t firstLine = 0;  ///< 1-based line number of its BEGIN line
  bool terminated = true;     ///< false when the buffer ended before its END
};

/// What becomes of a vCard inside a vCard (BEGIN:VCARD before the outer
/// card's END:VCARD, as some exports write agents and linked people).
enum class NestedCards {
  kInside,  ///< part of the outer object, like an event inside a calendar
  kApart,   ///< also an object of its own, listed after the card it is in;
            ///< the outer card's span still holds its text (lenient reading
            ///< skips it there)
};

/// Finds the objects in `buffer`. An object starts at a line that begins
/// "BEGIN:" (any case) outside another object and ends with the "END:" line
/// that closes it; nested BEGIN/END pairs (an event inside a calendar, an
/// agent card inside a card) stay inside their object. LF and CRLF line ends
/// both work; text between objects is skipped, and so is a UTF-8 byte order
/// mark at the start of the buffer. An object still open when the buffer
/// ends runs to the end and is marked unterminated. Any bytes are accepted.
std::vector<VersitObjectSpan> FindVersitObjects(std::string_view buffer,
                                               NestedCards nested = NestedCards::kInside);

/// The objects of `buffer` as vObjects (their IDs unassigned), in order.
vObjectPtrArray SplitVersitObjects(std::string_view buffer,
                                   NestedCards nested = NestedCards::kInside);

}  // namespace phonepim
