// The applications that the program knows by name. Declared data: nothing asks for it yet.
#pragma once

#include <set>
#include <string>

namespace sentiq {

inline const std::string canvixName = "Canvix";
inline const std::string taskManagerName = "Task Manager";
inline const std::set<std::string> knownApplicationNames = {canvixName, taskManagerName};

}  // namespace sentiq
