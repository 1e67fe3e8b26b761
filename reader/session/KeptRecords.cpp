#include "reader/session/KeptRecords.h"

#include <charconv>
#include <cstddef>
#include <optional>
#include <system_error>
#include <utility>

#include "logging/LogGrammar.h"

namespace sentiq {
namespace {

// The figure as it stands in the record, if it does.
std::optional<std::int64_t> figureOf(std::string_view record, std::string_view key) {
  const std::size_t at = record.find(key);
  record.remove_prefix(at == std::string_view::npos ? record.size() : at + key.size());
  if (!record.starts_with("\":")) {
    return std::nullopt;
  }
  record.remove_prefix(2);
  std::int64_t value = 0;
  const bool found = std::from_chars(record.data(), record.data() + record.size(), value).ec == std::errc{};
  return found ? std::optional(value) : std::nullopt;
}

}  // namespace

bool KeptRecords::keep(std::string_view text, std::uint64_t line) {
  constexpr std::size_t mostProcesses = 16;  // The others are taken for one: no program starts so many companions.
  const bool whole = text.starts_with("{\"") && text.ends_with('}');
  const auto disk = whole ? figureOf(text, grammar::record::freeDisk) : std::nullopt;
  const auto swap = whole ? figureOf(text, grammar::record::freeSwap) : std::nullopt;
  if (!disk || !swap) {
    return false;
  }
  const auto number = static_cast<std::int64_t>(line);
  const std::array<std::int64_t, 4> figures{number, *disk, *swap, -number};
  const std::int64_t processId = figureOf(text, grammar::record::processId).value_or(0);
  std::array<Record, 4>& records = rows_[rows_.size() < mostProcesses || rows_.contains(processId) ? processId : 0];
  for (std::size_t i = 0; i < figures.size(); ++i) {
    Record& kept = records[i];
    if (kept.text.empty() || figures[i] < kept.figure) {
      kept.figure = figures[i];
      kept.line = line;
      kept.text = text;
    }
  }
  return true;
}

std::map<std::uint64_t, std::string> KeptRecords::takeOut() {
  std::map<std::uint64_t, std::string> records;  // One may be several of them.
  for (auto& [processId, row] : std::exchange(rows_, {})) {
    for (Record& kept : row) {
      if (!kept.text.empty()) {
        records.emplace(kept.line, std::move(kept.text));
      }
    }
  }
  return records;
}

}  // namespace sentiq
