#include "reader/commands/FollowedLogs.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <thread>
#include <unordered_set>

#include "reader/commands/Inputs.h"
#include "reader/console/Console.h"
#include "reader/input/FollowedFile.h"

namespace sentiq {
namespace {

using Clock = std::chrono::steady_clock;

// Ends the process when what should end after the stop does not.
class EndInTime {
 public:
  explicit EndInTime(const std::atomic<bool>& stop) : thread_([this, &stop] { watch(stop); }) {}
  EndInTime(const EndInTime&) = delete;
  EndInTime& operator=(const EndInTime&) = delete;
  EndInTime(EndInTime&&) = delete;
  EndInTime& operator=(EndInTime&&) = delete;
  ~EndInTime() {
    ended_ = true;
    thread_.join();
  }

 private:
  void watch(const std::atomic<bool>& stop) const {
    constexpr std::chrono::milliseconds step{50};
    constexpr std::chrono::milliseconds grace{700};
    for (Clock::duration waited{}; !ended_; waited += stop ? step : Clock::duration{}) {
      if (waited >= grace) {
        std::_Exit(exitGood);
      }
      std::this_thread::sleep_for(step);
    }
  }

  std::atomic<bool> ended_{false};
  std::thread thread_;
};

struct GrowingFile {
  FollowedFile file;
  bool seen = false;  // What it held at first is no growth.
  std::optional<Clock::time_point> grew{};
};

}  // namespace

void followLogs(const std::vector<std::string>& inputs, const FollowHandlers& handlers, const Streams& streams) {
  constexpr std::chrono::milliseconds interval{200};
  constexpr std::chrono::seconds lately{60};
  constexpr int share = 20;  // Of the time, at most one part in so many for looking at everything.
  const std::atomic<bool>& stop = streams.stop;
  const EndInTime endInTime(stop);
  sayWaitedFor(inputs, streams.messages);
  std::unordered_set<std::string> known;
  std::vector<GrowingFile> logs;
  const auto poll = [&](std::size_t i, Clock::time_point now) {
    const auto take = [&](std::string_view bytes) {
      if (logs[i].seen) {
        logs[i].grew = now;
      }
      handlers.bytes(i, bytes);
    };
    logs[i].file.poll({take, [&] { handlers.startedAnew(i); }}, stop);
    logs[i].seen = true;
  };
  Clock::time_point next{};
  while (!stop) {
    const Clock::time_point begin = Clock::now();
    const bool all = begin >= next;  // Else only the logs that grew lately.
    for (const LogInput& input : all ? findLogs(inputs, stop) : std::vector<LogInput>{}) {
      if (!stop && known.insert(input.name).second) {
        logs.push_back({FollowedFile(pathFromText(input.name))});
        handlers.appeared(input);
      }
    }
    for (std::size_t i = 0; i < logs.size() && !stop; ++i) {
      if (all || (logs[i].grew && begin - *logs[i].grew < lately)) {
        poll(i, begin);
      }
    }
    handlers.roundDone();
    if (all) {
      next = Clock::now() + share * (Clock::now() - begin);
    }
    std::this_thread::sleep_for(interval);
  }
}

}  // namespace sentiq
