#include "KestrowCore/JsonRecord.hpp"

#include <gtest/gtest.h>

namespace kestrow {
namespace {

enum class Colour { red, blue };

struct Leaf {
  std::string name;
  Colour colour = Colour::red;
  bool operator==(const Leaf&) const = default;
};

struct Tree {
  std::int64_t count = 0;
  double weight = 0;
  bool tall = true;
  std::vector<Leaf> leaves;
  std::optional<Leaf> fruit;
  std::optional<double> age;
  std::optional<std::map<std::string, std::int64_t>> tallies;
  std::vector<std::string> names = {"oak"};
  bool operator==(const Tree&) const = default;
};

const char* refuseNegative(const std::optional<double>& age) {
  return age && *age < 0 ? "negative" : nullptr;
}

}  // namespace

template <>
struct json::Text<Colour> {
  static std::optional<Colour> parse(std::string_view text) {
    if (text == "red") return Colour::red;
    if (text == "blue") return Colour::blue;
    return std::nullopt;
  }
  static std::string refusal(std::string_view text) { return "no colour: " + std::string(text); }
  static std::string format(Colour colour) { return colour == Colour::red ? "red" : "blue"; }
};

template <>
struct json::Record<Leaf> {
  static auto fields(auto& leaf) {
    return std::tuple(required("name", leaf.name), required("colour", leaf.colour));
  }
};

template <>
struct json::Record<Tree> {
  static auto fields(auto& tree) {
    return std::tuple(required("count", tree.count), required("weight", tree.weight),
                      withDefault("tall", tree.tall), required("leaves", tree.leaves),
                      optional("fruit", tree.fruit), optional("age", tree.age, refuseNegative),
                      optional("tallies", tree.tallies), withDefault("names", tree.names));
  }
};

namespace {

const std::string least = R"("count":1,"weight":2,"leaves":[])";

// The tree whose body has these entries besides the required ones.
std::expected<Tree, json::Error> treeWith(const std::string& entries) {
  return json::decode<Tree>("{" + entries + "," + least + "}");
}

json::Error failureOf(const std::string& body) {
  const auto tree = json::decode<Tree>(body);
  EXPECT_FALSE(tree.has_value()) << body;
  return tree ? json::Error{} : tree.error();
}

std::string failureWith(const std::string& entries) {
  return failureOf("{" + entries + "," + least + "}").description();
}

TEST(JsonRecord, ReadsEveryKindOfField) {
  const auto tree = json::decode<Tree>(
      R"({"count": -3, "weight": 2.5, "tall": false, "age": 7, "names": ["a", "b"],
          "leaves": [{"name": "x", "colour": "red"}, {"colour": "blue", "name": "y"}],
          "fruit": {"name": "z", "colour": "blue"}, "tallies": {"p": 1, "q.r": 2}})");
  const Tree expected{.count = -3,
                      .weight = 2.5,
                      .tall = false,
                      .leaves = {{"x", Colour::red}, {"y", Colour::blue}},
                      .fruit = Leaf{"z", Colour::blue},
                      .age = 7,
                      .tallies = {{{"p", 1}, {"q.r", 2}}},
                      .names = {"a", "b"}};
  ASSERT_TRUE(tree.has_value()) << tree.error().description();
  EXPECT_EQ(*tree, expected);
}

TEST(JsonRecord, TakesNullAndAbsentAlikeWhereAFieldMayBeAbsent) {
  const Tree expected{.count = 1, .weight = 2};
  EXPECT_EQ(json::decode<Tree>("{" + least + "}"), expected);
  EXPECT_EQ(treeWith(R"("tall":null,"fruit":null,"age":null,"tallies":null,"names":null)"),
            expected);
}

TEST(JsonRecord, SkipsUnknownKeysWhateverTheyHold) {
  EXPECT_EQ(treeWith(R"("x":{"count":[1,{"y":"z"}]},"Count":"a","":1)"),
            (Tree{.count = 1, .weight = 2}));
}

TEST(JsonRecord, TakesKeysInAnyOrderWithUnknownOnesInBetween) {
  const Tree expected{.count = 5, .weight = 2.5, .tall = false, .age = 3};
  EXPECT_EQ(json::decode<Tree>(R"({"age":3,"leaves":[],"tall":false,"weight":2.5,"count":5})"),
            expected);
  EXPECT_EQ(json::decode<Tree>(
                R"({"a":0,"weight":2.5,"b":0,"c":0,"count":5,"age":3,"d":0,"tall":false,
                    "leaves":[],"e":0,"count":6,"f":0})"),
            expected);
}

TEST(JsonRecord, TellsTheFirstFailureInTheOrderWritten) {
  EXPECT_EQ(failureOf(R"({"weight":"b","count":"a","leaves":[]})").path, "weight");
  EXPECT_EQ(failureOf(R"({"x":0,"count":"a","weight":"b"})").path, "count");
}

TEST(JsonRecord, CountsTheFirstOfAKeyThatComesTwice) {
  EXPECT_EQ(treeWith(R"("count":5,"age":1,"age":null)"), (Tree{.count = 5, .weight = 2, .age = 1}));
  EXPECT_EQ(treeWith(R"("tallies":{"a":1,"a":"x"})")->tallies->at("a"), 1);
}

TEST(JsonRecord, TellsWhichKeyIsMissing) {
  EXPECT_EQ(failureOf(R"({"count":1,"leaves":[]})").description(), "weight: missing");
  EXPECT_EQ(failureOf("{}").description(), "count: missing");
  EXPECT_EQ(failureWith(R"("fruit":{"name":"a"})"), "fruit.colour: missing");
}

