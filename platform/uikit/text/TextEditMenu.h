#pragma once

#include <utility>
#include <vector>

#include "platform/uikit/views/UIView.h"

namespace platform {

/// The bar of edit commands that a long press on text brings up. It sends "cut:", "copy:", "paste:", "undo:", "redo:"
/// or "selectAll:" to the field or text view it was shown for, which it holds weakly, and goes away with the next
/// touch, wherever that is. One at a time. Main thread.
class TextEditMenu : public Object<TextEditMenu, UIView> {
 public:
  struct Commands {
    bool cut = false;
    bool copy = false;
    bool paste = false;
    bool undo = false;
    bool redo = false;
    bool selectAll = false;
    bool any() const { return cut || copy || paste || undo || redo || selectAll; }
  };
  /// Above the rectangle (in the owner's coordinates), or below it where there is no room. Nothing is shown without a
  /// window or without a command.
  static void show(const Ref<UIView>& owner, CGRect rect, Commands commands);
  static void dismiss();
  /// The command of a letter pressed with Control, for a field or text view. False for other letters.
  static bool performShortcut(NSObject& owner, char letter, bool shift);
  /// The one that is shown, or none.
  static Ref<TextEditMenu> current();

  static void exportMethods(MethodTable<TextEditMenu>& table);
  bool pointInside(CGPoint point, const Ref<UIEvent>& event) const override;

 private:
  void build(const Ref<UIView>& owner, CGRect rect, Commands commands);
  void choose(const Ref<NSObject>& button);

  Weak<UIView> owner_;
  Ref<UIView> bar_;
  std::vector<std::pair<Ref<NSObject>, SEL>> choices_;
};

}  // namespace platform
