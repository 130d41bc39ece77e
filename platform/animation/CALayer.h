#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/animation/AnimatableValue.h"
#include "platform/animation/CAAnimation.h"
#include "platform/geometry/CGGeometry.h"
#include "platform/geometry/CGPath.h"
#include "platform/geometry/UIColor.h"
#include "platform/runtime/Object.h"

namespace platform {

class CALayer;
class CGContext;
class DrawingRecord;
class LayerAnimations;
class LayerDisplay;
class Painter;
class UIImage;

enum class CALayerCornerCurve : std::uint8_t { circular, continuous };
enum class CALayerContentsGravity : std::uint8_t {
  resize,
  resizeAspect,
  resizeAspectFill,
  center,
  top,
  bottom,
  left,
  right,
  topLeft,
  topRight,
  bottomLeft,
  bottomRight
};

/// Who owns a layer and fills it: a view. Held as a plain pointer, so the owner takes itself off before it dies.
class CALayerDelegate {
 public:
  virtual ~CALayerDelegate() = default;
  /// True when `drawLayer` has something to draw.
  virtual bool layerDrawsItself(const CALayer& layer) = 0;
  /// Draws into the layer's bounds. Called once each time the layer was marked by setNeedsDisplay, before it is shown.
  virtual void drawLayer(CALayer& layer, CGContext& context) = 0;
};

/// A rectangle of the picture: it has a look, contents and layers above it. The parent owns its children, a layer its
/// mask. Setting a property changes it at once, or moves it there when the current CATransaction says so; what shows at
/// the moment is told by presentationLayer(). Main thread. Points; y grows downwards.
class CALayer : public Object<CALayer, NSObject> {
 public:
  static constexpr bool usesObjectPool = true;
  CALayer();
  ~CALayer() override;
  static Ref<CALayer> layer() { return make<CALayer>(); }

  // ---- Geometry
  /// The upright rectangle around the layer in its superlayer. Setting it keeps the transform and changes position and
  /// the size of bounds.
  CGRect frame() const;
  void setFrame(const CGRect& frame);
  const CGRect& bounds() const { return state_.bounds; }
  void setBounds(const CGRect& bounds);
  /// Of the anchor point, in the superlayer.
  CGPoint position() const { return state_.position; }
  void setPosition(CGPoint position);
  /// In parts of the bounds: (0.5, 0.5) is the middle.
  CGPoint anchorPoint() const { return state_.anchorPoint; }
  void setAnchorPoint(CGPoint anchor);
  const CGAffineTransform& transform() const { return state_.transform; }
  /// False for the identity; cheaper to ask than the transform.
  bool hasTransform() const { return state_.hasTransform; }
  void setTransform(const CGAffineTransform& transform);
  void setAffineTransform(const CGAffineTransform& transform) { setTransform(transform); }
  CGAffineTransform affineTransform() const { return state_.transform; }
  /// Grows whenever a layer anywhere changes its place, its look or its contents: what was worked out from places is
  /// good as long as it stays the same.
  static std::uint64_t layerChanges() { return layerChanges_; }
  /// From this layer's coordinates to its superlayer's.
  CGAffineTransform transformToSuperlayer() const;
  /// None stands for the root's coordinates. Layers of different trees: the roots lie on one another.
  CGPoint convertPoint(CGPoint point, const CALayer* toLayer) const;
  CGRect convertRect(const CGRect& rect, const CALayer* toLayer) const;
  bool containsPoint(CGPoint point) const { return state_.bounds.contains(point); }
  /// The front-most visible layer of this tree at a point of the superlayer, or none.
  Ref<CALayer> hitTest(CGPoint point);

