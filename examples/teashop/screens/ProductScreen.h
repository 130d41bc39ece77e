#pragma once

#include "examples/teashop/Shop.h"
#include "examples/teashop/views/FavouriteControl.h"
#include "examples/teashop/views/PrimaryButton.h"
#include "examples/teashop/views/QuantityControl.h"
#include "platform/foundation/IndexPath.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/controls/UIPageControl.h"

namespace platform {
class UICollectionView;
class UICollectionViewCell;
}  // namespace platform

namespace teashop {

/// One tea: pictures to swipe through, what it is, how much is left, how many packets, and the button that puts them
/// into the cart. The heart makes it a favourite, the share button copies its link.
class ProductScreen final : public platform::Object<ProductScreen, platform::UIViewController> {
 public:
  ProductScreen(ShopRef shop, const Product& product) : shop_(std::move(shop)), product_(product) {}
  void viewDidLoad() override;

  static void exportMethods(platform::MethodTable<ProductScreen>& table);

 private:
  platform::Ref<platform::UIView> makeGallery();
  platform::Ref<platform::UIView> makeDescription();
  platform::Ref<platform::UIView> makeStock();
  platform::Ref<platform::UIView> makePurchase();
  void addToCart();
  void quantityChanged();
  void favouriteChanged();
  void share();
  void pageChosen();
  void didScroll(const platform::Ref<platform::NSObject>& view);
  std::int64_t numberOfPictures(const platform::Ref<platform::UICollectionView>& view, std::int64_t section);
  platform::Ref<platform::UICollectionViewCell> picture(const platform::Ref<platform::UICollectionView>& view,
                                                        const platform::IndexPath& path);

  ShopRef shop_;
  const Product& product_;
  platform::Ref<platform::UICollectionView> gallery_;
  platform::Ref<platform::UIPageControl> pages_;
  platform::Ref<FavouriteControl> favourite_;
  platform::Ref<QuantityControl> quantity_;
  platform::Ref<PrimaryButton> add_;
  platform::Ref<platform::UILabel> added_;
};

}  // namespace teashop
