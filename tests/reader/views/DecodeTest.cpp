#include "reader/commands/Decode.h"
#include "reader/commands/ExitCode.h"
#include "reader/views/Timeline.h"
#include "tests/reader/SampleLogs.h"

namespace sentiq {

const std::string entry = "2025-01-31T14:05:09.042+0100 [SYSTEM] [INFO]: a";
const std::string encoded = encodedLine(entry);

struct Decoded {
  int exitCode;
  std::string out, messages;
};

static Decoded decodeAll(const std::string& bytes, const DecodeOptions& options = {}) {
  std::istringstream in(bytes);
  std::ostringstream out, messages;
  Progress progress(nullptr);
  const int code = decodeLogs(options, in, out, messages, progress);
  return {code, out.str(), messages.str()};
}

TEST(Decode, TellsPlainEncodedAndDamagedLinesApart) {
  const std::string crlf = encodeText(entry) + "\r\n";
  const std::string cut = encodeText(entry).substr(0, 41);
  struct Case {
    std::string name, in, out;
    int exitCode;
  };
  const std::vector<Case> cases{
      {"encoded, LF and CRLF", encoded + crlf, entry + "\n" + entry + "\r\n", exitGood},
      {"plain header among encoded lines", "ProcessID: 42\n" + encoded, "ProcessID: 42\n" + entry + "\n", exitGood},
      {"second line of an encoded message", encoded + encodedLine("two words"), entry + "\ntwo words\n", exitGood},
      {"second line of a plain message that could be base64", entry + "\nDoneDone\n", entry + "\nDoneDone\n", exitGood},
      {"carriage return within the encoded text", encoded + encodedLine("x\r"), entry + "\nx\r\n", exitGood},
      {"separator in a plain log", entry + "\n" + encodedLine(std::string(39, '=')) + "next\n",
       entry + "\n" + std::string(39, '=') + "\nnext\n", exitGood},
      {"empty lines", encoded + "\n\r\n" + encoded, entry + "\n\n\r\n" + entry + "\n", exitGood},
      {"cut in the middle", cut + "\n" + encoded, cut + "\n" + entry + "\n", exitDamaged},
      {"cut at the end", encoded + cut, entry + "\n" + cut, exitDamaged},
      {"complete but for its line end", encoded + encodeText(entry), entry + "\n" + encodeText(entry), exitDamaged},
      {"a foreign byte within", encoded.substr(0, 40) + "*" + encoded.substr(40), "", exitDamaged},
      {"beginning lost", encoded + encodeText(entry).substr(4) + "\n", "", exitDamaged},
      {"bytes that are no text", entry + "\n\xff\x80\n", entry + "\n\xff\x80\n", exitDamaged},
      {"NUL bytes after a power loss", entry + "\n" + std::string(20, '\0') + "\n", "", exitDamaged},
  };
  for (const Case& c : cases) {
    const Decoded decoded = decodeAll(c.in);
    EXPECT_EQ(decoded.exitCode, c.exitCode) << c.name;
    if (!c.out.empty()) {
      EXPECT_EQ(decoded.out, c.out) << c.name;
    }
  }
  EXPECT_THAT(decodeAll(encoded + "***\n").messages, HasSubstr("-:2: damaged line"));
}

TEST(Decode, PassesOnALineOfAnyLengthInPieces) {
  const std::string overlong = std::string(2 * LineSplitter::longestLine + 7, 'x') + "\n";
  const Decoded decoded = decodeAll(overlong + encoded);
  EXPECT_EQ(decoded.exitCode, exitDamaged);
  EXPECT_EQ(decoded.out, overlong + entry + "\n");
}

TEST(Decode, EndsALineThatTheLogBeforeLeftUnfinished) {
  const SampleFolder folder;
  EXPECT_EQ(decodeAll("", {{folder.write("a.log", entry), folder.write("b.log", encoded)}}).out,
            "a.log  " + entry + "\nb.log  " + entry + "\n");
}

static AssertionResult comesToHold(const std::string& file, const std::string& text) {
  std::string shown;
  for (int tries = 0; tries < 6000 && shown.find(text) == std::string::npos; ++tries) {
    std::this_thread::sleep_for(10ms);
    shown = readFile(pathFromText(file));
  }
  return AssertionResult(shown.find(text) != std::string::npos) << "no \"" << text << "\" in: " << shown;
}

TEST(Decode, FollowsAFileThatAppearsIsEmptiedAndIsDeleted) {
  const SampleFolder folder;
  const std::string shown = folder.write("shown", "");
  std::atomic<bool> stop{false};
  std::jthread follower([&] {
    std::ofstream out(pathFromText(shown), std::ios::binary);
    std::istringstream noInput;
    std::ostringstream messages;
    Progress progress(nullptr);
    decodeLogs({{folder.file("a.log"), folder.file("b.log")}, &stop}, noInput, out, messages, progress);
  });
  folder.write("a.log", encodedLine(entry + " first"));
  EXPECT_TRUE(comesToHold(shown, "a.log  " + entry + " first\n"));
  folder.write("b.log", "ProcessID: 42\n");
  EXPECT_TRUE(comesToHold(shown, "b.log  ProcessID: 42\n"));
  const std::string half = encodedLine(entry + " in two parts");
  folder.write("a.log", half.substr(0, 30), std::ios::app);
  folder.write("a.log", half.substr(30), std::ios::app);
  EXPECT_TRUE(comesToHold(shown, " in two parts\n"));
  folder.write("a.log",
               encodedLine("2025-02-01T00:00:00.000+0100 emptied and longer than before" + std::string(200, '.')));
  EXPECT_TRUE(comesToHold(shown, "a.log  2025-02-01"));
  // On Windows it cannot go in the moment in which it is read.
  std::error_code error;
  do {
    std::filesystem::remove(pathFromText(folder.file("b.log")), error);
  } while (error);
  folder.write("b.log", "ProcessID: 7\n");
  EXPECT_TRUE(comesToHold(shown, "b.log  ProcessID: 7\n"));
  stop = true;
}

TEST(Timeline, FollowsFoldersAndFilesAndShowsEachEventOnce) {
  const SampleFolder folder, other;
  const std::string shown = other.write("shown", "");
  std::atomic<bool> stop{false};
  std::jthread follower([&] {
    std::ofstream out(pathFromText(shown), std::ios::binary);
    followTimeline({folder.file(""), other.file("watchdog.log")}, {}, out, stop);
  });
  const std::string event = encodedLine(eventLine("Any", 5, "2025-01-31T12:00:02Z", {"said"}));
  folder.write("notes.log", "not a log of the program\n");
  folder.write("new.log", sessionLog({recordLine("2025-01-31T12:59:50.000+0100")}));
  EXPECT_TRUE(comesToHold(shown, "process 4242 Running\n"));
  other.write("watchdog.log", watchdogLog(event));
  EXPECT_TRUE(comesToHold(shown, "Any 5: said\n"));
  other.write("watchdog.log", watchdogLog(event + event + encodedLine(entry + " emptied before a sleep")));
  EXPECT_TRUE(comesToHold(shown, "emptied before a sleep\n"));
  stop = true;
  follower.join();
  const std::string text = readFile(pathFromText(shown));
  EXPECT_EQ(text.find("Any 5"), text.rfind("Any 5"));
  EXPECT_THAT(text, Not(HasSubstr("not a log")));
}

}  // namespace sentiq
