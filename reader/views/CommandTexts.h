// What the command line is, in plain values, and what is made of it: the manual page, and scripts by which shells
// complete it.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sentiq {

struct OptionWords {
  std::vector<std::string> names;    // "-f", "--follow"
  std::string value;                 // What stands for its value: "TIME"; empty for a switch.
  std::vector<std::string> choices;  // That the value is one of, if they are known.
  std::string text;
  bool required = false;
};

struct CommandWords {
  std::string name;
  std::string inputs;  // "FILE", "FOLDER"
  std::string text;    // One line.
  std::string more;    // Paragraphs; may be empty.
  std::vector<OptionWords> options;
  std::vector<std::string> examples;  // Whole command lines.
};

struct CommandLineWords {
  std::string text;
  std::vector<CommandWords> commands;
  std::vector<std::pair<int, std::string>> exitCodes;  // With their meanings.
};

/// For man(1).
std::string manualPage(const CommandLineWords& words);

/// "bash", "zsh", "fish", "powershell"
std::vector<std::string> completionShells();

/// @param shell one of these. @return nothing for any other.
std::string completionScript(std::string_view shell, const CommandLineWords& words);

}  // namespace sentiq
