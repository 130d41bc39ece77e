#include "platform/uikit/application/TouchDriver.h"

#include <algorithm>
#include <cmath>
#include <deque>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/text/UIKeyboard.h"

namespace platform {

namespace {

constexpr double tapTime = 0.08;
constexpr double keyTime = 0.05;
constexpr double pauseBetweenTaps = 0.12;
constexpr double pauseAfterAction = 0.05;
constexpr double restBeforeLifting = 0.12;
constexpr double stepsPerSecond = 60;
/// What a pan recogniser takes before it begins; made up for, so that a scroll covers the distance asked for.
constexpr double panHysteresis = 10;
/// The part of a view that one scrolling stroke covers.
constexpr double strokeLength = 0.5;

double distance(CGPoint a, CGPoint b) { return std::hypot(b.x - a.x, b.y - a.y); }

/// The point that lies a fraction of the whole length along the points.
CGPoint pointAlong(const std::vector<CGPoint>& points, double fraction) {
  double whole = 0;
  for (std::size_t i = 1; i < points.size(); ++i) whole += distance(points[i - 1], points[i]);
  double left = whole * fraction;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const double length = distance(points[i - 1], points[i]);
    if (left < length) return points[i - 1] + (points[i] - points[i - 1]) * (left / length);
    left -= length;
  }
  return points.back();
}

std::vector<std::string> charactersOf(const std::string& text) {
  std::vector<std::string> characters;
  for (const char byte : text) {
    const bool continues = (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
    if (!continues || characters.empty()) characters.emplace_back();
    characters.back() += byte;
  }
  return characters;
}

/// The middle of a view on the screen, or none when it is in no window.
std::optional<CGPoint> middleOf(const UIView& view) {
  const Ref<UIWindow> window = view.window();
  if (!window) return std::nullopt;
  return window->convertPointToScreen(view.convertPoint(view.bounds().center(), window.get()));
}

UIKey keyFor(const std::string& character) {
  if (character == "\n") return {UIKey::Code::returnKey, "\n"};
  if (character == "\b") return {UIKey::Code::backspace, ""};
  if (character == "\t") return {UIKey::Code::tab, "\t"};
  return {UIKey::Code::character, character};
}

std::int64_t nextFinger() {
  static std::int64_t last = 1000;
  return ++last;
}

}  // namespace

/// What the hands are to do. An action is prepared when its turn comes, which plans its steps.
struct TouchDriver::State : std::enable_shared_from_this<TouchDriver::State> {
  struct Step {
    double delay;
    std::function<void()> act;
  };
  struct Action {
    std::function<void()> prepare;
    Done done;
  };
  std::deque<Action> actions;
  std::deque<Step> steps;
  Done currentDone;
  bool running = false;
  double typingInterval = 0.12;
  std::int64_t finger = nextFinger();
  bool isDown = false;
  bool stopped = false;
  CGPoint at;

  void add(std::function<void()> prepare, Done done) {
    actions.push_back({std::move(prepare), std::move(done)});
    if (!running) {
      running = true;
      later(0, [this] { next(); });
    }
  }

  void later(double seconds, std::function<void()> work) {
    DispatchQueue::main().asyncAfter(seconds, [weak = weak_from_this(), work = std::move(work)] {
      if (const auto keeper = weak.lock()) work();
    });
  }

  void plan(double delay, std::function<void()> act) { steps.push_back({delay, std::move(act)}); }

  void next() {
    while (steps.empty()) {
      if (const Done done = std::exchange(currentDone, nullptr)) done();
      if (stopped || actions.empty()) {
        running = false;
        return;
      }
      const Action action = std::move(actions.front());
      actions.pop_front();
      currentDone = action.done;
      if (action.prepare) action.prepare();
    }
    later(steps.front().delay, [this] {
      const Step step = std::move(steps.front());
      steps.pop_front();
      if (step.act) step.act();
      next();
    });
  }

  // ---- The finger
  void touch(UITouchPhase phase, CGPoint point) {
    at = point;
    isDown = phase == UITouchPhase::began || phase == UITouchPhase::moved;
    UIApplication::shared().deliverTouch(finger, phase, point, Clock::mediaTime());
  }
  void planDown(double delay, CGPoint point) {
    plan(delay, [this, point] { touch(UITouchPhase::began, point); });
  }
  void planMove(double delay, CGPoint point) {
    plan(delay, [this, point] { touch(UITouchPhase::moved, point); });
  }
  void planUp(double delay) {
    plan(delay, [this] { touch(UITouchPhase::ended, at); });
  }
  void planPath(const std::vector<CGPoint>& points, double seconds) {
    const int count = std::max(1, static_cast<int>(std::lround(seconds * stepsPerSecond)));
    for (int i = 1; i <= count; ++i) {
      planMove(seconds / count, pointAlong(points, static_cast<double>(i) / count));
    }
  }

