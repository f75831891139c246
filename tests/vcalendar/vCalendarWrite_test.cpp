// Writing: whole texts of Generate in both forms, and each line writer with
// the options that change it, on and off.
#include <gtest/gtest.h>

#include <string>

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

std::string Lines(void (*write)(String&)) {
  String out;
  write(out);
  return ToDisplayUTF8(out);
}

class vcalendar_write : public ::testing::Test {
 protected:
  ScopedCalendarDefaults defaults_;
  CCalendar cal_;
};

TEST_F(vcalendar_write, a_new_record_writes_the_lines_every_entry_has) {
  EXPECT_EQ(Write(cal_), std::string(kHead) +
                             "CLASS:PUBLIC\r\nCATEGORIES:APPOINTMENT\r\nSTATUS:NONE\r\n"
                             "PRIORITY:0\r\nX-ALLDAY:UNSET\r\n" + kTail);
  vObject reduced;
  vCalendar::Generate(&cal_, &reduced, 1, 0);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(reduced.object()->GetData()),
                        reduced.object()->GetSize()),
            std::string(kHead) + "X-ALLDAY:UNSET\r\n" + kTail);
}

TEST_F(vcalendar_write, every_field_in_its_place) {
  cal_.classification = 2;
  cal_.strDescription = u"a\nb";
  cal_.strSummary = u"two words";
  cal_.strLocation = u"R1";
  cal_.dtStartComp = GMT(2009, 2, 21, 10, 30);
  cal_.dtEndComp = GMT(2009, 2, 21, 11, 0);
  cal_.dtDueComp = GMT(2009, 3, 1, 0, 0);  // an event has no DUE line
  cal_.categories = 0x400;
  cal_.status = 2;
  cal_.priority = 1;
  cal_.addRecurrence(std::make_unique<CRecurrence>())->SetDaily(2, 5, nullptr);
  cal_.AlarmTriggerdate = GMT(2009, 2, 21, 10, 0);
  cal_.NewAttendee(u"Zoë <z@example.org>", ATTENDEE_ROLE_ATTENDEE, ATTENDEE_STATUS_DECLIENED, -1);
  cal_.NewXItem(u"X-PLAIN", u"a b", 0, -1);
  cal_.NewXItem(u"X-NOTE;TYPE=A", u"é", 0, -1);
  EXPECT_EQ(Write(cal_),
            std::string(kHead) +
                "CLASS:CONFIDENTIAL\r\n"
                "DESCRIPTION;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:a=0Ab\r\n"
                "SUMMARY;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:two=20words\r\n"
                "LOCATION:R1\r\nDTSTART:20090221T103000Z\r\nDTEND:20090221T110000Z\r\n"
                "STATUS:ACCEPTED\r\nPRIORITY:1\r\nX-ALLDAY:UNSET\r\nRRULE:D2 #5\r\n"
                "AALARM;ENCODING=QUOTED-PRINTABLE:20090221T100000Z;;;\r\n"
                "ATTENDEE;ROLE=ATTENDEE;STATUS=DECLIENED;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:"
                "Zo=C3=AB=20<z@example.org>\r\n"
                "X-PLAIN:a b\r\nX-NOTE;TYPE=A;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=C3=A9\r\n" +
                kTail);
}

TEST_F(vcalendar_write, an_all_day_end_is_its_last_day_without_zone) {
  cal_.bIsAllDay = true;
  cal_.dtStartComp = GMT(2009, 2, 21, 0, 0);
  cal_.dtEndComp = GMT(2009, 2, 22, 0, 0);
  const std::string text = Write(cal_);
  EXPECT_NE(text.find("DTSTART:20090221T000000Z\r\nDTEND:20090221T000000\r\n"), std::string::npos);
  EXPECT_NE(text.find("X-ALLDAY:SET\r\n"), std::string::npos);
}

