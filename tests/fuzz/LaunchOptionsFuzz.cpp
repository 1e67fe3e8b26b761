// The command line on any tokens: it parses, or throws a standard exception.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "startup/LaunchOptions.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::wstring> tokens(1);
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] == '\n') {
      tokens.emplace_back();
    } else {
      tokens.back() += static_cast<wchar_t>(data[i] < 0xF8 ? data[i] : 0xD7FF + data[i]);  // Surrogates, too.
    }
  }
  try {
    const int exitCode = sentiq::parseCommandLine(tokens).exitCode.value_or(0);
    if (exitCode != 0 && exitCode != 1) {
      std::abort();
    }
  } catch (const std::exception&) {
  }
  return 0;
}
