#include "KestrowCore/MatchPicker.hpp"
#include "Tests/Support/Records.hpp"

#include <gmock/gmock.h>

namespace kestrow {
namespace {

using records::date;
using records::live;
using records::match;
using testing::ElementsAre;
using testing::IsEmpty;

using Answer = FeedResult<MatchesResponse>;

std::string formatStart(Date start) {
  return "at " + std::to_string(start.time_since_epoch() / std::chrono::milliseconds(1));
}

PickerState build(const MatchesResponse& response,
                  const std::optional<std::string>& followedId = std::nullopt) {
  return PickerState::build(response, followedId, formatStart);
}

std::vector<PickerSection> sections(const PickerState& state) {
  return std::get<PickerState::Loaded>(state.value).sections;
}

PickerRow onlyRow(const MatchesResponse& response) {
  return sections(build(response)).at(0).rows.at(0);
}

Match upcoming(std::string id, std::optional<Date> start) {
  auto made = match(std::move(id), MatchPhase::notStarted);
  made.startTime = start;
  return made;
}

std::vector<std::string> ids(const PickerSection& section) {
  std::vector<std::string> ids;
  ids.reserve(section.rows.size());
  for (const auto& row : section.rows) ids.push_back(row.id);
  return ids;
}

TEST(PickerState, ListsLiveMatchesAboveUpcomingOnes) {
  const auto state = build({.sample = true,
                            .live = {match("a")},
                            .upcoming = {upcoming("b", date(5))},
                            .finished = {match("c", MatchPhase::finished)}});
  const PickerRow liveRow{.id = "a",
                          .teams = "Mumbai Indians v Chennai Super Kings",
                          .competition = "League",
                          .detail = "Live",
                          .isLive = true};
  auto upcomingRow = liveRow;
  upcomingRow.id = "b";
  upcomingRow.detail = "at 5";
  upcomingRow.isLive = false;
  EXPECT_EQ(
      state,
      (PickerState{PickerState::Loaded{.sections = {{.title = "Live", .rows = {liveRow}},
                                                    {.title = "Upcoming", .rows = {upcomingRow}}},
                                       .isSample = true}}));
}

TEST(PickerState, LeavesOutASectionWithoutMatches) {
  EXPECT_EQ(sections(build({.live = {match("a")}})).at(0).title, "Live");
  EXPECT_EQ(sections(build({.live = {match("a")}})).size(), 1U);
  EXPECT_EQ(sections(build({.upcoming = {match("a")}})).at(0).title, "Upcoming");
  EXPECT_EQ(sections(build({.upcoming = {match("a")}})).size(), 1U);
  EXPECT_FALSE(std::get<PickerState::Loaded>(build({.live = {match("a")}}).value).isSample);
}

TEST(PickerState, IsEmptyWhenOnlyFinishedMatchesAreListed) {
  for (const bool isSample : {false, true}) {
    EXPECT_EQ(build({.sample = isSample, .finished = {match("a", MatchPhase::finished)}}),
              (PickerState{PickerState::Empty{.isSample = isSample}}));
  }
}

TEST(PickerState, OrdersByStartTimeThenAsListedWithUndatedMatchesLast) {
  const std::vector<Match> listed{upcoming("none1", std::nullopt), upcoming("late", date(30)),
                                  upcoming("same1", date(20)),     upcoming("none2", std::nullopt),
                                  upcoming("early", date(10)),     upcoming("same2", date(20))};
  const auto made = sections(build({.live = listed, .upcoming = listed}));
  EXPECT_THAT(ids(made.at(0)), ElementsAre("early", "same1", "same2", "late", "none1", "none2"));
  EXPECT_THAT(ids(made.at(1)), ElementsAre("early", "same1", "same2", "late", "none1", "none2"));
}

TEST(PickerState, EvenTheLastOfAllDatesComesBeforeNone) {
  const auto made = sections(
      build({.upcoming = {upcoming("none", std::nullopt), upcoming("last", Date::max())}}));
  EXPECT_THAT(ids(made.at(0)), ElementsAre("last", "none"));
}

TEST(PickerState, AnUndatedUpcomingMatchShowsItsTrimmedStatus) {
  auto undated = upcoming("a", std::nullopt);
  undated.status = "\t Toss delayed \n ";
  EXPECT_EQ(onlyRow({.upcoming = {undated}}).detail, "Toss delayed \n");
  undated.status = " \t";
  EXPECT_EQ(onlyRow({.upcoming = {undated}}).detail, "Not started");
}

TEST(PickerState, ADatedUpcomingMatchShowsItsStartRatherThanItsStatus) {
  auto dated = upcoming("a", date(7));
  dated.status = "Toss delayed";
  EXPECT_EQ(onlyRow({.upcoming = {dated}}).detail, "at 7");
}

TEST(PickerState, ALiveMatchShowsItsStatusElseItsScoreElseLive) {
  auto playing = match("a");
  playing.startTime = date(7);
  playing.status = "  ";
  EXPECT_EQ(onlyRow(live({playing})).detail, "Live");
  playing.innings = {{.team = "MI", .runs = 145, .wickets = 3, .overs = 15.2}};
  EXPECT_EQ(onlyRow(live({playing})).detail, "MI 145/3 (15.2)");
  playing.status = " Rain ";
  EXPECT_EQ(onlyRow(live({playing})).detail, "Rain");
}

TEST(PickerState, MarksTheFollowedMatchByItsExactId) {
  const MatchesResponse response{.live = {match("a")},
                                 .upcoming = {match("A"), match("")},
                                 .finished = {match("f", MatchPhase::finished)}};
  const auto marks = [&](const std::optional<std::string>& followedId) {
    std::vector<std::string> marked;
    for (const auto& section : sections(build(response, followedId))) {
      for (const auto& row : section.rows) {
        if (row.isFollowed) marked.push_back(row.id);
      }
    }
    return marked;
  };
  EXPECT_THAT(marks("a"), ElementsAre("a"));
  EXPECT_THAT(marks("A"), ElementsAre("A"));
  EXPECT_THAT(marks(std::nullopt), IsEmpty());
  EXPECT_THAT(marks("f"), IsEmpty());
}

TEST(PickerState, NamesTheTournamentElseTheLeague) {
  auto made = match("a");
  EXPECT_EQ(onlyRow(live({made})).competition, "League");
  made.tournament = "Cup";
  EXPECT_EQ(onlyRow(live({made})).competition, "Cup");
}

TEST(PickerState, HasItsTexts) {
  EXPECT_STREQ(PickerState::loadingText, "Loading matches\u2026");
  EXPECT_STREQ(PickerState::errorText, "Couldn't load matches");
  EXPECT_STREQ(PickerState::retryText, "Retry");
  EXPECT_STREQ(PickerState::emptyText, "No live or upcoming matches");
  EXPECT_STREQ(PickerState::sampleText, "Sample data");
}

class MatchPickerTest : public testing::Test {
 public:
  MatchPickerTest() {
    picker.onChange = [this](const PickerState& state) { changes.push_back(state); };
  }

