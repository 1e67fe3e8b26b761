#include "reader/session/LogLine.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "logging/LogGrammar.h"

namespace sentiq {
namespace {

// The program's own lines that mean something for the session, by their beginning.
struct MessageRow {
  std::string_view begin;
  Meaning meaning;
  Severity severity;
};
constexpr MessageRow messageRows[] = {
    MessageRow{grammar::exitSeen, Meaning::Exit, Severity::Notice},
    MessageRow{grammar::exitStatus, Meaning::Exit, Severity::Notice},
    MessageRow{grammar::captureStopped, Meaning::Other, Severity::Info},
    MessageRow{grammar::willSleep, Meaning::Sleep, Severity::Notice},
    MessageRow{grammar::resumed, Meaning::Resume, Severity::Notice},
    MessageRow{grammar::displayChanged, Meaning::DisplayChange, Severity::Notice},
    MessageRow{grammar::captureError, Meaning::Other, Severity::Warning},
    MessageRow{grammar::queryFailed, Meaning::Other, Severity::Warning},
    MessageRow{grammar::readingEnded, Meaning::Other, Severity::Warning},
    MessageRow{grammar::powerThreadTrouble, Meaning::Other, Severity::Warning},
};

struct HeaderRow {
  std::string_view key;
  LineSays says;
};
constexpr HeaderRow headerRows[] = {
    HeaderRow{grammar::sessionId, LineSays::SessionId},
    HeaderRow{grammar::processId, LineSays::ProcessId},
    HeaderRow{grammar::timeZone, LineSays::TimeZone},
    HeaderRow{grammar::bootTime, LineSays::BootTime},
};

bool skip(std::string_view& text, std::string_view begin) {
  const bool found = text.starts_with(begin);
  text.remove_prefix(found ? begin.size() : 0);
  return found;
}

template <std::size_t count>
bool skipOneOf(std::string_view& text, const std::string_view (&begins)[count]) {
  return std::any_of(std::begin(begins), std::end(begins), [&](std::string_view begin) { return skip(text, begin); });
}

bool skipTags(std::string_view& text) {
  std::string_view rest = text;
  if (!skipOneOf(rest, grammar::categories) || !skip(rest, " ") || !skipOneOf(rest, grammar::levels) ||
      !skip(rest, grammar::tagsEnd)) {
    return false;
  }
  text = rest;
  return true;
}

bool isEvent(std::string_view text) {
  return skip(text, "{\"") && skip(text, grammar::eventXml) && text.starts_with("\":");
}

// What a key of a header says; Rest when the text begins with none.
LineSays readHeader(std::string_view text, std::string_view& value) {
  for (const HeaderRow& row : headerRows) {
    std::string_view rest = text;
    if (skip(rest, row.key) && skip(rest, grammar::keyEnd)) {
      value = rest;
      return row.says;
    }
  }
  return LineSays::Rest;
}

void readMessage(LogLine& line) {
  line.says = LineSays::Message;
  if (isEvent(line.text)) {
    line.says = LineSays::Event;
    line.known = true;
    return;
  }
  if (line.tagged) {
    const LineSays header = readHeader(line.text, line.value);
    line.says = header != LineSays::Rest             ? header
                : line.text.empty()                  ? LineSays::LostEvent
                : line.text == grammar::initialBegun ? LineSays::InitialBegun
                                                     : LineSays::Message;
  }
  const auto* const row = std::find_if(std::begin(messageRows), std::end(messageRows),
                                       [&](const MessageRow& r) { return line.text.starts_with(r.begin); });
  if (row != std::end(messageRows)) {
    line.known = true;
    line.meaning = row->meaning;
    line.severity = row->severity;
  }
}

}  // namespace

LogLine readLine(std::string_view text) {
  LogLine line;
  std::size_t used = 0;
  line.time = parseTime(text, &used);
  line.stamped = line.time || text.starts_with(grammar::noTimeStamp);
  line.text = text;
  if (line.stamped) {
    line.text.remove_prefix(std::min((line.time ? used : grammar::noTimeStamp.size()) + 1, text.size()));
    line.tagged = skipTags(line.text);
    line.known = line.tagged;
    readMessage(line);
  } else if (text.starts_with("{\"")) {
    line.says = LineSays::Record;
  } else if (text.find_first_not_of("=\r") == std::string_view::npos) {
    line.says = LineSays::Nothing;
  } else {
    const LineSays header = readHeader(text, line.value);
    line.known = header == LineSays::SessionId || header == LineSays::ProcessId;
    line.says = line.known ? header : LineSays::Rest;
  }
  return line;
}

}  // namespace sentiq
