// The least that a Qt program with a window is, which start-up and memory are measured beside; with
// an argument, the least that shows this text.
#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QWidget>

#include <utility>

namespace {

class Bare final : public QWidget {
 public:
  explicit Bare(QString text)
      : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint),
        text_(std::move(text)) {}

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (text_.isEmpty()) return;
    painter.setPen(Qt::white);
    painter.drawText(rect().adjusted(8, 0, 0, 0), Qt::AlignVCenter, text_);
  }

 private:
  QString text_;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  const QApplication application(argumentCount, arguments);
  Bare window(QApplication::arguments().value(1));
  window.setGeometry(540, 0, 200, 24);
  window.show();
  return QApplication::exec();
}
