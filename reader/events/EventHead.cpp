#include "reader/events/EventHead.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "reader/events/EventPattern.h"
#include "reader/events/EventTable.h"

namespace sentiq {
namespace {

// What stands between the two, or up to the text's end; goes on there. Empty when it is not there.
std::string_view between(std::string_view& text, std::string_view begin, std::string_view end) {
  const std::size_t found = text.find(begin);
  if (found == std::string_view::npos) {
    return {};
  }
  text.remove_prefix(found + begin.size());
  return text.substr(0, text.find(end));
}

// Whether the text is a number and nothing else.
template <typename Number>
bool readNumber(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size();
}

// Whether the condition may hold for an event of which only the whole text is known.
bool mayHold(const EventRow& row, std::string_view text) {
  std::string_view wanted = row.when;
  nextPart(wanted, '=');
  return wanted.empty() || anyPart(wanted, [&](std::string_view pattern) {
           pattern.remove_prefix(std::min(pattern.find_first_not_of('*'), pattern.size()));
           return contains(text, nextPart(pattern, '*'));
         });
}

}  // namespace

std::optional<EventHead> readEventHead(std::string_view json) {
  if (!json.starts_with(R"({"xmlData":"<Event )") || !json.ends_with(R"(</Event>"})")) {
    return std::nullopt;
  }
  std::string_view system = json;  // The system writes these in this order, before the event's own data.
  EventHead head;
  head.provider = between(system, "Provider Name='", "'");
  std::string_view id = between(system, "EventID", "<");
  id.remove_prefix(id.find('>') + 1);  // What has none stays as it is, and is no number.
  const std::string_view level = between(system, "Level>", "<");
  if (const auto time = parseTime(between(system, "TimeCreated SystemTime='", "'"))) {
    head.time = time->instant;
  }
  const std::string_view recordId = between(system, "EventRecordID>", "<");
  head.channel = between(system, "Channel>", "<");
  const bool plain = !head.provider.empty() && head.provider.find_first_of("\\&") == std::string_view::npos;
  const bool good =
      plain && readNumber(id, head.id) && readNumber(level, head.level) && readNumber(recordId, head.recordId);
  return good ? std::optional(head) : std::nullopt;
}

bool mayMatter(const EventHead& head, std::string_view json) {
  std::optional<bool> namesCanvix;
  for (const EventRow& row : eventRows()) {
    const bool ofOther = row.isOfProgram() && namesCanvix == false;
    if (row.meaning == Meaning::Other || ofOther || !mayFit(row, head.provider, head.id, head.level)) {
      continue;
    }
    if (row.isOfProgram() && !namesCanvix) {
      namesCanvix = contains(json, "canvix");
    }
    if ((!row.isOfProgram() || *namesCanvix) && mayHold(row, json)) {
      return true;
    }
  }
  return false;
}

}  // namespace sentiq
