#include "reader/commands/CommandLine.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string_view>
#include <system_error>

#include "reader/commands/Suggestion.h"
#include "reader/console/Console.h"
#include "reader/input/CleanText.h"
#include "reader/views/CommandTexts.h"
#include "reader/views/TextStyle.h"
#include "reader/views/Timeline.h"

namespace sentiq {
namespace {

const std::string examplesTitle = "Examples:\n";

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<std::string> commandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* const command : commandsOf(app)) {
    names.push_back(command->get_name());
  }
  return names;
}

std::vector<std::string> optionNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* const option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      names.push_back("--" + name);
    }
  }
  return names;
}

OptionWords wordsOf(const CLI::Option& option) {
  OptionWords words{{},
                    option.get_type_size() > 0 ? option.get_type_name() : "",
                    {},
                    option.get_description(),
                    option.get_required()};
  for (const std::string& name : option.get_snames()) {
    words.names.push_back("-" + name);
  }
  for (const std::string& name : option.get_lnames()) {
    words.names.push_back("--" + name);
  }
  if (words.value.find('|') != std::string::npos) {
    words.choices = CLI::detail::split(words.value, '|');
  }
  return words;
}

CommandWords wordsOf(const CLI::App& command) {
  CommandWords words{command.get_name(), {}, command.get_description(), {}, {}, {}};
  const std::string footer = command.get_footer();
  const std::size_t examples = footer.find(examplesTitle);
  words.more = CLI::detail::trim_copy(footer.substr(0, examples));
  for (const std::string& line : CLI::detail::split(footer.substr(examples + examplesTitle.size()), '\n')) {
    words.examples.push_back(CLI::detail::trim_copy(line));
  }
  for (const CLI::Option* const option : command.get_options()) {
    if (option->get_positional()) {
      words.inputs = option->get_name(/*positional=*/true);
    } else if (option->get_name() != "--help") {
      words.options.push_back(wordsOf(*option));
    }
  }
  return words;
}

CommandLineWords wordsOfAll(const CLI::App& app) {
  CommandLineWords words{app.get_description(), {}, {}};
  for (const ExitCodeRow& row : exitCodeRows) {
    words.exitCodes.emplace_back(row.code, row.meaning);
  }
  for (const CLI::App* const command : commandsOf(app)) {
    words.commands.push_back(wordsOf(*command));
  }
  return words;
}

std::string exitCodesText() {
  std::string text = "Exit codes:\n";
  for (const ExitCodeRow& row : exitCodeRows) {
    constexpr std::size_t indent = 5;
    text += "  " + std::to_string(row.code) + "  " + wrapped(row.meaning, indent, /*width=*/80) + '\n';
  }
  return text;
}

[[noreturn]] void throwUnknown(const std::string& option, const std::string& word,
                               const std::vector<std::string>& candidates) {
  const std::string suggestion = suggestionFor(word, candidates);
  throw CLI::ValidationError(
      option, "unknown value '" + word + "'" + (suggestion.empty() ? "; there are " + joined(candidates) : suggestion));
}

// What packagers call; whoever reads the help does not need it. Throws for a shell that is not known.
bool answerHidden(const CLI::App& app, const std::vector<std::string>& arguments) {
  if (arguments.size() == 1 && arguments.front() == "manual") {
    std::cout << manualPage(wordsOfAll(app));
    return true;
  }
  if (arguments.size() == 2 && arguments.front() == "completions") {
    const std::string script = completionScript(arguments.back(), wordsOfAll(app));
    if (script.empty()) {
      throwUnknown("completions", arguments.back(), completionShells());
    }
    std::cout << script;
    return true;
  }
  return false;
}

bool looksLikeAnInput(const std::string& word) {
  std::error_code error;
  return word == "-" || word.find_first_of("/\\.") != std::string::npos ||
         std::filesystem::exists(pathFromText(word), error);
}

