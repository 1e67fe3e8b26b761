#include "reader/events/EventFacts.h"
#include "tests/reader/events/SampleEvents.h"

namespace sentiq {

static const std::string kernelPower = "Microsoft-Windows-Kernel-Power";
static const std::string kernelGeneral = "Microsoft-Windows-Kernel-General";

TEST(BlueScreen, TellsItsStopCodeInAnyForm) {
  const SampleEvent decimal{kernelPower, 41, {{"BugcheckCode", "313"}}};
  const SampleEvent inText{"BugCheck", 1001, {{"", "0x0000003b (0x1, 0x2)"}, {"", "C:\\M.DMP"}, {"", "r-1"}}};
  const SampleEvent reported = report("BlueScreen", {"50", "1"});
  for (const SampleEvent* const event : {&decimal, &inText, &reported}) {
    EXPECT_EQ(event->read().meaning, Meaning::BlueScreen) << event->xml();
  }
  EXPECT_EQ(machineFall(decimal.read()).stopCode, 313);
  EXPECT_EQ(machineFall(inText.read()).stopCode, 0x3B);
  EXPECT_EQ(machineFall(reported.read()).stopCode, 0x50);
}

TEST(BlueScreen, NamesItsDumpAndReport) {
  const SampleEvent event{"Microsoft-Windows-WER-SystemErrorReporting",
                          1001,
                          {{"param1", "0x3b (0x1)"}, {"param2", "C:\\M.DMP"}, {"param3", "r-1"}}};
  const MachineFall fall = machineFall(event.read());
  EXPECT_EQ(fall.dump, "C:\\M.DMP");
  EXPECT_EQ(fall.reportId, "r-1");
  EXPECT_FALSE(fall.isErrorReport);
  const MachineFall reported = machineFall(report("BlueScreen", {"50"}).read());
  EXPECT_EQ(reported.dump, "\\\\?\\C:\\a.tmp.mdmp");
  EXPECT_EQ(reported.reportId, "r-1");
  EXPECT_TRUE(reported.isErrorReport);
}

TEST(PowerLoss, TellsOfSleepStandbyAndButton) {
  const auto fall = [](const std::string& field, const std::string& value) {
    SampleEvent event{kernelPower,
                      41,
                      {{field, value},
                       {"BugcheckCode", "0"},
                       {"SleepInProgress", "0"},
                       {"PowerButtonTimestamp", "0"},
                       {"ConnectedStandbyInProgress", "false"}}};
    EXPECT_EQ(event.read().meaning, Meaning::PowerLoss);
    return machineFall(event.read());
  };
  const auto flags = [](const MachineFall& fall) {
    return std::string(fall.stopCode ? "stop " : "") + (fall.asleep ? "asleep " : "") +
           (fall.inStandby ? "standby " : "") + (fall.powerButton ? "button " : "") + (fall.buttonPressed ? "at" : "");
  };
  EXPECT_EQ(flags(fall("SleepInProgress", "0x0")), "");
  EXPECT_EQ(flags(fall("SleepInProgress", "4")), "asleep ");
  EXPECT_EQ(flags(fall("ConnectedStandbyInProgress", "true")), "standby ");
  EXPECT_EQ(flags(fall("LongPowerButtonPressDetected", "true")), "button ");
  EXPECT_EQ(flags(fall("PowerButtonTimestamp", "130849833260468750")), "button at");
  EXPECT_EQ(fall("PowerButtonTimestamp", "130849833260468750").buttonPressed, at("2015-08-25T13:35:26.046875Z"));
}

TEST(Clock, TellsBothTimesAndWhetherSomebodySetIt) {
  SampleEvent event{
      kernelGeneral, 1, {{"NewTime", "2025-01-31T15:00:05Z"}, {"OldTime", "2025-01-31T13:00:05Z"}, {"Reason", "1"}}};
  EXPECT_EQ(event.read().meaning, Meaning::Clock);
  const ClockSet set = clockSet(event.read()).value();
  EXPECT_EQ(set.to - set.from, 2h);
  EXPECT_FALSE(set.readAnew);
  event.fields[2].second = "2";
  EXPECT_TRUE(clockSet(event.read())->readAnew);
  event.fields.erase(event.fields.begin());
  EXPECT_FALSE(clockSet(event.read()));
}

TEST(Sleep, BeginsAtItsEventAndTellsKindAndReason) {
  SampleEvent event{kernelPower, 42, {{"TargetState", "4"}, {"EffectiveState", "4"}, {"Reason", "7"}}};
  EXPECT_EQ(event.read().meaning, Meaning::Sleep);
  EXPECT_EQ(sleepTold(event.read()).kind, SleepKind::Sleep);
  EXPECT_EQ(sleepTold(event.read()).begin, at(event.time));
  EXPECT_EQ(sleepTold(event.read()).end, std::nullopt);
  EXPECT_FALSE(sleepTold(event.read()).batteryEmpty);
  event.fields[1].second = "5";
  event.fields[2].second = "2";
  EXPECT_EQ(sleepTold(event.read()).kind, SleepKind::Hibernation);
  EXPECT_TRUE(sleepTold(event.read()).batteryEmpty);
  event.fields = {{"TargetState", "5"}};
  EXPECT_EQ(sleepTold(event.read()).kind, SleepKind::Hibernation);
}

TEST(Sleep, EndsWhenItsEndTellsBothTimes) {
  SampleEvent event{"Microsoft-Windows-Power-Troubleshooter",
                    1,
                    {{"SleepTime", "2025-01-31T11:00:00Z"}, {"WakeTime", "2025-01-31T12:00:00Z"}}};
  EXPECT_EQ(event.read().meaning, Meaning::Resume);
  EXPECT_EQ(sleepTold(event.read()).begin, at("2025-01-31T11:00:00Z"));
  EXPECT_EQ(sleepTold(event.read()).end, at("2025-01-31T12:00:00Z"));
  event.fields.emplace_back("EffectiveState", "5");
  EXPECT_EQ(sleepTold(event.read()).kind, SleepKind::Hibernation);
  const SampleEvent bare{kernelPower, 107, {{"TargetState", "5"}}};
  EXPECT_EQ(bare.read().meaning, Meaning::Resume);
  EXPECT_EQ(sleepTold(bare.read()).kind, SleepKind::Hibernation);
  EXPECT_EQ(sleepTold(bare.read()).begin, std::nullopt);
  EXPECT_EQ(sleepTold(bare.read()).end, at(bare.time));
}

TEST(Standby, TellsItsBeginByItsDuration) {
  const SampleEvent begun{kernelPower, 506, {{"Reason", "12"}}};
  EXPECT_EQ(begun.read().meaning, Meaning::StandbyBegun);
  EXPECT_EQ(sleepTold(begun.read()).begin, at(begun.time));
  SampleEvent ended{kernelPower, 507, {{"DurationInUs", "60000000"}, {"Reason", "53"}}};
  EXPECT_EQ(ended.read().meaning, Meaning::StandbyEnded);
  const SleepTold told = sleepTold(ended.read());
  EXPECT_EQ(told.kind, SleepKind::Standby);
  EXPECT_EQ(told.begin, at(ended.time) - 1min);
  EXPECT_EQ(told.end, at(ended.time));
  EXPECT_TRUE(told.batteryEmpty);
  ended.fields = {{"DurationInUs", "18446744073709551615"}, {"Reason", "2"}};
  EXPECT_EQ(sleepTold(ended.read()).begin, std::nullopt);
  EXPECT_FALSE(sleepTold(ended.read()).batteryEmpty);
}

TEST(Boot, TellsItsTimeAndTheBuildOfWindows) {
  SampleEvent started{kernelGeneral,
                      12,
                      {{"MajorVersion", "10"},
                       {"MinorVersion", "0"},
                       {"BuildVersion", "17134"},
                       {"QfeVersion", "137"},
                       {"StartTime", "2025-01-31T12:29:00Z"}}};
  EXPECT_EQ(started.read().meaning, Meaning::Boot);
  EXPECT_EQ(bootTime(started.read()), at("2025-01-31T12:29:00Z"));
  EXPECT_EQ(windowsBuild(started.read()), "10.0.17134.137");
  started.fields.erase(started.fields.begin() + 3);
  EXPECT_EQ(windowsBuild(started.read()), "10.0.17134");
  const SampleEvent named{"EventLog", 6009, {{"", "6.01."}, {"", "7601"}, {"", "Service Pack 1"}, {"", "Free"}}};
  EXPECT_EQ(windowsBuild(named.read()), "6.1.7601");
  const SampleEvent logStarted{"EventLog", 6005, {}};
  EXPECT_EQ(logStarted.read().meaning, Meaning::Boot);
  EXPECT_EQ(bootTime(logStarted.read()), at(logStarted.time));
  EXPECT_EQ(windowsBuild(logStarted.read()), "");
}

TEST(Change, NamesWhatWasInstalledOrRemoved) {
  const auto product = [](int id, const std::string& status) {
    return SampleEvent{"MsiInstaller", id, {{"", "Brushes"}, {"", "2.0"}, {"", "1033"}, {"", status}, {"", "Maker"}}};
  };
  const auto message = [](int id, const std::string& text) { return SampleEvent{"MsiInstaller", id, {{"", text}}}; };
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
      {{update, 19, {{"updateTitle", "Brushes"}}}, "update Brushes"},
      {{update, 20, {{"updateTitle", "Brushes"}, {"errorCode", "0x8024001e"}}}, "update Brushes, failed"},
      {driver("0x00000000"), "driver Brushes 2.0"},
      {driver("0xe0000203"), "driver Brushes 2.0, failed"},
      {{"Service Control Manager", 7045, {{"ServiceName", "Brushes"}, {"ImagePath", "\\drivers\\b.SYS"}}},
       "driver Brushes"},
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
  const SampleEvent service{"Service Control Manager", 7045, {{"ServiceName", "s"}, {"ImagePath", "C:\\s.exe"}}};
  EXPECT_EQ(service.read().meaning, Meaning::Other);
}

}  // namespace sentiq
