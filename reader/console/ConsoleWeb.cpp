// Within a page: no terminal, and nothing that could be opened.
#include <ios>

#include "reader/console/Console.h"

namespace sentiq {

void prepareConsole() {
  std::ios::sync_with_stdio(false);
}

std::vector<std::string> consoleArguments(int argc, const char* const* argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

bool outputIsTerminal() {
  return false;
}

bool messagesAreTerminal() {
  return false;
}

std::size_t outputWidth() {
  return 0;
}

bool openInBrowser(const std::filesystem::path& /*page*/) {
  return false;
}

}  // namespace sentiq
