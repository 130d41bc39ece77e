#include "lumicor/screen/LumicorElementKind.h"

#include <array>
#include <cstdint>
#include <limits>
#include <optional>

#include "lumicor/core/LumicorUtils.h"
#include "lumicor/screen/LumicorDecimalText.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controls/NSProgress.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/controls/UIProgressView.h"
#include "platform/uikit/controls/UISegmentedControl.h"
#include "platform/uikit/controls/UISlider.h"
#include "platform/uikit/controls/UISwitch.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/UIDatePicker.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"
#include "platform/uikit/views/NSAttributedString.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"
#include "platform/uikit/views/UIStackView.h"
#include "platform/uikit/views/WKWebView.h"

namespace lumicor {

namespace {

using Type = LumicorType;
using Input = LumicorInputType;
using Kind = LumicorElementKind;

/// The text of a view that bears one: its text, even an empty one, else its attributed text, else its description.
template <class View>
std::string displayText(View& view) {
  if (std::optional<std::string> text = view.text()) return *std::move(text);
  if (const auto attributed = view.attributedText()) return attributed->string();
  return view.description();
}

Input editableWhen(bool condition) { return condition ? Input::TYPE_EDIT_TEXT : Input::TYPE_DEFAULT; }

std::string offsetText(const UIScrollView& view) {
  const CGPoint offset = view.contentOffset();
  return decimalText(offset.x) + " " + decimalText(offset.y);
}

bool switchesHaveTitles() {
  const std::string_view version = UIDevice::current().systemVersion();
  return LumicorUtils::decimalInteger(version.substr(0, version.find('.'))).value_or(0) >= 14;
}

// ---- One function for each kind of view

Kind ofLabel(UILabel& label) {
  return {Type::TYPE_TEXT, editableWhen(label.isUserInteractionEnabled()), displayText(label)};
}

Kind ofTextView(UITextView& view) { return {Type::TYPE_TEXT, editableWhen(view.isEditable()), displayText(view)}; }

/// A secret is read as bullets, also when its field shows it at the person's wish.
Kind ofTextField(UITextField& field) {
  std::string value = field.wasSecure() ? field.accessibilityValue().value_or("") : displayText(field);
  return {Type::TYPE_TEXT, editableWhen(field.isEnabled()), std::move(value)};
}

Kind ofSearchBar(UISearchBar& bar) {
  const Ref<UITextField>& field = bar.searchTextField();
  const auto value = field && field->wasSecure() ? field->accessibilityValue() : bar.text();
  return {Type::TYPE_SEARCH, Input::TYPE_DEFAULT, value.value_or("")};
}

Kind ofImageView(UIImageView& view) {
  const auto image = view.image();
  return {Type::TYPE_IMAGE, Input::TYPE_DEFAULT, image ? image->description() : ""};
}

Kind ofWebView(WKWebView& view) {
  const auto url = view.URL();
  return {Type::TYPE_WEBVIEW, Input::TYPE_DEFAULT, url ? url->absoluteString() : ""};
}

Kind ofButton(UIButton& button) {
  const auto label = button.titleLabelIfMade();  // reading makes no views
  const bool held = button.isSelected() || button.isHighlighted();
  return {Type::TYPE_INPUT, held ? Input::TYPE_TOGGLE : Input::TYPE_BUTTON, label ? displayText(*label) : ""};
}

Kind ofSwitch(UISwitch& view) {
  std::string value = view.isOn() ? "true" : "false";
  if (switchesHaveTitles()) {
    value += ' ';
    if (const auto title = view.title()) value += *title;
  }
  return {Type::TYPE_INPUT, Input::TYPE_TOGGLE, std::move(value)};
}

Kind ofProgressView(UIProgressView& view) {
  Kind kind{Type::TYPE_INPUT, Input::TYPE_PROGRESS_BAR, ""};
  if (const auto progress = view.observedProgress()) {
    const std::int64_t completed = progress->completedUnitCount();
    const std::int64_t total = progress->totalUnitCount();
    if (total == 0) fatalError("a progress view observes a progress of no units in total");
    if (total == -1 && completed == std::numeric_limits<std::int64_t>::min()) {
      fatalError("a progress view observes a progress that cannot be divided");
    }
    kind.value = std::to_string(completed / total);
  }
  return kind;
}

Kind ofSlider(UISlider& slider) { return {Type::TYPE_INPUT, Input::TYPE_DEFAULT, decimalText(slider.value())}; }

Kind ofPickerView(UIPickerView& picker) {
  const Ref<NSObject> keeper = picker.shared_from_this();  // it may ask its host for rows, who may take it away
  return {Type::TYPE_PICKER_VIEW, Input::TYPE_DEFAULT, std::to_string(picker.selectedRowInComponent(0))};
}

Kind ofScrollView(UIScrollView& view) { return {Type::TYPE_DEFAULT, Input::TYPE_DEFAULT, offsetText(view)}; }

Kind ofDatePicker(UIDatePicker& picker) {
  return {Type::TYPE_INPUT, Input::TYPE_SELECT, decimalText(picker.date().timeIntervalSince1970())};
}

Kind ofSegmentedControl(UISegmentedControl& control) {
  return {Type::TYPE_RADIO_GROUP, Input::TYPE_RADIO,
          std::to_string(control.selectedSegmentIndex()) + " " + std::to_string(control.numberOfSegments())};
}

Kind ofNavigationBar(UINavigationBar& bar) {
  for (const Ref<UIView>& subview : bar.subviews()) {
    if (const auto label = as<UILabel>(subview)) return {Type::TYPE_DEFAULT, Input::TYPE_DEFAULT, displayText(*label)};
    if (const auto text = as<UITextView>(subview)) return {Type::TYPE_DEFAULT, Input::TYPE_DEFAULT, displayText(*text)};
  }
  return {};
}

Kind ofTabBar(UITabBar& bar) {
  Kind kind{Type::TYPE_TABBAR, Input::TYPE_DEFAULT, ""};
  for (Ref<UIResponder> at = as<UIResponder>(bar.shared_from_this()); at; at = at->nextResponder()) {
    if (const auto tabs = as<UITabBarController>(at)) {
      kind.value = std::to_string(tabs->selectedIndex());
      break;
    }
  }
  return kind;
}

Kind ofControl(UIControl&) { return {Type::TYPE_INPUT, Input::TYPE_BUTTON, ""}; }

Kind ofAnythingElse(UIView&) { return {}; }

// ---- The table: the first class that the view belongs to decides

struct Row {
  Class& (*cls)();
  Kind (*classify)(UIView& view);
  bool scrolls;
};

template <class>
struct ViewOf;
template <class View>
struct ViewOf<Kind (*)(View&)> {
  using type = View;
};

template <auto classify, class View = typename ViewOf<decltype(classify)>::type>
constexpr Row row() {
  return {&View::cls, +[](UIView& view) { return classify(static_cast<View&>(view)); },
          std::is_base_of_v<UIScrollView, View>};
}

/// The same answer for a class that must be told apart from those after it.
template <class View, auto classify>
constexpr Row rowOf() {
  Row same = row<classify>();
  same.cls = &View::cls;
  same.scrolls = std::is_base_of_v<UIScrollView, View>;
  return same;
}

constexpr std::array rows = {
    row<&ofLabel>(),
    row<&ofTextView>(),
    row<&ofTextField>(),
    row<&ofSearchBar>(),
    row<&ofImageView>(),
    row<&ofWebView>(),
    row<&ofButton>(),
    row<&ofSwitch>(),
    row<&ofProgressView>(),
    row<&ofSlider>(),
    row<&ofPickerView>(),
    rowOf<UICollectionView, &ofScrollView>(),
    rowOf<UITableView, &ofAnythingElse>(),
    row<&ofScrollView>(),
    row<&ofDatePicker>(),
    row<&ofSegmentedControl>(),
    rowOf<UIStackView, &ofAnythingElse>(),
    row<&ofNavigationBar>(),
    row<&ofTabBar>(),
    row<&ofControl>(),
    row<&ofAnythingElse>(),
};

const Row& findRow(const Class& cls) {
  for (const Row& candidate : rows) {
    if (cls.isSubclassOf(candidate.cls())) return candidate;
  }
  return rows.back();
}

/// The row of a view's class. Screens hold many views of few classes, so the answer is remembered by class.
const Row& rowFor(const UIView& view) {
  struct Entry {
    const Class* cls = nullptr;
    const Row* row = nullptr;
  };
  static std::array<Entry, 64> cache;
  const Class* const cls = &view.knownClass();
  Entry& entry = cache[(reinterpret_cast<std::uintptr_t>(cls) >> 6) % cache.size()];
  if (entry.cls != cls) entry = {cls, &findRow(*cls)};
  return *entry.row;
}

}  // namespace

LumicorElementKind elementKindOf(UIView& view) { return rowFor(view).classify(view); }

bool isScrollContainer(const UIView& view) { return rowFor(view).scrolls; }

LumicorElementKind LumicorUtils::getLumicorElementType(const Ref<UIView>& view) { return elementKindOf(*view); }

}  // namespace lumicor
