#include "reader/commands/ReportCommand.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <system_error>

#include "reader/commands/Inputs.h"
#include "reader/console/Console.h"
#include "reader/views/HtmlReport.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

namespace fs = std::filesystem;

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

bool isOneOf(const fs::path& output, const std::vector<std::string>& inputs) {
  return std::any_of(inputs.begin(), inputs.end(), [&](const std::string& input) {
    std::error_code error;
    return fs::equivalent(output, pathFromText(input), error);
  });
}

// Where the page goes: a link stays one.
fs::path targetOf(const fs::path& output) {
  std::error_code error;
  const fs::path target = fs::weakly_canonical(output, error);
  return error ? output : target;
}

bool writePage(const LogSet& logs, const ReportOptions& options, const fs::path& path) {
  std::ofstream page(path, std::ios::binary);
  writeHtmlReport(logs, options, page);
  page.close();
  return !page.fail();
}

// A page that cannot be written whole leaves the one before; a device or a pipe has none.
bool replacePage(const LogSet& logs, const ReportOptions& options, const fs::path& output) {
  std::error_code error;
  if (fs::exists(output, error) && !fs::is_regular_file(output, error)) {
    return writePage(logs, options, output);
  }
  const fs::path target = targetOf(output);
  fs::path beside = target;
  beside += ".part";
  if (writePage(logs, options, beside)) {
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

void writeReport(const ReportRequest& request, const Streams& streams) {
  const fs::path output = pathFromText(request.output);
  std::vector<std::string> files;
  for (const LogInput& file : findLogs(request.inputs)) {
    files.push_back(file.name);
  }
  if (isOneOf(output, files)) {
    streams.messages.say(request.output + ": is one of the logs, and is not replaced by the page", exitFailed);
    return;
  }
  const LogSet logs = readInputs(request.inputs, Keep::RawLines, streams);
  sayLeftOut(logs, streams.messages);
  if (logs.files.empty()) {
    return;
  }
  const LogTime made = request.made.value_or(localNow());
  if (!replacePage(logs, {made.instant, made.offset, request.program}, output)) {
    streams.messages.say(request.output + ": cannot be written", exitFailed);
    return;
  }
  std::error_code error;
  const std::uintmax_t size = fs::file_size(output, error);
  constexpr std::uintmax_t kibibyte = 1024;
  if (streams.outIsTerminal && !error) {
    streams.out << harmlessLine(request.output) << ": " << (size + kibibyte - 1) / kibibyte
                << " KiB. It holds all that the logs hold, also names of a computer, of people and of folders"
                << (streams.redact ? ", the first two replaced by stand-ins.\n" : ".\n");
  }
  if (request.open && !openInBrowser(output)) {
    streams.messages.say(request.output + ": cannot be opened in a browser", exitFailed);
  }
}

}  // namespace sentiq
