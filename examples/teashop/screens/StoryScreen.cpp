#include "examples/teashop/screens/StoryScreen.h"

#include "examples/teashop/views/Arrange.h"
#include "examples/teashop/views/TeaPictures.h"
#include "examples/teashop/views/Theme.h"
#include "platform/uikit/UIKit.h"

namespace teashop {

using namespace platform;

namespace {

constexpr double pictureHeight = 220;

}  // namespace

void StoryScreen::exportMethods(MethodTable<StoryScreen>& table) {
  table.add<&StoryScreen::turnFavouriteOver>("turnFavouriteOver");
}

void StoryScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle(story_.place);
  view()->setBackgroundColor(theme::paper);
  favourite_ = make<UIBarButtonItem>(UISystemSymbol::image("heart"), UIBarButtonItemStyle::plain, self(),
                                     sel("turnFavouriteOver"));
  favourite_->setAccessibilityIdentifier("storyFavourite");
  navigationItem()->setRightBarButtonItem(favourite_);
  auto picture = make<UIImageView>(
      teaPictures::hills({view()->bounds().size.width, pictureHeight}, colorOf(story_.tint), storyPictureSeed(story_)));
  picture->setTranslatesAutoresizingMaskIntoConstraints(false);
  picture->setContentMode(UIViewContentMode::scaleAspectFill);
  picture->setClipsToBounds(true);
  picture->setAccessibilityIdentifier("storyImage");
  setHeight(picture, pictureHeight);
  auto title = makeLabel(story_.title, theme::title(), theme::ink);
  title->setAccessibilityIdentifier("storyTitle");
  note_ = makeLabel("Kept among your favourites", theme::caption(), theme::leaf);
  note_->setAccessibilityIdentifier("storyNote");
  auto heading = makeColumn({title, note_}, 4);
  showFavourite();
  auto text = make<UITextView>();
  text->setTranslatesAutoresizingMaskIntoConstraints(false);
  text->setEditable(false);
  text->setText(story_.text);
  text->setFont(UIFont::systemFont(17, UIFontWeightRegular));
  text->setTextColor(theme::ink);
  text->setBackgroundColor(std::nullopt);
  text->setTextContainerInset({0, 0, 24, 0});
  text->setAccessibilityIdentifier("storyText");
  for (const Ref<UIView>& part : std::initializer_list<Ref<UIView>>{picture, heading, text}) view()->addSubview(part);
  const auto safe = view()->safeAreaLayoutGuide();
  NSLayoutConstraint::activateConstraints({
      picture->topAnchor().constraintEqualToAnchor(safe->topAnchor()),
      picture->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor()),
      picture->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor()),
      heading->topAnchor().constraintEqualToAnchor(picture->bottomAnchor(), 20),
      heading->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), theme::margin),
      heading->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -theme::margin),
      text->topAnchor().constraintEqualToAnchor(heading->bottomAnchor(), 12),
      text->leadingAnchor().constraintEqualToAnchor(heading->leadingAnchor()),
      text->trailingAnchor().constraintEqualToAnchor(heading->trailingAnchor()),
      text->bottomAnchor().constraintEqualToAnchor(safe->bottomAnchor()),
  });
}

void StoryScreen::turnFavouriteOver() {
  if (shop_->favouriteStories.erase(story_.title) == 0) shop_->favouriteStories.insert(story_.title);
  showFavourite();
}

void StoryScreen::showFavourite() {
  const bool isFavourite = shop_->favouriteStories.contains(story_.title);
  note_->setHidden(!isFavourite);
  favourite_->setImage(UISystemSymbol::image(isFavourite ? "heart.fill" : "heart"));
}

}  // namespace teashop
