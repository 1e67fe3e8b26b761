#include "startup/LaunchOptions.h"

#include <locale>

#include <boost/program_options.hpp>

#include "logging/Utf8Facet.h"

namespace sentiq {
namespace {

namespace po = boost::program_options;

// Behind the wide parser, the library passes narrow values through the global locale's conversion. This makes
// that conversion UTF-8 for as long as the object lives.
class Utf8GlobalLocale {
 public:
  Utf8GlobalLocale() : previous_(std::locale::global(std::locale(std::locale(), new Utf8Facet))) {}
  ~Utf8GlobalLocale() { std::locale::global(previous_); }
  Utf8GlobalLocale(const Utf8GlobalLocale&) = delete;
  Utf8GlobalLocale& operator=(const Utf8GlobalLocale&) = delete;
  Utf8GlobalLocale(Utf8GlobalLocale&&) = delete;
  Utf8GlobalLocale& operator=(Utf8GlobalLocale&&) = delete;

 private:
  std::locale previous_;
};

po::options_description describeOptions() {
  po::options_description description("Allowed options");
  auto add = description.add_options();
  add("help", "Produce help message");
  add("analytics-identifier", po::value<std::string>(), "lumero/orbel session id");
  add("pid", po::value<std::int32_t>(), "process id to monitor");
  add("cr-detached-mode", po::bool_switch(), "CR detached mode");
  add("logs-path", po::wvalue<std::wstring>(), "CanvixSentiq.log file path where we can write app logs");
  add("sentiq-logs-path", po::wvalue<std::wstring>(),
      "CanvixSentiqSession.log file path where we can write diagnostic logs");
  add("watchdog-logs-path", po::wvalue<std::wstring>(),
      "CanvixWatchdogInfoSession.log file path where we can write watchdog logs");
  add("watchdog-initial-logs-path", po::wvalue<std::wstring>(),
      "CanvixWatchdogInfoInitialSession.log file path where we can write initial watchdog logs");
  add("forcequit-log-path", po::wvalue<std::wstring>(),
      "ForceQuit.log file path where we write force quit related information");
  add("last-abnormal-session-id", po::value<std::string>(), "last session id if it was abnormal");
  add("encode-logs", po::value<bool>()->default_value(true), "Flag to encode logs");
  return description;
}

template <typename Value>
void copyIfGiven(const po::variables_map& given, const char* option, Value& field) {
  if (given.count(option) != 0) {
    field = given[option].as<Value>();
  }
}

}  // namespace

CommandLine parseCommandLine(const std::vector<std::wstring>& tokens) {
  const Utf8GlobalLocale utf8;
  const po::options_description description = describeOptions();
  // Without a list of positional options, an empty one too, the library skips tokens that belong to no option.
  const po::positional_options_description noPositionals;

  po::variables_map given;
  po::store(po::wcommand_line_parser(tokens).options(description).positional(noPositionals).run(), given);
  po::notify(given);

  CommandLine result;
  if (given.count("help") != 0) {
    result.exitCode = 0;
    return result;
  }
  LaunchOptions& options = result.options;
  copyIfGiven(given, "analytics-identifier", options.analyticsIdentifier);
  if (given.count("pid") == 0) {
    result.exitCode = 1;
    return result;
  }
  copyIfGiven(given, "pid", options.pid);
  copyIfGiven(given, "logs-path", options.logPath);
  copyIfGiven(given, "sentiq-logs-path", options.sessionLogPath);
  copyIfGiven(given, "forcequit-log-path", options.forceQuitLogPath);
  copyIfGiven(given, "watchdog-logs-path", options.watchdogLogPath);
  copyIfGiven(given, "watchdog-initial-logs-path", options.initialWatchdogLogPath);
  copyIfGiven(given, "last-abnormal-session-id", options.lastAbnormalSessionId);
  copyIfGiven(given, "encode-logs", options.encodeLogs);
  copyIfGiven(given, "cr-detached-mode", result.crashReporterDetached);
  return result;
}

}  // namespace sentiq
