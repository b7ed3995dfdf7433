// A pill's view with a desktop in the test's hand, and the calls that it makes on a canvas.
#pragma once

#include "Kestrow/PillView.hpp"
#include "Tests/Support/FakeDesktop.hpp"
#include "Tests/Support/RecordingCanvas.hpp"
#include "Tests/Support/Records.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace kestrow {

inline Color white(double alpha) {
  return {{1, 1, 1}, alpha};
}
inline constexpr RGB amber{1, 182 / 255.0, 39 / 255.0};
inline constexpr RGB floodlight{1, 210 / 255.0, 63 / 255.0};
inline constexpr RGB ball{228 / 255.0, 34 / 255.0, 63 / 255.0};

// The widths of the live content: 8 x 6.1, 5 x 6.5 and 7 x 5.
inline constexpr double teamsWidth = 48.8;
inline constexpr double primaryWidth = 32.5;
inline constexpr double secondaryWidth = 35;
inline constexpr double liveWidth =
    6 + 7 + teamsWidth + 9 + 1 + 9 + primaryWidth + 6 + secondaryWidth;

class PillViewTest : public testing::Test {
 protected:
  std::vector<Drawn::Call> draw(const Rect& bounds, double scale = 2) {
    RecordingCanvas canvas;
    view_.draw(canvas, bounds, scale);
    return canvas.calls;
  }

  // What is drawn after the background's edge.
  std::vector<Drawn::Call> foreground(const Rect& bounds) {
    auto calls = draw(bounds);
    for (std::size_t i = 0; i < calls.size(); ++i) {
      if (!std::holds_alternative<Drawn::Stroke>(calls[i])) continue;
      calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(i) + 1);
      return calls;
    }
    return {};
  }

  void layOut(double width, double height = 24) {
    view_.setLayout(PillLayout{PillLayout::Drawn{{0, 0, width, height}}});
  }

  AttributedText line(const std::string& text, PillRole role) const {
    return {{text, view_.style(role).attributes}};
  }

  static void expectCall(const Drawn::Call& call, const Drawn::Call& expected) {
    EXPECT_EQ(described(call), described(expected));
  }

  FakeDesktop desktop_;
  PillView view_{records::liveContent(), desktop_};
};

}  // namespace kestrow
