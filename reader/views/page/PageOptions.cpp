#include "reader/views/page/PageOptions.h"

#include "logging/LogEncoding.h"
#include "reader/views/page/PageAssets.h"

namespace sentiq {

Places placesOf(const PageOptions& options, std::initializer_list<std::string_view> allowed) {
  Places places;
  for (const std::string_view name : allowed) {
    places.text(name, base64Encode(pageAsset(name)));
  }
  places.text("made", showTime(options.made, options.offset).substr(0, 16) + ' ' + showOffset(options.offset));
  places.text("program", options.program);
  places.flag("redacted", options.redacted);
  return places;
}

}  // namespace sentiq
