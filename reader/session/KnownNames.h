// The computers, domains, people and account ids that logs name, and the stand-ins that take their places.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reader/events/EventNames.h"
#include "reader/session/HashSet.h"

namespace sentiq {

/// Names are known from the fields of events, from users' folders (C:\Users\anna, /home/anna), from DOMAIN\anna where
/// the domain is known, and ids from their form (S-1-5-21-…). They are replaced wherever they stand as whole words, in
/// any case: by "computer-1", "user-2", numbered as they were learnt. Windows' own accounts are nobody.
class KnownNames {
 public:
  /// @param line decoded, of any log.
  void learnLine(std::string_view line);

  /// @param text no event: a message, a path.
  void learnText(std::string_view text);

  void learn(const KnownNames& others);

  /// Time grows with the text, hardly with the names.
  std::string redacted(std::string_view text) const;

  /// Of a decoded line: time stamp and tags stay, bytes within an event are left out.
  std::string redactedLine(std::string_view line) const;

 private:
  struct StandIn {
    NameKind kind;
    std::string text;
  };
  using Names = std::map<std::string, StandIn, std::less<>>;  // By the name in small letters.

  void learnEvent(const EventRecord& event);
  void learnName(NameKind kind, std::string_view name);
  void learnFolder(std::string_view path);
  void learnIds(std::string_view text);
  void add(std::string name, const StandIn& standIn);
  bool endsWithPlace(std::string_view text) const;
  Names::const_iterator nameAt(std::string_view text, std::size_t begin) const;

  Names names_;
  // How long the names are that begin with a word, the longest first.
  std::map<std::string, std::set<std::size_t, std::greater<>>, std::less<>> lengths_;
  std::vector<std::pair<NameKind, std::string>> learnt_;  // In order.
  std::array<std::size_t, 4> counts_{};                   // By kind.
  HashSet seen_;                                          // Events, by their hash: most are copied many times.
};

}  // namespace sentiq
