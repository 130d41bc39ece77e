#pragma once

#include "lumicor/capture/LumicorDelegateProxy.h"
#include "platform/uikit/Forward.h"

namespace platform {
class NSTimer;
class UITextView;
}  // namespace platform

namespace lumicor {

/// Hears typing into a text view; a burst of it is one action. Main thread.
class LumicorTextViewDelegateProxy final : public Object<LumicorTextViewDelegateProxy, LumicorDelegateProxy> {
 public:
  using Object::Object;
  static void exportMethods(MethodTable<LumicorTextViewDelegateProxy>& table);

  void textViewDidChange(const Ref<UITextView>& textView);

 private:
  void registerNow(const Ref<UITextView>& textView);

  Ref<NSTimer> debounceTimer_;
};

}  // namespace lumicor
