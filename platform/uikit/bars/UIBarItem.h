#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/runtime/Object.h"
#include "platform/uikit/Forward.h"

namespace platform {

/// What the items of all bars share: a title, a picture, whether it can be pressed. Not a view itself. Main thread.
class UIBarItem : public Object<UIBarItem, NSObject> {
 public:
  UIBarItem();
  ~UIBarItem() override;
  static void exportMethods(MethodTable<UIBarItem>& table);

  const std::optional<std::string>& title() const { return title_; }
  void setTitle(std::optional<std::string> title);
  const Ref<UIImage>& image() const { return image_; }
  void setImage(const Ref<UIImage>& image);
  bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled);
  std::int64_t tag() const { return tag_; }
  void setTag(std::int64_t tag) { tag_ = tag; }
  /// The host's name of the item. The bar's own view for the item carries it too; a custom view keeps its own.
  virtual std::optional<std::string> accessibilityIdentifier() const { return identifier_; }
  virtual void setAccessibilityIdentifier(std::optional<std::string> identifier);
  const std::optional<std::string>& accessibilityLabel() const { return label_; }
  void setAccessibilityLabel(std::optional<std::string> label) { label_ = std::move(label); }

 protected:
  /// Something that the item's view shows has changed.
  virtual void contentDidChange() {}
  virtual void identifierDidChange() {}

 private:
  std::optional<std::string> title_;
  Ref<UIImage> image_;
  bool enabled_ = true;
  std::int64_t tag_ = 0;
  std::optional<std::string> identifier_;
  std::optional<std::string> label_;
};

}  // namespace platform
