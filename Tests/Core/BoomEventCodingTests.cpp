#include "KestrowCore/BoomEventCoding.hpp"
#include "Tests/Support/RandomRecords.hpp"

#include <gtest/gtest.h>

#include <string>

namespace kestrow {
namespace {

// An event with these entries before the required ones.
std::string eventBody(const std::string& entries = "") {
  return "{" + entries + (entries.empty() ? "" : ",") +
         R"("id":41,"kind":"six","team":"MI","late":false,"at":"2026-04-12T14:00:00Z"})";
}

const std::string match =
    R"({"id":"7","league":"IPL","team1":{"name":"A","short":"A"},"team2":{"name":"B","short":"B"},
        "state":"live","status":"","innings":[]})";

std::string payloadBody(const std::string& entries = "") {
  return "{" + entries + (entries.empty() ? "" : ",") + R"("match":)" + match +
         R"(,"newestEventId":41,"events":[],"keyMoments":[]})";
}

template <class T>
std::string failureOf(const std::string& body) {
  const auto decoded = json::decode<T>(body);
  return decoded ? "decoded" : decoded.error().description();
}

TEST(BoomEventCoding, ReadsEveryFieldOfAnEvent) {
  const BoomEvent expected{.id = 41,
                           .kind = BoomKind::correction,
                           .team = "MI",
                           .batter = "R Sharma",
                           .field = "sixes",
                           .late = true,
                           .at = *parseInternetDate("2026-04-12T14:00:00.25Z")};
  EXPECT_EQ(json::decode<BoomEvent>(
                R"({"id":41,"kind":"correction","team":"MI","batter":"R Sharma","field":"sixes",
                    "late":true,"at":"2026-04-12T14:00:00.25Z"})"),
            expected);
}

TEST(BoomEventCoding, TakesNullAndAbsentAlikeForBatterAndField) {
  const auto plain = json::decode<BoomEvent>(eventBody());
  EXPECT_EQ(plain->batter, std::nullopt);
  EXPECT_EQ(plain->field, std::nullopt);
  EXPECT_EQ(json::decode<BoomEvent>(eventBody(R"("batter":null,"field":null)")), plain);
}

TEST(BoomEventCoding, ReadsAKindItDoesNotKnowAsOther) {
  const auto kind = [](const std::string& text) {
    return json::decode<BoomEvent>(eventBody(R"("kind":")" + text + '"'))->kind;
  };
  EXPECT_EQ(kind("four"), BoomKind::four);
  EXPECT_EQ(kind("six"), BoomKind::six);
  EXPECT_EQ(kind("wicket"), BoomKind::wicket);
  EXPECT_EQ(kind("correction"), BoomKind::correction);
  EXPECT_EQ(kind("other"), BoomKind::other);
  for (const auto* text : {"run-out", "Four", "four ", ""}) {
    EXPECT_EQ(kind(text), BoomKind::other) << text;
  }
}

TEST(BoomEventCoding, IsStrictAboutEverythingElse) {
  EXPECT_EQ(failureOf<BoomEvent>(eventBody(R"("kind":4)")),
            "kind: expected a text, found an integer");
  EXPECT_EQ(failureOf<BoomEvent>(eventBody(R"("kind":null)")), "kind: expected a text, found null");
  EXPECT_EQ(failureOf<BoomEvent>(eventBody(R"("late":0)")),
            "late: expected a boolean, found an integer");
  EXPECT_EQ(failureOf<BoomEvent>(eventBody(R"("id":"41")")),
            "id: expected an integer of 64 bits, found a text");
  EXPECT_EQ(failureOf<BoomEvent>(eventBody(R"("at":"yesterday")")), "at: Bad date yesterday");
  for (const std::string_view key : {"id", "kind", "team", "late", "at"}) {
    auto body = eventBody();
    const auto name = "\"" + std::string(key) + "\"";
    body.replace(body.find(name), name.size(), "\"renamed\"");
    EXPECT_EQ(failureOf<BoomEvent>(body), std::string(key) + ": missing");
  }
}

TEST(BoomEventCoding, ReadsAPayload) {
  const auto payload = json::decode<ProMatchPayload>(
      payloadBody(R"("events":[)" + eventBody() + R"(],"keyMoments":[)" + eventBody(R"("id":1)") +
                  "," + eventBody() + R"(],"nextFixture":)" + match));
  ASSERT_TRUE(payload.has_value()) << payload.error().description();
  EXPECT_EQ(payload->match.id, "7");
  EXPECT_EQ(payload->newestEventId, 41);
  EXPECT_EQ(payload->events.size(), 1U);
  EXPECT_EQ(payload->events[0].id, 41);
  EXPECT_EQ(payload->keyMoments.size(), 2U);
  EXPECT_EQ(payload->keyMoments[0].id, 1);
  EXPECT_EQ(payload->nextFixture, payload->match);
  EXPECT_EQ(json::decode<ProMatchPayload>(payloadBody(R"("nextFixture":null)"))->nextFixture,
            std::nullopt);
}

TEST(BoomEventCoding, RequiresThePartsOfAPayload) {
  EXPECT_EQ(failureOf<ProMatchPayload>(payloadBody()), "decoded");
  for (const std::string_view key : {"match", "newestEventId", "events", "keyMoments"}) {
    auto body = payloadBody();
    const auto name = "\"" + std::string(key) + "\"";
    body.replace(body.find(name), name.size(), "\"renamed\"");
    EXPECT_EQ(failureOf<ProMatchPayload>(body), std::string(key) + ": missing");
  }
  EXPECT_EQ(failureOf<ProMatchPayload>(payloadBody(R"("events":null)")),
            "events: expected a list, found null");
  EXPECT_EQ(failureOf<ProMatchPayload>(payloadBody(R"("keyMoments":[)" + eventBody() + ",{}]")),
            "keyMoments[1].id: missing");
}

TEST(BoomEventCoding, LeavesOutWhatIsAbsent) {
  const BoomEvent event{.id = 1, .kind = BoomKind::four, .team = "MI", .at = Date{}};
  EXPECT_EQ(json::encode(event),
            R"({"id":1,"kind":"four","team":"MI","late":false,"at":"1970-01-01T00:00:00Z"})");
}

TEST(BoomEventCoding, ReadsBackEveryRecordItWrites) {
  RandomRecords random(12);
  for (int count = 0; count < 300; ++count) {
    const auto payload = random.payload();
    EXPECT_EQ(json::decode<ProMatchPayload>(encode(payload)), payload) << encode(payload);
    const auto event = random.boomEvent();
    EXPECT_EQ(json::decode<BoomEvent>(*json::encode(event)), event);
  }
}

}  // namespace
}  // namespace kestrow