TEST_F(vcalendar_write, a_to_do_is_due_and_rings_half_a_day_before_due_plus_its_duration) {
  cal_.dtDueComp = GMT(2009, 2, 21, 12, 0);
  cal_.AlarmTriggerduration = 3600;
  EXPECT_EQ(Write(cal_, vCalendar::kKindToDo),
            "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VTODO\r\nCLASS:PUBLIC\r\n"
            "DUE:20090221T120000Z\r\nCATEGORIES:APPOINTMENT\r\nSTATUS:NONE\r\nPRIORITY:0\r\n"
            "X-ALLDAY:UNSET\r\nAALARM;ENCODING=QUOTED-PRINTABLE:20090221T010000Z;;;\r\n"
            "END:VTODO\r\nEND:VCALENDAR");
}

TEST_F(vcalendar_write, alarms) {
  String out;
  cal_.AlarmTriggerduration = -600;  // an event's alarm counts from its start
  vCalendar::addAlarm(out, cal_, 1);
  EXPECT_EQ(out, u"");
  cal_.dtStartComp = GMT(2009, 2, 21, 10, 30);
  vCalendar::addAlarm(out, cal_, 1);
  cal_.AlarmTriggerduration.reset();
  // No store form: the alarms read, in the form they were read.
  CReminder read;
  read.SetRunTimeComp(GMT(2009, 2, 21, 9, 0));
  cal_.addAlarm(std::make_unique<CReminder>(read));
  vCalendar::addAlarm(out, cal_, 1);
  EXPECT_EQ(ToDisplayUTF8(out),
            "AALARM;ENCODING=QUOTED-PRINTABLE:20090221T102000Z;;;\r\n"
            "AALARM;ENCODING=QUOTED-PRINTABLE:20090221T090000;;;\r\n");
}

TEST_F(vcalendar_write, status_words) {
  String out;
  for (int status = -1; status <= 11; ++status) vCalendar::AddStatus(out, status);
  EXPECT_EQ(ToDisplayUTF8(out),
            "STATUS:TENTATIVE\r\nSTATUS:NEEDS ACTION\r\nSTATUS:COMPLETED\r\nSTATUS:ACCEPTED\r\n"
            "STATUS:SENT\r\nSTATUS:TENTATIVE\r\nSTATUS:CONFIRMED\r\nSTATUS:DECLINED\r\n"
            "STATUS:DELEGATED\r\nSTATUS:CANCELED\r\nSTATUS:INPROCESS\r\nSTATUS:NONE\r\n"
            "STATUS:TENTATIVE\r\n");
}

TEST_F(vcalendar_write, options_on_and_off) {
  struct Row {
    void (*set)(bool);
    void (*write)(String&);
    const char* off;
    const char* on;
  };
  const Row rows[] = {
      {&vCalendar::ScheduleUseCategoryType,
       [](String& o) {
         vCalendar::AddCategories(o, 0);
         vCalendar::AddCategories(o, 0x541);
       },
       "CATEGORIES:APPOINTMENT\r\n",
       "CATEGORIES:APPOINTMENT\r\nCATEGORIES:APPOINTMENT;BUSINESS;MEETING\r\n"},
      {&vCalendar::SupportSetHoliday,
       [](String& o) {
         vCalendar::AddXType(o, true);
         vCalendar::AddXType(o, false);
       },
       "", "X-TYPE:HOLIDAY\r\n"},
      // Text values are never escaped, whatever the reader's escape option.
      {&vCard::NonstandardEscChar, [](String& o) { vCalendar::AddLocation(o, u"a;b\\c"); },
       "LOCATION:a;b\\c\r\n", "LOCATION:a;b\\c\r\n"},
      {[](bool on) { vCalendar::UseW0(on ? 1 : 0); },
       [](String& o) {
         CCalendar cal;
         cal.addRecurrence(std::make_unique<CRecurrence>())->SetWeekly(1, 0, nullptr, nullptr);
         vCalendar::addrecurrences(o, cal);
       },
       "RRULE:W1\r\n", "RRULE:W1 #0\r\n"},
  };
  for (const Row& row : rows) {
    for (bool on : {false, true}) {
      row.set(on);
      EXPECT_EQ(Lines(row.write), on ? row.on : row.off) << on;
    }
    row.set(false);
  }
}

TEST_F(vcalendar_write, a_timezone_bias_writes_tz_after_the_version) {
  vCalendar::SetTimezoneBias(-330);
  EXPECT_EQ(Write(cal_).substr(0, 55),
            "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nTZ:-05:30\r\nBEGIN:VEVENT\r\n");
  EXPECT_EQ(Lines([](String& o) { vCalendar::AddTimeZone(o, 540); }), "TZ:+09:00\r\n");
}

