#include "reader/session/KnownNames.h"
#include "tests/reader/events/SampleEvents.h"

namespace sentiq {

TEST(KnownNames, AreReplacedAsWholeWordsInAnyCase) {
  struct Case {
    std::string name, text, redacted;
  };
  const std::vector<Case> cases{
      {"blanks and umlauts", R"(C:\Users\Jörg Müller\a: JÖRG MÜLLER, Jörg)", R"(C:\Users\user-1\a: user-1, Jörg)"},
      {"beyond the basic plane", "/home/\U0001F3A8ida/x, \U0001F3A8IDA's", "/home/user-1/x, user-1's"},
      {"no blanks between words", R"(C:\Users\王芳\x 用户王芳登录)", R"(C:\Users\user-1\x 用户user-1登录)"},
      {"two letters", R"(D:\Users\Al\x: al, also)", R"(D:\Users\user-1\x: user-1, also)"},
      {"a common word", R"(\Documents and Settings\Admin\x; Administrator, ADMIN_1)",
       R"(\Documents and Settings\user-1\x; Administrator, user-1_1)"},
      {"a letter or a year", R"(C:\Users\a\x is a \Users\2025\y in 2025)",
       R"(C:\Users\user-1\x is a \Users\user-2\y in 2025)"},
      {"the path's end", R"("C:\Users\Anna Maria": anna)", R"("C:\Users\user-1": user-2)"},
      {"a sentence after it", R"(C:\Users\anna could not be found)", R"(C:\Users\user-1 could not be found)"},
      {"escaped and short forms", R"(C:\\Users\\ANNAMA~1\\x)", R"(C:\\Users\\user-1\\x)"},
      {"ids", "S-1-5-21-1-2-3-1001, s-1-5-21-1-2-3-1001_Classes, S-1-12-1-1-2-3-4, S-1-5-18",
       "account-1, account-1_Classes, account-2, S-1-5-18"},
      {"nobody", R"(C:\Users\Public\x https://example.org/home/index.html)",
       R"(C:\Users\Public\x https://example.org/home/index.html)"},
  };
  for (const Case& c : cases) {
    KnownNames names;
    names.learnText(c.text);
    EXPECT_EQ(names.redacted(c.text), c.redacted) << c.name;
  }
}

TEST(KnownNames, AreKnownFromTheFieldsOfEvents) {
  struct Case {
    SampleEvent event;
    std::string text, redacted;
  };
  const std::vector<Case> cases{
      {{"User32", 1074, {"a.exe (PC)", "PC", "", "", "", "", "PC\\anna"}},
       "a.exe (pc) for Anna",
       "a.exe (computer-1) for user-1"},
      {{"Microsoft-Windows-DistributedCOM", 10016, {"param6=ATELIER", "param7=anna", "param8=S-1-5-21-1-1001"}},
       R"(atelier\anna, S-1-5-21-1-1001)",
       "domain-1\\user-1, account-1"},
      {{"Microsoft-Windows-DistributedCOM", 10016, {"param6=NT AUTHORITY", "param7=SYSTEM"}}, "system", "system"},
      {{"Service Control Manager", 7045, {"AccountName=.\\anna"}}, "anna", "user-1"},
      {{"Service Control Manager", 7045, {"AccountName=NT SERVICE\\anna"}}, "anna", "anna"},
      {{"Service Control Manager", 7038, {"param1=Spooler", "param2=anna@atelier.example"}},
       "Spooler: ANNA@atelier.example",
       "Spooler: user-1"},
      {{"EventLog", 6011, {"OLD", "NEW"}}, "old, new", "computer-2, computer-3"},
      {{"Any", 1, {"SubjectUserName=STUDIO$", "SubjectDomainName=WORKGROUP"}}, "studio", "computer-2"},
      {{"Any", 1, {"ComputerName=\\\\dc.atelier.example"}}, "DC, atelier.example", "computer-2, domain-1"},
      {{"Any", 1, {"ComputerName=10.0.0.5"}}, "10.0.0.5, 10", "computer-2, 10"},
      {{"Any", 1, {"Text=by PC\\anna, on \\\\PC\\share"}}, "anna, share", "user-1, share"},
      {{"Any", 1, {}, "", 2, "<Info><UserName>O&apos;Neil &amp; Co</UserName></Info>"},
       "O'Neil & Co <x>O&apos;Neil &amp; Co</x>",
       "user-1 <x>user-1</x>"},
  };
  for (const Case& c : cases) {
    KnownNames names;
    names.learnLine("2025-01-31T13:05:00.000+0100 " + c.event.json());
    EXPECT_EQ(names.redacted(c.text), c.redacted) << c.event.xml();
  }
}

TEST(KnownNames, LeaveTheFormOfALineButNotItsBytes) {
  KnownNames names;
  names.learnText(R"(\Users\info\ \Users\2025\)");
  const std::string head = "2025-01-31T13:05:00.000+0100 [PROCESS] [INFO]: ";
  EXPECT_EQ(names.redactedLine(head + "for Info"), head + "for user-1");
  EXPECT_EQ(names.redactedLine(head + R"({"xmlData":"<Event><Binary>696e666f</Binary></Event>"})"),
            head + R"({"xmlData":"<Event><Binary></Binary></Event>"})");
}

}  // namespace sentiq
