// What the parser of options leaves to do: values of our own kinds, help for whoever mistypes, the manual page and the
// completions. The parser's description of itself is the only one.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "reader/commands/Messages.h"
#include "reader/commands/PageFile.h"
#include "reader/input/CleanText.h"

namespace sentiq {

/// @param text one line. @param more what else the manual page says; may be empty. @param examples one a line.
CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& text, const std::string& more,
                     const std::string& examples);

/// Throws what the parser reports.
[[noreturn]] void throwUnknown(const std::string& option, const std::string& word,
                               const std::vector<std::string>& candidates);

/// An option whose value is one of some words.
template <typename Value>
void addChoice(CLI::App& command, const std::string& name, const std::string& text,
               const std::vector<std::pair<std::string, Value>>& choices, Value& value) {
  std::vector<std::string> words;
  words.reserve(choices.size());
  for (const auto& choice : choices) {
    words.push_back(choice.first);
  }
  const auto take = [name, words, choices, &value](const std::string& word) {
    const auto choice =
        std::find_if(choices.begin(), choices.end(), [&](const auto& c) { return equalIgnoringCase(c.first, word); });
    if (choice == choices.end()) {
      throwUnknown(name, word, words);
    }
    value = choice->second;
  };
  command.add_option_function<std::string>(name, take, text)->type_name(CLI::detail::join(words, "|"));
}

/// One whose value a function reads, which returns nothing when it is none. @param expected what it should be.
template <typename Value>
CLI::Option& addParsed(CLI::App& command, const std::string& name, const std::string& text, const std::string& expected,
                       std::optional<Value> (*parse)(const std::string&), std::optional<Value>& value) {
  const auto take = [name, expected, parse, &value](const std::string& word) {
    value = parse(word);
    if (!value) {
      throw CLI::ValidationError(name, "'" + word + "' is not " + expected);
    }
  };
  return *command.add_option_function<std::string>(name, take, text)->type_name("TIME");
}

/// One whose value is a list of words, in any case.
void addChoices(CLI::App& command, const std::string& name, const std::string& text,
                const std::vector<std::string>& choices, std::vector<std::string>& values);

/// What a page can have beside its path. @param output the option with that, without which there is no page.
void addPage(CLI::App& command, CLI::Option* output, PageRequest& page);

/// What grows is a file: throws when there is none, or standard input among them.
void needFiles(const std::vector<std::string>& inputs);

/// Parses, and answers what is no command: help, version, words that nobody offers, `manual` and `completions`.
/// @return whether there is a command to run.
bool parseCommandLine(CLI::App& app, std::vector<std::string> arguments, Messages& messages);

}  // namespace sentiq
