#include "reader/views/page/PageOptions.h"

#include "logging/LogEncoding.h"
#include "reader/views/TimeText.h"
#include "reader/views/page/PageAssets.h"

namespace sentiq {

Places placesOf(const PageOptions& options, std::initializer_list<std::string_view> allowed) {
  Places places{{"made", minuteText(options.made, options.offset) + ' ' + showOffset(options.offset)},
                {"program", options.program},
                {"redacted", options.redacted}};
  for (const std::string_view name : allowed) {
    places.add({name, base64Encode(pageAsset(name))});
  }
  return places;
}

}  // namespace sentiq
