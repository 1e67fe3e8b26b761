#include "reader/commands/DecodeCommand.h"
#include "reader/commands/TimelineCommand.h"
#include "reader/commands/TriageCommand.h"
#include "reader/commands/ViewCommands.h"
#include "reader/input/Words.h"
#include "tests/reader/commands/CommandRun.h"
#include "tests/reader/events/SampleEvents.h"

namespace sentiq {

static const Lines given{"studio-07", "atelier", "atelier.example", "jörg müller",         "anna maria",    "annama~1",
                         "xo",        "王芳",    "\U0001F3A8ida",   "s-1-5-21-1-2-3-1001", "4a00f600720067"};

static const std::string damaged = encodedLine("2025-01-31T13:05:01.000+0100 Jörg Müller is here").substr(0, 50);

static bool names(const std::string& text, const std::string& name) {
  const std::string small = smallLetters(text);
  for (std::size_t at = small.find(name); at != std::string::npos; at = small.find(name, at + 1)) {
    if (isWordBoundary(small, at) && isWordBoundary(small, at + name.size())) {
      return true;
    }
  }
  return false;
}

static std::string shownBy(const std::function<void(const Streams&)>& command, bool redact,
                           const std::string& input = "") {
  return ran(
             [&](Streams streams) {
               streams.redact = redact;
               command(streams);
             },
             input)
      .out;
}

// A crash of Canvix on Jörg's machine among other events.
static std::string namingLog() {
  const std::vector<SampleEvent> events{
      {"Application Error",
       1000,
       {"Canvix.exe", "29.5", "1", "C:\\Users\\Jörg Müller\\gfx.dll", "3.1", "2", "c0000005", "a1b2", "0x1092", "",
        "C:\\Users\\Jörg Müller\\Canvix.exe"}},
      report("APPCRASH", {"Canvix.exe", "29.5", "1", "C:\\Users\\ANNAMA~1\\AppData\\Local\\Temp\\gfx.dll"}),
      {"User32",
       1074,
       {"C:\\Windows\\shutdown.exe (STUDIO-07)", "STUDIO-07", "Other", "0x0", "restart", "", "STUDIO-07\\Jörg Müller"}},
      {"Microsoft-Windows-DistributedCOM", 10016, {"param6=ATELIER", "param7=Xo", "param8=S-1-5-21-1-2-3-1001"}},
      {"MsiInstaller", 11707, {"Product: 王芳 for XO -- done"}, "2025-01-30T12:00:00Z"},
      {"Any", 1, {"UserName=王芳", "Owner=\U0001F3A8ida", "Path=\\??\\C:\\Users\\Anna Maria\\ntuser.dat"}},
      {"VSS", 8193, {"JÖRG MÜLLER", "</Data><Binary>4a00f600720067</Binary><Data>"}},
  };
  std::string log;
  for (const SampleEvent& event : events) {
    std::string xml = event.xml();
    xml.replace(xml.find("<Computer>PC"), 12, "<Computer>Studio-07.atelier.example");
    xml.replace(xml.find("S-1-5-18"), 8, "S-1-5-21-1-2-3-1001");
    log += encodedLine("2025-01-31T13:05:00.000+0100 [PROCESS] [INFO]: " + eventJson(xml));
  }
  log += damaged + "\n" + damaged + std::string(16, '\0') + "2025-01-31T13:05:01.500+0100 [SYSTEM] [INFO]: goes on\n";
  return watchdogLog(log + "2025-01-31T13:05:02.000+0100 [SYSTEM] [INFO]: studio-07 of ida\n");
}

TEST(Redaction, LeavesNoneOfTheNamesInAnyView) {
  const SampleFolder folder;
  folder.write("Users/Anna Maria/XO.log", namingLog());
  folder.write("Users/Anna Maria/Xo.log.1", sessionLog({recordLine("2025-01-31T13:30:00.000+0100")}));
  const Lines inputs{folder.file("Users")};
  const Lines pages{folder.file("page.html"), folder.file("triage.html")};
  const std::vector<std::function<void(const Streams&)>> commands{
      [&](const Streams& streams) { writeReport({inputs, {pages[0]}}, streams); },
      [&](const Streams& streams) { triageLogs({.inputs = inputs, .page = {pages[1]}}, streams); },
      [&](const Streams& streams) { showSummary(inputs, /*json=*/false, streams); },
      [&](const Streams& streams) { showSummary(inputs, /*json=*/true, streams); },
      [&](const Streams& streams) { showTimeline(inputs, {}, streams); },
      [&](const Streams& streams) { showTimeline(inputs, {.json = true}, streams); },
      [&](const Streams& streams) { triageLogs({inputs}, streams); },
      [&](const Streams& streams) { triageLogs({.inputs = inputs, .json = true}, streams); },
      [&](const Streams& streams) { decodeLogs({inputs}, streams); },
  };
  const auto shown = [&](bool redact) {
    Lines texts;
    for (const auto& command : commands) {
      texts.push_back(shownBy(command, redact));
    }
    for (std::size_t i = 0; i < pages.size(); ++i) {
      texts[i] = readFile(pathFromText(pages[i]));
      EXPECT_THAT(texts[i], HasSubstr(redact ? "In this page stand-ins" : "This page holds what the logs hold"));
    }
    return texts;
  };
  const Lines plain = shown(false);
  const Lines redacted = shown(true);
  for (const std::string& name : given) {
    EXPECT_TRUE(std::any_of(plain.begin(), plain.end(), [&](const std::string& text) { return names(text, name); }))
        << name;
    for (const std::string& text : redacted) {
      EXPECT_FALSE(names(text, name)) << name << " in " << text.substr(0, 4000);
    }
  }
  EXPECT_THAT(plain, Contains(HasSubstr(damaged)));
  EXPECT_THAT(redacted, Each(Not(HasSubstr(damaged))));
  EXPECT_THAT(redacted[2], HasSubstr("Canvix crashed at 2025-01-31 13:30:00.500: module C:\\Users\\user-"));
}

TEST(Redaction, OfAFileKnowsLaterNamesAndOfAStreamThoseSoFar) {
  const SampleFolder folder;
  const std::string text = header("session-1", "4242") + "anna\nD:\\Users\\anna\\x\nanna\n";
  const std::string file = folder.write("a.log", text);
  const auto decoded = [&](const std::string& input) {
    return linesOf(shownBy([&](const Streams& streams) { decodeLogs({{input}}, streams); }, /*redact=*/true, text));
  };
  EXPECT_THAT(decoded("-"), ElementsAre(_, _, "anna", "D:\\Users\\user-1\\x", "user-1"));
  EXPECT_THAT(decoded(file), ElementsAre(_, _, Not("anna"), _, Not("anna")));
}

}  // namespace sentiq
