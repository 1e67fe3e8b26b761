// What a console program needs of the platform: arguments and output in UTF-8, line ends untouched, terminals
// known. Paths travel as std::filesystem::path, so that no name is lost on the way to the system.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace sentiq {

/// Called once, first of all on the main thread: standard input and output pass bytes as they are.
void prepareConsole();

/// The program's arguments without its name, UTF-8.
std::vector<std::string> consoleArguments(int argc, const char* const* argv);

bool outputIsTerminal();
bool messagesAreTerminal();

/// Columns of the terminal that standard output is; 0 when it is none.
std::size_t outputWidth();

enum class ColourMode : std::uint8_t { Auto, Always, Never };

/// By itself, on a terminal that takes it (TERM is not dumb) when the environment does not hold NO_COLOR.
bool colourWanted(ColourMode mode);

/// Whether standard error is a terminal whose last line can be written anew.
bool progressWanted();

/// Returns at once. @return false when there is none.
bool openInBrowser(const std::filesystem::path& page);

/// Set once the user asks the program to end (Ctrl-C); from the first call on, that no longer ends the
/// process by itself.
const std::atomic<bool>& stopRequested();

/// UTF-8 to a path that may be of any length, and back. A name that is not text keeps its meaning only in the path.
std::filesystem::path pathFromText(std::string_view text);
std::string textFromPath(const std::filesystem::path& path);

}  // namespace sentiq
