// The files beside this one, as the build puts them into the program.
#pragma once

#include <string_view>

namespace sentiq {

/// "Report.html", say, without the blanks that its lines begin with. Of style and script there is also the SHA-256, by
/// which the page allows them, 32 bytes: "Report.css hash". Empty when there is no such file.
std::string_view pageAsset(std::string_view name);

}  // namespace sentiq
