// Which files are logs, by their names, and where names do not tell, by their first lines.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <set>
#include <string_view>
#include <system_error>
#include <unordered_set>

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

enum class Name : std::uint8_t { Log, Perhaps, Other };

Name nameOf(const std::filesystem::path& path) {
  const std::string extension = textFromPath(path.extension());
  const bool number = extension.size() > 1 && extension.find_first_not_of("0123456789", 1) == std::string::npos;
  return equalIgnoringCase(extension, ".log") ? Name::Log
         : equalIgnoringCase(extension, ".txt") ||
                 (number && equalIgnoringCase(textFromPath(path.stem().extension()), ".log"))
             ? Name::Perhaps
             : Name::Other;
}

using Visit = std::function<void(const std::filesystem::path& path, bool fromFolder)>;

void findIn(const std::filesystem::path& folder, const std::atomic<bool>* stop, const Visit& visit) {
  std::set<std::filesystem::path> logs;
  std::set<std::filesystem::path> folders;
  std::error_code error;
  for (std::filesystem::directory_iterator item(folder, error);
       !error && item != end(item) && (stop == nullptr || !*stop); item.increment(error)) {
    std::error_code unknown;
    const Name name = nameOf(item->path());
    if (item->is_directory(unknown) && !item->is_symlink(unknown)) {
      folders.insert(item->path());
    } else if (name != Name::Other && item->is_regular_file(unknown) &&
               (name == Name::Log || beginsAsLog(textFromPath(item->path())))) {
      logs.insert(item->path());
    }
  }
  if (error) {
    visit(folder, /*fromFolder=*/false);
  }
  for (const std::filesystem::path& log : logs) {
    visit(log, /*fromFolder=*/true);
  }
  for (const std::filesystem::path& inner : folders) {
    findIn(inner, stop, visit);
  }
}

}  // namespace

std::vector<LogInput> findLogs(const std::vector<std::string>& inputs, const std::atomic<bool>* stop) {
  std::vector<LogInput> files;
  std::unordered_set<std::string> seen;
  const Visit add = [&](const std::filesystem::path& path, bool fromFolder) {
    std::error_code unknown;
    const std::filesystem::path whole = std::filesystem::absolute(path, unknown);
    if (seen.insert(textFromPath(whole.lexically_normal())).second) {
      files.push_back({textFromPath(path), fromFolder});
    }
  };
  for (const std::string& input : inputs) {
    std::error_code error;
    const std::filesystem::path path = pathFromText(input);
    if (input == "-") {
      files.push_back({input, /*fromFolder=*/false});
    } else if (std::filesystem::is_directory(path, error)) {
      findIn(path, stop, add);
    } else {
      add(path, /*fromFolder=*/false);
    }
  }
  return files;
}

}  // namespace sentiq
