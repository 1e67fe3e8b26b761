// The module within sentiq-logs.html: the commands that its worker calls, with paths in the worker's own file system.
//   report --names PATH..., triage --redact PATH...: write /page.html, with names or without
#include <atomic>
#include <cstddef>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "reader/commands/TriageCommand.h"
#include "reader/commands/ViewCommands.h"
#include "reader/console/Console.h"

namespace sentiq {
namespace {

constexpr std::size_t reserveBytes = std::size_t{128} << 20U;

std::atomic<bool> stop{false};
bool memoryRanOut = false;
std::vector<std::vector<std::byte>> reserves(2);  // Empty, but with room.

// Ends the reading once memory runs out, and gives what it takes to show what was read: one piece for what was asked
// for then, one for the rest.
void giveReserve() {
  stop = memoryRanOut = true;
  if (reserves.empty()) {
    throw std::bad_alloc();
  }
  reserves.pop_back();
}

void run(const std::string& command, const std::vector<std::string>& paths, const Streams& streams) {
  const PageRequest page{.output = "/page.html", .program = "sentiq-logs " SENTIQ_VERSION};
  if (command == "report") {
    writeReport({.inputs = paths, .page = page}, streams);
  } else {
    triageLogs({.inputs = paths, .page = page}, streams);
  }
  if (memoryRanOut) {
    streams.messages.say("there was not enough memory: this is what was read until then", exitFailed);
  }
}

}  // namespace

// Called while main reads: ends that with what was read.
extern "C" void stopReading() {
  stop = true;
}

}  // namespace sentiq

int main(int argc, char** argv) {
  using namespace sentiq;
  Messages messages(std::cerr);
  try {
    prepareConsole();
    for (std::vector<std::byte>& reserve : reserves) {
      reserve.reserve(reserveBytes);
    }
    std::set_new_handler(giveReserve);
    std::vector<std::string> paths = consoleArguments(argc - 1, argv + 1);
    const bool redact = paths.front() == "--redact";
    paths.erase(paths.begin());
    run(argv[1], paths, {.out = std::cout, .messages = messages, .stop = stop, .redact = redact});
    std::cout.flush();
  } catch (const std::bad_alloc&) {
    messages.say("there was not enough memory", exitFailed);
  } catch (const std::exception& error) {
    messages.say(error.what(), exitFailed);
  }
  return messages.exitCode();
}
