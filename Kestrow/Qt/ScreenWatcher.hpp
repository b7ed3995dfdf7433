// The screens as Qt and the desktop tell them, and when they change.
#pragma once

#include "Kestrow/Platform/Desktop.hpp"
#include "KestrowCore/Subscription.hpp"

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QObject>
#include <QScreen>
#include <QTimer>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrow::qt {

class ScreenWatcher final : public QObject, public QAbstractNativeEventFilter {
 public:
  ScreenWatcher();
  ScreenWatcher(const ScreenWatcher&) = delete;
  ScreenWatcher& operator=(const ScreenWatcher&) = delete;
  ~ScreenWatcher() override;

  // In the program's coordinates, the primary screen first.
  static std::vector<Screen> screens();

  // The one with the program's window that has the keyboard; nothing while another program has it.
  static std::optional<Screen> mainScreen();

  // Told once for changes that come together, and only when something differs, the scale included.
  Signal changed;

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  struct Seen {
    std::vector<Screen> screens;
    std::vector<double> scales;
    bool operator==(const Seen&) const = default;
  };

  static Seen look();
  void watch(const QScreen* screen);
  void lookAgain();

  std::uint32_t workAreaAtom_;
  QTimer settled_;  // ends in the loop's next turn
  Seen seen_;
};

}  // namespace kestrow::qt
