#pragma once

#include <functional>
#include <string>

#include "platform/uikit/views/UIView.h"

namespace teashop {

/// Finds views the way a person does: what is on the screen now. Windows front to back, then depth first. Main thread.
namespace screenReader {

using Predicate = std::function<bool(const platform::Ref<platform::UIView>&)>;

/// The first visible view that satisfies the predicate, or none.
platform::Ref<platform::UIView> find(const Predicate& predicate);
platform::Ref<platform::UIView> named(const std::string& accessibilityIdentifier);
platform::Ref<platform::UIView> ofClass(const std::string& className);
/// A button that bears the title.
platform::Ref<platform::UIView> buttonTitled(const std::string& title);
/// A label that reads exactly so.
platform::Ref<platform::UIView> labelReading(const std::string& text);
/// Whether some label on the screen reads exactly so, or holds the text.
bool reads(const std::string& text);
bool readsPartly(const std::string& text);
bool shows(const std::string& accessibilityIdentifier);
/// Whether the named control is there and selected.
bool isSelected(const std::string& accessibilityIdentifier);
/// What the named label, field or text view reads; empty when it is not there.
std::string textOf(const std::string& accessibilityIdentifier);
/// The lowest text of the list in front, as in a chat the last thing that was said.
std::string lowestText();

}  // namespace screenReader

}  // namespace teashop
