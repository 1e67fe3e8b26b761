// Logs made of real events, to measure the reader with what it meets in earnest:
//   RealEvents events EVENTS MEBIBYTES DISTINCT     a watchdog log of so many distinct events, plain, to standard
//   output RealEvents sessions EVENTS FOLDER COUNT         sessions of about 80 KB each in FOLDER/session, encoded
// EVENTS is a folder with one event in each file, XML as the system renders it. They are taken as they are but for
// their record numbers and times.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "bench/TimeText.h"
#include "logging/LogEncoding.h"

namespace {

using sentiq::encodeText;
using sentiq::bench::stamp;
using sentiq::bench::timeText;

constexpr std::int64_t begin = 1'769'000'000;

// An event in two pieces of text around each of the two places that change.
class Template {
 public:
  explicit Template(std::string xml) : xml_(std::move(xml)) {
    replaceBetween("<EventRecordID>", "<", "\x01");
    replaceBetween("SystemTime='", "'", "\x02");
    channel_ = between("<Channel>", "<");
  }

  const std::string& channel() const { return channel_; }

  std::string line(std::int64_t copied, std::int64_t time, std::uint64_t record) const {
    std::string xml = xml_;
    put(xml, '\x01', std::to_string(record));
    put(xml, '\x02', timeText(time, "%Y-%m-%dT%H:%M:%S.1234567Z"));
    return stamp(copied) + R"( [PROCESS] [INFO]: {"xmlData":)" + nlohmann::json(xml).dump() + '}';
  }

 private:
  std::string between(const std::string& head, const std::string& end) const {
    const std::size_t from = xml_.find(head) + head.size();
    return xml_.substr(from, xml_.find(end, from) - from);
  }
  void replaceBetween(const std::string& head, const std::string& end, const std::string& by) {
    const std::size_t at = xml_.find(head);
    if (at != std::string::npos) {
      const std::size_t from = at + head.size();
      xml_.replace(from, xml_.find(end, from) - from, by);
    }
  }
  static void put(std::string& xml, char place, const std::string& text) {
    if (const std::size_t at = xml.find(place); at != std::string::npos) {
      xml.replace(at, 1, text);
    }
  }

  std::string xml_;
  std::string channel_;
};

std::vector<Template> readTemplates(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    files.push_back(file.path());
  }
  std::sort(files.begin(), files.end());
  std::vector<Template> templates;
  for (const std::filesystem::path& file : files) {
    std::ifstream in(file, std::ios::binary);
    std::string xml(std::istreambuf_iterator<char>(in), {});
    xml.erase(xml.find_last_not_of("\r\n ") + 1);
    templates.emplace_back(std::move(xml));
  }
  return templates;
}

std::string header(std::int64_t time, const std::string& id, const std::string& pid) {
  const std::string head = stamp(time) + " [SYSTEM] [INFO]: ";
  return head + "OrbelSessionID: " + id + "\n" + head + "ProcessID: " + pid + "\n";
}

void writeEvents(const std::vector<Template>& templates, std::size_t wanted, std::size_t distinct) {
  std::string text = header(begin, "session-1", "4242");
  std::size_t written = 0;
  for (std::size_t i = 0; written < wanted; ++i) {
    const std::size_t which = i % distinct;
    text +=
        templates[which % templates.size()].line(begin + 100, begin - static_cast<std::int64_t>(which), which) + "\n";
    written += std::fwrite(text.data(), 1, text.size(), stdout);
    text.clear();
  }
}

std::string records(std::int64_t start, const std::string& id, const std::string& pid) {
  std::string text = "OrbelSessionID: " + id + "\nProcessID: " + pid + "\n";
  for (int i = 0; i < 60; ++i) {
    text += encodeText(R"({"appStartTime":")" + timeText(i * 10, "0 %H:%M:%S") +
                       R"(","batteryPercentage":"No battery","fgProcessName":"","freeDiskSpace":)" +
                       std::to_string(71'112 - i) + R"(,"freeSwapMemory":)" + std::to_string(21'191 - i) +
                       R"(,"processId":)" + pid + R"(,"status":"Running","timestamp":")" + stamp(start + i * 10) +
                       R"(","totalDiskSpace":258019,"totalSwapMemory":24105})") +
            "\n";
  }
  return text + encodeText(stamp(start + 600) + " Exit Status - Canvix is no longer alive") + "\n";
}

void writeSessions(const std::vector<Template>& templates, const std::filesystem::path& folder, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::int64_t start = begin + static_cast<std::int64_t>(i) * 7200;
    const std::string id = "session-" + std::to_string(i);
    const std::string pid = std::to_string(4000 + i % 1000 * 4);
    const std::filesystem::path place = folder / id;
    std::filesystem::create_directories(place);
    std::ofstream(place / "CanvixSentiqSession.log", std::ios::binary) << records(start, id, pid);
    std::ofstream watchdog(place / "CanvixWatchdogInfoSession.log", std::ios::binary);
    watchdog << header(start, id, pid);
    for (const std::int64_t copied : {start + 601, start + 721}) {
      for (const std::string channel : {"Application", "System"}) {
        watchdog << encodeText(stamp(copied) + " [PROCESS] [INFO]: App dumping " + channel + " log:") << '\n';
        for (std::size_t k = 0; k < 20; ++k) {
          const Template& event = templates[(i * 7 + k * 3) % templates.size()];
          if (event.channel() == channel) {
            watchdog << encodeText(event.line(copied, start - static_cast<std::int64_t>(k) * 600, i * 100 + k)) << '\n';
          }
        }
      }
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  const auto number = [&](std::size_t i) { return std::strtoul(words.at(i).c_str(), nullptr, 10); };
  const std::vector<Template> templates = readTemplates(words.at(1));
  if (words.at(0) == "events") {
    writeEvents(templates, number(2) << 20, number(3));
  } else {
    writeSessions(templates, words.at(2), number(3));
  }
}
