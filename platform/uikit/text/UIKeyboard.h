#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/geometry/CGGeometry.h"
#include "platform/runtime/Object.h"
#include "platform/uikit/Forward.h"

namespace platform {

/// Posted with the keyboard's end frame in screen coordinates (UIKeyboardFrameEndUserInfoKey, a CGRect), the seconds
/// that it slides (UIKeyboardAnimationDurationUserInfoKey, a double) and its pace (UIKeyboardAnimationCurveUserInfoKey, a
/// UIViewAnimationCurve). The object is none. What observers animate while they are told takes that time and pace.
inline const std::string UIKeyboardWillShowNotification = "UIKeyboardWillShowNotification";
inline const std::string UIKeyboardDidShowNotification = "UIKeyboardDidShowNotification";
inline const std::string UIKeyboardWillHideNotification = "UIKeyboardWillHideNotification";
inline const std::string UIKeyboardDidHideNotification = "UIKeyboardDidHideNotification";
inline const std::string UIKeyboardFrameEndUserInfoKey = "UIKeyboardFrameEndUserInfoKey";
inline const std::string UIKeyboardAnimationDurationUserInfoKey = "UIKeyboardAnimationDurationUserInfoKey";
inline const std::string UIKeyboardAnimationCurveUserInfoKey = "UIKeyboardAnimationCurveUserInfoKey";

/// The software keyboard: a panel in a window of its own above the application's. It slides in when a responder that
/// wants it becomes first responder (or its input view in the keys' place), and out when that resigns. Main thread.
class UIKeyboard : public Object<UIKeyboard, NSObject> {
 public:
  static UIKeyboard& shared();
  static constexpr double animationDuration = 0.25;

  UIKeyboard();
  ~UIKeyboard() override;

  bool isVisible() const;
  /// Where it stands, or will stand once it has slid in; below the screen while hidden. Screen coordinates.
  CGRect frame() const;
  /// True when it shows keys, not an input view.
  bool showsKeys() const;
  /// The centre in screen coordinates of the key that types the text ("a", " ", "\n" the return key, "\b" backspace),
  /// or none when this plane has no such key.
  std::optional<CGPoint> keyCenter(const std::string& text) const;
  /// The names of the keys that must be tapped, in order, to type one character (UTF-8) from the plane now shown, the
  /// last one being the key itself ("shift", "123", "ABC", "#+=" change the plane). Empty when no plane has it.
  std::vector<std::string> keysToType(const std::string& character) const;

  /// The first responder changed, or its input view did: shows, replaces or hides. Called by the platform.
  void update();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace platform
