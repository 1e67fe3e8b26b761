#include "logging/LogEncoding.h"
#include "tests/support/Logs.h"
#include "tests/support/Test.h"

namespace sentiq {
namespace {

TEST(LogEncoding, Base64IsThatOfTheRfc) {
  const std::pair<std::string, const char*> cases[] = {{"", ""},
                                                       {"f", "Zg=="},
                                                       {"fo", "Zm8="},
                                                       {"foo", "Zm9v"},
                                                       {"foob", "Zm9vYg=="},
                                                       {"fooba", "Zm9vYmE="},
                                                       {"foobar", "Zm9vYmFy"},
                                                       {"\xFB\xFF\xBF", "+/+/"}};
  for (const auto& [bytes, encoded] : cases) {
    EXPECT_EQ(base64Encode(bytes), encoded);
  }
}

TEST(LogEncoding, EveryLineIsEncodedByItself) {
  const std::string a = "MA==";  // 'a' with the key's first letter.
  const std::pair<const char*, std::string> cases[] = {
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
  EXPECT_EQ(encodeText(std::string(logKey) + "Q"), base64Encode(std::string(26, '\0')));
  EXPECT_EQ(encodeText(std::string(39, '=')), "bFRrUmJwXE9fUVhOSVJTWGIMCQ0FDw0PDmxUa1JicFxPX1FYTklS");
}

// Lines of every length, with every byte and a newline at every place.
TEST(LogEncoding, DecodingGivesTheBytesBack) {
  for (std::size_t size = 1; size < 300; ++size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
      text += static_cast<char>(i * 7 + size);
    }
    std::string decoded;
    for (const std::string& line : test::linesOf(encodeText(text + '.'))) {
      decoded += test::decodeLine(line) + '\n';
    }
    EXPECT_EQ(decoded, text + ".\n");
  }
}

}  // namespace
}  // namespace sentiq
