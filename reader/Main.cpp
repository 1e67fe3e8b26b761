// sentiq-logs: from the log files to plain text, a timeline, a summary, a triage, a page, a table. Here is what the
// command line offers; the help, the manual page and the completions come from it.
#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <ios>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "reader/commands/CommandLine.h"
#include "reader/commands/DecodeCommand.h"
#include "reader/commands/TimelineCommand.h"
#include "reader/commands/TriageCommand.h"
#include "reader/commands/ViewCommands.h"
#include "reader/console/Console.h"

namespace sentiq {
namespace {

// What the user asks for.
struct Request {
  std::vector<std::string> inputs;
  bool follow = false;
  bool json = false;
  bool csv = false;
  bool redact = false;
  DecodeOptions decode;
  TimelineOptions timeline;
  ReportRequest report;
  TriageOptions triage;
  ColourMode colour = ColourMode::Auto;
  std::function<void(const Streams&)> run;
};

void onRun(CLI::App& command, Request& request, const std::function<void(const Streams&)>& run) {
  command.callback([&request, run] { request.run = run; });
}

void addInputs(CLI::App& command, const char* name, std::vector<std::string>& inputs) {
  command.add_option(name, inputs, "Logs, or folders with logs (taken by what they hold); - is standard input")
      ->required();
}

void addColour(CLI::App& command, Request& request) {
  addChoice(command, "--color", "Whether the output is coloured (default: on a terminal)", {"auto", "always", "never"},
            request.colour);
}

void addRedact(CLI::App& command, Request& request) {
  command.add_flag("--redact", request.redact,
                   "Put stand-ins (computer-1, user-1, account-1) in place of the names of computers and people and of "
                   "account ids; docs/operations.md lists what stays");
}

void addDecode(CLI::App& app, Request& request) {
  DecodeOptions& options = request.decode;
  CLI::App& command = addCommand(
      app, "decode", "Write logs as plain text, line by line",
      "Plain lines and line ends pass unchanged. A damaged or unfinished line is passed on as it is, with its "
      "number on standard error. On a terminal, what would steer it is replaced; into a file or a pipe every "
      "byte is passed on. Memory does not grow with the file. With --redact damaged lines and bytes within events are "
      "left out, files are read twice, memory grows with their distinct events, and standard input is redacted by what "
      "has been seen up to each line.",
      "  sentiq-logs decode CanvixWatchdogInfoSession.log | less\n"
      "  sentiq-logs decode CanvixWatchdogInfoSession.log | lnav\n"
      "  sentiq-logs decode --follow logs/CanvixSentiqSession.log logs/CanvixWatchdogInfoSession.log");
  command.add_option("FILE", options.inputs, "Logs, or folders with logs; none or - is standard input");
  command.add_flag("-f,--follow", options.follow, "Go on as the files grow, are emptied or appear; end with Ctrl-C");
  command.add_flag_function(
      "--names,!--no-names", [&options](std::int64_t given) { options.names = given > 0; },
      "Begin each line with its file's name, or do not (default: with more than one file)");
  addRedact(command, request);
  addColour(command, request);
  command.parse_complete_callback([&options] {
    if (options.follow) {
      needFiles(options.inputs);
    }
  });
  onRun(command, request, [&options](const Streams& streams) { decodeLogs(options, streams); });
}

void addTimeline(CLI::App& app, Request& request) {
  TimelineOptions& options = request.timeline;
  CLI::App& command = addCommand(
      app, "timeline", "All logs in time order, one readable line per entry",
      "Local time, source, severity, what. An event has its own time, not that of its copy, and appears once however "
      "often it was copied.",
      "  sentiq-logs timeline --since 2025-01-31T14:00 --source system,application logs/ | less\n"
      "  sentiq-logs timeline --last 5m --severity warning logs/\n"
      "  sentiq-logs timeline --json logs/ | jq -r 'select(.severity == \"error\") | .what'\n"
      "  sentiq-logs timeline --follow logs/");
  addInputs(command, "FILE", request.inputs);
  addParsed(command, "--since", "Leave out what is before this local time (2025-01-31, 2025-01-31T14:05:09)",
            "a time like 2025-01-31 or 2025-01-31T14:05:09", parseLocalTime, options.since);
  addParsed(command, "--until", "Leave out what is after this local time",
            "a time like 2025-01-31 or 2025-01-31T14:05:09", parseLocalTime, options.until);
  addParsed(command, "--last", "Only the last 90s, 5m, 2h or 1d before the end of each session, and what came after",
            "a length like 90s, 5m, 2h or 1d", parseDuration, options.last);
  addChoices(command, "--source", "Only these, comma-separated: logs, or channels of the event log",
             {"session", "watchdog", "initial", "Application", "System"}, options.sources);
  addChoice(command, "--severity", "Only what is at least so serious", {"info", "notice", "warning", "error"},
            options.severity);
  command
      .add_option("--grep", options.grep, "Only what holds this text, in any case, in its words or an event's fields")
      ->type_name("TEXT");
  command.add_flag("--records", options.records,
                   "Show the records of every ten seconds, too; so does naming their source, session");
  command.add_flag("--json", options.json, "One JSON object per line");
  addRedact(command, request);
  command.add_flag("-f,--follow", request.follow,
                   "Go on as the logs grow, are emptied or appear, in the order in which lines come; end with Ctrl-C");
  addColour(command, request);
  command.parse_complete_callback([&request, &options] {
    if (request.follow) {
      needFiles(request.inputs);
      if (options.last) {
        throw CLI::ValidationError("--last", "needs whole sessions, not --follow");
      }
    }
  });
  onRun(command, request, [&request, &options](const Streams& streams) {
    options.colour = streams.colour;
    options.width = streams.width;
    (request.follow ? followTimeline : showTimeline)(request.inputs, options, streams);
  });
}

void addSummary(CLI::App& app, Request& request) {
  CLI::App& command = addCommand(
      app, "summary", "What happened, in one line, and the figures behind it",
      "Canvix ended normally, crashed (module, exception, offset) or stopped responding; the machine was shut down or "
      "restarted, crashed with a blue screen, went to sleep, or lost power. Then what went before it within minutes, "
      "what changed on the machine in the days before, what else there is to say of the machine and of other "
      "instances, the figures, the gaps of more than 15 seconds in the records, and the files that are missing or "
      "damaged. What the logs do not tell is unknown. Several sessions are shown one after the other, the newest last. "
      "It is the command when none is named.",
      "  sentiq-logs summary logs/\n"
      "  sentiq-logs summary --json logs/ | jq -r .outcome");
  addInputs(command, "FILE", request.inputs);
  command.add_flag("--json", request.json, "One JSON object per session");
  addRedact(command, request);
  addColour(command, request);
  onRun(command, request, [&request](const Streams& streams) { showSummary(request.inputs, request.json, streams); });
}

void addTriage(CLI::App& app, Request& request) {
  TriageOptions& options = request.triage;
  CLI::App& command = addCommand(
      app, "triage", "Many sessions, grouped by what ended them",
      "Judges every session below some folders as summary does it, on all processor cores, and groups those that did "
      "not end normally: by the outcome, of a crash also by module, exception and offset, of a hang by its kind, of a "
      "blue screen by its code. A group has its number of sessions, their share of all, its first and last day, "
      "versions of Canvix, what went before most often, the folder of its last session, and each adapter and each "
      "change of the machine that ten of its sessions have and whose share is twice that in all sessions. What an "
      "initial log in another folder tells of a session counts for it. Files that are no logs are passed over. Ctrl-C "
      "shows what is known so far.",
      "  sentiq-logs triage --top 5 collected/\n"
      "  sentiq-logs triage --html overview.html collected/");
  addInputs(command, "FOLDER", options.inputs);
  command.add_option("--top", options.top, "How many groups to show; 10 without it (in a page all), all with 0")
      ->type_name("N");
  CLI::Option* const json = command.add_flag("--json", options.json, "One JSON object per session");
  CLI::Option* const html =
      command.add_option("--html", options.page.output, "Write a page instead")->type_name("PAGE")->excludes(json);
  addRedact(command, request);
  addPage(command, html, options.page);
  onRun(command, request, [&options](const Streams& streams) { triageLogs(options, streams); });
}

void addReport(CLI::App& app, Request& request) {
  ReportRequest& options = request.report;
  CLI::App& command =
      addCommand(app, "report", "One self-contained HTML page",
                 "It needs no network, and no script to be read: the summary, charts, the table of events, "
                 "the raw lines. A page that cannot be written whole leaves the one before.",
                 "  sentiq-logs report logs/ -o session.html");
  addInputs(command, "FILE", options.inputs);
  CLI::Option* const output =
      command.add_option("-o,--output", options.page.output, "The page to write")->type_name("PAGE")->required();
  addRedact(command, request);
  addPage(command, output, options.page);
  onRun(command, request, [&options](const Streams& streams) { writeReport(options, streams); });
}

void addMetrics(CLI::App& app, Request& request) {
  CLI::App& command = addCommand(app, "metrics", "The ten-second records as a table, with units",
                                 "On a terminal it has as many columns as fit.",
                                 "  sentiq-logs metrics --csv CanvixSentiqSession.log > records.csv");
  addInputs(command, "FILE", request.inputs);
  CLI::Option* const csv =
      command.add_flag("--csv", request.csv, "Comma-separated, with a header line; no cell is a formula");
  command.add_flag("--json", request.json, "One JSON object per line")->excludes(csv);
  onRun(command, request, [&request](const Streams& streams) {
    const TableForm form = request.csv ? TableForm::Csv : request.json ? TableForm::Json : TableForm::Text;
    showMetrics(request.inputs, form, streams);
  });
}

int run(std::vector<std::string> arguments, Messages& messages) {
  CLI::App app(
      "Reads the logs of CanvixSentiq, encoded or not, and says what happened to Canvix\n"
      "and to the machine.",
      "sentiq-logs");
  Request request;
  for (auto* const add : {addDecode, addTimeline, addSummary, addTriage, addReport, addMetrics}) {
    add(app, request);
  }
  std::cout.exceptions(std::ios::badbit | std::ios::failbit);
  if (!parseCommandLine(app, std::move(arguments), messages)) {
    std::cout.flush();
    return messages.exitCode();
  }
  static const std::atomic<bool> never{false};  // Ctrl-C ends the process by itself.
  const bool stoppable = request.follow || request.decode.follow || app.got_subcommand("triage");
  const bool terminal = outputIsTerminal();
  // Progress is for eyes, and not between the lines of output on the same terminal.
  const bool progress = progressWanted() && !(terminal && app.got_subcommand("decode"));
  request.run({.out = std::cout,
               .messages = messages,
               .stop = stoppable ? stopRequested() : never,
               .progress = progress ? &std::cerr : nullptr,
               .outIsTerminal = terminal,
               .colour = colourWanted(request.colour),
               .redact = request.redact,
               .width = outputWidth()});
  std::cout.flush();
  return messages.exitCode();
}

}  // namespace
}  // namespace sentiq

int main(int argc, char** argv) {
  sentiq::Messages messages(std::cerr);
  try {
    sentiq::prepareConsole();
    return sentiq::run(sentiq::consoleArguments(argc, argv), messages);
  } catch (const std::ios_base::failure&) {
    std::cout.exceptions(std::ios::goodbit);  // It is flushed once more when the program ends.
    messages.say("the output cannot be written", sentiq::exitFailed);
  } catch (const std::exception& error) {
    messages.say(error.what(), sentiq::exitFailed);
  }
  return messages.exitCode();
}
