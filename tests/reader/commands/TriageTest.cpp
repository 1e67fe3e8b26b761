#include "reader/commands/TriageCommand.h"
#include "tests/reader/commands/CommandRun.h"

namespace sentiq {

const std::string watch = "2025-01-31T13:05:00.000+0100 [SYSTEM] [INFO]: ";

static std::string recordsOf(const std::string& id, const std::string& adapter) {
  std::string record = recordLine("2025-01-31T13:00:00.000+0100");
  record.insert(1, R"("gpuInfo":[{"gpuName":")" + adapter + R"(","gpuMemoryUsage":8}],)");
  return header(id, "4242") + recordLine("2025-01-31T12:59:40.000+0100") + "\n" +
         recordLine("2025-01-31T12:59:50.000+0100", 70) + "\n" + record + "\n";
}

static Ran triage(const std::string& folder, bool json = false, bool stopped = false) {
  return ran([&](const Streams& streams) { triageLogs({{folder}, /*top=*/2, json}, streams); }, "", /*terminal=*/false,
             stopped);
}

static Ran writePage(const std::string& folder, const std::string& page, std::optional<std::size_t> top = {},
                     bool stopped = false) {
  return ran([&](const Streams& streams) { triageLogs({.inputs = {folder}, .top = top, .page = {page}}, streams); }, "",
             /*terminal=*/true, stopped);
}

TEST(Triage, GroupsSessionsOfAllFoldersByWhatEndedThem) {
  const SampleFolder folder;
  const std::string crash = crashLine("2025-01-31T12:00:02Z");
  for (int i = 0; i < 40; ++i) {
    const std::string id = "session-" + std::to_string(i);
    const std::string place = std::to_string(i % 4) + "/" + id;
    const bool crashed = i % 4 == 0;
    folder.write(place + "/a.log", recordsOf(id, crashed ? "Rare" : "Usual"));
    folder.write(place + "/b.log", header(id, "4242", watch) + (crashed ? crash + "\n" : ""));
    folder.write(place + "/other.log", "nothing of ours\n");
  }
  // That one session lost power, only the log of the next one tells, in a folder of its own.
  folder.write("next/initial.log",
               header("session-1", "7", watch) + watch + "Starting initial metric collection.\n" +
                   eventLine("Microsoft-Windows-Kernel-Power", 41, "2025-01-31T12:30:00Z", {"0"}, "System") + "\n");
  const Ran table = triage(folder.file(""));
  EXPECT_EQ(table.exitCode, exitGood) << table.messages;
  EXPECT_THAT(
      table.out,
      AllOf(HasSubstr("10 crashed, 1 lost power"), HasSubstr("      10"),
            HasSubstr("crashed in gfx.dll: access violation at 0xa1b2\n          Canvix 29.5; Rare: 100.0 % (of "),
            HasSubstr("and 1 more group\n"), Not(HasSubstr("Usual"))));
  const std::string objects = triage(folder.file(""), /*json=*/true).out;
  EXPECT_THAT(objects, HasSubstr(R"("id":"session-1","processId":"4242","begin":"2025-01-31T)"));
  EXPECT_THAT(objects, AllOf(HasSubstr(R"("outcome":"power-loss")"), HasSubstr(R"("module":"gfx.dll")"),
                             HasSubstr(R"("lowestDiskMiB":70)")));
  const std::string path = folder.file("page.html");
  EXPECT_THAT(writePage(folder.file(""), path).out,
              AllOf(StartsWith(path + ": "), HasSubstr(" KiB. It holds how 41 sessions ended, also names of ")));
  const std::string page = readFile(pathFromText(path));
  for (int i = 0; i < 40; ++i) {
    EXPECT_THAT(page, HasSubstr("session-" + std::to_string(i) + "\"><td class=\"time\">"));
  }
  EXPECT_THAT(page, AllOf(HasSubstr("<h1>41 sessions from 2025-01-31 to 2025-01-31: "),
                          HasSubstr("<tr class=\"clear\"><td>Rare</td><td class=\"number\">10</td>"
                                    "<td class=\"number\">100.0 %</td><td class=\"number\">25.0 %</td>"),
                          HasSubstr("<h2>lost power</h2>"), HasSubstr("names of people and of folders")));
  writePage(folder.file(""), path, /*top=*/1);
  EXPECT_THAT(readFile(pathFromText(path)),
              AllOf(HasSubstr("<p class=\"note\">and 2 more groups"), Not(HasSubstr("lost power</h2>"))));
}

TEST(Triage, SaysWhatItCouldNotRead) {
  const SampleFolder folder;
  EXPECT_EQ(triage(folder.file("missing")).exitCode, exitFailed);
  folder.write("a.log", recordsOf("session-1", "Usual") + "{\"cut\n\xff\n");
  std::error_code notAllowed;  // To make links, on Windows.
  std::filesystem::create_directory_symlink(pathFromText(folder.file("")), pathFromText(folder.file("back")),
                                            notAllowed);
  const Ran damaged = triage(folder.file(""));
  EXPECT_EQ(damaged.exitCode, exitDamaged);
  EXPECT_THAT(damaged.out, HasSubstr("1 session "));
  EXPECT_THAT(damaged.messages, HasSubstr("damaged or unfinished lines in " + folder.file("a.log")));
  EXPECT_THAT(triage(folder.file(""), /*json=*/true).out, HasSubstr(R"("lowestDiskMiB":70)"));
  const Ran stopped = triage(folder.file(""), /*json=*/false, /*stopped=*/true);
  EXPECT_EQ(stopped.exitCode, exitFailed);
  EXPECT_THAT(stopped.messages, HasSubstr("stopped: 0 of "));
  const std::string log = folder.file("a.log");
  const std::string page = folder.file("page.html");
  EXPECT_EQ(writePage(folder.file(""), page).exitCode, exitDamaged);
  EXPECT_THAT(readFile(pathFromText(page)),
              AllOf(HasSubstr("<li>damaged or unfinished lines in "), HasSubstr("a.log</li>")));
  const std::string before = readFile(pathFromText(page));
  EXPECT_EQ(writePage(folder.file(""), page, {}, /*stopped=*/true).exitCode, exitFailed);
  EXPECT_THAT(writePage(SampleFolder().file(""), page).messages, HasSubstr("no page is written"));
  EXPECT_EQ(readFile(pathFromText(page)), before) << "nothing was read";
  EXPECT_THAT(writePage(folder.file(""), log).messages, HasSubstr("is one of the logs, and is not replaced"));
}

}  // namespace sentiq
