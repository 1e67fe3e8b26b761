// Stands in for libFuzzer where there is none: takes a target through the files of the given folders, then for some
// seconds through damaged variants of them.
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void run(const std::string& bytes) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

void damage(std::string& bytes, std::mt19937& random) {
  const std::size_t at = random() % (bytes.size() + 1);
  const auto byte = static_cast<char>(random());
  switch (random() % 3) {
    case 0:
      bytes.replace(at, at < bytes.size() ? 1 : 0, 1, byte);
      break;
    case 1:
      bytes.erase(at, random() % 40);
      break;
    default:
      bytes.insert(at, random() % 5, byte);
  }
}

}  // namespace

int main(int argc, char** argv) {
  constexpr std::chrono::seconds time{2};
  std::vector<std::string> inputs{""};
  for (int i = 1; i < argc; ++i) {
    for (const auto& file : std::filesystem::recursive_directory_iterator(argv[i])) {
      if (file.is_regular_file()) {
        std::ifstream in(file.path(), std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        run(inputs.back());
      }
    }
  }
  std::mt19937 random(1);  // The same variants in every run, as many as there is time for.
  std::size_t runs = 0;
  const auto end = std::chrono::steady_clock::now() + time;
  for (; std::chrono::steady_clock::now() < end; ++runs) {
    std::string bytes = inputs[random() % inputs.size()];
    for (int change = 0; change < 5; ++change) {
      damage(bytes, random);
    }
    run(bytes);
  }
  std::cout << inputs.size() - 1 << " files, " << runs << " damaged variants\n";
  return inputs.size() > 1 ? 0 : 1;
}
