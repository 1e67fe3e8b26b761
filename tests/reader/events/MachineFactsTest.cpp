#include "reader/events/CodeWords.h"
#include "reader/events/EventFacts.h"
#include "tests/reader/events/SampleEvents.h"

namespace sentiq {

static const std::string kernelGeneral = "Microsoft-Windows-Kernel-General";

TEST(BlueScreen, TellsStopCodeDumpAndReportInAnyForm) {
  const auto fall = [](const SampleEvent& event) {
    EXPECT_EQ(event.read().meaning, Meaning::BlueScreen);
    const MachineFall facts = machineFall(event.read());
    return showHex(facts.stopCode.value()) + ' ' + facts.dump + ' ' + facts.reportId +
           (facts.isErrorReport ? ", reported" : "");
  };
  EXPECT_EQ(fall({kernelPower, 41, {"BugcheckCode=313"}}), "0x139  ");
  EXPECT_EQ(fall({"BugCheck", 1001, {"0x0000003b (0x1, 0x2)", "M.DMP", "r-1"}}), "0x3b M.DMP r-1");
  EXPECT_EQ(fall({"Microsoft-Windows-WER-SystemErrorReporting", 1001, {"param1=0x3b (0x1)", "param3=r-1"}}),
            "0x3b  r-1");
  EXPECT_EQ(fall(report("BlueScreen", {"50", "1"})), "0x50 \\\\?\\C:\\a.tmp.mdmp r-1, reported");
}

TEST(PowerLoss, TellsOfSleepStandbyAndButton) {
  const auto fall = [](const std::string& field, const std::string& value) {
    SampleEvent event{kernelPower,
                      41,
                      {field + "=" + value, "BugcheckCode=0", "SleepInProgress=0", "PowerButtonTimestamp=0",
                       "ConnectedStandbyInProgress=false"}};
    EXPECT_EQ(event.read().meaning, Meaning::PowerLoss);
    return machineFall(event.read());
  };
  const auto flags = [](const MachineFall& facts) {
    return std::string(facts.stopCode ? "stop " : "") + (facts.asleep ? "asleep " : "") +
           (facts.inStandby ? "standby " : "") + (facts.powerButton ? "button " : "") +
           (facts.buttonPressed ? "at" : "");
  };
  EXPECT_EQ(flags(fall("SleepInProgress", "0x0")), "");
  EXPECT_EQ(flags(fall("SleepInProgress", "4")), "asleep ");
  EXPECT_EQ(flags(fall("ConnectedStandbyInProgress", "true")), "standby ");
  EXPECT_EQ(flags(fall("LongPowerButtonPressDetected", "true")), "button ");
  EXPECT_EQ(flags(fall("PowerButtonTimestamp", "130849833260468750")), "button at");
  EXPECT_EQ(fall("PowerButtonTimestamp", "130849833260468750").buttonPressed, at("2015-08-25T13:35:26.046875Z"));
}

TEST(Clock, TellsBothTimesAndWhetherSomebodySetIt) {
  SampleEvent event{kernelGeneral, 1, {"NewTime=2025-01-31T15:00:05Z", "OldTime=2025-01-31T13:00:05Z", "Reason=1"}};
  EXPECT_EQ(event.read().meaning, Meaning::Clock);
  const ClockSet set = clockSet(event.read()).value();
  EXPECT_EQ(set.to - set.from, 2h);
  EXPECT_FALSE(set.readAnew);
  event.fields[2] = "Reason=2";
  EXPECT_TRUE(clockSet(event.read())->readAnew);
  event.fields.erase(event.fields.begin());
  EXPECT_FALSE(clockSet(event.read()));
}

// Kind, begin and end; "battery" when it was empty.
static std::string told(const SampleEvent& event) {
  const SleepTold sleep = sleepTold(event.read());
  const auto time = [](std::optional<Instant> t) { return t ? showTime(*t, {}).substr(11, 8) : "?"; };
  return std::string(sleep.kind == SleepKind::Sleep     ? "sleep "
                     : sleep.kind == SleepKind::Standby ? "standby "
                                                        : "deep ") +
         time(sleep.begin) + " to " + time(sleep.end) + (sleep.batteryEmpty ? ", battery" : "");
}

TEST(Sleep, BeginsAtItsEventAndTellsKindAndReason) {
  EXPECT_EQ(told({kernelPower, 42, {"TargetState=4", "EffectiveState=4", "Reason=7"}}), "sleep 12:30:00 to ?");
  EXPECT_EQ(told({kernelPower, 42, {"TargetState=4", "EffectiveState=5", "Reason=2"}}), "deep 12:30:00 to ?, battery");
  EXPECT_EQ(told({kernelPower, 42, {"TargetState=5"}}), "deep 12:30:00 to ?");
}

TEST(Sleep, EndsWhenItsEndTellsBothTimes) {
  SampleEvent event{
      "Microsoft-Windows-Power-Troubleshooter", 1, {"SleepTime=2025-01-31T11:00:00Z", "WakeTime=2025-01-31T12:00:00Z"}};
  EXPECT_EQ(event.read().meaning, Meaning::Resume);
  EXPECT_EQ(told(event), "sleep 11:00:00 to 12:00:00");
  event.fields.push_back("EffectiveState=5");
  EXPECT_EQ(told(event), "deep 11:00:00 to 12:00:00");
  EXPECT_EQ(told({kernelPower, 107, {"TargetState=5"}}), "deep ? to 12:30:00");
  EXPECT_EQ(told({kernelPower, 107, {}}), "sleep ? to 12:30:00");
}

TEST(Standby, TellsItsBeginByItsDuration) {
  const SampleEvent begun{kernelPower, 506, {"Reason=12"}};
  EXPECT_EQ(begun.read().meaning, Meaning::StandbyBegun);
  EXPECT_EQ(told(begun), "standby 12:30:00 to ?");
  EXPECT_EQ(told({kernelPower, 507, {"DurationInUs=60000000", "Reason=53"}}), "standby 12:29:00 to 12:30:00, battery");
  EXPECT_EQ(told({kernelPower, 507, {"DurationInUs=18446744073709551615", "Reason=2"}}), "standby ? to 12:30:00");
}

TEST(Boot, TellsItsTimeAndTheBuildOfWindows) {
  const auto boot = [](const SampleEvent& event) {
    EXPECT_EQ(event.read().meaning, Meaning::Boot);
    return showTime(bootTime(event.read()).value(), {}).substr(11, 8) + ' ' + windowsBuild(event.read());
  };
  EXPECT_EQ(boot({kernelGeneral,
                  12,
                  {"MajorVersion=10", "MinorVersion=0", "BuildVersion=17134", "QfeVersion=137",
                   "StartTime=2025-01-31T12:29:00Z"}}),
            "12:29:00 10.0.17134.137");
  EXPECT_EQ(boot({kernelGeneral, 12, {"MajorVersion=10", "MinorVersion=0", "BuildVersion=17134"}}),
            "12:30:00 10.0.17134");
  EXPECT_EQ(boot({"EventLog", 6009, {"6.01.", "7601", "Service Pack 1"}}), "12:30:00 6.1.7601");
  EXPECT_EQ(boot({"EventLog", 6005, {}}), "12:30:00 ");
}

TEST(Change, NamesWhatWasInstalledOrRemoved) {
  const auto product = [](int id, const std::string& status) {
    return SampleEvent{"MsiInstaller", id, {"Brushes", "2.0", "1033", status, "Maker"}};
  };
  const auto message = [](int id, const std::string& text) { return SampleEvent{"MsiInstaller", id, {text}}; };
  const auto driver = [](const std::string& status) {
    return SampleEvent{"Microsoft-Windows-UserPnp",
                       20001,
                       {},
                       "2025-01-31T12:30:00Z",
                       4,
                       "<InstallDeviceID><DriverVersion>2.0</DriverVersion><InstallStatus>" + status +
                           "</InstallStatus><DriverDescription>Brushes</DriverDescription></InstallDeviceID>"};
  };
  const std::string update = "Microsoft-Windows-WindowsUpdateClient";
  const struct {
    SampleEvent event;
    std::string change;
  } cases[]{
      {{update, 19, {"updateTitle=Brushes"}}, "update Brushes"},
      {{update, 20, {"updateTitle=Brushes", "errorCode=0x8024001e"}}, "update Brushes, failed"},
      {driver("0x00000000"), "driver Brushes 2.0"},
      {driver("0xe0000203"), "driver Brushes 2.0, failed"},
      {{"Service Control Manager", 7045, {"ServiceName=Brushes", "ImagePath=\\drivers\\b.SYS"}}, "driver Brushes"},
      {product(1033, "0"), "program installed Brushes 2.0"},
      {product(1033, "3010"), "program installed Brushes 2.0"},
      {product(1033, "1603"), "program installed Brushes 2.0, failed"},
      {product(1034, "0"), "program removed Brushes 2.0"},
      {product(1034, "1603"), "program removed Brushes 2.0, failed"},
      {message(11707, "Produkt: Brushes: two -- Installation beendet."), "program installed Brushes: two"},
      {message(11724, "Product: Brushes -- Removal completed successfully."), "program removed Brushes"},
  };
  for (const auto& [event, expected] : cases) {
    const EventRecord record = event.read();
    const MachineChange change = machineChange(record);
    EXPECT_EQ(record.meaning, Meaning::Change) << expected;
    EXPECT_EQ(std::string(changeName(change.kind)) + ' ' + change.name + (change.version.empty() ? "" : " ") +
                  change.version + (change.failed ? ", failed" : ""),
              expected);
  }
  const SampleEvent service{"Service Control Manager", 7045, {"ServiceName=s", "ImagePath=C:\\s.exe"}};
  EXPECT_EQ(service.read().meaning, Meaning::Other);
}

}  // namespace sentiq
