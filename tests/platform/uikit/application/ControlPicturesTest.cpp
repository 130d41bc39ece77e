#include "platform/animation/CALayer.h"
#include "platform/foundation/URL.h"
#include "platform/graphics/UIGraphicsImageRenderer.h"
#include "platform/uikit/controls/NSProgress.h"
#include "platform/uikit/controls/UIActivityIndicatorView.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/controls/UIPageControl.h"
#include "platform/uikit/controls/UIProgressView.h"
#include "platform/uikit/controls/UISegmentedControl.h"
#include "platform/uikit/controls/UISlider.h"
#include "platform/uikit/controls/UISwitch.h"
#include "platform/uikit/lists/UIDatePicker.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"
#include "platform/uikit/views/WKWebView.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

Ref<UIImage> leaf() {
  return UIGraphicsImageRenderer(CGSize{22, 22}).imageWithActions([](CGContext& context) {
    context.setFillColor(UIColor::systemGreen());
    context.moveTo({3, 19});
    context.addCurveTo({2, 8}, {10, 2}, {20, 3});
    context.addCurveTo({20, 14}, {12, 20}, {3, 19});
    context.fillPath();
  });
}

/// The states of every control on one sheet each, as a designer would sign them.
class ControlPicturesTest : public AppFixture {
 protected:
  template <class T>
  Ref<T> put(const Ref<T>& view, CGRect frame) {
    view->setFrame(frame);
    content()->addSubview(view);
    return view;
  }
  void caption(const std::string& text, double x, double y) {
    const auto label = make<UILabel>();
    label->setText(text);
    label->setFont(UIFont::systemFont(11));
    label->setTextColor(UIColor::secondaryLabel());
    put(label, {x, y, 110, 16});
  }
};

TEST_F(ControlPicturesTest, Buttons) {
  const char* names[] = {"normal", "highlighted", "selected", "disabled"};
  for (int state = 0; state < 4; ++state) {
    const double y = 70 + state * 60;
    const auto system = put(make<UIButton>(UIButtonType::system), {16, y, 100, 44});
    system->setTitle("System", UIControlState::normal);
    const auto filled = put(make<UIButton>(), {126, y, 120, 44});
    filled->setTitle("Checkout", UIControlState::normal);
    filled->setImage(leaf(), UIControlState::normal);
    filled->setContentEdgeInsets({0, 6, 0, 6});
    filled->setImageEdgeInsets({0, -6, 0, 6});
    filled->setBackgroundColor(UIColor::systemBlue());
    filled->setBackgroundColor(UIColor(0, 0.36, 0.8, 1), UIControlState::highlighted);
    filled->setTitle("In basket", UIControlState::selected);
    filled->layer()->setCornerRadius(10);
    const auto close = put(make<UIButton>(UIButtonType::close), {256, y, 44, 44});
    const auto plain = put(make<UIButton>(), {306, y, 80, 44});
    plain->setTitle("Plain", UIControlState::normal);
    plain->setTitleColor(UIColor::systemPink(), UIControlState::normal);
    plain->setTitleColor(UIColor::gray(), UIControlState::disabled);
    for (const auto& button : {system, filled, close, plain}) {
      if (state == 1) button->setHighlighted(true);
      if (state == 2) button->setSelected(true);
      if (state == 3) button->setEnabled(false);
    }
    caption(names[state], 16, y - 14);
  }
  advance(1);
  picture("buttons");
}

TEST_F(ControlPicturesTest, ValueControls) {
  double y = 70;
  for (const bool enabled : {true, false}) {
    const auto off = put(make<UISwitch>(), {16, y, 0, 0});
    const auto on = put(make<UISwitch>(), {80, y, 0, 0});
    on->setOn(true);
    const auto tinted = put(make<UISwitch>(), {144, y, 0, 0});
    tinted->setOn(true);
    tinted->setOnTintColor(UIColor::systemOrange());
    const auto slider = put(make<UISlider>(), {16, y + 44, 358, 34});
    slider->setValue(0.4f);
    const auto segments =
        put(make<UISegmentedControl>(std::vector<std::string>{"Green", "Black", "Herbal"}), {16, y + 92, 358, 32});
    segments->setSelectedSegmentIndex(1);
    segments->setEnabled(false, 2);
    const auto pages = put(make<UIPageControl>(), {16, y + 134, 358, 26});
    pages->setNumberOfPages(5);
    pages->setCurrentPage(2);
    for (const Ref<UIControl>& control : std::vector<Ref<UIControl>>{off, on, tinted, slider, segments, pages}) {
      control->setEnabled(enabled);
    }
    y += 190;
  }
  const auto none = put(make<UISegmentedControl>(std::vector<std::string>{"One", "Two"}), {16, y, 160, 32});
  none->setSelectedSegmentIndex(-1);
  const auto held = put(make<UISwitch>(), {220, y, 0, 0});
  held->setHighlighted(true);
  const auto progress = put(make<UIProgressView>(), {16, y + 50, 358, 4});
  progress->setProgress(0.7f);
  const auto spinner = put(make<UIActivityIndicatorView>(), {16, y + 70, 20, 20});
  spinner->startAnimating();
  const auto large = put(make<UIActivityIndicatorView>(UIActivityIndicatorViewStyle::large), {60, y + 62, 37, 37});
  large->startAnimating();
  const auto web = put(make<WKWebView>(), {16, y + 110, 358, 120});
  web->loadURL(URL::parse("https://teashop.example/orders/1204?from=mail"));
  web->layer()->setBorderWidth(0.5);
  web->layer()->setBorderColor(UIColor::separator());
  advance(1);
  picture("value-controls");
}

