#include "reader/console/Console.h"

#include <csignal>
#include <cstdlib>

#include "logging/LogFile.h"

namespace sentiq {
namespace {

// Process-wide: written by the signal handler, read by whoever loops.
std::atomic<bool> stop{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void requestStop(int /*signal*/) {
  stop = true;
}

}  // namespace

bool colourWanted() {
  const char* const noColour = std::getenv("NO_COLOR");
  return outputIsTerminal() && (noColour == nullptr || *noColour == '\0');
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
