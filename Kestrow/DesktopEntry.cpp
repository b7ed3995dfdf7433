#include "Kestrow/DesktopEntry.hpp"

#include "KestrowCore/Text.hpp"

#include <cstddef>

namespace kestrow::desktop_entry {

namespace {

constexpr std::string_view mainGroup = "[Desktop Entry]";
constexpr std::string_view expandedInQuotes = "\"`$\\";
// Runs what follows as it is.
constexpr std::string_view runner = "nice -n 0 ";

std::string_view trimmed(std::string_view line) {
  return text::trimmed(line, text::WhiteSpace::withLineBreaks);
}

std::string unescaped(std::string_view value) {
  std::string result;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '\\' || i + 1 == value.size()) {
      result += value[i];
      continue;
    }
    switch (value[++i]) {
      case 's':
        result += ' ';
        break;
      case 'n':
        result += '\n';
        break;
      case 't':
        result += '\t';
        break;
      case 'r':
        result += '\r';
        break;
      case '\\':
        result += '\\';
        break;
      default:
        result += '\\';
        result += value[i];
    }
  }
  return result;
}

// Adds the character at `i` of an argument and moves past it: "%%" stands for a percent sign.
void take(std::string& argument, std::string_view exec, std::size_t& i) {
  argument += exec[i];
  if (exec.substr(i, 2) == "%%") ++i;
  ++i;
}

}  // namespace

std::string value(std::string_view text) {
  std::string result;
  const auto begin = text.find_first_not_of(' ');
  const auto end = text.find_last_not_of(' ');
  for (std::size_t i = 0; i < text.size(); ++i) {
    switch (const char c = text[i]) {
      case ' ':
        // Readers take spaces at the ends for none of the text.
        result += i < begin || i > end ? "\\s" : " ";
        break;
      case '\\':
        result += "\\\\";
        break;
      case '\n':
        result += "\\n";
        break;
      case '\r':
        result += "\\r";
        break;
      case '\t':
        result += "\\t";
        break;
      default:
        result += c;
    }
  }
  return result;
}

std::string exec(std::string_view program) {
  // Desktops look for the line's first word before they read "%%" as a percent sign, and drop an
  // entry without finding it. So such a program is run by one that they find.
  std::string quoted(program.contains('%') ? runner : "");
  quoted += '"';
  for (const char c : program) {
    if (expandedInQuotes.contains(c)) quoted += '\\';
    if (c == '%') quoted += '%';
    quoted += c;
  }
  quoted += '"';
  return value(quoted);
}

Keys parse(std::string_view content) {
  Keys keys;
  bool isInMainGroup = false;
  while (!content.empty()) {
    const auto end = content.find('\n');
    const auto line = trimmed(content.substr(0, end));
    content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);
    if (line.starts_with('[')) {
      isInMainGroup = line == mainGroup;
      continue;
    }
    const auto equals = line.find('=');
    if (!isInMainGroup || line.starts_with('#') || equals == std::string_view::npos) continue;
    keys.emplace(trimmed(line.substr(0, equals)), unescaped(trimmed(line.substr(equals + 1))));
  }
  return keys;
}

std::optional<std::string> program(std::string_view exec) {
  exec = trimmed(exec);
  std::string argument;
  std::size_t i = 0;
  if (!exec.starts_with('"')) {
    while (i < exec.size() && exec[i] != ' ') take(argument, exec, i);
  } else {
    for (i = 1; i < exec.size() && exec[i] != '"';) {
      if (exec[i] == '\\' && i + 1 < exec.size()) ++i;
      take(argument, exec, i);
    }
    if (i >= exec.size()) return std::nullopt;
  }
  if (argument.empty()) return std::nullopt;
  return argument;
}

}  // namespace kestrow::desktop_entry
