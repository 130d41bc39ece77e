#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/geometry/UIColor.h"
#include "platform/graphics/UIFont.h"
#include "platform/runtime/Object.h"

namespace platform {

/// How a text looks where the view that shows it is not to decide. What is absent is the view's.
struct NSTextAttributes {
  std::optional<UIFont> font;
  std::optional<UIColor> foregroundColor;
  bool underline = false;
  double lineSpacing = 0;
  friend bool operator==(const NSTextAttributes&, const NSTextAttributes&) = default;
};

/// A text with one set of attributes for the whole of it. Never changes; any thread.
class NSAttributedString : public Object<NSAttributedString, NSObject> {
 public:
  explicit NSAttributedString(std::string string, NSTextAttributes attributes = {})
      : string_(std::move(string)), attributes_(std::move(attributes)) {}

  const std::string& string() const { return string_; }
  const NSTextAttributes& attributes() const { return attributes_; }

 private:
  std::string string_;
  NSTextAttributes attributes_;
};

}  // namespace platform
