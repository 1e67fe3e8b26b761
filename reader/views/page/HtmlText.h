// Text into HTML.
#pragma once

#include <string>
#include <string_view>

namespace sentiq {

/// Any bytes, made clean and safe in elements and in quoted attributes.
std::string htmlText(std::string_view bytes);

}  // namespace sentiq
