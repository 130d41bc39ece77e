#pragma once

#include <string>

#include "platform/geometry/CGGeometry.h"
#include "platform/runtime/Object.h"
#include "platform/uikit/Forward.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"

namespace platform {

/// A rectangle of a view that constraints can name but that draws nothing: the safe area, the margins, or one of the
/// host's own (`view->addLayoutGuide(make<UILayoutGuide>())`). Owned by its view. Thread: main.
class UILayoutGuide : public Object<UILayoutGuide, NSObject> {
 public:
  /// What places it: constraints alone, or the insets of its view.
  enum class Source { constraints, safeArea, margins };

  explicit UILayoutGuide(Source source = Source::constraints) : source_(source) {}

  /// None when it was not added to a view or the view has gone.
  Ref<UIView> owningView() const;
  const std::string& identifier() const { return identifier_; }
  void setIdentifier(const std::string& identifier) { identifier_ = identifier; }
  Source source() const { return source_; }
  /// In the coordinates of its view, as of the last layout pass.
  CGRect layoutFrame() const;

  NSLayoutXAxisAnchor leftAnchor() { return {weakSelf(), NSLayoutAttribute::left}; }
  NSLayoutXAxisAnchor rightAnchor() { return {weakSelf(), NSLayoutAttribute::right}; }
  NSLayoutXAxisAnchor leadingAnchor() { return {weakSelf(), NSLayoutAttribute::leading}; }
  NSLayoutXAxisAnchor trailingAnchor() { return {weakSelf(), NSLayoutAttribute::trailing}; }
  NSLayoutXAxisAnchor centerXAnchor() { return {weakSelf(), NSLayoutAttribute::centerX}; }
  NSLayoutYAxisAnchor topAnchor() { return {weakSelf(), NSLayoutAttribute::top}; }
  NSLayoutYAxisAnchor bottomAnchor() { return {weakSelf(), NSLayoutAttribute::bottom}; }
  NSLayoutYAxisAnchor centerYAnchor() { return {weakSelf(), NSLayoutAttribute::centerY}; }
  NSLayoutDimension widthAnchor() { return {weakSelf(), NSLayoutAttribute::width}; }
  NSLayoutDimension heightAnchor() { return {weakSelf(), NSLayoutAttribute::height}; }

 private:
  friend class UIView;
  friend class ViewLayout;
  UIView* view_ = nullptr;  // cleared by ViewLayout when the view goes
  Source source_;
  std::string identifier_;
};

}  // namespace platform
