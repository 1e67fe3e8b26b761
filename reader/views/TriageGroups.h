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

/// Of those that did not end normally, the most frequent first.
std::vector<TriageGroup> groupsOf(const Sessions& all);

/// Something that sessions may have in common: each name that one of them has of it.
struct Trait {
  std::set<std::string> (*namesOf)(const TriagedSession& session);
  bool alwaysTold;  // Else a session without any name does not tell, and is left out of the shares.
};
extern const Trait adapterTrait;
extern const Trait changeTrait;
extern const Trait beforeTrait;

struct TraitCounts {
  std::map<std::string, std::size_t> sessions;  // That have the name.
  std::size_t telling = 0;                      // Of all.
};
TraitCounts countTrait(const Trait& trait, const Sessions& sessions);

/// A name that ten sessions of a group have, and whose share there is at least twice that in all: below that, chance
/// makes such differences in one group or another.
struct Distinction {
  std::string name;
  std::string share;  // In percent.
  std::string shareOfAll;
};
std::vector<Distinction> distinctionsOf(const TraitCounts& group, const TraitCounts& all);

/// "7.5 %"
std::string showShare(std::size_t part, std::size_t whole);

}  // namespace sentiq
