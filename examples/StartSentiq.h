// How an application starts CanvixSentiq beside itself, and how its next start knows that this session ended
// abnormally. An example to copy: it needs Windows and C++17, and nothing else of this project.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace canvix {

/// One session of the application, with a folder of its own for its logs. Make it early; several instances of the
/// application may have one at a time. Destroying it says nothing about how the session ends.
class SentiqSession {
 public:
  /// Takes over the marks of sessions that ended abnormally, removes the logs of old sessions, and makes this session's
  /// folder and mark; what cannot be done is left undone.
  /// @param logs the folder of all sessions, made when it is missing. @param id new for each session, fit to name a
  /// folder. @param kept how many folders of earlier sessions stay.
  SentiqSession(const std::filesystem::path& logs, std::wstring id, std::size_t kept = 10);

  /// Starts the program for this process. False when Windows refuses (GetLastError tells why): go on without it.
  bool start(const std::filesystem::path& program) const;

  /// Call it last, where the application ends as it should. A crash, a kill or a power cut never comes here, and the
  /// mark that stays tells the next session.
  void endNormally();

  const std::filesystem::path& folder() const { return folder_; }

  /// The newest session that ended abnormally and has not been told of before; empty when there is none.
  const std::wstring& lastAbnormal() const { return lastAbnormal_; }

 private:
  struct CloseMark {
    void operator()(void* handle) const;
  };
  std::wstring id_, lastAbnormal_;
  std::filesystem::path folder_;
  std::unique_ptr<void, CloseMark> mark_;
};

/// The argument in quotes, so that CommandLineToArgvW and the runtime libraries read back the same text.
std::wstring quotedArgument(std::wstring_view argument);

}  // namespace canvix
