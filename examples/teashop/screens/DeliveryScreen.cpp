#include "examples/teashop/screens/DeliveryScreen.h"

#include "examples/teashop/model/DeliveryTime.h"
#include "examples/teashop/screens/ConfirmationScreen.h"
#include "examples/teashop/views/Arrange.h"
#include "examples/teashop/views/FormField.h"
#include "examples/teashop/views/Theme.h"
#include "platform/animation/CALayer.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/text/UIKeyboard.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"

namespace teashop {

using namespace platform;

namespace {

constexpr double notesHeight = 92;

std::string summaryOf(const Cart& cart) {
  return std::to_string(cart.count()) + (cart.count() == 1 ? " packet, " : " packets, ") + priceText(cart.total()) +
         ", paid on delivery";
}

}  // namespace

void DeliveryScreen::exportMethods(MethodTable<DeliveryScreen>& table) {
  table.add<&DeliveryScreen::fieldChanged>("fieldChanged")
      .add<&DeliveryScreen::dateTyped>("dateTyped")
      .add<&DeliveryScreen::dateTurned>("dateTurned")
      .add<&DeliveryScreen::giftChanged>("giftChanged")
      .add<&DeliveryScreen::shouldReturn>("textFieldShouldReturn:")
      .add<&DeliveryScreen::placeOrder>("placeOrder")
      .add<&DeliveryScreen::endEditing>("endEditing");
}

void DeliveryScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Delivery");
  view()->setBackgroundColor(theme::paper);
  buildAddress();
  buildTime();
  buildExtras();
  arrange();
  giftChanged();
  const auto observe = [this](const std::string& name, const Ref<NSObject>& object,
                              void (DeliveryScreen::*handle)(const Notification&)) {
    observations_.push_back(NotificationCenter::defaultCenter().addObserver(
        name, object, [weak = weakSelf(), handle](const Notification& notification) {
          if (const Ref<DeliveryScreen> screen = weak.lock()) (screen.get()->*handle)(notification);
        }));
  };
  observe(UITextViewTextDidChangeNotification, notes_, &DeliveryScreen::notesChanged);
  observe(UIKeyboardWillShowNotification, nullptr, &DeliveryScreen::keyboardWillShow);
  observe(UIKeyboardWillHideNotification, nullptr, &DeliveryScreen::keyboardWillHide);
}

void DeliveryScreen::buildAddress() {
  name_ = makeFormField("Who is it for?", "deliveryName");
  street_ = makeFormField("House number and street", "deliveryStreet");
  city_ = makeFormField("Town or city", "deliveryCity");
  for (const auto& field : {name_, street_, city_}) {
    field->setDelegate(self());
    field->addTarget(self(), sel("fieldChanged"), UIControlEvents::editingChanged);
  }
}

void DeliveryScreen::buildTime() {
  datePicker_ = make<UIDatePicker>();
  datePicker_->setDatePickerMode(UIDatePickerMode::date);
  datePicker_->setMinimumDate(deliveryTime::firstDay());
  datePicker_->setAccessibilityIdentifier("deliveryDatePicker");
  datePicker_->addTarget(self(), sel("dateTurned"), UIControlEvents::valueChanged);
  date_ = makeFormField("As soon as possible", "deliveryDate");
  date_->setInputView(datePicker_);
  date_->addTarget(self(), sel("dateTyped"), UIControlEvents::editingChanged);
  dateNote_ = makeLabel("", theme::caption(), theme::inkSoft);
  dateNote_->setAccessibilityIdentifier("deliveryDateNote");
  dateNote_->setHidden(true);
  slotPicker_ = make<SlotPicker>();
  slotPicker_->setAccessibilityIdentifier("deliverySlotPicker");
  slotPicker_->setOnChange([weak = weakSelf()](const std::string& slot) {
    if (const Ref<DeliveryScreen> screen = weak.lock()) screen->slot_->setText(slot);
  });
  slot_ = makeFormField("Any time", "deliverySlot");
  slot_->setInputView(slotPicker_);
}

void DeliveryScreen::buildExtras() {
  notes_ = make<UITextView>();
  notes_->setTranslatesAutoresizingMaskIntoConstraints(false);
  notes_->setAccessibilityIdentifier("deliveryNotes");
  notes_->setFont(UIFont::systemFont(17, UIFontWeightRegular));
  notes_->setTextColor(theme::ink);
  notes_->setBackgroundColor(theme::card);
  notes_->layer()->setCornerRadius(6);
  notes_->layer()->setBorderWidth(0.5);
  notes_->layer()->setBorderColor(UIColor::separator());
  notes_->setTextContainerInset({12, 6, 12, 6});
  setHeight(notes_, notesHeight);
  notesHint_ =
      makeLabel("For whoever brings it", UIFont::systemFont(17, UIFontWeightRegular), UIColor::placeholderText());
  notesHint_->setUserInteractionEnabled(false);
  gift_ = make<UISwitch>();
  gift_->setTranslatesAutoresizingMaskIntoConstraints(false);
  gift_->setTitle("Gift wrap");
  gift_->setAccessibilityIdentifier("giftWrap");
  gift_->addTarget(self(), sel("giftChanged"), UIControlEvents::valueChanged);
  total_ = makeLabel("", UIFont::systemFont(17, UIFontWeightSemibold), theme::leaf);
  total_->setAccessibilityIdentifier("deliveryTotal");
  keepWidth(total_);
  place_ = make<PrimaryButton>();
  place_->setTitle("Place order", UIControlState::normal);
  place_->setAccessibilityIdentifier("placeOrder");
  place_->setEnabled(false);
  place_->addTarget(self(), sel("placeOrder"), UIControlEvents::touchUpInside);
  setHeight(place_, 52);
}

