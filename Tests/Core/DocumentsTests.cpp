// The examples in the documents for people who write a score service, or look into the state file:
// what they show is what the program reads.
#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/LocalStore.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace kestrow {
namespace {

// The JSON examples of a document, in its order.
std::vector<std::string> examples(std::string_view document) {
  constexpr std::string_view opening = "```json\n";
  const auto text = fileContent(std::filesystem::path(KESTROW_DOCS) / document);
  std::vector<std::string> found;
  for (auto start = text.find(opening); start != std::string::npos;) {
    start += opening.size();
    const auto end = text.find("```", start);
    found.push_back(text.substr(start, end - start));
    start = text.find(opening, end);
  }
  return found;
}

TEST(ScoreServiceDocument, HasAnExampleOfEveryAnswerThatDecodes) {
  const auto found = examples("score-service.md");
  ASSERT_EQ(found.size(), 4U);

  const auto match = json::decode<Match>(found[0]);
  ASSERT_TRUE(match) << match.error().description();
  EXPECT_EQ(match->currentInnings()->balls(), 45);

  const auto list = json::decode<MatchesResponse>(found[1]);
  ASSERT_TRUE(list) << list.error().description();
  EXPECT_TRUE(list->updatedAt);

  const auto single = json::decode<MatchResponse>(found[2]);
  ASSERT_TRUE(single) << single.error().description();
  EXPECT_EQ(single->match->id, "match-4");

  const auto payload = json::decode<ProMatchPayload>(found[3]);
  ASSERT_TRUE(payload) << payload.error().description();
  EXPECT_EQ(payload->match.id, "match-1");
  EXPECT_EQ(payload->events.size(), 1U);
  EXPECT_EQ(payload->keyMoments.size(), 3U);
  EXPECT_TRUE(payload->nextFixture);
}

TEST(StateFileDocument, ShowsTheFileAsTheProgramWritesIt) {
  const auto found = examples("state-file.md");
  ASSERT_EQ(found.size(), 1U);
  const TemporaryFolder folder;
  LocalStore store(folder.path());
  writeFile(store.fileUrl(), found[0]);
  const auto saved = store.update([](StoredState&) {});
  ASSERT_TRUE(saved);
  EXPECT_TRUE(saved->followedMatchId && saved->installId && saved->lastEventIdByMatch &&
              saved->customisation);
  EXPECT_EQ(fileContent(store.fileUrl()) + '\n', found[0]);
}

}  // namespace
}  // namespace kestrow
