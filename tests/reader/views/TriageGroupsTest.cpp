#include "reader/commands/Suggestion.h"
#include "reader/views/CommandTexts.h"
#include "reader/views/HtmlTriage.h"
#include "reader/views/TextStyle.h"
#include "reader/views/TriageGroups.h"
#include "tests/support/Test.h"

namespace sentiq {

static std::vector<TriagedSession> sessions(std::size_t count, Outcome outcome, const std::string& driver) {
  std::vector<TriagedSession> made(count);
  for (TriagedSession& session : made) {
    session.judgement.outcome = outcome;
    if (!driver.empty()) {
      session.judgement.changes.resize(1);
      session.judgement.changes.front().change = {ChangeKind::Driver, driver, "31.0", /*failed=*/false};
    }
  }
  return made;
}

static std::string triageOf(std::size_t failedWith, std::size_t failed, std::size_t ended, std::size_t endedWith) {
  std::vector<TriagedSession> all = sessions(failedWith, Outcome::BlueScreen, "gpu");
  for (const auto& more : {sessions(failed, Outcome::BlueScreen, ""), sessions(ended, Outcome::Ended, ""),
                           sessions(endedWith, Outcome::Ended, "gpu")}) {
    all.insert(all.end(), more.begin(), more.end());
  }
  return triageText(all, /*top=*/0, /*width=*/0);
}

TEST(Triage, NamesAChangeThatIsClearlyMoreFrequentBeforeTheGroup) {
  EXPECT_THAT(triageOf(10, 0, 20, 0), HasSubstr("changed before it: driver gpu 31.0: 100.0 % (of all 33.3 %)\n"));
  EXPECT_THAT(triageOf(9, 0, 20, 0), Not(HasSubstr("changed before it"))) << "few sessions";
  EXPECT_THAT(triageOf(10, 0, 5, 6), Not(HasSubstr("changed before it"))) << "nearly as frequent in all";
  EXPECT_THAT(triageOf(10, 20, 30, 0), HasSubstr("31.0: 33.3 % (of all 16.7 %)\n")) << "twice as frequent";
}

TEST(Triage, CountsEveryOutcomeInItsHeadline) {
  std::vector<TriagedSession> all;
  for (const Outcome outcome : allOutcomes()) {
    all.push_back(sessions(1, outcome, "").front());
  }
  const std::string text = triageText(all, 0, 0);
  for (const Outcome outcome : allOutcomes()) {
    EXPECT_THAT(text.substr(0, text.find('\n')), HasSubstr("1 " + std::string(outcomeName(outcome))));
  }
}

TEST(Triage, PageCountsItsDaysAndListsTheNewestSessionsOfALargeGroup) {
  std::vector<TriagedSession> all = sessions(2003, Outcome::Hung, "");
  const std::vector<std::string> times{"2025-01-30T23:30+01:00", "2025-01-30T23:30-01:00", "2025-01-31T12:00Z",
                                       "2025-02-02T12:00Z"};
  for (std::size_t i = 0; i < times.size(); ++i) {
    TriagedSession& session = all[all.size() - times.size() + i];
    const LogTime time = *parseTime(times[i]);
    session.span = {time.instant, time.instant, time.offset};
  }
  all[2].folder = "old";
  all.back().folder = "<script>\"new";
  std::ostringstream out;
  writeHtmlTriage(all, {}, {}, out);
  const std::string page = out.str();
  EXPECT_THAT(
      page, AllOf(HasSubstr(">2025-01-30:\u00A02, 31:\u00A01; 2025-02-02:\u00A01<"), HasSubstr("<title>2025-01-30: 2<"),
                  HasSubstr("x=\"75.00%\" width=\"22.50%\" y=\"50.0%\" height=\"50.0%\"")));
  EXPECT_THAT(
      page, AllOf(HasSubstr("The newest session: <code>&lt;script&gt;&quot;new</code>"),
                  HasSubstr("And 3 older, left out here"), Not(HasSubstr("\"old\"")), Not(HasSubstr("<script>\"new"))));
}

TEST(Signature, HoldsWhatTellsFailuresApart) {
  Judgement judgement;
  judgement.outcome = Outcome::Crashed;
  ProgramFailure& failure = judgement.evidence.failure.emplace();
  failure.module = "gfx.dll";
  failure.exception = 0xE0000001;
  failure.offset = 0xA1B2;
  EXPECT_EQ(signatureOf(judgement), "crashed in gfx.dll: 0xe0000001 at 0xa1b2");
  failure.exceptionName = "System.IO.IOException";
  EXPECT_EQ(signatureOf(judgement), "crashed in gfx.dll: System.IO.IOException at 0xa1b2");
  judgement.outcome = Outcome::Hung;
  failure.hangKind = "Cross-process";
  EXPECT_EQ(signatureOf(judgement), "hung: Cross-process");
}

TEST(Suggestion, IsWhatWasMistypedALittle) {
  const std::vector<std::string> words{"summary", "timeline", "System"};
  EXPECT_EQ(suggestionFor("sumary", words), "; did you mean 'summary'?");
  EXPECT_EQ(suggestionFor("sytem", words), "; did you mean 'System'?");
  EXPECT_EQ(suggestionFor("tiemline", words), "; did you mean 'timeline'?");
  EXPECT_EQ(suggestionFor("decode", words), "");
}

TEST(TextStyle, BreaksAndCutsByColumnsNotBytes) {
  EXPECT_EQ(wrapped("one two three four five six", 2, 22), "one two three four\n  five six");
  EXPECT_EQ(wrapped(std::string(25, 'x'), 0, 20), std::string(20, 'x') + "\n" + "xxxxx");
  EXPECT_EQ(fitted("\u5B8C\u4E86 done", 5), "\u5B8C\u4E86\u2026") << "two columns each";
  EXPECT_EQ(shownWidth(padded("\u00E9", 4)), 4);
}

TEST(Completions, HoldEveryCommandOptionAndChoiceForEachShell) {
  const CommandLineWords words{"",
                               {{"timeline",
                                 "FILE",
                                 "It's all",
                                 "",
                                 {{{"-s", "--severity"}, "error", {"error", "info"}, "How [so]", false}},
                                 {}}},
                               {}};
  for (const std::string& shell : completionShells()) {
    const std::string script = completionScript(shell, words);
    EXPECT_THAT(script, AllOf(HasSubstr("timeline"), HasSubstr("severity"), HasSubstr("error"), HasSubstr("info")))
        << shell;
    EXPECT_THAT(script, Not(HasSubstr("It's"))) << "an open quote in " << shell;
  }
}

}  // namespace sentiq
