#include "platform/uikit/text/KeyboardLayout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string_view>

namespace platform {

namespace {

using Kind = KeyboardKey::Kind;
using Row = std::vector<std::string_view>;

constexpr double side = 3;
constexpr double gap = 6;
constexpr double keyHeight = 42;
constexpr double firstRow = 10;
constexpr double rowPitch = 54;

double rowTop(int row) { return firstRow + row * rowPitch; }

std::string capital(std::string_view letter) {
  std::string text(letter);
  if (text.size() == 1 && text[0] >= 'a' && text[0] <= 'z') text[0] = static_cast<char>(text[0] - 'a' + 'A');
  return text;
}

std::string returnLabel(UIReturnKeyType type) {
  switch (type) {
    case UIReturnKeyType::go:
      return "go";
    case UIReturnKeyType::next:
      return "next";
    case UIReturnKeyType::search:
      return "search";
    case UIReturnKeyType::send:
      return "send";
    case UIReturnKeyType::done:
      return "done";
    case UIReturnKeyType::standard:
      break;
  }
  return "return";
}

/// Lays keys out one row after the other.
class Builder {
 public:
  Builder(double width, bool upper) : width_(width), upper_(upper), letterWidth_((width - 2 * side - 9 * gap) / 10) {}

  double letterWidth() const { return letterWidth_; }

  void centred(int row, const Row& names, double keyWidth) {
    const auto count = static_cast<double>(names.size());
    double x = (width_ - count * keyWidth - (count - 1) * gap) / 2;
    for (const std::string_view name : names) {
      add(Kind::character, upper_ ? capital(name) : std::string(name), {x, rowTop(row), keyWidth, keyHeight});
      x += keyWidth + gap;
    }
  }

  /// The third row: something at the left, characters in the room of seven letters, backspace.
  void thirdRow(Kind leftKind, const std::string& left, const Row& names) {
    const double room = 7 * letterWidth_ + 6 * gap;
    const auto count = static_cast<double>(names.size());
    const double edge = (width_ - room) / 2 - side - gap * 2.4;
    add(leftKind, left, {side, rowTop(2), edge, keyHeight});
    centred(2, names, (room - (count - 1) * gap) / count);
    add(Kind::backspace, "\b", {width_ - side - edge, rowTop(2), edge, keyHeight});
  }

  /// The last row: plane key, space with its neighbours, return.
  void lastRow(const std::string& plane, UIReturnKeyType returnKey, UIKeyboardType type = UIKeyboardType::standard) {
    const double outer = 2 * letterWidth_ + gap + letterWidth_ / 2;
    double x = side;
    add(Kind::plane, plane, {x, rowTop(3), outer, keyHeight});
    x += outer + gap;
    const double end = width_ - side - outer - gap;
    if (type == UIKeyboardType::URL) {
      const double third = (end - x - 2 * gap) / 3;
      for (const std::string_view name : {".", "/", ".com"}) {
        add(Kind::character, std::string(name), {x, rowTop(3), third, keyHeight});
        x += third + gap;
      }
    } else if (type == UIKeyboardType::emailAddress) {
      const double small = letterWidth_ * 1.2;
      add(Kind::space, " ", {x, rowTop(3), end - x - 2 * (small + gap), keyHeight});
      add(Kind::character, "@", {end - 2 * small - gap, rowTop(3), small, keyHeight});
      add(Kind::character, ".", {end - small, rowTop(3), small, keyHeight});
    } else {
      add(Kind::space, " ", {x, rowTop(3), end - x, keyHeight});
    }
    add(Kind::returnKey, "\n", {width_ - side - outer, rowTop(3), outer, keyHeight});
    keys_.back().label = returnLabel(returnKey);
  }

