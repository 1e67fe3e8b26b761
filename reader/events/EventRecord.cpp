#include "reader/events/EventRecord.h"

#include <algorithm>
#include <utility>

#include "reader/events/EventPattern.h"
#include "reader/events/EventTable.h"

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
  EventText replaced;
  for (const std::string& header : {std::string(channel()), std::string(provider()), by(computer()), by(userId())}) {
    replaced.addHeader(header);
  }
  for (const auto& [name, value] : fields()) {
    replaced.addField(name, isBinaryField(name) ? std::string() : by(value));
  }
  replaced.shrink();
  text_ = std::move(replaced);
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
