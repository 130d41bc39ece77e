#pragma once

#include "platform/runtime/Object.h"
#include "platform/runtime/OptionalMessage.h"

namespace lumicor {

using namespace platform;

/// Stands in front of a host's delegate, hears a few of its calls, and hands every call on. The host's delegate is held
/// weakly, as the control would hold it. Kept alive by the façade; main thread.
class LumicorDelegateProxy : public Object<LumicorDelegateProxy, NSObject> {
 public:
  explicit LumicorDelegateProxy(const Ref<NSObject>& originalDelegate) : originalDelegate_(originalDelegate) {}

  /// None when there is none or it is gone.
  Ref<NSObject> originalDelegate() const { return originalDelegate_.lock(); }

  /// What the host's delegate answers, and what the proxy itself hears.
  bool respondsToSelector(SEL selector) const override;
  Ref<NSObject> forwardingTargetForSelector(SEL selector) const override;

  /// Another proxy stands in front of the same control: this one only hands calls on from now on. The other one keeps
  /// it, because the delegate that the host set over this one may well call it; of many, the last few.
  void giveWayTo(LumicorDelegateProxy& successor);

 protected:
  /// True while calls are to be registered: during a demonstration, by the proxy in front.
  bool isRegistering() const;
  /// Hands a call on to the host's delegate, when it hears such calls.
  template <class... Args>
  void forward(SEL selector, const Args&... args) const {
    sendOptional(originalDelegate(), selector, args...);
  }

 private:
  bool originalResponds(SEL selector) const;

  const Weak<NSObject> originalDelegate_;
  Ref<LumicorDelegateProxy> predecessor_;
  bool isRetired_ = false;
};

}  // namespace lumicor
