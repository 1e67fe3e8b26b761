#include "reader/session/LineOwners.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "reader/session/Life.h"

namespace sentiq {
namespace {

// The exit is copied at once and once more later.
constexpr std::chrono::seconds secondCopy{120};
constexpr std::chrono::seconds copySlack{60};

// How far it is from a copy that follows the exit.
Ticks copyDistance(const Life& life, Instant made) {
  const std::optional<Instant> exit = life.watchdogExit ? life.watchdogExit : life.statusExit;
  return exit ? std::min(std::chrono::abs(made - *exit), std::chrono::abs(made - *exit - secondCopy)) : Ticks::max();
}

// The sessions of one folder, in the order in which they began.
class Owners {
 public:
  Owners(std::vector<Session>& sessions, const std::vector<std::size_t>& ofFolder) : sessions_(sessions) {
    for (const std::size_t i : ofFolder) {
      lives_.push_back(lifeOf(sessions[i], i));
    }
    std::stable_sort(lives_.begin(), lives_.end(), [](const Life& a, const Life& b) { return a.begin < b.begin; });
  }

  void give() {
    for (std::size_t i = 0; i < lives_.size(); ++i) {
      giveStatusExits(i);
    }
    for (std::size_t i = 0; i < lives_.size(); ++i) {
      giveWatchdogExits(i);
    }
    std::vector<std::pair<std::size_t, ChannelCopy>> copies;  // With the new session.
    for (std::size_t i = 0; i < lives_.size(); ++i) {
      giveCopies(i, copies);
      giveTails(i);
    }
    for (auto& [session, copy] : copies) {
      sessions_[session].copies.push_back(std::move(copy));
    }
    for (const Life& life : lives_) {
      std::erase_if(sessions_[life.session].entries, [](const LogEntry& entry) { return entry.line == 0; });
    }
  }

 private:
  using Others = std::vector<Life*>;

  Instant timeOf(const Life& life, std::size_t entry) const { return *sessions_[life.session].entries[entry].time; }

  // Those that had begun by then. However many a folder holds, few can have run at the same time.
  Others othersAt(std::size_t index, Instant time) {
    constexpr std::size_t most = 16;
    Others others;
    for (std::size_t i = index; i > 0 && others.size() < most; --i) {
      others.push_back(&lives_[i - 1]);
    }
    for (std::size_t i = index + 1; i < lives_.size() && others.size() < 2 * most && lives_[i].begin <= time; ++i) {
      others.push_back(&lives_[i]);
    }
    return others;
  }

  // Of those whose exit is not known, and that do not go on, the one with the freshest sign; of those without records
  // the first, which began last.
  static Life* openOne(const Others& others, Instant time, std::optional<Instant> Life::* exit) {
    Life* best = nullptr;
    for (Life* const life : others) {
      const bool open = !(life->*exit) && life->begin && *life->begin < time && !livesAfter(*life, time);
      if (open && (best == nullptr || (endsAt(*life, time) && !endsAt(*best, time)))) {
        best = life;
      }
    }
    return best;
  }

  void giveStatusExits(std::size_t index) {
    constexpr std::chrono::minutes justBegun{2};
    Life& life = lives_[index];
    for (std::size_t i = 0; i < life.statusExits.size(); ++i) {
      const Instant time = timeOf(life, life.statusExits[i]);
      const bool last = i + 1 == life.statusExits.size();
      const bool goesOn = livesAfter(life, time);
      Life* const other = openOne(othersAt(index, time), time, &Life::statusExit);
      const bool ofOther =
          other != nullptr && endsAt(*other, time) && (!endsAt(life, time) || time - *life.begin <= justBegun);
      const bool isOwn = !goesOn && (other == nullptr || (last && !ofOther));
      giveExit(life, life.statusExits[i], isOwn ? &life : other, &Life::statusExit);
    }
  }

