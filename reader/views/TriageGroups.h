// The groups of a triage, and what their sessions have in common more often than all.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "reader/views/Triage.h"

namespace sentiq {

/// In the order of time.
using Sessions = std::vector<const TriagedSession*>;

struct TriageGroup {
  std::string signature;
  Sessions sessions;
};

/// What ended it, as groups tell it apart: "crashed in gfx.dll: access violation at 0xa1b2", "lost power".
std::string signatureOf(const Judgement& judgement);

/// "12 sessions from 2025-01-01 to 2025-01-11: 9 ended, 3 crashed"
std::string triageHeadline(const Sessions& all);

/// Of the first session that has a day, and of the last one; empty when it has none.
std::string firstDay(const Sessions& group);
std::string lastDay(const Sessions& group);

/// Of those that did not end normally, the most frequent first.
std::vector<TriageGroup> groupsOf(const Sessions& all);

/// "6 more groups"; empty for none.
std::string moreGroups(std::size_t count);

/// Something that sessions may have in common: each name that one of them has of it.
struct Trait {
  std::set<std::string> (*namesOf)(const Judgement& judgement);
  bool alwaysTold;  // Else a session without any name does not tell, and is left out of the shares.
};
extern const Trait adapterTrait;
extern const Trait changeTrait;
extern const Trait beforeTrait;       // By the name for scripts.
extern const Trait beforeWordsTrait;  // In words.
extern const Trait versionTrait;      // Of Canvix, as the failures tell it.

struct TraitCounts {
  std::map<std::string, std::size_t> sessions;  // That have the name.
  std::size_t telling = 0;                      // Of all.
};
TraitCounts countTrait(const Trait& trait, const Sessions& sessions);

struct TraitShare {
  std::string name;
  std::size_t sessions;  // Of the group, that have it.
  std::string share;     // In percent.
  std::string shareOfAll;
  // At least ten sessions have it, and the share is at least twice that of all: below that, chance makes such
  // differences in one group or another.
  bool isClear;
};
std::vector<TraitShare> sharesOf(const Trait& trait, const Sessions& sessions, const TraitCounts& all);

/// "7.5 %"
std::string showShare(std::size_t part, std::size_t whole);

}  // namespace sentiq
