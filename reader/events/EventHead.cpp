#include "reader/events/EventHead.h"

#include <charconv>
#include <system_error>

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
bool readNumber(std::string_view text, int& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size();
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
  head.channel = between(system, "Channel>", "<");
  const bool plain = !head.provider.empty() && head.provider.find_first_of("\\&") == std::string_view::npos;
  const bool good = plain && readNumber(id, head.id) && readNumber(level, head.level);
  return good ? std::optional(head) : std::nullopt;
}

}  // namespace sentiq