TEST_F(ControlPicturesTest, TextInput) {
  double y = 70;
  const auto field = [&](UITextBorderStyle style, std::optional<std::string> text) {
    const auto made = make<UITextField>();
    made->setBorderStyle(style);
    made->setText(std::move(text));
    made->setPlaceholder("Name of the tea");
    put(made, {16, y, 358, 36});
    y += 46;
    return made;
  };
  field(UITextBorderStyle::roundedRect, "");
  field(UITextBorderStyle::roundedRect, "Darjeeling")->setClearButtonMode(UITextFieldViewMode::always);
  field(UITextBorderStyle::roundedRect, "Disabled")->setEnabled(false);
  field(UITextBorderStyle::roundedRect, "hunter2")->setSecureTextEntry(true);
  field(UITextBorderStyle::line, "Line");
  field(UITextBorderStyle::none, "No border, and more text than there is room for on this one line");
  const auto leading = field(UITextBorderStyle::roundedRect, "With a leaf");
  leading->setLeftView(make<UIImageView>(leaf()));
  leading->setLeftViewMode(UITextFieldViewMode::always);
  field(UITextBorderStyle::roundedRect, "\u05e9\u05dc\u05d5\u05dd \u05e2\u05d5\u05dc\u05dd");
  const auto editing = field(UITextBorderStyle::roundedRect, "Edited now");
  const auto text = make<UITextView>();
  text->setText("A text view wraps its lines at its width.\nAnd it keeps paragraphs apart.");
  text->layer()->setBorderWidth(0.5);
  text->layer()->setBorderColor(UIColor::separator());
  put(text, {16, y, 358, 90});
  editing->setInputView(make<UIView>());  // the keyboard has pictures of its own
  editing->becomeFirstResponder();
  editing->setSelectedRange({0, 6});
  advance(1);
  picture("text-input");
}

TEST_F(ControlPicturesTest, SearchBars) {
  const auto empty = put(make<UISearchBar>(), {0, 60, 390, 52});
  empty->setPlaceholder("Search");
  const auto filled = put(make<UISearchBar>(), {0, 120, 390, 52});
  filled->setText("Oolong");
  filled->setShowsCancelButton(true);
  const auto disabled = put(make<UISearchBar>(), {0, 180, 390, 52});
  disabled->setPlaceholder("Search");
  disabled->setEnabled(false);
  advance(1);
  picture("search-bars");
}

class Wheels : public Object<Wheels, NSObject> {
 public:
  std::int64_t components(const Ref<NSObject>&) { return 2; }
  std::int64_t rows(const Ref<NSObject>&, std::int64_t component) { return component == 0 ? 30 : 4; }
  std::string title(const Ref<NSObject>&, std::int64_t row, std::int64_t component) {
    return component == 0 ? std::to_string(row + 1) + " tins" : std::string(1, static_cast<char>('A' + row));
  }
  static void exportMethods(MethodTable<Wheels>& table) {
    table.add<&Wheels::components>("numberOfComponentsInPickerView:");
    table.add<&Wheels::rows>("pickerView:numberOfRowsInComponent:");
    table.add<&Wheels::title>("pickerView:titleForRow:forComponent:");
  }
};

TEST_F(ControlPicturesTest, Pickers) {
  const auto wheels = make<Wheels>();
  const auto picker = put(make<UIPickerView>(), {0, 60, 390, 216});
  picker->setDataSource(wheels);
  picker->setDelegate(wheels);
  picker->selectRow(7, 0, false);
  const auto date = put(make<UIDatePicker>(), {0, 290, 390, 216});
  date->setDatePickerMode(UIDatePickerMode::date);
  date->setDate(Date(1714564800));
  const auto both = put(make<UIDatePicker>(), {0, 520, 390, 216});
  both->setDate(Date(1714564800));
  both->setEnabled(false);
  advance(1);
  picture("pickers");
}

