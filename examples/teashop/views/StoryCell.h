#pragma once

#include "examples/teashop/model/Stories.h"
#include "platform/uikit/lists/UICollectionViewCell.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"

namespace teashop {

/// A story in the gallery: its picture, title and place. A touch follows the segue "showStory" of the screen.
class StoryCell final : public platform::Object<StoryCell, platform::UICollectionViewCell> {
 public:
  static constexpr const char* reuseIdentifier = "StoryCell";
  void initWithFrame(platform::CGRect frame) override;
  void setHighlighted(bool highlighted) override;
  void layoutSubviews() override;
  /// The cell is named "story-<section>-<item>-SegueIdentifier-showStory".
  void show(const Story& story, std::int64_t section, std::int64_t item);

 private:
  platform::Ref<platform::UIImageView> picture_;
  platform::Ref<platform::UILabel> title_;
  platform::Ref<platform::UILabel> place_;
};

/// The heading of a shelf of stories.
class StoryHeader final : public platform::Object<StoryHeader, platform::UICollectionReusableView> {
 public:
  static constexpr const char* reuseIdentifier = "StoryHeader";
  void initWithFrame(platform::CGRect frame) override;
  void layoutSubviews() override;
  void show(const std::string& title) { title_->setText(title); }

 private:
  platform::Ref<platform::UILabel> title_;
};

}  // namespace teashop
