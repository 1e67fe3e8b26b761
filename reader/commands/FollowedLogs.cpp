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

class Follower {
 public:
  Follower(const std::vector<std::string>& inputs, const FollowHandlers& handlers, const std::atomic<bool>& stop)
      : inputs_(inputs), handlers_(handlers), stop_(stop) {}

  void lookForNew() {
    for (const LogInput& input : findLogs(inputs_, stop_)) {
      if (stop_) {
        return;
      }
      if (known_.insert(input.name).second) {
        logs_.push_back({FollowedFile(pathFromText(input.name))});
        handlers_.appeared(input);
      }
    }
  }

  /// @param all else only the logs that grew lately.
  void poll(bool all) {
    constexpr std::chrono::seconds lately{60};
    const Clock::time_point now = Clock::now();
    for (std::size_t i = 0; i < logs_.size() && !stop_; ++i) {
      if (const Log& log = logs_[i]; all || (log.grew && now - *log.grew < lately)) {
        poll(i, now);
      }
    }
    handlers_.roundDone();
  }

 private:
  struct Log {
    FollowedFile file;
    bool seen = false;  // What it held at first is no growth.
    std::optional<Clock::time_point> grew{};
  };

  void poll(std::size_t i, Clock::time_point now) {
    logs_[i].file.poll({[&](std::string_view bytes) {
                          if (logs_[i].seen) {
                            logs_[i].grew = now;
                          }
                          handlers_.bytes(i, bytes);
                        },
                        [&] { handlers_.startedAnew(i); }},
                       stop_);
    logs_[i].seen = true;
  }

  const std::vector<std::string>& inputs_;
  const FollowHandlers& handlers_;
  const std::atomic<bool>& stop_;
  std::unordered_set<std::string> known_;
  std::vector<Log> logs_;
};

}  // namespace

void followLogs(const std::vector<std::string>& inputs, const FollowHandlers& handlers, const Streams& streams) {
  constexpr std::chrono::milliseconds interval{200};
  constexpr int share = 20;  // Of the time, at most one part in so many for looking at everything.
  const std::atomic<bool>& stop = streams.stop;
  const EndInTime endInTime(stop);
  sayWaitedFor(inputs, streams.messages);
  Follower follower(inputs, handlers, stop);
  Clock::time_point next{};
  while (!stop) {
    const Clock::time_point begin = Clock::now();
    const bool all = begin >= next;
    if (all) {
      follower.lookForNew();
    }
    follower.poll(all);
    if (all) {
      next = Clock::now() + share * (Clock::now() - begin);
    }
    std::this_thread::sleep_for(interval);
  }
}

}  // namespace sentiq
