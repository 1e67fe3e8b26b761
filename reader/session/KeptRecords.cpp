#include "reader/session/KeptRecords.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <system_error>
#include <utility>

#include "logging/LogGrammar.h"

namespace sentiq {
namespace {

// The figure as it stands in the record, if it does.
std::optional<std::int64_t> figureOf(std::string_view record, std::string_view key) {
  constexpr std::string_view between = "\":";
  for (std::size_t at = record.find(key); at != std::string_view::npos; at = record.find(key, at + key.size())) {
    std::string_view rest = record.substr(at + key.size());
    if (rest.starts_with(between) && record[at - 1] == '"') {
      std::int64_t value = 0;
      rest.remove_prefix(between.size());
      const bool found = std::from_chars(rest.data(), rest.data() + rest.size(), value).ec == std::errc{};
      return found ? std::optional(value) : std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace

bool KeptRecords::keep(std::string_view text, std::uint64_t line) {
  const bool whole = text.starts_with("{\"") && text.ends_with('}');
  const auto disk = whole ? figureOf(text, grammar::record::freeDisk) : std::nullopt;
  const auto swap = whole ? figureOf(text, grammar::record::freeSwap) : std::nullopt;
  if (!disk || !swap) {
    return false;
  }
  const auto number = static_cast<std::int64_t>(line);
  const std::array<std::int64_t, 4> figures{number, *disk, *swap, -number};
  Row& row = rowOf(figureOf(text, grammar::record::processId).value_or(0));
  for (std::size_t i = 0; i < figures.size(); ++i) {
    Record& kept = row.records[i];
    if (kept.text.empty() || figures[i] < kept.figure) {
      kept.figure = figures[i];
      kept.line = line;
      kept.text = text;
    }
  }
  return true;
}

KeptRecords::Row& KeptRecords::rowOf(std::int64_t processId) {
  constexpr std::size_t most = 16;  // Beyond that they share the last one: no program starts so many companions.
  for (std::size_t i = 0; i < rows_.size(); ++i, last_ = (last_ + 1) % rows_.size()) {
    if (rows_[last_].processId == processId) {
      return rows_[last_];
    }
  }
  if (rows_.size() < most) {
    rows_.push_back({processId, {}});
    last_ = rows_.size() - 1;
  }
  return rows_[last_];
}

void KeptRecords::takeOut(const std::function<void(std::uint64_t line, const std::string& text)>& visit) {
  if (rows_.empty()) {
    return;
  }
  std::map<std::uint64_t, std::string> records;  // One may be several of them.
  for (Row& row : std::exchange(rows_, {})) {
    for (Record& kept : row.records) {
      if (!kept.text.empty()) {
        records.emplace(kept.line, std::move(kept.text));
      }
    }
  }
  last_ = 0;
  for (const auto& [line, text] : records) {
    visit(line, text);
  }
}

}  // namespace sentiq
