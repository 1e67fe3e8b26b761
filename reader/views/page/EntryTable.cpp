#include "reader/views/page/EntryTable.h"

#include <memory>
#include <string_view>
#include <unordered_map>

#include "reader/input/TextHash.h"

namespace sentiq {
namespace {

// The rows of one table, newest first. An event that says the same as a newer one, at another time, refers to that.
struct Rows {
  const PageSession& page;
  std::vector<std::size_t> entries;
  std::unordered_map<std::size_t, std::size_t> models;  // From an entry to the newer one.
};

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
  row.text("source", sourceOf(page.session, entry));
  row.text("provider", std::move(provider));
  const std::vector<NamedValue> fields = fieldsOf(page, entry);
  const bool told = isToldByFields(entry);
  row.text("words", told ? fieldLines(fields) : wordsOf(page.session, entry));
  row.list("fields", told ? std::vector<NamedValue>() : fields,
           [unnamed = std::make_shared<std::size_t>(0)](const NamedValue& field) {
             Places place;
             place.text("name", nameOf(field, *unnamed));
             place.text("value", std::string(field.value));
             return place;
           });
}

Places rowPlaces(const Rows& rows, std::size_t i) {
  const PageSession& page = rows.page;
  const std::size_t index = rows.entries[i];
  const LogEntry& entry = page.session.entries[index];
  const std::string day = dayOf(entry);
  Places row;
  row.text("row", page.rowName(index));
  row.text("day", i == 0 || dayOf(page.session.entries[rows.entries[i - 1]]) != day ? day : "");
  row.text("clock", clockOf(entry));
  row.text("fromEnd", entry.time ? page.fromEnd(*entry.time) : "");
  row.text("severity", std::string(severityName(entry.severity)));
  row.flag("own", entry.meaning != Meaning::Other);
  row.text("record", entry.event ? std::to_string(page.session.eventOf(entry).recordId) : "");
  row.text("file", std::to_string(entry.file + 1));
  row.text("line", std::to_string(entry.line));
  if (const auto model = rows.models.find(index); model != rows.models.end()) {
    row.text("model", page.rowName(model->second));
    row.text("modelTime", clockOf(page.session.entries[model->second]));
  } else {
    row.text("model", "");
    addBody(page, entry, row);
  }
  return row;
}

}  // namespace

void addEntries(const PageSession& page, Places& places) {
  const auto during = std::make_shared<Rows>(Rows{page, {}, {}});
  const auto before = std::make_shared<Rows>(Rows{page, {}, {}});
  std::unordered_map<std::uint64_t, std::size_t> newest;  // Entries by hash.
  for (std::size_t i = page.session.entries.size(); i-- > 0;) {
    const LogEntry& entry = page.session.entries[i];
    if (entry.metric) {
      continue;
    }
    Rows& rows = entry.time && page.begin && *entry.time < *page.begin ? *before : *during;
    rows.entries.push_back(i);
    if (entry.event) {
      const auto [known, isNew] = newest.try_emplace(hashOf(page, entry), i);
      if (!isNew) {
        rows.models.emplace(i, known->second);
      }
    }
  }
  places.text("offset", showOffset(page.offset));
  places.text("olderCount", before->entries.empty() ? "" : std::to_string(before->entries.size()));
  for (const auto& [name, rows] : {std::pair{"rows", during}, {"olderRows", before}}) {
    places.list(name, rows->entries.size(), [shared = rows](std::size_t i) { return rowPlaces(*shared, i); });
  }
}

}  // namespace sentiq
