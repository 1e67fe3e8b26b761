// sentiq-logs: from the log files to plain text, a timeline, a summary, a page.
#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "reader/ExitCode.h"
#include "reader/console/Console.h"
#include "reader/input/Progress.h"
#include "reader/session/LogSet.h"
#include "reader/views/DecodeCommand.h"
#include "reader/views/HtmlReport.h"
#include "reader/views/MetricsTable.h"
#include "reader/views/Summary.h"
#include "reader/views/Timeline.h"
#include "reader/views/TriageCommand.h"

namespace sentiq {
namespace {

// Progress is for eyes: not when messages go elsewhere, and not between the lines of output on the same terminal.
Progress progressFor(bool outputIsText) {
  return Progress(messagesAreTerminal() && !(outputIsText && outputIsTerminal()) ? &std::cerr : nullptr);
}

void needFiles(const std::vector<std::string>& files) {
  if (files.empty() || std::count(files.begin(), files.end(), "-") > 0) {
    throw CLI::ValidationError("--follow", "needs files, not standard input");
  }
}

void addDecode(CLI::App& app, int& exitCode) {
  CLI::App* const command = app.add_subcommand("decode", "Write logs as plain text, line by line");
  const auto options = std::make_shared<DecodeOptions>();
  command->add_option("FILE", options->files, "Logs; none or - is standard input");
  command->add_flag("-f,--follow", options->follow, "Go on as the files grow, are emptied or appear; end with Ctrl-C");
  command->add_flag_function(
      "--names,!--no-names", [options](std::int64_t given) { options->names = given > 0; },
      "Begin each line with its file's name (default: with more than one file)");
  command->footer(
      "Examples:\n"
      "  sentiq-logs decode CanvixWatchdogInfoSession.log | less\n"
      "  sentiq-logs decode --follow logs/CanvixSentiqSession.log logs/CanvixWatchdogInfoSession.log");
  command->callback([options, &exitCode] {
    options->colour = colourWanted();
    Progress progress = progressFor(/*outputIsText=*/true);
    if (options->follow) {
      needFiles(options->files);
    }
    static const std::atomic<bool> never{false};  // Without --follow, Ctrl-C ends the process by itself.
    exitCode =
        decodeLogs(*options, std::cin, std::cout, std::cerr, progress, options->follow ? stopRequested() : never);
  });
}

void addInputs(CLI::App* command, std::vector<std::string>& inputs) {
  command->add_option("FILE", inputs, "Logs, or folders with logs (*.log, taken by what they hold)")->required();
}

LogSet readWithProgress(const std::vector<std::string>& inputs, Keep keep) {
  Progress progress = progressFor(/*outputIsText=*/false);
  return readLogs(findLogs(inputs), std::cin, progress, keep);
}

// Damage does not keep the others from being shown, but scripts want to know.
int exitCodeOf(const LogSet& logs) {
  int code = logs.files.empty() ? exitFailed : exitGood;
  if (logs.files.empty()) {
    std::cerr << "sentiq-logs: no logs found\n";
  }
  for (const LogFileInfo& file : logs.files) {
    if (!file.readable) {
      std::cerr << "sentiq-logs: " << file.name << ": cannot be read\n";
      code = exitFailed;
    } else if (file.damagedLines > 0 && code == exitGood) {
      code = exitDamaged;
    }
  }
  return code;
}

void addTimeline(CLI::App& app, int& exitCode) {
  struct Options {
    std::vector<std::string> inputs;
    std::string since;
    std::string until;
    bool follow = false;
    TimelineOptions timeline;
  };
  CLI::App* const command = app.add_subcommand("timeline", "All logs in time order, one readable line per entry");
  const auto options = std::make_shared<Options>();
  addInputs(command, options->inputs);
  const auto isTime = [](const std::string& text) {
    return parseLocalTime(text) ? std::string{} : "not a time like 2025-01-31 or 2025-01-31T14:05:09";
  };
  command->add_option("--since", options->since, "Leave out what is before this local time")->check(isTime);
  command->add_option("--until", options->until, "Leave out what is after this local time")->check(isTime);
  command
      ->add_option("--source", options->timeline.sources,
                   "Only these: session, watchdog, initial, or an event channel such as System (comma-separated)")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_flag("--json", options->timeline.json, "One JSON object per line");
  command->add_flag("-f,--follow", options->follow,
                    "Go on as the logs grow, are emptied or appear, in the order in which lines come; end with Ctrl-C");
  command->footer(
      "Examples:\n"
      "  sentiq-logs timeline --since 2025-01-31T14:00 --source system,application logs/\n"
      "  sentiq-logs timeline --follow logs/");
  command->callback([options, &exitCode] {
    options->timeline.colour = colourWanted();
    options->timeline.since = parseLocalTime(options->since);
    options->timeline.until = parseLocalTime(options->until);
    if (options->follow) {
      needFiles(options->inputs);
      followTimeline(options->inputs, options->timeline, std::cout, stopRequested());
      return;
    }
    const LogSet logs = readWithProgress(options->inputs, Keep::AllEvents);
    writeTimeline(logs, options->timeline, std::cout);
    exitCode = exitCodeOf(logs);
  });
}

void addSummary(CLI::App& app, int& exitCode) {
  struct Options {
    std::vector<std::string> inputs;
    bool json = false;
  };
  CLI::App* const command = app.add_subcommand("summary", "What happened, in one line, and the figures behind it");
  const auto options = std::make_shared<Options>();
  addInputs(command, options->inputs);
  command->add_flag("--json", options->json, "One JSON object per session");
  command->footer("Example:\n  sentiq-logs summary --json logs/ | jq -r .outcome");
  command->callback([options, &exitCode] {
    const LogSet logs = readWithProgress(options->inputs, Keep::WhatMatters);
    if (options->json) {
      for (const Session& session : logs.sessions) {
        std::cout << summaryJson(summarize(logs, session)) << '\n';
      }
    } else {
      std::cout << summaryText(logs, colourWanted());
    }
    exitCode = exitCodeOf(logs);
  });
}

void addTriage(CLI::App& app, int& exitCode) {
  CLI::App* const command = app.add_subcommand("triage", "Many sessions, grouped by what ended them");
  const auto options = std::make_shared<TriageOptions>();
  command->add_option("FOLDER", options->inputs, "Folders of any depth with logs (*.log, taken by what they hold)")
      ->required();
  command->add_option("--top", options->top, "How many groups to show; 0 shows all")->capture_default_str();
  command->add_flag("--json", options->json, "One JSON object per session");
  command->footer("Example:\n  sentiq-logs triage --top 5 collected/");
  command->callback([options, &exitCode] {
    options->width = outputWidth();
    exitCode =
        triageLogs(*options, std::cout, std::cerr, messagesAreTerminal() ? &std::cerr : nullptr, stopRequested());
  });
}

void addReport(CLI::App& app, int& exitCode) {
  struct Options {
    std::vector<std::string> inputs;
    std::string output;
  };
  CLI::App* const command = app.add_subcommand("report", "One self-contained HTML page");
  const auto options = std::make_shared<Options>();
  addInputs(command, options->inputs);
  command->add_option("-o,--output", options->output, "The page to write")->required();
  command->footer("Example:\n  sentiq-logs report logs/ -o session.html");
  command->callback([options, &exitCode] {
    const LogSet logs = readWithProgress(options->inputs, Keep::RawLines);
    std::ofstream page(pathFromText(options->output), std::ios::binary);
    writeHtmlReport(logs, page);
    page.close();
    exitCode = exitCodeOf(logs);
    if (!page) {
      std::cerr << "sentiq-logs: " << options->output << ": cannot be written\n";
      exitCode = exitFailed;
    }
  });
}

void addMetrics(CLI::App& app, int& exitCode) {
  struct Options {
    std::vector<std::string> inputs;
    bool csv = false;
    bool json = false;
  };
  CLI::App* const command = app.add_subcommand("metrics", "The ten-second records as a table, with units");
  const auto options = std::make_shared<Options>();
  addInputs(command, options->inputs);
  CLI::Option* const csv = command->add_flag("--csv", options->csv, "Comma-separated, with a header line");
  command->add_flag("--json", options->json, "One JSON object per line")->excludes(csv);
  command->footer("Example:\n  sentiq-logs metrics --csv CanvixSentiqSession.log > records.csv");
  command->callback([options, &exitCode] {
    const LogSet logs = readWithProgress(options->inputs, Keep::WhatMatters);
    writeMetrics(logs, options->csv ? TableForm::Csv : options->json ? TableForm::Json : TableForm::Text, std::cout);
    exitCode = exitCodeOf(logs);
  });
}

int run(std::vector<std::string> arguments) {
  CLI::App app("Reads the logs of CanvixSentiq.", "sentiq-logs");
  app.footer(
      "Examples:\n"
      "  sentiq-logs summary logs/\n"
      "  sentiq-logs report logs/ -o session.html\n"
      "  sentiq-logs timeline --help\n\n"
      "Exit codes:\n"
      "  0  all was read\n"
      "  1  something was damaged or unfinished; everything else was read\n"
      "  2  wrong arguments, a file that cannot be read, output that cannot be written");
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // Else a path that begins with a slash is taken for an option.
  int exitCode = exitGood;
  addDecode(app, exitCode);
  addTimeline(app, exitCode);
  addSummary(app, exitCode);
  addTriage(app, exitCode);
  addReport(app, exitCode);
  addMetrics(app, exitCode);
  std::reverse(arguments.begin(), arguments.end());  // The order that the parser takes a vector in.
  try {
    app.parse(arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? exitGood : exitFailed;
  }
  if (!std::cout.flush()) {
    std::cerr << "sentiq-logs: the output cannot be written\n";
    return exitFailed;
  }
  return exitCode;
}

}  // namespace
}  // namespace sentiq

int main(int argc, char** argv) {
  try {
    sentiq::prepareConsole();
    return sentiq::run(sentiq::consoleArguments(argc, argv));
  } catch (const std::exception& error) {
    std::cerr << "sentiq-logs: " << error.what() << '\n';
    return sentiq::exitFailed;
  }
}
