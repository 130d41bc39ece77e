#pragma once

// The least that reading a screen can cost: a tree of the same shape that knows nothing but what an element says.

#include <memory>
#include <string>
#include <vector>

#include "lumicor/core/LumicorUtils.h"
#include "lumicor/screen/LumicorElementKind.h"
#include "lumicor/screen/LumicroElement.h"
#include "platform/animation/CALayer.h"
#include "platform/uikit/views/UIView.h"

namespace lumicor::bench {

/// A view that was copied from a live one, and what lies in it.
struct PlainView {
  std::string name;
  bool isNamed = false;
  CGPoint origin;  ///< in the coordinates of the view around it
  CGSize size;
  LumicorElementKind kind;
  std::vector<std::unique_ptr<PlainView>> children;

  explicit PlainView(UIView& live) : size(live.bounds().size) {
    const CGAffineTransform place = live.layer()->transformToSuperlayer();
    origin = {place.tx, place.ty};
    if (const auto identifier = live.accessibilityIdentifier()) {
      isNamed = true;
      name = *identifier;
      kind = elementKindOf(live);
    }
  }

  /// The whole tree under a view whose superview is a window that begins at its own origin.
  static std::unique_ptr<PlainView> copyOf(UIView& root) {
    auto copy = std::make_unique<PlainView>(root);
    std::vector<std::pair<UIView*, PlainView*>> open{{&root, copy.get()}};
    while (!open.empty()) {
      const auto [live, plain] = open.back();
      open.pop_back();
      for (const Ref<UIView>& child : live->subviews()) {
        plain->children.push_back(std::make_unique<PlainView>(*child));
        open.emplace_back(child.get(), plain->children.back().get());
      }
    }
    return copy;
  }

  std::vector<LumicroElement> elements() const {
    std::vector<LumicroElement> read;
    struct Open {
      const PlainView* view;
      CGPoint around;
    };
    std::vector<Open> open{{this, {}}};
    while (!open.empty()) {
      const auto [view, around] = open.back();
      open.pop_back();
      const CGPoint at = around + view->origin;
      if (view->isNamed) {
        read.emplace_back(std::string(view->name), LumicorUtils::truncated(at.x), LumicorUtils::truncated(at.y),
                          LumicorUtils::truncated(view->size.width), LumicorUtils::truncated(view->size.height),
                          std::string(view->kind.value), view->kind.type, view->kind.inputType);
      }
      for (auto child = view->children.rbegin(); child != view->children.rend(); ++child) {
        open.push_back({child->get(), at});
      }
    }
    return read;
  }
};

}  // namespace lumicor::bench