  // ---- Look
  const std::optional<UIColor>& backgroundColor() const { return state_.backgroundColor; }
  void setBackgroundColor(std::optional<UIColor> color);
  double cornerRadius() const { return state_.cornerRadius; }
  void setCornerRadius(double radius);
  CALayerCornerCurve cornerCurve() const { return state_.cornerCurve; }
  void setCornerCurve(CALayerCornerCurve curve);
  double borderWidth() const { return state_.borderWidth; }
  /// Drawn inside the bounds, above everything in the layer.
  void setBorderWidth(double width);
  const UIColor& borderColor() const { return state_.borderColor; }
  void setBorderColor(const UIColor& color);
  double opacity() const { return state_.opacity; }
  /// Of the layer with everything in it, as one picture.
  void setOpacity(double opacity);
  bool isHidden() const { return state_.hidden; }
  void setHidden(bool hidden);
  bool masksToBounds() const { return state_.masksToBounds; }
  void setMasksToBounds(bool masks);
  const Ref<CALayer>& mask() const { return mask_; }
  /// What shows is what the mask covers, in this layer's coordinates. A mask has no superlayer.
  void setMask(Ref<CALayer> mask);
  /// A layer that pictures for others, screenshots and videos, do not show: see CaptureBlanking.
  bool isHiddenFromCapture() const { return hiddenFromCapture_; }
  void setHiddenFromCapture(bool hidden);
  double shadowOpacity() const { return state_.shadowOpacity; }
  void setShadowOpacity(double opacity);
  double shadowRadius() const { return state_.shadowRadius; }
  void setShadowRadius(double radius);
  CGSize shadowOffset() const { return state_.shadowOffset; }
  void setShadowOffset(CGSize offset);
  const UIColor& shadowColor() const { return state_.shadowColor; }
  void setShadowColor(const UIColor& color);
  const std::optional<CGPath>& shadowPath() const { return state_.shadowPath; }
  /// The shape that throws the shadow; without one it is the layer's background, or all that is drawn in it.
  void setShadowPath(std::optional<CGPath> path);

  // ---- Contents
  const Ref<UIImage>& contents() const { return state_.contents; }
  /// A moving picture plays by itself, starting when it is set.
  void setContents(Ref<UIImage> image);
  CALayerContentsGravity contentsGravity() const { return state_.contentsGravity; }
  void setContentsGravity(CALayerContentsGravity gravity);
  CALayerDelegate* delegate() const { return delegate_; }
  void setDelegate(CALayerDelegate* delegate);
  /// The delegate is asked to draw before the layer is shown next. A change of size asks by itself.
  void setNeedsDisplay();
  bool needsDisplay() const { return needsDisplay_; }
  /// Has the delegate draw what was marked, in this layer and below.
  void displayIfNeeded();
  /// What a subclass without delegate draws; the base asks the delegate.
  virtual void drawInContext(CGContext& context);
  /// Draws this layer with everything in it, its bounds' origin at the context's origin.
  void renderInContext(CGContext& context);

  // ---- Tree, back to front
  const std::vector<Ref<CALayer>>& sublayers() const { return sublayers_; }
  CALayer* superlayer() const { return superlayer_; }
  void addSublayer(const Ref<CALayer>& layer) { insertSublayer(layer, sublayers_.size()); }
  /// Taken from where it was first. A layer inside itself is a fatal programming error.
  void insertSublayer(const Ref<CALayer>& layer, std::size_t index);
  void insertSublayerBelow(const Ref<CALayer>& layer, const CALayer* sibling);
  void insertSublayerAbove(const Ref<CALayer>& layer, const CALayer* sibling);
  void removeFromSuperlayer();
  const std::string& name() const { return name_; }
  void setName(std::string name) { name_ = std::move(name); }

  // ---- Animation
  /// Takes a copy. Under the key of an animation that is there it takes its place, and that one ends unfinished. An
  /// empty key keeps it apart from all others.
  void addAnimation(const Ref<CAAnimation>& animation, const std::string& key = {});
  Ref<CAAnimation> animationForKey(const std::string& key) const;
  std::vector<std::string> animationKeys() const;
  void removeAnimationForKey(const std::string& key);
  void removeAllAnimations();
  bool hasAnimations() const;
  /// A layer alone, with the values that show now.
  Ref<CALayer> presentationLayer() const { return presentationAt(std::nullopt); }
  Ref<CALayer> presentationAt(std::optional<double> mediaTime) const;
  /// A property by key path (see CABasicAnimation); none for an unknown one.
  virtual AnimatableValue valueForKeyPath(const std::string& keyPath) const;
  /// Sets it at once. False for an unknown key path or a value of another type.
  virtual bool setValueForKeyPath(const AnimatableValue& value, const std::string& keyPath);

