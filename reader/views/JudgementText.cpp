#include "reader/views/JudgementText.h"

namespace sentiq {

std::string beforeText(const Before& before) {
  return "Before it: " + before.text + ", " + showDuration(before.earlier) + " earlier";
}

std::string changeText(const MachineChange& change) {
  std::string text(changeName(change.kind));
  for (const std::string& part : {change.name, change.version}) {
    text += part.empty() ? "" : ' ' + part;
  }
  return text + (change.failed ? " (failed)" : "");
}

std::string changeText(const Change& change) {
  return changeText(change.change) + ", " + showDuration(change.earlier) + " earlier";
}

}  // namespace sentiq
