// Writes encoded log lines to standard output: DecodeInput MEBIBYTES.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "logging/LogEncoding.h"

int main(int argc, char** argv) {
  const std::size_t wanted = std::strtoul(argc > 1 ? argv[1] : "1", nullptr, 10) << 20;
  std::size_t written = 0;
  for (std::size_t i = 0; written < wanted; ++i) {
    const std::string line = "2025-01-31T14:05:09.042+0100 [PROCESS] [INFO]: {\"xmlData\":\"<Event " +
                             std::string(100 + i % 29 * 40, 'e') + "\"}";
    const std::string encoded = sentiq::encodeText(line) + "\n";
    written += std::fwrite(encoded.data(), 1, encoded.size(), stdout);
  }
}
