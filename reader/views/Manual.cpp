#include "reader/views/Manual.h"

#include <algorithm>
#include <string_view>

#include "reader/judgement/Outcome.h"

namespace sentiq {
namespace {

// As text: no hyphen that breaks a line, no request at a line's begin.
std::string escaped(std::string_view text) {
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

std::string optionHead(const OptionWords& option) {
  std::string head;
  for (const std::string& name : option.names) {
    head += (head.empty() ? "\\fB" : ", \\fB") + escaped(name) + "\\fR";
  }
  return head + (option.value.empty() ? "" : " \\fI" + escaped(option.value) + "\\fR");
}

// A tagged paragraph.
std::string paragraph(const std::string& head, std::string_view text) {
  return ".TP\n" + head + '\n' + escaped(text) + '\n';
}

std::string synopsisOf(const CommandWords& command) {
  std::string text = "\\fBsentiq\\-logs " + command.name + "\\fR";
  for (const OptionWords& option : command.options) {
    const auto name = std::find_if(option.names.begin(), option.names.end(),
                                   [](const std::string& candidate) { return candidate.starts_with("--"); });
    const std::string words =
        "\\fB" + escaped(*name) + "\\fR" + (option.value.empty() ? "" : " \\fI" + escaped(option.value) + "\\fR");
    text += option.required ? ' ' + words : " [" + words + ']';
  }
  return text + " \\fI" + command.inputs + "\\fR...\n.br\n";
}

std::string commandText(const CommandWords& command) {
  std::string text =
      paragraph("\\fB" + command.name + "\\fR", command.text + (command.more.empty() ? "." : ". " + command.more));
  if (!command.options.empty()) {
    text += ".RS\n";
    for (const OptionWords& option : command.options) {
      text += paragraph(optionHead(option), option.text + '.');
    }
    text += ".RE\n";
  }
  return text;
}

std::string outcomeWords() {
  std::string words;
  for (const Outcome outcome : allOutcomes()) {
    words += (words.empty() ? "" : ", ") + std::string(outcomeWord(outcome));
  }
  return words;
}

}  // namespace

std::string manualPage(const CommandLineWords& words) {
  std::string page =
      ".TH SENTIQ-LOGS 1 \"\" \"CanvixSentiq\" \"User Commands\"\n.SH NAME\n"
      "sentiq\\-logs \\- read the logs of CanvixSentiq\n.SH SYNOPSIS\n";
  for (const CommandWords& command : words.commands) {
    page += synopsisOf(command);
  }
  page += "\\fBsentiq\\-logs\\fR \\fIFOLDER\\fR\n.SH DESCRIPTION\n" + escaped(words.text) + "\n.SH COMMANDS\n";
  for (const CommandWords& command : words.commands) {
    page += commandText(command);
  }
  page += ".SH OUTCOMES\n" + escaped("What --json calls the ways in which a session ends: " + outcomeWords() + ".\n") +
          ".SH EXIT STATUS\n";
  for (const auto& [code, meaning] : words.exitCodes) {
    page += paragraph("\\fB" + std::to_string(code) + "\\fR", meaning);
  }
  page += ".SH ENVIRONMENT\n" +
          paragraph("\\fBNO_COLOR\\fR", "When it is set and not empty, there is no colour unless --color says so.") +
          paragraph("\\fBTERM\\fR", "When it is dumb, there is neither colour nor progress.") + ".SH EXAMPLES\n.nf\n";
  for (const CommandWords& command : words.commands) {
    for (const std::string& example : command.examples) {
      page += escaped(example) + '\n';
    }
  }
  return page + ".fi\n.SH SEE ALSO\n.BR lnav (1),\n.BR jq (1)\n";
}

}  // namespace sentiq
