#include "logging/SessionFileWriter.h"

#include <exception>
#include <stdexcept>

#include "logging/LogEncoding.h"
#include "logging/TextConversion.h"
#include "logging/TimeText.h"

namespace sentiq {

SessionFileWriter::SessionFileWriter(const std::string& path, bool encodeLogs, LogFile::Mode mode)
    : file_(longPath(toPath(path)), mode), encodeLogs_(encodeLogs) {
  if (!file_.isOpen()) {
    throw std::runtime_error("Failed to open file for writing: " + path);
  }
}

bool SessionFileWriter::write(std::string_view text, bool withTimestamp, bool neverEncode) {
  try {
    const std::lock_guard lock(mutex_);
    std::string line = withTimestamp ? isoLocalTimestamp() + ' ' : std::string{};
    line += text;
    if (encodeLogs_ && !neverEncode) {
      line = encodeText(line);
    }
    return file_.append(line + '\n');
  } catch (...) {
    return false;
  }
}

}  // namespace sentiq
