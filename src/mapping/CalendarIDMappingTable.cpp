#include "phonepim/mapping/CalendarIDMappingTable.h"

#include "phonepim/platform/AppDataFolder.h"
#include "MappingKeys.h"

namespace phonepim {
namespace {

const String kDBRecordID = u"dbRecordID";
const String kTaskData = u"Task Data";
const String kCalendarKey = u"Calendar";
const String& kUnlinked = kMetaUnlinked;

}  // namespace

std::filesystem::path CalendarIDMappingTable::metaFilePath(const String& IMEI,
                                                           const String& modelName) {
  return metaFilePath(IMEI, modelName, ApplicationDataFolder());
}

std::filesystem::path CalendarIDMappingTable::metaFilePath(
    const String& IMEI, const String& modelName, const std::filesystem::path& baseFolder) {
  return metaFolder(baseFolder, {"Ulvrand", "Tovi", "CalendarRecordIDMappingTable"}) /
         ("Calendar_" + fileNamePart(modelName) + "_" + fileNamePart(IMEI));
}

CalendarIDMappingTable::CalendarIDMappingTable() : IDMappingTable({}, kDBRecordID) {}

CalendarIDMappingTable::CalendarIDMappingTable(const String& modelName, const String& IMEI)
    : CalendarIDMappingTable(modelName, IMEI, applicationDataFolderOrNone()) {}

CalendarIDMappingTable::CalendarIDMappingTable(const String& modelName, const String& IMEI,
                                               const std::filesystem::path& baseFolder)
    : IDMappingTable(baseFolder.empty() ? baseFolder : metaFilePath(IMEI, modelName, baseFolder),
                     kDBRecordID),
      modelName_(modelName) {}

String CalendarIDMappingTable::calendarRecordID() {
  if (const Value* kept = Find(entries(), kCalendarKey)) {
    if (const String* id = kept->getIf<String>()) return *id;
  }
  String id = newIdentifier();
  setEntry(kCalendarKey, id);
  update();
  return id;
}

std::optional<String> CalendarIDMappingTable::dbIDForVCalID(const String& vCalID) const {
  return heldIDOf(vCalID);
}

const String& CalendarIDMappingTable::dataKey(const String& vCalID) {
  return vCalID.find(u"Task") != String::npos ? kTaskData : kData;
}

void CalendarIDMappingTable::ensureEntry(const String& vCalID) {
  if (entry(vCalID) != nullptr) return;
  setEntry(vCalID, Dictionary{{kLink, kUnlinked}});
  update();
}

void CalendarIDMappingTable::addCalendar(const String& vCalID, const String& storeID,
                                         const Dictionary& eventData) {
  addRecordData(vCalID, dataKey(vCalID), eventData);
  Dictionary* added = entry(vCalID);
  added->insert_or_assign(kDBRecordID, storeID);
  added->insert_or_assign(kLink, kLinked);
  reindex(vCalID);
  update();
}

void CalendarIDMappingTable::modifyCalendar(const String& vCalID, const Dictionary& eventData) {
  modifyRecordData(vCalID, dataKey(vCalID), eventData);
  if (Dictionary* modified = entry(vCalID)) modified->insert_or_assign(kLink, kLinked);
  update();
}

void CalendarIDMappingTable::removeCalendar(const std::optional<String>& vCalID) {
  if (!vCalID) return;
  eraseEntry(*vCalID);
  update();
}

}  // namespace phonepim
