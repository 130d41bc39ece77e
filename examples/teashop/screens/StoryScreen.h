#pragma once

#include "examples/teashop/Shop.h"
#include "examples/teashop/model/Stories.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/views/UILabel.h"

namespace teashop {

/// One story to read. The heart in the bar keeps it among the favourites.
class StoryScreen final : public platform::Object<StoryScreen, platform::UIViewController> {
 public:
  explicit StoryScreen(ShopRef shop) : shop_(std::move(shop)) {}
  /// Before the screen is shown.
  void setStory(Story story) { story_ = std::move(story); }
  void viewDidLoad() override;

  static void exportMethods(platform::MethodTable<StoryScreen>& table);

 private:
  void turnFavouriteOver();
  void showFavourite();

  ShopRef shop_;
  Story story_;
  platform::Ref<platform::UIBarButtonItem> favourite_;
  platform::Ref<platform::UILabel> note_;
};

}  // namespace teashop
