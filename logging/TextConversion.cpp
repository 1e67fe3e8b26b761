#include "logging/TextConversion.h"

#include <cwchar>
#include <locale>
#include <stdexcept>
#include <type_traits>

#include "logging/Utf8Facet.h"

namespace sentiq {
namespace {

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
  if (wide.empty()) {
    return {};
  }
  const Utf8Facet facet;
  std::string utf8(wide.size() * static_cast<std::size_t>(facet.max_length()), '\0');
  std::mbstate_t state{};
  const wchar_t* read = nullptr;
  char* written = nullptr;
  const auto result =
      facet.out(state, wide.data(), wide.data() + wide.size(), read, utf8.data(), utf8.data() + utf8.size(), written);
  if (result != Utf8Facet::ok || read != wide.data() + wide.size()) {
    throw std::range_error("no Unicode text");
  }
  utf8.resize(static_cast<std::size_t>(written - utf8.data()));
  return utf8;
}

std::wstring toWide(std::string_view utf8) {
  if (utf8.empty()) {
    return {};
  }
  std::wstring wide(utf8.size(), L'\0');
  std::mbstate_t state{};
  const char* read = nullptr;
  wchar_t* written = nullptr;
  const auto result = Utf8Facet().in(state, utf8.data(), utf8.data() + utf8.size(), read, wide.data(),
                                     wide.data() + wide.size(), written);
  if (result != Utf8Facet::ok) {
    throw std::range_error("not UTF-8");
  }
  wide.resize(static_cast<std::size_t>(written - wide.data()));
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
