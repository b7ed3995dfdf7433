// A panel window with a client that writes down what it is told, and makers of content for it.
#pragma once

#include "Kestrow/Platform/PanelSurface.hpp"
#include "Kestrow/Qt/QtAccessiblePanel.hpp"
#include "Kestrow/Qt/QtPanelWindow.hpp"

#include <QApplication>
#include <QTest>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kestrow::qt {

class RecordingPanelClient final : public PanelSurfaceClient {
 public:
  std::vector<std::string> events;
  std::function<void(const std::string& event)> onEvent;

  void radioButtonPicked(const std::string& id) override { note("picked " + id); }
  void popUpChanged(const std::string& id, int selected) override {
    note(id + " = " + std::to_string(selected));
  }
  void checkBoxToggled(const std::string& id, bool isOn) override {
    note(id + (isOn ? " on" : " off"));
  }
  void buttonPressed(const std::string& id) override { note("pressed " + id); }
  void clickedOutside() override { note("outside"); }
  bool escapePressed() override {
    note("escape");
    return true;
  }
  void resignedKey() override { note("resigned"); }

 private:
  void note(std::string event) {
    events.push_back(std::move(event));
    if (onEvent) onEvent(events.back());
  }
};

inline PanelNode box(std::vector<PanelNode> nodes, std::string id = "panel",
                     std::string name = {}) {
  return {.id = std::move(id),
          .kind = PanelBox{.name = std::move(name), .spacing = 8, .nodes = std::move(nodes)}};
}
inline PanelNode label(std::string id, std::string text) {
  return {.id = std::move(id), .kind = PanelLabel{std::move(text)}};
}
inline PanelNode button(std::string id, std::string title) {
  return {.id = std::move(id), .kind = PanelButton{std::move(title)}};
}
inline PanelNode radio(std::string id, bool isOn, std::string title = "Match",
                       std::string detail = "Live") {
  return {.id = std::move(id),
          .kind = PanelRadioButton{
              .title = std::move(title), .detail = std::move(detail), .isOn = isOn}};
}
inline PanelNode checkBox(std::string id, bool isOn, bool isEnabled = true) {
  return {.id = std::move(id),
          .kind = PanelCheckBox{.title = "Hide pill",
                                .isOn = isOn,
                                .status = {},
                                .detail = "A note",
                                .isEnabled = isEnabled}};
}
inline PanelNode popUp(std::string id, int selected, std::string title = "Team colours") {
  return {.id = std::move(id),
          .kind = PanelPopUp{
              .label = std::move(title), .items = {"Default", "India"}, .selected = selected}};
}
// A log of the events 1 to `newest`, newest first.
inline PanelNode log(int newest) {
  PanelLines lines{.name = "Key moments", .spacing = 6, .lines = {}};
  for (int i = newest; i >= 1; --i) lines.lines.push_back("SIX — event " + std::to_string(i));
  return {.id = "log", .kind = std::move(lines)};
}

class QtPanelTest : public testing::Test {
 protected:
  // Before the first window: Qt asks for a window's element once, and keeps what it got.
  static void SetUpTestSuite() { installAccessiblePanel(); }

  // Shows the content in a window of this height, which has the keyboard.
  void open(const PanelNode& content, double height = 400) {
    window.setContent(content);
    window.setFrame({100, 100, 340, height});
    window.showAndMakeKey();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  template <class Widget>
  QList<Widget*> all() {
    QList<Widget*> found;
    for (auto* widget : window.findChildren<Widget*>()) {
      if (!widget->isHidden()) found.append(widget);
    }
    return found;
  }
  template <class Widget>
  Widget& only() {
    const auto found = all<Widget>();
    EXPECT_EQ(found.size(), 1);
    return *found.front();
  }
  void key(Qt::Key pressed, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    auto* focus = QApplication::focusWidget();
    QTest::keyClick(focus ? focus : &window, pressed, modifiers);
  }
  int scrolled() { return window.scrollArea().verticalScrollBar()->value(); }
  void scrollTo(int y) { window.scrollArea().verticalScrollBar()->setValue(y); }

 public:
  RecordingPanelClient client;
  QtPanelWindow window{client};
};

}  // namespace kestrow::qt
