#pragma once

#include <functional>

#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/device/UIPasteboard.h"
#include "platform/uikit/text/TextEditMenu.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"
#include "tests/platform/uikit/Journal.h"
#include "tests/support/AppFixture.h"

namespace platform::test {

inline const std::string flag = "\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA";
/// Four people joined into one picture.
inline const std::string family =
    "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7\xE2\x80\x8D\xF0\x9F\x91\xA6";
inline const std::string shalom = "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D";  // four letters, two bytes each

/// Writes down what it is asked and told of edits, under the names of both.
class Witness : public Object<Witness, NSObject> {
 public:
  Journal journal;
  bool agrees = true;
  std::function<void()> asked = [] {};
  bool shouldChange(const Ref<NSObject>&, NSRange range, const std::string& text) {
    journal.note(std::to_string(range.location) + "+" + std::to_string(range.length) + "=" + text);
    asked();
    return agrees;
  }
  void changed() { journal.note("changed"); }
  void viewChanged(const Ref<NSObject>&) { changed(); }
  void selectionChanged(const Ref<NSObject>&) { journal.note("selection"); }
  static void exportMethods(MethodTable<Witness>& table) {
    table.add<&Witness::shouldChange>("textField:shouldChangeCharactersInRange:replacementString:");
    table.add<&Witness::shouldChange>("textView:shouldChangeTextInRange:replacementText:");
    table.add<&Witness::changed>("changed");
    table.add<&Witness::viewChanged>("textViewDidChange:");
    table.add<&Witness::selectionChanged>("textFieldDidChangeSelection:");
    table.add<&Witness::selectionChanged>("textViewDidChangeSelection:");
  }
};

/// A field or a text view in a window, and keys, fingers and eyes for it.
template <class Text>
class TextEditingFixture : public AppFixture {
 protected:
  TextEditingFixture() {
    text->setFrame({20, 100, 300, 36});
    content()->addSubview(text);
    settle();
  }
  static UIKey typed(const std::string& letters) { return {UIKey::Code::character, letters, false, false}; }
  static UIKey command(const std::string& letter) { return {UIKey::Code::character, letter, false, true}; }
  static UIKey key(UIKey::Code code) { return {code, "", false, false}; }
  static UIKey shift(UIKey::Code code) { return {code, "", true, false}; }
  static UIKey control(UIKey::Code code) { return {code, "", false, true}; }
  static UIKey both(UIKey::Code code) { return {code, "", true, true}; }
  void keys(const std::vector<UIKey>& all) {
    for (const UIKey& pressed : all) UIApplication::shared().deliverKey(pressed);
  }
  /// The text with the selection in brackets, or a bar for the caret.
  std::string shown() const {
    std::string all = text->text().value_or("(none)");
    const NSRange range = text->selectedRange();
    if (range.length == 0) return all.insert(static_cast<std::size_t>(range.location), "|");
    all.insert(static_cast<std::size_t>(range.end()), "]");
    return all.insert(static_cast<std::size_t>(range.location), "[");
  }
  /// Where a finger meets the text in front of that byte.
  CGPoint at(std::int64_t position) const {
    TextStyle style;
    style.font = text->font();
    const std::string all = text->text().value_or("");
    const double x = TextLayout::measure(all.substr(0, static_cast<std::size_t>(position)), style).width;
    const double side = std::is_same_v<Text, UITextView> ? 5 : 0;
    return {20 + side + x + 1, 118};
  }
  /// The titles of the edit menu, from left to right.
  static std::string offered() {
    Journal titles;
    forEachChoice([&](const Ref<UIButton>& choice) { titles.note(choice->currentTitle().value_or("?")); });
    return titles.take();
  }
  void choose(const std::string& title) {
    Ref<UIButton> found;
    forEachChoice([&](const Ref<UIButton>& choice) {
      if (choice->currentTitle() == title) found = choice;
    });
    ASSERT_NE(found, nullptr) << title << " is not offered";
    hands().tap(found);
    advance(0.5);
  }
  static void forEachChoice(const std::function<void(const Ref<UIButton>&)>& visit) {
    const Ref<TextEditMenu> menu = TextEditMenu::current();
    if (!menu) return;
    for (const Ref<UIView>& bar : menu->subviews()) {
      for (const Ref<UIView>& choice : bar->subviews()) {
        if (const auto button = as<UIButton>(choice)) visit(button);
      }
    }
  }

  Ref<Text> text = make<Text>();
};

using Texts = testing::Types<UITextField, UITextView>;

}  // namespace platform::test
