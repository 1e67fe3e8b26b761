// sentiq-logs: from the log files to plain text, a timeline, a summary, a page.
#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "logging/LogEncoding.h"
#include "reader/Console.h"
#include "reader/DecodeCommand.h"
#include "reader/ExitCode.h"
#include "reader/Progress.h"

namespace sentiq {
namespace {

// Progress is for eyes: not when messages go elsewhere, and not between the lines of output on the same
// terminal.
Progress progressFor(bool outputIsText) {
  return Progress(messagesAreTerminal() && !(outputIsText && outputIsTerminal()) ? &std::cerr : nullptr);
}

void addDecode(CLI::App& app, int& exitCode) {
  CLI::App* const command = app.add_subcommand("decode", "Write logs as plain text, line by line");
  const auto options = std::make_shared<DecodeOptions>();
  command->add_option("FILE", options->files, "Logs; none or - is standard input");
  command->add_flag("-f,--follow", options->follow,
                    "Go on as the files grow, are emptied or appear; end with Ctrl-C");
  command->add_flag("--names,!--no-names", options->names,
                    "Begin each line with its file's name (default: with more than one file)");
  command->footer("Example:\n  sentiq-logs decode CanvixWatchdogInfoSession.log | less");
  command->callback([options, &exitCode] {
    options->colour = colourWanted();
    Progress progress = progressFor(/*outputIsText=*/true);
    if (options->follow &&
        (options->files.empty() || std::count(options->files.begin(), options->files.end(), "-") > 0)) {
      throw CLI::ValidationError("--follow", "needs files, not standard input");
    }
    exitCode = decodeLogs(*options, std::cin, std::cout, std::cerr, progress, stopRequested());
  });
}

// Hidden: makes input for tests and benchmarks.
void addEncode(CLI::App& app) {
  CLI::App* const command = app.add_subcommand("encode", "Encode the lines of standard input");
  command->group("");
  command->callback([] {
    for (std::string line; std::getline(std::cin, line);) {
      std::cout << encodeText(line) << '\n';
    }
  });
}

int run(std::vector<std::string> arguments) {
  CLI::App app("Reads the logs of CanvixSentiq.", "sentiq-logs");
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // Else a path that begins with a slash is taken for an option.
  int exitCode = exitGood;
  addDecode(app, exitCode);
  addEncode(app);
  std::reverse(arguments.begin(), arguments.end());  // The order that the parser takes a vector in.
  try {
    app.parse(arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? exitGood : exitFailed;
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