// Logs without a command are summed up. Throws for a word that nobody offers.
void completeArguments(const CLI::App& app, std::vector<std::string>& arguments) {
  const std::vector<std::string> commands = commandNames(app);
  const auto isCommand = [&] { return std::count(commands.begin(), commands.end(), arguments.front()) > 0; };
  if (const std::string& word = arguments.front(); !isCommand() && (word == "-" || !word.starts_with('-'))) {
    if (!looksLikeAnInput(word)) {
      throw CLI::ParseError("unknown command '" + word + "'" + suggestionFor(word, commands), exitFailed);
    }
    arguments.insert(arguments.begin(), "summary");
  }
  const std::vector<std::string> options = optionNames(isCommand() ? *app.get_subcommand(arguments.front()) : app);
  for (const std::string& argument : arguments) {
    const std::string name = argument.substr(0, argument.find('='));
    if (name == "--") {
      return;
    }
    if (name.starts_with("--") && std::find(options.begin(), options.end(), name) == options.end()) {
      throw CLI::ParseError("unknown option '" + name + "'" + suggestionFor(name, options), exitFailed);
    }
  }
}

}  // namespace

CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& text, const std::string& more,
                     const std::string& examples) {
  CLI::App& command = *app.add_subcommand(name, text);
  command.footer((more.empty() ? "" : wrapped(more, 0, /*width=*/80) + "\n\n") + examplesTitle + examples);
  return command;
}

std::size_t choiceOf(const std::string& option, const std::vector<std::string>& choices, const std::string& word) {
  const auto choice =
      std::find_if(choices.begin(), choices.end(), [&](const std::string& c) { return equalIgnoringCase(c, word); });
  if (choice == choices.end()) {
    throwUnknown(option, word, choices);
  }
  return static_cast<std::size_t>(choice - choices.begin());
}

void addChoices(CLI::App& command, const std::string& name, const std::string& text,
                const std::vector<std::string>& choices, std::vector<std::string>& values) {
  const auto take = [name, choices, &values](const std::vector<std::string>& words) {
    for (const std::string& word : words) {
      choiceOf(name, choices, word);
    }
    values = words;
  };
  command.add_option_function<std::vector<std::string>>(name, take, text)
      ->delimiter(',')
      ->allow_extra_args(false)
      ->type_name(CLI::detail::join(choices, "|"));
}

void addPage(CLI::App& command, CLI::Option* output, PageRequest& page) {
  page.program = "sentiq-logs " SENTIQ_VERSION;
  command.add_flag("--open", page.open, "Open the page in the browser")->needs(output);
  addParsed(command, "--made", "What the page says of when it was made, with offset (default: now)",
            "a time like 2025-01-31T14:05:09+01:00", parseWholeTime, page.made)
      .needs(output);
}

void needFiles(const std::vector<std::string>& inputs) {
  if (inputs.empty() || std::count(inputs.begin(), inputs.end(), "-") > 0) {
    throw CLI::ValidationError("--follow", "needs files or folders, not standard input");
  }
}

bool parseCommandLine(CLI::App& app, std::vector<std::string> arguments, Messages& messages) {
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // Else a path that begins with a slash is taken for an option.
  app.set_version_flag("--version", "sentiq-logs " SENTIQ_VERSION);
  app.footer("sentiq-logs FOLDER is sentiq-logs summary FOLDER.\n\n" + examplesTitle +
             "  sentiq-logs logs/\n"
             "  sentiq-logs report logs/ -o session.html\n"
             "  sentiq-logs timeline --help\n\n" +
             exitCodesText());
  if (arguments.empty()) {
    std::cerr << app.help();
    messages.raise(exitFailed);
    return false;
  }
  try {
    if (answerHidden(app, arguments)) {
      return false;
    }
    completeArguments(app, arguments);
    std::reverse(arguments.begin(), arguments.end());  // The order that the parser takes a vector in.
    app.parse(arguments);
    return true;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
      app.exit(error);
      return false;
    }
    messages.say(error.what(), exitFailed);
    messages.say("--help tells more, also after a command");
    return false;
  }
}

}  // namespace sentiq
