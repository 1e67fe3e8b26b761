#include "reader/views/CommandTexts.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "reader/judgement/Outcome.h"
#include "reader/views/TextStyle.h"
#include "reader/views/page/PageTemplate.h"

namespace sentiq {
namespace {

// Places in the texts stand within single quotes.
struct Shell {
  std::string_view name;
  std::string_view quote;  // How a single quote is written.
  std::string_view signs;  // Its own, which a backslash makes plain ones.
};
constexpr Shell shells[] = {
    {"bash", "'\\''", ""}, {"zsh", "'\\''", "[]:"}, {"fish", "\\'", ""}, {"powershell", "''", ""}};

std::string shellText(const Shell& shell, std::string_view text) {
  std::string script;
  for (const char c : text) {
    script += shell.signs.find(c) == std::string_view::npos ? "" : "\\";
    script += c == '\'' ? shell.quote : std::string_view(&c, 1);
  }
  return script;
}

// No hyphen that breaks a line, no request at a line's begin.
std::string manualText(std::string_view text) {
  std::string page;
  for (const char c : text) {
    const bool atBegin = page.empty() || page.back() == '\n';
    page += c == '\\'                            ? "\\e"
            : c == '-'                           ? "\\-"
            : atBegin && (c == '.' || c == '\'') ? std::string("\\&") + c
                                                 : std::string(1, c);
  }
  return page;
}

void addWords(std::string_view name, const std::vector<std::string>& words, Places& places) {
  places.list(name, words,
              [&](const std::string& word) { return Places{{"word", word}, {"further", &word != words.data()}}; });
}

Places optionPlaces(const OptionWords& option) {
  const auto longName = std::find_if(option.names.begin(), option.names.end(),
                                     [](const std::string& name) { return name.starts_with("--"); });
  Places places{{"longName", *longName},
                {"value", option.value},
                {"choices", joined(option.choices, " ")},
                {"help", option.text},
                {"required", option.required}};
  addWords("choiceWords", option.choices, places);
  places.list("names", option.names, [&](const std::string& name) {
    const bool isLong = name.starts_with("--");
    return Places{{"name", name},
                  {"isLong", isLong},
                  {"word", name.substr(isLong ? 2 : 1)},
                  {"further", name != option.names.front()}};
  });
  return places;
}

Places commandPlaces(const CommandWords& command) {
  std::vector<std::string> names;
  for (const OptionWords& option : command.options) {
    names.insert(names.end(), option.names.begin(), option.names.end());
  }
  Places places{{"command", command.name},
                {"inputs", command.inputs},
                {"summary", command.text},
                {"more", command.more},
                {"allOptions", joined(names, " ")}};
  addWords("optionWords", names, places);
  places.list("options", command.options, optionPlaces);
  places.list("examples", command.examples, placedAs("example"));
  return places;
}

std::string filled(std::string_view name, const CommandLineWords& words, const Escape& escape) {
  std::vector<std::string> commands;
  commands.reserve(words.commands.size());
  for (const CommandWords& command : words.commands) {
    commands.push_back(command.name);
  }
  std::vector<std::string> outcomes;
  for (const Outcome outcome : allOutcomes()) {
    outcomes.emplace_back(outcomeWord(outcome));
  }
  Places places{{"about", words.text}, {"allCommands", joined(commands, " ")}, {"outcomes", joined(outcomes)}};
  addWords("commandWords", commands, places);
  places.list("commands", words.commands, commandPlaces);
  places.list("exitCodes", words.exitCodes, [](const std::pair<int, std::string>& row) {
    return Places{{"code", std::to_string(row.first)}, {"meaning", row.second}};
  });
  std::ostringstream text;
  writePage(name, places, text, escape);
  return text.str();
}

}  // namespace

std::string manualPage(const CommandLineWords& words) {
  return filled("Manual.roff", words, manualText);
}

std::vector<std::string> completionShells() {
  std::vector<std::string> names;
  for (const Shell& shell : shells) {
    names.emplace_back(shell.name);
  }
  return names;
}

std::string completionScript(std::string_view shell, const CommandLineWords& words) {
  const auto* const known =
      std::find_if(std::begin(shells), std::end(shells), [&](const Shell& s) { return s.name == shell; });
  return known == std::end(shells) ? ""
                                   : filled("Completions." + std::string(shell), words,
                                            [&](std::string_view text) { return shellText(*known, text); });
}

}  // namespace sentiq
