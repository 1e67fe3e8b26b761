// The one place where wide text becomes UTF-8 and back. Wide text is UTF-16 on Windows and UTF-32 elsewhere;
// text outside the Basic Multilingual Plane survives both ways.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace sentiq {

/// Throws std::range_error when the text is malformed (a lone surrogate, say). Callable on any thread.
std::string toUtf8(std::wstring_view wide);

/// Throws std::range_error when the text is not UTF-8. Callable on any thread.
std::wstring toWide(std::string_view utf8);

/// On Windows any wide text becomes a path unchanged; elsewhere as toUtf8 does it.
std::filesystem::path toPath(std::wstring_view wide);

/// Throws a std::system_error on Windows when the text is not UTF-8.
std::filesystem::path toPath(std::string_view utf8);

}  // namespace sentiq
