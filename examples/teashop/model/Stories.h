#pragma once

#include <string>
#include <vector>

namespace teashop {

/// A short piece to read about tea.
struct Story {
  std::string title;
  std::string place;  ///< where it happens, or what it is about, in a word or two
  std::string text;
  unsigned tint;  ///< 0xRRGGBB, of its picture
};

/// Two stories hardly ever have the same: what their pictures are made from.
unsigned storyPictureSeed(const Story& story);

struct StoryShelf {
  std::string title;
  std::vector<Story> stories;
};

/// Gardens, then brewing.
const std::vector<StoryShelf>& storyShelves();

/// The shelves with the stories that hold the words, whatever their case; all of them for none. Shelves stay, also
/// empty ones.
std::vector<StoryShelf> storiesFoundBy(const std::string& words);

}  // namespace teashop