  /// The telephone pad: 1 to 9, then what stands left of the 0.
  void pad(const std::string& left) {
    static constexpr std::array<std::string_view, 9> letters = {"",    "ABC",  "DEF", "GHI", "JKL",
                                                                "MNO", "PQRS", "TUV", "WXYZ"};
    const double keyWidth = (width_ - 2 * side - 2 * gap) / 3;
    const double height = 46;
    const double pitch = height + 6.5;
    const auto frameAt = [&](int column, int row) {
      return CGRect{side + column * (keyWidth + gap), 6 + row * pitch, keyWidth, height};
    };
    for (int i = 0; i < 9; ++i) {
      add(Kind::character, std::to_string(i + 1), frameAt(i % 3, i / 3));
      keys_.back().detail = letters[static_cast<std::size_t>(i)];
    }
    if (!left.empty()) add(Kind::character, left, frameAt(0, 3));
    add(Kind::character, "0", frameAt(1, 3));
    add(Kind::backspace, "\b", frameAt(2, 3));
  }

  KeyboardLayout take() { return {std::move(keys_)}; }

 private:
  void add(Kind kind, std::string name, CGRect frame) {
    std::string label = name;
    if (kind == Kind::space) label = "space";
    if (kind == Kind::backspace || kind == Kind::shift) label.clear();
    keys_.push_back({kind, std::move(name), std::move(label), {}, frame});
  }

  double width_;
  bool upper_;
  double letterWidth_;
  std::vector<KeyboardKey> keys_;
};

double distanceTo(const CGRect& frame, CGPoint point) {
  const double dx = std::max({frame.minX() - point.x, point.x - frame.maxX(), 0.0});
  const double dy = std::max({frame.minY() - point.y, point.y - frame.maxY(), 0.0});
  return std::hypot(dx, dy);
}

}  // namespace

bool KeyboardLayout::isPad(UIKeyboardType type) {
  return type == UIKeyboardType::numberPad || type == UIKeyboardType::decimalPad || type == UIKeyboardType::phonePad;
}

KeyboardLayout KeyboardLayout::make(const UITextInputTraits& traits, KeyboardPlane plane, bool upper, double width) {
  Builder builder(width, upper);
  switch (traits.keyboardType) {
    case UIKeyboardType::numberPad:
      builder.pad("");
      return builder.take();
    case UIKeyboardType::decimalPad:
      builder.pad(".");
      return builder.take();
    case UIKeyboardType::phonePad:
      builder.pad("+");
      return builder.take();
    default:
      break;
  }
  const double letter = builder.letterWidth();
  switch (plane) {
    case KeyboardPlane::letters:
      builder.centred(0, {"q", "w", "e", "r", "t", "y", "u", "i", "o", "p"}, letter);
      builder.centred(1, {"a", "s", "d", "f", "g", "h", "j", "k", "l"}, letter);
      builder.thirdRow(Kind::shift, "shift", {"z", "x", "c", "v", "b", "n", "m"});
      builder.lastRow("123", traits.returnKeyType, traits.keyboardType);
      break;
    case KeyboardPlane::numbers:
      builder.centred(0, {"1", "2", "3", "4", "5", "6", "7", "8", "9", "0"}, letter);
      builder.centred(1, {"-", "/", ":", ";", "(", ")", "$", "&", "@", "\""}, letter);
      builder.thirdRow(Kind::plane, "#+=", {".", ",", "?", "!", "'"});
      builder.lastRow("ABC", traits.returnKeyType);
      break;
    case KeyboardPlane::symbols:
      builder.centred(0, {"[", "]", "{", "}", "#", "%", "^", "*", "+", "="}, letter);
      builder.centred(1, {"_", "\\", "|", "~", "<", ">", "€", "£", "¥", "•"}, letter);
      builder.thirdRow(Kind::plane, "123", {".", ",", "?", "!", "'"});
      builder.lastRow("ABC", traits.returnKeyType);
      break;
  }
  return builder.take();
}

const KeyboardKey* KeyboardLayout::keyAt(CGPoint point) const {
  const KeyboardKey* nearest = nullptr;
  double least = std::numeric_limits<double>::max();
  for (const KeyboardKey& key : keys) {
    const double distance = distanceTo(key.frame, point);
    if (distance < least) {
      least = distance;
      nearest = &key;
    }
  }
  return nearest;
}

const KeyboardKey* KeyboardLayout::keyNamed(const std::string& name) const {
  const auto key = std::find_if(keys.begin(), keys.end(), [&](const KeyboardKey& known) { return known.name == name; });
  return key == keys.end() ? nullptr : &*key;
}

}  // namespace platform
