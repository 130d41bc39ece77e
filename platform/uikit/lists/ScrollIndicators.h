#pragma once

#include <memory>

#include "platform/dispatch/DispatchWorkItem.h"
#include "platform/geometry/CGGeometry.h"
#include "platform/uikit/Forward.h"

namespace platform {

class UIScrollView;

/// The two thin bars that tell where a scroll view stands in its content. Layers, so that they are no subviews. They
/// come when the content moves and fade when it has come to rest. Owned by the scroll view. Main thread.
class ScrollIndicators {
 public:
  bool showsVertical = true;
  bool showsHorizontal = true;

  struct Place {
    CGRect bounds;  ///< of the scroll view, its origin the offset
    CGSize contentSize;
    UIEdgeInsets insets;
  };
  /// Shows the bars that there is room to scroll for, and starts the time after which they fade.
  void show(UIScrollView& view, const Place& place);
  /// Moves them along; they come only when they are visible already.
  void follow(UIScrollView& view, const Place& place);

  /// The bar's rectangle in the content's coordinates, empty when everything is in view.
  static CGRect verticalBar(const Place& place);
  static CGRect horizontalBar(const Place& place);

 private:
  void ensureLayers(UIScrollView& view);
  void fadeLater();

  std::shared_ptr<CALayer> vertical_;
  std::shared_ptr<CALayer> horizontal_;
  std::shared_ptr<DispatchWorkItem> fading_;
  bool visible_ = false;
};

}  // namespace platform
