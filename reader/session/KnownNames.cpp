#include "reader/session/KnownNames.h"

#include <algorithm>
#include <optional>

#include "reader/events/EventPattern.h"
#include "reader/input/CleanText.h"
#include "reader/input/TextHash.h"
#include "reader/input/Words.h"
#include "reader/session/LogLine.h"

namespace sentiq {
namespace {

constexpr std::string_view separators = "\\/";
constexpr std::string_view notInNames = "\\/\":;|=,+*?<>[]\r\n\t";  // Windows takes none of them.

// In small letters: what Windows brings along, and what stands for nobody.
constexpr std::string_view nobodies =
    "system|local service|network service|localsystem|localservice|networkservice|public|lokaler dienst|netzwerkdienst|"
    "anonymous logon|administrator|guest|gast|default|default user|all users|defaultuser0|defaultaccount|desktop.ini|"
    "localhost|unavailable|unknown|n/a|null|azuread|workgroup|microsoftaccount|arbeitsgruppe|wdagutilityaccount";
constexpr std::string_view ownDomains =
    "nt authority|nt-autorit\xC3\xA4t|autorite nt|builtin|nt service|iis apppool|window manager|font driver host|"
    "nt virtual machine";

bool isOneOf(std::string_view name, std::string_view names) {
  return anyPart(names, [name](std::string_view other) { return name == other; });
}

bool isSeparator(char c) {
  return separators.find(c) != std::string_view::npos;
}

bool isNumber(std::string_view text) {
  return text.find_first_not_of("0123456789.") == std::string_view::npos;
}

bool isSomebody(std::string_view small) {
  return small.find_first_not_of("-_.~$#@!%&") != std::string_view::npos && !isOneOf(small, nobodies) &&
         !isOneOf(small, ownDomains) && !small.starts_with("dwm-") && !small.starts_with("umfd-");
}

// A letter or a short number may be anything: it is a name only in a path, or alone.
bool hasPlace(std::string_view text, std::size_t begin, std::size_t end) {
  constexpr std::size_t shortNumber = 4;
  const std::string_view name = text.substr(begin, end - begin);
  return (name.size() > 1 && (name.size() > shortNumber || !isNumber(name))) || name.size() == text.size() ||
         (begin > 0 && isSeparator(text[begin - 1])) || (end < text.size() && isSeparator(text[end]));
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view around = " .'\"()\\/\r\n\t";
  const std::size_t begin = std::min(text.find_first_not_of(around), text.size());
  return text.substr(begin, text.find_last_not_of(around) + 1 - begin);
}

// As XML may write it.
std::string withEntities(std::string_view text, std::string_view apostrophe) {
  std::string out;
  for (const char c : text) {
    out.append(c == '&' ? "&amp;" : c == '\'' ? apostrophe : std::string_view(&c, 1));
  }
  return out;
}

// Whether what comes next in the path is the folder of a user. Pages on the web have a "home", too.
bool endsWithUsers(std::string_view text) {
  for (const std::string_view folder : {"users", "documents and settings", "home"}) {
    const std::size_t size = folder.size() + 1;
    if (text.size() >= size && isSeparator(text[text.size() - size]) &&
        equalIgnoringCase(text.substr(text.size() - size + 1), folder)) {
      constexpr std::string_view beforePaths = " \t\"'(=:>/";
      const bool begins =
          text.size() == size || beforePaths.find(text[text.size() - size - 1]) != std::string_view::npos;
      return folder != "home" || begins;
    }
  }
  return false;
}

}  // namespace

void KnownNames::learnLine(std::string_view line) {
  constexpr std::size_t keptWhole = 8000;  // By the record of an event, of each field.
  const LogLine parts = readLine(line);
  if (parts.says == LineSays::Event) {
    if (!seen_.insert(textHash(parts.text))) {
      return;
    }
    const std::optional<EventRecord> event = readEvent(parts.text);
    if (event) {
      learnEvent(*event);
    }
    if (event && line.size() <= keptWhole) {
      return;
    }
  }
  learnText(line);
}

void KnownNames::learnText(std::string_view text) {
  learnIds(text);
  std::size_t next = 0;
  for (std::size_t at = text.find_first_of(separators); at < text.size(); at = text.find_first_of(separators, next)) {
    next = std::min(text.find_first_not_of(separators, at), text.size());
    const std::string_view before = text.substr(0, at);
    const std::string_view rest = text.substr(next);
    if (endsWithUsers(before)) {
      learnFolder(rest);
    } else if (text[at] == '\\' && endsWithPlace(before)) {
      learnName(NameKind::Person, rest.substr(0, std::min(rest.find(' '), rest.find_first_of(notInNames))));
    }
  }
}

void KnownNames::learn(const KnownNames& others) {
  for (const auto& [kind, name] : others.learnt_) {
    learnName(kind, name);
  }
}

void KnownNames::learnEvent(const EventRecord& event) {
  for (const EventName& name : namesIn(event)) {
    learnName(name.kind, name.text);
  }
  learnIds(event.userId());
  for (const NamedValue& field : event.fields()) {
    learnText(field.value);
  }
}

// Where the path ends with the name, nothing tells whether the next words belong to it.
void KnownNames::learnFolder(std::string_view path) {
  constexpr std::ptrdiff_t mostBlanks = 2;
  const std::size_t end = path.find_first_of(notInNames);
  const std::string_view name = path.substr(0, end);
  const bool goesOn = end < path.size() && isSeparator(path[end]) && !name.ends_with(' ');
  if (goesOn || std::count(name.begin(), name.end(), ' ') <= mostBlanks) {
    learnName(NameKind::Person, name);
  }
  if (!goesOn) {
    learnName(NameKind::Person, name.substr(0, name.find(' ')));
  }
}

void KnownNames::learnIds(std::string_view text) {
  for (const std::string_view begin : {"-1-5-21-", "-1-12-1-"}) {
    for (std::size_t at = text.find(begin); at != std::string_view::npos; at = text.find(begin, at + 1)) {
      if (at > 0 && (text[at - 1] == 'S' || text[at - 1] == 's')) {
        const std::size_t end = std::min(text.find_first_not_of("0123456789-", at), text.size());
        learnName(NameKind::Account, text.substr(at - 1, end - at + 1));
      }
    }
  }
}

void KnownNames::learnName(NameKind kind, std::string_view name) {
  constexpr std::size_t longest = 256;
  constexpr std::array<std::string_view, 4> words{"computer-", "domain-", "user-", "account-"};
  name = trimmed(name);
  if (const std::size_t slash = name.rfind('\\'); kind == NameKind::Person && slash < name.size()) {
    if (isOneOf(smallLetters(name.substr(0, slash)), ownDomains)) {
      return;
    }
    learnName(NameKind::Domain, name.substr(0, slash));
    name.remove_prefix(slash + 1);
  }
  if (kind == NameKind::Person && name.ends_with('$')) {  // A computer's account.
    kind = NameKind::Computer;
    name.remove_suffix(1);
  }
  const std::string small = smallLetters(name);
  if (name.size() > longest || (beginsIgnoringCase(name, "S-1-") && kind != NameKind::Account) || !isSomebody(small) ||
      names_.find(small) != names_.end()) {
    return;
  }
  learnt_.emplace_back(kind, name);
  const std::size_t dot = kind == NameKind::Computer && !isNumber(name) ? name.find('.') : std::string_view::npos;
  const std::string host = small.substr(0, dot);
  if (const auto known = names_.find(host); known != names_.end()) {
    add(small, StandIn(known->second));
  } else {
    const auto index = static_cast<std::size_t>(kind);
    const StandIn standIn{kind, std::string(words[index]) + std::to_string(++counts_[index])};
    add(host, standIn);
    add(small, standIn);
  }
  if (dot < name.size()) {
    learnName(NameKind::Domain, name.substr(dot + 1));
  }
}

void KnownNames::add(std::string name, const StandIn& standIn) {
  for (std::string form : {withEntities(name, "&apos;"), withEntities(name, "'"), std::move(name)}) {
    lengths_[form.substr(0, nextWordBoundary(form, 0))].insert(form.size());
    names_.emplace(std::move(form), standIn);
  }
}

// Whether a person's name may follow: STUDIO\anna, but not \\STUDIO\share.
bool KnownNames::endsWithPlace(std::string_view text) const {
  constexpr std::string_view between = " '()\\/\":;|=,+*?<>[]\r\n\t";
  const std::size_t begin = text.find_last_of(between) + 1;
  if (begin > 0 && isSeparator(text[begin - 1])) {
    return false;
  }
  const auto name = names_.find(smallLetters(text.substr(begin)));
  return name != names_.end() && (name->second.kind == NameKind::Computer || name->second.kind == NameKind::Domain);
}

KnownNames::Names::const_iterator KnownNames::nameAt(std::string_view text, std::size_t begin) const {
  const auto lengths = lengths_.find(text.substr(begin, nextWordBoundary(text, begin) - begin));
  if (lengths != lengths_.end()) {
    for (const std::size_t length : lengths->second) {
      const std::size_t end = begin + length;
      const auto name =
          end <= text.size() && isWordBoundary(text, end) ? names_.find(text.substr(begin, length)) : names_.end();
      if (name != names_.end() && hasPlace(text, begin, end)) {
        return name;
      }
    }
  }
  return names_.end();
}

std::string KnownNames::redacted(std::string_view text) const {
  const std::string small = smallLetters(text);
  std::string out;
  std::size_t done = 0;
  for (std::size_t at = 0; at < text.size();) {
    const auto name = nameAt(small, at);
    if (name == names_.end()) {
      at = nextWordBoundary(small, at);
    } else {
      out.append(text.substr(done, at - done)).append(name->second.text);
      at += name->first.size();
      done = at;
    }
  }
  return out.append(text.substr(done));
}

std::string KnownNames::redactedLine(std::string_view line) const {
  const LogLine parts = readLine(line);
  const std::string head(line.substr(0, line.size() - parts.text.size()));
  return head + redacted(parts.says == LineSays::Event ? withoutBinary(parts.text) : std::string(parts.text));
}

}  // namespace sentiq
