// The command line on any tokens: it parses, or throws a standard exception.
#include <exception>

#include "startup/LaunchOptions.h"
#include "tests/fuzz/Fuzz.h"

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
    require(exitCode == 0 || exitCode == 1);
  } catch (const std::exception&) {
  }
  return 0;
}
