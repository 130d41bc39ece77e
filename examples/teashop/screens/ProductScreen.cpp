#include "examples/teashop/screens/ProductScreen.h"

#include <algorithm>
#include <cmath>

#include "examples/teashop/views/Arrange.h"
#include "examples/teashop/views/PictureCell.h"
#include "examples/teashop/views/TeaPictures.h"
#include "examples/teashop/views/Theme.h"
#include "platform/uikit/UIKit.h"

namespace teashop {

using namespace platform;

namespace {

constexpr std::int64_t pictureCount = 3;
constexpr double galleryHeight = 216;

Ref<UIImage> pictureOf(const Product& product, std::int64_t page, CGSize size) {
  const UIColor liquor = colorOf(product.liquor);
  switch (page) {
    case 0:
      return teaPictures::cup(size, liquor);
    case 1:
      return teaPictures::tin(size, liquor, product.name);
    default:
      return teaPictures::hills(size, UIColor(0.36, 0.55, 0.42, 1), static_cast<unsigned>(product.price));
  }
}

std::string stockText(const Product& product) {
  if (product.packetsLeft == 0) return "Sold out; new tea comes on Thursday";
  if (product.packetsLeft <= 5) return "Only " + std::to_string(product.packetsLeft) + " packets left";
  return std::to_string(product.packetsLeft) + " packets in the shop";
}

}  // namespace

void ProductScreen::exportMethods(MethodTable<ProductScreen>& table) {
  table.add<&ProductScreen::addToCart>("addToCart")
      .add<&ProductScreen::quantityChanged>("quantityChanged")
      .add<&ProductScreen::favouriteChanged>("favouriteChanged")
      .add<&ProductScreen::share>("share")
      .add<&ProductScreen::pageChosen>("pageChosen")
      .add<&ProductScreen::didScroll>("scrollViewDidScroll:")
      .add<&ProductScreen::numberOfPictures>("collectionView:numberOfItemsInSection:")
      .add<&ProductScreen::picture>("collectionView:cellForItemAtIndexPath:");
}

void ProductScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle(product_.name);
  view()->setBackgroundColor(theme::paper);
  auto share = make<UIBarButtonItem>(UIBarButtonSystemItem::action, self(), sel("share"));
  share->setAccessibilityIdentifier("productShare");
  navigationItem()->setRightBarButtonItem(share);

  auto gallery = makeGallery();
  auto description = makeDescription();
  auto purchase = makePurchase();
  for (const Ref<UIView>& part : {gallery, description, purchase}) view()->addSubview(part);
  const auto safe = view()->safeAreaLayoutGuide();
  const auto across = [&](const Ref<UIView>& part, double margin) {
    NSLayoutConstraint::activateConstraints({
        part->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), margin),
        part->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -margin),
    });
  };
  across(gallery, 0);
  across(description, theme::margin);
  across(purchase, theme::margin);
  NSLayoutConstraint::activateConstraints({
      gallery->topAnchor().constraintEqualToAnchor(safe->topAnchor()),
      description->topAnchor().constraintEqualToAnchor(gallery->bottomAnchor(), 2),
      purchase->bottomAnchor().constraintEqualToAnchor(safe->bottomAnchor(), -12),
  });
  quantityChanged();
}

Ref<UIView> ProductScreen::makeGallery() {
  auto layout = make<UICollectionViewFlowLayout>();
  layout->setScrollDirection(UICollectionViewScrollDirection::horizontal);
  layout->setItemSize({view()->bounds().size.width, galleryHeight});
  layout->setMinimumLineSpacing(0);
  gallery_ = make<UICollectionView>(CGRect{}, layout);
  gallery_->setAccessibilityIdentifier("productGallery");
  gallery_->setBackgroundColor(theme::paper);
  gallery_->setPagingEnabled(true);
  gallery_->setShowsHorizontalScrollIndicator(false);
  gallery_->setAllowsSelection(false);
  gallery_->registerClass<PictureCell>(PictureCell::reuseIdentifier);
  gallery_->setDataSource(self());
  gallery_->setDelegate(self());
  setHeight(gallery_, galleryHeight);
  pages_ = make<UIPageControl>();
  pages_->setNumberOfPages(pictureCount);
  pages_->setPageIndicatorTintColor(theme::line);
  pages_->setCurrentPageIndicatorTintColor(theme::leaf);
  pages_->setAccessibilityIdentifier("productPages");
  pages_->addTarget(self(), sel("pageChosen"), UIControlEvents::valueChanged);
  setHeight(pages_, 24);
  return makeColumn({gallery_, pages_}, 2);
}

