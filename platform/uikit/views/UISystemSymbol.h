#pragma once

#include <string>
#include <vector>

#include "platform/runtime/Ref.h"

namespace platform {

class UIImage;

enum class UISymbolWeight { light, regular, medium, semibold };

/// The platform's own set of pictograms, drawn from paths at any size. They are templates: what shows them gives the
/// colour. Main thread.
///
/// Names: "chevron.left", "chevron.right", "chevron.down", "plus", "minus", "xmark", "xmark.circle.fill", "checkmark",
/// "magnifyingglass", "trash", "square.and.arrow.up", "square.and.pencil", "arrowshape.turn.up.left",
/// "arrow.clockwise", "arrow.uturn.backward", "arrow.uturn.forward", "camera", "folder", "book", "play.fill",
/// "pause.fill", "backward.fill", "forward.fill", "house", "house.fill", "storefront", "storefront.fill", "cart",
/// "cart.fill", "person", "person.fill", "heart", "heart.fill", "star", "star.fill", "bell", "bell.fill", "gearshape",
/// "list.bullet", "ellipsis", "cup.and.saucer", "cup.and.saucer.fill", "leaf", "leaf.fill", "shippingbox",
/// "line.3.horizontal.decrease", "message", "message.fill", "clock", "info.circle", "slider.horizontal.3".
class UISystemSymbol {
 public:
  /// As tall as a letter's line at that size, about 1.2 times the points. None for a name that is not in the set.
  static Ref<UIImage> image(const std::string& name, double pointSize = 20,
                            UISymbolWeight weight = UISymbolWeight::regular);
  static std::vector<std::string> names();
};

}  // namespace platform
