#include "platform/engine/FontFace.h"

#include <algorithm>
#include <cmath>

#include "platform/engine/Engine.h"

namespace platform {

FontAtSize::FontAtSize() : FontAtSize(Engine::shared().systemFace(400, false), 17) {}

FontAtSize::FontAtSize(const FontFace& face, double pointSize)
    : face_(&face), pointSize_(std::isfinite(pointSize) && pointSize > 0 ? std::min(pointSize, 2000.0) : 1) {}

}  // namespace platform
