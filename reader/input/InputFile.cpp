#include "reader/input/InputFile.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <optional>
#include <system_error>
#include <vector>

#include "reader/console/Console.h"
#include "reader/input/ByteSource.h"
#include "reader/input/Utf8Bytes.h"

namespace sentiq {
namespace {

std::optional<std::size_t> readStream(std::istream& in, std::vector<char>& block) {
  in.read(block.data(), static_cast<std::streamsize>(block.size()));
  return in.bad() ? std::nullopt : std::optional(static_cast<std::size_t>(in.gcount()));
}

}  // namespace

bool readInput(const std::string& name, std::istream& standardInput, Progress& progress, const std::atomic<bool>& stop,
               const std::function<bool(std::string_view)>& visit) {
  const std::filesystem::path path = pathFromText(name);
  const std::string shownName = textFromPath(path.filename());
  const bool isFile = name != "-";
  const bool isStream = !isFile && &standardInput != &std::cin;
  std::error_code error;
  const std::uintmax_t size = isFile ? std::filesystem::file_size(path, error) : 0;
  const std::uintmax_t total = error ? 0 : size;
  ByteSource source = isFile ? ByteSource::file(path) : ByteSource::standardInput();
  if (!isStream && !source.isOpen()) {
    return false;
  }
  Utf8Bytes text;
  std::vector<char> block(64U << 10);
  std::uintmax_t done = 0;
  std::optional<std::size_t> count = 0;
  bool wanted = true;
  while (wanted && !stop) {
    count = isStream ? readStream(standardInput, block) : source.read(block.data(), block.size(), stop);
    if (!count || *count == 0) {
      break;
    }
    wanted = visit(text.take({block.data(), *count}));
    done += *count;
    progress.show(shownName, done >> 20U, total >> 20U, "MiB");
  }
  if (const std::string_view rest = text.finish(); !rest.empty() && wanted && !stop) {
    visit(rest);
  }
  progress.end();
  return count.has_value();
}

}  // namespace sentiq
