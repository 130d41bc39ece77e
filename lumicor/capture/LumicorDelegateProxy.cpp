#include "lumicor/capture/LumicorDelegateProxy.h"

#include "lumicor/core/Lumicor.h"

namespace lumicor {

namespace {

/// A host that changes delegates all day long leaves no longer chain than this.
constexpr int mostPredecessors = 4;

}  // namespace

bool LumicorDelegateProxy::originalResponds(SEL selector) const {
  const Ref<NSObject> original = originalDelegate();
  return original && original->respondsToSelector(selector);
}

bool LumicorDelegateProxy::respondsToSelector(SEL selector) const {
  return originalResponds(selector) || Super::respondsToSelector(selector);
}

Ref<NSObject> LumicorDelegateProxy::forwardingTargetForSelector(SEL selector) const {
  return originalResponds(selector) ? originalDelegate() : Super::forwardingTargetForSelector(selector);
}

void LumicorDelegateProxy::giveWayTo(LumicorDelegateProxy& successor) {
  isRetired_ = true;
  successor.predecessor_ = std::static_pointer_cast<LumicorDelegateProxy>(shared_from_this());
  LumicorDelegateProxy* last = &successor;
  for (int kept = 0; last && kept < mostPredecessors; ++kept) last = last->predecessor_.get();
  if (last) last->predecessor_ = nullptr;
}

bool LumicorDelegateProxy::isRegistering() const { return Lumicor::isTracking && !isRetired_; }

}  // namespace lumicor
