#include "reader/views/page/EntryTable.h"

#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "reader/input/TextHash.h"
#include "reader/views/TimeText.h"

namespace sentiq {
namespace {

// An event that says the same as a newer one, at another time, refers to that.
struct Row {
  std::size_t entry;
  std::optional<std::size_t> model;  // The entry that is the newer one.
};
using Rows = std::vector<Row>;  // Of one table, newest first.

std::vector<NamedValue> fieldsOf(const PageSession& page, const LogEntry& entry) {
  if (!entry.event) {
    return {};
  }
  const EventRecord& event = page.session.eventOf(entry);
  std::vector<NamedValue> fields = event.fields();
  if (event.computer() != page.session.computer) {
    fields.push_back({"Computer", event.computer()});
  }
  if (!event.userId().empty()) {
    fields.push_back({"Account", event.userId()});
  }
  return fields;
}

// An event that nobody has put into words is told by its fields, one a line.
bool isToldByFields(const LogEntry& entry) {
  return entry.event && entry.meaning == Meaning::Other;
}

std::string nameOf(const NamedValue& field, std::size_t& unnamed) {
  return field.name.empty() ? "Data " + std::to_string(++unnamed) : std::string(field.name);
}

std::string fieldLines(const std::vector<NamedValue>& fields) {
  std::string lines;
  std::size_t unnamed = 0;
  for (const NamedValue& field : fields) {
    lines.append(lines.empty() ? "" : "\n").append(nameOf(field, unnamed)).append(": ").append(field.value);
  }
  return lines.empty() ? "no fields" : lines;
}

// That of what the row says beside time and place; that two of 100,000 share one is no thing that happens.
std::uint64_t hashOf(const PageSession& page, const LogEntry& entry) {
  const EventRecord& event = page.session.eventOf(entry);
  std::string text = std::to_string(event.id) + '\n' + std::string(event.provider()) + '\n' +
                     std::string(event.channel()) + '\n' + std::string(severityName(entry.severity));
  for (const auto& [name, value] : fieldsOf(page, entry)) {
    text.append("\n").append(name).append("\n").append(value);
  }
  return textHash(text);
}

std::string dayOf(const LogEntry& entry) {
  return entry.time ? dateText(*entry.time, entry.offset) : "Without a time";
}

std::string clockOf(const LogEntry& entry) {
  return entry.time ? clockText(*entry.time, entry.offset) : "";
}

// What the row says beside time and place.
void addBody(const PageSession& page, const LogEntry& entry, Places& row) {
  std::string provider;
  if (entry.event) {
    const EventRecord& event = page.session.eventOf(entry);
    provider = std::string(event.provider()) + ' ' + std::to_string(event.id);
  }
  std::vector<NamedValue> fields = fieldsOf(page, entry);
  row.add("source", sourceOf(page.session, entry));
  row.add("provider", std::move(provider));
  if (isToldByFields(entry)) {
    row.add("words", fieldLines(fields));
    fields.clear();
  } else {
    row.add("words", wordsOf(page.session, entry));
  }
  std::size_t unnamed = 0;
  row.list("fields", fields,
           [&](const NamedValue& field) { return Places{{"name", nameOf(field, unnamed)}, {"value", field.value}}; });
}

Places rowPlaces(const PageSession& page, const Rows& rows, std::size_t i) {
  const auto& [index, model] = rows[i];
  const std::vector<LogEntry>& entries = page.session.entries;
  const LogEntry& entry = entries[index];
  const std::string day = dayOf(entry);
  Places row{{"row", page.rowName(index)},
             {"day", i == 0 || dayOf(entries[rows[i - 1].entry]) != day ? day : ""},
             {"clock", clockOf(entry)},
             {"fromEnd", entry.time ? page.fromEnd(*entry.time) : ""},
             {"severity", severityName(entry.severity)},
             {"own", entry.meaning != Meaning::Other},
             {"record", entry.event ? std::to_string(page.session.eventOf(entry).recordId) : ""},
             {"file", std::to_string(entry.file + 1)},
             {"line", std::to_string(entry.line)},
             {"model", page.rowName(model)}};
  if (model) {
    row.add("modelTime", clockOf(entries[*model]));
  } else {
    addBody(page, entry, row);
  }
  return row;
}

}  // namespace

void addEntries(const PageSession& page, Places& places) {
  Rows during;
  Rows before;
  std::unordered_map<std::uint64_t, std::size_t> newest;  // Entries by hash.
  for (std::size_t i = page.session.entries.size(); i-- > 0;) {
    const LogEntry& entry = page.session.entries[i];
    if (entry.metric) {
      continue;
    }
    Row row{i, {}};
    if (entry.event) {
      const auto [known, isNew] = newest.try_emplace(hashOf(page, entry), i);
      row.model = isNew ? std::nullopt : std::optional(known->second);
    }
    (entry.time && page.begin && *entry.time < *page.begin ? before : during).push_back(row);
  }
  places.add({{"offset", showOffset(page.offset)}, {"olderCount", countOrNothing(before.size())}});
  const auto addRows = [&](std::string_view name, Rows& rows) {
    const std::size_t count = rows.size();
    places.longList(name, count, [&page, kept = std::move(rows)](std::size_t i) { return rowPlaces(page, kept, i); });
  };
  addRows("rows", during);
  addRows("olderRows", before);
}

}  // namespace sentiq
