// Which files are logs, by their names, and where names do not tell, by their first lines.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "reader/console/Console.h"
#include "reader/input/ByteSource.h"
#include "reader/input/CleanText.h"
#include "reader/input/Utf8Bytes.h"
#include "reader/session/LogFileReader.h"
#include "reader/session/LogSet.h"

namespace sentiq {
bool beginsAsLog(const std::filesystem::path& path) {
  std::string bytes(64U << 10, '\0');
  LogFileInfo info;
  LogFileReader reader(info, 0, Keep::Judgement);
  Utf8Bytes text;
  ByteSource source = ByteSource::file(path);
  const std::atomic<bool> stop = false;
  reader.feed(
      text.take({bytes.data(), source.isOpen() ? source.read(bytes.data(), bytes.size(), stop).value_or(0) : 0}));
  return reader.isKnown();
}

namespace {

enum class Name : std::uint8_t { Log, Perhaps, Other };

Name nameOf(const std::filesystem::path& path) {
  const std::string extension = textFromPath(path.extension());
  const bool number = extension.size() > 1 &&
                      std::all_of(extension.begin() + 1, extension.end(), [](char c) { return c >= '0' && c <= '9'; });
  return equalIgnoringCase(extension, ".log") ? Name::Log
         : equalIgnoringCase(extension, ".txt") ||
                 (number && equalIgnoringCase(textFromPath(path.stem().extension()), ".log"))
             ? Name::Perhaps
             : Name::Other;
}

class Search {
 public:
  explicit Search(const std::atomic<bool>* stop) : stop_(stop) {}

  void findIn(const std::filesystem::path& folder);
  void add(const std::string& name, bool fromFolder);
  bool isStopped() const { return stop_ != nullptr && *stop_; }

  std::vector<LogInput> files;

 private:
  const std::atomic<bool>* stop_;
  std::unordered_set<std::string> seen_;
};

void Search::add(const std::string& name, bool fromFolder) {
  std::error_code unknown;
  const std::filesystem::path whole = std::filesystem::absolute(pathFromText(name), unknown);
  if (name == "-" || seen_.insert(textFromPath(whole.lexically_normal())).second) {
    files.push_back({name, fromFolder});
  }
}

void Search::findIn(const std::filesystem::path& folder) {
  std::set<std::filesystem::path> logs;
  std::set<std::filesystem::path> folders;
  std::error_code error;
  for (std::filesystem::directory_iterator item(folder, error); !error && item != end(item) && !isStopped();
       item.increment(error)) {
    std::error_code unknown;
    const Name name = nameOf(item->path());
    if (item->is_directory(unknown) && !item->is_symlink(unknown)) {
      folders.insert(item->path());
    } else if (name != Name::Other && item->is_regular_file(unknown) &&
               (name == Name::Log || beginsAsLog(item->path()))) {
      logs.insert(item->path());
    }
  }
  if (error) {
    add(textFromPath(folder), /*fromFolder=*/false);
  }
  for (const std::filesystem::path& log : logs) {
    add(textFromPath(log), /*fromFolder=*/true);
  }
  for (const std::filesystem::path& inner : folders) {
    findIn(inner);
  }
}

}  // namespace

std::vector<LogInput> findLogs(const std::vector<std::string>& inputs, const std::atomic<bool>* stop) {
  Search search(stop);
  for (const std::string& input : inputs) {
    std::error_code error;
    const std::filesystem::path path = pathFromText(input);
    if (input != "-" && std::filesystem::is_directory(path, error)) {
      search.findIn(path);
    } else {
      search.add(input, /*fromFolder=*/false);
    }
  }
  return std::move(search.files);
}

}  // namespace sentiq
