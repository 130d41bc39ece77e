#pragma once

#include <string>
#include <vector>

#include "platform/uikit/constraints/UILayoutGuide.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UIStackView.h"

namespace teashop {

/// Views below each other, all as wide as the column. For constraints.
platform::Ref<platform::UIStackView> makeColumn(std::vector<platform::Ref<platform::UIView>> views, double spacing);
/// Views beside each other, centred on one line. For constraints.
platform::Ref<platform::UIStackView> makeRow(std::vector<platform::Ref<platform::UIView>> views, double spacing);
/// A row's first view keeps its width, the other takes the room that is left, or the other way round.
void keepWidth(const platform::Ref<platform::UIView>& view);

/// Keeps a view to the edges of a guide or of another view, so far inside them.
void pin(const platform::Ref<platform::UIView>& view, const platform::Ref<platform::UILayoutGuide>& guide,
         platform::UIEdgeInsets insets = {});
void pin(const platform::Ref<platform::UIView>& view, const platform::Ref<platform::UIView>& around,
         platform::UIEdgeInsets insets = {});
void setHeight(const platform::Ref<platform::UIView>& view, double height);
void setWidth(const platform::Ref<platform::UIView>& view, double width);

/// A pictogram in a colour, for constraints.
platform::Ref<platform::UIImageView> makeSymbol(const std::string& name, double size, const platform::UIColor& color);

}  // namespace teashop
