#include "phonepim/model/CVObject.h"

#include <stdexcept>

#include "model/CStringText.h"
#include "phonepim/platform/Assert.h"

namespace phonepim {

using model_detail::TextFromUTF8;

namespace {

// The position of the first item named `name`, or items.size().
std::size_t IndexOfName(const std::vector<std::unique_ptr<CXItem>>& items, const String& name) {
  std::size_t index = 0;
  while (index < items.size() && items[index]->Name() != name) {
    ++index;
  }
  return index;
}

}  // namespace

CVObject::CVObject() = default;

CVObject::~CVObject() = default;

CXItem* CVObject::NewXItem(const char* name, const char* data, std::uint32_t parameter,
                           std::int32_t theID) {
  m_arrXItem.push_back(std::make_unique<CXItem>(TextFromUTF8(name), data, parameter, theID));
  return m_arrXItem.back().get();
}

CXItem* CVObject::NewXItem(const String& name, const String& data, std::uint32_t parameter,
                           std::int32_t theID) {
  CXItem* item = NewXItem(nullptr, nullptr, parameter, theID);
  item->SetName(name);
  item->setDataWithString(data);
  return item;
}

int CVObject::GetXItemCount() const { return static_cast<int>(m_arrXItem.size()); }

CXItem* CVObject::GetXItem(int index) {
  PHONEPIM_ASSERT(index >= 0 && index < GetXItemCount(),
                  "index >= 0 && index < [m_arrXItem count]");
  return m_arrXItem[static_cast<std::size_t>(index)].get();
}

const CXItem* CVObject::GetXItem(int index) const {
  PHONEPIM_ASSERT(index >= 0 && index < GetXItemCount(),
                  "index >= 0 && index < [m_arrXItem count]");
  return m_arrXItem[static_cast<std::size_t>(index)].get();
}

void CVObject::DeleteXItemAtIndex(int index) {
  if (index < 0 || index >= GetXItemCount()) {
    throw std::out_of_range("DeleteXItemAtIndex: index beyond the extension items");
  }
  m_arrXItem.erase(m_arrXItem.begin() + index);
}

void CVObject::DeleteAllXItem() { m_arrXItem.clear(); }

CXItem* CVObject::FindXItem(const String& name) {
  const std::size_t index = IndexOfName(m_arrXItem, name);
  return index < m_arrXItem.size() ? m_arrXItem[index].get() : nullptr;
}

const CXItem* CVObject::FindXItem(const String& name) const {
  const std::size_t index = IndexOfName(m_arrXItem, name);
  return index < m_arrXItem.size() ? m_arrXItem[index].get() : nullptr;
}

CXItem* CVObject::FindXItem(const char* name) { return FindXItem(TextFromUTF8(name)); }

const CXItem* CVObject::FindXItem(const char* name) const {
  return FindXItem(TextFromUTF8(name));
}

}  // namespace phonepim
