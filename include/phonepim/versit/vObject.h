// One versit object (a vCard or a vCalendar) as raw bytes, tagged with the
// phone's record ID.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace phonepim {
namespace vobj {

/// A growable byte buffer that owns its storage. The bytes are not
/// terminated: consumers always pass the pair (GetData(), GetSize()).
struct _byte_array {
  unsigned char* m_pData = nullptr;  ///< storage (array new); null when empty
  std::uint32_t m_cbData = 0;        ///< valid bytes
  std::uint32_t m_cbAlloc = 0;       ///< capacity of m_pData

  _byte_array() = default;
  ~_byte_array() { Free(); }
  _byte_array(const _byte_array& other);
  _byte_array& operator=(const _byte_array& other);

  /// Releases the storage; all three fields become zero.
  void Free();
  /// Discards the contents and allocates exactly `size` bytes.
  void Alloc(unsigned long size);
  /// Copies `size` bytes. Grows to exactly `size` when the capacity is
  /// smaller, never shrinks; `size` 0 keeps the storage and empties it.
  /// `data` may be null only when `size` is 0.
  void SetData(const unsigned char* data, unsigned long size);
  unsigned char* GetData() { return m_pData; }
  const unsigned char* GetData() const { return m_pData; }
  std::uint32_t GetSize() const { return m_cbData; }
};

}  // namespace vobj

/// One versit object's bytes plus the phone's record ID for it.
class vObject {
 public:
  /// A new object has ID 0xFFFFFFFF (none assigned yet) and no bytes.
  vObject() = default;

  std::uint32_t objectID() const { return vObjectID; }
  void setObjectID(std::uint32_t objectID) { vObjectID = objectID; }

  /// The object's bytes, to read or to fill. The pointer belongs to the
  /// object and lives as long as it.
  vobj::_byte_array* object() { return &m_data; }
  const vobj::_byte_array* object() const { return &m_data; }

 private:
  std::uint32_t vObjectID = 0xFFFFFFFFu;
  vobj::_byte_array m_data;
};

/// A list of objects; each is shared by the list and whoever else holds it.
class vObjectPtrArray : public std::vector<std::shared_ptr<vObject>> {
 public:
  /// Removes all objects.
  void Clear() { clear(); }
};

}  // namespace phonepim
