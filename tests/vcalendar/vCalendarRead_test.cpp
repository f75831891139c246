// Reading: each row is the lines of one VEVENT and everything the record
// holds afterwards (see Describe), read strictly or leniently, and what the
// reader says became of each line (the account `calendar check` prints);
// then the value readers with the options that change them, and the failures.
#include <gtest/gtest.h>

#include "phonepim/datetime/DateComponents.h"
#include "phonepim/platform/Log.h"
#include "phonepim/versit/ReadAccount.h"
#include "model/AssertionPattern.h"
#include "vcalendar/vCalendarReaderInternal.h"
#include "vcalendar/vCalendarTestSupport.h"

namespace phonepim {
namespace {

using namespace testing_vcalendar;

enum Options { kStrict = 0, kLenient = 1, kEscapes = 2, kCarriageReturn = 4 };

struct ReadRow {
  int options;
  const char* lines;
  const char* expected;
  const char* written = nullptr;  // the entry's lines written back, less the constant ones
  const char* account = nullptr;  // "NAME fate (where) [note]" of the row's lines, one per line
};

// What Generate writes between BEGIN:VEVENT and END:VEVENT beyond a new record's lines.
std::string WrittenLines(const CCalendar& calendar) {
  std::string text = Write(calendar);
  text = text.substr(text.find("BEGIN:VEVENT\r\n") + 14);
  text.resize(text.find("END:VEVENT"));
  for (std::string line : {"CLASS:PUBLIC\r\n", "STATUS:NONE\r\n", "PRIORITY:0\r\n", "X-ALLDAY:UNSET\r\n"}) {
    if (const auto at = text.find(line); at != std::string::npos) text.erase(at, line.size());
  }
  return text;
}

// The account of the row's own lines, without the envelope (BEGIN, VERSION, END).
std::string Render(const ReadAccount& account) {
  std::string text;
  for (std::size_t i = 3; i + 2 < account.properties.size(); ++i) {
    const PropertyAccount& p = account.properties[i];
    text += p.name + " " + FateWord(p.fate) + " (" + p.where + ")" + (p.note.empty() ? "" : " [" + p.note + "]") + "\n";
  }
  return text;
}

class vcalendar_read : public ::testing::TestWithParam<ReadRow> {};

TEST_P(vcalendar_read, stores_each_property) {
  const ReadRow& row = GetParam();
  ScopedCalendarDefaults defaults;
  vCard::LenientReading((row.options & kLenient) != 0);
  vCard::NonstandardEscChar((row.options & kEscapes) != 0);
  vCalendar::UseCarrageReturn((row.options & kCarriageReturn) != 0);
  const vObject object = MakeObject(Event(row.lines));
  CCalendar calendar;
  ReadAccount account;
  vCalendar::Parse(&calendar, &object, &account);
  EXPECT_EQ(Describe(calendar), row.expected);
  if (row.written != nullptr) {
    EXPECT_EQ(WrittenLines(calendar), row.written);
  }
  if (row.account != nullptr) {
    EXPECT_EQ(Render(account), row.account);
  }
}

INSTANTIATE_TEST_SUITE_P(
    strict, vcalendar_read,
    ::testing::Values(
        ReadRow{kStrict, "DTSTART:0\r\nDTEND:junk\r\nDUE:20091301\r\nDTCREATE:00001231\r\nX-FOO:bar\r\n"
                "summary:lower\r\nDALARM:20090221T100000Z\r\nSTATUS:TENTATIVE\r\nCLASS:PRIVATE2\r\n", "status=4"},
        ReadRow{kStrict, "CATEGORIES:business\r\nSTATUS:COMP\r\nCLASS:CONFIDENTIAL\r\n", "cat=0; class=2; status=1",
                "CLASS:CONFIDENTIAL\r\nCATEGORIES:APPOINTMENT\r\nSTATUS:COMPLETED\r\n"},
        ReadRow{kEscapes, "LOCATION:R\\;1\r\nUID:a\\;b\r\n", "loc=R\\1; uid=a\\;b",
                "LOCATION:R\\1\r\n"},  // never escaped when written
        ReadRow{kCarriageReturn, "DESCRIPTION;QUOTED-PRINTABLE:a=0Db=0D=0Ac\r\n", "desc=a\rb\nc"},
        ReadRow{kStrict, "SUMMARY;ENCODING=BASE64:Y2Fm\r\nLOCATION;BASE64:Y2Fm\r\n"
                "UID;ENCODING=8BIT:u\r\n", "summary=caf; loc=caf; uid=u"},
        ReadRow{kStrict,
                "SUMMARY;CHARSET=SHIFT_JIS:\x93\xfa\x96\x7b\r\nX-ACCOUNT:a\r\nX-ACCOUNT-N:b\r\nX-ACCOUNT-TYPE:c\r\n"
                "UID:u-1\r\nLAST-MODIFIED:20090221T103000Z\r\nDTCREATE:20090221T103000Z\r\n"
                "COMPLETED:20090222T000000Z\r\n",
                "summary=日本; account=a; accountN=b; accountType=c; uid=u-1; lmt=20090221T103000Z; "
                "modified=20090221T1030Z; created=20090221T1030; completed=20090222T0000"},
        ReadRow{kStrict, "ATTENDEE;ROLE=ATTENDEE;STATUS=DECLIENED:Zo\xc3\xab\r\n"
                "ATTENDEE;STATUS=DECLINED:c\r\nATTENDEE;STATUS=SEND:d\r\nATTENDEE;STATUS=CONFIRMED:e\r\n",
                "attendee=Zoë/1/6; attendee=c/0/0; attendee=d/0/3; attendee=e/0/5",
                "ATTENDEE;ROLE=ATTENDEE;STATUS=DECLIENED;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:"
                "Zo=C3=AB\r\nATTENDEE;STATUS=NEEDS ACTION:c\r\nATTENDEE;STATUS=SEND:d\r\n"
                "ATTENDEE;STATUS=CONFIRMED:e\r\n"},
        ReadRow{kStrict, "AALARM;TYPE=PCM;VALUE=CONTENT-ID:20090221T100000Z;;;\r\n"
                "AALARM;TYPE= wave :20090221T090000\r\n",
                "alarm=20090221T1000/16/1; alarm=20090221T0900/32/0"},
        ReadRow{kStrict, "RRULE:MD1 LD 20091231T000000Z\r\nXRULE:D1 #2\r\n",
                "rrule=MD1 LD 20091231T000000Z; xrule=D1 #2", "RRULE:MD1 LD 20091231T000000Z\r\n"},
        ReadRow{kStrict,
                "DTSTART:20261201T120000Z\r\nAALARM:\r\nRRULE:W1 MO #0\r\nSUMMARY:One\r\nSUMMARY:Two\r\n"
                "X-SONY-REMINDER:5\r\nRRULE:W1 ZZ\r\nDTEND:tomorrow\r\nCATEGORIES:MEETING;GOLF\r\n"
                "LOCATION;CHARSET=UTF-8:\xFF\r\n",
                "cat=400; summary=Two; start=20261201T1200Z; rrule=W1 MO #0; rrule=-", nullptr,
                "DTSTART read (start)\nAALARM empty (no value)\nRRULE read (recurrence)\n"
                "SUMMARY lost (replaced by a later SUMMARY)\nSUMMARY read (summary)\n"
                "X-SONY-REMINDER lost (unknown property)\nRRULE lost (a rule the recurrence model cannot hold)\n"
                "DTEND lost (not a date)\nCATEGORIES lost (a word with no category)\n"
                "LOCATION lost (not valid in its charset)\n"}));

INSTANTIATE_TEST_SUITE_P(
    lenient, vcalendar_read,
    ::testing::Values(
        ReadRow{kLenient, "X-FOO;TYPE=A;CHARSET=UTF-8:b\xc3\xa9\r\nX-EMPTY:\r\nTRANSP:0 1\r\n",
                "x:X-FOO;TYPE=A=bé; x:X-EMPTY=; x:TRANSP=0 1",
                "X-FOO;TYPE=A;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:b=C3=A9\r\nX-EMPTY:\r\n"
                "TRANSP:0 1\r\n"},
        ReadRow{kLenient, "X-\xe9:1\r\nX-\xc3\xa9:2\r\n", "x:X-é=1; x:X-é=2"},
        ReadRow{kLenient, "RRULE:D1 1200\r\nRRULE;ENCODING=QUOTED-PRINTABLE:W1=20TU=20#0\r\n"
                "XRULE:D1 1200\r\n",
                "rrule=W1 TU #0; x:RRULE=D1 1200; x:XRULE=D1 1200"},
        ReadRow{kLenient, "CATEGORIES:MEETING;X-FOO\r\nCATEGORIES:BUSINESS\r\n",
                "cat=500; x:CATEGORIES=X-FOO"},
        ReadRow{kLenient, "X-ALLDAY:SET\r\nDTSTART:20090221T000000\r\nDTEND:20090221T000000\r\n",
                "allday=1; start=20090221T0000; end=20090222T0000",
                "DTSTART:20090221T000000Z\r\nDTEND:20090221T000000\r\nX-ALLDAY:SET\r\n"},
        ReadRow{kLenient,
                "SUMMARY:One\r\nSUMMARY:Two\r\nX-SONY-REMINDER:5\r\nRRULE:W1 ZZ\r\nDTEND:tomorrow\r\n"
                "CATEGORIES:MEETING;GOLF\r\nCATEGORIES:GOLF\r\nLOCATION;CHARSET=UTF-8:\xFF\r\nUID:42\r\n",
                "cat=400; summary=One; loc=ÿ; uid=42; x:SUMMARY=Two; x:X-SONY-REMINDER=5; x:RRULE=W1 ZZ; "
                "x:DTEND=tomorrow; x:CATEGORIES=GOLF; x:CATEGORIES=GOLF; x:UID=42", nullptr,
                "SUMMARY read (summary)\nSUMMARY extension (extension item SUMMARY)\n"
                "X-SONY-REMINDER extension (extension item X-SONY-REMINDER)\nRRULE extension (extension item RRULE)\n"
                "DTEND extension (extension item DTEND)\n"
                "CATEGORIES read (categories, the other words as an extension item)\n"
                "CATEGORIES extension (extension item CATEGORIES)\n"
                "LOCATION read (location) [bytes not valid in its charset kept as Latin-1 or U+FFFD]\n"
                "UID read (uid)\n"}));

// TZ:+09 in a phone whose zone is GMT+09:00 names its weekdays one day
// later than GMT does; TZ:-05 one day earlier.
TEST(vcalendar_read_option, use_timezone_moves_weekdays_of_rules_read_in_the_phones_zone) {
  const struct { const char *zone, *tz; bool on; const char* rules; } rows[] = {
      {"GMT+09:00", "+09", false, "rrule=W1 MO WE #0; rrule=MP1 2+ TU #0"},
      {"GMT+09:00", "+09", true, "rrule=W1 SU TU #0; rrule=MP1 1+ SU #0"},
      {"GMT-05:00", "-05", true, "rrule=W1 TU TH #0; rrule=MP1 4+ SA #0"},
      {"Asia/Tokyo", "+09", true, "rrule=W1 MO WE #0; rrule=MP1 2+ TU #0"},  // other zone
  };
  for (const auto& row : rows) {
    ScopedCalendarDefaults defaults(row.zone);
    vCalendar::UseTimezone(row.on);
    const std::string text = Describe(*Read(Event(std::string("TZ:") + row.tz +
                                                  "\r\nDTSTART:20090301T000000Z\r\nRRULE:W1 MO WE #0\r\n"
                                                  "RRULE:MP1 2+ TU #0\r\n")));
    EXPECT_EQ(text.substr(text.find("rrule")), row.rules) << row.zone << row.on;
  }
}

// The fields are read as GMT wall-clock time, so converting a text without
// "Z" into GMT keeps the instant and makes the value a GMT one.
TEST(vcalendar_values, date_times_are_gmt_values_unless_use_local_time) {
  ScopedCalendarDefaults defaults("Asia/Tokyo");
  for (bool local : {false, true}) {
    vCalendar::UseLocalTime(local);
    const CDateTime plain = *vCalendar::ParseDateTime("20090221T103059");
    const CDateTime utc = *vCalendar::ParseDateTime("20090221T103059Z");
    EXPECT_EQ(GMTFields(plain.date()) + GMTFields(utc.date()), "20090221T103020090221T1030");
    EXPECT_EQ((std::pair{plain.timeZoneType(), utc.timeZoneType()}), (std::pair{local ? 0 : 1, 0}));
  }
  bool utc = true;
  EXPECT_FALSE(vCalendar::ParseDateTime("00000000T103000Z"));
  EXPECT_FALSE(vCalendar::ParseDateTimeComponent("", &utc));
  EXPECT_TRUE(utc);  // left alone
  // A vCard's REV goes through the same reader.
  EXPECT_EQ(vCard::ParseLastRevision("20090221T103059Z", 16), MakeDateComponents(2009, 2, 21, 10, 30, 0));
  EXPECT_EQ(vCard::ParseLastRevision("20090221T103059Z", 8), MakeDateComponents(2009, 2, 21, 0, 0, 0));
  EXPECT_FALSE(vCard::ParseLastRevision("x", 1));
}

TEST(vcalendar_values, bias_categories_and_audio_reminder_parameters) {
  ScopedCalendarDefaults defaults;
  const std::pair<const char*, int> biases[] = {
      {"+09", 540}, {"-05:30", -330}, {"-00:30", 30}, {"", 0}, {"+2777777777777777777", 60000000}};  // bounded
  for (const auto& [text, minutes] : biases) {
    EXPECT_EQ(vCalendar::ParseBias(text).GetTotalMinutes(), minutes) << text;
  }
  for (bool convert : {false, true}) {
    vCalendar::AnniversaryConvertToSpecialOccasion(convert);
    EXPECT_EQ(vCalendar::ParseCategory("special occasion"), convert ? 0x2u : 0u);
    EXPECT_EQ(vCalendar::ParseCategories(" "), convert ? 0x200000u : 0u);
  }
  EXPECT_EQ(vCalendar::ParseCategories("SCHEDULE;;HOLIDAY"), 0x5u);
  const std::pair<std::vector<const char*>, std::uint32_t> reminders[] = {
      {{"TYPE", "AIFF", "VALUE", "CONTENT-ID"}, 0x41}, {{"TYPEWAVE", nullptr, "VALUE", "URL"}, 0x20},
      {{"TYPE", "MP3", "X-VALUE", "CONTENT-ID"}, 0x0}};
  for (const auto& [words, bits] : reminders) {
    std::vector<char*> params;
    for (const char* p : words) params.push_back(const_cast<char*>(p));
    params.insert(params.end(), {nullptr, nullptr});
    EXPECT_EQ(vCalendar::ParseAudioReminderParams(params.data()), bits) << words[1];
  }
}

TEST(vcalendar_read_failure, assertion_texts) {
  ScopedCalendarDefaults defaults;
  const vObject version = MakeObject("BEGIN:VCALENDAR\r\nVERSION:1.1\r\nEND:VCALENDAR\r\n");
  CCalendar calendar;
  EXPECT_DEATH(vCalendar::Parse(&calendar, &version),
               testing_support::AssertionPattern("_strnicmp(data, \"1.0\", len) == 0"));
  EXPECT_DEATH(vCalendar::Parse(nullptr, &version), testing_support::AssertionPattern("pData->pCalendar"));
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

}  // namespace
}  // namespace phonepim
