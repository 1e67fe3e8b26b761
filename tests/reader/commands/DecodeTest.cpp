#include "reader/commands/DecodeCommand.h"
#include "reader/input/LineSplitter.h"
#include "tests/reader/commands/CommandRun.h"

namespace sentiq {

const std::string encoded = encodedLine(entry);

static Ran decodeAll(const std::string& bytes, const DecodeOptions& options = {}, bool terminal = false) {
  return ran([&](const Streams& streams) { decodeLogs(options, streams); }, bytes, terminal);
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
    const Ran decoded = decodeAll(c.in);
    EXPECT_EQ(decoded.exitCode, c.exitCode) << c.name;
    if (!c.out.empty()) {
      EXPECT_EQ(decoded.out, c.out) << c.name;
    }
  }
  EXPECT_THAT(decodeAll(encoded + "***\n").messages, HasSubstr("-:2: damaged line"));
}

TEST(Decode, PassesOnALineOfAnyLengthInPieces) {
  const std::string overlong = std::string(2 * LineSplitter::longestLine + 7, 'x') + "\n";
  const Ran decoded = decodeAll(overlong + encoded);
  EXPECT_EQ(decoded.exitCode, exitDamaged);
  EXPECT_EQ(decoded.out, overlong + entry + "\n");
}

TEST(Decode, OfAFolderNamesEachLogAndLeavesOutTheOthers) {
  const SampleFolder folder;
  folder.write("a\u202E.log", entry + "\n");  // A mark that turns the direction of writing.
  folder.write("b.log", encoded);
  folder.write("other\u202E.log", "nothing of ours\n");
  const Ran all = decodeAll("", {{folder.file("")}});
  EXPECT_EQ(all.out, "a.log  " + entry + "\nb.log  " + entry + "\n");
  EXPECT_THAT(all.messages, AllOf(HasSubstr("left out, no logs of CanvixSentiq: "), Not(HasSubstr("\u202E"))));
}

TEST(Decode, PassesOnEveryByteButToATerminal) {
  const std::string line = "2025-01-31T14:05:09.042+0100 a\x1b[2J\r\tb";
  EXPECT_EQ(decodeAll(line + "\r\n").out, line + "\r\n");
  EXPECT_EQ(decodeAll(line + "\r\n", {}, /*terminal=*/true).out,
            "2025-01-31T14:05:09.042+0100 a\xEF\xBF\xBD[2J \tb\r\n");
}

TEST(Decode, SaysThatALogIsNotThere) {
  const Ran missing = decodeAll("", {{"nothing/here.log"}});
  EXPECT_EQ(missing.exitCode, exitFailed);
  EXPECT_EQ(missing.messages, "sentiq-logs: nothing/here.log: there is no such file or folder\n");
}

}  // namespace sentiq
