// The one application object of the Qt tests. They draw offscreen unless told otherwise
// (QT_QPA_PLATFORM), at one pixel for a point.
#include <QApplication>
#include <gtest/gtest.h>

#include <memory>

namespace kestrow {
namespace {

class QtEnvironment final : public testing::Environment {
 public:
  void SetUp() override {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "1");
    QApplication::setQuitOnLastWindowClosed(false);
    app_ = std::make_unique<QApplication>(argc_, argv_);
  }
  void TearDown() override { app_.reset(); }

 private:
  int argc_ = 1;
  char name_[9] = "qt-tests";
  char* argv_[2] = {name_, nullptr};
  std::unique_ptr<QApplication> app_;
};

// GoogleTest owns it.
const auto* const environment = testing::AddGlobalTestEnvironment(new QtEnvironment);

}  // namespace
}  // namespace kestrow
