#pragma once

namespace platform {

/// What of an item a constraint speaks about. Text runs from left to right, so leading is left and trailing is right.
/// The margin attributes are those of the view's layout margins.
enum class NSLayoutAttribute {
  left,
  right,
  top,
  bottom,
  leading,
  trailing,
  width,
  height,
  centerX,
  centerY,
  firstBaseline,
  lastBaseline,
  leftMargin,
  rightMargin,
  topMargin,
  bottomMargin,
  leadingMargin,
  trailingMargin,
  centerXWithinMargins,
  centerYWithinMargins,
  notAnAttribute
};

enum class LayoutAttributeKind { horizontalPosition, verticalPosition, dimension, none };

LayoutAttributeKind kindOf(NSLayoutAttribute attribute);
/// "centerX", "leading", ... for log lines.
const char* nameOf(NSLayoutAttribute attribute);
/// True for the attributes of the margins; `withoutMargin` tells the attribute of the margins' guide that is meant.
bool isMargin(NSLayoutAttribute attribute);
NSLayoutAttribute withoutMargin(NSLayoutAttribute attribute);

}  // namespace platform
