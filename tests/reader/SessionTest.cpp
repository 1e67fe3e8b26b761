#include <cstdlib>

#include "reader/views/MetricsTable.h"
#include "reader/views/Summary.h"
#include "reader/views/Timeline.h"
#include "tests/reader/SampleLogs.h"

namespace sentiq {

const std::string first = recordLine("2025-01-31T12:59:50.000+0100");
const std::string exitLine = "2025-01-31T13:00:05.000+0100 Exit Status - Canvix is no longer alive";
const std::string during = "2025-01-31T12:00:02.0000001Z";  // 13:00:02 local time.
const std::string crash = crashLine(during) + "\n";

static std::string timelineOf(const LogSet& logs, const TimelineOptions& options = {}) {
  std::ostringstream out;
  writeTimeline(logs, options, out);
  return out.str();
}

TEST(Summary, NamesGapsDamageAndWhatIsMissing) {
  const std::string log = sessionLog({first, recordLine("2025-01-31T13:00:30.000+0100", 70)});
  const LogSet logs = readTexts({log + "\x01\n\xff\n" + "torn"});
  EXPECT_THAT(timelineOf(logs), HasSubstr("Damaged line: \xEF\xBF\xBD (and 2 more after it)\n"));
  const Summary summary = summarize(logs, logs.sessions.front());
  EXPECT_THAT(summary.gaps, ElementsAre("40 s from 2025-01-31 12:59:50.000"));
  EXPECT_THAT(summary.problems, ElementsAre(HasSubstr("3 damaged or unfinished lines of 7"), "No watchdog log"));
  EXPECT_THAT(summaryText(logs, /*colour=*/false), HasSubstr("70 of 1000 MiB at 2025-01-31 13:00:30.000"));
}

TEST(Sessions, AreTakenApartByTheirHeaders) {
  const std::string head = "2025-01-31T13:10:00.000+0100 [SYSTEM] [INFO]: ";
  const LogSet logs = readTexts(
      {encodedLine(first) + sessionLog({first, exitLine}) + header("session-2", "7") +
           recordLine("2025-01-31T13:10:00.000+0100") + "\n",
       watchdogLog(crash), header("session-1", "7", head) + head + "Starting initial metric collection.\n" + crash});
  std::vector<std::string> seen;
  for (const Session& session : logs.sessions) {
    const Summary summary = summarize(logs, session);
    seen.push_back(session.id + '|' + session.processId + '|' + session.abnormalSessionId + '|' +
                   summary.judgement.outcome + '|' + std::to_string(session.entries.size()) + '|' +
                   std::to_string(session.metrics.size()));
  }
  EXPECT_THAT(seen, ElementsAre("|||unknown|1|1", "session-1|4242||crashed|10|1", "session-2|7|session-1|unknown|7|1"));
}

// Written by the program itself under Wine, one folder with encoding and one without, beside the same process.
TEST(Summary, OfLogsThatTheProgramWrote) {
  const char* const data = std::getenv("SENTIQ_READER_DATA");
  ASSERT_NE(data, nullptr);
  for (const std::string form : {"encoded", "plain"}) {
    std::istringstream noInput;
    Progress progress(nullptr);
    const LogSet logs = readLogs(findLogs({data + ("/" + form)}), noInput, progress, Keep::AllEvents);
    ASSERT_EQ(logs.sessions.size(), 1);
    const Summary summary = summarize(logs, logs.sessions.front());
    EXPECT_THAT(
        summaryText(logs, /*colour=*/false),
        AllOf(testing::StartsWith("Canvix crashed at 2026-11-24 21:12:24.500: module PaintCore.dll 29.5.0.137, "
                                  "exception 0xc0000005 (access violation), offset 0x4d21f7\n"),
              HasSubstr("the shutdown at 20:58:31 on 23.11.2026 was unexpected"),
              HasSubstr("Before this session: error report AppHangXProcB1: Canvix.exe"), HasSubstr("session-2\n"),
              HasSubstr("Abnormal session before   session-1\n"), HasSubstr("2 min 26 s\n")));
    EXPECT_THAT(summary.problems, ElementsAre());
    EXPECT_THAT(timelineOf(logs), AllOf(HasSubstr("Pen \"A\" \u2014 \u5B8C\u4E86 \u2705 \\ C:\n"),
                                        HasSubstr("watchdog     info     Watchdog stopped cleanly.\n")));
  }
}

TEST(Timeline, ShowsOneCopyOfAnEventAtItsOwnTimeAndFilters) {
  const std::string plain = "2025-01-31T13:05:00.000+0100 [SYSTEM] [INFO]: two\nlines\n";
  const LogSet logs = readTexts({sessionLog({first}), watchdogLog(plain + crash + encodedLine(crashLine(during)))});
  ASSERT_EQ(logs.sessions.size(), 1);
  EXPECT_EQ(logs.sessions.front().eventCopies, 1);
  const std::string all = timelineOf(logs);
  EXPECT_THAT(all,
              HasSubstr("2025-01-31 13:00:02.000 +01:00  Application  error    Canvix.exe 29.5 crashed in gfx.dll"));
  EXPECT_THAT(all, HasSubstr("two lines\n"));
  TimelineOptions options;
  options.since = parseLocalTime("2025-01-31 13:00:01");
  options.until = parseLocalTime("2025-01-31T13:01");
  options.sources = {"application"};
  options.json = true;
  EXPECT_THAT(timelineOf(logs, options),
              testing::StartsWith(R"({"time":"2025-01-31T13:00:02.000+01:00","source":"App)"));
  options.until = parseLocalTime("2025-01-31T13:00:02");
  EXPECT_EQ(timelineOf(logs, options), "");
}

TEST(LogTime, ReadsEveryFormAndRejectsTheRest) {
  const std::pair<const char*, const char*> cases[]{{"2025-01-31T14:05:09.042+0100", "2025-01-31T14:05:09.042+01:00"},
                                                    {"2025-01-31T14:05:09.042-03:30", "2025-01-31T14:05:09.042-03:30"},
                                                    {"2024-02-29T23:59:59Z", "2024-02-29T23:59:59.000+00:00"},
                                                    {"2025-02-29T10:00:00Z", ""},
                                                    {"2025-01-31T24:00:00Z", ""},
                                                    {"2025-01-31T14:0", ""},
                                                    {"2025-01-31T14:05:09+01", ""}};
  for (const auto& [text, shown] : cases) {
    const auto time = parseTime(text);
    EXPECT_EQ(time ? isoTime(time->instant, time->offset) : "", shown) << text;
  }
}

TEST(Metrics, QuotesCsvAndLeavesMissingFiguresEmpty) {
  std::string record = first;
  record.replace(record.find("Running"), 7, R"(a \"b\", c)");
  std::ostringstream out;
  writeMetrics(readTexts({sessionLog({record})}), TableForm::Csv, out);
  EXPECT_THAT(out.str(),
              HasSubstr("\n2025-01-31T12:59:50.000+01:00,100,1000,50,60,57,4242,,,,0 00:00:10,,\"a \"\"b\"\", c\"\n"));
}

}  // namespace sentiq
