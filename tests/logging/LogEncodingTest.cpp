#include <random>

#include "logging/LogEncoding.h"
#include "tests/support/Decode.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"

namespace sentiq {
namespace {

std::string random(std::mt19937& generator, std::size_t size) {
  std::string bytes(size, '\0');
  for (char& c : bytes) {
    c = static_cast<char>(generator() & 0xFF);
  }
  return bytes;
}

TEST(LogEncoding, Base64IsThatOfTheRfc) {
  const struct {
    const char* bytes;
    const char* encoded;
  } cases[] = {{"", ""},
               {"f", "Zg=="},
               {"fo", "Zm8="},
               {"foo", "Zm9v"},
               {"foob", "Zm9vYg=="},
               {"fooba", "Zm9vYmE="},
               {"foobar", "Zm9vYmFy"}};
  for (const auto& [bytes, encoded] : cases) {
    EXPECT_EQ(base64Encode(bytes), encoded);
  }
  EXPECT_EQ(base64Encode("\xFB\xFF\xBF\x00"), "+/+/");
}

TEST(LogEncoding, EveryLineIsEncodedByItself) {
  const std::string a = base64Encode(std::string(1, 'a' ^ 'Q'));
  const struct {
    const char* text;
    std::string encoded;
  } cases[] = {
      {"", ""},
      {"a", a},
      {"a\n", a},
      {"a\na", a + "\n" + a},
      {"\n", ""},
      {"\na", "\n" + a},
      {"a\n\na\n\n", a + "\n\n" + a + "\n"},
      {"a\r\n", base64Encode(std::string{'a' ^ 'Q', '\r' ^ 'i'})},
  };
  for (const auto& [text, encoded] : cases) {
    EXPECT_EQ(encodeText(text), encoded) << testing::PrintToString(text);
  }
}

TEST(LogEncoding, KeyRepeatsAfter25Bytes) {
  EXPECT_EQ(encodeText(logKey), base64Encode(std::string(25, '\0')));
  EXPECT_EQ(encodeText(std::string(logKey) + "Q"), base64Encode(std::string(26, '\0')));
  EXPECT_EQ(encodeText(std::string(39, '=')), "bFRrUmJwXE9fUVhOSVJTWGIMCQ0FDw0PDmxUa1JicFxPX1FYTklS");
}

TEST(LogEncoding, DecodingGivesTheBytesBack) {
  std::mt19937 generator(137);
  for (std::size_t size = 1; size < 300; ++size) {
    std::string text = random(generator, size);
    EXPECT_EQ(test::decodeBase64(base64Encode(text)), text);
    text[generator() % size] = '\n';
    text.back() = '.';
    const auto lines = test::linesOf(encodeText(text));
    EXPECT_EQ(static_cast<std::ptrdiff_t>(lines.size()), std::count(text.begin(), text.end(), '\n') + 1);
    std::string decoded;
    for (const std::string& line : lines) {
      decoded += test::decodeLine(line) + '\n';
    }
    EXPECT_EQ(decoded, text + '\n');
  }
}

}  // namespace
}  // namespace sentiq
