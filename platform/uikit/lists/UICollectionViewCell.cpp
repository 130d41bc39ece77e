#include "platform/uikit/lists/UICollectionViewCell.h"

namespace platform {

void UICollectionViewCell::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  contentView_ = make<UIView>(bounds());
  addSubview(contentView_);
}

void UICollectionViewCell::prepareForReuse() {
  Super::prepareForReuse();
  setHighlighted(false);
  setSelected(false);
}

void UICollectionViewCell::setBackgroundView(const Ref<UIView>& view) {
  if (backgroundView_) backgroundView_->removeFromSuperview();
  backgroundView_ = view;
  if (view) insertSubview(view, 0);
  setNeedsLayout();
}

void UICollectionViewCell::setSelectedBackgroundView(const Ref<UIView>& view) {
  if (selectedBackgroundView_) selectedBackgroundView_->removeFromSuperview();
  selectedBackgroundView_ = view;
  if (view) insertSubview(view, backgroundView_ ? 1 : 0);
  showState();
  setNeedsLayout();
}

void UICollectionViewCell::setSelected(bool selected) {
  selected_ = selected;
  showState();
}

void UICollectionViewCell::setHighlighted(bool highlighted) {
  highlighted_ = highlighted;
  showState();
}

void UICollectionViewCell::showState() {
  if (selectedBackgroundView_) selectedBackgroundView_->setHidden(!selected_ && !highlighted_);
  // A cell without a look of its own for it shows that it is held by fading a little.
  contentView_->setAlpha(highlighted_ && !selectedBackgroundView_ ? 0.6 : 1);
}

void UICollectionViewCell::layoutSubviews() {
  Super::layoutSubviews();
  contentView_->setFrame(bounds());
  if (backgroundView_) backgroundView_->setFrame(bounds());
  if (selectedBackgroundView_) selectedBackgroundView_->setFrame(bounds());
}

}  // namespace platform
