// Reads a log as the tests compare it.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/TestFiles.h"

namespace sentiq::test {

constexpr std::string_view base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";

/// Undoes the encoding of a line; written apart from the product's code so that the two check each other.
inline std::string decodeLine(std::string_view line) {
  constexpr std::string_view key = "QiVo_Marblestone_14082023";
  std::string text;
  std::size_t bits = 0, count = 0;
  for (const char digit : line.substr(0, line.find('='))) {
    bits = bits << 6 | base64Digits.find(digit);
    count = (count + 6) % 8;
    if (count != 6) {
      text += static_cast<char>(static_cast<char>(bits >> count) ^ key[text.size() % key.size()]);
    }
  }
  return text;
}

/// A plain line of the program has characters that are no base64 digits; an encoded one has none.
inline bool isEncoded(const std::string& line) {
  return !line.empty() && line.find_first_not_of(base64Digits) == std::string::npos;
}

/// The line with "T" in place of its time stamp; "[SYSTEM] text" and "[PROCESS] text" when it is one of level INFO, and
/// for an event its record number as the text.
inline std::string masked(std::string line) {
  std::string stamp = line.substr(0, 29);
  for (char& c : stamp) {
    c = c >= '0' && c <= '9' ? '0' : c == '+' ? '-' : c;
  }
  if (stamp != "0000-00-00T00:00:00.000-0000 ") {
    return line;
  }
  line.replace(0, stamp.size(), "T ");
  if (const std::size_t tag = line.find("] [INFO]: "); tag < 11) {
    line.erase(tag + 2, 8).erase(0, 2);
  }
  const std::size_t number = line.find("<EventRecordID>") + 15;
  const bool isEvent = line.starts_with("[PROCESS] {\"xmlData\":\"<Event ") && line.ends_with("</Event>\"}");
  return isEvent ? "[PROCESS] " + line.substr(number, line.find('<', number) - number) : line;
}

/// The file's lines, each decoded where it is encoded, and masked.
inline std::vector<std::string> readLog(const std::filesystem::path& path) {
  std::vector<std::string> lines = linesOf(readFile(path));
  for (std::string& line : lines) {
    line = masked(isEncoded(line) ? decodeLine(line) : line);
  }
  return lines;
}

/// One character for each line of the file: '#' when it is encoded, '.' when not.
inline std::string formOf(const std::filesystem::path& path) {
  std::string form;
  for (const std::string& line : linesOf(readFile(path))) {
    form += isEncoded(line) ? '#' : '.';
  }
  return form;
}

}  // namespace sentiq::test
