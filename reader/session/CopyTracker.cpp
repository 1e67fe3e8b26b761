#include "reader/session/CopyTracker.h"

#include <algorithm>
#include <iterator>

#include "logging/LogGrammar.h"

namespace sentiq {
namespace {

struct TitleRow {
  std::string_view title;
  std::string_view channel;
};
constexpr TitleRow titleRows[] = {
    TitleRow{grammar::applicationCopy, "Application"},
    TitleRow{grammar::systemCopy, "System"},
};

}  // namespace

void CopyTracker::takeMessage(const LogLine& line, std::optional<LogTime> time, std::vector<ChannelCopy>& copies) {
  powerTitle_ = powerTitle_ || isPower(line.meaning);
  const auto* const row =
      std::find_if(std::begin(titleRows), std::end(titleRows), [&](const TitleRow& r) { return r.title == line.text; });
  if (row == std::end(titleRows) || !time) {
    return;
  }
  const bool first = row == std::begin(titleRows);  // The other channel's copy follows it.
  const std::optional<std::size_t> before = open_[0];
  last_ = open_[first ? 0 : 1] = copies.size();
  ChannelCopy& copy = copies.emplace_back();
  copy.channel = row->channel;
  copy.made = time->instant;
  copy.afterExit = first ? !powerTitle_ : before && copies[*before].afterExit;
  powerTitle_ = powerTitle_ && !first;
}

void CopyTracker::takeEvent(std::string_view channel, std::uint64_t recordId, std::optional<Instant> time,
                            std::vector<ChannelCopy>& copies) {
  for (std::size_t i = 0; i < open_.size(); ++i) {
    if (titleRows[i].channel == channel && open_[i]) {
      ChannelCopy& copy = copies[*open_[i]];
      ++copy.events;
      copy.oldest = earlier(copy.oldest, time);
      if (recordId != 0) {
        copy.firstRecord = copy.firstRecord == 0 ? recordId : std::min(copy.firstRecord, recordId);
        copy.lastRecord = std::max(copy.lastRecord, recordId);
      }
    }
  }
}

void CopyTracker::takeLoss(std::vector<ChannelCopy>& copies) {
  if (last_) {  // The newest event comes first.
    ChannelCopy& copy = copies[*last_];
    copy.lostBefore = copy.lostBefore ? copy.lostBefore : copy.oldest.value_or(copy.made);
  }
}

}  // namespace sentiq
