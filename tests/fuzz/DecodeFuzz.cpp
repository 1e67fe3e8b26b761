// The line decoder on any bytes: where blocks end makes no difference, and what the program encodes comes back.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

#include "logging/LogEncoding.h"
#include "reader/views/DecodeStream.h"

namespace {

std::string decoded(std::string_view bytes, std::size_t blockSize) {
  std::ostringstream out;
  std::ostringstream messages;
  sentiq::OutputBlock block(out);
  sentiq::DecodeStream stream("log", "", block, messages);
  for (; !bytes.empty(); bytes.remove_prefix(std::min(blockSize, bytes.size()))) {
    stream.feed(bytes.substr(0, blockSize));
  }
  stream.finish();
  block.flush();
  return out.str() + messages.str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  if (decoded(bytes, 7) != decoded(bytes, bytes.size())) {
    std::abort();
  }
  std::string entry = "2025-01-31T14:05:09.042+0100 [SYSTEM] [INFO]: " + bytes;
  std::erase(entry, '\n');
  entry += '\n';
  if (decoded(sentiq::encodeText(entry) + '\n', entry.size()) != entry) {
    std::abort();
  }
  return 0;
}
