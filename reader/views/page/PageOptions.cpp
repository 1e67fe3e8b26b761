#include "reader/views/page/PageOptions.h"

#include "logging/LogEncoding.h"
#include "reader/views/TimeText.h"
#include "reader/views/page/PageAssets.h"

namespace sentiq {

Places placesOf(const PageOptions& options, const std::vector<std::string>& styles,
                const std::vector<std::string>& scripts) {
  Places places{{"made", minuteText(options.made, options.offset) + ' ' + showOffset(options.offset)},
                {"program", options.program},
                {"redacted", options.redacted}};
  const auto hashed = [](const std::string& name) { return Places{{"hash", base64Encode(pageAsset(name + " hash"))}}; };
  places.list("styles", styles, hashed);
  places.list("scripts", scripts, hashed);
  return places;
}

}  // namespace sentiq
