#pragma once

#include <string>
#include <vector>

#include "platform/geometry/CGGeometry.h"
#include "platform/uikit/touch/UITextInputTraits.h"

namespace platform {

enum class KeyboardPlane { letters, numbers, symbols };

struct KeyboardKey {
  enum class Kind { character, space, backspace, returnKey, shift, plane };
  Kind kind = Kind::character;
  /// What it types, or what it is called: "a", " ", "\b", "\n", "shift", "123", "ABC", "#+=".
  std::string name;
  std::string label;
  /// The letters under the digit of a telephone key.
  std::string detail;
  CGRect frame;  ///< points, from the panel's top left
};

/// Where the keys of one plane stand. Pure geometry; any thread.
struct KeyboardLayout {
  std::vector<KeyboardKey> keys;
  /// Without the strip below that the safe area asks for.
  static constexpr double height = 216;

  /// `upper`: letters are capitals.
  static KeyboardLayout make(const UITextInputTraits& traits, KeyboardPlane plane, bool upper, double width);
  /// The key that a finger there means, the nearest one; none on a layout without keys.
  const KeyboardKey* keyAt(CGPoint point) const;
  const KeyboardKey* keyNamed(const std::string& name) const;
  static bool isPad(UIKeyboardType type);
};

}  // namespace platform
