#pragma once

#include "examples/teashop/Shop.h"
#include "examples/teashop/views/PrimaryButton.h"
#include "examples/teashop/views/SlotPicker.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/UIKit.h"

namespace teashop {

/// Where an order goes, when, and what is to be known about it; then it is placed. A form that scrolls clear of the
/// keyboard.
class DeliveryScreen final : public platform::Object<DeliveryScreen, platform::UIViewController> {
 public:
  explicit DeliveryScreen(ShopRef shop) : shop_(std::move(shop)) {}
  void viewDidLoad() override;

  static void exportMethods(platform::MethodTable<DeliveryScreen>& table);

 private:
  void buildAddress();
  void buildTime();
  void buildExtras();
  void arrange();
  void fieldChanged();
  void dateTyped();
  void dateTurned();
  void notesChanged(const platform::Notification& notification);
  void giftChanged();
  bool shouldReturn(const platform::Ref<platform::UITextField>& field);
  void placeOrder();
  void endEditing();
  void keyboardWillShow(const platform::Notification& notification);
  void keyboardWillHide(const platform::Notification& notification);
  bool isComplete() const;

  ShopRef shop_;
  platform::Ref<platform::UIScrollView> form_;
  platform::Ref<platform::UITextField> name_;
  platform::Ref<platform::UITextField> street_;
  platform::Ref<platform::UITextField> city_;
  platform::Ref<platform::UITextField> date_;
  platform::Ref<platform::UIDatePicker> datePicker_;
  platform::Ref<platform::UILabel> dateNote_;
  platform::Ref<platform::UITextField> slot_;
  platform::Ref<SlotPicker> slotPicker_;
  platform::Ref<platform::UITextView> notes_;
  platform::Ref<platform::UILabel> notesHint_;
  platform::Ref<platform::UISwitch> gift_;
  platform::Ref<platform::UILabel> total_;
  platform::Ref<PrimaryButton> place_;
  std::vector<platform::Ref<platform::NotificationCenter::Token>> observations_;
};

}  // namespace teashop
