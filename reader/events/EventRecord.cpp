#include "reader/events/EventRecord.h"

#include <algorithm>

#include "reader/events/EventPattern.h"
#include "reader/events/EventRow.h"

namespace sentiq {
namespace {

std::string_view partOf(std::string_view value, const FieldPart& part) {
  if (part.after.empty() && part.until.empty()) {
    return value;
  }
  const std::size_t begin = value.find(part.after);
  if (begin == std::string_view::npos) {
    return {};
  }
  value.remove_prefix(begin + part.after.size());
  value = value.substr(0, value.find_first_of("\r\n"));
  return part.until.empty() ? value : value.substr(0, value.find(part.until));
}

}  // namespace

std::string_view EventRecord::channel() const {
  return text_.header(0);
}

std::string_view EventRecord::provider() const {
  return text_.header(1);
}

std::string_view EventRecord::computer() const {
  return text_.header(2);
}

std::string_view EventRecord::userId() const {
  return text_.header(3);
}

std::vector<NamedValue> EventRecord::fields() const {
  return text_.fields();
}

std::string_view EventRecord::field(Field field) const {
  if (row_ != nullptr) {
    const auto part = std::find_if(row_->parts.begin(), row_->parts.end(),
                                   [&](const FieldPart& candidate) { return candidate.fact == field; });
    if (part != row_->parts.end()) {
      return partOf(text_.field(part->own), *part);
    }
  }
  return text_.field(field);
}

void EventRecord::replaceNames(const std::function<std::string(std::string_view)>& by) {
  constexpr std::size_t computer = 2;  // Channel and provider stand before it.
  text_.replace(computer, [&](std::string_view name, std::string_view text) {
    return isBinaryField(name) ? std::string() : by(text);
  });
}

std::string EventRecord::key() const {
  const auto ticks = time ? time->time_since_epoch().count() : 0;
  std::string key(channel());
  key.append(1, '\n').append(provider()).append(1, '\n');
  return key + std::to_string(recordId) + '\n' + std::to_string(ticks);
}

// Of a packaged application some events know the package only.
bool EventRecord::isOfCanvix() const {
  const std::string_view program = field(Field::AppName);
  return matches(program, "canvix.exe") || (program.empty() && matches(field(Field::PackageFullName), "canvix*"));
}

}  // namespace sentiq
