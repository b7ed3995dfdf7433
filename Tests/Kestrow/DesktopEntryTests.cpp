#include "Kestrow/DesktopEntry.hpp"

#include <gmock/gmock.h>

namespace kestrow {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(DesktopEntry, AValueKeepsItsBackslashesAndLineBreaks) {
  EXPECT_EQ(desktop_entry::value("a b"), "a b");
  EXPECT_EQ(desktop_entry::value("a\\b\nc\rd\te"), R"(a\\b\nc\rd\te)");
}

TEST(DesktopEntry, AValueKeepsTheSpacesAtItsEnds) {
  EXPECT_EQ(desktop_entry::value("  a  b "), R"(\s\sa  b\s)");
  EXPECT_EQ(desktop_entry::value("  "), R"(\s\s)");
  EXPECT_EQ(desktop_entry::value(""), "");
}

TEST(DesktopEntry, AProgramsPathIsQuotedAsAWhole) {
  EXPECT_EQ(desktop_entry::exec("/usr/bin/kestrow"), R"("/usr/bin/kestrow")");
  EXPECT_EQ(desktop_entry::exec("/opt/My Programs/kestrow"), R"("/opt/My Programs/kestrow")");
}

TEST(DesktopEntry, WhatADesktopWouldExpandIsEscapedAndThenEscapedAsAValue) {
  EXPECT_EQ(desktop_entry::exec("a\"b"), R"("a\\"b")");
  EXPECT_EQ(desktop_entry::exec("a$b"), R"("a\\$b")");
  EXPECT_EQ(desktop_entry::exec("a`b"), R"("a\\`b")");
  EXPECT_EQ(desktop_entry::exec("a\\b"), R"("a\\\\b")");
}

// Desktops would look for a program whose name has two percent signs.
TEST(DesktopEntry, AProgramWithAPercentSignIsRunByAnother) {
  EXPECT_EQ(desktop_entry::exec("/100%/a b"), R"(nice -n 0 "/100%%/a b")");
  EXPECT_EQ(desktop_entry::program(desktop_entry::exec("/100%")), "nice");
}

TEST(DesktopEntry, ReadsTheKeysOfTheMainGroupAlone) {
  const auto keys = desktop_entry::parse(
      "# comment=1\n\nbefore=0\n[Desktop Entry]\r\nName = Kestrow \r\nExec=a=b\n#Hidden=true\n"
      "noise\nName=second\n[Desktop Action x]\nHidden=true\n[Desktop Entry]\nType=Application");
  EXPECT_THAT(
      keys, ElementsAre(Pair("Exec", "a=b"), Pair("Name", "Kestrow"), Pair("Type", "Application")));
}

TEST(DesktopEntry, ReadsEscapedValues) {
  const auto keys = desktop_entry::parse("[Desktop Entry]\nA=\\sx\\ny\\tz\\r\\\\s\\;\\");
  EXPECT_EQ(keys.at("A"), " x\ny\tz\r\\s\\;\\");
}

TEST(DesktopEntry, AnEmptyFileHasNoKeys) {
  EXPECT_THAT(desktop_entry::parse(""), IsEmpty());
  EXPECT_THAT(desktop_entry::parse("[Desktop Entry]"), IsEmpty());
}

TEST(DesktopEntry, TellsTheProgramOfALineWithArguments) {
  EXPECT_EQ(desktop_entry::program("kestrow --x %U"), "kestrow");
  EXPECT_EQ(desktop_entry::program("  /usr/bin/kestrow"), "/usr/bin/kestrow");
  EXPECT_EQ(desktop_entry::program(R"("/opt/My Programs/kestrow" %u)"), "/opt/My Programs/kestrow");
  EXPECT_EQ(desktop_entry::program("/opt/100%%/kestrow"), "/opt/100%/kestrow");
}

TEST(DesktopEntry, ALineWithoutAProgramTellsNone) {
  EXPECT_EQ(desktop_entry::program(""), std::nullopt);
  EXPECT_EQ(desktop_entry::program("   "), std::nullopt);
  EXPECT_EQ(desktop_entry::program(R"("")"), std::nullopt);
  EXPECT_EQ(desktop_entry::program(R"("/usr/bin)"), std::nullopt);
  EXPECT_EQ(desktop_entry::program("\""), std::nullopt);
  EXPECT_EQ(desktop_entry::program("\"a\\"), std::nullopt);
}

TEST(DesktopEntry, AnyPathComesBackAsItWas) {
  for (const std::string path : {"/a b/c", "/a\"b", "/a$HOME", "/a`id`", "/a\\b", "/a\\\\", "/ a ",
                                 "/é–漢", "/tab\there", "/line\nbreak", "/a;b#c='d'"}) {
    const auto keys =
        desktop_entry::parse("[Desktop Entry]\nExec=" + desktop_entry::exec(path) + "\n");
    EXPECT_EQ(desktop_entry::program(keys.at("Exec")), path);
    const auto plain =
        desktop_entry::parse("[Desktop Entry]\nTryExec=" + desktop_entry::value(path) + "\n");
    EXPECT_EQ(plain.at("TryExec"), path);
  }
}

}  // namespace
}  // namespace kestrow