TEST_F(ControlPicturesTest, Labels) {
  double y = 60;
  const auto label = [&](const std::string& text, double height) {
    const auto made = make<UILabel>();
    made->setText(text);
    put(made, {16, y, 358, height});
    y += height + 10;
    return made;
  };
  label("A plain label", 24);
  label("One line that is too long for the room it has and ends in three dots", 24);
  label(
      "Three lines at most, and this text is long enough to want a fourth one, which it does not get, however much it "
      "goes on about the many kinds of tea there are",
      66)
      ->setNumberOfLines(3);
  label("Right aligned", 24)->setTextAlignment(NSTextAlignment::right);
  const auto centred = label("Centred, bold and blue", 24);
  centred->setTextAlignment(NSTextAlignment::center);
  centred->setFont(UIFont::boldSystemFont(17));
  centred->setTextColor(UIColor::systemBlue());
  label("Disabled", 24)->setEnabled(false);
  const auto fitting = label("Shrinks to fit: a line that is somewhat too long for it", 24);
  fitting->setAdjustsFontSizeToFitWidth(true);
  const auto attributed = label("", 24);
  attributed->setAttributedText(make<NSAttributedString>(
      "With attributes of its own", NSTextAttributes{UIFont::boldSystemFont(17), UIColor::systemPurple(), false, 0}));
  label("Left to right caf\xC3\xA9 and right to left \xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D", 28);
  advance(1);
  picture("labels");
}

class Rows : public Object<Rows, NSObject> {
 public:
  Ref<NSObject> asker;
  std::int64_t sections(const Ref<NSObject>&) { return 2; }
  std::int64_t rows(const Ref<NSObject>&, std::int64_t section) { return section == 0 ? 4 : 3; }
  std::string header(const Ref<NSObject>&, std::int64_t section) { return section == 0 ? "Account" : "Orders"; }
  std::string footer(const Ref<NSObject>&, std::int64_t section) {
    return section == 0 ? "Signed in on this device. Everything here stays on it until you say otherwise." : "";
  }
  Ref<UITableViewCell> cell(const Ref<NSObject>&, IndexPath path) {
    if (path.section() == 1) {
      const auto cell = make<UITableViewCell>(UITableViewCellStyle::subtitle, "order");
      cell->textLabel()->setText("Order " + std::to_string(1200 + path.row()));
      cell->detailTextLabel()->setText("Two tins of Assam");
      cell->imageView()->setImage(leaf());
      cell->setAccessoryType(path.row() == 1 ? UITableViewCellAccessoryType::detailDisclosureButton
                                             : UITableViewCellAccessoryType::disclosureIndicator);
      return cell;
    }
    const auto cell = make<UITableViewCell>(UITableViewCellStyle::value1, "value");
    const char* titles[] = {"Name", "Selected", "Checked", "With a switch"};
    cell->textLabel()->setText(titles[path.row()]);
    cell->detailTextLabel()->setText("Value");
    if (path.row() == 2) cell->setAccessoryType(UITableViewCellAccessoryType::checkmark);
    if (path.row() == 3) {
      cell->detailTextLabel()->setText("");
      const auto accessory = make<UISwitch>();
      accessory->setOn(true);
      cell->setAccessoryView(accessory);
    }
    return cell;
  }
  static void exportMethods(MethodTable<Rows>& table) {
    table.add<&Rows::sections>("numberOfSectionsInTableView:");
    table.add<&Rows::rows>("tableView:numberOfRowsInSection:");
    table.add<&Rows::header>("tableView:titleForHeaderInSection:");
    table.add<&Rows::footer>("tableView:titleForFooterInSection:");
    table.add<&Rows::cell>("tableView:cellForRowAtIndexPath:");
  }
};

TEST_F(ControlPicturesTest, PlainTables) {
  const auto rows = make<Rows>();
  const auto table = put(make<UITableView>(CGRect{}, UITableViewStyle::plain), {0, 47, 390, 797});
  table->setDataSource(rows);
  table->layoutIfNeeded();
  table->selectRow(IndexPath(1, 0), false, UITableViewScrollPosition::none);
  advance(1);
  picture("plain-table");
}

TEST_F(ControlPicturesTest, InsetGroupedTables) {
  const auto rows = make<Rows>();
  const auto table = put(make<UITableView>(CGRect{}, UITableViewStyle::insetGrouped), {0, 47, 390, 797});
  table->setDataSource(rows);
  table->layoutIfNeeded();
  table->selectRow(IndexPath(1, 0), false, UITableViewScrollPosition::none);
  advance(1);
  picture("inset-grouped-table");
}

}  // namespace
}  // namespace platform::test
