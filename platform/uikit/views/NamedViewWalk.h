#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/uikit/views/UIView.h"

namespace platform {

/// Goes through the views of a tree that have a name: depth first, back to front, a view before its subviews, each read
/// when it is reached. Passes over what holds no name, without looking at it; a view that answers for itself is asked.
/// Uses no stack for depth. The root is held by the caller. Main thread.
class NamedViewWalk {
 public:
  explicit NamedViewWalk(UIView& root) : pending_{&root} {}

  /// The next named view, or none at the end, or when the walk was cut short.
  UIView* next();
  /// Of the view that `next` gave, until it is called again or the view is renamed.
  const std::string& name() const { return *name_; }
  /// True once any tree has changed: where this walk stood is not certain any more, and it goes no further.
  bool isCutShort() const { return changes_ != UIView::hierarchyChanges(); }

 private:
  /// Puts what lies in the view, and may hold names, on top of what is to be visited.
  void open(UIView& view);
  void lookAhead(const UIView& view) const;

  std::uint64_t changes_ = UIView::hierarchyChanges();
  std::vector<UIView*> pending_;
  UIView* reached_ = nullptr;  // what lies in it comes next
  std::optional<std::string> answered_;
  const std::string* name_ = nullptr;
};

}  // namespace platform
