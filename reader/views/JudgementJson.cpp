#include "reader/views/JudgementJson.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

#include "reader/events/CodeWords.h"
#include "reader/views/JudgementText.h"

namespace sentiq {
namespace {

using Json = nlohmann::ordered_json;

std::int64_t seconds(Ticks duration) {
  return std::chrono::floor<std::chrono::seconds>(duration).count();
}

// Scripts find no key for what is not known.
void add(Json& object, const char* key, std::string_view text) {
  if (!text.empty()) {
    object[key] = text;
  }
}

void addCode(Json& object, const char* key, const std::optional<std::uint64_t>& code) {
  add(object, key, code ? showHex(*code) : "");
}

void addWords(Json& object, const char* key, CodeKind kind, const std::optional<std::uint64_t>& code) {
  add(object, key, code ? codeWords(kind, *code) : "");
}

void addFailure(Json& object, const ProgramFailure& failure) {
  add(object, "module", failure.module);
  add(object, "moduleVersion", failure.moduleVersion);
  addCode(object, "exception", failure.exception);
  addWords(object, "exceptionWords", CodeKind::Exception, failure.exception);
  add(object, "exceptionName", failure.exceptionName);
  addCode(object, "offset", failure.offset);
  add(object, "hangKind", failure.hangKind);
  add(object, "canvixVersion", failure.version);
  add(object, "reportId", failure.reportId);
  add(object, "bucket", failure.bucket);
  add(object, "reportPath", failure.reportPath);
  if (!failure.dumps.empty()) {
    object["dumps"] = failure.dumps;
  }
}

void addFall(Json& object, const MachineFall& fall, std::chrono::minutes offset) {
  addCode(object, "stopCode", fall.stopCode);
  addWords(object, "stopWords", CodeKind::Stop, fall.stopCode);
  add(object, "reportId", fall.reportId);
  if (!fall.dump.empty()) {
    object["dumps"] = {fall.dump};
  }
  for (const auto& [key, isSo] :
       {std::pair("asleep", fall.asleep), {"standby", fall.inStandby}, {"powerButton", fall.powerButton}}) {
    if (isSo) {
      object[key] = true;
    }
  }
  if (fall.buttonPressed) {
    object["buttonPressed"] = isoTime(*fall.buttonPressed, offset);
  }
}

}  // namespace

Json evidenceJson(const Judgement& judgement) {
  Json object;
  if (!judgement.time) {
    return object;
  }
  object["time"] = isoTime(judgement.time->from, judgement.offset);
  if (judgement.time->to != judgement.time->from) {
    object["timeAtLatest"] = isoTime(judgement.time->to, judgement.offset);
  }
  if (judgement.back) {
    object["back"] = isoTime(*judgement.back, judgement.offset);
  }
  if (judgement.evidence.failure) {
    addFailure(object, *judgement.evidence.failure);
  }
  if (judgement.evidence.fall) {
    addFall(object, *judgement.evidence.fall, judgement.offset);
  }
  return object;
}

Json beforeJson(const Judgement& judgement) {
  auto list = Json::array();
  for (const Before& before : judgement.before) {
    list.push_back({{"kind", beforeName(before.kind)},
                    {"time", isoTime(before.time, before.offset)},
                    {"secondsEarlier", seconds(before.earlier)},
                    {"text", before.text}});
  }
  return list;
}

Json changesJson(const Judgement& judgement) {
  auto list = Json::array();
  for (const Change& change : judgement.changes) {
    list.push_back({{"kind", changeName(change.change.kind)},
                    {"name", change.change.name},
                    {"version", change.change.version},
                    {"failed", change.change.failed},
                    {"time", isoTime(change.time, change.offset)},
                    {"secondsEarlier", seconds(change.earlier)},
                    {"text", changeText(change.change)}});
  }
  return list;
}

std::string dumped(const Json& object) {
  return object.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

}  // namespace sentiq