void DeliveryScreen::arrange() {
  auto summary = makeLabel(summaryOf(shop_->cart), theme::caption(), theme::inkSoft);
  summary->setAccessibilityIdentifier("deliverySummary");
  auto gift =
      makeRow({makeLabel("Gift wrap \u00b7 " + priceText(giftWrapPrice), theme::body(), theme::ink), gift_}, 12);
  auto total = makeRow({makeLabel("Total", theme::headline(), theme::ink), total_}, 12);
  auto when = makeColumn({withCaption("Day", date_), dateNote_}, 6);
  auto column =
      makeColumn({withCaption("Name", name_), withCaption("Street", street_), withCaption("Town", city_), when,
                  withCaption("Time of day", slot_), withCaption("Notes", notes_), gift, total, summary, place_},
                 18);
  column->setCustomSpacing(4, total);
  notes_->addSubview(notesHint_);
  form_ = make<UIScrollView>();
  form_->setAccessibilityIdentifier("deliveryForm");
  form_->addSubview(column);
  form_->addGestureRecognizer(make<UITapGestureRecognizer>(self(), sel("endEditing")));
  view()->addSubview(form_);
  pin(form_, view());
  pin(column, form_, {20, theme::margin, 24, theme::margin});
  NSLayoutConstraint::activateConstraints({
      column->widthAnchor().constraintEqualToAnchor(form_->widthAnchor(), 1, -2 * theme::margin),
      notesHint_->topAnchor().constraintEqualToAnchor(notes_->topAnchor(), 12),
      notesHint_->leadingAnchor().constraintEqualToAnchor(notes_->leadingAnchor(), 11),
  });
}

// ---- What is filled in

bool DeliveryScreen::isComplete() const {
  for (const auto& field : {name_, street_, city_}) {
    if (field->text().value_or("").empty()) return false;
  }
  return true;
}

void DeliveryScreen::fieldChanged() { place_->setEnabled(isComplete()); }

void DeliveryScreen::dateTyped() {
  const std::string text = date_->text().value_or("");
  const auto day = deliveryTime::dayFromText(text);
  dateNote_->setHidden(text.empty());
  dateNote_->setTextColor(theme::amber);
  if (!day) {
    dateNote_->setText("Please write the day as 2030-12-24");
  } else if (*day < deliveryTime::firstDay()) {
    dateNote_->setText("The first day we can come is " + deliveryTime::dayInWords(deliveryTime::firstDay()));
  } else {
    datePicker_->setDate(*day);
    dateNote_->setTextColor(theme::inkSoft);
    dateNote_->setText(deliveryTime::dayInWords(*day));
  }
}

void DeliveryScreen::dateTurned() {
  date_->setText(deliveryTime::textOfDay(datePicker_->date()));
  dateTyped();
}

void DeliveryScreen::notesChanged(const Notification&) { notesHint_->setHidden(notes_->hasText()); }

void DeliveryScreen::giftChanged() {
  total_->setText(priceText(shop_->cart.total() + (gift_->isOn() ? giftWrapPrice : 0)));
}

bool DeliveryScreen::shouldReturn(const Ref<UITextField>& field) {
  if (field == name_) {
    street_->becomeFirstResponder();
  } else if (field == street_) {
    city_->becomeFirstResponder();
  } else {
    field->resignFirstResponder();
  }
  return true;
}

void DeliveryScreen::endEditing() { view()->endEditing(true); }

void DeliveryScreen::placeOrder() {
  if (!isComplete() || shop_->cart.isEmpty()) return;
  view()->endEditing(true);
  const std::string day = date_->text().value_or("");
  const Order& order = shop_->orders.place(
      shop_->cart, {*name_->text(), *street_->text(), *city_->text(), deliveryTime::dayFromText(day) ? day : "",
                    slot_->text().value_or(""), notes_->text().value_or(""), gift_->isOn()});
  shop_->cart.clear();
  navigationController()->pushViewController(make<ConfirmationScreen>(order), true);
}

// ---- The keyboard

void DeliveryScreen::keyboardWillShow(const Notification& notification) {
  const auto* const keyboard = notification.value<CGRect>(UIKeyboardFrameEndUserInfoKey);
  if (!keyboard || !view()->window()) return;
  const CGRect form = form_->convertRect(form_->bounds(), nullptr);
  const double covered = std::max(0.0, form.maxY() - keyboard->minY() - view()->safeAreaInsets().bottom);
  form_->setContentInset({0, 0, covered, 0});
  for (const Ref<UIView>& field : std::initializer_list<Ref<UIView>>{name_, street_, city_, date_, slot_, notes_}) {
    if (!field->isFirstResponder()) continue;
    form_->scrollRectToVisible(field->convertRect(field->bounds(), form_.get()).insetBy(0, -24), true);
  }
}

void DeliveryScreen::keyboardWillHide(const Notification&) { form_->setContentInset({}); }

}  // namespace teashop
