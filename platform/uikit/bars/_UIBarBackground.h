#pragma once

#include <optional>

#include "platform/uikit/views/UIView.h"

namespace platform {

/// The ground of a bar: nearly opaque light, or the bar's own colour, with a hairline towards the content. It takes no
/// touches. Private to the bars. Main thread.
class _UIBarBackground : public Object<_UIBarBackground, UIView> {
 public:
  enum class Edge { top, bottom };
  using UIView::init;
  /// The edge that faces the content.
  void init(Edge edge);

  /// None for the standard ground.
  void setColor(std::optional<UIColor> color);
  void layoutSubviews() override;

 private:
  Edge edge_ = Edge::bottom;
  Ref<UIView> hairline_;
};

/// The size a view takes in a bar: a bar's own button what its title needs, any other view its own size, or what it
/// fits into when it has none.
CGSize sizeInBar(const Ref<UIView>& view, CGSize most);

}  // namespace platform
