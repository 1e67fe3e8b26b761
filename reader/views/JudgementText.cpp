#include "reader/views/JudgementText.h"

namespace sentiq {

std::string beforeText(const Before& before) {
  return "Before it: " + before.text + ", " + showDuration(before.earlier) + " earlier";
}

std::string changeText(const MachineChange& change) {
  std::string text(changeName(change.kind));
  for (const std::string& part : {change.name, change.version}) {
    text += part.empty() || text.ends_with(part) ? "" : ' ' + part;  // "10.0.1 to 10.0.2" ends with the version.
  }
  return text + (change.failed ? " (failed)" : "");
}

std::string changeText(const Change& change) {
  return changeText(change.change) + ", " + showDuration(change.earlier) + " earlier";
}

}  // namespace sentiq
