#pragma once

#include "platform/graphics/CGContext.h"
#include "platform/uikit/views/UIView.h"

namespace teashop {

/// A cup of tea seen from above, as large as fits.
void drawTeaCup(platform::CGContext& context, platform::CGRect area, const platform::UIColor& liquor);

/// A cup of tea seen from above: saucer, cup, the liquor in its own colour with a soft highlight. Scales with its
/// bounds.
class TeaCupView final : public platform::Object<TeaCupView, platform::UIView> {
 public:
  void initWithFrame(platform::CGRect frame) override;
  void setLiquor(const platform::UIColor& color);
  bool drawsItself() const override { return true; }
  void draw(platform::CGRect rect, platform::CGContext& context) override;

 private:
  platform::UIColor liquor_;
};

}  // namespace teashop
