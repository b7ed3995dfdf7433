// Fixed texts of the panel, and what its key-moments section shows.
#pragma once

#include <string>
#include <variant>
#include <vector>

namespace kestrow {

struct PanelText {
  static constexpr const char* logEmpty = "No key moments yet";
  static constexpr const char* screenShareNote = "Some capture tools may still show it.";
  // Instead, on desktops that leave no choice.
  static constexpr const char* screenShareFixedNote =
      "This desktop can't keep the pill out of screen shares.";
  static constexpr const char* hideNote = "Open Kestrow again to bring the pill back.";
};

struct LogContent {
  struct Empty {
    std::string message;
    bool operator==(const Empty&) const = default;
  };
  struct Lines {
    std::vector<std::string> lines;  // newest first
    bool operator==(const Lines&) const = default;
  };
  std::variant<Empty, Lines> value;
  bool operator==(const LogContent&) const = default;
};

struct PanelLogic {
  // `lines` as the log keeps them, oldest first.
  static LogContent log(std::vector<std::string> lines);
};

}  // namespace kestrow