  std::vector<Pending<Answer>> requests;
  std::vector<PickerState> changes;
  MatchPicker picker{[this] {
                       requests.emplace_back();
                       return requests.back().task();
                     },
                     std::nullopt, formatStart};
};

const PickerState loading{PickerState::Loading{}};
const PickerState error{PickerState::Error{}};
const Answer failure = std::unexpected(ScoreClientError{ScoreClientError::Http{500}});

TEST_F(MatchPickerTest, BeginsLoadingAndAsksNothingByItself) {
  EXPECT_EQ(picker.state(), loading);
  EXPECT_THAT(requests, IsEmpty());
  EXPECT_FALSE(picker.followedId);
}

TEST_F(MatchPickerTest, LoadsAndTellsEachState) {
  TaskScope scope;
  scope.start(picker.load());
  EXPECT_THAT(changes, ElementsAre(loading));
  requests.at(0).complete(live({match("a")}));
  EXPECT_TRUE(scope.isIdle());
  EXPECT_THAT(changes, ElementsAre(loading, build(live({match("a")}))));
  EXPECT_EQ(picker.state(), changes.back());
}

TEST_F(MatchPickerTest, AFailureReplacesTheRowsAndARetryLoadsAgain) {
  picker.startLoad();
  requests.at(0).complete(live({match("a")}));
  picker.startLoad();
  EXPECT_EQ(picker.state(), loading);
  requests.at(1).complete(failure);
  EXPECT_EQ(picker.state(), error);
  picker.startLoad();
  EXPECT_EQ(picker.state(), loading);
  requests.at(2).complete(live({}));
  EXPECT_EQ(picker.state(), build({}));
  EXPECT_EQ(changes.size(), 6U);
}

TEST_F(MatchPickerTest, MarksTheMatchFollowedWhenTheAnswerComes) {
  picker.followedId = "a";
  picker.startLoad();
  picker.followedId = "b";
  requests.at(0).complete(live({match("a"), match("b")}));
  EXPECT_EQ(picker.state(), build(live({match("a"), match("b")}), "b"));
}

TEST_F(MatchPickerTest, OfOverlappingLoadsTheOneThatEndsLastDecides) {
  picker.startLoad();
  picker.startLoad();
  requests.at(1).complete(live({match("b")}));
  requests.at(0).complete(failure);
  EXPECT_EQ(picker.state(), error);
  EXPECT_THAT(changes, ElementsAre(loading, loading, build(live({match("b")})), error));
}

TEST(MatchPicker, DestroyingItAbandonsItsLoads) {
  const Pending<Answer> request;
  int abandoned = 0;
  request.onAbandoned([&] { ++abandoned; });
  {
    MatchPicker picker([&] { return request.task(); }, "a", formatStart);
    EXPECT_EQ(picker.followedId, "a");
    picker.startLoad();
  }
  EXPECT_EQ(abandoned, 1);
  request.complete(live({}));
}

TEST(MatchPicker, WithAClientItAsksTheListEndpoint) {
  std::vector<std::string> urls;
  const Transport transport = [&](const HttpRequest& request) {
    urls.push_back(request.url);
    const Pending<std::expected<HttpResponse, TransportError>> pending;
    pending.complete(HttpResponse{.body = "{}", .status = 200});
    return pending.task();
  };
  MatchPicker picker({.baseUrl = "http://service", .transport = transport}, "a");
  EXPECT_EQ(picker.followedId, "a");
  picker.startLoad();
  EXPECT_THAT(urls, ElementsAre("http://service/api/matches"));
  EXPECT_EQ(picker.state(), build({}));
}

}  // namespace
}  // namespace kestrow
