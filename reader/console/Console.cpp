#include "reader/console/Console.h"

#include <csignal>
#include <cstdlib>

#include "logging/LogFile.h"

namespace sentiq {
namespace {

// Process-wide: written by the signal handler, read by whoever loops.
std::atomic<bool> stop{false};
static_assert(std::atomic<bool>::is_always_lock_free);

std::string_view environment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

bool terminalIsDumb() {
  return environment("TERM") == "dumb";
}

extern "C" void requestStop(int /*signal*/) {
  stop = true;
}

}  // namespace

bool colourWanted(ColourMode mode) {
  if (mode != ColourMode::Auto) {
    return mode == ColourMode::Always;
  }
  return outputIsTerminal() && !terminalIsDumb() && environment("NO_COLOR").empty();
}

bool progressWanted() {
  return messagesAreTerminal() && !terminalIsDumb();
}

const std::atomic<bool>& stopRequested() {
  static const bool listening =
      std::signal(SIGINT, requestStop) != SIG_ERR && std::signal(SIGTERM, requestStop) != SIG_ERR;
  static_cast<void>(listening);
  return stop;
}

std::filesystem::path pathFromText(std::string_view text) {
  return longPath(std::u8string(text.begin(), text.end()));
}

std::string textFromPath(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace sentiq
