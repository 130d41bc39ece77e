#include "platform/uikit/device/UIPasteboard.h"

#include "platform/engine/Engine.h"

namespace platform {

UIPasteboard& UIPasteboard::general() {
  static const Ref<UIPasteboard>* const pasteboard = new Ref<UIPasteboard>(make<UIPasteboard>());
  return **pasteboard;
}

std::optional<std::string> UIPasteboard::string() const {
  if (!Engine::shared().isDisplayAvailable()) return text_;
  std::string text = Engine::shared().clipboardText();
  if (text.empty()) return std::nullopt;
  return text;
}

void UIPasteboard::setString(std::optional<std::string> text) {
  if (Engine::shared().isDisplayAvailable()) Engine::shared().setClipboardText(text.value_or(std::string()));
  text_ = std::move(text);
}

}  // namespace platform
