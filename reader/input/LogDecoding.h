// Undoes the encoding of log lines, and tells plain, encoded and damaged lines apart by what they hold.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace sentiq {

enum class LineKind : std::uint8_t { Plain, Encoded, Damaged };

struct DecodedLine {
  LineKind kind = LineKind::Damaged;
  std::string_view text;  // Of a line that is not encoded the line as it stands.
};

/// Takes the lines of one file in their order: what a line without time stamp is (a message's second line,
/// say) follows from the entry that it belongs to. A file may hold plain and encoded entries side by side.
///
/// 1. A line that decodes to the beginning of an entry (a time stamp, a JSON object, the separator) is encoded.
/// 2. A line that holds a NUL byte is damaged: a machine that lost power leaves runs of them.
/// 3. A line that begins an entry or a header as it stands is plain.
/// 4. A line that still decodes to an entry's beginning, but not to its end, is damaged.
/// 5. Any other line follows the entry before it. After an encoded one, and before the first, it is encoded when it
///    decodes to text. What is left is plain, or damaged after an encoded entry and when it is not text.
class LineDecoder {
 public:
  /// @param line without its line end. Any bytes; nothing is thrown.
  /// @return valid until the next call, and as long as the line.
  DecodedLine decode(std::string_view line);

 private:
  enum class Manner : std::uint8_t { Unknown, Plain, Encoded };

  LineKind kindDecoded(std::string_view text);
  LineKind kindAsItStands(std::string_view line);

  Manner manner_ = Manner::Unknown;  // That of the last entry.
  std::string room_;                 // For a line's text; it only grows.
};

}  // namespace sentiq
