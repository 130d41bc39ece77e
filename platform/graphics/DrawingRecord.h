#pragma once

#include <memory>

#include "platform/engine/Painter.h"

namespace platform {

/// A painter that remembers what it is told, to be painted as often as wanted at any scale. How a layer keeps what its
/// owner drew without keeping pixels. Holds on to the texts and pictures in it. Main thread.
class DrawingRecord final : public Painter {
 public:
  DrawingRecord();
  ~DrawingRecord() override;

  /// Paints all of it through another painter, inside a save and restore of its own.
  void replay(Painter& painter) const;
  bool isEmpty() const;

  void save() override;
  void restore() override;
  void concat(const CGAffineTransform& transform) override;
  void clip(const CGRect& rect) override;
  void clip(const CGPath& path, bool evenOdd) override;
  void fill(const CGRect& rect, const UIColor& color) override;
  void fill(const CGPath& path, const UIColor& color, bool evenOdd) override;
  void stroke(const CGPath& path, const CGStrokeStyle& style, const UIColor& color) override;
  void shadow(const CGPath& path, CGSize offset, double blur, const UIColor& color) override;
  void gradient(const CGGradient& gradient, CGPoint start, CGPoint end, double alpha) override;
  void bitmap(const CGImageRef& bitmap, const CGRect& rect, double alpha) override;
  void text(const std::shared_ptr<const TextLayout>& layout, CGPoint origin, const UIColor& color) override;
  void clear(const CGRect& rect) override;

 private:
  struct Commands;
  std::unique_ptr<Commands> commands_;
};

}  // namespace platform
