#include "phonepim/versit/vObject.h"

#include <algorithm>
#include <limits>

#include "phonepim/platform/Assert.h"

namespace phonepim {
namespace vobj {

_byte_array::_byte_array(const _byte_array& other) {
  SetData(other.m_pData, other.m_cbData);
}

_byte_array& _byte_array::operator=(const _byte_array& other) {
  if (this != &other) SetData(other.m_pData, other.m_cbData);
  return *this;
}

void _byte_array::Free() {
  delete[] m_pData;
  m_pData = nullptr;
  m_cbData = 0;
  m_cbAlloc = 0;
}

void _byte_array::Alloc(unsigned long size) {
  // The counts are 32-bit: a larger buffer cannot be described.
  PHONEPIM_ASSERT(size <= std::numeric_limits<std::uint32_t>::max(),
                  "size <= 0xFFFFFFFF");
  Free();
  m_pData = new unsigned char[size];
  m_cbAlloc = static_cast<std::uint32_t>(size);
}

void _byte_array::SetData(const unsigned char* data, unsigned long size) {
  PHONEPIM_ASSERT(data != nullptr || size == 0, "data != NULL || size == 0");
  // Exactly the requested size and never smaller: a writer that refills the
  // same object keeps its storage.
  if (m_cbAlloc < size) Alloc(size);
  if (size != 0) std::copy_n(data, size, m_pData);
  m_cbData = static_cast<std::uint32_t>(size);
}

}  // namespace vobj
}  // namespace phonepim