Ref<UIView> ProductScreen::makeDescription() {
  auto name = makeLabel(product_.name, theme::title(), theme::ink);
  name->setAccessibilityIdentifier("productName");
  favourite_ = make<FavouriteControl>();
  favourite_->setAccessibilityIdentifier("favourite");
  favourite_->setSelected(shop_->favourites.contains(product_.id));
  favourite_->addTarget(self(), sel("favouriteChanged"), UIControlEvents::valueChanged);
  keepWidth(favourite_);
  auto origin =
      makeLabel(std::string(kindName(product_.kind)) + " tea \u00b7 " + product_.origin, theme::body(), theme::inkSoft);
  auto description = makeLabel(product_.description, theme::body(), theme::ink);
  description->setAccessibilityIdentifier("productDescription");
  auto heading = makeRow({name, favourite_}, 8);
  auto column = makeColumn({heading, origin, description, makeStock()}, 14);
  column->setCustomSpacing(2, heading);
  return column;
}

Ref<UIView> ProductScreen::makeStock() {
  auto level = make<UIProgressView>();
  level->setTranslatesAutoresizingMaskIntoConstraints(false);
  level->setAccessibilityIdentifier("stockLevel");
  level->setProgressTintColor(product_.packetsLeft <= 5 ? theme::amber : theme::leaf);
  level->setTrackTintColor(theme::line);
  auto left = make<NSProgress>(product_.packetsDelivered);
  left->setCompletedUnitCount(product_.packetsLeft);
  level->setObservedProgress(left);
  setWidth(level, 96);
  auto note = makeLabel(stockText(product_), theme::caption(), theme::inkSoft);
  note->setAccessibilityIdentifier("stockNote");
  return makeRow({level, note}, 12);
}

Ref<UIView> ProductScreen::makePurchase() {
  auto price = makeLabel(priceText(product_.price), UIFont::systemFont(22, UIFontWeightSemibold), theme::leaf);
  price->setAccessibilityIdentifier("productPrice");
  auto packet = makeLabel("for " + std::to_string(product_.grams) + " g", theme::caption(), theme::inkSoft);
  quantity_ = make<QuantityControl>();
  quantity_->setRange(1, Cart::maximumOfOne);
  quantity_->addTarget(self(), sel("quantityChanged"), UIControlEvents::valueChanged);
  setWidth(quantity_, 148);
  setHeight(quantity_, 44);
  add_ = make<PrimaryButton>();
  add_->setAccessibilityIdentifier("addToCart");
  add_->addTarget(self(), sel("addToCart"), UIControlEvents::touchUpInside);
  add_->setEnabled(product_.packetsLeft > 0);
  setHeight(add_, 52);
  added_ = makeLabel("", theme::caption(), theme::leaf);
  added_->setAccessibilityIdentifier("addedNote");
  added_->setTextAlignment(NSTextAlignment::center);
  setHeight(added_, 18);
  auto column = makeColumn({makeRow({makeColumn({price, packet}, 1), quantity_}, 12), add_, added_}, 10);
  column->setCustomSpacing(18, column->arrangedSubviews().front());
  return column;
}

void ProductScreen::quantityChanged() {
  add_->setTitle("Add to cart \u00b7 " + priceText(product_.price * quantity_->quantity()), UIControlState::normal);
}

void ProductScreen::addToCart() {
  shop_->cart.add(product_, quantity_->quantity());
  added_->setText(std::to_string(quantity_->quantity()) + (quantity_->quantity() == 1 ? " packet is" : " packets are") +
                  " in your cart");
}

void ProductScreen::favouriteChanged() {
  if (favourite_->isSelected()) {
    shop_->favourites.insert(product_.id);
  } else {
    shop_->favourites.erase(product_.id);
  }
}

void ProductScreen::share() {
  UIPasteboard::general().setString("https://teashop.example/tea/" + product_.id);
  added_->setText("The link is on your clipboard");
}

void ProductScreen::pageChosen() {
  gallery_->setContentOffset({static_cast<double>(pages_->currentPage()) * gallery_->bounds().size.width, 0}, true);
}

void ProductScreen::didScroll(const Ref<NSObject>&) {
  const double width = gallery_->bounds().size.width;
  if (width > 0) pages_->setCurrentPage(std::lround(gallery_->contentOffset().x / width));
}

std::int64_t ProductScreen::numberOfPictures(const Ref<UICollectionView>&, std::int64_t) { return pictureCount; }

Ref<UICollectionViewCell> ProductScreen::picture(const Ref<UICollectionView>& view, const IndexPath& path) {
  auto cell = as<PictureCell>(view->dequeueReusableCell(PictureCell::reuseIdentifier, path));
  cell->show(pictureOf(product_, path.item(), {view->bounds().size.width, galleryHeight}),
             "productImage-" + std::to_string(path.item()));
  return cell;
}

}  // namespace teashop
