#include "examples/teashop/screens/ShopScreen.h"

#include "examples/teashop/screens/FilterScreen.h"
#include "examples/teashop/screens/ProductScreen.h"
#include "examples/teashop/screens/SearchScreen.h"
#include "examples/teashop/views/ProductCell.h"
#include "examples/teashop/views/Theme.h"
#include "lumicor/core/Lumicor.h"
#include "platform/uikit/UIKit.h"

namespace teashop {

using namespace platform;

namespace {

constexpr double noteHeight = 40;
constexpr const char* headerIdentifier = "KindHeader";

std::string countText(std::size_t count) { return std::to_string(count) + (count == 1 ? " tea" : " teas"); }

}  // namespace

void ShopScreen::exportMethods(MethodTable<ShopScreen>& table) {
  table.add<&ShopScreen::numberOfSections>("numberOfSectionsInTableView:")
      .add<&ShopScreen::numberOfRows>("tableView:numberOfRowsInSection:")
      .add<&ShopScreen::header>("tableView:viewForHeaderInSection:")
      .add<&ShopScreen::cellForRow>("tableView:cellForRowAtIndexPath:")
      .add<&ShopScreen::didSelectRow>("tableView:didSelectRowAtIndexPath:")
      .add<&ShopScreen::openSearch>("openSearch")
      .add<&ShopScreen::openFilter>("openFilter")
      .add<&ShopScreen::pressed>("pressed:");
}

void ShopScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Teas");
  view()->setBackgroundColor(theme::paper);
  auto filter = make<UIBarButtonItem>(UISystemSymbol::image("slider.horizontal.3"), UIBarButtonItemStyle::plain, self(),
                                      sel("openFilter"));
  filter->setAccessibilityIdentifier("shopFilter");
  navigationItem()->setLeftBarButtonItem(filter);
  auto search = make<UIBarButtonItem>(UIBarButtonSystemItem::search, self(), sel("openSearch"));
  search->setAccessibilityIdentifier("shopSearch");
  navigationItem()->setRightBarButtonItem(search);

  table_ = make<UITableView>(view()->bounds());
  table_->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
  table_->setAccessibilityIdentifier("productList");
  table_->setBackgroundColor(theme::paper);
  table_->registerClass<ProductCell>(ProductCell::reuseIdentifier);
  table_->setSeparatorInset({0, 86, 0, 0});
  table_->setDataSource(self());
  table_->setDelegate(self());
  table_->addGestureRecognizer(make<UILongPressGestureRecognizer>(self(), sel("pressed:")));
  view()->addSubview(table_);

  const double width = view()->bounds().size.width;
  note_ = make<UIView>(CGRect{0, 0, width, noteHeight});
  note_->setBackgroundColor(theme::leafTint);
  noteText_ = make<UILabel>(CGRect{theme::margin, 0, width - 2 * theme::margin, noteHeight});
  noteText_->setAutoresizingMask(UIViewAutoresizing::flexibleWidth);
  noteText_->setFont(theme::caption());
  noteText_->setTextColor(theme::leaf);
  noteText_->setAccessibilityIdentifier("filterNote");
  note_->addSubview(noteText_);
  showTeas();
}

void ShopScreen::viewWillAppear(bool animated) {
  Super::viewWillAppear(animated);
  if (shown_ != shop_->filter) showTeas();
  if (const auto selected = table_->indexPathForSelectedRow()) table_->deselectRow(*selected, animated);
}

void ShopScreen::showTeas() {
  shown_ = shop_->filter;
  shelves_ = shelves(shown_);
  noteText_->setText(shop_->filter.inWords() + " \u00b7 " + countText(teaCount(shelves_)));
  table_->setTableHeaderView(shop_->filter.isOn() ? note_ : nullptr);
  table_->reloadData();
}

void ShopScreen::openSearch() { navigationController()->pushViewController(make<SearchScreen>(shop_), true); }

void ShopScreen::openFilter() {
  auto apply = [weak = weakSelf()](const TeaFilter& filter) {
    const Ref<ShopScreen> screen = weak.lock();
    if (!screen) return;
    screen->shop_->filter = filter;
    screen->showTeas();
  };
  presentViewController(make<UINavigationController>(make<FilterScreen>(shop_->filter, std::move(apply))), true);
}

void ShopScreen::pressed(const Ref<NSObject>& sender) {
  const auto press = as<UILongPressGestureRecognizer>(sender);
  if (!press || press->state() != UIGestureRecognizerState::began) return;
  const auto path = table_->indexPathForRowAtPoint(press->locationInView(table_.get()));
  if (path) askAboutFavourite(teaAt(*path));
}

void ShopScreen::askAboutFavourite(const Product& tea) {
  const bool isFavourite = shop_->favourites.contains(tea.id);
  auto question = make<UIAlertController>(
      tea.name, std::optional<std::string>(isFavourite ? "It is one of your favourites." : tea.taste));
  question->addAction(make<UIAlertAction>(isFavourite ? "Remove from favourites" : "Add to favourites",
                                          UIAlertActionStyle::plain, [shop = shop_, isFavourite, id = tea.id] {
                                            if (isFavourite) {
                                              shop->favourites.erase(id);
                                            } else {
                                              shop->favourites.insert(id);
                                            }
                                          }));
  question->addAction(make<UIAlertAction>("Cancel", UIAlertActionStyle::cancel));
  presentViewController(question, true);
}

const Product& ShopScreen::teaAt(const IndexPath& path) const {
  return *shelves_[static_cast<std::size_t>(path.section())].teas[static_cast<std::size_t>(path.row())];
}

std::int64_t ShopScreen::numberOfSections(const Ref<UITableView>&) {
  return static_cast<std::int64_t>(shelves_.size());
}

std::int64_t ShopScreen::numberOfRows(const Ref<UITableView>&, std::int64_t section) {
  return static_cast<std::int64_t>(shelves_[static_cast<std::size_t>(section)].teas.size());
}

Ref<UITableViewHeaderFooterView> ShopScreen::header(const Ref<UITableView>& table, std::int64_t section) {
  auto header = table->dequeueReusableHeaderFooterView(headerIdentifier);
  if (!header) header = make<UITableViewHeaderFooterView>(headerIdentifier);
  header->contentView()->setBackgroundColor(theme::paper);
  header->textLabel()->setText(std::string(kindName(shelves_[static_cast<std::size_t>(section)].kind)));
  header->textLabel()->setTextColor(theme::inkSoft);
  return header;
}

Ref<UITableViewCell> ShopScreen::cellForRow(const Ref<UITableView>& table, const IndexPath& path) {
  auto cell = as<ProductCell>(table->dequeueReusableCell(ProductCell::reuseIdentifier, path));
  cell->showProduct(teaAt(path));
  cell->setAccessoryType(UITableViewCellAccessoryType::disclosureIndicator);
  return cell;
}

void ShopScreen::didSelectRow(const Ref<UITableView>& table, const IndexPath& path) {
  lumicor::Lumicor::shared().didSelectRow(table, path);
  navigationController()->pushViewController(make<ProductScreen>(shop_, teaAt(path)), true);
}

}  // namespace teashop
