// Style and script of the report page, and the SHA-256 of each, by which the page allows them. Defined by a file that
// the build makes of Report.css and Report.js.
#pragma once

#include <string_view>

namespace sentiq {

extern const std::string_view reportStyle;
extern const std::string_view reportStyleDigest;  // 32 bytes; so is the other.
extern const std::string_view reportScript;
extern const std::string_view reportScriptDigest;

}  // namespace sentiq
