#include "reader/events/EventHead.h"
#include "reader/events/EventWords.h"
#include "tests/reader/events/SampleEvents.h"

namespace sentiq {

static std::string fieldsOf(const EventRecord& event) {
  std::string text;
  for (const auto& [name, value] : event.fields()) {
    text.append(text.empty() ? "" : ", ").append(name).append(1, '=').append(value);
  }
  return text;
}

TEST(Event, TellsWhereItComesFrom) {
  const EventRecord event = SampleEvent{"P", 3, {"A=1"}}.read();
  EXPECT_EQ(event.channel(), "System");
  EXPECT_EQ(event.provider(), "P");
  EXPECT_EQ(event.computer(), "PC");
  EXPECT_EQ(event.userId(), "S-1-5-18");
  EXPECT_EQ(event.recordId, 7);
  EXPECT_EQ(event.level, 2);
  EXPECT_EQ(event.time, at("2025-01-31T12:30:00.5Z"));
}

TEST(Event, KeepsFieldsInOrderWithTheNamesAroundThem) {
  const SampleEvent nested{"P", 3, {}, "", 4, "<M><N><O>1</O><Data Name='Q'>2</Data></N><R/></M>"};
  EXPECT_EQ(fieldsOf(nested.read()), "N.O=1, N.Q=2, R=");
  EXPECT_EQ(fieldsOf(SampleEvent{"P", 3, {"B=1", "2", "P1=3", "B=4"}}.read()), "B=1, =2, P1=3, B=4");
  std::string rendered = SampleEvent{"P", 3, {}}.xml();
  rendered.insert(rendered.find("</Event>"), "<RenderingInfo Culture='en'><Message>Said</Message></RenderingInfo>");
  EXPECT_EQ(eventWords(readEvent(eventJson(rendered)).value(), {}), "P 3: Said");
}

TEST(Event, LooksNoDeeperThanEightElements) {
  std::string deep;
  for (int level = 0; level < 50; ++level) {
    deep = "<L>" + deep + "</L>";
  }
  EXPECT_EQ(fieldsOf(SampleEvent{"P", 3, {}, "", 4, deep}.read()), "L.L.L.L.L.L.L.L.L=");
}

TEST(Event, GivesUnnamedFieldsTheNamesOfNewerSystems) {
  EXPECT_EQ(fieldsOf(SampleEvent{"USER32", 1074, {"a.exe", "param2=PC", "Planned"}}.read()),
            "param1=a.exe, param2=PC, param3=Planned");
}

TEST(Event, HasCleanTextsOfLimitedLength) {
  const EventRecord event =
      SampleEvent{"P", 3, {"A\u202E=a\u202Eb\u009Bc &lt;", "B=" + std::string(100'000, 'x')}}.read();
  EXPECT_EQ(event.fields()[0].name, "A");
  EXPECT_EQ(event.fields()[0].value, "ab\uFFFD\uFFFDc <");
  EXPECT_LT(event.fields()[1].value.size(), 10'000);
  EXPECT_THAT(eventWords(event, {}), EndsWith("xxx\u2026"));
}

TEST(Event, HasTheSameKeyInAllItsCopiesOnly) {
  const SampleEvent event{"P", 3, {"A=1"}};
  EXPECT_THAT(event.read().key(), HasSubstr("\n7\n"));
  EXPECT_NE(event.read().key(), (SampleEvent{"P", 3, {}, "2025-01-31T12:30:00.6Z"}.read().key()));
  EXPECT_NE(event.read().key(), (SampleEvent{"Q", 3, {}}.read().key()));
}

TEST(Event, IsReadFromAnyJsonAndFromNothingElse) {
  const std::string xml = SampleEvent{"P", 3, {"A=\"\\/\n\t\u00E4\U0001F600"}}.xml();
  EXPECT_EQ(readEvent(eventJson(xml))->fields().front().value, "\"\\/\n\t\u00E4\U0001F600");
  const std::string ascii = nlohmann::json(xml).dump(-1, ' ', /*ensure_ascii=*/true);
  for (const std::string& json : {R"({"xmlData":)" + ascii + '}', R"( { "a":1, "xmlData" : )" + ascii + " } "}) {
    EXPECT_EQ(fieldsOf(readEvent(json).value()), fieldsOf(readEvent(eventJson(xml)).value()));
  }
  const std::string plain = eventJson(SampleEvent{"P", 3, {"A=1"}}.xml());
  const auto with = [&](const std::string& value) {
    return std::string(plain).replace(plain.find(">1<") + 1, 1, value);
  };
  EXPECT_TRUE(readEvent(with("2")));
  for (const std::string wrong : {"\"", "\\", "\\x", "\\u12", "\n", "\x01", "\xC3", "\xFF"}) {
    EXPECT_FALSE(readEvent(with(wrong))) << wrong;
  }
  for (const std::string wrong : {"", "{}", "[]", R"({"xmlData":"})", R"({"xmlData":"\"})", R"({"xmlData":1})",
                                  R"({"xmlData":"<Event>"})", R"({"xmlData":"<Event><System/></Event>"})"}) {
    EXPECT_FALSE(readEvent(wrong)) << wrong;
  }
}

TEST(EventHead, SaysWhatTheEventSays) {
  const std::string json = SampleEvent{"P Q", 3, {}}.json();
  const EventHead head = readEventHead(json).value();
  EXPECT_EQ(head.provider, "P Q");
  EXPECT_EQ(head.channel, "System");
  EXPECT_EQ(head.id, 3);
  EXPECT_EQ(head.level, 2);
  EXPECT_EQ(head.recordId, 7);
  EXPECT_EQ(head.time, at("2025-01-31T12:30:00.5Z"));
}

TEST(EventHead, IsNotReadWhereItMightBeWrong) {
  const std::string json = SampleEvent{"P", 3, {}}.json();
  for (const auto& [what, by] : {std::pair{"='P'", "='P&amp;'"},
                                 {"</Event>", "</Even>"},
                                 {">3<", ">3a<"},
                                 {"<Event ", "<Evil "},
                                 {"Level>2", "Level>"}}) {
    EXPECT_FALSE(readEventHead(std::string(json).replace(json.find(what), std::string(what).size(), by))) << by;
  }
}

TEST(EventHead, TellsWhetherTheEventMayMatter) {
  const auto matters = [](const SampleEvent& event) {
    const std::string json = event.json();
    return mayMatter(readEventHead(json).value(), json);
  };
  EXPECT_TRUE(matters({"application error", 1000, {"AppName=CANVIX.EXE"}}));
  EXPECT_FALSE(matters({"Application Error", 1000, {"AppName=Other.exe"}}));
  EXPECT_FALSE(matters({"Application Error", 1001, {"AppName=Canvix.exe"}}));
  EXPECT_TRUE(matters(report("MoAppCrash", {"Canvix_1"})));
  EXPECT_FALSE(matters(report("APPCRASH", {"Other.exe"})));
  EXPECT_TRUE(matters(report("BlueScreen", {"50"})));
  EXPECT_TRUE(matters(report("LiveKernelEvent", {"1b8"})));
  EXPECT_TRUE(matters({".NET Runtime", 1026, {"Application: canvix.exe"}}));
  EXPECT_FALSE(matters({"Application Popup", 26, {"Caption=Canvix.exe - Bad Image", "Message=no"}}));
  EXPECT_TRUE(matters({kernelPower, 41, {}}));
  EXPECT_TRUE(matters({kernelPower, 105, {"AcOnline=FALSE"}}));
  EXPECT_FALSE(matters({kernelPower, 105, {"AcOnline=true"}}));
  EXPECT_TRUE(matters({"igfxCUI", 9, {}, "", 3}));
  EXPECT_FALSE(matters({"igfxCUI", 9, {}, "", 4}));
  EXPECT_FALSE(matters({"igfxCUI", 9, {}, "", 0}));
}

}  // namespace sentiq
