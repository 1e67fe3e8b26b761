#include "reader/views/MetricsTable.h"
#include "reader/views/Timeline.h"
#include "tests/reader/SampleLogs.h"

namespace sentiq {

const std::string first = recordLine("2025-01-31T12:59:50.000+0100");
const std::string during = "2025-01-31T12:00:02.0000001Z";  // 13:00:02 local time.
const std::string crash = crashLine(during) + "\n";
const std::string plain = "2025-01-31T13:05:00.000+0100 [SYSTEM] [INFO]: two\nlines\n";

static std::string timelineOf(const TimelineOptions& options = {}) {
  static const LogSet logs =
      readTexts({sessionLog({first}), watchdogLog(plain + crash + encodedLine(crashLine(during)))});
  std::ostringstream out;
  writeTimeline(logs, options, out);
  return out.str();
}

TEST(Timeline, ShowsOneCopyOfAnEventAtItsOwnTime) {
  const std::string all = timelineOf();
  const std::string line = "2025-01-31 13:00:02.000 +01:00  Application  error    Canvix.exe 29.5 crashed in gfx.dll";
  EXPECT_NE(all.find(line), std::string::npos) << all;
  EXPECT_EQ(all.find(line), all.rfind(line));
  EXPECT_THAT(all, HasSubstr("two lines\n"));
}

TEST(Timeline, ShowsRecordsWhenAskedForThemOrForTheirLog) {
  EXPECT_THAT(timelineOf(), Not(HasSubstr("process 4242 Running")));
  EXPECT_THAT(timelineOf({.records = true}), HasSubstr("process 4242 Running"));
  EXPECT_THAT(timelineOf({.sources = {"Session"}}), HasSubstr("process 4242 Running"));
  EXPECT_THAT(timelineOf({.sources = {"watchdog"}, .records = true}), Not(HasSubstr("process 4242 Running")));
}

TEST(Timeline, LeavesOutWhatIsNotAskedFor) {
  EXPECT_THAT(linesOf(timelineOf({.sources = {"application"}})), testing::SizeIs(1));
  EXPECT_THAT(linesOf(timelineOf({.severity = Severity::Error})), testing::SizeIs(1));
  EXPECT_THAT(linesOf(timelineOf({.grep = "GFX.DLL"})), testing::SizeIs(1));
  EXPECT_THAT(linesOf(timelineOf({.grep = "0x1092"})), testing::SizeIs(1))
      << "a field of the event, which is not among its words";
  EXPECT_EQ(timelineOf({.grep = "absent"}), "");
  EXPECT_THAT(linesOf(timelineOf(
                  {.since = parseLocalTime("2025-01-31 13:00:02"), .until = parseLocalTime("2025-01-31T13:01")})),
              testing::SizeIs(1));
  EXPECT_EQ(timelineOf({.since = parseLocalTime("2025-01-31T13:00:03"), .until = parseLocalTime("2025-01-31T13:01")}),
            "");
  EXPECT_THAT(timelineOf({.last = parseDuration("5s")}), testing::StartsWith("2025-01-31 13:00:02"));
}

TEST(Timeline, BreaksLongLinesUnderTheirText) {
  const std::string text = timelineOf({.sources = {"application"}, .width = 90});
  const std::string indent(54, ' ');
  EXPECT_THAT(text, HasSubstr("error    Canvix.exe 29.5 crashed in gfx.dll\n" + indent));
  EXPECT_EQ(timelineOf({.sources = {"application"}, .json = true, .width = 90}).find('\n'),
            timelineOf({.sources = {"application"}, .json = true}).size() - 1);
}

TEST(Timeline, TakesTimesAndLengthsInTheirFormsOnly) {
  EXPECT_EQ(parseDuration("90s"), Ticks(std::chrono::seconds(90)));
  EXPECT_EQ(parseDuration("2h"), Ticks(std::chrono::hours(2)));
  for (const char* const text : {"", "5", "m", "5 m", "-5m", "5min", "99999999d"}) {
    EXPECT_FALSE(parseDuration(text)) << text;
  }
  EXPECT_FALSE(parseLocalTime("2025-01-31T13:00+01:00"));
}

static std::string metricsOf(std::string status, TableForm form, std::size_t width = 0) {
  std::string record = first;
  record.replace(record.find("Running"), 7, status);
  std::ostringstream out;
  writeMetrics(readTexts({sessionLog({record})}), form, width, out);
  return out.str();
}

TEST(Metrics, QuoteCsvAndLeaveMissingFiguresEmpty) {
  EXPECT_THAT(metricsOf(R"(a \"b\", c)", TableForm::Csv),
              HasSubstr("\n2025-01-31T12:59:50.000+01:00,100,1000,50,60,57,4242,,,,0 00:00:10,,\"a \"\"b\"\", c\"\n"));
}

TEST(Metrics, HandNoFormulaToASpreadsheet) {
  for (const std::string begin : {"=", "+", "-", "@"}) {
    EXPECT_THAT(metricsOf(begin + "HYPERLINK", TableForm::Csv), HasSubstr(",'" + begin + "HYPERLINK\n"));
  }
}

TEST(Metrics, FitTheTerminalAndSayWhatDoesNot) {
  std::istringstream narrow(metricsOf("Running", TableForm::Text, /*width=*/80));
  std::string line, last;
  while (std::getline(narrow, line)) {
    EXPECT_LE(line.size(), 80);
    last = line;
  }
  EXPECT_THAT(last, HasSubstr("columns do not fit"));
  EXPECT_THAT(metricsOf("Running", TableForm::Text), AllOf(HasSubstr("Running\n"), Not(HasSubstr("do not fit"))));
}

}  // namespace sentiq
