// The parsers of single entries on any bytes: events, records, times.
#include "reader/events/EventHead.h"
#include "reader/events/EventRecord.h"
#include "reader/events/EventTable.h"
#include "reader/input/LogTime.h"
#include "reader/session/MetricSample.h"
#include "tests/fuzz/Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace sentiq;
  const std::string bytes(data, data + size);
  if (const auto event = parseEvent(bytes)) {
    require(!describeEvent(*event, std::chrono::minutes(60)).words.empty() && !event->key().empty());
    static_cast<void>(event->isOfCanvix());
  }
  if (const auto metric = parseMetric(bytes)) {
    static_cast<void>(parseElapsed(metric->appRunTime));
    static_cast<void>(describeMetric(*metric));
  }
  static_cast<void>(parseElapsed(bytes));
  // It looks into texts only that begin and end as an event does.
  const std::string line = R"({"xmlData":"<Event )" + bytes + R"(</Event>"})";
  if (const auto head = readEventHead(line)) {
    require(!head->provider.empty());
    static_cast<void>(mayMatter(*head));
  }
  if (const auto time = parseTime(bytes)) {
    // What is shown is read back as the same millisecond.
    const std::string shown = isoTime(time->instant, time->offset);
    const auto again = parseTime(shown);
    require(!again || isoTime(again->instant, again->offset) == shown);
  }
  return 0;
}
