// What the numbers in events stand for, in words.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sentiq {

enum class CodeKind : std::uint8_t {
  Exception,
  Stop,           // Of a blue screen, or of a report of the kernel that went on.
  SleepReason,    // Why the machine slept, or shut down.
  StandbyReason,  // Why the display, and with it modern standby, went off or on.
  PowerAction,
};

/// Empty when the number is not in the tables.
std::string_view codeWords(CodeKind kind, std::uint64_t code);

/// The hexadecimal digits that the text, or its first word, consists of, with or without 0x.
std::optional<std::uint64_t> parseHex(std::string_view text);

/// The number that the text begins with.
std::optional<std::uint64_t> parseDecimal(std::string_view text);

/// Whether a value is more than nothing, 0 or false.
bool isSet(std::string_view value);

/// 0xc0000005: the one form of all of them, without leading zeros.
std::string showHex(std::uint64_t number);

}  // namespace sentiq
