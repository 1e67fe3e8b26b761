// What mail, editors and shells make of a log: UTF-16 or UTF-8 with a byte order mark.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace sentiq {

/// Takes the bytes of one file in their order. Without a mark they stay as they are.
class Utf8Bytes {
 public:
  /// The same in UTF-8, without mark; a half of a surrogate pair becomes U+FFFD. Valid until the next call.
  std::string_view take(std::string_view bytes);

  /// The file ends here: what is left of it, half a character. Nothing is taken after it.
  std::string_view finish();

 private:
  enum class Form : std::uint8_t { Open, AsItIs, LittleEndian, BigEndian };

  std::string_view begin();
  void takeUnit(std::uint16_t unit);
  void append(std::uint32_t code);

  Form form_ = Form::Open;
  std::string held_;            // The bytes of a mark or a character that is not whole.
  std::uint16_t highHalf_ = 0;  // Of a surrogate pair.
  std::string text_;
};

}  // namespace sentiq
