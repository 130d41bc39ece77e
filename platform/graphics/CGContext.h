#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/geometry/Bitmap.h"
#include "platform/geometry/CGGradient.h"
#include "platform/geometry/CGPath.h"
#include "platform/geometry/UIColor.h"

namespace platform {

class Painter;
class TextLayout;
class UIImage;
struct TextStyle;

/// What drawing code draws with: a state (colours, line, shadow, transform, clip) that is saved and restored, and a
/// current path. It draws through a painter that it borrows for its life. Points; y grows downwards. The painter's
/// thread.
class CGContext {
 public:
  /// `scale` tells how many pixels of the painter's a point will be; it changes nothing by itself.
  explicit CGContext(Painter& painter, double scale = 2);
  CGContext(const CGContext&) = delete;
  CGContext& operator=(const CGContext&) = delete;
  /// Saves that were never restored are.
  ~CGContext();

  void saveGState();
  /// More restores than saves are left alone.
  void restoreGState();

  void translateBy(double x, double y) { concat(CGAffineTransform::translation(x, y)); }
  void scaleBy(double x, double y) { concat(CGAffineTransform::scale(x, y)); }
  void rotateBy(double angle) { concat(CGAffineTransform::rotation(angle)); }
  void concat(const CGAffineTransform& transform);
  /// From the coordinates now in force to those the context began with.
  const CGAffineTransform& ctm() const { return state_.ctm; }
  double scale() const { return scale_; }

  void setFillColor(const UIColor& color) { state_.fillColor = color; }
  void setStrokeColor(const UIColor& color) { state_.strokeColor = color; }
  const UIColor& fillColor() const { return state_.fillColor; }
  const UIColor& strokeColor() const { return state_.strokeColor; }
  void setLineWidth(double width) { state_.stroke.width = width; }
  void setLineCap(CGLineCap cap) { state_.stroke.cap = cap; }
  void setLineJoin(CGLineJoin join) { state_.stroke.join = join; }
  void setLineDash(double phase, std::vector<double> lengths);
  /// For everything drawn, text and pictures included.
  void setAlpha(double alpha) { state_.alpha = alpha; }
  /// A shadow under what is filled; a blur of 0 and an offset of 0 remove it.
  void setShadow(CGSize offset, double blur, const UIColor& color = UIColor::white(0, 1.0 / 3));

  // ---- The current path: built, then used up by one of the drawing calls.
  void beginPath() { path_ = {}; }
  void moveTo(CGPoint point) { path_.move(point); }
  void addLineTo(CGPoint point) { path_.line(point); }
  void addCurveTo(CGPoint control1, CGPoint control2, CGPoint point) { path_.curve(control1, control2, point); }
  void addArc(CGPoint center, double radius, double startAngle, double endAngle, bool clockwise) {
    path_.arc(center, radius, startAngle, endAngle, clockwise);
  }
  void addRect(const CGRect& rect) { path_.append(CGPath::rect(rect)); }
  void addEllipse(const CGRect& rect) { path_.append(CGPath::oval(rect)); }
  void addPath(const CGPath& path) { path_.append(path); }
  void closePath() { path_.close(); }
  void fillPath(bool evenOdd = false);
  void strokePath();
  void clip(bool evenOdd = false);

  // ---- The same at once, leaving the current path alone
  void fill(const CGRect& rect);
  void stroke(const CGRect& rect);
  void fillEllipse(const CGRect& rect) { fillPath(CGPath::oval(rect)); }
  void fillPath(const CGPath& path, bool evenOdd = false);
  void strokePath(const CGPath& path) { strokePath(path, state_.stroke); }
  void strokePath(const CGPath& path, const CGStrokeStyle& style);
  void clip(const CGPath& path, bool evenOdd = false);
  void clip(const CGRect& rect);
  /// Makes the rectangle transparent.
  void clear(const CGRect& rect);

  void drawImage(const UIImage& image, const CGRect& rect);
  void drawBitmap(const CGImageRef& bitmap, const CGRect& rect);
  /// Its top left corner at the point.
  void drawText(const std::shared_ptr<const TextLayout>& text, CGPoint origin, const UIColor& color);
  /// Laid out to the width of the rectangle, from its top; not clipped.
  void drawText(std::string_view text, const TextStyle& style, const CGRect& rect, const UIColor& color);
  /// Over the clip, the end colours going on beyond both points.
  void drawLinearGradient(const CGGradient& gradient, CGPoint start, CGPoint end);

 private:
  struct Shadow {
    CGSize offset;
    double blur;
    UIColor color;
  };
  struct State {
    CGAffineTransform ctm;
    UIColor fillColor;
    UIColor strokeColor;
    CGStrokeStyle stroke;
    double alpha = 1;
    std::optional<Shadow> shadow;
  };
  UIColor faded(const UIColor& color) const;
  void drawShadow(const CGPath& path);

  Painter& painter_;
  double scale_;
  State state_;
  std::vector<State> saved_;
  CGPath path_;
};

}  // namespace platform
