#include "reader/views/page/EntryTable.h"

#include <string_view>

namespace sentiq {
namespace {

Places fieldPlaces(std::string name, std::string value) {
  Places field;
  field.text("name", std::move(name));
  field.text("value", std::move(value));
  return field;
}

std::vector<Places> fieldsOf(const PageSession& page, const LogEntry& entry) {
  std::vector<Places> fields;
  if (entry.time) {
    const std::string fromEnd = page.fromEnd(*entry.time);
    fields.push_back(fieldPlaces("Local time", showTime(*entry.time, entry.offset) + ' ' + showOffset(entry.offset) +
                                                   (fromEnd.empty() ? "" : ", " + fromEnd)));
    fields.push_back(fieldPlaces("UTC", showTime(*entry.time, std::chrono::minutes(0))));
  }
  if (entry.event) {
    const EventRecord& event = page.session.eventOf(entry);
    std::size_t unnamed = 0;
    for (const auto& [name, value] : event.fields()) {
      unnamed += name.empty() ? 1 : 0;
      fields.push_back(
          fieldPlaces(name.empty() ? "Data " + std::to_string(unnamed) : std::string(name), std::string(value)));
    }
    fields.push_back(fieldPlaces("Record id", std::to_string(event.recordId)));
    for (const auto& [name, value] : {std::pair{"Computer", event.computer()}, {"Account", event.userId()}}) {
      if (!value.empty()) {
        fields.push_back(fieldPlaces(name, std::string(value)));
      }
    }
  }
  fields.push_back(
      fieldPlaces("In the log", page.logs.files[entry.file].name + ", line " + std::to_string(entry.line)));
  return fields;
}

std::string dayOf(const LogEntry& entry) {
  return entry.time ? dateText(*entry.time, entry.offset) : "Without a time";
}

/// @param newer the entry of the row above.
Places rowPlaces(const PageSession& page, std::size_t index, const LogEntry* newer) {
  const LogEntry& entry = page.session.entries[index];
  Places row;
  row.text("row", page.rowName(index));
  row.text("day", newer == nullptr || dayOf(*newer) != dayOf(entry) ? dayOf(entry) : "");
  row.text("clock", entry.time ? clockText(*entry.time, entry.offset) : "");
  row.text("fromEnd", entry.time ? page.fromEnd(*entry.time) : "");
  row.text("severity", std::string(severityName(entry.severity)));
  row.flag("own", entry.meaning != Meaning::Other);
  row.text("source", sourceOf(page.session, entry));
  std::string provider;
  if (entry.event) {
    const EventRecord& event = page.session.eventOf(entry);
    provider = std::string(event.provider()) + ' ' + std::to_string(event.id);
  }
  row.text("provider", std::move(provider));
  row.text("words", wordsOf(page.session, entry));
  row.list("fields", fieldsOf(page, entry), [](const Places& field) { return field; });
  return row;
}

}  // namespace

void addEntries(const PageSession& page, Places& places) {
  std::vector<std::size_t> during;  // Indices of the entries; so are the others.
  std::vector<std::size_t> before;
  for (std::size_t i = page.session.entries.size(); i-- > 0;) {
    const LogEntry& entry = page.session.entries[i];
    if (!entry.metric) {
      (entry.time && page.begin && *entry.time < *page.begin ? before : during).push_back(i);
    }
  }
  const auto addRows = [&page, &places](const char* name, std::vector<std::size_t> indices) {
    const std::size_t count = indices.size();
    places.list(name, count, [&page, indices = std::move(indices)](std::size_t i) {
      return rowPlaces(page, indices[i], i > 0 ? &page.session.entries[indices[i - 1]] : nullptr);
    });
  };
  places.text("olderCount", before.empty() ? "" : std::to_string(before.size()));
  addRows("rows", std::move(during));
  addRows("olderRows", std::move(before));
}

}  // namespace sentiq
