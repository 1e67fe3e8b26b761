// Stands in for libFuzzer where there is none: takes a target through the files of the given folders and for a second
// through damaged variants of them, the same in every run.
#include <random>

#include "tests/fuzz/Fuzz.h"
#include "tests/support/TestFiles.h"

int main(int argc, char** argv) {
  std::vector<std::string> inputs;
  for (const std::string folder : std::vector(argv + 1, argv + argc)) {
    for (const auto& file : std::filesystem::recursive_directory_iterator(folder)) {
      if (file.is_regular_file()) {
        inputs.push_back(sentiq::test::readFile(file.path()));
      }
    }
  }
  require(!inputs.empty());
  std::mt19937 random(1);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
  for (std::size_t run = 0; run < inputs.size() || std::chrono::steady_clock::now() < end; ++run) {
    std::string bytes = inputs[run % inputs.size()];
    for (int change = 0; run >= inputs.size() && change < 5; ++change) {
      const std::size_t at = random() % (bytes.size() + 1);
      const std::size_t removed = random() % 3 == 0 ? random() % 40 : random() % 2;
      bytes.replace(at, removed, random() % 3, static_cast<char>(random()));
    }
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
}
