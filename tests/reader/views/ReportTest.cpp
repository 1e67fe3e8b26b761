#include <regex>
#include <set>

#include "reader/views/HtmlReport.h"
#include "tests/reader/SampleLogs.h"

namespace sentiq {

const std::string exitLine = "2025-01-31T13:00:05.000+0100 Exit Status - Canvix is no longer alive";
const std::string during = "2025-01-31T12:00:02.0000001Z";  // 13:00:02 local time.

static std::string pageOf(const std::vector<std::string>& texts) {
  std::ostringstream out;
  writeHtmlReport(readTexts(texts), out);
  return out.str();
}

static std::string crash(const std::vector<std::string>& data) {
  return eventLine("Application Error", 1000, during, data) + '\n';
}

static std::string other(const std::string& time, const std::string& text) {
  return eventLine("Spooler", 5, time, {text}) + '\n';
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
  const std::string attack = "<script>alert('x')</script>\"&\x01\xff";
  std::vector<std::string> data(9, "&lt;script>alert(1)&lt;/script>");
  data[0] = "Canvix.exe";
  data[8] = "0x1092";
  std::string record = recordLine("2025-01-31T12:59:50.000+0100");
  record.replace(record.find("\"status\""), 0, R"("gpuInfo":[{"gpuMemoryUsage":1,"gpuName":"<script>gpu</script>"}],)");
  const std::string page =
      pageOf({"OrbelSessionID: " + attack + "\nProcessID: 4242\n" + encodedLine(record) + attack + "\n" +
              "2025-01-31T13:05:00.000+0100 [SYSTEM] [INFO]: " + attack + "\n" + crash(data)});
  EXPECT_THAT(page, AllOf(HasSubstr("<dd>&lt;script&gt;alert(&#39;x&#39;)&lt;/script&gt;&quot;&amp;\xEF\xBF\xBD"),
                          HasSubstr("Canvix crashed at 2025-01-31 13:00:02.000: module &lt;script&gt;alert(1)")));
  for (const char* const hole :
       {"<script>alert", "<script>gpu", "src=", "href=\"h", "url(", "@import", "style=", "unsafe"}) {
    EXPECT_THAT(page, Not(HasSubstr(hole)));
  }
}

TEST(Report, ShowsTheNewestFirstAndFoldsWhatIsRepeated) {
  const std::vector<std::string> data{"Canvix.exe", "29.5", "1", "gfx.dll", "3.1", "2", "c0000005", "a1b2", "0x1092"};
  const std::string page =
      pageOf({sessionLog({recordLine("2025-01-31T12:59:50.000+0100"), exitLine}),
              watchdogLog(crash(data) + other("2025-01-31T12:00:01Z", "one") + other("2025-01-31T12:00:03Z", "one") +
                          other("2025-01-30T12:00:00Z", "three") + other("2025-01-29T12:00:00Z", "four"))});
  EXPECT_THAT(found(page, "<h3>([^<]*)<"),
              ElementsAre("2025-01-31", "2025-01-30, before the session", "2025-01-29, before the session"));
  EXPECT_THAT(found(page, "<summary>([^<]*more[^<]*)</summary>13:00:01.000\n"),
              ElementsAre("1 more, the first at 13:00:01.000"));
  EXPECT_LT(page.find("<td class=\"time\">13:00:05.000"), page.find("<td class=\"time\">13:00:02.000"));
}

TEST(Report, DrawsChangesAndGapsInTheUnitThatReadsBest) {
  const std::string day = "2025-01-31T";
  const std::string page = pageOf(
      {sessionLog({recordLine(day + "12:00:00.000+0100", 251'000), recordLine(day + "12:00:10.000+0100", 250'000),
                   recordLine(day + "12:09:00.000+0100", 249'000)})});
  EXPECT_THAT(page, AllOf(HasSubstr("245.1 GiB at first, 243.2 GiB at last, lowest 243.2 GiB at 12:09:00. The axis "
                                    "begins at 243 GiB, not at 0."),
                          HasSubstr("Battery"), Not(HasSubstr("Threads of Canvix"))));
  EXPECT_THAT(found(page, "path d=\"(M[^M]*M[^ML]*)\""), SizeIs(3)) << "a line is broken where records miss";
  EXPECT_THAT(pageOf({}), HasSubstr("How the session ended is unknown"));
}

TEST(Report, OfSeveralSessionsHasATargetForEveryLink) {
  const std::string head = "2025-01-31T13:10:00.000+0100 [SYSTEM] [INFO]: ";
  const std::string page =
      pageOf({sessionLog({recordLine("2025-01-31T12:59:50.000+0100"), exitLine}),
              watchdogLog(other(during, "printer")) + head + "OrbelSessionID: session-2\n" + head +
                  "ProcessID: 7\n2025-01-31T13:12:00.000+0100 [PROCESS] [INFO]: App has exited\n"});
  const std::vector<std::string> ids = found(page, " id=\"([^\"]*)\"");
  const std::set<std::string> targets(ids.begin(), ids.end());
  EXPECT_EQ(targets.size(), ids.size());
  EXPECT_THAT(found(page, "href=\"#([^\"]*)\""),
              AllOf(Contains("s0"), Contains("s1"),
                    Each(Truly([&](const std::string& link) { return targets.contains(link); }))));
  EXPECT_LT(page.find("<summary id=\"s1\">Session session-2"), page.find("<summary id=\"s0\">Session session-1"));
}

}  // namespace sentiq
