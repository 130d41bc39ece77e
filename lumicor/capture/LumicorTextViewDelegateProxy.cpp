#include "lumicor/capture/LumicorTextViewDelegateProxy.h"

#include "lumicor/capture/LumicorPendingInputs.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "platform/foundation/NSTimer.h"
#include "platform/uikit/text/UITextView.h"

namespace lumicor {

namespace {

constexpr double pauseAfterTyping = 1.5;  // seconds

}  // namespace

void LumicorTextViewDelegateProxy::exportMethods(MethodTable<LumicorTextViewDelegateProxy>& table) {
  table.add<&LumicorTextViewDelegateProxy::textViewDidChange>("textViewDidChange:");
}

void LumicorTextViewDelegateProxy::textViewDidChange(const Ref<UITextView>& textView) {
  static const SEL didChange = sel("textViewDidChange:");
  const Ref<NSObject> keeper = shared_from_this();
  forward(didChange, textView);
  if (debounceTimer_) debounceTimer_->invalidate();
  const auto run = [proxy = weakSelf(), view = Weak<UITextView>(textView)] {
    const auto self = proxy.lock();
    const auto alive = view.lock();
    if (self && alive) self->registerNow(alive);
  };
  debounceTimer_ = NSTimer::scheduledTimer(pauseAfterTyping, false, [run](const Ref<NSTimer>&) { run(); });
  if (isRegistering()) LumicorPendingInputs::add(*this, run);
}

void LumicorTextViewDelegateProxy::registerNow(const Ref<UITextView>& textView) {
  debounceTimer_->invalidate();
  LumicorPendingInputs::forget(*this);
  if (isRegistering()) LumicorTrackingTask::registerUserAction("textView", textView);
}

}  // namespace lumicor
