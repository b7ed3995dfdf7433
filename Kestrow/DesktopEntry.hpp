// The file format in which Linux desktops describe programs (the Desktop Entry Specification).
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kestrow::desktop_entry {

// A text as the value of a key: backslashes, line breaks and the spaces at its ends escaped.
std::string value(std::string_view text);

// A program's path as an Exec key's value that runs it without arguments: quoted, with the
// characters escaped that a desktop would expand, and then escaped as a value. The line of a path
// with a percent sign begins with another program, which runs it.
std::string exec(std::string_view program);

// The keys of the entry's main group, values unescaped. Lines that are neither are skipped; of a
// key given twice the first counts.
using Keys = std::map<std::string, std::string, std::less<>>;
Keys parse(std::string_view content);

// The program that an (unescaped) Exec value runs; nothing when its quotes don't close or it is
// empty.
std::optional<std::string> program(std::string_view exec);

}  // namespace kestrow::desktop_entry
