#pragma once

#include <string>

#include "platform/uikit/views/UIView.h"

namespace platform {

class UIImageView;
class UILabel;
class UITableView;

enum class UITableViewCellStyle { standard, value1, value2, subtitle };
enum class UITableViewCellSelectionStyle { none, standard };
enum class UITableViewCellAccessoryType { none, disclosureIndicator, detailDisclosureButton, checkmark };

/// One row of a table view. Its subviews belong in the content view. Made with `make<Cell>(style, identifier)`; the
/// table keeps it while it is visible and for reuse afterwards. Main thread.
class UITableViewCell : public Object<UITableViewCell, UIView> {
 public:
  UITableViewCell();
  ~UITableViewCell() override;
  void init() { initWithStyle(UITableViewCellStyle::standard, ""); }
  void init(UITableViewCellStyle style, const std::string& reuseIdentifier) { initWithStyle(style, reuseIdentifier); }
  /// The designated initialiser: subclasses call the base first, then build their subviews.
  virtual void initWithStyle(UITableViewCellStyle style, const std::string& reuseIdentifier);
  static void exportMethods(MethodTable<UITableViewCell>& table);

  const std::string& reuseIdentifier() const { return reuseIdentifier_; }
  UITableViewCellStyle style() const { return style_; }
  /// Called before the cell is handed out again. The base ends selection and highlight.
  virtual void prepareForReuse();

  const Ref<UIView>& contentView() const { return contentView_; }
  /// Made when first asked for. No detail label in the standard style.
  Ref<UILabel> textLabel();
  Ref<UILabel> detailTextLabel();
  Ref<UIImageView> imageView();
  Ref<UIView> backgroundView() const { return backgroundView_; }
  void setBackgroundView(const Ref<UIView>& view);
  Ref<UIView> selectedBackgroundView() const { return selectedBackgroundView_; }
  void setSelectedBackgroundView(const Ref<UIView>& view);

  UITableViewCellAccessoryType accessoryType() const { return accessoryType_; }
  void setAccessoryType(UITableViewCellAccessoryType type);
  Ref<UIView> accessoryView() const { return accessoryView_; }
  void setAccessoryView(const Ref<UIView>& view);
  UITableViewCellSelectionStyle selectionStyle() const { return selectionStyle_; }
  void setSelectionStyle(UITableViewCellSelectionStyle style);
  /// Left and right distances of the separator below; none takes the table's.
  std::optional<UIEdgeInsets> separatorInset() const { return separatorInset_; }
  void setSeparatorInset(std::optional<UIEdgeInsets> insets);

  /// The segue of the screen that a person's choice of the cell performs, after the delegate was told.
  const std::optional<std::string>& selectionSegueIdentifier() const { return selectionSegue_; }
  void setSelectionSegueIdentifier(std::optional<std::string> identifier) { selectionSegue_ = std::move(identifier); }

  bool isSelected() const { return selected_; }
  void setSelected(bool selected) { setSelected(selected, false); }
  virtual void setSelected(bool selected, bool animated);
  bool isHighlighted() const { return highlighted_; }
  void setHighlighted(bool highlighted) { setHighlighted(highlighted, false); }
  virtual void setHighlighted(bool highlighted, bool animated);

  CGSize sizeThatFits(CGSize size) const override;
  void layoutSubviews() override;
  void tintColorDidChange() override;

 private:
  friend class UITableView;
  friend class TableContent;
  /// What the table knows and the cell draws: where in its group the cell stands and the line below it.
  struct Placement {
    bool first = false;
    bool last = false;
    bool separator = false;
    double cornerRadius = 0;
    UIEdgeInsets separatorInset;
    UIColor separatorColor;
    friend bool operator==(const Placement&, const Placement&) = default;
  };
  void setPlacement(const Placement& placement);
  void showSelection(bool animated);
  void accessoryButtonTapped();
  double accessoryWidth() const;
  CGSize layoutLabels(CGRect content, bool apply) const;
  void updateAccessory();
  void updateCorners();

  UITableViewCellStyle style_ = UITableViewCellStyle::standard;
  UITableViewCellSelectionStyle selectionStyle_ = UITableViewCellSelectionStyle::standard;
  UITableViewCellAccessoryType accessoryType_ = UITableViewCellAccessoryType::none;
  std::string reuseIdentifier_;
  Ref<UIView> contentView_;
  Ref<UILabel> textLabel_;
  Ref<UILabel> detailTextLabel_;
  Ref<UIImageView> imageView_;
  Ref<UIView> backgroundView_;
  Ref<UIView> selectedBackgroundView_;
  Ref<UIView> accessoryView_;
  Ref<UIView> standardAccessory_;
  Ref<UIView> separator_;
  Ref<UIView> highlight_;
  std::optional<std::string> selectionSegue_;
  std::optional<UIEdgeInsets> separatorInset_;
  Placement placement_;
  bool selected_ = false;
  bool highlighted_ = false;
};

}  // namespace platform
