// The one place where wide text becomes UTF-8 and back. Wide text is UTF-16 on Windows and UTF-32 elsewhere; text
// outside the Basic Multilingual Plane survives both ways.
#pragma once

#include <string>
#include <string_view>

namespace sentiq {

/// Throws std::range_error when the text is malformed (a lone surrogate, say). Callable on any thread.
std::string toUtf8(std::wstring_view wide);

/// Throws std::range_error when the text is not UTF-8. Callable on any thread.
std::wstring toWide(std::string_view utf8);

}  // namespace sentiq
