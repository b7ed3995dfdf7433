// Sees mouse buttons go down in other programs' windows, at once and without taking the press from
// them. Works under X11; elsewhere it sees nothing, and losing the keyboard tells instead.
#pragma once

#include <QObject>

#include <cstdint>
#include <functional>
#include <memory>

struct xcb_connection_t;

namespace kestrow::qt {

// Watches for as long as it exists.
class OutsideClicks final : public QObject {
  Q_OBJECT

 public:
  // `clicked` is called for the left and the right button. It may end the watching with
  // deleteLater().
  explicit OutsideClicks(std::function<void()> clicked);
  ~OutsideClicks() override;

 private:
  void readEvents();
  bool isOverOwnWindow() const;

  struct Disconnect {
    void operator()(xcb_connection_t* connection) const;
  };

  std::function<void()> clicked_;
  // A connection of its own: what it asks to see can't disturb what Qt asked for.
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  std::uint32_t root_ = 0;
  std::uint8_t extension_ = 0;
};

}  // namespace kestrow::qt
