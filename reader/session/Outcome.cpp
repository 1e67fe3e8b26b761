#include "reader/session/Outcome.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

// The second dump follows the exit by two minutes; the error report of a crash may come later than the exit.
constexpr std::chrono::minutes afterEnd{5};
// How long before Canvix's end a shutdown counts as its cause.
constexpr std::chrono::minutes shutdownLead{2};

bool isAnyOf(Meaning meaning, std::initializer_list<Meaning> meanings) {
  return std::find(meanings.begin(), meanings.end(), meaning) != meanings.end();
}

const LogEntry* findLast(const Session& session, const std::function<bool(const LogEntry&)>& wanted) {
  const auto found = std::find_if(session.entries.rbegin(), session.entries.rend(),
                                  [&](const LogEntry& entry) { return entry.time && wanted(entry); });
  return found != session.entries.rend() ? &*found : nullptr;
}

const LogEntry* findFirst(const Session& session, const std::function<bool(const LogEntry&)>& wanted) {
  const auto found = std::find_if(session.entries.begin(), session.entries.end(),
                                  [&](const LogEntry& entry) { return entry.time && wanted(entry); });
  return found != session.entries.end() ? &*found : nullptr;
}

std::string at(const LogEntry& entry) {
  return " at " + showTime(*entry.time, entry.offset);
}

std::int64_t monitoredProcess(const Session& session) {
  for (const MetricSample& metric : session.metrics) {
    return metric.processId;
  }
  std::int64_t pid = 0;
  std::from_chars(session.processId.data(), session.processId.data() + session.processId.size(), pid);
  return pid;
}

// Whether a crash or hang is of another process than the monitored one: there may be several instances of
// Canvix. The events hold the process id in hexadecimal.
bool isOfOtherProcess(const Session& session, const LogEntry& entry) {
  const std::string text = session.events[*entry.event].field("ProcessId");
  std::string_view digits = text;
  if (digits.starts_with("0x")) {
    digits.remove_prefix(2);
  }
  std::int64_t pid = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), pid, 16);
  const std::int64_t monitored = monitoredProcess(session);
  return error == std::errc{} && monitored != 0 && pid != monitored;
}

std::string crashText(const CrashPlace& place) {
  const auto known = [](const std::string& text) { return text.empty() ? std::string("unknown") : text; };
  return "module " + known(place.module) + ' ' + known(place.version) + ", exception " + known(place.exception) +
         ", offset " + known(place.offset);
}

Outcome failureOf(const Session& session, const LogEntry& entry) {
  return entry.meaning == Meaning::Crash
             ? Outcome{"crashed", Severity::Error,
                       "Canvix crashed" + at(entry) + ": " + crashText(crashPlace(session.events[*entry.event])),
                       &entry}
             : Outcome{"hung", Severity::Error, "Canvix stopped responding and was closed" + at(entry), &entry};
}

Outcome endOf(const Session& session, const LogEntry& exit) {
  const LogEntry* const shutdown = findLast(session, [&](const LogEntry& entry) {
    return entry.meaning == Meaning::ShutdownBegun && *entry.time <= *exit.time + shutdownLead &&
           *entry.time >= *exit.time - shutdownLead;
  });
  if (shutdown != nullptr) {
    return {"shutdown", Severity::Notice, "Canvix ended" + at(exit) + " while the machine shut down: " + shutdown->what,
            &exit};
  }
  if (session.applicationCopied && *session.applicationCopied >= *exit.time) {
    return {"ended", Severity::Info,
            "Canvix ended normally" + at(exit) + ": the event log holds no crash or hang of it", &exit};
  }
  return {"ended", Severity::Notice,
          "Canvix ended" + at(exit) +
              "; whether normally is unknown: the logs hold no copy of the Application events made afterwards",
          &exit};
}

