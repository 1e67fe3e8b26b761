#include "logging/TextConversion.h"

#include <locale>
#include <stdexcept>
#include <type_traits>

#include "logging/Utf8Facet.h"

namespace sentiq {
namespace {

using Converter = std::wstring_convert<Utf8Facet>;

// Some facets let a surrogate pass that has no partner, or stop there without an error.
bool surrogatesArePaired(std::wstring_view wide) {
  bool open = false;
  for (const wchar_t unit : wide) {
    const bool second = unit >= 0xDC00 && unit <= 0xDFFF;
    if (open != second) {
      return false;
    }
    open = unit >= 0xD800 && unit < 0xDC00;
  }
  return !open;
}

}  // namespace

std::string toUtf8(std::wstring_view wide) {
  if (!surrogatesArePaired(wide)) {
    throw std::range_error("surrogate without its partner");
  }
  return Converter().to_bytes(wide.data(), wide.data() + wide.size());
}

std::wstring toWide(std::string_view utf8) {
  std::wstring wide = Converter().from_bytes(utf8.data(), utf8.data() + utf8.size());
  // Some facets take malformed text, and some stop in a character that is cut off.
  if (toUtf8(wide) != utf8) {
    throw std::range_error("not UTF-8");
  }
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
