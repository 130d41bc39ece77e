#include "platform/graphics/DrawingRecord.h"

#include <functional>
#include <variant>
#include <vector>

namespace platform {

namespace {

struct Save {};
struct Restore {};
struct Concat {
  CGAffineTransform transform;
};
struct ClipRect {
  CGRect rect;
};
struct ClipPath {
  CGPath path;
  bool evenOdd;
};
struct FillRect {
  CGRect rect;
  UIColor color;
};
struct FillPath {
  CGPath path;
  UIColor color;
  bool evenOdd;
};
struct Stroke {
  CGPath path;
  CGStrokeStyle style;
  UIColor color;
};
struct Shadow {
  CGPath path;
  CGSize offset;
  double blur;
  UIColor color;
};
struct Gradient {
  CGGradient gradient;
  CGPoint start, end;
  double alpha;
};
struct Picture {
  CGImageRef bitmap;
  CGRect rect;
  double alpha;
};
struct Text {
  std::shared_ptr<const TextLayout> layout;
  CGPoint origin;
  UIColor color;
};
struct Clear {
  CGRect rect;
};

/// Tells a painter what one command says.
struct Replay {
  Painter& to;
  void operator()(const Save&) const { to.save(); }
  void operator()(const Restore&) const { to.restore(); }
  void operator()(const Concat& c) const { to.concat(c.transform); }
  void operator()(const ClipRect& c) const { to.clip(c.rect); }
  void operator()(const ClipPath& c) const { to.clip(c.path, c.evenOdd); }
  void operator()(const FillRect& c) const { to.fill(c.rect, c.color); }
  void operator()(const FillPath& c) const { to.fill(c.path, c.color, c.evenOdd); }
  void operator()(const Stroke& c) const { to.stroke(c.path, c.style, c.color); }
  void operator()(const Shadow& c) const { to.shadow(c.path, c.offset, c.blur, c.color); }
  void operator()(const Gradient& c) const { to.gradient(c.gradient, c.start, c.end, c.alpha); }
  void operator()(const Picture& c) const { to.bitmap(c.bitmap, c.rect, c.alpha); }
  void operator()(const Text& c) const { to.text(c.layout, c.origin, c.color); }
  void operator()(const Clear& c) const { to.clear(c.rect); }
};

}  // namespace

struct DrawingRecord::Commands {
  std::vector<std::variant<Save, Restore, Concat, ClipRect, ClipPath, FillRect, FillPath, Stroke, Shadow, Gradient,
                           Picture, Text, Clear>>
      list;
  int open = 0;  // saves without their restore
};

DrawingRecord::DrawingRecord() : commands_(std::make_unique<Commands>()) {}
DrawingRecord::~DrawingRecord() = default;

bool DrawingRecord::isEmpty() const { return commands_->list.empty(); }

void DrawingRecord::replay(Painter& painter) const {
  painter.save();
  for (const auto& command : commands_->list) std::visit(Replay{painter}, command);
  for (int i = 0; i <= commands_->open; ++i) painter.restore();
}

void DrawingRecord::save() {
  ++commands_->open;
  commands_->list.emplace_back(Save{});
}

void DrawingRecord::restore() {
  if (commands_->open == 0) return;
  --commands_->open;
  commands_->list.emplace_back(Restore{});
}

void DrawingRecord::concat(const CGAffineTransform& transform) { commands_->list.emplace_back(Concat{transform}); }

void DrawingRecord::clip(const CGRect& rect) { commands_->list.emplace_back(ClipRect{rect}); }

void DrawingRecord::clip(const CGPath& path, bool evenOdd) { commands_->list.emplace_back(ClipPath{path, evenOdd}); }

void DrawingRecord::fill(const CGRect& rect, const UIColor& color) {
  commands_->list.emplace_back(FillRect{rect, color});
}

void DrawingRecord::fill(const CGPath& path, const UIColor& color, bool evenOdd) {
  commands_->list.emplace_back(FillPath{path, color, evenOdd});
}

void DrawingRecord::stroke(const CGPath& path, const CGStrokeStyle& style, const UIColor& color) {
  commands_->list.emplace_back(Stroke{path, style, color});
}

void DrawingRecord::shadow(const CGPath& path, CGSize offset, double blur, const UIColor& color) {
  commands_->list.emplace_back(Shadow{path, offset, blur, color});
}

void DrawingRecord::gradient(const CGGradient& gradient, CGPoint start, CGPoint end, double alpha) {
  commands_->list.emplace_back(Gradient{gradient, start, end, alpha});
}

void DrawingRecord::bitmap(const CGImageRef& bitmap, const CGRect& rect, double alpha) {
  commands_->list.emplace_back(Picture{bitmap, rect, alpha});
}

void DrawingRecord::text(const std::shared_ptr<const TextLayout>& layout, CGPoint origin, const UIColor& color) {
  commands_->list.emplace_back(Text{layout, origin, color});
}

void DrawingRecord::clear(const CGRect& rect) { commands_->list.emplace_back(Clear{rect}); }

}  // namespace platform