Outcome withoutExit(const Session& session, const SessionSpan& span) {
  const auto afterwards = [&](const LogEntry& entry) { return span.end && *entry.time >= *span.end - shutdownLead; };
  const LogEntry* const down = findFirst(session, [&](const LogEntry& entry) {
    return isAnyOf(entry.meaning, {Meaning::PowerLoss, Meaning::SystemCrash}) && afterwards(entry);
  });
  if (down != nullptr) {
    return {"power-loss", Severity::Error,
            "The machine went down while Canvix ran. " + down->what + " (logged" + at(*down) + ')', down};
  }
  const LogEntry* const shutdown = findFirst(session, [&](const LogEntry& entry) {
    return isAnyOf(entry.meaning, {Meaning::ShutdownBegun, Meaning::ShutdownDone}) && afterwards(entry);
  });
  if (shutdown != nullptr) {
    return {"shutdown", Severity::Notice,
            "The machine was shut down while Canvix ran: " + shutdown->what + at(*shutdown), shutdown};
  }
  const LogEntry* const power = findLast(session, [&](const LogEntry& entry) {
    return !entry.metric && isAnyOf(entry.meaning, {Meaning::Sleep, Meaning::Resume});
  });
  if (power != nullptr && power->meaning == Meaning::Sleep && afterwards(*power)) {
    return {"asleep", Severity::Warning, "The machine went to sleep" + at(*power) + ", and the logs end there", power};
  }
  return {"unknown", Severity::Notice,
          span.end ? "How the session ended is unknown: the logs stop while Canvix runs"
                   : "How the session ended is unknown: its logs are missing"};
}

}  // namespace

CrashPlace crashPlace(const EventRecord& event) {
  const auto field = [&event](const char* name) { return event.field(name); };
  return {field("ModuleName"), field("ModuleVersion"), field("ExceptionCode"), field("FaultingOffset")};
}

bool SessionSpan::contains(Instant time) const {
  return begin && end && time >= *begin && time <= *end + afterEnd;
}

SessionSpan sessionSpan(const Session& session) {
  SessionSpan span;
  for (const LogEntry& entry : session.entries) {
    if (entry.time && !entry.event && entry.role != LogRole::Initial) {
      span.begin = std::min(span.begin.value_or(*entry.time), *entry.time);
      span.end = std::max(span.end.value_or(*entry.time), *entry.time);
      span.offset = entry.offset;
    }
  }
  if (span.begin && !session.metrics.empty()) {
    const MetricSample& first = session.metrics.front();
    const Instant start = first.time.instant - parseElapsed(first.appRunTime).value_or(Ticks{});
    span.begin = std::min(*span.begin, start);
  }
  return span;
}

Outcome judgeOutcome(const Session& session, const SessionSpan& span) {
  const LogEntry* const failure = findLast(session, [&](const LogEntry& entry) {
    return isAnyOf(entry.meaning, {Meaning::Crash, Meaning::Hang}) && span.contains(*entry.time) &&
           !isOfOtherProcess(session, entry);
  });
  if (failure != nullptr) {
    return failureOf(session, *failure);
  }
  const LogEntry* const exit = findFirst(session, [](const LogEntry& entry) { return entry.meaning == Meaning::Exit; });
  return exit != nullptr ? endOf(session, *exit) : withoutExit(session, span);
}

std::vector<Outcome> judgeBefore(const Session& session, const SessionSpan& span) {
  const auto before = [&](const LogEntry& entry) { return !span.begin || *entry.time < *span.begin; };
  std::vector<Outcome> outcomes;
  const LogEntry* const failure =
      findLast(session, [&](const LogEntry& entry) { return isFailure(entry.meaning) && before(entry); });
  const LogEntry* const down = findLast(session, [&](const LogEntry& entry) {
    return isAnyOf(entry.meaning,
                   {Meaning::PowerLoss, Meaning::SystemCrash, Meaning::ShutdownBegun, Meaning::ShutdownDone}) &&
           before(entry);
  });
  if (failure != nullptr) {
    Outcome outcome = failureOf(session, *failure);
    outcome.text = "Before this session: " + outcome.text;
    outcomes.push_back(outcome);
  }
  if (down != nullptr) {
    const bool lost = isAnyOf(down->meaning, {Meaning::PowerLoss, Meaning::SystemCrash});
    outcomes.push_back({lost ? "power-loss" : "shutdown", lost ? Severity::Error : Severity::Notice,
                        "Before this session: " + down->what + " (logged" + at(*down) + ')', down});
    if (failure != nullptr && *failure->time < *down->time) {
      std::swap(outcomes[0], outcomes[1]);
    }
  }
  return outcomes;
}

}  // namespace sentiq
