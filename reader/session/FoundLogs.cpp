// Which files are logs, by their names, and where names do not tell, by their first lines.
#include <algorithm>
#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "reader/console/Console.h"
#include "reader/input/CleanText.h"
#include "reader/input/InputFile.h"
#include "reader/session/LogFileReader.h"
#include "reader/session/LogSet.h"

namespace sentiq {

bool beginsAsLog(const std::string& name) {
  LogFileInfo info;
  LogFileReader reader(info, 0, Keep::Judgement);
  readInput(name, /*progress=*/nullptr, /*stop=*/false, [&](std::string_view block) {
    while (!block.empty() && !reader.isKnown()) {  // The first line tells, most often.
      const std::string_view next = block.substr(0, 4096);
      reader.feed(next);
      block.remove_prefix(next.size());
    }
    return false;
  });
  return reader.isKnown();
}

namespace {

namespace fs = std::filesystem;

// By its name, and where that does not tell, by what it holds.
bool isLog(const fs::path& path) {
  const std::string extension = textFromPath(path.extension());
  const bool number = extension.size() > 1 && extension.find_first_not_of("0123456789", 1) == std::string::npos;
  const bool perhaps = equalIgnoringCase(extension, ".txt") ||
                       (number && equalIgnoringCase(textFromPath(path.stem().extension()), ".log"));
  return equalIgnoringCase(extension, ".log") || (perhaps && beginsAsLog(textFromPath(path)));
}

// What the inputs stand for so far.
class Search {
 public:
  explicit Search(const std::atomic<bool>& stop) : stop_(stop) {}

  /// @param whole the same path from the root, without detours, by which it is known.
  void add(const fs::path& path, const fs::path& whole, bool fromFolder) {
    if (seen_.insert(whole.native()).second) {
      files.push_back({textFromPath(path), fromFolder});
    }
  }

  void addFolder(const fs::path& folder, const fs::path& whole) {
    std::set<fs::path> logs;  // Names; so below.
    std::set<fs::path> folders;
    std::error_code error;
    for (fs::directory_iterator item(folder, error); !error && item != end(item) && !stop_; item.increment(error)) {
      std::error_code unknown;
      if (item->is_directory(unknown) && !item->is_symlink(unknown)) {
        folders.insert(item->path().filename());
      } else if (item->is_regular_file(unknown) && isLog(item->path())) {
        logs.insert(item->path().filename());
      }
    }
    if (error) {
      add(folder, whole, /*fromFolder=*/false);
    }
    for (const fs::path& log : logs) {
      add(folder / log, whole / log, /*fromFolder=*/true);
    }
    for (const fs::path& inner : folders) {
      addFolder(folder / inner, whole / inner);
    }
  }

  std::vector<LogInput> files;

 private:
  const std::atomic<bool>& stop_;
  std::unordered_set<fs::path::string_type> seen_;
};

}  // namespace

std::vector<LogInput> findLogs(const std::vector<std::string>& inputs, const std::atomic<bool>& stop) {
  Search search(stop);
  for (const std::string& input : inputs) {
    std::error_code error;
    const fs::path path = pathFromText(input);
    const fs::path whole = fs::absolute(path, error).lexically_normal();
    if (input == "-") {
      search.files.push_back({input, /*fromFolder=*/false});
    } else if (fs::is_directory(path, error)) {
      search.addFolder(path, whole);
    } else {
      search.add(path, whole, /*fromFolder=*/false);
    }
  }
  return std::move(search.files);
}

}  // namespace sentiq
