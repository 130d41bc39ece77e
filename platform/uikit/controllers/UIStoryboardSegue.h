#pragma once

#include <string>

#include "platform/runtime/Object.h"
#include "platform/uikit/Forward.h"

namespace platform {

/// A named step from one screen to the next, made by `performSegue` and told to `prepareForSegue` before it runs. It
/// owns both controllers for its short life. Main thread.
class UIStoryboardSegue : public Object<UIStoryboardSegue, NSObject> {
 public:
  enum class Kind { show, present };

  UIStoryboardSegue(std::string identifier, Kind kind, Ref<UIViewController> source, Ref<UIViewController> destination);
  ~UIStoryboardSegue() override;

  const std::string& identifier() const { return identifier_; }
  const Ref<UIViewController>& sourceViewController() const { return source_; }
  const Ref<UIViewController>& destinationViewController() const { return destination_; }
  /// Shows the destination: pushed where there is a navigation controller and the kind is `show`, presented otherwise.
  virtual void perform();

 private:
  std::string identifier_;
  Kind kind_;
  Ref<UIViewController> source_;
  Ref<UIViewController> destination_;
};

}  // namespace platform
