#include "platform/uikit/text/UndoManager.h"

#include "platform/uikit/text/TextEditing.h"

namespace platform {

bool UndoManager::canUndo() const { return owner_.lock() && editing_.canUndo(); }
bool UndoManager::canRedo() const { return owner_.lock() && editing_.canRedo(); }

void UndoManager::undo() {
  if (const Ref<UIView> keeper = owner_.lock()) editing_.undo();
}

void UndoManager::redo() {
  if (const Ref<UIView> keeper = owner_.lock()) editing_.redo();
}

void UndoManager::removeAllActions() {
  if (const Ref<UIView> keeper = owner_.lock()) editing_.history.clear();
}

std::int64_t UndoManager::levelsOfUndo() const { return static_cast<std::int64_t>(TextHistory::stepLimit); }

}  // namespace platform
