// The members of a JSON object or array as they stand in the text: enough for records, which come by the hundred
// thousand, without building a tree of each.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace sentiq {

/// Gets a member's name as it stands, quotes included (empty for an element of an array), and its value, never empty.
using MemberVisit = std::function<void(std::string_view name, std::string_view value)>;

/// False when the text is neither object nor array or ends early. Any bytes; values are not looked into.
bool visitMembers(std::string_view json, const MemberVisit& visit);

/// The text of a JSON string; empty when the value is none.
std::string jsonText(std::string_view value);

}  // namespace sentiq
