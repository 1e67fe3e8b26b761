// sentiq-logs: from the log files to plain text, a timeline, a summary, a page.
#include <algorithm>
#include <cstdint>
#include <exception>
#include <fstream>
#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "reader/commands/Decode.h"
#include "reader/commands/ExitCode.h"
#include "reader/commands/TriageCommand.h"
#include "reader/console/Console.h"
#include "reader/input/Progress.h"
#include "reader/session/LogSet.h"
#include "reader/views/HtmlReport.h"
#include "reader/views/MetricsTable.h"
#include "reader/views/Summary.h"
#include "reader/views/Timeline.h"

namespace sentiq {
namespace {

// What the user asks for, whichever the command is.
struct Request {
  std::vector<std::string> inputs;
  bool follow = false;
  bool json = false;
  bool csv = false;
  std::string output;
  DecodeOptions decode;
  TimelineOptions timeline;
  TriageOptions triage;
  int exitCode = exitGood;
};

// Progress is for eyes: not when messages go elsewhere, and not between the lines of output on the same terminal.
Progress progressFor(bool outputIsText) {
  return Progress(messagesAreTerminal() && !(outputIsText && outputIsTerminal()) ? &std::cerr : nullptr);
}

void needFiles(const std::vector<std::string>& files) {
  if (files.empty() || std::count(files.begin(), files.end(), "-") > 0) {
    throw CLI::ValidationError("--follow", "needs files, not standard input");
  }
}

void addDecode(CLI::App& app, Request& request) {
  CLI::App* const command = app.add_subcommand("decode", "Write logs as plain text, line by line");
  DecodeOptions& options = request.decode;
  command->add_option("FILE", options.files, "Logs; none or - is standard input");
  command->add_flag("-f,--follow", request.follow, "Go on as the files grow, are emptied or appear; end with Ctrl-C");
  command->add_flag_function(
      "--names,!--no-names", [&options](std::int64_t given) { options.names = given > 0; },
      "Begin each line with its file's name (default: with more than one file)");
  command->footer(
      "Examples:\n"
      "  sentiq-logs decode CanvixWatchdogInfoSession.log | less\n"
      "  sentiq-logs decode --follow logs/CanvixSentiqSession.log logs/CanvixWatchdogInfoSession.log");
  command->callback([&request, &options] {
    Progress progress = progressFor(/*outputIsText=*/true);
    options.colour = colourWanted();
    if (request.follow) {
      needFiles(options.files);
      options.follow = &stopRequested();  // Else Ctrl-C ends the process by itself.
    }
    request.exitCode = decodeLogs(options, std::cin, std::cout, std::cerr, progress);
  });
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
    }
    code = std::max<int>(code, !file.readable ? exitFailed : file.damagedLines > 0 ? exitDamaged : exitGood);
  }
  return code;
}

// A command that reads all logs and then writes what it has to say.
CLI::App* addView(CLI::App& app, Request& request, const char* name, const char* description, Keep keep,
                  const std::function<void(const LogSet&)>& write) {
  CLI::App* const command = app.add_subcommand(name, description);
  command->add_option("FILE", request.inputs, "Logs, or folders with logs (*.log, taken by what they hold)")
      ->required();
  command->callback([&request, keep, write] {
    if (request.follow) {  // Which of these only the timeline can.
      needFiles(request.inputs);
      followTimeline(request.inputs, request.timeline, std::cout, stopRequested());
      return;
    }
    Progress progress = progressFor(/*outputIsText=*/false);
    const LogSet logs = readLogs(findLogs(request.inputs), std::cin, progress, keep);
    write(logs);
    request.exitCode = std::max(request.exitCode, exitCodeOf(logs));
  });
  return command;
}

