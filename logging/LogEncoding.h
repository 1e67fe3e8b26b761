// Makes log text unreadable at a glance: each line is XOR-ed with a fixed key and written as base64, so that
// a file stays line-oriented and any one line can be undone by itself. It hides nothing from whoever has this program.
#pragma once

#include <string>
#include <string_view>

namespace sentiq {

/// Repeats from its first byte after 25 bytes, and starts again on every line.
inline constexpr std::string_view logKey = "QiVo_Marblestone_14082023";

/// The standard alphabet (RFC 4648, section 4).
inline constexpr std::string_view base64Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Encodes every line of the text by itself, joined by "\n"; a newline at the very end adds no line. A
/// carriage return is a byte like any other. Callable on any thread.
std::string encodeText(std::string_view text);

/// Base64 with padding and without line breaks (RFC 4648).
std::string base64Encode(std::string_view bytes);

}  // namespace sentiq
