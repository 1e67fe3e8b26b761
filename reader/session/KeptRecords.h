// Of the records in a row, those that a judgement needs: the first one, that with the lowest figure of each kind, and
// the last one. They are kept as text, and only they are parsed when something else follows.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace sentiq {

class KeptRecords {
 public:
  /// False when it is no record, as far as that shows without parsing it.
  bool keep(std::string_view text, std::uint64_t line);

  bool empty() const { return rows_.empty(); }

  /// By their lines; empties it.
  std::map<std::uint64_t, std::string> takeOut();

 private:
  struct Record {
    std::int64_t figure = 0;
    std::uint64_t line = 0;
    std::string text;
  };

  std::map<std::int64_t, std::array<Record, 4>> rows_;  // By process: two programs may write into one file by turns.
};

}  // namespace sentiq