TEST(JsonRecord, RefusesWrongTypesAndTellsWhereAndWhy) {
  EXPECT_EQ(failureOf("[]").description(), "expected an object, found a list");
  EXPECT_EQ(failureWith(R"("count":null)"), "count: expected an integer of 64 bits, found null");
  EXPECT_EQ(failureWith(R"("count":"1")"), "count: expected an integer of 64 bits, found a text");
  EXPECT_EQ(failureWith(R"("count":true)"),
            "count: expected an integer of 64 bits, found a boolean");
  EXPECT_EQ(failureWith(R"("count":1.5)"), "count: expected an integer of 64 bits, found a number");
  EXPECT_EQ(failureWith(R"("count":9223372036854775808)"),
            "count: expected an integer of 64 bits, found a number");
  EXPECT_EQ(failureWith(R"("weight":"2")"), "weight: expected a number, found a text");
  EXPECT_EQ(failureWith(R"("tall":1)"), "tall: expected a boolean, found an integer");
  EXPECT_EQ(failureWith(R"("leaves":{})"), "leaves: expected a list, found an object");
  EXPECT_EQ(failureWith(R"("fruit":"apple")"), "fruit: expected an object, found a text");
  EXPECT_EQ(failureWith(R"("names":["a",["b"]])"), "names[1]: expected a text, found a list");
  EXPECT_EQ(failureWith(R"("tallies":[1])"), "tallies: expected an object, found a list");
  EXPECT_EQ(failureWith(R"("leaves":[{"name":"a","colour":"red"},{"name":"b","colour":3}])"),
            "leaves[1].colour: expected a text, found an integer");
}

TEST(JsonRecord, QuotesKeysInThePathThatAreNotPlain) {
  EXPECT_EQ(failureWith(R"("tallies":{"a.b":"x"})"),
            R"(tallies["a.b"]: expected an integer of 64 bits, found a text)");
  EXPECT_EQ(failureWith(R"("tallies":{"":"x"})"),
            R"(tallies[""]: expected an integer of 64 bits, found a text)");
  EXPECT_EQ(failureWith(R"("tallies":{"aZ-_09":"x"})"),
            "tallies.aZ-_09: expected an integer of 64 bits, found a text");
}

TEST(JsonRecord, TellsTheReasonOfATextThatDoesNotParse) {
  EXPECT_EQ(failureWith(R"("fruit":{"name":"a","colour":"mauve"})"),
            "fruit.colour: no colour: mauve");
}

TEST(JsonRecord, RefusesAValueThatItsCheckRefuses) {
  EXPECT_EQ(failureWith(R"("age":-1)"), "age: negative");
  EXPECT_TRUE(treeWith(R"("age":0)").has_value());
}

TEST(JsonRecord, ReadsListsUpToTheLimitAndNoLongerOnes) {
  std::string names = "\"n\"";
  for (int count = 1; count < 10'000; ++count) names += ",\"n\"";
  EXPECT_EQ(treeWith("\"names\":[" + names + "]")->names.size(), 10'000U);
  EXPECT_EQ(failureWith("\"names\":[" + names + ",\"n\"]"), "names: a list that is too long");
}

TEST(JsonRecord, ReadsTextsUpToTheLimitAndNoLongerOnes) {
  const std::string longest(65'536, 'n');
  EXPECT_EQ(treeWith("\"names\":[\"" + longest + "\"]")->names.front(), longest);
  EXPECT_EQ(failureWith("\"names\":[\"" + longest + "n\"]"), "names[0]: a text that is too long");
}

TEST(JsonRecord, DecodesAListOrAMapAsAWholeDocument) {
  EXPECT_EQ(json::decode<std::vector<std::int64_t>>("[1,2]"), (std::vector<std::int64_t>{1, 2}));
  EXPECT_EQ((json::decode<std::map<std::string, std::string>>(R"({"a":"b"})")),
            (std::map<std::string, std::string>{{"a", "b"}}));
  EXPECT_EQ(json::decode<std::vector<std::int64_t>>(R"([1,"x"])").error().path, "[1]");
}

TEST(JsonRecord, FailsOnTextThatIsNotJson) {
  EXPECT_TRUE(failureOf("{").reason.starts_with("not valid JSON: "));
}

TEST(JsonRecord, LeavesOutWhatIsAbsentAndWritesDefaults) {
  EXPECT_EQ(json::encode(Tree{.count = 1, .weight = 2.5}),
            R"({"count":1,"weight":2.5,"tall":true,"leaves":[],"names":["oak"]})");
}

TEST(JsonRecord, ReadsWhatItWrote) {
  const Tree tree{.count = 4,
                  .weight = 0.1,
                  .tall = false,
                  .leaves = {{std::string(1, '\0') + "\u00e9\"", Colour::blue}},
                  .fruit = Leaf{"f", Colour::red},
                  .age = 1e300,
                  .tallies = {{{"", 1}, {"b", -2}}},
                  .names = {}};
  EXPECT_EQ(json::decode<Tree>(*json::encode(tree)), tree);
  EXPECT_EQ(json::decode<Tree>(*json::encode(tree, json::Layout::prettySorted)), tree);
}

TEST(JsonRecord, FailsOrReplacesWhereTextIsNotUtf8) {
  const Leaf leaf{.name = "\xff", .colour = Colour::red};
  EXPECT_EQ(json::encode(leaf).error().reason, "a text is not UTF-8");
  EXPECT_EQ(json::encodeReplacing(leaf), "{\"name\":\"\ufffd\",\"colour\":\"red\"}");
}

}  // namespace
}  // namespace kestrow
