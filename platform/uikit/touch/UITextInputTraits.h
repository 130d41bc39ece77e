#pragma once

namespace platform {

enum class UIKeyboardType { standard, emailAddress, URL, numberPad, decimalPad, phonePad };
enum class UIReturnKeyType { standard, go, next, search, send, done };
enum class UITextAutocapitalizationType { none, words, sentences, allCharacters };

/// What a responder that takes text asks of the software keyboard.
struct UITextInputTraits {
  UIKeyboardType keyboardType = UIKeyboardType::standard;
  UIReturnKeyType returnKeyType = UIReturnKeyType::standard;
  UITextAutocapitalizationType autocapitalizationType = UITextAutocapitalizationType::sentences;
  bool isSecureTextEntry = false;
};

}  // namespace platform
