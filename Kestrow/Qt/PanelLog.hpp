// The key moments: any number of lines as one light widget, which lays out and paints only what is
// in sight. A widget for each line would make a long log slow to open and to move.
#pragma once

#include "Kestrow/Qt/PanelItem.hpp"

#include <QFont>
#include <QString>
#include <QWidget>

#include <vector>

namespace kestrow::qt {

class LogLines final : public QWidget, public PanelItem {
  Q_OBJECT

 public:
  explicit LogLines(QWidget* parent);

  QWidget& widget() override { return *this; }
  void apply(const PanelNode& node) override;
  int heightFor(int width) override;

  // For assistive technology, and for the panel to keep its place.
  int lineCount() const { return static_cast<int>(lines_.size()); }
  const QString& lineText(int line) const { return lines_[static_cast<std::size_t>(line)].text; }
  QRect lineRect(int line) const;
  // The line at this height; the last one below all.
  int lineAt(int y) const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Line {
    QString text;
    int height = -1;  // not measured yet when negative
    int y = 0;
  };

  void measure(int width);

  QFont font_;
  std::vector<std::string> shown_;  // as given, to see what differs
  std::vector<Line> lines_;
  double spacing_ = 0;
  int measuredWidth_ = -1;
  int height_ = 0;
  bool isMeasured_ = false;
};

}  // namespace kestrow::qt
