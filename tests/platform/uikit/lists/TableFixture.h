#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/views/UILabel.h"
#include "tests/platform/uikit/Journal.h"
#include "tests/support/AppFixture.h"

namespace platform::test {

/// A row whose text, wrapped between margins of ten points, decides its height.
class TextRow : public Object<TextRow, UITableViewCell> {
 public:
  Ref<UILabel> label;
  int uses = 1;
  inline static int made = 0;

  void initWithStyle(UITableViewCellStyle style, const std::string& identifier) override {
    Super::initWithStyle(style, identifier);
    ++made;
    label = make<UILabel>();
    label->setNumberOfLines(0);
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    const Ref<UIView>& content = contentView();
    content->addSubview(label);
    NSLayoutConstraint::activateConstraints(
        {label->topAnchor().constraintEqualToAnchor(content->topAnchor(), 10),
         label->leadingAnchor().constraintEqualToAnchor(content->leadingAnchor(), 10),
         label->trailingAnchor().constraintEqualToAnchor(content->trailingAnchor(), -10),
         content->bottomAnchor().constraintEqualToAnchor(label->bottomAnchor(), 10)});
  }
  void prepareForReuse() override {
    Super::prepareForReuse();
    ++uses;
  }
};

/// Data source and delegate of tests: sections of texts.
class Sheet : public Object<Sheet, NSObject> {
 public:
  std::vector<std::vector<std::string>> sections{{}};
  Journal journal;
  int cellsAsked = 0;
  std::set<std::int64_t> refused;  ///< rows that may not be chosen
  std::function<void()> onSelect;

  static Ref<Sheet> of(std::vector<std::string> texts) {
    const auto sheet = make<Sheet>();
    sheet->sections = {std::move(texts)};
    return sheet;
  }
  static Ref<Sheet> numbered(int rows) {
    const auto sheet = make<Sheet>();
    for (int i = 0; i < rows; ++i) sheet->sections[0].push_back("row " + std::to_string(i));
    return sheet;
  }

  std::int64_t sectionCount(const Ref<NSObject>&) { return static_cast<std::int64_t>(sections.size()); }
  std::int64_t rowCount(const Ref<NSObject>&, std::int64_t section) {
    return static_cast<std::int64_t>(sections.at(static_cast<std::size_t>(section)).size());
  }
  Ref<UITableViewCell> cell(const Ref<UITableView>& table, IndexPath path) {
    ++cellsAsked;
    const auto cell = as<TextRow>(table->dequeueReusableCell("row", path));
    cell->label->setText(
        sections.at(static_cast<std::size_t>(path.section())).at(static_cast<std::size_t>(path.row())));
    return cell;
  }
  std::optional<IndexPath> willSelect(const Ref<NSObject>&, IndexPath path) {
    if (refused.contains(path.row())) return std::nullopt;
    return path;
  }
  void didSelect(const Ref<NSObject>&, IndexPath path) {
    journal.note("select" + std::to_string(path.row()));
    if (onSelect) onSelect();
  }
  void didDeselect(const Ref<NSObject>&, IndexPath path) { journal.note("deselect" + std::to_string(path.row())); }

  static void exportMethods(MethodTable<Sheet>& table) {
    table.add<&Sheet::sectionCount>("numberOfSectionsInTableView:");
    table.add<&Sheet::rowCount>("tableView:numberOfRowsInSection:");
    table.add<&Sheet::cell>("tableView:cellForRowAtIndexPath:");
    table.add<&Sheet::willSelect>("tableView:willSelectRowAtIndexPath:");
    table.add<&Sheet::didSelect>("tableView:didSelectRowAtIndexPath:");
    table.add<&Sheet::didDeselect>("tableView:didDeselectRowAtIndexPath:");
  }
};

class TableFixture : public AppFixture {
 protected:
  TableFixture() {
    table->setFrame({0, 100, 390, 500});
    table->setAccessibilityIdentifier("table");
    table->registerClass<TextRow>("row");
    content()->addSubview(table);
  }
  void use(const Ref<Sheet>& data) {
    sheet = data;
    table->setDataSource(sheet);
    table->setDelegate(sheet);
    settle();
  }
  std::string textAt(std::int64_t row, std::int64_t section = 0) const {
    const auto cell = as<TextRow>(table->cellForRowAtIndexPath(IndexPath(row, section)));
    return cell ? *cell->label->text() : "(none)";
  }
  /// What a person reads from top to bottom, checked against where the rows stand.
  std::vector<std::string> shown() const {
    std::vector<std::string> texts;
    double bottom = -1e9;
    for (const Ref<UITableViewCell>& cell : table->visibleCells()) {
      const CGRect frame = cell->frame();
      EXPECT_GE(frame.minY(), bottom - 1e-6);
      EXPECT_EQ(cell->superview(), table);
      bottom = frame.maxY();
      texts.push_back(*as<TextRow>(cell)->label->text());
    }
    return texts;
  }
  std::size_t cellsInTree() const {
    std::size_t count = 0;
    for (const Ref<UIView>& view : table->subviews()) count += as<UITableViewCell>(view) ? 1 : 0;
    return count;
  }

  Ref<UITableView> table = make<UITableView>();
  Ref<Sheet> sheet;
};

inline const std::string manyWords =
    "A text of so many words that it cannot be told on one line, nor on two, of a list as narrow as this.";

}  // namespace platform::test
