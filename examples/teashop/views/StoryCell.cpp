#include "examples/teashop/views/StoryCell.h"

#include "examples/teashop/views/TeaPictures.h"
#include "examples/teashop/views/Theme.h"
#include "platform/animation/CALayer.h"

namespace teashop {

using namespace platform;

namespace {

constexpr double textHeight = 46;
constexpr CGSize pictureSize{180, 140};  // drawn once for every width of phone, then scaled

Ref<UILabel> addLine(const Ref<UIView>& view, const UIFont& font, const UIColor& color) {
  auto label = make<UILabel>();
  label->setFont(font);
  label->setTextColor(color);
  view->addSubview(label);
  return label;
}

}  // namespace

void StoryCell::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  picture_ = make<UIImageView>();
  picture_->setContentMode(UIViewContentMode::scaleAspectFill);
  picture_->setClipsToBounds(true);
  picture_->layer()->setCornerRadius(theme::radius);
  contentView()->addSubview(picture_);
  title_ = addLine(contentView(), UIFont::systemFont(15, UIFontWeightSemibold), theme::ink);
  place_ = addLine(contentView(), theme::caption(), theme::inkSoft);
  setSelectionSegueIdentifier("showStory");
}

void StoryCell::setHighlighted(bool highlighted) {
  Super::setHighlighted(highlighted);
  contentView()->setAlpha(highlighted ? 0.6 : 1);
}

void StoryCell::layoutSubviews() {
  Super::layoutSubviews();
  const CGSize size = bounds().size;
  picture_->setFrame({0, 0, size.width, size.height - textHeight});
  title_->setFrame({2, size.height - textHeight + 6, size.width - 4, 20});
  place_->setFrame({2, size.height - textHeight + 26, size.width - 4, 18});
}

void StoryCell::show(const Story& story, std::int64_t section, std::int64_t item) {
  setAccessibilityIdentifier("story-" + std::to_string(section) + "-" + std::to_string(item) +
                             "-SegueIdentifier-showStory");
  if (title_->text() != story.title) {
    picture_->setImage(teaPictures::hills(pictureSize, colorOf(story.tint), storyPictureSeed(story)));
  }
  title_->setText(story.title);
  place_->setText(story.place);
}

void StoryHeader::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  title_ = make<UILabel>();
  title_->setFont(UIFont::systemFont(20, UIFontWeightBold));
  title_->setTextColor(theme::ink);
  addSubview(title_);
}

void StoryHeader::layoutSubviews() {
  Super::layoutSubviews();
  const CGSize size = bounds().size;
  title_->setFrame({theme::margin, size.height - 32, size.width - 2 * theme::margin, 26});
}

}  // namespace teashop
