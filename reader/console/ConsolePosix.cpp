#include <ios>

#include <sys/ioctl.h>
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

std::size_t outputWidth() {
  winsize size{};
  return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

}  // namespace sentiq
