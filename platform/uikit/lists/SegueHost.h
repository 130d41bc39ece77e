#pragma once

#include <string>

#include "platform/runtime/Object.h"

namespace platform {

/// A screen around a list, as lists know it: what performs the segue of a chosen cell. UIViewController is the only
/// kind, and says more. Main thread.
class SegueHost {
 public:
  virtual bool hasSegue(const std::string& identifier) const = 0;
  virtual bool shouldPerformSegue(const std::string& identifier, const Ref<NSObject>& sender) = 0;
  virtual void performSegue(const std::string& identifier, const Ref<NSObject>& sender) = 0;

 protected:
  ~SegueHost() = default;
};

}  // namespace platform
