#pragma once

#include "platform/geometry/UIColor.h"
#include "platform/graphics/UIImage.h"

namespace teashop {

/// The shop's drawn pictures, in place of photographs. Points, at the screen's scale. Main thread.
namespace teaPictures {

/// A cup of it, from above, on a quiet ground.
platform::Ref<platform::UIImage> cup(platform::CGSize size, const platform::UIColor& liquor);
/// The tin it comes in.
platform::Ref<platform::UIImage> tin(platform::CGSize size, const platform::UIColor& liquor, const std::string& name);
/// Hills one behind another, in shades of a tint; `seed` decides where they rise.
platform::Ref<platform::UIImage> hills(platform::CGSize size, const platform::UIColor& tint, unsigned seed);

}  // namespace teaPictures

}  // namespace teashop
