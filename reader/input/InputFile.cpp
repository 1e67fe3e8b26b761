#include "reader/input/InputFile.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <istream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "reader/console/Console.h"
#include "reader/input/Progress.h"

namespace sentiq {
namespace {

bool readBlocks(std::istream& in, Progress& progress, const std::function<void(std::string_view)>& visit) {
  std::vector<char> block(64U << 10);
  while (in) {
    in.read(block.data(), static_cast<std::streamsize>(block.size()));
    const auto size = static_cast<std::size_t>(in.gcount());
    visit({block.data(), size});
    progress.advance(size);
  }
  progress.end();
  return in.eof() && !in.bad();
}

}  // namespace

bool readInput(const std::string& name, std::istream& standardInput, Progress& progress,
               const std::function<void(std::string_view)>& visit) {
  if (name == "-") {
    progress.begin("standard input", 0);
    return readBlocks(standardInput, progress, visit);
  }
  const std::filesystem::path path = pathFromText(name);
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    return false;
  }
  std::ifstream in;
  in.rdbuf()->pubsetbuf(nullptr, 0);  // The blocks are read straight to where they are used.
  in.open(path, std::ios::binary);
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  progress.begin(textFromPath(path.filename()), error ? 0 : size);
  return in.is_open() && readBlocks(in, progress, visit);
}

}  // namespace sentiq