void addTimeline(CLI::App& app, Request& request) {
  TimelineOptions& options = request.timeline;
  CLI::App* const command =
      addView(app, request, "timeline", "All logs in time order, one readable line per entry", Keep::AllEvents,
              [&options](const LogSet& logs) { writeTimeline(logs, options, std::cout); });
  const auto addTime = [command](const char* name, std::optional<Instant>& time, const char* description) {
    command->add_option_function<std::string>(
        name,
        [name, &time](const std::string& text) {
          time = parseLocalTime(text);
          if (!time) {
            throw CLI::ValidationError(name, "not a time like 2025-01-31 or 2025-01-31T14:05:09");
          }
        },
        description);
  };
  addTime("--since", options.since, "Leave out what is before this local time");
  addTime("--until", options.until, "Leave out what is after this local time");
  command
      ->add_option("--source", options.sources,
                   "Only these: session, watchdog, initial, or an event channel such as System (comma-separated)")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_flag("--json", options.json, "One JSON object per line");
  command->add_flag("-f,--follow", request.follow,
                    "Go on as the logs grow, are emptied or appear, in the order in which lines come; end with Ctrl-C");
  command->footer(
      "Examples:\n"
      "  sentiq-logs timeline --since 2025-01-31T14:00 --source system,application logs/\n"
      "  sentiq-logs timeline --follow logs/");
}

void addSummary(CLI::App& app, Request& request) {
  const auto write = [&request](const LogSet& logs) {
    if (!request.json) {
      std::cout << summaryText(logs, colourWanted());
      return;
    }
    for (const Session& session : logs.sessions) {
      std::cout << summaryJson(summarize(logs, session)) << '\n';
    }
  };
  CLI::App* const command = addView(app, request, "summary", "What happened, in one line, and the figures behind it",
                                    Keep::WhatMatters, write);
  command->add_flag("--json", request.json, "One JSON object per session");
  command->footer("Example:\n  sentiq-logs summary --json logs/ | jq -r .outcome");
}

void addTriage(CLI::App& app, Request& request) {
  TriageOptions& options = request.triage;
  CLI::App* const command = app.add_subcommand("triage", "Many sessions, grouped by what ended them");
  command->add_option("FOLDER", options.inputs, "Folders of any depth with logs (*.log, taken by what they hold)")
      ->required();
  command->add_option("--top", options.top, "How many groups to show; 0 shows all")->capture_default_str();
  command->add_flag("--json", options.json, "One JSON object per session");
  command->footer("Example:\n  sentiq-logs triage --top 5 collected/");
  command->callback([&request, &options] {
    options.width = outputWidth();
    request.exitCode =
        triageLogs(options, std::cout, std::cerr, messagesAreTerminal() ? &std::cerr : nullptr, stopRequested());
  });
}

void addReport(CLI::App& app, Request& request) {
  const auto write = [&request](const LogSet& logs) {
    std::ofstream page(pathFromText(request.output), std::ios::binary);
    writeHtmlReport(logs, page);
    page.close();
    if (!page) {
      std::cerr << "sentiq-logs: " << request.output << ": cannot be written\n";
      request.exitCode = exitFailed;
    }
  };
  CLI::App* const command = addView(app, request, "report", "One self-contained HTML page", Keep::RawLines, write);
  command->add_option("-o,--output", request.output, "The page to write")->required();
  command->footer("Example:\n  sentiq-logs report logs/ -o session.html");
}

void addMetrics(CLI::App& app, Request& request) {
  const auto write = [&request](const LogSet& logs) {
    writeMetrics(logs, request.csv ? TableForm::Csv : request.json ? TableForm::Json : TableForm::Text, std::cout);
  };
  CLI::App* const command =
      addView(app, request, "metrics", "The ten-second records as a table, with units", Keep::WhatMatters, write);
  CLI::Option* const csv = command->add_flag("--csv", request.csv, "Comma-separated, with a header line");
  command->add_flag("--json", request.json, "One JSON object per line")->excludes(csv);
  command->footer("Example:\n  sentiq-logs metrics --csv CanvixSentiqSession.log > records.csv");
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
  Request request;
  request.timeline.colour = colourWanted();
  addDecode(app, request);
  addTimeline(app, request);
  addSummary(app, request);
  addTriage(app, request);
  addReport(app, request);
  addMetrics(app, request);
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
  return request.exitCode;
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
