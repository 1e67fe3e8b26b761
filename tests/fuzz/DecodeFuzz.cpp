// The line decoder on any bytes: where blocks end makes no difference, and what the program encodes comes back.
#include "logging/LogEncoding.h"
#include "reader/commands/DecodeStream.h"
#include "tests/fuzz/Fuzz.h"

static std::string decoded(const std::string& bytes, std::size_t blockSize) {
  std::ostringstream out, said;
  sentiq::Messages messages(said);
  sentiq::DecodeOutput output{out};
  sentiq::DecodeStream stream("log", "", output, messages);
  for (std::size_t at = 0; at < bytes.size(); at += blockSize) {
    stream.feed(bytes.substr(at, blockSize));
  }
  stream.finish();
  output.flush();
  return out.str() + said.str();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string bytes(data, data + size);
  require(decoded(bytes, 7) == decoded(bytes, size + 1));
  std::erase(bytes, '\n');
  const std::string entry = "2025-01-31T14:05:09.042+0100 [SYSTEM] [INFO]: " + bytes + '\n';
  require(decoded(sentiq::encodeText(entry) + '\n', 2 * entry.size()) == entry);
  return 0;
}
