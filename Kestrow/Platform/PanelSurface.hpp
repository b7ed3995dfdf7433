// The port for the panel's window. It shows a tree of nodes, each a native control of the desktop,
// and reports what the user did with them. Given a changed tree it touches only what differs: a
// node with the same id and kind keeps its control, so focus, scroll place and reading place
// survive.
#pragma once

#include "KestrowCore/Geometry.hpp"

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace kestrow {

struct PanelNode;

// All texts are plain text. Only labels may have line breaks in them.
struct PanelHeader {  // bold, regular size
  std::string text;
  bool operator==(const PanelHeader&) const = default;
};
struct PanelSectionTitle {  // bold, a point above the small size; wraps
  std::string text;
  bool operator==(const PanelSectionTitle&) const = default;
};
struct PanelLabel {  // small and secondary; wraps at the content width
  std::string text;
  bool operator==(const PanelLabel&) const = default;
};
struct PanelLines {  // lines of regular text, each wrapping; there may be thousands
  std::string name;  // what assistive technology calls them
  double spacing = 0;
  std::vector<std::string> lines;
  bool operator==(const PanelLines&) const = default;
};
struct PanelRadioButton {  // one of the radio buttons of its box; a long title ends in "…"
  std::string title;
  std::string detail;  // a secondary line under the title, which wraps; may be empty
  bool isOn = false;
  // What assistive technology says after the title.
  const std::string& help() const { return detail; }
  bool operator==(const PanelRadioButton&) const = default;
};
struct PanelPopUp {
  std::string label;  // what it chooses; shown before it
  std::vector<std::string> items;
  int selected = 0;
  bool operator==(const PanelPopUp&) const = default;
};
struct PanelCheckBox {
  std::string title;
  bool isOn = false;
  std::string status;  // a word after the title; may be empty
  std::string detail;  // a secondary line under the title, which wraps; may be empty
  bool isEnabled = true;
  // What assistive technology says after the title: how it stands, where there is such a word.
  const std::string& help() const { return status.empty() ? detail : status; }
  bool operator==(const PanelCheckBox&) const = default;
};
struct PanelButton {
  std::string title;
  bool operator==(const PanelButton&) const = default;
};
struct PanelSeparator {
  bool operator==(const PanelSeparator&) const = default;
};
struct PanelBox {    // a column of nodes
  std::string name;  // what assistive technology calls it; may be empty
  double spacing = 0;
  std::vector<PanelNode> nodes;
  bool operator==(const PanelBox&) const;
};

struct PanelNode {
  std::string id;  // unique among its siblings; what events name
  std::variant<PanelHeader, PanelSectionTitle, PanelLabel, PanelLines, PanelRadioButton, PanelPopUp,
               PanelCheckBox, PanelButton, PanelSeparator, PanelBox>
      kind;
  bool operator==(const PanelNode&) const = default;
};

inline bool PanelBox::operator==(const PanelBox& other) const {
  return name == other.name && spacing == other.spacing && nodes == other.nodes;
}

// What the surface tells the panel's controller. Outlives the surface. `id` is the node's.
class PanelSurfaceClient {
 public:
  virtual ~PanelSurfaceClient() = default;
  virtual void radioButtonPicked(const std::string& id) = 0;
  virtual void popUpChanged(const std::string& id, int selected) = 0;
  virtual void checkBoxToggled(const std::string& id, bool isOn) = 0;
  virtual void buttonPressed(const std::string& id) = 0;
  // A mouse button went down outside the program's windows, while the panel is open.
  virtual void clickedOutside() = 0;
  // The Escape key went down. True when the panel took it.
  virtual bool escapePressed() = 0;
  virtual void resignedKey() = 0;
};

// A borderless floating window that takes the keyboard, above everything, on whichever workspace
// the user is.
class PanelSurface {
 public:
  virtual ~PanelSurface() = default;

  virtual void setContent(const PanelNode& root) = 0;
  // The height that shows all content, at the panel's width.
  virtual double fittingHeight() = 0;
  virtual void scrollToTop() = 0;
  virtual void setFrame(const Rect& frame) = 0;  // content that is taller scrolls

  virtual bool isVisible() const = 0;
  virtual bool isKey() const = 0;
  virtual void showAndMakeKey() = 0;  // no control has the focus at first
  virtual void orderOut() = 0;

  // Outside clicks and the Escape key are watched between these two.
  virtual void installMonitors() = 0;
  virtual void removeMonitors() = 0;
};

}  // namespace kestrow
