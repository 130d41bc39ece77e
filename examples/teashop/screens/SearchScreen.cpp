#include "examples/teashop/screens/SearchScreen.h"

#include "examples/teashop/screens/ProductScreen.h"
#include "examples/teashop/views/ProductCell.h"
#include "examples/teashop/views/Theme.h"
#include "lumicor/core/Lumicor.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/constraints/UILayoutGuide.h"
#include "platform/uikit/controllers/UINavigationController.h"

namespace teashop {

using namespace platform;

namespace {

std::string noteFor(const std::string& words, std::size_t count) {
  if (words.empty()) return "";
  const std::string quoted = "\u201c" + words + "\u201d";
  if (count == 0) return "No tea is found by " + quoted;
  return std::to_string(count) + (count == 1 ? " tea for " : " teas for ") + quoted;
}

}  // namespace

void SearchScreen::exportMethods(MethodTable<SearchScreen>& table) {
  table.add<&SearchScreen::textDidChange>("searchBar:textDidChange:")
      .add<&SearchScreen::searchClicked>("searchBarSearchButtonClicked:")
      .add<&SearchScreen::cancelClicked>("searchBarCancelButtonClicked:")
      .add<&SearchScreen::numberOfRows>("tableView:numberOfRowsInSection:")
      .add<&SearchScreen::cellForRow>("tableView:cellForRowAtIndexPath:")
      .add<&SearchScreen::didSelectRow>("tableView:didSelectRowAtIndexPath:");
}

void SearchScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Search");
  view()->setBackgroundColor(theme::paper);
  bar_ = make<UISearchBar>();
  bar_->setTranslatesAutoresizingMaskIntoConstraints(false);
  bar_->setAccessibilityIdentifier("teaSearch");
  bar_->setPlaceholder("Name, kind, taste or origin");
  bar_->setShowsCancelButton(true);
  bar_->setDelegate(self());
  note_ = makeLabel("", theme::caption(), theme::inkSoft);
  note_->setAccessibilityIdentifier("searchNote");
  table_ = make<UITableView>();
  table_->setTranslatesAutoresizingMaskIntoConstraints(false);
  table_->setAccessibilityIdentifier("searchResults");
  table_->setBackgroundColor(theme::paper);
  table_->registerClass<ProductCell>(ProductCell::reuseIdentifier);
  table_->setSeparatorInset({0, 86, 0, 0});
  table_->setDataSource(self());
  table_->setDelegate(self());
  for (const Ref<UIView>& part : std::initializer_list<Ref<UIView>>{bar_, note_, table_}) view()->addSubview(part);
  const auto safe = view()->safeAreaLayoutGuide();
  NSLayoutConstraint::activateConstraints({
      bar_->topAnchor().constraintEqualToAnchor(safe->topAnchor(), 4),
      bar_->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), 8),
      bar_->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -8),
      note_->topAnchor().constraintEqualToAnchor(bar_->bottomAnchor(), 6),
      note_->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), theme::margin),
      note_->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -theme::margin),
      note_->heightAnchor().constraintEqualToConstant(22),
      table_->topAnchor().constraintEqualToAnchor(note_->bottomAnchor(), 6),
      table_->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor()),
      table_->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor()),
      table_->bottomAnchor().constraintEqualToAnchor(safe->bottomAnchor()),
  });
  search("");
}

void SearchScreen::viewWillAppear(bool animated) {
  Super::viewWillAppear(animated);
  if (const auto selected = table_->indexPathForSelectedRow()) table_->deselectRow(*selected, animated);
}

void SearchScreen::viewDidAppear(bool animated) {
  Super::viewDidAppear(animated);
  if (!hasAppeared_) bar_->becomeFirstResponder();
  hasAppeared_ = true;
}

void SearchScreen::search(const std::string& words) {
  found_ = teasFoundBy(words);
  note_->setText(noteFor(words, found_.size()));
  table_->reloadData();
}

void SearchScreen::textDidChange(const Ref<UISearchBar>&, const std::string& text) { search(text); }

void SearchScreen::searchClicked(const Ref<UISearchBar>& bar) {
  search(bar->text().value_or(""));
  bar->resignFirstResponder();
}

void SearchScreen::cancelClicked(const Ref<UISearchBar>& bar) {
  bar->resignFirstResponder();
  bar->setText("");
  search("");
  if (navigationController()) navigationController()->popViewControllerAnimated(true);
}

std::int64_t SearchScreen::numberOfRows(const Ref<UITableView>&, std::int64_t) {
  return static_cast<std::int64_t>(found_.size());
}

Ref<UITableViewCell> SearchScreen::cellForRow(const Ref<UITableView>& table, const IndexPath& path) {
  auto cell = as<ProductCell>(table->dequeueReusableCell(ProductCell::reuseIdentifier, path));
  cell->showResult(*found_[static_cast<std::size_t>(path.row())]);
  cell->setAccessoryType(UITableViewCellAccessoryType::disclosureIndicator);
  return cell;
}

void SearchScreen::didSelectRow(const Ref<UITableView>& table, const IndexPath& path) {
  lumicor::Lumicor::shared().didSelectRow(table, path);
  bar_->resignFirstResponder();
  navigationController()->pushViewController(make<ProductScreen>(shop_, *found_[static_cast<std::size_t>(path.row())]),
                                             true);
}

}  // namespace teashop
