#include "examples/teashop/demo/TeachPlayer.h"

#include <algorithm>
#include <cstdio>

#include "examples/teashop/demo/ScreenReader.h"
#include "platform/uikit/UIKit.h"

namespace teashop {

using namespace platform;

namespace {

constexpr double pauseBetweenActs = 0.6;
constexpr double longestUpload = 60;
constexpr const char* registered = "Action registered. Proceed...";
constexpr const char* captureEnd = "Task Capture";

Ref<UIButton> barButton(const std::string& title) {
  const auto button = as<UIButton>(screenReader::buttonTitled(title));
  return button && button->isEnabled() ? button : nullptr;
}

Ref<UILabel> labelIn(const Ref<UIView>& view) {
  if (auto label = as<UILabel>(view)) return label;
  for (const Ref<UIView>& child : view->subviews()) {
    if (auto label = labelIn(child)) return label;
  }
  return nullptr;
}

}  // namespace

TeachPlayer::TeachPlayer(TeashopApplication& application, const std::string& serviceAddress,
                         std::filesystem::path folder)
    : application_(application), tasks_(serviceAddress), report_(std::move(folder)), scribe_(report_, "shown-") {}

bool TeachPlayer::play() {
  bool isWhole = true;
  for (const Demonstration& demonstration : demonstrations()) {
    isWhole = isWhole && show(demonstration);
  }
  return TaughtTasks::save(taught_, report_.folder()) && report_.save() && isWhole;
}

bool TeachPlayer::show(const Demonstration& demonstration) {
  std::printf(" %s\n", demonstration.title.c_str());
  report_.begin("Shown once: " + demonstration.title, "");
  if (!until("the control bar appears", [] { return barButton("Start") != nullptr; })) return false;
  hands_.wait(pauseBetweenActs);
  demonstration.before(hands_);
  if (!start()) return false;
  for (const DemoAct& act : demonstration.acts) {
    if (!perform(act)) return false;
  }
  const bool isKept = demonstration.isKept(*application_.shop());
  report_.add(DemoReport::Check{"the shop did what was shown, once each", isKept, isKept ? "" : "it is not so"});
  return stop(demonstration) && isKept;
}

bool TeachPlayer::start() {
  hands_.tap(barButton("Start"));
  if (!until("the recording runs", [] { return barButton("Stop") != nullptr; })) return false;
  hands_.wait(pauseBetweenActs);
  scribe_.stage("The recording runs", "Tap \u201cStart\u201d on the bar", "The bar offers \u201cStop\u201d");
  return true;
}

bool TeachPlayer::perform(const DemoAct& act) {
  hands_.wait(pauseBetweenActs);
  while (hasNewToast(registered)) continue;  // of the act before, which may have been registered more than once
  act.does(hands_);
  if (!until(act.stop.title, act.stop.isSeen)) return false;
  if (!until(act.stop.title + " is registered", [this] { return hasNewToast(registered); })) return false;
  hands_.wait(pauseBetweenActs);
  scribe_.stage(act.stop.title, act.stop.asked, act.stop.told());
  return true;
}

bool TeachPlayer::stop(const Demonstration& demonstration) {
  hands_.tap(barButton("Stop"));
  const std::size_t before = taught_.size();
  const bool isThere = until(
      "the service has the whole task",
      [&] {
        for (const std::string& id : tasks_.complete()) {
          if (std::ranges::find(taught_, id) == taught_.end()) taught_.push_back(id);
        }
        return taught_.size() > before;
      },
      longestUpload);
  if (!isThere) return false;
  const bool isTold = until("the end is told", [this] { return hasNewToast(captureEnd); });
  scribe_.stage("The end", "Tap \u201cStop\u201d", "The video, the pictures and the actions are with the service");
  const bool isNamed = tasks_.name(taught_.back(), demonstration.title, demonstration.samples);
  report_.add(DemoReport::Check{"the task bears a name, and how it is asked for", isNamed, demonstration.samples[0]});
  return isTold && isNamed;
}

bool TeachPlayer::hasNewToast(const std::string& text) {
  const auto isKnown = [this](const Ref<UIView>& view) {
    return std::ranges::any_of(seenToasts_, [&](const Weak<UIView>& seen) { return seen.lock() == view; });
  };
  const auto toast = screenReader::find([&](const Ref<UIView>& view) {
    if (view->isa().name() != "LumicorToast" || isKnown(view)) return false;
    const auto label = labelIn(view);
    return label && label->text().value_or("").starts_with(text);
  });
  if (toast) seenToasts_.push_back(toast);
  return toast != nullptr;
}

bool TeachPlayer::until(const std::string& what, const std::function<bool()>& condition, double seconds) {
  if (scribe_.until(what, condition, seconds)) return true;
  scribe_.stage("Where it stopped", "", "The demonstration did not go on from here");
  return false;
}

}  // namespace teashop
