#include "KestrowCore/Json.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace kestrow::json {
namespace {

Document parsed(std::string_view body) {
  auto document = Document::parse(body);
  EXPECT_TRUE(document.has_value()) << body;
  return *std::move(document);
}

std::string nested(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

Value firstItem(const Document& document) {
  Items items(document.root());
  Value item;
  EXPECT_TRUE(items.next(item));
  return item;
}

TEST(JsonError, TellsThePlaceBeforeTheReason) {
  EXPECT_EQ((Error{.path = "live[3].id", .reason = "missing"}).description(),
            "live[3].id: missing");
  EXPECT_EQ((Error{.path = "", .reason = "missing"}).description(), "missing");
}

TEST(JsonDocument, RefusesWhatIsNotOneWholeDocument) {
  for (const std::string_view body : {"",
                                      " ",
                                      "{",
                                      "{}x",
                                      "{} {}",
                                      "[1,]",
                                      "{\"a\":1,}",
                                      "nul",
                                      "'a'",
                                      "{a:1}",
                                      "[01]",
                                      "[1.]",
                                      "[+1]",
                                      "[NaN]",
                                      "\"\\ud800\"",
                                      "\"\xff\"",
                                      "\"\xc0\x80\"",
                                      "\"a\nb\"",
                                      "[1e999]",
                                      "[018446744073709551616]",
                                      "[18446744073709551616-]",
                                      "[18446744073709551616 1]",
                                      "[-9223372036854775809]",
                                      "{}\x01"}) {
    const auto document = Document::parse(body);
    ASSERT_FALSE(document.has_value()) << body;
    EXPECT_EQ(document.error().path, "");
    EXPECT_TRUE(document.error().reason.starts_with("not valid JSON: ")) << document.error().reason;
  }
}

TEST(JsonDocument, TakesAnyWhiteSpaceAroundIt) {
  EXPECT_EQ(parsed(" \t\r\n{ } \n").root().kind(), Kind::object);
}

TEST(JsonDocument, TakesIntegersThatNoIntegerTypeHolds) {
  const auto document =
      parsed(R"([18446744073709551616, -10000000000000000000,123456789012345678901234567890])");
  std::vector<std::optional<double>> numbers;
  Items items(document.root());
  for (Value item; items.next(item);) {
    EXPECT_EQ(item.kind(), Kind::real);
    EXPECT_EQ(item.integer(), std::nullopt);
    numbers.push_back(item.number());
  }
  EXPECT_EQ(numbers,
            (std::vector<std::optional<double>>{0x1p64, -1e19, 123456789012345678901234567890.0}));
  EXPECT_EQ(parsed("18446744073709551616").root().number(), 0x1p64);
  EXPECT_FALSE(Document::parse("[1" + std::string(400, '0') + "]").has_value());
}

TEST(JsonDocument, KeepsWhatStandsBesideAVeryLongInteger) {
  const auto document =
      parsed(R"({"x":18446744073709551616,"12345678901234567890":9223372036854775807,)"
             R"("t":"\"12345678901234567890\\","r":1.12345678901234567890,)"
             R"("e":100000000000000000000e-20,"n":-9223372036854775808})");
  const auto at = [&](std::string_view key) { return *document.root().find(key); };
  EXPECT_EQ(at("12345678901234567890").integer(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(at("t").text(), "\"12345678901234567890\\");
  EXPECT_EQ(at("r").number(), 1.12345678901234567890);
  EXPECT_EQ(at("e").number(), 1.0);
  EXPECT_EQ(at("n").integer(), std::numeric_limits<std::int64_t>::min());
}

TEST(JsonDocument, IsNestedUpToTheLimitAndNotDeeper) {
  EXPECT_TRUE(Document::parse(nested(Document::maxDepth - 1)).has_value());
  EXPECT_FALSE(Document::parse(nested(Document::maxDepth + 1)).has_value());
  EXPECT_FALSE(Document::parse(std::string(1'000'000, '[')).has_value());
}

TEST(JsonDocument, HoldsSixteenMebibytes) {
  const std::string text((std::size_t{16} << 20U) - 2, 'x');
  EXPECT_EQ(parsed('"' + text + '"').root().text(), text);
}

TEST(JsonDocument, StaysGoodWhenMoved) {
  auto document = parsed("[7]");
  const auto moved = std::move(document);
  EXPECT_EQ(firstItem(moved).integer(), 7);
}

TEST(JsonValue, KnowsItsKind) {
  const auto document = parsed(R"([null, true, 1, 18446744073709551615, 1.5, "a", [], {}])");
  std::vector<Kind> kinds;
  Items items(document.root());
  EXPECT_EQ(items.count(), 8U);
  for (Value item; items.next(item);) kinds.push_back(item.kind());
  EXPECT_EQ(kinds, (std::vector{Kind::null, Kind::boolean, Kind::integer, Kind::real, Kind::real,
                                Kind::text, Kind::array, Kind::object}));
}

TEST(JsonValue, GivesOnlyWhatItIs) {
  const auto document = parsed(R"({"t": "1", "n": 1, "r": 1.5, "b": true, "z": null})");
  const auto at = [&](std::string_view key) { return *document.root().find(key); };
  EXPECT_EQ(at("t").text(), "1");
  EXPECT_EQ(at("t").integer(), std::nullopt);
  EXPECT_EQ(at("t").number(), std::nullopt);
  EXPECT_EQ(at("n").number(), 1.0);
  EXPECT_EQ(at("r").number(), 1.5);
  EXPECT_EQ(at("r").integer(), std::nullopt);
  EXPECT_EQ(at("n").text(), std::nullopt);
  EXPECT_EQ(at("n").boolean(), std::nullopt);
  EXPECT_EQ(at("b").boolean(), true);
  EXPECT_EQ(at("b").integer(), std::nullopt);
  EXPECT_TRUE(at("z").isNull());
  EXPECT_FALSE(at("n").isNull());
  EXPECT_EQ(document.root().find("x"), std::nullopt);
  EXPECT_EQ(at("t").find("x"), std::nullopt);
}

TEST(JsonValue, IsAnIntegerWhenItIsWholeAndFits) {
  const auto integer = [](const std::string& body) {
    const auto document = parsed("[" + body + "]");
    return firstItem(document).integer();
  };
  EXPECT_EQ(integer("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(integer("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(integer("9223372036854775808"), std::nullopt);
  EXPECT_EQ(integer("18446744073709551615"), std::nullopt);
  EXPECT_EQ(integer("1.0"), 1);
  EXPECT_EQ(integer("-1e3"), -1000);
  EXPECT_EQ(integer("1.5"), std::nullopt);
  EXPECT_EQ(integer("0.1"), std::nullopt);
  EXPECT_EQ(integer("-9223372036854775808.0"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(integer("9223372036854775808.0"), std::nullopt);
  EXPECT_EQ(integer("-9.3e18"), std::nullopt);
  EXPECT_EQ(integer("1e300"), std::nullopt);
}

TEST(JsonEntries, ComeInTheOrderWritten) {
  const auto document = parsed(R"({"b": {"x": [1]}, "a\u00e9": 2, "b": 3})");
  std::vector<std::string> keys;
  Entries entries(document.root());
  for (Entry entry; entries.next(entry);) keys.emplace_back(entry.key);
  EXPECT_EQ(keys, (std::vector<std::string>{"b", "a\u00e9", "b"}));
  EXPECT_EQ(document.root().find("b")->kind(), Kind::object);
}

TEST(JsonEntries, AreNoneInWhatIsNotAContainer) {
  const auto list = parsed("[3]");
  const auto three = firstItem(list);
  Entry entry;
  EXPECT_FALSE(Entries(list.root()).next(entry));
  Value item;
  EXPECT_FALSE(Items(three).next(item));
  EXPECT_EQ(Items(three).count(), 0U);
}

TEST(JsonEntries, AreNoneInAnEmptyContainer) {
  const auto list = parsed("[]");
  Value item;
  EXPECT_FALSE(Items(list.root()).next(item));
  const auto object = parsed("{}");
  Entry entry;
  EXPECT_FALSE(Entries(object.root()).next(entry));
}

void writeSample(Writer& writer) {
  writer.beginObject();
  writer.key("z");
  writer.beginArray();
  writer.integer(std::numeric_limits<std::int64_t>::min());
  writer.number(12.3);
  writer.beginObject();
  writer.key("in");
  writer.boolean(false);
  writer.endObject();
  writer.beginArray();
  writer.endArray();
  writer.endArray();
  writer.key("a");
  writer.text("\"\n\u00e9</");
  writer.endObject();
}

TEST(JsonWriter, KeepsTheOrderOfKeysWhenCompact) {
  Writer writer;
  writeSample(writer);
  EXPECT_EQ(writer.finish(Layout::compact),
            "{\"z\":[-9223372036854775808,12.3,{\"in\":false},[]],\"a\":\"\\\"\\n\u00e9</\"}");
}

TEST(JsonWriter, SortsAndIndentsWhenPretty) {
  Writer writer;
  writeSample(writer);
  EXPECT_EQ(writer.finish(Layout::prettySorted),
            "{\n  \"a\": \"\\\"\\n\u00e9</\",\n  \"z\": [\n    -9223372036854775808,\n    12.3,\n"
            "    {\n      \"in\": false\n    },\n    []\n  ]\n}");
}

TEST(JsonWriter, WritesAValueAlone) {
  Writer writer;
  writer.text("a");
  EXPECT_EQ(writer.finish(Layout::compact), "\"a\"");
}

TEST(JsonWriter, WritesNullForANumberThatIsNotFinite) {
  Writer writer;
  writer.number(std::numeric_limits<double>::infinity());
  EXPECT_EQ(writer.finish(Layout::compact), "null");
}

TEST(JsonWriter, FailsOrReplacesWhereTextIsNotUtf8) {
  Writer writer;
  writer.beginObject();
  writer.key("k");
  writer.text("a\xff");
  writer.endObject();
  const auto error = Error{.path = "", .reason = "a text is not UTF-8"};
  EXPECT_EQ(writer.finish(Layout::compact).error(), error);
  EXPECT_EQ(writer.finish(Layout::prettySorted).error(), error);
  EXPECT_EQ(writer.finishReplacing(Layout::compact), "{\"k\":\"a\ufffd\"}");

  Writer badKey;
  badKey.beginObject();
  badKey.key("\xff");
  badKey.integer(1);
  badKey.endObject();
  EXPECT_EQ(badKey.finish(Layout::compact).error(), error);
}

}  // namespace
}  // namespace kestrow::json
