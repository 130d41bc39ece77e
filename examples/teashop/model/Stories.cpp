#include "examples/teashop/model/Stories.h"

#include "examples/teashop/model/TeaFilter.h"

namespace teashop {

const std::vector<StoryShelf>& storyShelves() {
  static const std::vector<StoryShelf> shelves = {
      {"Gardens",
       {
           {"Before the mist lifts", "Alishan",
            "At 1,200 metres the pickers start at five, while the leaves are still wet. By nine the sun has climbed "
            "over "
            "the ridge, the baskets are full, and nobody touches a bush again until the afternoon clouds "
            "return.\n\nThe "
            "leaf is spread on bamboo under nets. It will be turned by hand eleven times before night.",
            0x7FA58A},
           {"Three weeks of shade", "Yame",
            "Straw mats are drawn over the bushes in April. The leaves answer by growing wider and darker, and keep "
            "what "
            "the sun would have used up: the taste of broth that makes gyokuro what it is.",
            0x5F8F6B},
           {"The March flush", "Darjeeling",
            "When the first shoots break, a garden of two hundred people has twelve days. Every leaf is weighed "
            "against "
            "the weather; a single warm night can end the season.",
            0xB99A5B},
           {"Smoke on purpose", "Wuyi",
            "Pine roots burn under the drying floor for eight hours. Someone sits beside the fire all night, not to "
            "feed "
            "it but to keep it from burning too well.",
            0x8A6A4F},
           {"A wall of camellias", "Fuding",
            "White tea is hardly made at all: it is picked, laid in the wind and left alone. What is hard is to find "
            "two "
            "dry days in a row.",
            0xC9BE93},
           {"Red bush country", "Cederberg",
            "Rooibos grows nowhere else. Farmers have tried on four continents; the plant wants this sand, this winter "
            "rain and, it seems, these particular ants.",
            0xA9603F},
           {"The river garden", "Brahmaputra",
            "Assam is flat, hot and wet, and its tea tastes of it: malt, earth and the memory of water. In the rains "
            "the "
            "pickers go to work by boat.",
            0x4F8578},
           {"Flowers at dusk", "Nile delta",
            "Chamomile is gathered in the last hour of light, when the heads are dry and the bees have gone. A good "
            "hand "
            "combs forty kilos a day.",
            0xD9B65C},
           {"Jasmine, seven nights", "Fujian",
            "The blossom opens after dark. Each night it is mixed with the tea, and each morning sifted out again, "
            "spent. "
            "After seven nights the leaf has forgotten that it ever smelled of anything else.",
            0x9FB48A},
           {"Stone and steam", "Kakegawa",
            "Fukamushi means steamed for long: a minute more than usual. The leaf breaks, the cup turns cloudy, and "
            "the "
            "sharp edge is gone.",
            0x6E9E5A},
           {"Roasting day", "Kyoto",
            "In the street of the roasters you can follow your nose to the right door. Hojicha leaves the drum brown, "
            "light as paper, and smelling of caramel.",
            0x9A6A44},
           {"Mint before noon", "Altmark",
            "Peppermint is cut when it flowers, on a dry morning, and never after noon: by then the sun has taken half "
            "of "
            "the oil.",
            0x7DB39A},
       }},
      {"Brewing",
       {
           {"Water first", "Water",
            "Nine tenths of a cup is water, so begin there. Draw it fresh and cold; water that has boiled twice tastes "
            "flat. If yours is hard, leave it in a filter overnight and give black teas a little longer.",
            0x6C9BB5},
           {"How hot is hot", "Water",
            "Boiling for black and herbal teas, 80 degrees for white and oolong, 70 for green. Without a thermometer: "
            "five minutes after the kettle clicks, the water is fit for sencha.",
            0xB5746C},
           {"The pot you have", "Pots",
            "Porcelain forgets, clay remembers. Use porcelain for everything, and a small clay pot for the one tea you "
            "drink every day.",
            0xA88B72},
           {"A spoon is not a measure", "Leaves",
            "Two grams to a cup is a good start. White tea needs three heaped spoons for it, gunpowder not quite one. "
            "Weigh it once and you will see.",
            0x8C9A76},
           {"Let them open", "Leaves",
            "A rolled oolong grows to six times its size. Give it room: a ball in a tiny sieve is a flower in a fist.",
            0xC2A66B},
           {"The second infusion", "Patience",
            "The first cup wakes the leaf, the second is what you paid for. Make it shorter than the first with "
            "oolong, "
            "the same with green, and do not try with Earl Grey.\n\nGood leaf gives a third one, and with patience a "
            "fourth. When the taste turns thin, it is over; there is no use in waiting longer.",
            0x7B9C84},
           {"Cold brewing", "Water",
            "Ten grams to a litre of cold water, in the fridge, overnight. What makes tea bitter hardly dissolves in "
            "the "
            "cold, so you cannot get it wrong.",
            0x86B0C4},
           {"Whisking matcha", "Tools",
            "Sift it first, or it will clot. A little water at 75 degrees, then draw the letter M with the whisk, "
            "fast, "
            "from the wrist, until the foam stands.",
            0x7FA04C},
           {"Milk in first?", "Manners",
            "It kept thin cups from cracking, long ago. Today it only cools the water. Put it in last, and see what "
            "you "
            "are doing.",
            0xCBB292},
           {"Keeping tea", "Leaves",
            "Away from light, from air and above all from the spice drawer. Green tea is best within half a year; a "
            "white "
            "tea may grow old with you.",
            0x9C8FA8},
       }},
  };
  return shelves;
}

unsigned storyPictureSeed(const Story& story) {
  return static_cast<unsigned>(story.title.size() * 7 + story.text.size());
}

std::vector<StoryShelf> storiesFoundBy(const std::string& words) {
  std::vector<StoryShelf> found;
  for (const StoryShelf& shelf : storyShelves()) {
    found.push_back({shelf.title, {}});
    for (const Story& story : shelf.stories) {
      if (holdsWords(story.title + ' ' + story.place + ' ' + story.text, words)) found.back().stories.push_back(story);
    }
  }
  return found;
}

}  // namespace teashop
