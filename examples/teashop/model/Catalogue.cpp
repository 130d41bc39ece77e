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
       TeaKind::green, 1250, 100, 0x9DB559},
      {"assam", "Assam Mangalam", "Brahmaputra valley, India", "Malt, dried fig",
       "A second-flush leaf with golden tips. Strong enough for milk, sweet enough without.", TeaKind::black, 980, 125,
       0x8A3B1C},
      {"oolong", "Milk Oolong", "Alishan, Taiwan", "Cream, orchid",
       "Rolled by hand at 1,200 metres. The leaf opens over five infusions and never turns bitter.", TeaKind::oolong,
       1640, 75, 0xD9B04A},
      {"peony", "White Peony", "Fuding, China", "Hay, melon",
       "Buds and the first two leaves, withered in the sun and left alone. Pale, soft, and quietly floral.",
       TeaKind::white, 1490, 50, 0xE6CF8F},
      {"earlgrey", "Earl Grey Supreme", "Ceylon and Calabria", "Bergamot, honey",
       "Highland black tea with oil pressed from the peel, and a few cornflowers for the eye.", TeaKind::black, 870,
       125, 0xA2491D},
      {"genmaicha", "Genmaicha", "Uji, Japan", "Toasted rice, hazelnut",
       "Green tea with roasted brown rice. Low in caffeine, good with supper.", TeaKind::green, 790, 100, 0xB9B25C},
      {"chamomile", "Chamomile Whole Flower", "Nile delta, Egypt", "Apple, hay",
       "Whole heads, dried slowly. Cover the pot for six minutes and the room smells of orchards.", TeaKind::herbal,
       650, 60, 0xE7B93C},
      {"rooibos", "Rooibos Vanilla", "Cederberg, South Africa", "Vanilla, cedar",
       "No caffeine, no tannin, no hurry. Leave it in the pot as long as you like.", TeaKind::herbal, 720, 100,
       0xB5421E},
      {"lapsang", "Lapsang Souchong", "Wuyi, China", "Pine smoke, cocoa",
       "Dried over pine embers. A campfire in a cup; a spoonful lifts any blend.", TeaKind::black, 1120, 80, 0x7A2F17},
      {"jasmine", "Jasmine Pearls", "Fujian, China", "Jasmine, pear",
       "Each pearl is two leaves and a bud, scented over seven nights with fresh blossom.", TeaKind::green, 1780, 75,
       0xC9C36A},
  };
  return products;
}

const Product* productWithId(std::string_view id) {
  const auto& all = catalogue();
  const auto found = std::find_if(all.begin(), all.end(), [&](const Product& product) { return product.id == id; });
  return found == all.end() ? nullptr : &*found;
}

}  // namespace teashop
