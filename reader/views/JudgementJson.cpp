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

std::string hexOf(const std::optional<std::uint64_t>& code) {
  return code ? showHex(*code) : "";
}

std::string_view wordsOfCode(CodeKind kind, const std::optional<std::uint64_t>& code) {
  return code ? codeWords(kind, *code) : "";
}

Json failureJson(const ProgramFailure& failure) {
  return {{"module", failure.module},
          {"moduleVersion", failure.moduleVersion},
          {"exception", hexOf(failure.exception)},
          {"exceptionWords", wordsOfCode(CodeKind::Exception, failure.exception)},
          {"exceptionName", failure.exceptionName},
          {"offset", hexOf(failure.offset)},
          {"hangKind", failure.hangKind},
          {"canvixVersion", failure.version},
          {"reportId", failure.reportId},
          {"bucket", failure.bucket},
          {"reportPath", failure.reportPath},
          {"dumps", failure.dumps}};
}

Json fallJson(const MachineFall& fall, std::chrono::minutes offset) {
  return {{"stopCode", hexOf(fall.stopCode)},
          {"stopWords", wordsOfCode(CodeKind::Stop, fall.stopCode)},
          {"reportId", fall.reportId},
          {"dumps", fall.dump.empty() ? Json() : Json::array({fall.dump})},
          {"asleep", fall.asleep},
          {"standby", fall.inStandby},
          {"powerButton", fall.powerButton},
          {"buttonPressed", timeJson(fall.buttonPressed, offset)}};
}

// Scripts find no key for what is not known.
void addKnown(Json& object, const Json& more) {
  for (const auto& [key, value] : more.items()) {
    const auto* const text = value.get_ptr<const Json::string_t*>();
    if (!value.empty() && value != false && (text == nullptr || !text->empty())) {
      object[key] = value;
    }
  }
}

}  // namespace

Json timeJson(const std::optional<Instant>& time, std::chrono::minutes offset) {
  return time ? Json(isoTime(*time, offset)) : Json();
}

Json evidenceJson(const Judgement& judgement) {
  const auto& [failure, fall, entries] = judgement.evidence;
  Json object;
  if (judgement.time) {
    const auto& [from, to] = *judgement.time;
    object["time"] = isoTime(from, judgement.offset);
    addKnown(object, {{"timeAtLatest", to != from ? isoTime(to, judgement.offset) : ""},
                      {"back", timeJson(judgement.back, judgement.offset)}});
    addKnown(object, failure ? failureJson(*failure) : Json());
    addKnown(object, fall ? fallJson(*fall, judgement.offset) : Json());
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
