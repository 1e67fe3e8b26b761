#include "logging/TextConversion.h"

#include <cstddef>
#include <filesystem>
#include <locale>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

#include "logging/Utf8Facet.h"

namespace sentiq {
namespace {

using Converter = std::wstring_convert<Utf8Facet>;

// A text that ends in the middle of a character is not an error to every runtime library: it just stops early.
void requireWhole(const Converter& converter, std::size_t size) {
  if (converter.converted() != size) {
    throw std::range_error("text ends within a character");
  }
}

}  // namespace

std::string toUtf8(std::wstring_view wide) {
  Converter converter;
  std::string utf8 = converter.to_bytes(wide.data(), wide.data() + wide.size());
  requireWhole(converter, wide.size());
  return utf8;
}

std::wstring toWide(std::string_view utf8) {
  Converter converter;
  std::wstring wide = converter.from_bytes(utf8.data(), utf8.data() + utf8.size());
  requireWhole(converter, utf8.size());
  return wide;
}

std::filesystem::path toPath(std::wstring_view wide) {
  if constexpr (std::is_same_v<std::filesystem::path::value_type, wchar_t>) {
    return wide;
  } else {
    return toUtf8(wide);
  }
}

std::filesystem::path toPath(std::string_view utf8) {
  return std::u8string(utf8.begin(), utf8.end());
}

}  // namespace sentiq
