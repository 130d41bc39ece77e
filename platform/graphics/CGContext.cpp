#include "platform/graphics/CGContext.h"

#include "platform/engine/Painter.h"
#include "platform/engine/TextLayout.h"
#include "platform/graphics/UIImage.h"

namespace platform {

CGContext::CGContext(Painter& painter, double scale) : painter_(painter), scale_(scale) {}

CGContext::~CGContext() {
  while (!saved_.empty()) restoreGState();
}

void CGContext::saveGState() {
  saved_.push_back(state_);
  painter_.save();
}

void CGContext::restoreGState() {
  if (saved_.empty()) return;
  state_ = std::move(saved_.back());
  saved_.pop_back();
  painter_.restore();
}

void CGContext::concat(const CGAffineTransform& transform) {
  state_.ctm = transform.then(state_.ctm);
  painter_.concat(transform);
}

void CGContext::setLineDash(double phase, std::vector<double> lengths) {
  state_.stroke.dashPhase = phase;
  state_.stroke.dashes = std::move(lengths);
}

void CGContext::setShadow(CGSize offset, double blur, const UIColor& color) {
  if (blur <= 0 && offset == CGSizeZero) {
    state_.shadow.reset();
  } else {
    state_.shadow = Shadow{offset, blur, color};
  }
}

UIColor CGContext::faded(const UIColor& color) const {
  return state_.alpha == 1 ? color : color.colorWithAlphaComponent(color.alpha() * state_.alpha);
}

void CGContext::drawShadow(const CGPath& path) {
  if (state_.shadow) painter_.shadow(path, state_.shadow->offset, state_.shadow->blur, faded(state_.shadow->color));
}

void CGContext::fillPath(bool evenOdd) {
  fillPath(path_, evenOdd);
  path_ = {};
}

void CGContext::strokePath() {
  strokePath(path_);
  path_ = {};
}

void CGContext::clip(bool evenOdd) {
  clip(path_, evenOdd);
  path_ = {};
}

void CGContext::fill(const CGRect& rect) {
  if (rect.isEmpty()) return;
  if (state_.shadow) drawShadow(CGPath::rect(rect));
  painter_.fill(rect, faded(state_.fillColor));
}

void CGContext::stroke(const CGRect& rect) { strokePath(CGPath::rect(rect)); }

void CGContext::fillPath(const CGPath& path, bool evenOdd) {
  if (path.isEmpty()) return;
  drawShadow(path);
  painter_.fill(path, faded(state_.fillColor), evenOdd);
}

void CGContext::strokePath(const CGPath& path, const CGStrokeStyle& style) {
  if (!path.isEmpty()) painter_.stroke(path, style, faded(state_.strokeColor));
}

void CGContext::clip(const CGPath& path, bool evenOdd) { painter_.clip(path, evenOdd); }

void CGContext::clip(const CGRect& rect) { painter_.clip(rect); }

void CGContext::clear(const CGRect& rect) { painter_.clear(rect); }

void CGContext::drawImage(const UIImage& image, const CGRect& rect) { drawBitmap(image.cgImage(), rect); }

void CGContext::drawBitmap(const CGImageRef& bitmap, const CGRect& rect) {
  if (bitmap && !rect.isEmpty()) painter_.bitmap(bitmap, rect, state_.alpha);
}

void CGContext::drawText(const std::shared_ptr<const TextLayout>& text, CGPoint origin, const UIColor& color) {
  if (text) painter_.text(text, origin, faded(color));
}

void CGContext::drawText(std::string_view text, const TextStyle& style, const CGRect& rect, const UIColor& color) {
  drawText(TextLayout::make(text, style, rect.width()), rect.origin, color);
}

void CGContext::drawLinearGradient(const CGGradient& gradient, CGPoint start, CGPoint end) {
  if (!gradient.colors.empty()) painter_.gradient(gradient, start, end, state_.alpha);
}

}  // namespace platform
