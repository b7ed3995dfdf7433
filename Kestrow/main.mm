// Kestrow.app: composes the macOS desktop and the program, and runs the event loop.
#import <Foundation/Foundation.h>

#include <memory>
#include <optional>
#include <string>

#include "Kestrow/AppDelegate.hpp"
#include "Kestrow/AppKit/AppKitDesktop.hpp"
#include "Kestrow/AppKit/AppKitMainThread.hpp"
#include "Kestrow/AppKit/AppKitUserDefaults.hpp"
#include "Kestrow/AppKit/Application.hpp"
#include "Kestrow/AppKit/MainAppLoginService.hpp"
#include "Kestrow/AppKit/UserLocale.hpp"
#include "KestrowCore/LaunchAgentWriter.hpp"
#include "KestrowCore/ScoreText.hpp"
#include "KestrowCore/UrlSession.hpp"

using namespace kestrow;

namespace {

std::string startTime(Date date) {
  return start_time_text::relative(date, systemNow(), appkit::userCalendar(), appkit::userLocale());
}

// What lives from the end of launching to the end of the process.
struct Program {
  explicit Program(appkit::Application& application) : desktop(application) {
    delegate.applicationDidFinishLaunching();
  }

  appkit::AppKitMainThread mainThread;
  appkit::AppKitUserDefaults defaults;
  appkit::AppKitDesktop desktop;
  AppDelegate delegate{{.desktop = desktop,
                        .defaults = defaults,
                        .mainThread = mainThread,
                        .transport = urlSessionTransport(std::make_shared<UrlSession>(mainThread)),
                        .loginService = std::make_unique<appkit::MainAppLoginService>(),
                        .launchAgent = std::make_unique<LaunchAgentWriter>(),
                        .formatStart = startTime}};
};

}  // namespace

int main() {
  @autoreleasepool {
    appkit::Application application;
    std::optional<Program> program;
    const auto launched =
        application.didFinishLaunching.subscribe([&] { program.emplace(application); });
    const auto ending = application.willTerminate.subscribe([&] { program.reset(); });
    application.run();
  }
  return 0;
}
