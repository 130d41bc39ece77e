#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/geometry/CGGeometry.h"
#include "platform/geometry/UIColor.h"
#include "platform/graphics/UIFont.h"
#include "platform/runtime/Ref.h"

namespace platform {
class UIImage;
class UIView;
}  // namespace platform

namespace platform::declarative {

class Description;
class GeometryProxy;
class View;

enum class HorizontalAlignment { leading, center, trailing };
enum class VerticalAlignment { top, center, bottom };
struct Alignment {
  HorizontalAlignment horizontal = HorizontalAlignment::center;
  VerticalAlignment vertical = VerticalAlignment::center;
};

/// Something that wraps a view in others: a reusable piece of look or behaviour.
class ViewModifier {
 public:
  virtual ~ViewModifier() = default;
  virtual View body(const View& content) const = 0;
};

/// The description of a piece of interface: a value, cheap to copy, that never changes. A hosting controller turns it
/// into live views and, given another description later, changes only what differs. Main thread; points.
///
///     VStack({Text("Sencha").font(UIFont::boldSystemFont(20)), Text("Fresh grass").foregroundColor(UIColor::gray())})
///         .padding(16)
///         .background(Color(UIColor::white()))
class View {
 public:
  explicit View(std::shared_ptr<const Description> description) : description_(std::move(description)) {}
  const std::shared_ptr<const Description>& description() const { return description_; }

  // ---- Room
  View padding(double all) const { return padding(UIEdgeInsets{all, all, all, all}); }
  View padding(UIEdgeInsets insets) const;
  /// A side that is absent is the content's own.
  View frame(std::optional<double> width, std::optional<double> height, Alignment alignment = {}) const;
  /// At least as large as what is offered in a direction that is `expands`.
  View expand(bool horizontally, bool vertically, Alignment alignment = {}) const;

  // ---- Look. Fonts and colours reach everything inside that has none of its own.
  View background(const View& behind) const;
  View overlay(const View& above) const;
  View font(const UIFont& font) const;
  View foregroundColor(const UIColor& color) const;
  View opacity(double opacity) const;
  View cornerRadius(double radius) const;

  // ---- Behaviour
  View onTapGesture(std::function<void()> action) const;
  View onAppear(std::function<void()> action) const;
  View onDisappear(std::function<void()> action) const;
  View accessibilityIdentifier(const std::string& identifier) const;
  View modifier(const ViewModifier& modifier) const { return modifier.body(*this); }

 private:
  std::shared_ptr<const Description> description_;
};

// ---- Leaves
View Text(const std::string& text);
View Image(const Ref<UIImage>& image);
/// Takes all the room that it is offered.
View Color(const UIColor& color);
/// Pushes its neighbours in a stack apart.
View Spacer(double minimum = 0);
View Button(const std::string& title, std::function<void()> action);
View Toggle(bool isOn, std::function<void(bool)> changed);
/// Any view of the platform. `make` is called once, `update` after it and with every later description.
View Represented(std::function<Ref<UIView>()> make, std::function<void(UIView&)> update = nullptr);

// ---- Containers
View HStack(std::vector<View> children, double spacing = 8, VerticalAlignment alignment = VerticalAlignment::center);
View VStack(std::vector<View> children, double spacing = 8,
            HorizontalAlignment alignment = HorizontalAlignment::center);
View ZStack(std::vector<View> children, Alignment alignment = {});
View ScrollView(const View& content);
/// Takes all the room that it is offered and makes its content from it; asked when it comes to the screen, and again
/// whenever its size or its place there has changed. While it is not on the screen it has no place, and is not asked.
View GeometryReader(std::function<View(const GeometryProxy&)> content);

enum class CoordinateSpace { local, global };

/// Where a geometry reader stands. Borrowed for the call.
class GeometryProxy {
 public:
  GeometryProxy(CGSize size, CGRect global) : size_(size), global_(global) {}
  CGSize size() const { return size_; }
  /// Global is the window's coordinate space.
  CGRect frame(CoordinateSpace space) const {
    return space == CoordinateSpace::global ? global_ : CGRect{{0, 0}, size_};
  }

 private:
  CGSize size_;
  CGRect global_;
};

}  // namespace platform::declarative