  // ---- Strokes and keys
  void planTaps(CGPoint point, int count) {
    for (int i = 0; i < count; ++i) {
      planDown(i == 0 ? 0 : pauseBetweenTaps, point);
      planUp(tapTime);
    }
    plan(pauseAfterAction, nullptr);
  }

  void planScroll(const UIView& view, double dx, double dy, double seconds) {
    const std::optional<CGPoint> middle = middleOf(view);
    const double whole = std::hypot(dx, dy);
    if (!middle || whole == 0) return;
    const CGPoint way{-dx / whole, -dy / whole};
    const CGSize size = view.bounds().size;
    const double longest = std::max(20.0, strokeLength * (std::abs(dx) > std::abs(dy) ? size.width : size.height));
    const int strokes = static_cast<int>(std::ceil(whole / longest));
    const double length = whole / strokes;
    for (int i = 0; i < strokes; ++i) {
      const CGPoint start = *middle - way * ((length + panHysteresis) / 2);
      const CGPoint begun = start + way * panHysteresis;
      planDown(i == 0 ? 0 : pauseBetweenTaps, start);
      planMove(1 / stepsPerSecond, begun);
      planPath({begun, begun + way * length}, seconds / strokes);
      planUp(restBeforeLifting);
    }
    plan(pauseAfterAction, nullptr);
  }

  void planCharacter(const std::string& character) {
    const std::vector<std::string> keys = UIKeyboard::shared().keysToType(character);
    if (keys.empty()) {
      plan(typingInterval, [character] { UIApplication::shared().deliverKey(keyFor(character)); });
      return;
    }
    for (const std::string& key : keys) {
      plan(std::max(0.0, typingInterval - keyTime), [this, key] {
        // The plane that has the key stands there only now.
        if (const auto center = UIKeyboard::shared().keyCenter(key)) touch(UITouchPhase::began, *center);
      });
      plan(keyTime, [this] {
        if (isDown) touch(UITouchPhase::ended, at);
      });
    }
  }
};

TouchDriver::TouchDriver() : state_(std::make_shared<State>()) {}

TouchDriver::~TouchDriver() {
  state_->stopped = true;
  if (state_->isDown) state_->touch(UITouchPhase::cancelled, state_->at);
}

void TouchDriver::tap(CGPoint point, int count, Done done) {
  State* const state = state_.get();
  state->add([state, point, count] { state->planTaps(point, count); }, std::move(done));
}

void TouchDriver::tap(const Ref<UIView>& view, Done done) {
  State* const state = state_.get();
  state->add(
      [state, view] {
        if (const auto middle = middleOf(*view)) state->planTaps(*middle, 1);
      },
      std::move(done));
}

void TouchDriver::longPress(CGPoint point, double seconds, Done done) {
  State* const state = state_.get();
  state->add(
      [state, point, seconds] {
        state->planDown(0, point);
        state->planUp(seconds);
        state->plan(pauseAfterAction, nullptr);
      },
      std::move(done));
}

void TouchDriver::drag(std::vector<CGPoint> points, double seconds, Done done) {
  if (points.empty()) return;
  State* const state = state_.get();
  state->add(
      [state, points = std::move(points), seconds] {
        state->planDown(0, points.front());
        state->planPath(points, seconds);
        state->planUp(restBeforeLifting);
        state->plan(pauseAfterAction, nullptr);
      },
      std::move(done));
}

void TouchDriver::flick(CGPoint from, double dx, double dy, double seconds, Done done) {
  State* const state = state_.get();
  state->add(
      [state, from, dx, dy, seconds] {
        state->planDown(0, from);
        state->planPath({from, {from.x + dx, from.y + dy}}, seconds);
        state->planUp(0);
        state->plan(pauseAfterAction, nullptr);
      },
      std::move(done));
}

void TouchDriver::scroll(const Ref<UIView>& view, double dx, double dy, double seconds, Done done) {
  State* const state = state_.get();
  state->add([state, view, dx, dy, seconds] { state->planScroll(*view, dx, dy, seconds); }, std::move(done));
}

void TouchDriver::type(const std::string& text, Done done) {
  State* const state = state_.get();
  for (const std::string& character : charactersOf(text)) {
    state->add([state, character] { state->planCharacter(character); }, nullptr);
  }
  state->add(nullptr, std::move(done));
}

void TouchDriver::wait(double seconds, Done done) {
  State* const state = state_.get();
  state->add([state, seconds] { state->plan(seconds, nullptr); }, std::move(done));
}

bool TouchDriver::isBusy() const { return state_->running; }
void TouchDriver::setTypingInterval(double seconds) { state_->typingInterval = seconds; }

}  // namespace platform
