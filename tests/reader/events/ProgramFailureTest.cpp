#include "reader/events/CodeWords.h"
#include "reader/events/EventFacts.h"
#include "reader/events/EventWords.h"
#include "tests/reader/events/SampleEvents.h"

namespace sentiq {

static const std::string accessViolation = "c0000005";
static const std::string created = "01db73dd4a4e8000";
static const std::string package = "Canvix_29.5_x64__8wekyb3d8bbwe";

// What was in the way, and whose it was.
static std::string told(const EventRecord& event) {
  const ProgramFailure failure = programFailure(event);
  const auto hex = [](std::optional<std::uint64_t> number) { return number ? showHex(*number) : "none"; };
  return failure.version + ' ' + failure.module + ' ' + failure.moduleVersion + ' ' + hex(failure.exception) + " at " +
         hex(failure.offset) + ", process " + std::to_string(failure.processId) + " of " +
         (failure.created ? isoTime(*failure.created, {}) : "none") + ", " + failure.reportId;
}

static SampleEvent crash(const std::string& program = "CANVIX.exe", const std::string& process = "0x1092",
                         const std::string& start = "0x" + created) {
  return {"Application Error",
          1000,
          {"AppName=" + program, "AppVersion=29.5", "ModuleName=gfx.dll", "ModuleVersion=3.1",
           "ExceptionCode=" + accessViolation, "FaultingOffset=00000000000a1b2", "ProcessId=" + process,
           "ProcessCreationTime=" + start, "IntegratorReportId=r-1"}};
}

TEST(Crash, NamesModuleExceptionAndProcess) {
  const EventRecord event = crash().read();
  EXPECT_EQ(event.meaning, Meaning::Crash);
  EXPECT_EQ(event.severity, Severity::Error);
  EXPECT_EQ(programFailure(event).teller, Teller::Event);
  EXPECT_EQ(told(event), "29.5 gfx.dll 3.1 0xc0000005 at 0xa1b2, process 4242 of 2025-01-31T12:40:20.918+00:00, r-1");
}

TEST(Crash, WithoutNamesOfFieldsIsReadByItsLayout) {
  const SampleEvent event{
      "Application Error",
      1000,
      {"Canvix.exe", "29.5", "1", "gfx.dll", "3.1", "2", accessViolation, "a1b2", "1092", created, "", "", "r-1"}};
  EXPECT_EQ(told(event.read()), told(crash().read()));
}

TEST(Crash, OfAnotherProgramIsOnlyAWarning) {
  const EventRecord event = crash("NotCanvix.exe").read();
  EXPECT_EQ(event.meaning, Meaning::Other);
  EXPECT_EQ(event.severity, Severity::Warning);
  SampleEvent helper = crash("Helper.exe");
  helper.fields.push_back("PackageFullName=" + package);
  EXPECT_EQ(helper.read().meaning, Meaning::Other);
  EXPECT_EQ(report("AppHangTransient", {"Other.exe"}).read().severity, Severity::Notice);
}

TEST(Crash, ThatTellsWhatCannotBeTrueTellsNothing) {
  for (const std::string start : {"0x8000000000000000", "0", "soon", "1db73dd4a4e800000"}) {
    EXPECT_EQ(programFailure(crash("Canvix.exe", "1", start).read()).created, std::nullopt) << start;
  }
  EXPECT_EQ(programFailure(crash("Canvix.exe", "0x100000000").read()).processId, 0);
}

TEST(Hang, NamesItsKindAndProcess) {
  SampleEvent event{
      "Application Hang", 1002, {"canvix.exe", "29.5", "1092", created, "", "", "r-1", "", "", "Cross-thread"}};
  EXPECT_EQ(event.read().meaning, Meaning::Hang);
  EXPECT_EQ(programFailure(event.read()).hangKind, "Cross-thread");
  EXPECT_EQ(told(event.read()), "29.5   none at none, process 4242 of 2025-01-31T12:40:20.918+00:00, r-1");
  event.fields.back() = "Unknown";
  EXPECT_EQ(programFailure(event.read()).hangKind, "");
}

TEST(Hang, OfAnOlderSystemTellsItsKindInBytes) {
  const auto words = [](const std::string& bytes) {
    std::string xml =
        SampleEvent{"Application Hang", 1002, {"Canvix.exe", "29.5", "1", "", "", "", "", "", "", ""}}.xml();
    xml.insert(xml.find("</EventData>"), "<Binary>" + bytes + "</Binary>");
    return eventWords(readEvent(eventJson(xml)).value(), {});
  };
  const std::string closed = "Canvix.exe 29.5 stopped responding and was closed";
  EXPECT_EQ(words("54006F0070000000"), closed + ": Top");
  EXPECT_EQ(words("55006E006B006E006F0077006E000000"), closed);
  EXPECT_EQ(words("54010000"), closed);
}

// The parameters stand in another order in each kind.
TEST(ErrorReport, OfACrashIsReadInTheOrderOfItsKind) {
  const std::string exe = "Canvix.exe";
  for (const SampleEvent& sample :
       {report("APPCRASH", {exe, "29.5", "", "gfx.dll", "3.1", "", accessViolation, "a1b2"}),
        report("BEX64", {exe, "29.5", "", "gfx.dll", "3.1", "", "a1b2", accessViolation, "7"}),
        report("MoAppCrash", {package, "praid:App", "29.5", "", "gfx.dll", "3.1", "", accessViolation, "a1b2"}),
        report("MoBEX64", {package, "praid:App", "29.5", "", "gfx.dll", "3.1", "", "a1b2", accessViolation})}) {
    const EventRecord event = sample.read();
    EXPECT_EQ(event.meaning, Meaning::Crash);
    EXPECT_EQ(programFailure(event).teller, Teller::Report);
    EXPECT_EQ(told(event), "29.5 gfx.dll 3.1 0xc0000005 at 0xa1b2, process 0 of none, r-1");
    EXPECT_THAT(eventWords(event, {}),
                EndsWith("crashed in gfx.dll 3.1: exception 0xc0000005 (access violation) at offset 0xa1b2"));
  }
}

TEST(ErrorReport, NamesBucketFolderAndDumps) {
  SampleEvent event = report("APPCRASH", {"Canvix.exe"});
  const ProgramFailure failure = programFailure(event.read());
  EXPECT_EQ(failure.bucket, "1");
  EXPECT_EQ(failure.reportPath, "C:\\Report");
  EXPECT_THAT(failure.dumps, ElementsAre("\\\\?\\C:\\a.tmp.mdmp", "C:\\c.dmp"));
  event.fields.push_back("HashedBucket=hash");
  EXPECT_EQ(programFailure(event.read()).bucket, "hash");
}

TEST(ErrorReport, OfManagedCodeNamesTheException) {
  const SampleEvent event =
      report("CLR20r3", {"Canvix.exe", "29.5", "", "Brushes", "3.1", "", "e8", "3f", "System.NullReference"});
  EXPECT_EQ(programFailure(event.read()).exceptionName, "System.NullReference");
  EXPECT_EQ(programFailure(event.read()).exception, std::nullopt);
}

TEST(ErrorReport, MeansWhatItsKindSays) {
  const auto meaning = [](const SampleEvent& event) { return event.read().meaning; };
  EXPECT_EQ(meaning(report("AppHangTransient", {"Canvix.exe"})), Meaning::Recovered);
  EXPECT_EQ(meaning(report("MoAppHangTransient", {"Canvix_1", "praid:App"})), Meaning::Recovered);
  EXPECT_EQ(meaning(report("AppHangB1", {"Canvix.exe"})), Meaning::Hang);
  EXPECT_EQ(meaning(report("MoAppHang", {"canvix_1"})), Meaning::Hang);
  EXPECT_EQ(meaning(report("RADAR_PRE_LEAK_64", {"Canvix.exe"})), Meaning::Leak);
  EXPECT_EQ(meaning(report("LiveKernelEvent", {"1b8"})), Meaning::Hardware);
  EXPECT_EQ(meaning(report("StoreAgent", {"Canvix.exe"})), Meaning::Other);
  EXPECT_EQ(meaning(report("APPCRASH", {"Canvix_1"})), Meaning::Other);
  EXPECT_EQ(meaning(report("MoAppCrash", {"Other_1", "praid:Canvix"})), Meaning::Other);
  const ProgramFailure hang = programFailure(report("AppHangXProcB1", {"Canvix.exe", "29.5", "", "a1ad"}).read());
  EXPECT_EQ(hang.hangKind, "Cross-process");
  EXPECT_EQ(hang.module, "");
}

TEST(ErrorReport, SentAgainMeansNothing) {
  SampleEvent event = report("APPCRASH", {"Canvix.exe", "29.5"});
  event.fields.insert(event.fields.begin(), "Rechecking=1");
  EXPECT_EQ(event.read().meaning, Meaning::Other);
  EXPECT_EQ(eventWords(event.read(), {}), "Error report APPCRASH, sent again: Canvix.exe 29.5");
}

TEST(Runtime, NamesTheProgramInItsFirstLineAndTheException) {
  SampleEvent event{".NET Runtime",
                    1026,
                    {"Anwendung: Canvix.exe\r\nFramework Version: v4\nException Info: System.Exception: Bad: so\n"}};
  EXPECT_EQ(event.read().meaning, Meaning::Crash);
  EXPECT_EQ(programFailure(event.read()).teller, Teller::Runtime);
  EXPECT_EQ(programFailure(event.read()).exceptionName, "System.Exception");
  const std::string other = "Application: Other.exe\nException Info: Canvix.exe: x";
  EXPECT_EQ((SampleEvent{".NET Runtime", 1026, {other}}.read().meaning), Meaning::Other);
}

TEST(Runtime, TellsOfAnErrorWithinItself) {
  const std::string text = "Application: Canvix.exe\nDescription: at IP 0x7 (0x8) with exit code 0x80131506.\n";
  const EventRecord event = SampleEvent{".NET Runtime", 1023, {text}}.read();
  EXPECT_EQ(event.meaning, Meaning::Crash);
  EXPECT_EQ(programFailure(event).exception, 0x80131506);
}

TEST(Popup, OfACrashIsToldFromOthersByItsAddresses) {
  const auto popup = [](const std::string& caption, const std::string& message) {
    return SampleEvent{"Application Popup", 26, {"Caption=" + caption, "Message=" + message}}.read();
  };
  const std::string unhandled = "The exception Breakpoint (0x80000003) occurred at location 0x00007FF8.";
  const EventRecord crashed = popup("Canvix.exe - Anwendungsfehler", unhandled);
  EXPECT_EQ(crashed.meaning, Meaning::Crash);
  EXPECT_EQ(programFailure(crashed).teller, Teller::Popup);
  EXPECT_EQ(programFailure(crashed).exception, 0x80000003);
  const std::string access = "The instruction at 0x00007FF8 referenced memory at 0x0000.";
  EXPECT_EQ(programFailure(popup("Canvix.exe - Application Error", access)).exception, std::nullopt);
  EXPECT_EQ(popup("Canvix.exe - Bad Image", "a.dll is not for Windows. Status 0xc000012f.").meaning, Meaning::Other);
  EXPECT_EQ(popup("Other.exe - Canvix.exe", unhandled).meaning, Meaning::Other);
}

}  // namespace sentiq
