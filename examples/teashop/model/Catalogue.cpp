#include "examples/teashop/model/Catalogue.h"

#include <algorithm>
#include <cstdio>

namespace teashop {

std::string priceText(Pence price) {
  char text[32];
  std::snprintf(text, sizeof text, "\u00a3%lld.%02lld", static_cast<long long>(price / 100),
                static_cast<long long>(price % 100));
  return text;
}

std::string_view kindName(TeaKind kind) {
  switch (kind) {
    case TeaKind::green:
      return "Green";
    case TeaKind::black:
      return "Black";
    case TeaKind::oolong:
      return "Oolong";
    case TeaKind::white:
      return "White";
    case TeaKind::herbal:
      return "Herbal";
  }
  return "";
}

const std::vector<Product>& catalogue() {
  static const std::vector<Product> products = {
      {"sencha", "Sencha Fukamushi", "Kakegawa, Japan", "Fresh grass, sweet pea",
       "Steamed twice as long as most, so it pours deep green and tastes round rather than sharp. Brew it cooler than "
       "you "
       "think: 70 \u00b0C, one minute.",
       TeaKind::green, 1250, 100, 0x9DB559, 31, 40, false},
      {"assam", "Assam Mangalam", "Brahmaputra valley, India", "Malt, dried fig",
       "A second-flush leaf with golden tips. Strong enough for milk, sweet enough without.", TeaKind::black, 980, 125,
       0x8A3B1C, 12, 60, false},
      {"oolong", "Milk Oolong", "Alishan, Taiwan", "Cream, orchid",
       "Rolled by hand at 1,200 metres. The leaf opens over five infusions and never turns bitter.", TeaKind::oolong,
       1640, 75, 0xD9B04A, 3, 24, false},
      {"peony", "White Peony", "Fuding, China", "Hay, melon",
       "Buds and the first two leaves, withered in the sun and left alone. Pale, soft, and quietly floral.",
       TeaKind::white, 1490, 50, 0xE6CF8F, 9, 12, false},
      {"earlgrey", "Earl Grey Supreme", "Ceylon and Calabria", "Bergamot, honey",
       "Highland black tea with oil pressed from the peel, and a few cornflowers for the eye.", TeaKind::black, 870,
       125, 0xA2491D, 44, 60, false},
      {"genmaicha", "Genmaicha", "Uji, Japan", "Toasted rice, hazelnut",
       "Green tea with roasted brown rice. Low in caffeine, good with supper.", TeaKind::green, 790, 100, 0xB9B25C, 20,
       40, false},
      {"chamomile", "Chamomile Whole Flower", "Nile delta, Egypt", "Apple, hay",
       "Whole heads, dried slowly. Cover the pot for six minutes and the room smells of orchards.", TeaKind::herbal,
       650, 60, 0xE7B93C, 17, 30, true},
      {"rooibos", "Rooibos Vanilla", "Cederberg, South Africa", "Vanilla, cedar",
       "No caffeine, no tannin, no hurry. Leave it in the pot as long as you like.", TeaKind::herbal, 720, 100,
       0xB5421E, 26, 30, true},
      {"lapsang", "Lapsang Souchong", "Wuyi, China", "Pine smoke, cocoa",
       "Dried over pine embers. A campfire in a cup; a spoonful lifts any blend.", TeaKind::black, 1120, 80, 0x7A2F17,
       2, 20, false},
      {"jasmine", "Jasmine Pearls", "Fujian, China", "Jasmine, pear",
       "Each pearl is two leaves and a bud, scented over seven nights with fresh blossom.", TeaKind::green, 1780, 75,
       0xC9C36A, 0, 24, false},
      {"gyokuro", "Gyokuro Imperial", "Yame, Japan", "Seaweed, cream",
       "Grown in the shade for three weeks, so the leaf keeps what makes it taste of broth. Brew it at 55 \u00b0C and "
       "sip.",
       TeaKind::green, 1980, 50, 0x8FAE4B, 6, 12, false},
      {"matcha", "Matcha for Mornings", "Nishio, Japan", "Spinach, milk",
       "Stone-ground and bright. Whisk two grams until it froths; there is nothing to strain.", TeaKind::green, 1890,
       40, 0x86A83A, 14, 30, false},
      {"hojicha", "Hojicha Kyoto", "Kyoto, Japan", "Caramel, bark",
       "Green tea roasted over charcoal until it is brown. Gentle enough for late evenings.", TeaKind::green, 840, 100,
       0x9A5B2B, 22, 40, false},
      {"darjeeling", "Darjeeling First Flush", "Darjeeling, India", "Muscat grape, meadow",
       "Picked in March, when the bushes wake. Light as a white tea and as lively as a black one.", TeaKind::black,
       1560, 75, 0xC98B3C, 11, 20, false},
      {"tieguanyin", "Tieguanyin Autumn", "Anxi, China", "Lilac, butter",
       "Tightly rolled and barely oxidised. It gives its best in the third infusion.", TeaKind::oolong, 1720, 75,
       0xC7BE5A, 5, 18, false},
      {"silverneedle", "Silver Needle", "Fuding, China", "Cucumber, honeysuckle",
       "Nothing but buds, silver with down. Give them water at 75 \u00b0C and time.", TeaKind::white, 1990, 50,
       0xEADFA8, 4, 10, false},
      {"peppermint", "Peppermint Cut Leaf", "Altmark, Germany", "Menthol, cool hay",
       "Cut in flower, when the oil is strongest. Five minutes, covered.", TeaKind::herbal, 590, 80, 0xB7C68B, 28, 30,
       true},
  };
  return products;
}

const Product* productWithId(std::string_view id) {
  const auto& all = catalogue();
  const auto found = std::find_if(all.begin(), all.end(), [&](const Product& product) { return product.id == id; });
  return found == all.end() ? nullptr : &*found;
}

}  // namespace teashop
