#pragma once

#include <string>
#include <vector>

#include "platform/runtime/Object.h"
#include "platform/uikit/Forward.h"
#include "platform/uikit/touch/UITextInputTraits.h"

namespace platform {

/// A key as it reaches the first responder. `text` is what it types (UTF-8, empty for none).
struct UIKey {
  enum class Code { character, returnKey, tab, backspace, forwardDelete, escape, left, right, up, down, home, end };
  Code code = Code::character;
  std::string text;
  bool shift = false;
  bool control = false;  ///< the command modifier: copy, paste, select all
};

/// Touches that arrive together. Borrowed for the call.
using UITouches = std::vector<Ref<UITouch>>;

/// An object of the responder chain: views, view controllers, windows, the application. Main thread.
class UIResponder : public Object<UIResponder, NSObject> {
 public:
  /// Where an event goes that this object leaves alone; none at the chain's end.
  virtual Ref<UIResponder> nextResponder() { return nullptr; }

  virtual bool canBecomeFirstResponder() { return false; }
  virtual bool canResignFirstResponder() { return true; }
  /// True when this object is the first responder afterwards.
  virtual bool becomeFirstResponder();
  virtual bool resignFirstResponder();
  virtual bool isFirstResponder() const;
  /// The first responder of the application, or none.
  static Ref<UIResponder> firstResponder();
  /// The first responder goes, without being asked where it would stay: it left its window, or editing was ended by
  /// force.
  static void dropFirstResponder();

  virtual void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event);
  virtual void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event);
  virtual void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event);
  virtual void touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event);

  /// True when the key was used; otherwise it goes to the next responder.
  virtual bool keyPressed(const UIKey& key);
  /// True when the software keyboard belongs with this responder (text fields and text views).
  virtual bool wantsKeyboard() { return false; }
  /// The view that replaces the software keyboard (a picker), or none.
  virtual Ref<UIView> inputView() { return nullptr; }
  /// What the software keyboard looks like for this responder.
  virtual UITextInputTraits textInputTraits() { return {}; }

  /// The object of the chain, from this one on, that answers the action, or none.
  virtual Ref<UIResponder> targetForAction(SEL action);
};

}  // namespace platform
