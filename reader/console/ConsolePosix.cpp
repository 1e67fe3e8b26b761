#include <ios>
#include <string>
#include <vector>

#include <unistd.h>

#include "reader/console/Console.h"

namespace sentiq {

void prepareConsole() {
  std::ios::sync_with_stdio(false);
}

std::vector<std::string> consoleArguments(int argc, const char* const* argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

bool outputIsTerminal() {
  return ::isatty(STDOUT_FILENO) == 1;
}

bool messagesAreTerminal() {
  return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace sentiq
