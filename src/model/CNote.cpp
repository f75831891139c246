#include "phonepim/model/CNote.h"

#include <utility>

namespace phonepim {

CNote::CNote() = default;

CNote::CNote(const char* note) : CItem(note, 0, -1) {}

CNote::CNote(const char* note, std::int32_t theID) : CItem(note, 0, theID) {}

CNote::CNote(String note, std::int32_t theID) : CItem(std::move(note), 0, theID) {}

bool CNote::IsEqual(const CNote* note) const {
  return note != nullptr && GetNote() == note->GetNote() && GetType() == note->GetType();
}

}  // namespace phonepim
