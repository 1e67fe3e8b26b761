#include <spawn.h>
#include <unistd.h>

#include "reader/console/Console.h"

namespace sentiq {

bool openInBrowser(const std::filesystem::path& page) {
  std::string program = "xdg-open";
  std::string file = std::filesystem::absolute(page).string();
  char* const arguments[]{program.data(), file.data(), nullptr};
  pid_t child = 0;
  return ::posix_spawnp(&child, program.c_str(), /*file_actions=*/nullptr, /*attrp=*/nullptr, arguments, environ) == 0;
}

}  // namespace sentiq
