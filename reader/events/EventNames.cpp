#include "reader/events/EventNames.h"

#include <algorithm>
#include <cstddef>

#include "reader/events/EventPattern.h"

namespace sentiq {
namespace {

struct NameRow {
  NameKind kind;
  int id;                     // 0 for every one.
  std::string_view provider;  // Patterns as in the event table; so are the fields.
  std::string_view fields;
};
// A computer's or a domain's before those of people, so that STUDIO\anna is known for what it is.
constexpr NameRow nameRows[] = {
    NameRow{NameKind::Computer, 0, "*",
            "Computer|ComputerName|MachineName|HostName|Workstation*|ClientName|*ServerName|DCName"},
    NameRow{NameKind::Computer, 1074, "User32", "param2"},
    NameRow{NameKind::Computer, 6011, "EventLog", ""},  // The machine was renamed: both names, without field names.
    NameRow{NameKind::Computer, 10028, "*DistributedCOM|DCOM", "param1"},
    NameRow{NameKind::Domain, 0, "*", "*DomainName|Domain|UserDomain"},
    NameRow{NameKind::Domain, 10016, "*DistributedCOM|DCOM", "param6"},
    NameRow{NameKind::Domain, 5719, "NETLOGON", ""},
    NameRow{NameKind::Person, 0, "*", "User|*UserName|AccountName|*SamName|*SamAccountName|LogonName|Owner"},
    NameRow{NameKind::Person, 1073, "User32", "param1"},
    NameRow{NameKind::Person, 1074, "User32", "param7"},
    NameRow{NameKind::Person, 10016, "*DistributedCOM|DCOM", "param7"},
    NameRow{NameKind::Person, 7038, "Service Control Manager", "param2"},
    NameRow{NameKind::Person, 7041, "Service Control Manager", "param2"},
};

}  // namespace

std::vector<EventName> namesIn(const EventRecord& event) {
  std::vector<EventName> names{{NameKind::Computer, event.computer()}};
  const std::vector<NamedValue> fields = event.fields();
  for (const NameRow& row : nameRows) {
    const auto isProvider = [&](std::string_view pattern) { return matches(event.provider(), pattern); };
    if ((row.id != 0 && row.id != event.id) || !anyPart(row.provider, isProvider)) {
      continue;
    }
    for (const NamedValue& field : fields) {
      const std::string_view name = field.name.substr(field.name.rfind('.') + 1);  // Its own.
      if (anyPart(row.fields, [name](std::string_view pattern) { return matches(name, pattern); }) &&
          !isBinaryField(field.name)) {
        names.push_back({row.kind, field.value});
      }
    }
  }
  return names;
}

std::string withoutBinary(std::string_view xml) {
  std::string text;
  for (std::size_t open = xml.find('<'); open != std::string_view::npos; open = xml.find('<')) {
    const std::size_t name = open + 1;
    const std::size_t end = std::min(xml.find('>', name), xml.size() - 1);
    const bool binary = isBinaryField(xml.substr(name, end - name));
    text += xml.substr(0, end + 1);
    xml.remove_prefix(end + 1);
    if (binary) {
      xml.remove_prefix(std::min(xml.find('<'), xml.size()));
    }
  }
  return text.append(xml);
}

}  // namespace sentiq
