#include "logging/LogEncoding.h"
#include "tests/support/Test.h"

namespace sentiq {

using Cases = std::vector<std::pair<std::string, std::string>>;

TEST(LogEncoding, Base64IsThatOfTheRfc) {
  for (const auto& [bytes, encoded] :
       Cases{{"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {"\xFB\xFF\xBF", "+/+/"}}) {
    EXPECT_EQ(base64Encode(bytes), encoded);
  }
}

// "MA==" is 'a' with the key's first letter, "MGQ=" that and a carriage return.
TEST(LogEncoding, EveryLineIsEncodedByItself) {
  for (const auto& [text, encoded] : Cases{{"", ""},
                                           {"a\n", "MA=="},
                                           {"a\na", "MA==\nMA=="},
                                           {"\n", ""},
                                           {"\na", "\nMA=="},
                                           {"a\n\na\n\n", "MA==\n\nMA==\n"},
                                           {"a\r\n", "MGQ="}}) {
    EXPECT_EQ(encodeText(text), encoded) << PrintToString(text);
  }
  EXPECT_EQ(encodeText(std::string(39, '=')), "bFRrUmJwXE9fUVhOSVJTWGIMCQ0FDw0PDmxUa1JicFxPX1FYTklS");
}

}  // namespace sentiq
