#include "reader/input/InputFile.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <istream>
#include <system_error>
#include <vector>

#include "reader/console/Console.h"

namespace sentiq {

bool readInput(const std::string& name, std::istream& standardInput, Progress& progress,
               const std::function<void(std::string_view)>& visit) {
  const std::filesystem::path path = pathFromText(name);
  const std::string shownName = textFromPath(path.filename());
  const bool isFile = name != "-";
  std::error_code error;
  std::ifstream file;
  std::uintmax_t total = 0;
  if (isFile) {
    file.rdbuf()->pubsetbuf(nullptr, 0);  // The blocks are read straight to where they are used.
    file.open(path, std::ios::binary);
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    total = error ? 0 : size;
    if (!file.is_open() || std::filesystem::is_directory(path, error)) {
      return false;
    }
  }
  std::istream& in = isFile ? file : standardInput;
  std::vector<char> block(64U << 10);
  std::uintmax_t done = 0;
  while (in) {
    in.read(block.data(), static_cast<std::streamsize>(block.size()));
    const auto size = static_cast<std::size_t>(in.gcount());
    visit({block.data(), size});
    done += size;
    progress.show(shownName, done >> 20U, total >> 20U, "MiB");
  }
  progress.end();
  return in.eof() && !in.bad();
}

}  // namespace sentiq
