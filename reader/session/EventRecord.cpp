#include "reader/session/EventRecord.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace sentiq {
namespace {

constexpr std::string_view canvixFile = "canvix.exe";

bool equalIgnoringCase(std::string_view text, std::string_view lower) {
  return text.size() == lower.size() && std::equal(text.begin(), text.end(), lower.begin(), [](char a, char b) {
           return (a >= 'A' && a <= 'Z' ? static_cast<char>(a + 32) : a) == b;
         });
}

// EventData holds the fields directly, UserData within one element of the provider's own.
void readData(const pugi::xml_node& event, EventRecord& record) {
  for (const pugi::xml_node& field : event.child("EventData").children()) {
    record.data.emplace_back(field.attribute("Name").value(), field.text().get());
  }
  for (const pugi::xml_node& field : event.child("UserData").first_child().children()) {
    record.data.emplace_back(field.name(), field.text().get());
  }
}

}  // namespace

std::string EventRecord::field(std::string_view nameOrPlace) const {
  std::size_t place = data.size();
  const auto [end, error] = std::from_chars(nameOrPlace.data(), nameOrPlace.data() + nameOrPlace.size(), place);
  if (error == std::errc{} && end == nameOrPlace.data() + nameOrPlace.size()) {
    return place < data.size() ? data[place].second : std::string{};
  }
  const auto found =
      std::find_if(data.begin(), data.end(), [&](const auto& named) { return named.first == nameOrPlace; });
  return found != data.end() ? found->second : std::string{};
}

bool EventRecord::namesCanvix() const {
  return std::any_of(data.begin(), data.end(),
                     [](const auto& named) { return equalIgnoringCase(named.second, canvixFile); });
}

std::string EventRecord::key() const {
  const auto ticks = time ? time->time_since_epoch().count() : 0;
  return channel + '\n' + provider + '\n' + std::to_string(recordId) + '\n' + std::to_string(ticks);
}

std::optional<EventRecord> parseEvent(std::string_view xml) {
  pugi::xml_document document;
  if (!document.load_buffer(xml.data(), xml.size(), pugi::parse_default, pugi::encoding_utf8)) {
    return std::nullopt;
  }
  const pugi::xml_node event = document.child("Event");
  const pugi::xml_node system = event.child("System");
  if (!system.child("EventID")) {
    return std::nullopt;
  }
  EventRecord record;
  if (const auto time = parseTime(system.child("TimeCreated").attribute("SystemTime").value())) {
    record.time = time->instant;
  }
  record.channel = system.child("Channel").text().get();
  record.provider = system.child("Provider").attribute("Name").value();
  record.id = system.child("EventID").text().as_int();
  record.level = system.child("Level").text().as_int();
  record.recordId = system.child("EventRecordID").text().as_ullong();
  readData(event, record);
  return record;
}

}  // namespace sentiq
