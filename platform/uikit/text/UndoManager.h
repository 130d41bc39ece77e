#pragma once

#include "platform/runtime/Object.h"
#include "platform/uikit/Forward.h"

namespace platform {

class TextEditing;

/// Undoes and redoes what a person did to one text, as the text's field or text view hands it out. Undoing is an edit
/// like another: the delegate is asked, everybody is told. A text set by program empties it, and a secure field keeps
/// nothing. It holds its view weakly and does nothing without it. Main thread.
class UndoManager : public Object<UndoManager, NSObject> {
 public:
  UndoManager(const Ref<UIView>& owner, TextEditing& editing) : owner_(owner), editing_(editing) {}

  bool canUndo() const;
  bool canRedo() const;
  void undo();
  void redo();
  void removeAllActions();
  /// How many steps are kept at most.
  std::int64_t levelsOfUndo() const;

 private:
  Weak<UIView> owner_;
  TextEditing& editing_;  ///< lives as long as the owner
};

}  // namespace platform