TEST_F(vcalendar_write, line_helpers) {
  String out;
  vCalendar::AddItem(out, u"A", std::nullopt, std::nullopt);
  vCalendar::AddItem(out, u"A", String(), String());
  vCalendar::AddItem(out, u"B", std::nullopt, String(u"1"));
  vCalendar::AddSummary(out, String());
  vCalendar::AddDescription(out, u"a\tb c");  // a TAB after a soft break would vanish
  vCalendar::AddAccount(out, String(u"acc"));
  vCalendar::AddDateTime(out, u"DTSTART", std::nullopt, 1);
  CDateTime local(0.0, CDateTime::kTimeZoneTypeGMT);
  local.setYear(2009);
  local.setMonth(2);
  local.setDay(21);
  local.setHour(7);
  local.setMinute(8);
  local.setSecond(9);
  vCalendar::AddDateTimeLocal(out, u"X", local);
  out += vCalendar::GenerateTimeToVcalendar(CalendarDate::dateWithYear(2009, 2, 21, 10, 30, 15,
                                                                      u"Asia/Tokyo"));
  EXPECT_EQ(ToDisplayUTF8(out),
            "A:\r\nB:1\r\nDESCRIPTION;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:a=09b=20c\r\n"
            "X-ACCOUNT:acc\r\nX:20090221T070809\r\n20090221T013015Z");
}

TEST_F(vcalendar_write, attendees_of_the_store_form_when_the_record_has_none) {
  Dictionary both{{u"common name", Value(u"Ann")}, {u"email", Value(u"ann@example.org")}};
  Dictionary name{{u"common name", Value(u"Bo Li")}};
  cal_.AttendeeArray = Array{Value(both), Value(name), Value(u"not a dictionary")};
  String out;
  vCalendar::addattendees(out, cal_);
  EXPECT_EQ(ToDisplayUTF8(out),
            "ATTENDEE;ROLE=ATTENDEE;STATUS=NEEDS ACTION:ann@example.org\r\n"
            "ATTENDEE;ROLE=ATTENDEE;STATUS=NEEDS ACTION;CHARSET=UTF-8;"
            "ENCODING=QUOTED-PRINTABLE:Bo=20Li\r\n");
  EXPECT_NE(Write(cal_).find(ToDisplayUTF8(out)), std::string::npos);
}

TEST_F(vcalendar_write, local_time_rules) {
  struct Row {
    std::int32_t type;  // vCalendarType bits
    bool noTime;
    int optionOn;  // 0 none, 1 the kind's own option, 2 the alarm option
    bool local, alarmLocal;
  };
  const Row rows[] = {
      {0x0, false, 0, false, false}, {0x0, true, 0, true, false},
      {0x0, true, 2, true, true},    {0x1, false, 2, false, false},
      {0x2, false, 1, true, false},  {0x2, false, 2, false, true},
      {0x4, false, 1, true, false},  {0x40, false, 1, true, false},
      {0x40, false, 2, false, true}, {0x80, false, 1, true, false},
  };
  for (const Row& row : rows) {
    ScopedCalendarDefaults::Reset();
    const bool kindOption = row.optionOn == 1;
    vCalendar::AnniversaryUseLocalTime(kindOption ? 1 : 0);
    vCalendar::HolidayUseLocalTime(kindOption);
    vCalendar::TaskUseLocalTime(kindOption);
    vCalendar::sm_fMemoUseLocalTime = kindOption;
    vCalendar::AlarmUseLocalTime(row.optionOn == 2);
    CCalendar cal;
    cal.vCalendarType = row.type;
    cal.bIsNoTime = row.noTime;
    EXPECT_EQ(vCalendar::IsLocalTime(&cal), row.local) << row.type << "/" << row.optionOn;
    EXPECT_EQ(vCalendar::IsAlarmLocalTime(&cal), row.alarmLocal) << row.type << "/" << row.optionOn;
  }
  vCalendar::Generate(nullptr, nullptr, 1);  // nothing to write, nowhere: no effect
}

}  // namespace
}  // namespace phonepim
