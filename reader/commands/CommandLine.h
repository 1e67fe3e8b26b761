// What the parser of options leaves to do: values of our own kinds, help for whoever mistypes, the manual page and the
// completions. The parser's description of itself is the only one.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "reader/commands/Messages.h"
#include "reader/commands/PageFile.h"

namespace sentiq {

/// @param text one line. @param more what else the manual page says; may be empty. @param examples one a line.
CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& text, const std::string& more,
                     const std::string& examples);

/// Which of the choices the word is, in any case. Throws what the parser reports when it is none.
std::size_t choiceOf(const std::string& option, const std::vector<std::string>& choices, const std::string& word);

/// An option whose value is one of some words, in the order of an enumeration.
template <typename Enumeration>
void addChoice(CLI::App& command, const std::string& name, const std::string& text,
               const std::vector<std::string>& choices, Enumeration& value) {
  const auto take = [name, choices, &value](const std::string& word) {
    value = static_cast<Enumeration>(choiceOf(name, choices, word));
  };
  command.add_option_function<std::string>(name, take, text)->type_name(CLI::detail::join(choices, "|"));
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
