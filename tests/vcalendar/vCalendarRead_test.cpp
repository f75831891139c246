// Reading: each row is the lines of one VEVENT and everything the record
// holds afterwards (see Describe), read strictly or leniently.
#include <gtest/gtest.h>

#include <string>

#include "phonepim/platform/Assert.h"
#include "phonepim/platform/Errors.h"
#include "phonepim/platform/Log.h"
#include "model/AssertionPattern.h"
#include "vcalendar/vCalendarReaderInternal.h"
#include "vcalendar/vCalendarTestSupport.h"

namespace phonepim {
namespace {

using namespace testing_vcalendar;

struct ReadRow {
  bool lenient;
  const char* lines;
  const char* expected;
};

class vcalendar_read : public ::testing::TestWithParam<ReadRow> {
 protected:
  ScopedCalendarDefaults defaults_;
};

TEST_P(vcalendar_read, stores_each_property) {
  vCard::LenientReading(GetParam().lenient);
  EXPECT_EQ(Describe(*Read(Event(GetParam().lines))), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    strict, vcalendar_read,
    ::testing::Values(
        ReadRow{false, "DTSTART:20090221T103000Z\r\nDTEND:20090221T113059\r\nDUE:20090222\r\n",
                "start=20090221T1030Z; end=20090221T1130; due=20090222T0000"},
        ReadRow{false, "DTSTART:0\r\nDTEND:junk\r\nDUE:20091301\r\nDTCREATE:00001231\r\n", ""},
        ReadRow{false, "CATEGORIES:BUSINESS; MEETING \r\n", "cat=500"},
        ReadRow{false, "CATEGORIES:business\r\n", "cat=0"},  // words are exact
        ReadRow{false, "CATEGORIES:SPECIAL OCCASION;NOCATEGORY\r\n", "cat=204000"},
        ReadRow{false, "STATUS:NEEDS ACTION\r\nCLASS:PRIV\r\nPRIORITY:3\r\n",
                "class=1; prio=3"},
        ReadRow{false, "STATUS:COMP\r\nCLASS:CONFIDENTIAL\r\n", "class=2; status=1"},
        ReadRow{false, "STATUS:TENTATIVE\r\nCLASS:PRIVATE2\r\n", "status=4"},
        ReadRow{false, "X-ALLDAY:set\r\nX-TYPE:Holiday\r\n", "allday=1; holiday=1"},
        ReadRow{false, "X-ALLDAY:UNSET\r\nX-TYPE:WORK\r\n", ""},
        ReadRow{false,
                "SUMMARY;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:Caf=C3=A9=0D=0Ax\r\n"
                "DESCRIPTION;QUOTED-PRINTABLE:a=0D=0Ab\r\nLOCATION:R\\;1\r\n",
                "summary=Café\nx; desc=a\nb; loc=R\\;1"},
        ReadRow{false, "SUMMARY;CHARSET=SHIFT_JIS:\x93\xfa\x96\x7b\r\n", "summary=日本"},
        ReadRow{false,
                "X-ACCOUNT:a\r\nX-ACCOUNT-N:b\r\nX-ACCOUNT-TYPE:c\r\nUID:u-1\r\n"
                "LAST-MODIFIED:20090221T103000Z\r\n",
                "account=a; accountN=b; accountType=c; uid=u-1; lmt=20090221T103000Z; "
                "modified=20090221T1030Z"},
        ReadRow{false, "DTCREATE:20090221T103000Z\r\nCOMPLETED:20090222T000000Z\r\n",
                "created=20090221T1030; completed=20090222T0000"},
        ReadRow{false,
                "ATTENDEE;ROLE=ATTENDEE;STATUS=DECLIENED:a@b.example\r\n"
                "ATTENDEE;STATUS=DECLINED:c\r\nATTENDEE;STATUS=SEND:d\r\n",
                "attendee=a@b.example/1/6; attendee=c/0/0; attendee=d/0/3"},
        ReadRow{false,
                "AALARM;TYPE=PCM;VALUE=CONTENT-ID:20090221T100000Z;;;\r\n"
                "AALARM;TYPE= wave :20090221T090000\r\n",
                "alarm=20090221T1000/16/1; alarm=20090221T0900/32/0"},
        ReadRow{false, "RRULE:W1 MO #0\r\nRRULE:MD1 LD 20091231T000000Z\r\nXRULE:D1 #2\r\n",
                "rrule=W1 MO #0; rrule=MD1 LD 20091231T000000Z; xrule=D1 #2"},
        ReadRow{false, "RRULE:D1 1200\r\n", "rrule=-"},  // not held: an empty rule
        ReadRow{false, "TZ:+09\r\n", "tz=GMT+09:00; bias=540"},
        ReadRow{false, "TZ:-05:30\r\nDAYLIGHT:TRUE;-04;20090308T020000;20091101T020000;EST;EDT\r\n",
                "tz=GMT-05:30; bias=-330; dlbias=-240; dlbegin=20090308T0200; "
                "dlend=20091101T0200; std=EST; dl=EDT"},
        ReadRow{false, "X-FOO:bar\r\nsummary:lower\r\nDALARM:20090221T100000Z\r\n", ""},
        ReadRow{false, "SUMMARY:one\r\nSUMMARY:two\r\n", "summary=two"}));

INSTANTIATE_TEST_SUITE_P(
    lenient, vcalendar_read,
    ::testing::Values(
        ReadRow{true, "summary:lower\r\ndtStart;value=date-time:20090221T103000Z\r\n",
                "summary=lower; start=20090221T1030Z"},
        ReadRow{true, "X-FOO;TYPE=A;CHARSET=UTF-8:bar\r\nX-EMPTY:\r\nTRANSP:0\r\n",
                "x:X-FOO;TYPE=A=bar; x:X-EMPTY=; x:TRANSP=0"},
        ReadRow{true, "X-\xe9:1\r\nX-\xc3\xa9:2\r\n", "x:X-é=1; x:X-é=2"},
        ReadRow{true, "SUMMARY:one\r\nSUMMARY:two\r\nPRIORITY:1\r\nPRIORITY:2\r\n",
                "prio=1; summary=one; x:SUMMARY=two; x:PRIORITY=2"},
        ReadRow{true, "RRULE:D1 1200\r\nRRULE:W1 TU #0\r\nXRULE:D1 1200\r\n",
                "rrule=W1 TU #0; x:RRULE=D1 1200; x:XRULE=D1 1200"},
        ReadRow{true, "RRULE;ENCODING=QUOTED-PRINTABLE:W1=20MO=20#0\r\n", "rrule=W1 MO #0"},
        ReadRow{true, "CATEGORIES:MEETING;X-FOO\r\nCATEGORIES:BUSINESS\r\n",
                "cat=500; x:CATEGORIES=X-FOO"},
        ReadRow{true, "CATEGORIES:REMINDER\r\n", "x:CATEGORIES=REMINDER"},
        ReadRow{true, "UID:u-1\r\nTZ:+01\r\n",
                "uid=u-1; tz=GMT+01:00; bias=60; x:UID=u-1; x:TZ=+01"},
        ReadRow{true, "SUMMARY;CHARSET=ISO-8859-1:caf\xe9\r\n", "summary=café"},
        ReadRow{true, "LOCATION;encoding=quoted-printable;charset=utf-8:=C3=A9\r\n",
                "loc=é"},
        ReadRow{true, "X-ALLDAY:SET\r\nDTEND:20090221T000000\r\n",
                "allday=1; end=20090222T0000"}));

// --- Failures -----------------------------------------------------------------

TEST(vcalendar_read_failure, a_tokenizer_failure_throws_65529_and_keeps_what_was_read) {
  ScopedCalendarDefaults defaults;
  CCalendar calendar;
  const vObject object = MakeObject(Event("SUMMARY:kept\r\nLOCATION;:x\r\nUID:lost\r\n"));
  try {
    vCalendar::Parse(&calendar, &object);
    FAIL() << "no exception";
  } catch (const std::uint16_t& code) {
    EXPECT_EQ(code, kVersitParseError);
  }
  EXPECT_EQ(Describe(calendar), "summary=kept");
}

TEST(vcalendar_read_failure, an_assertion_inside_a_callback_is_rethrown_after_the_tokenizer) {
  ScopedCalendarDefaults defaults;
  const ScopedAssertionHandler handler(ThrowingAssertionHandler);
  CCalendar calendar;
  const vObject object =
      MakeObject("BEGIN:VCALENDAR\r\nSUMMARY:kept\r\nVERSION:2.0\r\nUID:lost\r\nEND:VCALENDAR\r\n");
  EXPECT_THROW(vCalendar::Parse(&calendar, &object), AssertionFailure);
  EXPECT_EQ(ToDisplayUTF8(calendar.strSummary.value_or(u"")), "kept");
  EXPECT_FALSE(calendar.UID.has_value());
}

TEST(vcalendar_read_failure, assertion_texts) {
  ScopedCalendarDefaults defaults;
  const vObject version = MakeObject("BEGIN:VCALENDAR\r\nVERSION:1.1\r\nEND:VCALENDAR\r\n");
  CCalendar calendar;
  EXPECT_DEATH(vCalendar::Parse(&calendar, &version),
               testing_support::AssertionPattern("_strnicmp(data, \"1.0\", len) == 0"));
  EXPECT_DEATH(vCalendar::Parse(nullptr, &version),
               testing_support::AssertionPattern("pData->pCalendar"));
}

std::string gLogged;
void CaptureLog(std::string_view message) { gLogged.append(message).append("|"); }

TEST(vcalendar_read_failure, debug_mode_logs_unknown_properties_and_tokenizer_failures) {
  ScopedCalendarDefaults defaults;
  const LogSink previous = SetLogSink(&CaptureLog);
  const bool debug = gVCARD_DEBUGMODE;
  gLogged.clear();
  for (bool on : {false, true}) {
    gVCARD_DEBUGMODE = on;
    Read(Event("X-FOO:1\r\n"));
    EXPECT_THROW(Read(Event("X-FOO;:1\r\n")), std::uint16_t);
  }
  gVCARD_DEBUGMODE = debug;
  SetLogSink(previous);
  EXPECT_EQ(gLogged,
            "[vCalendarDataHandler] Warning: Unknown vCalendar property.|Error parsing vCalendar|");
}

// --- The property handler's codes ---------------------------------------------

TEST(vcalendar_property_handler, classifies_charset_encoding_and_name) {
  ScopedCalendarDefaults defaults;
  struct Row {
    bool carriageReturn;
    std::vector<const char*> params;
    int charset, encoding;
  };
  const Row rows[] = {
      {false, {"CHARSET", "UTF-8", "ENCODING", "QUOTED-PRINTABLE"}, 1, 1},
      {true, {"ENCODING", "QUOTED-PRINTABLE", "CHARSET", "SHIFT_JIS"}, 2, 3},
      {true, {"QUOTED-PRINTABLE", nullptr}, 0, 3},
      {false, {"BASE64", nullptr, "CHARSET", "KOI8-R"}, 0, 2},
      {false, {"ENCODING", "8BIT"}, 0, -1},
      {false, {"encoding", "BASE64", "TYPE", "X"}, 0, 0},
  };
  CCalendar calendar;
  for (const Row& row : rows) {
    vCalendar::UseCarrageReturn(row.carriageReturn);
    std::vector<char*> params;
    for (const char* p : row.params) params.push_back(const_cast<char*>(p));
    params.insert(params.end(), {nullptr, nullptr});
    vCalendar::vCalendarParseData d(&calendar);
    vCalendar::vCalendarPropHandler(&d, "DTEND", params.data());
    EXPECT_EQ(d.propertyID, kvCalPropertyDTEND);
    EXPECT_EQ(d.charset, row.charset) << row.params[0];
    EXPECT_EQ(d.encoding, row.encoding) << row.params[0];
  }
}

}  // namespace
}  // namespace phonepim
