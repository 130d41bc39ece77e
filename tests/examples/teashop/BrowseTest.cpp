#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/controls/UIPageControl.h"
#include "platform/uikit/device/UIPasteboard.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/UITableView.h"
#include "tests/examples/teashop/ShopFixture.h"

namespace teashop::test {

using testing::HasSubstr;

using BrowseTest = ShopFixture;

TEST_F(BrowseTest, AFilterAppliesOnceItIsAppliedAndCanBeReset) {
  open("shop");
  tapBarButton("shopFilter");
  ASSERT_EQ(screenName(), "FilterScreen");
  tapText("Herbal");
  tap("filterCaffeineFree");
  drag("filterPrice", 0, 0);
  tapBarButton("filterCancel");
  EXPECT_FALSE(shop()->filter.isOn()) << "nothing changes before it is applied";
  tapBarButton("shopFilter");
  tapText("Herbal");
  tapText("Show 3 teas");
  EXPECT_EQ(screenName(), "ShopScreen");
  EXPECT_EQ(text("filterNote"), "Herbal teas \u00b7 3 teas");
  EXPECT_EQ(find<UITableView>("productList")->numberOfSections(), 1);
  tapBarButton("shopFilter");
  tapText("Reset");
  tapBarButton("filterApply");
  EXPECT_EQ(find<UITableView>("productList")->numberOfSections(), 5);
  EXPECT_FALSE(shows("filterNote"));
}

TEST_F(BrowseTest, ALongPressOffersToMakeATeaAFavourite) {
  open("shop");
  const CGRect row = find("product-sencha")->convertRect(find("product-sencha")->bounds(), nullptr);
  TouchDriver hand;
  hand.longPress({row.midX(), row.midY()}, 0.8);
  RunLoop::advance(2);
  EXPECT_EQ(screenName(), "UIAlertController");
  tapText("Add to favourites");
  EXPECT_TRUE(shop()->favourites.contains("sencha"));
  open("product");
  EXPECT_TRUE(find<UIControl>("favourite")->isSelected());
  tap("favourite");
  EXPECT_FALSE(shop()->favourites.contains("sencha"));
}

TEST_F(BrowseTest, TheSearchFindsWhileOneTypesAndEndsWhereItBegan) {
  open("shop");
  tapBarButton("shopSearch");
  ASSERT_EQ(screenName(), "SearchScreen");
  type("alishan");
  EXPECT_EQ(find<UITableView>("searchResults")->numberOfRowsInSection(0), 1);
  EXPECT_THAT(text("searchNote"), HasSubstr("1 tea for"));
  type("x");
  EXPECT_EQ(find<UITableView>("searchResults")->numberOfRowsInSection(0), 0);
  EXPECT_THAT(text("searchNote"), HasSubstr("No tea"));
  tapText("Cancel");
  EXPECT_EQ(screenName(), "ShopScreen");
}

TEST_F(BrowseTest, PicturesArePagesAndTheLinkGoesToTheClipboard) {
  open("product");
  drag("productGallery", -260, 0);
  EXPECT_EQ(find<UIPageControl>("productPages")->currentPage(), 1);
  EXPECT_TRUE(shows("productImage-1"));
  tapBarButton("productShare");
  EXPECT_EQ(UIPasteboard::general().string(), "https://teashop.example/tea/sencha");
  tap("quantityPlus");
  tap("addToCart");
  EXPECT_EQ(shop()->cart.count(), 2);
}

TEST_F(BrowseTest, ATouchOnAStoryOpensItOnce) {
  open("stories");
  tap("story-0-1-SegueIdentifier-showStory");
  EXPECT_EQ(screenName(), "StoryScreen");
  EXPECT_EQ(text("storyTitle"), "Three weeks of shade");
  EXPECT_EQ(navigation()->viewControllers().size(), 2u);
  tapBarButton("storyFavourite");
  EXPECT_EQ(text("storyNote"), "Kept among your favourites");
}

TEST_F(BrowseTest, StoriesAreSearchedInTheBar) {
  open("stories");
  tap("storySearch");
  type("fridge");
  const auto gallery = find<UICollectionView>("storyGallery");
  EXPECT_EQ(gallery->numberOfItemsInSection(0), 0);
  EXPECT_EQ(gallery->numberOfItemsInSection(1), 1);
  tapText("Cancel");
  EXPECT_EQ(gallery->numberOfItemsInSection(0), 12);
}

TEST(TeaFilter, LetsThroughWhatFitsEveryPart) {
  TeaFilter filter{.kind = TeaKind::green, .mostPrice = 1000, .caffeineFree = false, .inStock = true};
  EXPECT_EQ(filter.inWords(), "Green teas up to \u00a310.00, in stock");
  for (const TeaShelf& shelf : shelves(filter)) {
    for (const Product* tea : shelf.teas) EXPECT_TRUE(tea->kind == TeaKind::green && tea->price <= 1000) << tea->id;
  }
  filter.caffeineFree = true;
  EXPECT_EQ(teaCount(shelves(filter)), 0u);
  EXPECT_EQ(teaCount(shelves({})), catalogue().size());
}

}  // namespace teashop::test
