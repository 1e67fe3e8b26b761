#include "reader/commands/TimelineCommand.h"
#include "reader/commands/ViewCommands.h"
#include "tests/reader/commands/CommandRun.h"

namespace sentiq {

static Ran summaryOf(const std::vector<std::string>& inputs) {
  return ran([&](const Streams& streams) { showSummary(inputs, /*json=*/false, streams); });
}

static Ran reportOf(const std::string& input, const std::string& page) {
  return ran([&](const Streams& streams) { writeReport({{input}, {page}}, streams); });
}

const std::string record = recordLine("2025-01-31T12:59:50.000+0100");

TEST(Inputs, ThatAreNoLogsAreRefusedByEveryCommand) {
  const SampleFolder folder;
  const std::string users = folder.write("users.txt", "alice\nbob\n");
  const std::string page = folder.file("page.html");
  for (const Ran& refused : {summaryOf({users}), reportOf(users, page),
                             ran([&](const Streams& streams) { showTimeline({users}, {}, streams); }),
                             ran([&](const Streams& streams) { showMetrics({users}, TableForm::Csv, streams); })}) {
    EXPECT_EQ(refused.exitCode, exitFailed);
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(refused.messages, "sentiq-logs: " + users + ": no log of CanvixSentiq\n");
  }
  EXPECT_FALSE(std::filesystem::exists(pathFromText(page)));
}

TEST(Inputs, ThatAreNoLogsAreNamedAndLeftOutBesideRealOnes) {
  const SampleFolder folder;
  const std::string users = folder.write("users.txt", "alice\nbob\n");
  const Ran both = summaryOf({users, folder.write("a.log", sessionLog({record}))});
  EXPECT_EQ(both.exitCode, exitGood) << both.messages;
  EXPECT_THAT(both.out, AllOf(HasSubstr("session-1"), HasSubstr("Left out, no log of CanvixSentiq: " + users)));
}

TEST(Inputs, ThatAreMissingAreNamedAtOnceAndTheOthersRead) {
  const SampleFolder folder;
  const Ran both = summaryOf({"not/there\n\x1b[1m", folder.write("a.log", sessionLog({record}))});
  EXPECT_EQ(both.exitCode, exitFailed);
  EXPECT_EQ(both.messages, "sentiq-logs: not/there \xEF\xBF\xBD[1m: there is no such file or folder\n");
  EXPECT_THAT(both.out, HasSubstr("session-1"));
}

TEST(Report, NeverReplacesALogByThePage) {
  const SampleFolder folder;
  const std::string log = folder.write("logs/a.log", sessionLog({record}));
  for (const std::string& page : {log, folder.file("logs/../logs/a.log")}) {
    const Ran refused = reportOf(folder.file("logs"), page);
    EXPECT_EQ(refused.exitCode, exitFailed);
    EXPECT_THAT(refused.messages, HasSubstr("is one of the logs"));
  }
  EXPECT_EQ(readFile(pathFromText(log)), sessionLog({record}));
}

TEST(Report, LeavesThePageBeforeWhenItCannotBeWrittenWhole) {
  const SampleFolder folder;
  const std::string log = folder.write("a.log", sessionLog({record}));
  const std::string page = folder.write("page.html", "the page before");
  std::filesystem::create_directory(pathFromText(page + ".part"));  // Where it would be written first.
  EXPECT_EQ(reportOf(log, page).exitCode, exitFailed);
  EXPECT_EQ(readFile(pathFromText(page)), "the page before");
  std::filesystem::remove(pathFromText(page + ".part"));
  EXPECT_EQ(reportOf(log, page).exitCode, exitGood);
  EXPECT_THAT(readFile(pathFromText(page)), HasSubstr("session-1"));
}

}  // namespace sentiq
