#include <regex>
#include <set>

#include "reader/views/HtmlReport.h"
#include "tests/reader/SampleLogs.h"

namespace sentiq {

const std::string exitLine = "2025-01-31T13:00:05.000+0100 Exit Status - Canvix is no longer alive";
const std::string during = "2025-01-31T12:00:02.0000001Z";  // 13:00:02 local time.

static std::string pageOf(const std::vector<std::string>& texts) {
  std::ostringstream out;
  writeHtmlReport(readTexts(texts), {Instant{}, std::chrono::minutes(60), "reader 1"}, out);
  return out.str();
}

static std::string event(const std::string& provider, int id, const std::string& time,
                         const std::vector<std::string>& data) {
  return eventLine(provider, id, time, data) + '\n';
}

static std::string other(const std::string& time, const std::string& text) {
  return event("Spooler", 5, time, {text});
}

// Of Canvix, which has run for so many seconds since 12:00:00.
static std::string recordAfter(int seconds, int freeDisk) {
  const auto two = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  const std::string clock = two(seconds / 60 % 60) + ':' + two(seconds % 60);
  std::string record =
      recordLine("2025-01-31T" + std::to_string(12 + seconds / 3600) + ':' + clock + ".000+0100", freeDisk);
  return record.replace(record.find("00:00:10"), 8, two(seconds / 3600) + ':' + clock);
}

static std::vector<std::string> found(const std::string& page, const std::string& pattern) {
  const std::regex regex(pattern);
  std::vector<std::string> all;
  for (std::sregex_iterator match(page.begin(), page.end(), regex), end; match != end; ++match) {
    all.push_back((*match)[1]);
  }
  return all;
}

TEST(Report, EscapesAllTextOfTheLogsAndFetchesNothing) {
  const std::string attack = "<script>alert('x')</script></noscript>\"&\x01\xff";
  std::vector<std::string> data(9, "&lt;/noscript>&lt;script>alert(1)&lt;/script>");
  data[0] = "Canvix.exe";
  data[8] = "0x1092";
  std::string record = recordLine("2025-01-31T12:59:50.000+0100");
  record.replace(record.find("\"status\""), 0, R"("gpuInfo":[{"gpuMemoryUsage":1,"gpuName":"<script>gpu</script>"}],)");
  const std::string page = pageOf({"OrbelSessionID: " + attack + "\nProcessID: 4242\n" + encodedLine(record) + attack +
                                   "\n" + "2025-01-31T13:05:00.000+0100 [SYSTEM] [INFO]: " + attack + "\n" +
                                   event("Application Error", 1000, during, data)});
  EXPECT_THAT(page, AllOf(HasSubstr("<dd>&lt;script&gt;alert(&#39;x&#39;)&lt;/script&gt;&lt;/noscript&gt;&quot;&amp;"),
                          HasSubstr("<title>Canvix crashed at 2025-01-31 13:00:02.000: module &lt;/noscript&gt;")));
  for (const char* const hole : {"<script>alert", "<script>gpu", "</noscript><script", "src=", "href=\"h", "url(",
                                 "@import", "style=", "unsafe"}) {
    EXPECT_THAT(page, Not(HasSubstr(hole)));
  }
  EXPECT_THAT(page, HasSubstr("Made on 1970-01-01 01:00 +01:00 by reader 1"));
}

TEST(Report, HoldsEachEntryOnceTheNewestFirstWithAllItsFields) {
  const std::string page =
      pageOf({sessionLog({recordLine("2025-01-31T12:59:50.000+0100"), exitLine}),
              watchdogLog(event("Spooler", 5, "2025-01-31T12:00:01Z", {"Printer=one", "two"}) +
                          other("2025-01-30T12:00:00Z", "three") + other("2025-01-29T12:00:00Z", "four"))});
  EXPECT_THAT(found(page, "rowgroup\">([^<]*)<"), ElementsAre("2025-01-31", "2025-01-30", "2025-01-29"));
  EXPECT_LT(page.find("\">13:00:05.000</a>"), page.find("\">13:00:01.000</a>\n<td class=\"from\">4 s before<td>"));
  EXPECT_LT(page.find("2 older entries, from before the session"), page.find("\">13:00:00.000</a>"));
  EXPECT_THAT(
      page,
      HasSubstr(
          "<summary>Printer: one\nData 1: two</summary><dl>\n<dt>In the log<dd>line 3 of file 2, record id 7</dl>"));
}

TEST(Report, NamesTheLowestValueWithItsOwnTimeHoweverLongTheSession) {
  std::vector<std::string> records;
  for (int seconds = 10; seconds <= 3 * 3600; seconds += 10) {
    records.push_back(recordAfter(seconds, seconds == 4000 ? 249'000 : 250'000));
  }
  records.erase(records.begin() + 100, records.begin() + 500);  // Missing.
  records.push_back("2025-01-31T15:00:05.000+0100 Exit Status - Canvix is no longer alive");
  records.insert(records.begin() + 50, recordAfter(505, 240'000));
  const std::string page = pageOf({sessionLog(records)});
  EXPECT_THAT(found(page, "value=\"([a-z]+)\"( checked)?>Last"), ElementsAre("five", "thirty"));
  EXPECT_THAT(page, HasSubstr("244.1 GiB at first, lowest 234.4 GiB at 12:08:25"));
  EXPECT_THAT(page, HasSubstr("The axis begins at"));
  EXPECT_THAT(found(page, "<path d=\"(M[^M\"]*M[^M\"]*)\""), Not(IsEmpty())) << "a line is broken where records miss";
  EXPECT_LT(found(page, "(<tr data-at)").size(), records.size() / 2) << "the wide view is thinned";
  EXPECT_THAT(page, Not(HasSubstr("Threads of Canvix")));
  EXPECT_THAT(pageOf({}), HasSubstr("The logs hold no ten-second records."));
}

TEST(Report, TellsOneThingInOneLineAndFoldsWhatIsNotRelated) {
  const std::string page =
      pageOf({sessionLog({recordLine("2025-01-31T12:59:50.000+0100"), exitLine}),
              watchdogLog(crashLine(during) + "\n" + other("2025-01-31T12:00:01Z", "one") +
                          other("2025-01-31T12:00:03Z", "one") + other("2025-01-31T12:00:04Z", "two") +
                          event("Windows Error Reporting", 1001, "2025-01-31T12:00:03Z",
                                {"", "0", "APPCRASH", "", "0", "Canvix.exe", "29.5", "1", "gfx.dll", "3.1", "2",
                                 "c0000005", "a1b2", "", "", "", "", "0"}))});
  EXPECT_THAT(found(page, "<summary>([^<]*)</summary>\n<p><a"),
              ElementsAre(HasSubstr("Canvix is no longer alive"), HasSubstr("crashed in gfx.dll"), HasSubstr("two"),
                          HasSubstr("one (2 times)")));
  EXPECT_THAT(page, HasSubstr("<summary>2 other errors, not related to Canvix as far as known"));
}

TEST(Report, OfSeveralSessionsBeginsWithAllOfThemAndHasATargetForEveryLink) {
  const std::string head = "2025-01-31T13:10:00.000+0100 [SYSTEM] [INFO]: ";
  const std::string page =
      pageOf({sessionLog({recordLine("2025-01-31T12:59:50.000+0100"), exitLine}),
              watchdogLog(other(during, "printer")) + head + "OrbelSessionID: session-2\n" + head +
                  "ProcessID: 7\n2025-01-31T13:12:00.000+0100 [PROCESS] [INFO]: App has exited\n"});
  const std::vector<std::string> ids = found(page, " id=\"([^\"]*)\"");
  const std::set<std::string> targets(ids.begin(), ids.end());
  EXPECT_EQ(targets.size(), ids.size());
  EXPECT_THAT(found(page, "href=\"#(\\w*)\""),
              AllOf(Contains("s0"), Contains("s1"),
                    Each(Truly([&](const std::string& link) { return targets.contains(link); }))));
  EXPECT_THAT(found(page, "<h1>([^<]*)<"), ElementsAre(StartsWith("2 sessions of Canvix")));
  EXPECT_THAT(found(page, "<details class=\"session [a-z]+\" name=\"session\" id=\"([^\"]*\"[^>]*)>"),
              ElementsAre("s1\" open", "s0\""));
}

}  // namespace sentiq
