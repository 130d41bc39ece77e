#pragma once

#include "examples/teashop/Shop.h"
#include "examples/teashop/model/Stories.h"
#include "platform/uikit/controllers/UISearchController.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/lists/UICollectionView.h"

namespace teashop {

/// A gallery of stories about tea, in two sections, with a search in the navigation bar. An item leads to its story by
/// the segue "showStory".
class StoriesScreen final : public platform::Object<StoriesScreen, platform::UIViewController> {
 public:
  explicit StoriesScreen(ShopRef shop) : shop_(std::move(shop)) {}
  void viewDidLoad() override;
  void prepareForSegue(platform::Ref<platform::UIStoryboardSegue> segue,
                       platform::Ref<platform::NSObject> sender) override;

  static void exportMethods(platform::MethodTable<StoriesScreen>& table);

 private:
  void buildGallery();
  void buildSearch();
  void show(const std::string& words);
  void textDidChange(const platform::Ref<platform::UISearchBar>& bar, const std::string& text);
  void searchClicked(const platform::Ref<platform::UISearchBar>& bar);
  void cancelClicked(const platform::Ref<platform::UISearchBar>& bar);
  std::int64_t numberOfSections(const platform::Ref<platform::UICollectionView>& view);
  std::int64_t numberOfItems(const platform::Ref<platform::UICollectionView>& view, std::int64_t section);
  platform::Ref<platform::UICollectionViewCell> cellForItem(const platform::Ref<platform::UICollectionView>& view,
                                                            const platform::IndexPath& path);
  void didSelectItem(const platform::Ref<platform::UICollectionView>& view, const platform::IndexPath& path);
  platform::Ref<platform::UICollectionReusableView> header(const platform::Ref<platform::UICollectionView>& view,
                                                           const std::string& kind, const platform::IndexPath& path);

  ShopRef shop_;
  std::vector<StoryShelf> shelves_;
  platform::Ref<platform::UICollectionView> gallery_;
  platform::Ref<platform::UISearchController> search_;
};

}  // namespace teashop