  // ---- For the compositor
  /// Draws what the layer itself is above its background: shapes and gradients of subclasses, contents, the record of
  /// what its owner drew.
  virtual void paintContents(Painter& painter, double mediaTime) const;
  /// False for a layer that shows nothing but background and border.
  virtual bool hasOwnContents() const;
  /// Where it may draw, in its own coordinates, sublayers and shadow left out.
  virtual CGRect contentBounds() const { return state_.bounds; }
  /// The outline of its background: the bounds with round corners, that far in on every side.
  CGPath backgroundPath(double inset = 0) const;

 protected:
  /// The values of every layer.
  struct State {
    CGPoint position;  // what asking for places needs comes first and shares two cache lines
    CGRect bounds;
    CGPoint anchorPoint{0.5, 0.5};
    bool hasTransform = false;  // another than the identity
    CGAffineTransform transform;
    std::optional<UIColor> backgroundColor;
    double cornerRadius = 0;
    double borderWidth = 0;
    UIColor borderColor;
    double opacity = 1;
    double shadowOpacity = 0;
    double shadowRadius = 3;
    CGSize shadowOffset{0, -3};
    UIColor shadowColor;
    std::optional<CGPath> shadowPath;
    Ref<UIImage> contents;
    double contentsStart = 0;
    CALayerCornerCurve cornerCurve = CALayerCornerCurve::circular;
    CALayerContentsGravity contentsGravity = CALayerContentsGravity::resize;
    bool hidden = false;
    bool masksToBounds = false;
  };
  /// A new layer of the same class with the same values, sharing what was drawn.
  virtual Ref<CALayer> copyForPresentation() const;
  void copyStateTo(CALayer& other) const;
  /// Sets a member as the transaction in force says; without a key path it cannot be animated. From CALayer.h's
  /// subclasses too, for states of their own.
  template <class Owner, class T>
  void change(Owner& owner, T Owner::*member, T value, const char* keyPath) {
    if (owner.*member == value) return;
    const AnimatableValue from = valueBeforeChange(keyPath);
    owner.*member = std::move(value);
    didChange(keyPath, from);
  }
  /// What shows has changed: the display of the tree, if any, will show it.
  void changed();

 private:
  friend class CaptureBlanking;
  friend class LayerAnimations;
  friend class LayerCompositor;
  friend class LayerDisplay;
  AnimatableValue valueBeforeChange(const char* keyPath) const;
  void didChange(const char* keyPath, const AnimatableValue& from);
  /// The superlayer, or the layer that this one masks.
  CALayer* owner() const { return superlayer_ ? superlayer_ : maskedLayer_; }
  const CALayer& root() const;
  void display();
  void detach(CALayer& sublayer);
  CGRect contentsRect(const UIImage& image) const;

  inline static std::uint64_t layerChanges_ = 0;
  /// Of the whole process; never destroyed, since layers may outlive anything.
  static std::vector<const CALayer*>& layersHiddenFromCapture();

  State state_;
  Ref<CALayer> mask_;
  std::vector<Ref<CALayer>> sublayers_;
  CALayer* superlayer_ = nullptr;
  CALayer* maskedLayer_ = nullptr;
  CALayerDelegate* delegate_ = nullptr;
  std::unique_ptr<LayerAnimations> animations_;
  std::shared_ptr<DrawingRecord> drawing_;
  std::string name_;
  bool needsDisplay_ = false;
  bool subtreeNeedsDisplay_ = false;
  bool hiddenFromCapture_ = false;

  // What the display of the tree knows of this layer.
  LayerDisplay* display_ = nullptr;  // of a root alone
  CGRect shownBounds_;               // where it and all below it stood when last shown, in pixels
  CGRect vacatedBounds_;             // where sublayers stood that are gone
  bool changed_ = true;
  bool subtreeChanged_ = true;
};

}  // namespace platform
