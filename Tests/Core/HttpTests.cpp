#include "KestrowCore/Http.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>

namespace kestrow {
namespace {

bool isSendable(std::string name, std::string value) {
  return !defect({.method = HttpMethod::get,
                  .url = "http://127.0.0.1/",
                  .headers = {{"x-fine", "fine"}, {std::move(name), std::move(value)}},
                  .body = ""});
}

bool isSendable(std::string url) {
  return !defect({.method = HttpMethod::get, .url = std::move(url), .headers = {}, .body = ""});
}

TEST(HttpRequest, HasTwentySeconds) {
  EXPECT_EQ(HttpRequest().timeout, std::chrono::seconds(20));
}

TEST(HttpRequest, AHeaderNameIsAToken) {
  for (int c = 0; c < 256; ++c) {
    const char character = static_cast<char>(c);
    const bool isToken =
        c < 128 && ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                    (c != 0 && std::string("!#$%&'*+-.^_`|~").contains(character)));
    EXPECT_EQ(isSendable(std::string("x") + character, "v"), isToken) << c;
  }
  EXPECT_FALSE(isSendable("", "v"));
}

TEST(HttpRequest, AHeaderValueHasNoControlCharactersButTabs) {
  for (int c = 0; c < 256; ++c) {
    const bool isControl = (c < 32 && c != '\t') || c == 127;
    EXPECT_EQ(isSendable("x", std::string("a") + static_cast<char>(c) + "b"), !isControl) << c;
  }
  EXPECT_TRUE(isSendable("x", ""));
}

TEST(HttpRequest, AUrlHasNoControlCharacters) {
  EXPECT_TRUE(isSendable("http://127.0.0.1/a?b=%20#c"));
  EXPECT_FALSE(isSendable("http://127.0.0.1/\r\nHost: b"));
  EXPECT_FALSE(isSendable("http://127.0.0.1/\n"));
  EXPECT_FALSE(isSendable(std::string("http://127.0.0.1/\0x", 19)));
}

TEST(HttpRequest, SaysWhatIsWrongWithIt) {
  EXPECT_EQ(defect({.url = "\n"}), "The URL holds control characters");
  EXPECT_EQ(defect({.headers = {{" ", ""}}}), "A header has a name that is none");
  EXPECT_EQ(defect({.headers = {{"x", "\n"}}}), "The header x holds control characters");
}

}  // namespace
}  // namespace kestrow
