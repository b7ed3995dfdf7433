#include "KestrowCore/LaunchAgentWriter.hpp"

#include "KestrowCore/AtomicFile.hpp"
#include "KestrowCore/Text.hpp"
#include "KestrowCore/UserFolders.hpp"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

namespace kestrow {

namespace {

// XML 1.0 has no way to write most control characters, nor the last two of the basic plane.
bool canBeXml(std::string_view text) {
  const auto isForbidden = [](char c) {
    return c >= '\0' && c < ' ' && c != '\t' && c != '\n' && c != '\r';
  };
  return std::ranges::none_of(text, isForbidden) && !text.contains("\uFFFE") &&
         !text.contains("\uFFFF") && text::validated(text) == text;
}

// What XML writes in a character's place; nothing for those that stand for themselves.
const char* escape(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\r':  // bare, it would be read as a line feed
      return "&#13;";
    default:
      return nullptr;
  }
}

std::string escaped(std::string_view text) {
  std::string xml;
  for (const char c : text) {
    if (const auto* instead = escape(c)) {
      xml += instead;
    } else {
      xml += c;
    }
  }
  return xml;
}

std::unexpected<LoginError> failure(const std::error_code& cause) {
  return std::unexpected(LoginError{.description = cause.message()});
}

}  // namespace

std::filesystem::path LaunchAgentWriter::defaultDirectory() {
  return user_folders::home() / "Library/LaunchAgents";
}

LaunchAgentWriter::LaunchAgentWriter(std::filesystem::path directory, std::string appPath)
    : directory_(std::move(directory)), appPath_(std::move(appPath)) {}

std::filesystem::path LaunchAgentWriter::fileUrl() const {
  return directory_ / (std::string(label) + ".plist");
}

std::expected<std::string, LoginError> LaunchAgentWriter::plistData() const {
  if (!canBeXml(appPath_)) {
    return std::unexpected(LoginError{.description = "the application's path is not plain text"});
  }
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>Label</key>
	<string>)" +
         std::string(label) + R"(</string>
	<key>ProgramArguments</key>
	<array>
		<string>/usr/bin/open</string>
		<string>-a</string>
		<string>)" +
         escaped(appPath_) + R"(</string>
	</array>
	<key>RunAtLoad</key>
	<true/>
</dict>
</plist>
)";
}

bool LaunchAgentWriter::isInstalled() const {
  std::error_code ignored;
  return std::filesystem::exists(fileUrl(), ignored);
}

std::expected<void, LoginError> LaunchAgentWriter::install() {
  std::error_code cause;
  std::filesystem::create_directories(directory_, cause);
  if (cause) return failure(cause);
  const auto data = plistData();
  if (!data) return std::unexpected(data.error());
  using std::filesystem::perms;
  // The system reads no launch agent that others could change.
  constexpr auto permissions =
      perms::owner_read | perms::owner_write | perms::group_read | perms::others_read;
  if (const auto written = atomic_file::write(fileUrl(), *data, permissions); !written) {
    return failure(written.error());
  }
  return {};
}

std::expected<void, LoginError> LaunchAgentWriter::remove() {
  if (!isInstalled()) return {};
  std::error_code cause;
  std::filesystem::remove(fileUrl(), cause);
  if (cause) return failure(cause);
  return {};
}

}  // namespace kestrow
