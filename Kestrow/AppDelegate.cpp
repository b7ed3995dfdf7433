#include "Kestrow/AppDelegate.hpp"

#include "Kestrow/BoomPresentation.hpp"
#include "KestrowCore/BoomQueue.hpp"
#include "KestrowCore/PillContent.hpp"

#include <algorithm>
#include <utility>

namespace kestrow {

AppDelegate::AppDelegate(Surroundings surroundings) : around_(std::move(surroundings)) {}

void AppDelegate::applicationDidFinishLaunching() {
  createObjects();
  joinCallbacks();
  render();
  observeDesktop();
  poller_->start();
  around_.desktop.log("Kestrow started (accessory app).");
}

void AppDelegate::createObjects() {
  store_ = std::make_unique<LocalStore>(around_.stateDirectory);
  client_ = ScoreClient{around_.baseUrl, store_->installId(), around_.transport};
  background_.start(client_.reportInstall());
  poller_ = std::make_unique<Poller>(client_, around_.mainThread, *store_);
  pro_ = std::make_unique<ProPoller>(client_, *store_, around_.now);
  pill_ = std::make_unique<PillController>(PillContent(poller_->state().pill(around_.formatStart)),
                                           around_.defaults, around_.desktop);
  picker_ = std::make_unique<MatchPicker>(client_, poller_->state().followedMatchId);
  loginItem_ =
      std::make_unique<LoginItem>(std::move(around_.loginService), std::move(around_.launchAgent));
  panel_ = std::make_unique<PanelController>(
      *store_, *poller_, *pro_, *pill_, *picker_, *loginItem_, [this] { render(); },
      around_.defaults, around_.desktop);
}

void AppDelegate::joinCallbacks() {
  pill_->onOpenPanel = [this] { panel_->toggle(); };
  poller_->onChange = [this](const FollowState& state) {
    render();
    pro_->startUpdate(state);
  };
  pro_->onChange = [this] { render(); };
}

void AppDelegate::observeDesktop() {
  Desktop& desktop = around_.desktop;
  subscriptions_.push_back(desktop.onWillSleep([this] { willSleep(); }));
  subscriptions_.push_back(desktop.onDidWake([this] { didWake(); }));
  subscriptions_.push_back(desktop.onClockChanged([this] { clockChanged(); }));
  subscriptions_.push_back(desktop.onReopen([this] { applicationShouldHandleReopen(); }));
}

void AppDelegate::willSleep() {
  poller_->pause();
  pro_->pause();
}

// The key-event poller needs no waking: the poll that the resumed poller makes at once feeds it.
void AppDelegate::didWake() {
  poller_->resume();
  pro_->clockChanged();
  render();
}

// Waits are counted by a clock that neither follows the wall clock nor runs while the machine
// sleeps, so after a jump none of them says when to poll or render.
void AppDelegate::clockChanged() {
  if (!poller_->isPaused()) {
    poller_->pause();
    poller_->resume();
  }
  pro_->clockChanged();
  render();
}

void AppDelegate::applicationShouldHandleReopen() {
  if (!pill_) return;
  if (around_.defaults.boolean(DefaultsKey::pillHidden)) {
    around_.defaults.setBoolean(DefaultsKey::pillHidden, false);
    pill_->rebuild(false);
  }
  panel_->show();
}

void AppDelegate::render() {
  if (!pill_ || !poller_ || !pro_) return;
  const PillDisplay display = poller_->state().pill(around_.formatStart);
  const PillAppearance appearance = pro_->appearance();
  PillContent content(display);
  if (const auto parts = pro_->countdown(display)) {
    content = PillContent::countdown(*parts, content);
  }
  const PillEmphasis emphasis = presentBoom(appearance, content);
  pill_->show(content, appearance.theme, emphasis, !around_.desktop.reduceMotion());
  if (panel_ && panel_->isVisible()) panel_->refresh();
  scheduleNextRender();
}

// Lays the showing alert over the content, and has each one spoken once, however many renders show
// it.
PillEmphasis AppDelegate::presentBoom(const PillAppearance& appearance, PillContent& content) {
  const auto boom = pro_->currentBoom();
  if (!boom) return PillEmphasis::none;
  auto [shown, emphasis] = BoomPresentation::present(*boom, appearance.alertStyle, content);
  content = std::move(shown);
  if (announcedBoomId_ != boom->id) {
    announcedBoomId_ = boom->id;
    const auto [label, who] = BoomPresentation::text(*boom);
    BoomPresentation::announce(around_.desktop, label + " " + who);
  }
  return emphasis;
}

void AppDelegate::scheduleNextRender() {
  Seconds delay = idleRenderDelay;
  if (const auto endsAt = pro_->queue().currentEndsAt()) {
    delay = std::max(Seconds(*endsAt - around_.now()), shortestRenderDelay);
  }
  renderTask_ = around_.mainThread.after(delay, [this] { render(); });
}

}  // namespace kestrow
