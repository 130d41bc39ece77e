#pragma once

#include <string>

#include "platform/uikit/views/UIView.h"

namespace platform {

/// A view that a collection shows and uses again: a cell, or a header or footer of a section. Main thread.
class UICollectionReusableView : public Object<UICollectionReusableView, UIView> {
 public:
  const std::string& reuseIdentifier() const { return reuseIdentifier_; }
  /// Called before the view is handed out again.
  virtual void prepareForReuse() {}

 private:
  friend class CollectionContent;
  std::string reuseIdentifier_;
};

/// One item of a collection view. Its subviews belong in the content view. Made with `make<Cell>(frame)`.
class UICollectionViewCell : public Object<UICollectionViewCell, UICollectionReusableView> {
 public:
  void initWithFrame(CGRect frame) override;
  /// The base ends selection and highlight.
  void prepareForReuse() override;

  const Ref<UIView>& contentView() const { return contentView_; }
  Ref<UIView> backgroundView() const { return backgroundView_; }
  void setBackgroundView(const Ref<UIView>& view);
  /// Shown while the cell is selected or held.
  Ref<UIView> selectedBackgroundView() const { return selectedBackgroundView_; }
  void setSelectedBackgroundView(const Ref<UIView>& view);
  /// The segue of the screen that a person's choice of the cell performs, after the delegate was told.
  const std::optional<std::string>& selectionSegueIdentifier() const { return selectionSegue_; }
  void setSelectionSegueIdentifier(std::optional<std::string> identifier) { selectionSegue_ = std::move(identifier); }

  bool isSelected() const { return selected_; }
  virtual void setSelected(bool selected);
  bool isHighlighted() const { return highlighted_; }
  virtual void setHighlighted(bool highlighted);
  void layoutSubviews() override;

 private:
  void showState();

  Ref<UIView> contentView_;
  Ref<UIView> backgroundView_;
  Ref<UIView> selectedBackgroundView_;
  std::optional<std::string> selectionSegue_;
  bool selected_ = false;
  bool highlighted_ = false;
};

}  // namespace platform
