#include "reader/input/InputFile.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>

#include "reader/console/Console.h"
#include "reader/input/ByteSource.h"
#include "reader/input/Progress.h"
#include "reader/input/Utf8Bytes.h"

namespace sentiq {

bool readInput(const std::string& name, std::ostream* progress, const std::atomic<bool>& stop,
               const std::function<bool(std::string_view)>& visit) {
  const std::filesystem::path path = pathFromText(name);
  const bool isFile = name != "-";
  ByteSource source(isFile ? &path : nullptr);
  if (!source.isOpen()) {
    return false;
  }
  std::error_code error;
  const std::uintmax_t size = isFile && progress != nullptr ? std::filesystem::file_size(path, error) : 0;
  const std::uintmax_t total = error ? 0 : size;
  const std::string shownName = textFromPath(path.filename());
  Progress shown(progress);
  Utf8Bytes text;
  constexpr std::size_t blockSize = 64U << 10;
  const std::unique_ptr<char[]> block(new char[blockSize]);  // As it comes: clearing it takes as long as a small file.
  std::uintmax_t done = 0;
  std::optional<std::size_t> count = 0;
  bool wanted = true;
  while (wanted && !stop) {
    count = source.read(block.get(), blockSize, stop);
    if (!count || *count == 0) {
      break;
    }
    wanted = visit(text.take({block.get(), *count}));
    done += *count;
    shown.show(shownName, done >> 20U, total >> 20U, "MiB");
  }
  if (const std::string_view rest = text.finish(); !rest.empty() && wanted && !stop) {
    visit(rest);
  }
  return count.has_value();
}

}  // namespace sentiq
