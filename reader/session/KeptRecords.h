// Of the records in a row, those that a judgement needs: the first one, that with the lowest figure of each kind, and
// the last one. They are kept as text, and only they are parsed when something else follows.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace sentiq {

class KeptRecords {
 public:
  /// False when it is no record, as far as that shows without parsing it.
  bool keep(std::string_view text, std::uint64_t line);

  bool empty() const { return rows_.empty(); }

  /// In the order of the lines; empties it.
  void takeOut(const std::function<void(std::uint64_t line, const std::string& text)>& visit);

 private:
  struct Record {
    std::int64_t figure = 0;
    std::uint64_t line = 0;
    std::string text;
  };
  struct Row {
    std::int64_t processId = 0;  // Two programs may write into one file by turns.
    std::array<Record, 4> records;
  };

  Row& rowOf(std::int64_t processId);

  std::vector<Row> rows_;
  std::size_t last_ = 0;
};

}  // namespace sentiq
