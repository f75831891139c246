// Writing: whole texts of Generate in both forms, each line writer with the
// options that change it, and which records are written in local time.
#include <gtest/gtest.h>

#include "phonepim/model/CRecurrence.h"
#include "phonepim/platform/Value.h"
#include "vcalendar/vCalendarTestSupport.h"

namespace phonepim {
namespace {

using namespace testing_vcalendar;

constexpr char kHead[] = "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\n";
constexpr char kTail[] = "END:VEVENT\r\nEND:VCALENDAR";

CalendarDate GMT(int y, int mo, int d, int h, int mi) {
  return CalendarDate::dateWithYear(y, mo, d, h, mi, 0, u"GMT");
}

template <typename Write>
std::string Lines(Write write) {
  String out;
  write(out);
  return ToDisplayUTF8(out);
}

class vcalendar_write : public ::testing::Test {
 protected:
  ScopedCalendarDefaults defaults_;
  CCalendar cal_;
};

// A to-do is due and rings half a day before due plus its duration; the
// store form's attendees are written when the record has none.
TEST_F(vcalendar_write, whole_texts_of_a_new_record_and_a_to_do) {
  EXPECT_EQ(Write(cal_), std::string(kHead) + "CLASS:PUBLIC\r\nCATEGORIES:APPOINTMENT\r\nSTATUS:NONE\r\n"
                             "PRIORITY:0\r\nX-ALLDAY:UNSET\r\n" + kTail);
  EXPECT_EQ(Write(cal_, 1, true), std::string(kHead) + "X-ALLDAY:UNSET\r\n" + kTail);
  cal_.dtDueComp = GMT(2009, 2, 21, 12, 0);
  cal_.AlarmTriggerduration = 3600;
  cal_.AttendeeArray = Array{Value(Dictionary{{u"common name", Value(u"Ann")}, {u"email", Value(u"ann@example.org")}}),
                             Value(Dictionary{{u"common name", Value(u"Bo Li")}}), Value(u"not a dictionary")};
  vCalendar::SetTimezoneBias(-330);
  EXPECT_EQ(Write(cal_, vCalendar::kKindToDo),
            "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nTZ:-05:30\r\nBEGIN:VTODO\r\nCLASS:PUBLIC\r\nDUE:20090221T120000Z\r\n"
            "CATEGORIES:APPOINTMENT\r\nSTATUS:NONE\r\nPRIORITY:0\r\nX-ALLDAY:UNSET\r\n"
            "AALARM;ENCODING=QUOTED-PRINTABLE:20090221T010000Z;;;\r\n"
            "ATTENDEE;ROLE=ATTENDEE;STATUS=NEEDS ACTION:ann@example.org\r\n"
            "ATTENDEE;ROLE=ATTENDEE;STATUS=NEEDS ACTION;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:Bo=20Li\r\n"
            "END:VTODO\r\nEND:VCALENDAR");
}

TEST_F(vcalendar_write, alarms_of_the_store_form_first) {
  String out;
  cal_.AlarmTriggerduration = -600;  // an event's alarm counts from its start
  vCalendar::addAlarm(out, cal_, 1);
  EXPECT_EQ(out, u"");
  cal_.dtStartComp = GMT(2009, 2, 21, 10, 30);
  vCalendar::addAlarm(out, cal_, 1);
  cal_.AlarmTriggerdate = GMT(2009, 2, 21, 8, 0);
  vCalendar::addAlarm(out, cal_, 1);
  cal_.AlarmTriggerduration.reset();
  cal_.AlarmTriggerdate.reset();
  // No store form: the alarms read, in the form they were read.
  cal_.addAlarm(std::make_unique<CReminder>())->SetRunTimeComp(GMT(2009, 2, 21, 9, 0));
  vCalendar::addAlarm(out, cal_, 1);
  EXPECT_EQ(ToDisplayUTF8(out),
            "AALARM;ENCODING=QUOTED-PRINTABLE:20090221T102000Z;;;\r\n"
            "AALARM;ENCODING=QUOTED-PRINTABLE:20090221T080000Z;;;\r\n"
            "AALARM;ENCODING=QUOTED-PRINTABLE:20090221T090000;;;\r\n");
}

TEST_F(vcalendar_write, line_writers) {
  String out;
  for (int status = -1; status <= 11; ++status) vCalendar::AddStatus(out, status);
  EXPECT_EQ(ToDisplayUTF8(out),
            "STATUS:TENTATIVE\r\nSTATUS:NEEDS ACTION\r\nSTATUS:COMPLETED\r\nSTATUS:ACCEPTED\r\n"
            "STATUS:SENT\r\nSTATUS:TENTATIVE\r\nSTATUS:CONFIRMED\r\nSTATUS:DECLINED\r\n"
            "STATUS:DELEGATED\r\nSTATUS:CANCELED\r\nSTATUS:INPROCESS\r\nSTATUS:NONE\r\n"
            "STATUS:TENTATIVE\r\n");
  EXPECT_EQ(Lines([](String& o) {
              vCalendar::AddItem(o, u"A", std::nullopt, std::nullopt);
              vCalendar::AddItem(o, u"A", String(), String());
              vCalendar::AddSummary(o, String());
              vCalendar::AddDescription(o, u"a\tb c");  // a TAB after a soft break would vanish
              vCalendar::AddTimeZone(o, 540);
              o += vCalendar::GenerateTimeToVcalendar(
                  CalendarDate::dateWithYear(2009, 2, 21, 10, 30, 15, u"Asia/Tokyo"));
            }),
            "A:\r\nDESCRIPTION;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:a=09b=20c\r\n"
            "TZ:+09:00\r\n20090221T013015Z");
  // The public line writers that Generate's own byte writers stand behind.
  cal_.setLocation(u"Caf\u00e9");
  cal_.NewAttendee(u"j\u00f6rg@b", 0, 2, -1);
  cal_.addRecurrence(std::make_unique<CRecurrence>())->SetDaily(2, 3, nullptr);
  vCalendar::ScheduleUseCategoryType(true);
  vCalendar::SupportSetHoliday(true);
  EXPECT_EQ(Lines([&](String& o) {
              vCalendar::AddPriority(o, 2);
              vCalendar::AddClassification(o, 1);
              vCalendar::AddCategories(o, 0x6);
              vCalendar::AddAllDay(o, true);
              vCalendar::AddXType(o, true);
              vCalendar::AddLocation(o, cal_.strLocation);
              vCalendar::AddAccount(o, u"Phone");
              vCalendar::AddDateTime(o, u"DTEND", GMT(2009, 2, 21, 0, 0), 0);
              vCalendar::AddDateTimeLocal(o, u"DUE", CDateTime(1235210400.0, 0));
              vCalendar::AddAudioReminder(o, GMT(2009, 2, 21, 9, 0), true);
              vCalendar::addAlarm(o, cal_, 1);
              vCalendar::AddAttendees(o, cal_);
              vCalendar::addattendees(o, cal_);
              vCalendar::addrecurrences(o, cal_);
            }),
            "PRIORITY:2\r\nCLASS:PRIVATE\r\nCATEGORIES:ANNIVERSARY;HOLIDAY\r\nX-ALLDAY:SET\r\n"
            "X-TYPE:HOLIDAY\r\nLOCATION;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:Caf=C3=A9\r\n"
            "X-ACCOUNT:Phone\r\nDTEND:20090220T000000\r\nDUE:20090221T100000\r\n"
            "AALARM;ENCODING=QUOTED-PRINTABLE:20090221T090000Z;;;\r\n"
            "ATTENDEE;STATUS=ACCEPTED;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:j=C3=B6rg@b\r\n"
            "RRULE:D2 #3\r\n");
}

TEST_F(vcalendar_write, local_time_rules) {
  using Set = void (*)(bool);
  const Set anniversary = [](bool on) { vCalendar::AnniversaryUseLocalTime(on ? 1 : 0); };
  const Set memo = [](bool on) { vCalendar::sm_fMemoUseLocalTime = on; };
  // type: vCalendarType bits; option: the one option set, or null.
  const struct { std::int32_t type; bool noTime; Set option; bool local, alarmLocal; } rows[] = {
      {0x0, false, nullptr, false, false},
      {0x0, true, nullptr, true, false},
      {0x0, true, &vCalendar::AlarmUseLocalTime, true, true},
      {0x1, false, &vCalendar::AlarmUseLocalTime, false, false},  // not for events
      {0x2, false, anniversary, true, false},
      {0x2, false, &vCalendar::AlarmUseLocalTime, false, true},
      {0x4, false, &vCalendar::HolidayUseLocalTime, true, false},
      {0x4, false, &vCalendar::TaskUseLocalTime, false, false},  // another kind's option
      {0x40, false, &vCalendar::TaskUseLocalTime, true, false},
      {0x80, false, memo, true, false},
  };
  for (const auto& row : rows) {
    ScopedCalendarDefaults::Reset();
    if (row.option != nullptr) row.option(true);
    CCalendar cal;
    cal.vCalendarType = row.type;
    cal.bIsNoTime = row.noTime;
    EXPECT_EQ((std::pair{vCalendar::IsLocalTime(&cal), vCalendar::IsAlarmLocalTime(&cal)}),
              (std::pair{row.local, row.alarmLocal})) << &row - rows;
  }
}

}  // namespace
}  // namespace phonepim
