#include "reader/events/EventRow.h"

#include <algorithm>
#include <cstddef>

#include "reader/events/EventPattern.h"

namespace sentiq {

bool isFrom(const EventRow& row, std::string_view provider) {
  return anyPart(row.provider, [&](std::string_view name) { return matches(provider, name); });
}

bool holds(const EventRow& row, const OwnField& field) {
  const std::string_view when = row.when;
  const std::size_t equals = when.find('=');
  return when.empty() || anyPart(when.substr(0, equals), [&](std::string_view name) {
           const std::string_view value = field(*fieldNamed(name));
           return equals == std::string_view::npos ? isSet(value)
                                                   : anyPart(when.substr(equals + 1), [&](std::string_view wanted) {
                                                       return matches(value, wanted);
                                                     });
         });
}

bool mayHold(const EventRow& row, std::string_view text) {
  const std::size_t equals = row.when.find('=');
  return equals == std::string_view::npos || anyPart(row.when.substr(equals + 1), [&](std::string_view value) {
           value.remove_prefix(std::min(value.find_first_not_of('*'), value.size()));
           return contains(text, value.substr(0, value.find('*')));
         });
}

bool isSet(std::string_view value) {
  return !value.empty() && value != "false" && value.find_first_not_of("0x") != std::string_view::npos;
}

}  // namespace sentiq
