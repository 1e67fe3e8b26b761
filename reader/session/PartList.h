// The parts of one file: what a header begins, and the records of other processes in between.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "reader/session/Session.h"

namespace sentiq {

class PartList {
 public:
  /// The part that the last header began; made when there is none.
  SessionPart& current();

  void begin();

  /// Of the current part, as its header or its records say.
  void nameProcess(const std::string& processId);

  /// The current part when that is of the process or of none that is known; else the last one of it, or a new one.
  SessionPart& ofProcess(const std::string& processId);

  /// All of them, their entries with roles, and with times as far as there are any. The next part begins with the role
  /// and the names of the current one.
  std::vector<SessionPart> takeOut();

 private:
  std::vector<SessionPart> parts_;
  std::size_t current_ = 0;
  std::unordered_map<std::string, std::size_t> ofProcess_;  // The last part of each.
};

}  // namespace sentiq
