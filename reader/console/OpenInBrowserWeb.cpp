// Within a page nothing can be opened.
#include "reader/console/Console.h"

namespace sentiq {

bool openInBrowser(const std::filesystem::path& /*page*/) {
  return false;
}

}  // namespace sentiq
