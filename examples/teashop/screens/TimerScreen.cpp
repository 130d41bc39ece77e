#include "examples/teashop/screens/TimerScreen.h"

#include <algorithm>
#include <cstdio>

#include "examples/teashop/views/Arrange.h"
#include "examples/teashop/views/Theme.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/controllers/UINavigationController.h"

namespace teashop {

using namespace platform;

namespace {

constexpr std::int64_t longestMinutes = 10;
constexpr std::int64_t usualRow = 2;
constexpr const char* strengths[] = {"mild", "medium", "strong"};
constexpr const char* doses[] = {"One spoon", "Two spoons", "Three spoons"};

std::string clockText(std::int64_t seconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%lld:%02lld", static_cast<long long>(seconds / 60),
                static_cast<long long>(seconds % 60));
  return text;
}

}  // namespace

void TimerScreen::exportMethods(MethodTable<TimerScreen>& table) {
  table.add<&TimerScreen::start>("start")
      .add<&TimerScreen::stop>("stop")
      .add<&TimerScreen::componentCount>("numberOfComponentsInPickerView:")
      .add<&TimerScreen::rowCount>("pickerView:numberOfRowsInComponent:")
      .add<&TimerScreen::rowTitle>("pickerView:titleForRow:forComponent:")
      .add<&TimerScreen::didSelect>("pickerView:didSelectRow:inComponent:");
}

TimerScreen::~TimerScreen() {
  if (timer_) timer_->invalidate();
}

void TimerScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Brewing timer");
  view()->setBackgroundColor(theme::paper);
  buildViews();
  buildToolbar();
  wheels_->selectRow(usualRow, 0, false);
  wheels_->selectRow(1, 1, false);
  brew_ = make<NSProgress>(chosenSeconds());
  bar_->setObservedProgress(brew_);
  showState();
}

void TimerScreen::buildViews() {
  wheels_ = make<UIPickerView>();
  wheels_->setAccessibilityIdentifier("timerMinutes");
  wheels_->setDataSource(self());
  wheels_->setDelegate(self());
  remaining_ = makeLabel("", UIFont::systemFont(64, UIFontWeightLight), theme::ink);
  remaining_->setAccessibilityIdentifier("timerRemaining");
  note_ = makeLabel("", theme::body(), theme::inkSoft);
  note_->setAccessibilityIdentifier("timerNote");
  bar_ = make<UIProgressView>();
  bar_->setAccessibilityIdentifier("timerProgress");
  bar_->setProgressTintColor(theme::leaf);
  bar_->setTrackTintColor(theme::line);
  activity_ = make<UIActivityIndicatorView>(UIActivityIndicatorViewStyle::medium);
  activity_->setAccessibilityIdentifier("timerActivity");
  activity_->setColor(theme::leaf);
  auto column = makeColumn({remaining_, bar_, makeRow({activity_, note_}, 8), wheels_}, 16);
  column->setAlignment(UIStackViewAlignment::center);
  column->setCustomSpacing(28, column->arrangedSubviews()[2]);
  view()->addSubview(column);
  const auto safe = view()->safeAreaLayoutGuide();
  setHeight(column->arrangedSubviews()[2], 24);
  NSLayoutConstraint::activateConstraints({
      column->topAnchor().constraintEqualToAnchor(safe->topAnchor(), 40),
      column->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), theme::margin),
      column->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -theme::margin),
      bar_->widthAnchor().constraintEqualToAnchor(column->widthAnchor()),
      wheels_->widthAnchor().constraintEqualToAnchor(column->widthAnchor()),
  });
}

void TimerScreen::buildToolbar() {
  start_ = make<UIBarButtonItem>("Start", UIBarButtonItemStyle::done, self(), sel("start"));
  start_->setAccessibilityIdentifier("timerStart");
  stop_ = make<UIBarButtonItem>("Stop", UIBarButtonItemStyle::plain, self(), sel("stop"));
  stop_->setAccessibilityIdentifier("timerStop");
  setToolbarItems({stop_, UIBarButtonItem::flexibleSpaceItem(), start_});
  setHidesBottomBarWhenPushed(true);
}

void TimerScreen::viewWillAppear(bool animated) {
  Super::viewWillAppear(animated);
  if (navigationController()) navigationController()->setToolbarHidden(false, animated);
}

void TimerScreen::viewWillDisappear(bool animated) {
  Super::viewWillDisappear(animated);
  if (navigationController()) navigationController()->setToolbarHidden(true, animated);
}

std::int64_t TimerScreen::chosenSeconds() const {
  return (std::max<std::int64_t>(0, wheels_->selectedRowInComponent(0)) + 1) * 60;
}

std::string TimerScreen::dose() const {
  const auto strength = std::max<std::int64_t>(0, wheels_->selectedRowInComponent(1));
  return std::string(doses[strength]) + " of leaf for a pot";
}

// ---- Running

void TimerScreen::start() {
  if (timer_) timer_->invalidate();
  brew_ = make<NSProgress>(chosenSeconds());
  bar_->setObservedProgress(brew_);
  timer_ = NSTimer::scheduledTimer(1, true, [weak = weakSelf()](const Ref<NSTimer>& timer) {
    if (const Ref<TimerScreen> screen = weak.lock()) {
      screen->tick();
    } else {
      timer->invalidate();
    }
  });
  showState();
}

void TimerScreen::stop() {
  if (timer_) timer_->invalidate();
  brew_->setCompletedUnitCount(0);
  showState();
}

void TimerScreen::tick() {
  brew_->setCompletedUnitCount(brew_->completedUnitCount() + 1);
  if (brew_->completedUnitCount() >= brew_->totalUnitCount()) timer_->invalidate();
  showState();
}

void TimerScreen::showState() {
  const bool isDone = brew_->completedUnitCount() >= brew_->totalUnitCount();
  const bool runs = isRunning();
  remaining_->setText(clockText(brew_->totalUnitCount() - brew_->completedUnitCount()));
  note_->setText(runs ? "Brewing \u2026" : isDone ? "Your tea is ready" : dose());
  note_->setTextColor(isDone ? theme::leaf : theme::inkSoft);
  if (runs) {
    activity_->startAnimating();
  } else {
    activity_->stopAnimating();
  }
  start_->setTitle(runs ? "Restart" : "Start");
  stop_->setEnabled(runs);
}

// ---- The wheels

std::int64_t TimerScreen::componentCount(const Ref<UIPickerView>&) { return 2; }

std::int64_t TimerScreen::rowCount(const Ref<UIPickerView>&, std::int64_t component) {
  return component == 0 ? longestMinutes : static_cast<std::int64_t>(std::size(strengths));
}

std::string TimerScreen::rowTitle(const Ref<UIPickerView>&, std::int64_t row, std::int64_t component) {
  if (component == 1) return strengths[row];
  return row == 0 ? "1 minute" : std::to_string(row + 1) + " minutes";
}

void TimerScreen::didSelect(const Ref<UIPickerView>&, std::int64_t, std::int64_t) {
  if (isRunning()) return;
  brew_ = make<NSProgress>(chosenSeconds());
  bar_->setObservedProgress(brew_);
  showState();
}

}  // namespace teashop
