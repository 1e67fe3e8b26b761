// Throughput of the log encoding, beside the format's definition written naively and beside memcpy.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include <benchmark/benchmark.h>

#include "logging/LogEncoding.h"

namespace {

std::string lineOf(std::size_t size) {
  std::string line(size, ' ');
  for (std::size_t i = 0; i < size; ++i) {
    line[i] = static_cast<char>(' ' + i * 7 % 90);
  }
  return line;
}

std::string naive(const std::string& text) {
  std::string line = text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    line[i] = static_cast<char>(line[i] ^ sentiq::logKey[i % sentiq::logKey.size()]);
  }
  std::string out;
  out.reserve((line.size() + 2) / 3 * 4);
  std::uint32_t accumulator = 0;
  int bits = -6;
  for (const char c : line) {
    accumulator = (accumulator << 8) + static_cast<unsigned char>(c);
    bits += 8;
    while (bits >= 0) {
      out.push_back(sentiq::base64Alphabet[accumulator >> bits & 63]);
      bits -= 6;
    }
  }
  if (bits > -6) {
    out.push_back(sentiq::base64Alphabet[(accumulator << 8) >> (bits + 8) & 63]);
  }
  while (out.size() % 4 != 0) {
    out.push_back('=');
  }
  return out;
}

template <typename Encode>
void measure(benchmark::State& state, Encode encode) {
  const std::string line = lineOf(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(encode(line));
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void encodeText(benchmark::State& state) {
  measure(state, [](const std::string& line) { return sentiq::encodeText(line); });
}
void naiveLoop(benchmark::State& state) {
  measure(state, naive);
}
void plainMemcpy(benchmark::State& state) {
  measure(state, [](const std::string& line) {
    std::string copy(line.size(), '\0');
    std::memcpy(copy.data(), line.data(), line.size());
    return copy;
  });
}

}  // namespace

BENCHMARK(encodeText)->Arg(64)->Arg(512)->Arg(4096)->Arg(65536);
BENCHMARK(naiveLoop)->Arg(64)->Arg(512)->Arg(4096)->Arg(65536);
BENCHMARK(plainMemcpy)->Arg(64)->Arg(512)->Arg(4096)->Arg(65536);
