#include "examples/teashop/screens/StoriesScreen.h"

#include "examples/teashop/screens/StoryScreen.h"
#include "examples/teashop/views/StoryCell.h"
#include "examples/teashop/views/Theme.h"
#include "lumicor/core/Lumicor.h"
#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/controllers/UIStoryboardSegue.h"
#include "platform/uikit/lists/UICollectionViewFlowLayout.h"
#include "platform/uikit/text/UISearchBar.h"

namespace teashop {

using namespace platform;

void StoriesScreen::exportMethods(MethodTable<StoriesScreen>& table) {
  table.add<&StoriesScreen::numberOfSections>("numberOfSectionsInCollectionView:")
      .add<&StoriesScreen::numberOfItems>("collectionView:numberOfItemsInSection:")
      .add<&StoriesScreen::cellForItem>("collectionView:cellForItemAtIndexPath:")
      .add<&StoriesScreen::didSelectItem>("collectionView:didSelectItemAtIndexPath:")
      .add<&StoriesScreen::header>("collectionView:viewForSupplementaryElementOfKind:atIndexPath:")
      .add<&StoriesScreen::textDidChange>("searchBar:textDidChange:")
      .add<&StoriesScreen::searchClicked>("searchBarSearchButtonClicked:")
      .add<&StoriesScreen::cancelClicked>("searchBarCancelButtonClicked:");
}

void StoriesScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Stories");
  view()->setBackgroundColor(theme::paper);
  shelves_ = storyShelves();
  buildGallery();
  buildSearch();
  registerSegue("showStory", SegueKind::show, [weak = weakSelf()]() -> Ref<UIViewController> {
    const Ref<StoriesScreen> screen = weak.lock();
    return make<StoryScreen>(screen ? screen->shop_ : nullptr);
  });
}

void StoriesScreen::buildGallery() {
  const double width = view()->bounds().size.width;
  auto layout = make<UICollectionViewFlowLayout>();
  const double item = (width - 2 * theme::margin - theme::gap) / 2;
  layout->setItemSize({item, 176});
  layout->setMinimumInteritemSpacing(theme::gap);
  layout->setMinimumLineSpacing(14);
  layout->setSectionInset({10, theme::margin, 10, theme::margin});
  layout->setHeaderReferenceSize({width, 48});
  gallery_ = make<UICollectionView>(view()->bounds(), layout);
  gallery_->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
  gallery_->setAccessibilityIdentifier("storyGallery");
  gallery_->setBackgroundColor(theme::paper);
  gallery_->registerClass<StoryCell>(StoryCell::reuseIdentifier);
  gallery_->registerSupplementary([] { return make<StoryHeader>(CGRect{}); },
                                  UICollectionView::elementKindSectionHeader, StoryHeader::reuseIdentifier);
  gallery_->setDataSource(self());
  gallery_->setDelegate(self());
  view()->addSubview(gallery_);
}

void StoriesScreen::buildSearch() {
  search_ = make<UISearchController>();
  search_->setObscuresBackgroundDuringPresentation(false);
  search_->searchBar()->setAccessibilityIdentifier("storySearch");
  search_->searchBar()->setPlaceholder("Search the stories");
  search_->searchBar()->setDelegate(self());
  navigationItem()->setSearchController(search_);
}

void StoriesScreen::show(const std::string& words) {
  shelves_ = storiesFoundBy(words);
  gallery_->reloadData();
}

void StoriesScreen::prepareForSegue(Ref<UIStoryboardSegue> segue, Ref<NSObject> sender) {
  Super::prepareForSegue(segue, sender);
  const auto selected = gallery_->indexPathsForSelectedItems();
  const auto screen = as<StoryScreen>(segue->destinationViewController());
  if (!screen || selected.empty()) return;
  const IndexPath path = selected.front();
  screen->setStory(shelves_[static_cast<std::size_t>(path.section())].stories[static_cast<std::size_t>(path.item())]);
}

/// What happens then is the segue of the cell; the assistant wants to know of the choice.
void StoriesScreen::didSelectItem(const Ref<UICollectionView>& view, const IndexPath& path) {
  lumicor::Lumicor::shared().didSelectItem(view, path);
}

void StoriesScreen::textDidChange(const Ref<UISearchBar>&, const std::string& text) { show(text); }

void StoriesScreen::searchClicked(const Ref<UISearchBar>& bar) {
  show(bar->text().value_or(""));
  bar->resignFirstResponder();
}

void StoriesScreen::cancelClicked(const Ref<UISearchBar>&) {
  search_->setActive(false);
  show("");
}

std::int64_t StoriesScreen::numberOfSections(const Ref<UICollectionView>&) {
  return static_cast<std::int64_t>(shelves_.size());
}

std::int64_t StoriesScreen::numberOfItems(const Ref<UICollectionView>&, std::int64_t section) {
  return static_cast<std::int64_t>(shelves_[static_cast<std::size_t>(section)].stories.size());
}

Ref<UICollectionViewCell> StoriesScreen::cellForItem(const Ref<UICollectionView>& view, const IndexPath& path) {
  auto cell = as<StoryCell>(view->dequeueReusableCell(StoryCell::reuseIdentifier, path));
  cell->show(shelves_[static_cast<std::size_t>(path.section())].stories[static_cast<std::size_t>(path.item())],
             path.section(), path.item());
  return cell;
}

Ref<UICollectionReusableView> StoriesScreen::header(const Ref<UICollectionView>& view, const std::string& kind,
                                                    const IndexPath& path) {
  auto header = as<StoryHeader>(view->dequeueReusableSupplementaryView(kind, StoryHeader::reuseIdentifier, path));
  header->show(shelves_[static_cast<std::size_t>(path.section())].title);
  return header;
}

}  // namespace teashop
