// The parsers of single entries on any bytes: events, records, times.
#include <nlohmann/json.hpp>

#include "reader/events/EventHead.h"
#include "reader/events/EventRecord.h"
#include "reader/events/EventWords.h"
#include "reader/input/CleanText.h"
#include "reader/input/LogTime.h"
#include "reader/session/KnownNames.h"
#include "reader/session/MetricSample.h"
#include "tests/fuzz/Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace sentiq;
  const std::string bytes(data, data + size);
  for (const std::string& text : {bytes, nlohmann::json{{"xmlData", cleanText(bytes)}}.dump()}) {
    if (const auto event = readEvent(text)) {
      require(!eventWords(*event, std::chrono::minutes(60)).empty() && !event->key().empty());
    }
  }
  if (const auto metric = parseMetric(bytes)) {
    require(!metric->ran || parseElapsed(showElapsed(*metric->ran)) == metric->ran);
    static_cast<void>(describeMetric(*metric));
  }
  static_cast<void>(parseElapsed(bytes));
  // It looks into texts only that begin and end as an event does.
  const std::string line = R"({"xmlData":"<Event )" + bytes + R"(</Event>"})";
  if (const auto head = readEventHead(line)) {
    require(!head->provider.empty());
    static_cast<void>(mayMatter(*head, line));
  }
  KnownNames names;
  names.learnLine(bytes);
  names.learnText(line);
  static_cast<void>(names.redactedLine("2025-01-31T13:05:00.000+0100 " + line));
  if (const auto time = parseTime(bytes)) {
    // What is shown is read back as the same millisecond.
    const std::string shown = isoTime(time->instant, time->offset);
    const auto again = parseTime(shown);
    require(!again || isoTime(again->instant, again->offset) == shown);
  }
  return 0;
}
