// CVObject: the base of the records read from and written to a phone (the
// contact and the calendar entry).
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "phonepim/model/CXItem.h"
#include "phonepim/platform/String.h"

namespace phonepim {

/// A record's storage kind, its ID and its list of extension items: the
/// properties that have no field of their own ("X-EXPIRY", "X-GROUP",
/// "X-PBOEXTENSION", ...).
///
/// The record owns its items. NewXItem, GetXItem and FindXItem return a
/// borrowed pointer, valid until that item is deleted or the record is
/// destroyed.
class CVObject {
 public:
  /// storage 0, thisID 0, no extension items.
  CVObject();
  virtual ~CVObject();
  CVObject(const CVObject&) = delete;
  CVObject& operator=(const CVObject&) = delete;

  /// The storage kind of the record.
  std::int32_t storage() const { return storage_; }
  void setStorage(std::int32_t storage) { storage_ = storage; }

  std::int32_t thisID() const { return thisID_; }
  void setThisID(std::int32_t theID) { thisID_ = theID; }

  /// Appends an item named `name` with the text of the UTF-8 C string `data`
  /// (null gives empty), type mask `parameter` and ID `theID`, and returns
  /// it. Items with the same name may repeat; each call adds one.
  CXItem* NewXItem(const char* name, const char* data, std::uint32_t parameter,
                   std::int32_t theID);
  /// The same with the name and the text as strings.
  CXItem* NewXItem(const String& name, const String& data, std::uint32_t parameter,
                   std::int32_t theID);

  /// The number of extension items.
  int GetXItemCount() const;

  /// The item at `index`. An index outside the list is a programming error:
  /// it fails the assertion "index >= 0 && index < [m_arrXItem count]".
  CXItem* GetXItem(int index);
  const CXItem* GetXItem(int index) const;

  /// Removes and destroys the item at `index`; throws std::out_of_range when
  /// there is none.
  void DeleteXItemAtIndex(int index);

  /// Removes and destroys every item. The list stays usable: NewXItem adds
  /// to it again.
  void DeleteAllXItem();

  /// The first item, in list order, whose name equals `name` exactly
  /// (case-sensitive); null when none has it.
  CXItem* FindXItem(const String& name);
  const CXItem* FindXItem(const String& name) const;
  /// The same with the name as a UTF-8 C string.
  CXItem* FindXItem(const char* name);
  const CXItem* FindXItem(const char* name) const;

 protected:
  std::vector<std::unique_ptr<CXItem>> m_arrXItem;

 private:
  std::int32_t storage_ = 0;
  std::int32_t thisID_ = 0;
};

}  // namespace phonepim
