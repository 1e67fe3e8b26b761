#include "reader/commands/PageFile.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <system_error>

#include "reader/console/Console.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

namespace fs = std::filesystem;

using Write = std::function<bool(const fs::path&)>;

// With the offset in force here, which the library tells only by both times of one moment.
LogTime localNow() {
  const std::time_t now = std::time(nullptr);
  std::tm local = *std::localtime(&now);
  std::tm utc = *std::gmtime(&now);
  local.tm_isdst = utc.tm_isdst = 0;
  const auto offset = std::chrono::round<std::chrono::minutes>(
      std::chrono::duration<double>(std::difftime(std::mktime(&local), std::mktime(&utc))));
  return {Instant(std::chrono::seconds(now)), offset};
}

// Where the page goes: a link stays one.
fs::path targetOf(const fs::path& output) {
  std::error_code error;
  const fs::path target = fs::weakly_canonical(output, error);
  return error ? output : target;
}

// A device or a pipe has no page before.
bool replacePage(const fs::path& output, const Write& write) {
  std::error_code error;
  if (fs::exists(output, error) && !fs::is_regular_file(output, error)) {
    return write(output);
  }
  const fs::path target = targetOf(output);
  fs::path beside = target;
  beside += ".part";
  if (write(beside)) {
    fs::rename(beside, target, error);
    if (!error) {
      return true;
    }
  }
  if (fs::is_regular_file(beside, error)) {
    fs::remove(beside, error);
  }
  return false;
}

}  // namespace

bool sparesLogs(const PageRequest& page, const std::vector<LogInput>& logs, Messages& messages) {
  const fs::path output = pathFromText(page.output);
  const bool isOne = std::any_of(logs.begin(), logs.end(), [&](const LogInput& log) {
    std::error_code error;
    return fs::equivalent(output, pathFromText(log.name), error);
  });
  if (isOne) {
    messages.say(page.output + ": is one of the logs, and is not replaced by the page", exitFailed);
  }
  return !isOne;
}

void writePageFile(const PageRequest& page, const std::string& held,
                   const std::function<void(const PageOptions&, std::ostream&)>& write, const Streams& streams) {
  const LogTime made = page.made.value_or(localNow());
  const PageOptions options{made.instant, made.offset, page.program, streams.redact};
  const fs::path output = pathFromText(page.output);
  const bool written = replacePage(output, [&](const fs::path& path) {
    std::ofstream file(path, std::ios::binary);
    write(options, file);
    file.close();
    return !file.fail();
  });
  if (!written) {
    streams.messages.say(page.output + ": cannot be written", exitFailed);
    return;
  }
  std::error_code error;
  const std::uintmax_t size = fs::file_size(output, error);
  constexpr std::uintmax_t kibibyte = 1024;
  if (streams.outIsTerminal && !error) {
    streams.out << harmlessLine(page.output) << ": " << (size + kibibyte - 1) / kibibyte << " KiB. It holds " << held
                << ", also names of a computer, of people and of folders"
                << (streams.redact ? ", the first two replaced by stand-ins.\n" : ".\n");
  }
  if (page.open && !openInBrowser(output)) {
    streams.messages.say(page.output + ": cannot be opened in a browser", exitFailed);
  }
}

}  // namespace sentiq