  void giveWatchdogExits(std::size_t index) {
    Life& life = lives_[index];
    for (std::size_t i = 0; i < life.watchdogExits.size(); ++i) {
      const Instant time = timeOf(life, life.watchdogExits[i]);
      Others others = othersAt(index, time);
      const auto told = std::find_if(others.begin(), others.end(), [&](const Life* other) {
        return !other->watchdogExit && isExitAt(other->statusExit, time);
      });
      const bool own = isExitAt(life.statusExit, time);
      const bool elsewhere = life.statusExit && !own;
      const bool goesOn = livesAfter(life, time) || (!life.power.empty() && life.power.back() > time + lifeSlack);
      const bool last = i + 1 == life.watchdogExits.size();
      Life* other = told != others.end() ? *told : nullptr;
      if (other == nullptr && (elsewhere || goesOn || !last)) {
        other = openOne(others, time, &Life::watchdogExit);
      }
      // Where both ended at nearly that time, the older one first.
      const bool ofOther = other != nullptr && (!own || (!last && other->begin < life.begin));
      Life* const owner = ofOther ? other : livesAfter(life, time) ? nullptr : &life;
      giveExit(life, life.watchdogExits[i], owner, &Life::watchdogExit);
    }
  }

  void giveCopies(std::size_t index, std::vector<std::pair<std::size_t, ChannelCopy>>& moved) {
    Life& life = lives_[index];
    std::vector<ChannelCopy>& copies = sessions_[life.session].copies;
    std::erase_if(copies, [&](const ChannelCopy& copy) {
      if (!copy.afterExit) {
        return false;
      }
      const Others others = othersAt(index, copy.made);
      const auto nearest = std::min_element(others.begin(), others.end(), [&](const Life* a, const Life* b) {
        return copyDistance(*a, copy.made) < copyDistance(*b, copy.made);
      });
      const bool given = nearest != others.end() && copyDistance(**nearest, copy.made) <= copySlack &&
                         copyDistance(**nearest, copy.made) < copyDistance(life, copy.made);
      if (given) {
        moved.emplace_back((*nearest)->session, copy);
      }
      return given;
    });
  }

  void giveTails(std::size_t index) {
    constexpr std::chrono::minutes longest{5};
    const Life& life = lives_[index];
    for (const std::size_t i : life.tails) {
      const Instant time = timeOf(life, i);
      if (life.watchdogExit && *life.watchdogExit <= time) {
        continue;
      }
      for (const Life* const other : othersAt(index, time)) {
        const std::optional<Instant>& exit = other->watchdogExit ? other->watchdogExit : other->statusExit;
        if (exit && *exit <= time + lifeSlack && time - *exit <= longest) {
          move(life, i, other);
          break;
        }
      }
    }
  }

  void giveExit(Life& from, std::size_t entry, Life* to, std::optional<Instant> Life::* exit) {
    if (to != nullptr) {
      to->*exit = timeOf(from, entry);
    }
    if (to != &from) {
      move(from, entry, to);
    }
  }

  // Leaves an entry without a line number behind. Without a new owner it goes to a session without a name.
  void move(const Life& from, std::size_t entry, const Life* to) {
    if (to == nullptr && !nameless_) {
      const std::string folder = sessions_[from.session].folder;
      nameless_ = sessions_.size();
      sessions_.emplace_back().folder = folder;
    }
    Session& owner = sessions_[to != nullptr ? to->session : *nameless_];
    owner.entries.push_back(std::exchange(sessions_[from.session].entries[entry], {}));
  }

  std::vector<Session>& sessions_;
  std::vector<Life> lives_;
  std::optional<std::size_t> nameless_;
};

}  // namespace

void giveLinesToTheirOwners(std::vector<Session>& sessions) {
  for (const auto& [folder, ofFolder] : byFolder(sessions)) {
    Owners(sessions, ofFolder).give();
  }
}

}  // namespace sentiq
