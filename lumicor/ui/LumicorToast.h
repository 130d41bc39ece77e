#pragma once

#include <string>
#include <vector>

#include "platform/uikit/views/UIView.h"

namespace platform {
class NSLayoutConstraint;
class UILabel;
class UIViewController;
}  // namespace platform

namespace lumicor {

using namespace platform;

/// A short message to the person, over a screen for a few seconds. Several stand one above the other, the newest
/// lowest, clear of the keyboard. Touches pass through, and nothing of it is an element of the screen. Main thread.
class LumicorToast final : public Object<LumicorToast, UIView> {
 public:
  /// Seconds that a message stays, between fading in and fading out.
  static constexpr double duration = 2.5;
  /// More than these push the oldest out before its time.
  static constexpr std::size_t maximumCount = 3;

  /// Over the controller's window, or the key window for none and for one that is in no window. An empty message, and
  /// one without any window, is dropped.
  static void show(const std::string& message, const Ref<UIViewController>& controller);
  /// Over the controller in front.
  static void show(const std::string& message);
  /// Those on the screen that are not on their way out, oldest first.
  static const std::vector<Ref<LumicorToast>>& shown() { return shown_; }

  static void exportMethods(MethodTable<LumicorToast>& table);
  void initWithFrame(CGRect frame) override;
  const Ref<UILabel>& label() const { return label_; }

 private:
  void appear(const Ref<UIView>& window);
  void disappear();
  void keyboardMoves();
  /// Where each one stands, by the height of those below.
  static void arrange();

  inline static std::vector<Ref<LumicorToast>> shown_;

  Ref<UILabel> label_;
  Ref<NSLayoutConstraint> bottom_;
};

}  // namespace lumicor
